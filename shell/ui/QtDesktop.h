#pragma once
// The desktop seam as the editor sees it: Qt's message boxes and file dialogs, processes started
// from this program, the browser, the clipboard and the progress window. No other window calls
// QMessageBox or QFileDialog; they all go through here.
#include <QPointer>
#include <QString>
#include <QStringList>

#include "core/Desktop.h"
#include "shell/ui/vornloading.h"

// "Description|*.a;*.b|Other|*.c" becomes "Description (*.a *.b);;Other (*.c)".
QString QtFileFilter(const std::string& filter);

class QtDesktop : public Desktop {
public:
    QtDesktop() = default;
    ~QtDesktop() override;
    QtDesktop(const QtDesktop&) = delete;
    QtDesktop& operator=(const QtDesktop&) = delete;

    MessageAnswer Message(const std::string& text, const std::string& title, MessageIcon icon,
                          MessageButtons buttons) override;
    std::string OpenFile(const std::string& title, const std::string& filter, const std::string& fileName,
                         const std::string& folder) override;
    std::string SaveFile(const std::string& title, const std::string& filter, const std::string& fileName,
                         const std::string& folder) override;
    std::string BrowseForFolder(const std::string& title) override;

    std::int64_t StartProcess(const std::string& commandLine, WindowMode mode) override;
    std::int64_t StartCapturedProcess(const std::string& commandLine, const std::string& outputFile) override;
    bool ProcessRunning(std::int64_t pid) override;
    int ProcessExitCode(std::int64_t pid) override;
    void EndProcess(std::int64_t pid) override;

    bool OpenWebPage(const std::string& address) override;
    // Both inside the program: a desktop may have no handler for local files.
    void ShowHelpBook(const std::string& path) override;
    void ShowTextFile(const std::string& path) override;
    std::string ClipboardText() override;
    void SetClipboardText(const std::string& text) override;
    std::vector<std::uint8_t> ClipboardImage() override;
    void SetClipboardImage(const std::vector<std::uint8_t>& png) override;
    std::string RegistryValue(const std::string& path) override;
    std::string WinePrefix() override;

    void ShowLoading(const std::string& text) override;
    void HideLoading() override;
    void ProcessEvents() override;

    // The progress window, once a long operation has shown it; null before that.
    vornloading* loadingWindow() const { return loading_; }

private:
    QPointer<vornloading> loading_;
};
