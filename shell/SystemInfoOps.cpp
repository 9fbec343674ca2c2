#include "shell/SystemInfoOps.h"

#include <sys/utsname.h>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <thread>

const std::vector<std::string> SystemInfoTools = {
    "hardinfo2", "hardinfo", "kinfocenter", "gnome-system-monitor", "xfce4-taskmanager", "mate-system-monitor"};

std::string FindSystemInfoTool(const std::function<bool(const std::string&)>& installed) {
    for (const std::string& tool : SystemInfoTools)
        if (installed(tool)) return tool;
    return {};
}

namespace {

std::string FileText(const char* path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

}  // namespace

std::string OsReleaseName(const std::string& osRelease) {
    std::istringstream lines(osRelease);
    std::string line;
    while (std::getline(lines, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.rfind("PRETTY_NAME=", 0) != 0) continue;
        std::string value = line.substr(12);
        if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front())
            value = value.substr(1, value.size() - 2);
        return value;
    }
    return {};
}

std::string TotalMemoryText(const std::string& meminfo) {
    std::istringstream lines(meminfo);
    std::string line;
    while (std::getline(lines, line)) {
        if (line.rfind("MemTotal:", 0) != 0) continue;
        std::istringstream fields(line.substr(9));
        double kilobytes = 0;
        if (!(fields >> kilobytes)) return {};
        char text[32];
        std::snprintf(text, sizeof text, "%.1f GB", kilobytes / (1024.0 * 1024.0));
        return text;
    }
    return {};
}

std::vector<std::string> SystemFacts() {
    std::vector<std::string> facts;
    std::string os = OsReleaseName(FileText("/etc/os-release"));
    if (os.empty()) os = "Linux";
    facts.push_back("Operating system: " + os);
    utsname names{};
    if (::uname(&names) == 0)
        facts.push_back("Kernel: " + std::string(names.sysname) + " " + names.release + " (" + names.machine + ")");
    if (const unsigned cores = std::thread::hardware_concurrency(); cores > 0)
        facts.push_back("Processors: " + std::to_string(cores));
    if (const std::string memory = TotalMemoryText(FileText("/proc/meminfo")); !memory.empty())
        facts.push_back("Memory: " + memory);
    return facts;
}
