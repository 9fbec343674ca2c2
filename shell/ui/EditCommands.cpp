#include "shell/ui/EditCommands.h"

#include <QBuffer>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QTextEdit>

#include "core/Desktop.h"

namespace {

QString ClipboardText() { return QString::fromStdString(TheDesktop().ClipboardText()); }
void SetClipboardText(const QString& text) { TheDesktop().SetClipboardText(text.toStdString()); }

// A combo box that can be typed in gives the focus to its line edit.
QComboBox* ComboOf(QWidget* control) {
    if (auto* combo = qobject_cast<QComboBox*>(control)) return combo;
    if (qobject_cast<QLineEdit*>(control)) return qobject_cast<QComboBox*>(control->parentWidget());
    return nullptr;
}

// A selection of a text document uses paragraph separators where the text has line ends.
QString PlainSelection(const QTextCursor& cursor) {
    QString text = cursor.selectedText();
    text.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
    text.replace(QChar::LineSeparator, QLatin1Char('\n'));
    return text;
}

std::vector<std::uint8_t> PngBytes(const QPixmap& picture) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "PNG");
    return std::vector<std::uint8_t>(bytes.begin(), bytes.end());
}

}  // namespace

ControlKind KindOfControl(const QWidget* control) {
    if (!control) return ControlKind::None;
    QWidget* w = const_cast<QWidget*>(control);
    // The frame, its working area and the frames round the child windows take the focus when
    // nothing else has it; none of them is a control.
    if (qobject_cast<QMainWindow*>(w) || qobject_cast<QMdiArea*>(w) || qobject_cast<QMdiSubWindow*>(w) ||
        (w->parentWidget() && qobject_cast<QMdiArea*>(w->parentWidget())))
        return ControlKind::None;
    if (ComboOf(w)) return ControlKind::ComboBox;
    if (qobject_cast<QLineEdit*>(w) || qobject_cast<QTextEdit*>(w) || qobject_cast<QPlainTextEdit*>(w))
        return ControlKind::TextBox;
    if (qobject_cast<QListWidget*>(w)) return ControlKind::ListBox;
    if (qobject_cast<QLabel*>(w)) return ControlKind::PictureBox;
    return ControlKind::Other;
}

void CopyFromControl(QWidget* control) {
    switch (KindOfControl(control)) {
    case ControlKind::ComboBox: SetClipboardText(ComboOf(control)->currentText()); break;
    case ControlKind::TextBox:
        if (auto* line = qobject_cast<QLineEdit*>(control)) SetClipboardText(line->selectedText());
        else if (auto* text = qobject_cast<QTextEdit*>(control)) SetClipboardText(PlainSelection(text->textCursor()));
        else if (auto* plain = qobject_cast<QPlainTextEdit*>(control))
            SetClipboardText(PlainSelection(plain->textCursor()));
        break;
    case ControlKind::ListBox: {
        QListWidgetItem* item = qobject_cast<QListWidget*>(control)->currentItem();
        SetClipboardText(item ? item->text() : QString());
        break;
    }
    case ControlKind::PictureBox:
        TheDesktop().SetClipboardImage(PngBytes(qobject_cast<QLabel*>(control)->pixmap()));
        break;
    case ControlKind::None:
    case ControlKind::Other: break;
    }
}

void CutFromControl(QWidget* control) {
    CopyFromControl(control);
    switch (KindOfControl(control)) {
    case ControlKind::ComboBox: ComboOf(control)->setCurrentText(QString()); break;
    case ControlKind::TextBox:
        if (auto* line = qobject_cast<QLineEdit*>(control)) line->del();
        else if (auto* text = qobject_cast<QTextEdit*>(control)) text->textCursor().removeSelectedText();
        else if (auto* plain = qobject_cast<QPlainTextEdit*>(control)) plain->textCursor().removeSelectedText();
        break;
    case ControlKind::ListBox: {
        auto* list = qobject_cast<QListWidget*>(control);
        if (QListWidgetItem* item = list->currentItem()) delete list->takeItem(list->row(item));
        break;
    }
    case ControlKind::PictureBox: qobject_cast<QLabel*>(control)->clear(); break;
    case ControlKind::None:
    case ControlKind::Other: break;
    }
}

void PasteIntoControl(QWidget* control) {
    switch (KindOfControl(control)) {
    case ControlKind::ComboBox: ComboOf(control)->setCurrentText(ClipboardText()); break;
    case ControlKind::TextBox:
        if (auto* line = qobject_cast<QLineEdit*>(control)) line->insert(ClipboardText());
        else if (auto* text = qobject_cast<QTextEdit*>(control)) text->insertPlainText(ClipboardText());
        else if (auto* plain = qobject_cast<QPlainTextEdit*>(control)) plain->insertPlainText(ClipboardText());
        break;
    case ControlKind::ListBox: qobject_cast<QListWidget*>(control)->addItem(ClipboardText()); break;
    case ControlKind::PictureBox: {
        const std::vector<std::uint8_t> png = TheDesktop().ClipboardImage();
        QPixmap picture;
        if (!png.empty() && picture.loadFromData(png.data(), static_cast<uint>(png.size()))) {
            qobject_cast<QLabel*>(control)->setPixmap(picture);
        }
        break;
    }
    case ControlKind::None:
    case ControlKind::Other: break;
    }
}
