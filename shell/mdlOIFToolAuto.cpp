#include "shell/mdlOIFToolAuto.h"

#include <unistd.h>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "core/Desktop.h"
#include "core/ProgramState.h"
#include "shell/fileOps.h"

namespace {

std::string InToolFolder(const std::string& name) {
    if (ToolPath.empty()) return "/" + name;
    return ToolPath + (ToolPath.back() == '/' || ToolPath.back() == '\\' ? "" : "/") + name;
}

bool Convert(const char* direction, const std::string& source, const std::string& target) {
    ToolStatusLog.clear();
    const std::string converter = ConverterProgram();
    if (converter.empty()) {
        ToolStatusLog = "No converter was found in the OIFTool folder (" + InToolFolder("oifconvert") + ").";
        return false;
    }
    const std::string command =
        PlatformCommand("\"" + converter + "\" " + direction + " \"" + source + "\" \"" + target + "\"");
    if (command.empty()) {
        ToolStatusLog = "Wine is needed to run " + converter + ".";
        return false;
    }
    char logName[] = "/tmp/terramason-convert-XXXXXX";
    const int fd = ::mkstemp(logName);
    if (fd >= 0) ::close(fd);
    const std::string logPath = fd >= 0 ? logName : std::string();

    Desktop& desktop = TheDesktop();
    std::error_code ec;
    const auto before = std::filesystem::exists(target, ec) ? std::filesystem::last_write_time(target, ec)
                                                            : std::filesystem::file_time_type::min();
    const std::int64_t pid = desktop.StartCapturedProcess(command, logPath);
    bool ended = pid != 0;
    if (ended) {
        const auto start = std::chrono::steady_clock::now();
        while (desktop.ProcessRunning(pid)) {
            PumpEvents();
            if (std::chrono::steady_clock::now() - start > std::chrono::milliseconds(ConverterTimeoutMs)) {
                desktop.EndProcess(pid);
                ended = false;
                break;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
    }
    std::ifstream log(logPath);
    std::ostringstream text;
    text << log.rdbuf();
    if (!logPath.empty()) std::remove(logPath.c_str());
    ToolStatusLog = text.str();
    if (pid == 0) {
        ToolStatusLog = "Could not start " + converter + ".";
        return false;
    }
    if (!ended) {
        ToolStatusLog += "The converter did not finish within 10 minutes and was stopped.";
        return false;
    }
    const bool made = std::filesystem::exists(target, ec) && (before == std::filesystem::file_time_type::min() ||
                                                              std::filesystem::last_write_time(target, ec) >= before);
    return desktop.ProcessExitCode(pid) == 0 && made;
}

}  // namespace

std::string ConverterProgram() {
    for (const char* name : {"oifconvert", "oifconvert.exe"}) {
        const std::string path = InToolFolder(name);
        if (FileExists(path)) return path;
    }
    return {};
}

namespace {
std::int64_t toolPid = 0;
}

void ToolStart() {
    StartProcess(InToolFolder("oiftool.exe"), WindowMode::Hidden);
    toolPid = StartedProcessId();
}

void CloseToolWindows() {
    if (toolPid != 0) TheDesktop().EndProcess(toolPid);
    toolPid = 0;
}

bool ToolConvertToOIF(const std::string& oPath, const std::string& oifPath) {
    return Convert("--to-oif", oPath, oifPath);
}

bool ToolConvertToO(const std::string& oifPath, const std::string& oPath) { return Convert("--to-o", oifPath, oPath); }

void ConvertOToOIF(const std::string& oPath, const std::string& oifPath) {
    ToolPath = ReadRegistry(OIFToolRegistryValue);
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
    ToolPath = ReadRegistry(OIFToolRegistryValue);
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
