#include "core/ProgramState.h"

StadiumProject CurrentProject;
std::vector<StadiumRow> StadiumCatalogue;
bool PreviewRefreshOn = true;
std::string ToolStatusLog;
std::string ToolPath;
std::string AppFolder;

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
