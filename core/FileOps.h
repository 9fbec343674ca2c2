#pragma once
// Where the game and the outside tools are, starting and waiting for them, and small file helpers.
#include <cstdint>
#include <string>
#include <vector>

#include "core/Desktop.h"

// A registry value by its full path ("HKEY_LOCAL_MACHINE\SOFTWARE\...\Install Dir"), as the
// desktop finds it; "" when it is missing.
std::string ReadRegistry(const std::string& valuePath);

// The game's folder with a separator at the end; "/" when the game is not installed.
std::string FifaInstallDir();
// The Rhinoceros program if it exists, else "".
std::string RhinoExecutable();

// The lower-case text behind the last point of the last path element; "" when there is none.
std::string FileExtension(const std::string& path);

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
// The browser with the address; when no browser takes it, a message that names the address.
void OpenWebPage(const std::string& address);

// Turns "program args" into what the desktop is asked to start: ".exe" programs through Wine.
// Returns "" when the program is a Windows one and Wine is not installed.
std::string PlatformCommand(const std::string& commandLine);
// Whether Wine can be run: a "wine" program on PATH.
bool WineInstalled();

// All lines of a text file without their line ends; a missing file gives no lines.
std::vector<std::string> ReadAllLines(const std::string& path);
// Adds the bytes of source at the end of target.
void AppendFile(const std::string& source, const std::string& target);
bool FileExists(const std::string& path);
