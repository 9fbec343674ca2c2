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

// Puts every program-wide value back as it is at program start.
void ResetProgramState();
