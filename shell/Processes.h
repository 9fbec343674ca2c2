#pragma once
// Starting and watching other programs. The namespace is the POSIX side that the editor's, the
// command-line tool's and the tests' desktops start programs through; the free functions below
// it are what the program's commands use, through the desktop, with Windows programs run by Wine.
#include <cstdint>
#include <string>
#include <vector>

#include "core/Desktop.h"

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

// Splits a command line into its program and arguments, honouring double quotes.
std::vector<std::string> SplitCommandLine(const std::string& commandLine);

// Starts a command line and keeps its process id; a program ending in ".exe" runs through Wine
// when Wine is there. Reports "Could not start process: " + the command when nothing started.
void StartProcess(const std::string& commandLine, WindowMode mode);
// The process id kept by the last StartProcess; 0 when none.
std::int64_t StartedProcessId();
// Ends what StartProcess started.
void CloseProcessWindows();
// Starts the command and waits for it to end, keeping the windows alive; reports nothing.
// Returns false when it could not start or did not end within `timeoutMs` (then it is ended).
bool RunAndWait(const std::string& commandLine, WindowMode mode, long timeoutMs = -1);

// Turns "program args" into what the desktop is asked to start: ".exe" programs through Wine.
// Returns "" when the program is a Windows one and Wine is not installed.
std::string PlatformCommand(const std::string& commandLine);
// Whether Wine can be run: a "wine" program on PATH.
bool WineInstalled();
