#pragma once
// The one seam between the program and the desktop it runs on. Everything a window system,
// the file system's dialogs, other processes or the clipboard provide goes through here, so
// that the logic runs the same in the editor, in terramason-cli and in tests.
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

enum class MessageIcon { None, Critical, Question, Exclamation, Information };
enum class MessageButtons { OK, OKCancel, YesNo, YesNoCancel, RetryCancel };
enum class MessageAnswer { OK, Cancel, Yes, No, Retry };

// How a started program's window is shown; the values are those of the platform's process start.
enum class WindowMode : int { Hidden = 0, Normal = 1, Maximised = 3 };

// "file://" and the absolute path, with the bytes a URL cannot hold percent-encoded.
std::string FileUrl(const std::string& path);

class Desktop {
public:
    virtual ~Desktop() = default;

    // A modal message box. Texts are UTF-8; the document's 8-bit text is converted by the caller.
    virtual MessageAnswer Message(const std::string& text, const std::string& title, MessageIcon icon,
                                  MessageButtons buttons) = 0;

    // File dialogs take filters in the program's "Description|*.ext|..." form. Cancel gives "".
    virtual std::string OpenFile(const std::string& title, const std::string& filter, const std::string& fileName,
                                 const std::string& folder) = 0;
    virtual std::string SaveFile(const std::string& title, const std::string& filter, const std::string& fileName,
                                 const std::string& folder) = 0;
    virtual std::string BrowseForFolder(const std::string& title) = 0;

    // Starts a command line; returns a process id, or 0 when nothing could be started.
    virtual std::int64_t StartProcess(const std::string& commandLine, WindowMode mode) = 0;
    virtual bool ProcessRunning(std::int64_t pid) = 0;
    virtual void EndProcess(std::int64_t pid) = 0;
    // Starts a command hidden with its standard output and error going to outputFile.
    virtual std::int64_t StartCapturedProcess(const std::string& commandLine, const std::string& outputFile) {
        (void)outputFile;
        return StartProcess(commandLine, WindowMode::Hidden);
    }
    // The exit code of a process that has ended; -1 when it is not known.
    virtual int ProcessExitCode(std::int64_t pid) {
        (void)pid;
        return -1;
    }

    // Hands an address to the desktop's browser; false when nothing took it.
    virtual bool OpenWebPage(const std::string& address) = 0;
    // A page of the shipped help book, shown in a window that follows the book's links. A desktop
    // without one hands the page to the browser.
    virtual void ShowHelpBook(const std::string& path) { OpenWebPage(FileUrl(path)); }
    // A text file shown read-only in a window of its own, without waiting for it.
    virtual void ShowTextFile(const std::string& path) { OpenWebPage(FileUrl(path)); }

    virtual std::string ClipboardText() = 0;
    virtual void SetClipboardText(const std::string& text) = 0;
    // The clipboard's picture as PNG bytes; empty when it holds none. Setting one replaces
    // whatever the clipboard held.
    virtual std::vector<std::uint8_t> ClipboardImage() { return {}; }
    virtual void SetClipboardImage(const std::vector<std::uint8_t>& png) { (void)png; }

    // A value of the registry by its full path ("HKEY_...\\key\\value"); "" when absent.
    virtual std::string RegistryValue(const std::string& path) = 0;
    // The Wine prefix whose registry RegistryValue reads and in which Windows tools run; "" when
    // the desktop has none.
    virtual std::string WinePrefix() { return {}; }

    // The progress window: shown without blocking, with the busy pointer, until hidden.
    virtual void ShowLoading(const std::string& text) = 0;
    virtual void HideLoading() = 0;

    // Lets the windows handle what is waiting for them. Call PumpEvents(), not this.
    virtual void ProcessEvents() = 0;
};

// A desktop that answers every question with its default and shows nothing: the state before
// the editor or a tool installs its own.
class QuietDesktop : public Desktop {
public:
    MessageAnswer Message(const std::string&, const std::string&, MessageIcon, MessageButtons buttons) override;
    std::string OpenFile(const std::string&, const std::string&, const std::string&, const std::string&) override {
        return {};
    }
    std::string SaveFile(const std::string&, const std::string&, const std::string&, const std::string&) override {
        return {};
    }
    std::string BrowseForFolder(const std::string&) override { return {}; }
    std::int64_t StartProcess(const std::string&, WindowMode) override { return 0; }
    bool ProcessRunning(std::int64_t) override { return false; }
    void EndProcess(std::int64_t) override {}
    bool OpenWebPage(const std::string&) override { return false; }
    std::string ClipboardText() override { return {}; }
    void SetClipboardText(const std::string&) override {}
    std::string RegistryValue(const std::string&) override { return {}; }
    void ShowLoading(const std::string&) override {}
    void HideLoading() override {}
    void ProcessEvents() override {}
};

// The program-wide desktop. Never null: QuietDesktop stands in until one is installed.
Desktop& TheDesktop();
// Installs a desktop (not owned) and returns the one it replaces; nullptr restores QuietDesktop.
Desktop* InstallDesktop(Desktop* desktop);

// Runs the event pump, but at most once every few milliseconds, so that a loop over a million
// vertices spends its time in the loop and not in the pump.
void PumpEvents();
// Runs the event pump now, however short the time since the last one.
void PumpEventsNow();
// True while a long operation lets the windows handle their events. No command starts then:
// the document is half-made, and a second command would work on it or be overwritten by it.
bool InsideEventPump();

// The caption of the program's own message boxes.
inline constexpr const char* ProgramTitle = "VORN Terramason";

// Shorthand for the program's usual report: a modal box with one OK button.
void ShowMessage(const std::string& text, MessageIcon icon, const std::string& title = ProgramTitle);
MessageAnswer AskQuestion(const std::string& text, MessageButtons buttons, MessageIcon icon,
                          const std::string& title = ProgramTitle);

// Runs one operation so that a fault nobody handled ends the operation, not the program: the
// fault is reported in one error box that names `what`, and the caller goes on. Returns false
// when the operation was stopped that way, or when it was not started because another one is
// pumping events (a click that arrived while the busy pointer was up).
bool GuardedRun(const std::string& what, const std::function<void()>& operation);
