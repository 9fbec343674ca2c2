#include "shell/Processes.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <cerrno>
#include <csignal>
#include <map>
#include <vector>

#include "shell/fileOps.h"

extern char** environ;

namespace {
std::map<std::int64_t, int> exitCodes;
}

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
    pid_t pid = 0;
    const int rc = posix_spawnp(&pid, argv[0], &actions, nullptr, argv.data(), environ);
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
    if (pid > 0 && Running(pid)) ::kill(static_cast<pid_t>(pid), SIGTERM);
}

}  // namespace Processes
