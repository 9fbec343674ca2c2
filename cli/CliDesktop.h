#pragma once
// The desktop of terramason-cli: no windows. A message box becomes its text on stderr, a
// question is answered from what the running verb decided beforehand.
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "core/Desktop.h"

class CliDesktop : public QuietDesktop {
public:
    explicit CliDesktop(std::ostream& err);

    MessageAnswer Message(const std::string& text, const std::string& title, MessageIcon icon,
                          MessageButtons buttons) override;
    // Outside programs really run: the converter of .o files is one.
    std::int64_t StartProcess(const std::string& commandLine, WindowMode mode) override;
    std::int64_t StartCapturedProcess(const std::string& commandLine, const std::string& outputFile) override;
    bool ProcessRunning(std::int64_t pid) override;
    int ProcessExitCode(std::int64_t pid) override;
    void EndProcess(std::int64_t pid) override;
    // The same registry values the editor sees: the per-user file, then the Wine prefix.
    std::string RegistryValue(const std::string& path) override;
    std::string WinePrefix() override;
    // No one can answer a file dialog here: it is cancelled, and its title kept for the verb
    // that runs the editor's operation to tell what was asked for.
    std::string OpenFile(const std::string& title, const std::string&, const std::string&,
                         const std::string&) override {
        cancelledDialogs_.push_back(title);
        return {};
    }
    const std::vector<std::string>& cancelledDialogs() const { return cancelledDialogs_; }
    std::string ClipboardText() override { return clipboard_; }
    void SetClipboardText(const std::string& text) override { clipboard_ = text; }

    // The answer to the question whose text is exactly `question`; a verb sets these from its
    // options before it runs the editor's operation.
    void SetAnswer(const std::string& question, MessageAnswer answer);
    // The answer to any other question with these buttons.
    void SetDefaultAnswer(MessageButtons buttons, MessageAnswer answer);

private:
    std::ostream& err_;
    std::map<std::string, MessageAnswer> answers_;
    std::map<MessageButtons, MessageAnswer> defaults_;
    std::string clipboard_;
    std::vector<std::string> cancelledDialogs_;
};

// Writes a message as the editor's box would show it, one output line per line of the text;
// CR LF, a lone LF and a lone CR all end a line.
void PrintMessageLines(std::ostream& out, const std::string& text);
