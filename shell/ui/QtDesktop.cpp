#include "shell/ui/QtDesktop.h"

#include "shell/RegistryOps.h"

#include <QApplication>
#include <QBuffer>
#include <QClipboard>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QImage>
#include <QMessageBox>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QUrl>

#include "shell/Processes.h"
#include "shell/ui/helpviewer.h"
#include "shell/ui/textviewer.h"
#include "shell/ui/vorn.h"
#include "shell/ui/vornloading.h"

namespace {

// Swallows what the user does while a long operation pumps events: the windows repaint and
// timers run, but clicks, keys and a close of a window are dropped rather than kept for later,
// so nothing the user did under the busy pointer acts on the document afterwards either.
class InputDropper : public QObject {
protected:
    bool eventFilter(QObject*, QEvent* event) override {
        switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::Shortcut:
        case QEvent::ShortcutOverride:
        case QEvent::Wheel:
        case QEvent::ContextMenu:
        case QEvent::TouchBegin:
        case QEvent::Close: return true;
        default: return false;
        }
    }
};

QString FromUtf8(const std::string& text) { return QString::fromStdString(text); }

// The program's texts end their lines the Windows way; a Qt label would show the CR.
QString BoxText(const std::string& text) {
    QString s = FromUtf8(text);
    s.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    s.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return s;
}

// Boxes and dialogs belong to whatever window the user is working in, so they stay in front of it.
QWidget* DialogParent() {
    if (QWidget* w = QApplication::activeWindow()) return w;
    return vorn::instance();
}

