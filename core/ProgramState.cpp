#include "core/ProgramState.h"

#include <cstdlib>

StadiumProject CurrentProject;
std::vector<StadiumRow> StadiumCatalogue;
bool PreviewRefreshOn = true;
std::string ToolStatusLog;
std::string ToolPath;
std::string AppFolder;

std::string TempFolderOverride;

std::string TempFolder() { return TempFolderOverride.empty() ? AppPath("temp") : TempFolderOverride; }

std::string DefaultAppFolder() {
    if (const char* data = std::getenv("XDG_DATA_HOME"); data && *data == '/') return std::string(data) + "/terramason";
    if (const char* home = std::getenv("HOME"); home && *home) return std::string(home) + "/.local/share/terramason";
    return "terramason";
}

std::string AppPath(const std::string& relative) {
    if (AppFolder.empty()) return relative;
    return AppFolder + "/" + relative;
}

void ResetProgramState() {
    CurrentProject = StadiumProject{};
    StadiumCatalogue.clear();
    PreviewRefreshOn = true;
    ToolStatusLog.clear();
    ToolPath.clear();
}
