#include "cli/CliDesktop.h"

#include "shell/Processes.h"
#include "shell/RegistryOps.h"

CliDesktop::CliDesktop(std::ostream& err) : err_(err) {}

std::int64_t CliDesktop::StartProcess(const std::string& commandLine, WindowMode) {
    return Processes::Start(commandLine);
}

std::int64_t CliDesktop::StartCapturedProcess(const std::string& commandLine, const std::string& outputFile) {
    return Processes::Start(commandLine, outputFile);
}

bool CliDesktop::ProcessRunning(std::int64_t pid) { return Processes::Running(pid); }

int CliDesktop::ProcessExitCode(std::int64_t pid) { return Processes::ExitCode(pid); }

void CliDesktop::EndProcess(std::int64_t pid) { Processes::End(pid); }

std::string CliDesktop::RegistryValue(const std::string& path) {
    return LinuxRegistryValue(path, RegistryFilePath(), WinePrefix());
}

std::string CliDesktop::WinePrefix() { return DefaultWinePrefix(); }

MessageAnswer CliDesktop::Message(const std::string& text, const std::string& title, MessageIcon icon,
                                  MessageButtons buttons) {
    PrintMessageLines(err_, text);
    if (auto it = answers_.find(text); it != answers_.end()) return it->second;
    if (auto it = defaults_.find(buttons); it != defaults_.end()) return it->second;
    return QuietDesktop::Message(text, title, icon, buttons);
}

void CliDesktop::SetAnswer(const std::string& question, MessageAnswer answer) { answers_[question] = answer; }

void CliDesktop::SetDefaultAnswer(MessageButtons buttons, MessageAnswer answer) { defaults_[buttons] = answer; }

void PrintMessageLines(std::ostream& out, const std::string& text) {
    std::string line;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '\r' || c == '\n') {
            if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
            out << line << '\n';
            line.clear();
        } else {
            line += c;
        }
    }
    out << line << '\n';
    out.flush();
}
