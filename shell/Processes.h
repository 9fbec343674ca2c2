#pragma once
// Starting and watching other programs on a POSIX system. The editor's, the command-line tool's
// and the tests' desktops all start programs through here.
#include <cstdint>
#include <string>

namespace Processes {
// Starts a command line (program and arguments, double quotes group); standard output and error
// go to outputFile when one is given. Returns the process id, or 0 when nothing started.
std::int64_t Start(const std::string& commandLine, const std::string& outputFile = {});
// True while the process lives; an ended process is reaped and its exit code kept.
bool Running(std::int64_t pid);
// The exit code of an ended process (128 + signal when a signal ended it); -1 when unknown.
int ExitCode(std::int64_t pid);
// Asks the process to end.
void End(std::int64_t pid);
}  // namespace Processes
