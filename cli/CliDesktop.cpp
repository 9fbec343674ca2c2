#include "cli/CliDesktop.h"

CliDesktop::CliDesktop(std::ostream& err) : err_(err) {}

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
