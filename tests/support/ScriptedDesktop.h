#pragma once
// The test double of the desktop: answers questions and dialogs from scripts given in order,
// and records every message, page, process and progress text the program shows.
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "core/Desktop.h"
#include "shell/Processes.h"
#include "shell/RegistryOps.h"

struct ShownMessage {
    std::string text, title;
    MessageIcon icon;
    MessageButtons buttons;
};

class ScriptedDesktop : public Desktop {
public:
    ScriptedDesktop() { previous_ = InstallDesktop(this); }
    ~ScriptedDesktop() override { InstallDesktop(previous_); }
    ScriptedDesktop(const ScriptedDesktop&) = delete;
    ScriptedDesktop& operator=(const ScriptedDesktop&) = delete;

    // Scripts, consumed front first.
    std::deque<MessageAnswer> answers;      // for boxes with more than an OK button
    std::deque<std::string> dialogAnswers;  // for file and folder dialogs; "" is a cancel
    std::function<void()> onPump;           // what happens while an operation pumps events
    std::int64_t startedId = 0;             // what a start that runs nothing reports: 0 is a failure
    // What answers when a script is empty; without them No or Cancel, and a cancelled dialog.
    std::function<MessageAnswer(MessageButtons)> answerer;
    std::function<std::string(const std::string& filter)> dialogAnswerer;  // "" for a folder
    std::map<std::string, std::string> registry;
    // When set, registry values not in `registry` come from this Wine prefix and the per-user file.
    std::string winePrefix;
    // When set, commands really run (tests with fake tools); otherwise they are only recorded.
    bool runProcesses = false;
    std::string clipboard;
    std::vector<std::uint8_t> clipboardImage;  // PNG bytes; empty: no picture

    // Records.
    std::vector<ShownMessage> messages;
    std::vector<std::string> dialogTitles, pages, commands, loadingTexts;
    std::vector<std::string> shownFiles;  // files shown in the text window
    bool browserAnswers = true;
    std::vector<std::int64_t> ended;
    int unansweredQuestions = 0;  // questions asked with an empty script (answered Cancel/No)
    bool loadingShown = false;
    int pumps = 0;

    MessageAnswer Message(const std::string& text, const std::string& title, MessageIcon icon,
                          MessageButtons buttons) override {
        messages.push_back({text, title, icon, buttons});
        if (buttons == MessageButtons::OK) return MessageAnswer::OK;
        if (answers.empty() && answerer) return answerer(buttons);
        if (answers.empty())
            return ++unansweredQuestions, buttons == MessageButtons::YesNo ? MessageAnswer::No : MessageAnswer::Cancel;
        return Next(answers);
    }
    std::string OpenFile(const std::string& title, const std::string& filter, const std::string&,
                         const std::string&) override {
        return NextDialog(title, filter);
    }
    std::string SaveFile(const std::string& title, const std::string& filter, const std::string&,
                         const std::string&) override {
        return NextDialog(title, filter);
    }
    std::string BrowseForFolder(const std::string& title) override { return NextDialog(title, ""); }
    std::int64_t StartProcess(const std::string& commandLine, WindowMode) override {
        commands.push_back(commandLine);
        return runProcesses ? Processes::Start(commandLine) : startedId;
    }
    std::int64_t StartCapturedProcess(const std::string& commandLine, const std::string& outputFile) override {
        commands.push_back(commandLine);
        return runProcesses ? Processes::Start(commandLine, outputFile) : 0;
    }
    bool ProcessRunning(std::int64_t pid) override { return Processes::Running(pid); }
    int ProcessExitCode(std::int64_t pid) override { return Processes::ExitCode(pid); }
    void EndProcess(std::int64_t pid) override { ended.push_back(pid), Processes::End(pid); }
    // Pages of the help book are told by their address, as the browser would be given them.
    bool OpenWebPage(const std::string& address) override {
        pages.push_back(address);
        return browserAnswers;
    }
    void ShowHelpBook(const std::string& path) override { pages.push_back(FileUrl(path)); }
    void ShowTextFile(const std::string& path) override { shownFiles.push_back(path); }
    // Like a real clipboard, it holds text or a picture, not both.
    std::string ClipboardText() override { return clipboard; }
    void SetClipboardText(const std::string& text) override { clipboard = text, clipboardImage.clear(); }
    std::vector<std::uint8_t> ClipboardImage() override { return clipboardImage; }
    void SetClipboardImage(const std::vector<std::uint8_t>& png) override { clipboardImage = png, clipboard.clear(); }
    std::string RegistryValue(const std::string& path) override {
        if (auto it = registry.find(path); it != registry.end()) return it->second;
        return winePrefix.empty() ? std::string() : LinuxRegistryValue(path, RegistryFilePath(), winePrefix);
    }
    std::string WinePrefix() override { return winePrefix; }
    void ShowLoading(const std::string& text) override { loadingTexts.push_back(text), loadingShown = true; }
    void HideLoading() override { loadingShown = false; }
    void ProcessEvents() override {
        ++pumps;
        if (onPump) onPump();
    }

private:
    std::string NextDialog(const std::string& title, const std::string& filter) {
        dialogTitles.push_back(title);
        if (dialogAnswers.empty()) return dialogAnswerer ? dialogAnswerer(filter) : std::string();
        return Next(dialogAnswers);
    }
    template <class T>
    static T Next(std::deque<T>& script) {
        T a = script.front();
        script.pop_front();
        return a;
    }
    Desktop* previous_ = nullptr;
};
