#include "shell/Processes.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <map>
#include <thread>
#include <vector>

#include "core/FileOps.h"

extern char** environ;

namespace {
std::map<std::int64_t, int> exitCodes;
std::int64_t startedPid = 0;

std::string TrimBlanks(const std::string& s) {
    std::size_t a = 0, b = s.size();
    while (a < b && std::isspace(static_cast<unsigned char>(s[a]))) ++a;
    while (b > a && std::isspace(static_cast<unsigned char>(s[b - 1]))) --b;
    return s.substr(a, b - a);
}
}  // namespace

namespace Processes {

std::int64_t Start(const std::string& commandLine, const std::string& outputFile) {
    const std::vector<std::string> parts = SplitCommandLine(commandLine);
    if (parts.empty()) return 0;
    std::vector<char*> argv;
    for (const std::string& p : parts) argv.push_back(const_cast<char*>(p.c_str()));
    argv.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    if (!outputFile.empty()) {
        posix_spawn_file_actions_addopen(&actions, 1, outputFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        posix_spawn_file_actions_adddup2(&actions, 1, 2);
    }
    // A group of its own, so that ending it ends what it started as well: the programs a script
    // runs, or Windows programs under wine.
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
    posix_spawnattr_setpgroup(&attributes, 0);
    pid_t pid = 0;
    const int rc = posix_spawnp(&pid, argv[0], &actions, &attributes, argv.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    return rc == 0 ? pid : 0;
}

bool Running(std::int64_t pid) {
    if (pid <= 0) return false;
    if (exitCodes.count(pid)) return false;
    int status = 0;
    const pid_t r = ::waitpid(static_cast<pid_t>(pid), &status, WNOHANG);
    if (r == 0) return true;
    if (r == static_cast<pid_t>(pid)) {
        exitCodes[pid] = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + (WIFSIGNALED(status) ? WTERMSIG(status) : 0);
        return false;
    }
    // Not our child (or already reaped elsewhere): alive as long as it can be signalled.
    return errno == ECHILD && ::kill(static_cast<pid_t>(pid), 0) == 0;
}

int ExitCode(std::int64_t pid) {
    const auto it = exitCodes.find(pid);
    return it == exitCodes.end() ? -1 : it->second;
}

void End(std::int64_t pid) {
    if (pid > 0 && Running(pid) && ::kill(-static_cast<pid_t>(pid), SIGTERM) != 0)
        ::kill(static_cast<pid_t>(pid), SIGTERM);
}

}  // namespace Processes

std::vector<std::string> SplitCommandLine(const std::string& commandLine) {
    std::vector<std::string> parts;
    std::string current;
    bool quoted = false, any = false;
    for (char c : commandLine) {
        if (c == '"') {
            quoted = !quoted;
            any = true;
        } else if (!quoted && (c == ' ' || c == '\t')) {
            if (any) parts.push_back(current);
            current.clear();
            any = false;
        } else {
            current += c;
            any = true;
        }
    }
    if (any) parts.push_back(current);
    return parts;
}

bool WineInstalled() {
    const char* path = std::getenv("PATH");
    if (!path) return false;
    const std::string dirs = path;
    std::size_t start = 0;
    while (start <= dirs.size()) {
        const std::size_t end = dirs.find(':', start);
        const std::string dir = dirs.substr(start, end == std::string::npos ? std::string::npos : end - start);
        if (!dir.empty() && ::access((dir + "/wine").c_str(), X_OK) == 0) return true;
        if (end == std::string::npos) break;
        start = end + 1;
    }
    return false;
}

std::string PlatformCommand(const std::string& commandLine) {
    const std::vector<std::string> parts = SplitCommandLine(commandLine);
    if (parts.empty()) return {};
    if (FileExtension(parts[0]) != "exe") return commandLine;
    if (!WineInstalled()) return {};
    return "wine " + commandLine;
}

void StartProcess(const std::string& commandLine, WindowMode mode) {
    const std::string command = TrimBlanks(commandLine);
    if (command.empty()) return;
    const std::string platform = PlatformCommand(command);
    startedPid = platform.empty() ? 0 : TheDesktop().StartProcess(platform, mode);
    if (startedPid == 0) ShowMessage("Could not start process: " + command, MessageIcon::Exclamation, "Error");
}

std::int64_t StartedProcessId() { return startedPid; }

void CloseProcessWindows() {
    if (startedPid != 0) TheDesktop().EndProcess(startedPid);
}

bool RunAndWait(const std::string& commandLine, WindowMode mode, long timeoutMs) {
    if (mode != WindowMode::Hidden && mode != WindowMode::Normal) return false;
    const std::string platform = PlatformCommand(TrimBlanks(commandLine));
    if (platform.empty()) return false;
    Desktop& desktop = TheDesktop();
    const std::int64_t pid = desktop.StartProcess(platform, mode);
    if (pid == 0) return false;
    const auto start = std::chrono::steady_clock::now();
    while (desktop.ProcessRunning(pid)) {
        PumpEventsNow();
        if (timeoutMs >= 0 && std::chrono::steady_clock::now() - start > std::chrono::milliseconds(timeoutMs)) {
            desktop.EndProcess(pid);
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    return true;
}
