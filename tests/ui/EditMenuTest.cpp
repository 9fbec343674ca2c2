// The Edit menu: deleting the parts selected in the parts list, and the clipboard entries that
// follow the focused control.
#include <QAction>
#include <QBuffer>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPushButton>
#include <QTextEdit>
#include <QVBoxLayout>
#include <QtTest>

#include <memory>

#include "core/ProgramState.h"
#include "editors/ui/vornselectobj.h"
#include "shell/ui/vorn.h"
#include "support/ScriptedDesktop.h"
#include "support/TestFiles.h"
#include "WindowTestKit.h"

namespace {

std::vector<std::uint8_t> Png(QColor colour) {
    QImage image(4, 3, QImage::Format_RGB32);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return {bytes.begin(), bytes.end()};
}

// A working window inside vorn with one control of each kind, as the editors will have them.
struct Controls {
    QWidget* page;
    QLineEdit* line;
    QTextEdit* text;
    QComboBox* combo;
    QListWidget* list;
    QLabel* picture;
    QPushButton* button;

    explicit Controls(vorn& w) {
        page = new QWidget;
        auto* layout = new QVBoxLayout(page);
        line = new QLineEdit(QStringLiteral("North stand"));
        text = new QTextEdit;
        text->setPlainText(QStringLiteral("first\nsecond"));
        combo = new QComboBox;
        combo->setEditable(true);
        combo->addItems({QStringLiteral("tp00"), QStringLiteral("tp01")});
        list = new QListWidget;
        list->addItems({QStringLiteral("skcd"), QStringLiteral("tp03")});
        picture = new QLabel;
        picture->setFocusPolicy(Qt::StrongFocus);
        QPixmap red(8, 8);
        red.fill(Qt::red);
        picture->setPixmap(red);
        button = new QPushButton(QStringLiteral("Apply"));
        for (QWidget* c : std::initializer_list<QWidget*>{line, text, combo, list, picture, button}) layout->addWidget(c);
        w.mdiArea()->addSubWindow(page)->show();
    }
};

}  // namespace

class EditMenuTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchFolder> folder_;
    std::unique_ptr<ScriptedDesktop> desktop_;

    // Opens the Edit menu as the user does, which runs the edit update, and closes it again.
    static void OpenEdit(vorn& w) {
        QMenu* edit = w.menuAction("&Edit")->menu();
        edit->popup(w.mapToGlobal(QPoint(10, 30)));
        QTRY_VERIFY(edit->isVisible());
        edit->hide();
    }
    static bool On(vorn& w, const char* caption) { return w.menuAction(caption)->isEnabled(); }

    static void Focus(vorn& w, QWidget* control) {
        w.activateWindow();
        control->setFocus(Qt::OtherFocusReason);
        QTRY_COMPARE(QApplication::focusWidget(), control);
    }

