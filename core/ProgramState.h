#pragma once
// The program-wide state: one project, the folder the program keeps its files in, and the few
// flags every subsystem reads. Single instances, alive for the whole run.
#include <string>
#include <vector>

#include "core/oif.h"

extern StadiumProject CurrentProject;
extern std::vector<StadiumRow> StadiumCatalogue;
extern bool PreviewRefreshOn;
extern std::string ToolStatusLog;
extern std::string ToolPath;
// The per-user folder of config.ini, the scratch folder "temp" and hand-over files; no trailing
// separator. Set once at start (tests set their own).
extern std::string AppFolder;

// AppFolder joined with a relative path such as "config.ini" or "temp/stad1.wrl".
std::string AppPath(const std::string& relative);

// The scratch folder of the project: "temp" in AppFolder, unless a batch run names another.
extern std::string TempFolderOverride;
std::string TempFolder();
// The per-user folder when nothing else is given: $XDG_DATA_HOME/terramason, else
// ~/.local/share/terramason.
std::string DefaultAppFolder();

// Puts every program-wide value back as it is at program start.
void ResetProgramState();
