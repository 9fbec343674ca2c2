#include "core/Desktop.h"

#include <time.h>

#include <chrono>
#include <exception>
#include <new>

namespace {
QuietDesktop quietDesktop;
Desktop* current = &quietDesktop;
std::chrono::steady_clock::time_point lastPump{};
int pumpDepth = 0;
constexpr auto PumpInterval = std::chrono::milliseconds(15);
}  // namespace

MessageAnswer QuietDesktop::Message(const std::string&, const std::string&, MessageIcon, MessageButtons buttons) {
    switch (buttons) {
    case MessageButtons::YesNo:
    case MessageButtons::YesNoCancel: return MessageAnswer::Yes;
    case MessageButtons::RetryCancel: return MessageAnswer::Cancel;
    default: return MessageAnswer::OK;
    }
}

std::string FileUrl(const std::string& path) {
    static const char* hex = "0123456789ABCDEF";
    std::string url = "file://";
    for (const char ch : path) {
        const auto c = static_cast<unsigned char>(ch);
        const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '/' ||
                           c == '-' || c == '.' || c == '_' || c == '~';
        if (plain) {
            url += ch;
        } else {
            url += '%';
            url += hex[c >> 4];
            url += hex[c & 15];
        }
    }
    return url;
}

Desktop& TheDesktop() { return *current; }

Desktop* InstallDesktop(Desktop* desktop) {
    Desktop* previous = current == &quietDesktop ? nullptr : current;
    current = desktop ? desktop : &quietDesktop;
    lastPump = {};
    return previous;
}

namespace {
// The writers ask at every vertex and index; the coarse clock (a few milliseconds fine) costs a
// fraction of the precise one and is fine enough for a pump every 15.
std::chrono::steady_clock::time_point CoarseNow() {
    timespec t{};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &t);
    return std::chrono::steady_clock::time_point(std::chrono::seconds(t.tv_sec) + std::chrono::nanoseconds(t.tv_nsec));
}
}  // namespace

void PumpEvents() {
    const auto now = CoarseNow();
    if (now - lastPump < PumpInterval) return;
    PumpEventsNow();
}

void PumpEventsNow() {
    lastPump = std::chrono::steady_clock::now();
    struct Depth {
        Depth() { ++pumpDepth; }
        ~Depth() { --pumpDepth; }
    } inside;
    current->ProcessEvents();
}

bool InsideEventPump() { return pumpDepth > 0; }

void ShowMessage(const std::string& text, MessageIcon icon, const std::string& title) {
    current->Message(text, title, icon, MessageButtons::OK);
}

MessageAnswer AskQuestion(const std::string& text, MessageButtons buttons, MessageIcon icon, const std::string& title) {
    return current->Message(text, title, icon, buttons);
}

bool GuardedRun(const std::string& what, const std::function<void()>& operation) {
    if (InsideEventPump()) return false;
    std::string reason;
    try {
        operation();
        return true;
    } catch (const std::bad_alloc&) { reason = "There is not enough memory."; } catch (const std::exception& e) {
        reason = e.what();
    } catch (...) { reason = "An unknown error occurred."; }
    current->HideLoading();
    ShowMessage(what + " failed.\r\n\r\n" + reason, MessageIcon::Critical);
    return false;
}