private slots:
    void init() {
        ResetProgramState();
        folder_ = std::make_unique<ScratchFolder>();
        AppFolder = folder_->path();
        desktop_ = std::make_unique<ScriptedDesktop>();
    }

    void cleanup() {
        desktop_.reset();
        folder_.reset();
        AppFolder.clear();
        ResetProgramState();
    }

    void deleteRemovesTheSelectedPartsAfterYes() {
        vorn w;
        w.show();
        w.createnew(0, "Project1");
        CurrentProject.OIF = NamedParts({"North stand", "Roof", "South stand"});
        TheViews().RefreshPartsList();
        QListWidget* box = w.selectobj()->objectbox();
        box->clearSelection();
        box->item(0)->setSelected(true);
        box->item(2)->setSelected(true);

        SpyViews spy;
        desktop_->answers = {MessageAnswer::Yes};
        OpenEdit(w);
        w.menuAction("Delete")->trigger();

        QCOMPARE(desktop_->messages.size(), std::size_t(1));
        QCOMPARE(desktop_->messages[0].text, std::string("Are you sure you want to delete the 2 selected parts?"));
        QCOMPARE(desktop_->messages[0].title, std::string("Terramason"));
        QCOMPARE(desktop_->messages[0].icon, MessageIcon::Question);
        QCOMPARE(CurrentProject.OIF.Parts.size(), std::size_t(1));
        QCOMPARE(CurrentProject.OIF.Header.PartCount, 1);
        QVERIFY(CurrentProject.OIF.Parts[0].Header.Name.str().starts_with("Roof "));
        QCOMPARE(spy.calls, (std::vector<std::string>{"RefreshPartsList", "RebuildPreviews"}));
        // The list was refreshed: one row, the part that is left, selected.
        QCOMPARE(box->count(), 1);
        QVERIFY(box->item(0)->text().startsWith("Roof"));
        QVERIFY(box->item(0)->isSelected());
    }

    void deleteAnsweredNoKeepsEveryPart() {
        vorn w;
        w.createnew(0, "Project1");
        CurrentProject.OIF = NamedParts({"A", "B", "C"});
        TheViews().RefreshPartsList();
        desktop_->answers = {MessageAnswer::No};
        w.menuAction("Delete")->trigger();
        QCOMPARE(desktop_->messages.size(), std::size_t(1));
        QCOMPARE(desktop_->messages[0].text, std::string("Are you sure you want to delete the 3 selected parts?"));
        QCOMPARE(CurrentProject.OIF.Parts.size(), std::size_t(3));
        QCOMPARE(w.selectobj()->objectbox()->count(), 3);
    }

    void deleteWithNothingSelectedAsksNothing() {
        vorn w;
        w.createnew(0, "Project1");
        CurrentProject.OIF = NamedParts({"A", "B", "C"});
        TheViews().RefreshPartsList();
        w.selectobj()->objectbox()->clearSelection();
        SpyViews spy;
        w.menuAction("Delete")->trigger();
        w.toolbarAction("Delete")->trigger();
        QVERIFY(desktop_->messages.empty());
        QCOMPARE(desktop_->unansweredQuestions, 0);
        QCOMPARE(CurrentProject.OIF.Parts.size(), std::size_t(3));
        QVERIFY(spy.calls.empty());
    }

    void editUpdateFollowsTheFocusedControl() {
        vorn w;
        w.show();
        QVERIFY(MakeActive(w));
        Controls c(w);

        // A text box with text on the clipboard: everything on.
        desktop_->SetClipboardText("tp05");
        Focus(w, c.line);
        OpenEdit(w);
        QVERIFY(On(w, "Cu&t") && On(w, "&Copy") && On(w, "&Paste"));

        // The same text box with a picture on the clipboard: nothing to paste.
        desktop_->SetClipboardImage(Png(Qt::blue));
        OpenEdit(w);
        QVERIFY(On(w, "Cu&t") && On(w, "&Copy") && !On(w, "&Paste"));

        // A picture box with a picture on the clipboard.
        Focus(w, c.picture);
        OpenEdit(w);
        QVERIFY(On(w, "Cu&t") && On(w, "&Copy") && On(w, "&Paste"));

        // A picture box with text: no paste.
        desktop_->SetClipboardText("tp05");
        OpenEdit(w);
        QVERIFY(!On(w, "&Paste"));

        // Combo and list boxes take text.
        Focus(w, c.combo);
        OpenEdit(w);
        QVERIFY(On(w, "Cu&t") && On(w, "&Paste"));
        Focus(w, c.list);
        OpenEdit(w);
        QVERIFY(On(w, "&Copy") && On(w, "&Paste"));

        // Any other control: nothing to cut or copy.
        Focus(w, c.button);
        OpenEdit(w);
        QVERIFY(!On(w, "Cu&t") && !On(w, "&Copy") && !On(w, "&Paste"));

        // The next opening with a text box sets them again.
        Focus(w, c.text);
        OpenEdit(w);
        QVERIFY(On(w, "Cu&t") && On(w, "&Copy") && On(w, "&Paste"));
    }

    void clipboardCommandsWorkOnTheFocusedControlOnly() {
        vorn w;
        w.show();
        QVERIFY(MakeActive(w));
        Controls c(w);
        CurrentProject.OIF = NamedParts({"Roof"});
        const OIFFile before = CurrentProject.OIF;

        // Text box: the selection goes to the clipboard and back.
        Focus(w, c.line);
        c.line->setSelection(0, 5);
        w.menuAction("Cu&t")->trigger();
        QCOMPARE(desktop_->clipboard, std::string("North"));
        QCOMPARE(c.line->text(), QString(" stand"));
        c.line->setCursorPosition(6);
        w.menuAction("&Paste")->trigger();
        QCOMPARE(c.line->text(), QString(" standNorth"));

        Focus(w, c.text);
        QTextCursor cursor = c.text->textCursor();
        cursor.select(QTextCursor::Document);
        c.text->setTextCursor(cursor);
        w.menuAction("&Copy")->trigger();
        QCOMPARE(desktop_->clipboard, std::string("first\nsecond"));

        // Combo box: its whole text.
        Focus(w, c.combo);
        w.toolbarAction("Cut")->trigger();
        QCOMPARE(desktop_->clipboard, std::string("tp00"));
        QCOMPARE(c.combo->currentText(), QString());
        desktop_->SetClipboardText("rwh2");
        w.toolbarAction("Paste")->trigger();
        QCOMPARE(c.combo->currentText(), QString("rwh2"));

        // List box: the current item is copied, cut removes it, paste adds the text as an item.
        Focus(w, c.list);
        c.list->setCurrentRow(1);
        w.menuAction("Cu&t")->trigger();
        QCOMPARE(desktop_->clipboard, std::string("tp03"));
        QCOMPARE(c.list->count(), 1);
        desktop_->SetClipboardText("gras");
        w.menuAction("&Paste")->trigger();
        QCOMPARE(c.list->count(), 2);
        QCOMPARE(c.list->item(1)->text(), QString("gras"));

        // Picture box: the picture as a bitmap.
        Focus(w, c.picture);
        w.menuAction("Cu&t")->trigger();
        QVERIFY(!desktop_->clipboardImage.empty());
        QVERIFY(c.picture->pixmap().isNull());
        QImage copied;
        QVERIFY(copied.loadFromData(desktop_->clipboardImage.data(), int(desktop_->clipboardImage.size())));
        QCOMPARE(copied.pixelColor(3, 3), QColor(Qt::red));
        desktop_->SetClipboardImage(Png(Qt::green));
        w.menuAction("&Paste")->trigger();
        QCOMPARE(c.picture->pixmap().size(), QSize(4, 3));
        QCOMPARE(c.picture->pixmap().toImage().pixelColor(1, 1), QColor(Qt::green));

        // Another control: nothing happens.
        Focus(w, c.button);
        desktop_->SetClipboardText("kept");
        w.toolbarAction("Cut")->trigger();
        w.toolbarAction("Paste")->trigger();
        QCOMPARE(desktop_->clipboard, std::string("kept"));
        QCOMPARE(CurrentProject.OIF, before);
    }
};

QTEST_MAIN(EditMenuTest)
#include "EditMenuTest.moc"
