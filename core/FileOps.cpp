#include "shell/fileOps.h"

#include <fcntl.h>
#include <unistd.h>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

namespace fs = std::filesystem;

namespace {
std::int64_t startedPid = 0;

std::string Lower(std::string s) {
    for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

std::string TrimBlanks(const std::string& s) {
    std::size_t a = 0, b = s.size();
    while (a < b && std::isspace(static_cast<unsigned char>(s[a]))) ++a;
    while (b > a && std::isspace(static_cast<unsigned char>(s[b - 1]))) --b;
    return s.substr(a, b - a);
}
}  // namespace

std::string ReadRegistry(const std::string& valuePath) { return TheDesktop().RegistryValue(valuePath); }

std::string FifaInstallDir() {
    std::string dir = ReadRegistry("HKEY_LOCAL_MACHINE\\SOFTWARE\\EA SPORTS\\FIFA 2003\\Install Dir");
    if (dir.empty() || (dir.back() != '/' && dir.back() != '\\')) dir += '/';
    return dir;
}

std::string RhinoExecutable() {
    const std::string version = ReadRegistry("HKEY_LOCAL_MACHINE\\SOFTWARE\\McNeel\\Rhinoceros\\3.0\\MostRecent");
    std::string folder =
        ReadRegistry("HKEY_LOCAL_MACHINE\\SOFTWARE\\McNeel\\Rhinoceros\\" + version + "\\Install\\Path");
    if (folder.empty()) return {};
    if (folder.back() != '/' && folder.back() != '\\') folder += '/';
    const std::string program = folder + "rhino3.exe";
    return FileExists(program) ? program : std::string();
}

std::string FileExtension(const std::string& path) {
    for (std::size_t i = path.size(); i > 0; --i) {
        const char c = path[i - 1];
        if (c == '\\' || c == '/') return {};
        if (c == '.') return Lower(path.substr(i));
    }
    return {};
}

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

void OpenWebPage(const std::string& address) {
    if (TheDesktop().OpenWebPage(address)) return;
    ShowMessage("The page " + address + " could not be opened: no web browser took it.", MessageIcon::Exclamation);
}

std::vector<std::string> ReadAllLines(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::vector<std::string> lines;
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.push_back(line);
    }
    return lines;
}

void AppendFile(const std::string& source, const std::string& target) {
    const int in = ::open(source.c_str(), O_RDONLY | O_CLOEXEC);
    if (in < 0) throw std::runtime_error("Cannot open \"" + source + "\".");
    const int out = ::open(target.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
    if (out < 0) {
        ::close(in);
        throw std::runtime_error("Cannot write \"" + target + "\".");
    }
    // The kernel copies the bytes itself: the joined preview files run to hundreds of megabytes.
    off_t at = ::lseek(out, 0, SEEK_END);
    bool ok = at >= 0;
    while (ok) {
        const ssize_t n = ::copy_file_range(in, nullptr, out, &at, 1 << 30, 0);
        if (n == 0) break;
        if (n > 0) continue;
        if (errno == EINTR) continue;
        // Some file systems cannot copy in the kernel: fall back to reading and writing.
        char buf[1 << 16];
        ssize_t r;
        while (ok && (r = ::read(in, buf, sizeof buf)) != 0) {
            if (r < 0) {
                ok = errno == EINTR;
                continue;
            }
            for (ssize_t done = 0; ok && done < r;) {
                const ssize_t w = ::pwrite(out, buf + done, static_cast<std::size_t>(r - done), at);
                if (w < 0) ok = errno == EINTR;
                else {
                    done += w;
                    at += w;
                }
            }
        }
        break;
    }
    ::close(in);
    if (::close(out) != 0) ok = false;
    if (!ok) throw std::runtime_error("Cannot write \"" + target + "\".");
}

bool FileExists(const std::string& path) {
    std::error_code ec;
    return !path.empty() && fs::is_regular_file(path, ec);
}
