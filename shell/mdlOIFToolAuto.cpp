#include "shell/mdlOIFToolAuto.h"

#include <unistd.h>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "core/Desktop.h"
#include "core/FileOps.h"
#include "core/ProgramState.h"
#include "shell/Processes.h"
#include "shell/RegistryOps.h"

namespace fs = std::filesystem;

namespace {

std::string InFolder(const std::string& folder, const std::string& name) {
    if (folder.empty()) return "/" + name;
    return folder + (folder.back() == '/' || folder.back() == '\\' ? "" : "/") + name;
}

std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

std::string ExecutableFolder() {
    std::error_code ec;
    return fs::read_symlink("/proc/self/exe", ec).parent_path().string();
}

// The start of every bridge command: Wine, quiet, in the desktop's prefix. "" with the reason in
// `problem` when the bridge cannot run.
std::string WineBridge(std::string& problem) {
    const std::string prefix = TheDesktop().WinePrefix();
    const std::string bridge = FindOIFToolBridge(ExecutableFolder());
    std::error_code ec;
    if (!WineInstalled()) problem = "Wine is needed to run OIFTool, and it is not installed.";
    else if (prefix.empty() || !fs::is_directory(fs::path(prefix) / "dosdevices", ec))
        problem = "OIFTool runs in a Wine prefix, and " + (prefix.empty() ? "none is known." : prefix + " is not one.");
    else if (bridge.empty())
        problem = std::string(OIFToolBridgeName) + ", which drives OIFTool, is not installed with the program.";
    if (!problem.empty()) return {};
    return "env " + Quoted("WINEPREFIX=" + prefix) + " WINEDEBUG=-all wine " + Quoted(bridge);
}

// The bridge's command line for one conversion, its paths as the prefix's Windows programs see
// them; "" with the reason in `problem` when it cannot run.
std::string BridgeCommand(const char* direction, const std::string& source, const std::string& target,
                          std::string& problem) {
    std::string command = WineBridge(problem);
    if (command.empty()) return {};
    const std::string prefix = TheDesktop().WinePrefix();
    // An empty ToolPath stays empty: OIFTool's program is then looked for as "\oiftool.exe".
    const std::string paths[] = {ToolPath, source, target};
    std::string windows[3];
    for (int i = 0; i < 3; ++i) {
        windows[i] = paths[i].empty() ? "" : LocalPathToWindows(paths[i], prefix);
        if (windows[i].empty() && !paths[i].empty()) {
            problem = paths[i] + " is on no drive of the Wine prefix " + prefix + ".";
            return {};
        }
    }
    return command + " --tool-folder " + Quoted(windows[0]) + " " + direction + " " + Quoted(windows[1]) + " " +
           Quoted(windows[2]);
}

// Runs a converter with its output going to ToolStatusLog, keeping the windows alive, and stops
// it after `limitMs`. Returns its exit code, or -1 when it did not start or was stopped.
int RunCaptured(const std::string& command, long limitMs) {
    char logName[] = "/tmp/terramason-convert-XXXXXX";
    const int fd = ::mkstemp(logName);
    if (fd >= 0) ::close(fd);
    const std::string logPath = fd >= 0 ? logName : std::string();

    Desktop& desktop = TheDesktop();
    const std::int64_t pid = desktop.StartCapturedProcess(command, logPath);
    bool ended = pid != 0;
    const auto start = std::chrono::steady_clock::now();
    while (ended && desktop.ProcessRunning(pid)) {
        PumpEvents();
        if (std::chrono::steady_clock::now() - start > std::chrono::milliseconds(limitMs)) {
            desktop.EndProcess(pid);
            ended = false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    std::ifstream log(logPath);
    std::ostringstream text;
    text << log.rdbuf();
    if (!logPath.empty()) std::remove(logPath.c_str());
    ToolStatusLog = text.str();
    if (pid == 0) ToolStatusLog = "Could not start " + SplitCommandLine(command).front() + ".";
    else if (!ended)
        ToolStatusLog +=
            "The converter did not finish within " + std::to_string(limitMs / 60000) + " minutes and was stopped.";
    return ended ? desktop.ProcessExitCode(pid) : -1;
}

bool Convert(const char* direction, const std::string& source, const std::string& target) {
    ToolStatusLog.clear();
    const std::string native = ConverterProgram();
    std::string problem;
    const std::string command = !native.empty()
                                    ? Quoted(native) + " " + direction + " " + Quoted(source) + " " + Quoted(target)
                                    : BridgeCommand(direction, source, target, problem);
    if (command.empty()) {
        ToolStatusLog = problem;
        return false;
    }
    std::error_code ec;
    const auto before = fs::exists(target, ec) ? fs::last_write_time(target, ec) : fs::file_time_type::min();
    const int code = RunCaptured(command, native.empty() ? ConverterTimeoutMs + WineGraceMs : ConverterTimeoutMs);
    const bool made =
        fs::exists(target, ec) && (before == fs::file_time_type::min() || fs::last_write_time(target, ec) >= before);
    return code == 0 && made;
}

}  // namespace

std::string OIFToolFolder() {
    const std::string folder = ReadRegistry(OIFToolRegistryValue);
    if (folder.empty() || WineInstalled() || FileExists(InFolder(folder, "oifconvert"))) return folder;
    return {};
}

std::string FindOIFToolBridge(const std::string& executableFolder) {
    if (executableFolder.empty()) return {};
    const fs::path folder = executableFolder;
    for (const fs::path& place : {folder, folder / ".." / "lib" / "terramason"}) {
        const std::string bridge = (place / OIFToolBridgeName).lexically_normal().string();
        if (FileExists(bridge)) return bridge;
    }
    return {};
}

std::string ConverterProgram() {
    const std::string path = InFolder(ToolPath, "oifconvert");
    return FileExists(path) ? path : std::string();
}

void CloseToolWindows() {
    std::string problem;
    const std::string wine = WineBridge(problem);
    if (!wine.empty()) RunAndWait(wine + " --close", WindowMode::Hidden, WineGraceMs);
}

bool ToolConvertToOIF(const std::string& oPath, const std::string& oifPath) {
    return Convert("--to-oif", oPath, oifPath);
}

bool ToolConvertToO(const std::string& oifPath, const std::string& oPath) { return Convert("--to-o", oifPath, oPath); }

void ConvertOToOIF(const std::string& oPath, const std::string& oifPath) {
    ToolPath = OIFToolFolder();
    if (ToolPath.empty()) {
        ShowMessage(OIFToolMissingMessage, MessageIcon::Critical);
        return;
    }
    if (!FileExists(oPath)) {
        ShowMessage("Invalid O File", MessageIcon::Exclamation);
        return;
    }
    if (ToolConvertToOIF(oPath, oifPath)) return;
    ShowMessage("Failed, Status log: \r\n" + ToolStatusLog, MessageIcon::Critical);
}

void ConvertOIFToO(const std::string& oifPath, const std::string& oPath) {
    ToolPath = OIFToolFolder();
    if (ToolPath.empty()) {
        ShowMessage(OIFToolMissingMessage, MessageIcon::Critical);
        return;
    }
    if (!FileExists(oifPath)) {
        ShowMessage("Invalid OIF File", MessageIcon::Exclamation);
        return;
    }
    if (ToolConvertToO(oifPath, oPath)) return;
    ShowMessage("No O file has been made!", MessageIcon::Exclamation, "OIFTool");
}
