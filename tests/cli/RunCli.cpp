#include "cli/RunCli.h"

#include <cerrno>
#include <cstring>
#include <stdexcept>

#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

std::vector<std::string> CliResult::errLines() const {
    std::vector<std::string> lines;
    std::size_t start = 0;
    while (start < err.size()) {
        const std::size_t end = err.find('\n', start);
        if (end == std::string::npos) {
            lines.push_back(err.substr(start));
            break;
        }
        lines.push_back(err.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

CliResult RunCli(const std::vector<std::string>& args) {
    int outPipe[2], errPipe[2];
    if (::pipe(outPipe) != 0 || ::pipe(errPipe) != 0) throw std::runtime_error("pipe failed");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, outPipe[1], 1);
    posix_spawn_file_actions_adddup2(&actions, errPipe[1], 2);
    for (int fd : {outPipe[0], outPipe[1], errPipe[0], errPipe[1]}) posix_spawn_file_actions_addclose(&actions, fd);

    std::vector<std::string> argvText = {TM_CLI_PATH};
    argvText.insert(argvText.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (std::string& a : argvText) argv.push_back(a.data());
    argv.push_back(nullptr);

    pid_t pid = 0;
    const int spawned = ::posix_spawn(&pid, TM_CLI_PATH, &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(outPipe[1]);
    ::close(errPipe[1]);
    if (spawned != 0) {
        ::close(outPipe[0]);
        ::close(errPipe[0]);
        throw std::runtime_error(std::string("cannot start terramason-cli: ") + std::strerror(spawned));
    }

    // Both pipes are drained together, so a large dump cannot block on a full stderr or stdout.
    CliResult result;
    pollfd fds[2] = {{outPipe[0], POLLIN, 0}, {errPipe[0], POLLIN, 0}};
    std::string* sinks[2] = {&result.out, &result.err};
    int open = 2;
    char buf[65536];
    while (open > 0) {
        if (::poll(fds, 2, -1) < 0) {
            if (errno == EINTR) continue;
            break;
        }
        for (int i = 0; i < 2; ++i) {
            if (fds[i].fd < 0 || fds[i].revents == 0) continue;
            const ssize_t n = ::read(fds[i].fd, buf, sizeof buf);
            if (n > 0) {
                sinks[i]->append(buf, static_cast<std::size_t>(n));
            } else if (n == 0 || errno != EINTR) {
                ::close(fds[i].fd);
                fds[i].fd = -1;
                --open;
            }
        }
    }
    int wstatus = 0;
    while (::waitpid(pid, &wstatus, 0) < 0 && errno == EINTR) {}
    result.status = WIFEXITED(wstatus) ? WEXITSTATUS(wstatus) : -1;
    return result;
}