QMessageBox::Icon BoxIcon(MessageIcon icon) {
    switch (icon) {
    case MessageIcon::Critical: return QMessageBox::Critical;
    case MessageIcon::Question: return QMessageBox::Question;
    case MessageIcon::Exclamation: return QMessageBox::Warning;
    case MessageIcon::Information: return QMessageBox::Information;
    case MessageIcon::None: break;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons BoxButtons(MessageButtons buttons) {
    switch (buttons) {
    case MessageButtons::OK: return QMessageBox::Ok;
    case MessageButtons::OKCancel: return QMessageBox::Ok | QMessageBox::Cancel;
    case MessageButtons::YesNo: return QMessageBox::Yes | QMessageBox::No;
    case MessageButtons::YesNoCancel: return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case MessageButtons::RetryCancel: return QMessageBox::Retry | QMessageBox::Cancel;
    }
    return QMessageBox::Ok;
}

// A box closed without a button press (Escape, the close box) counts as the refusing choice.
MessageAnswer Refusal(MessageButtons buttons) {
    switch (buttons) {
    case MessageButtons::OK: return MessageAnswer::OK;
    case MessageButtons::YesNo: return MessageAnswer::No;
    default: return MessageAnswer::Cancel;
    }
}

QString StartPath(const std::string& fileName, const std::string& folder) {
    if (folder.empty()) return FromUtf8(fileName);
    if (fileName.empty()) return FromUtf8(folder);
    return QDir(FromUtf8(folder)).filePath(FromUtf8(fileName));
}

}  // namespace

QString QtFileFilter(const std::string& filter) {
    const QStringList items = FromUtf8(filter).split(QLatin1Char('|'));
    // Descriptions written for Windows often carry their patterns already, "OIF Files (*.oif)";
    // Qt reads the patterns from the last brackets, so those are replaced by the real ones.
    static const QRegularExpression ownPatterns(QStringLiteral("\\s*\\([^()]*\\*[^()]*\\)\\s*$"));
    QStringList out;
    for (qsizetype i = 0; i + 1 < items.size(); i += 2) {
        QString description = items[i];
        description.remove(ownPatterns);
        QStringList patterns = items[i + 1].split(QLatin1Char(';'), Qt::SkipEmptyParts);
        for (QString& p : patterns) p = p.trimmed();
        out << description.trimmed() + QStringLiteral(" (") + patterns.join(QLatin1Char(' ')) + QLatin1Char(')');
    }
    return out.join(QStringLiteral(";;"));
}

QtDesktop::~QtDesktop() { delete loading_.data(); }

MessageAnswer QtDesktop::Message(const std::string& text, const std::string& title, MessageIcon icon,
                                 MessageButtons buttons) {
    QMessageBox box(BoxIcon(icon), FromUtf8(title), BoxText(text), BoxButtons(buttons), DialogParent());
    switch (box.exec()) {
    case QMessageBox::Ok: return MessageAnswer::OK;
    case QMessageBox::Cancel: return MessageAnswer::Cancel;
    case QMessageBox::Yes: return MessageAnswer::Yes;
    case QMessageBox::No: return MessageAnswer::No;
    case QMessageBox::Retry: return MessageAnswer::Retry;
    default: return Refusal(buttons);
    }
}

std::string QtDesktop::OpenFile(const std::string& title, const std::string& filter, const std::string& fileName,
                                const std::string& folder) {
    return QFileDialog::getOpenFileName(DialogParent(), FromUtf8(title), StartPath(fileName, folder),
                                        QtFileFilter(filter))
        .toStdString();
}

std::string QtDesktop::SaveFile(const std::string& title, const std::string& filter, const std::string& fileName,
                                const std::string& folder) {
    // The callers ask their own replace question, with their own wording; a second one from the
    // dialog would ask twice.
    return QFileDialog::getSaveFileName(DialogParent(), FromUtf8(title), StartPath(fileName, folder),
                                        QtFileFilter(filter), nullptr, QFileDialog::DontConfirmOverwrite)
        .toStdString();
}

std::string QtDesktop::BrowseForFolder(const std::string& title) {
    return QFileDialog::getExistingDirectory(DialogParent(), FromUtf8(title)).toStdString();
}

// The window mode has no meaning for another program's windows here: the program places its
// own window.
std::int64_t QtDesktop::StartProcess(const std::string& commandLine, WindowMode) {
    return Processes::Start(commandLine);
}

std::int64_t QtDesktop::StartCapturedProcess(const std::string& commandLine, const std::string& outputFile) {
    return Processes::Start(commandLine, outputFile);
}

bool QtDesktop::ProcessRunning(std::int64_t pid) { return Processes::Running(pid); }

int QtDesktop::ProcessExitCode(std::int64_t pid) { return Processes::ExitCode(pid); }

void QtDesktop::EndProcess(std::int64_t pid) { Processes::End(pid); }

bool QtDesktop::OpenWebPage(const std::string& address) {
    return QDesktopServices::openUrl(QUrl::fromUserInput(FromUtf8(address)));
}

void QtDesktop::ShowHelpBook(const std::string& path) { helpviewer::showPage(FromUtf8(path)); }

void QtDesktop::ShowTextFile(const std::string& path) { textviewer::showFile(FromUtf8(path)); }

std::string QtDesktop::ClipboardText() { return QGuiApplication::clipboard()->text().toStdString(); }

void QtDesktop::SetClipboardText(const std::string& text) { QGuiApplication::clipboard()->setText(FromUtf8(text)); }

std::vector<std::uint8_t> QtDesktop::ClipboardImage() {
    const QImage image = QGuiApplication::clipboard()->image();
    if (image.isNull()) return {};
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return std::vector<std::uint8_t>(bytes.begin(), bytes.end());
}

void QtDesktop::SetClipboardImage(const std::vector<std::uint8_t>& png) {
    QImage image;
    image.loadFromData(png.data(), static_cast<int>(png.size()), "PNG");
    QGuiApplication::clipboard()->setImage(image);
}

// The per-user file of tool locations first, then the registry of the Wine prefix.
std::string QtDesktop::RegistryValue(const std::string& path) {
    return LinuxRegistryValue(path, RegistryFilePath(), WinePrefix());
}

std::string QtDesktop::WinePrefix() { return DefaultWinePrefix(); }

void QtDesktop::ShowLoading(const std::string& text) {
    // Made on first use and owned by vorn when there is one, so it stays above the main window.
    if (!loading_) loading_ = new vornloading(vorn::instance());
    loading_->showLoading(FromUtf8(text));
}

void QtDesktop::HideLoading() {
    if (loading_) loading_->hideLoading();
}

void QtDesktop::ProcessEvents() {
    static InputDropper dropper;
    static int depth = 0;
    if (depth++ == 0) QCoreApplication::instance()->installEventFilter(&dropper);
    QCoreApplication::processEvents();
    if (--depth == 0) QCoreApplication::instance()->removeEventFilter(&dropper);
}
