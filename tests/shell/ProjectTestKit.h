#pragma once
// A fake machine for project and save tests: a Wine prefix whose registry names a game folder
// and an OIFTool folder, a game archive, and tool scripts that record how they were called.
#include <sys/stat.h>
#include <filesystem>
#include <string>

#include "core/ProgramState.h"
#include "shell/Startup.h"
#include "support/ScriptedDesktop.h"
#include "support/TestFiles.h"

struct FakeMachine {
    ScratchFolder dir;
    ScriptedDesktop desktop;
    std::string prefix = dir.file("wine"), game = prefix + "/drive_c/Program Files/EA SPORTS/FIFA 2003",
                oiftool = prefix + "/drive_c/Tools/OIFTool", log = dir.file("calls.log");

    FakeMachine() {
        AppFolder = dir.file("app");
        std::filesystem::create_directories(AppFolder);
        std::filesystem::create_directories(oiftool);
        desktop.winePrefix = prefix;
        desktop.runProcesses = true;
    }
    ~FakeMachine() { AppFolder.clear(); }

    void Text(const std::string& path, const std::string& text) {
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        WriteFile(path, std::vector<std::uint8_t>(text.begin(), text.end()));
    }
    void Script(const std::string& path, const std::string& body) {
        Text(path, "#!/bin/sh\n" + body + "\n");
        ::chmod(path.c_str(), 0755);
    }
    void InstallGame() {
        Text(prefix + "/system.reg",
             "WINE REGISTRY Version 2\n\n[Software\\\\EA SPORTS\\\\FIFA 2003] 1\n"
             "\"Install Dir\"=\"C:\\\\Program Files\\\\EA SPORTS\\\\FIFA 2003\"\n");
        // Installs for Windows spell their files in any case.
        Text(game + "/Data/Stad5.BIG", "BIGF five");
        Text(game + "/Data/stad58.big", "BIGF fifty-eight");
    }
    void RegisterOIFTool() {
        Text(prefix + "/user.reg",
             "WINE REGISTRY Version 2\n\n[Software\\\\Problems Inc\\\\OIFTool] 1\n"
             "\"InstallPath\"=\"C:\\\\Tools\\\\OIFTool\"\n");
    }
    // A converter that copies `made` to its target, or fails with a log when `made` is empty.
    void InstallConverter(const std::string& made) {
        Script(oiftool + "/oifconvert",
               "echo \"convert|$*\" >> '" + log + "'; " +
                   (made.empty() ? "echo 'Plugin fifastadadp: bad chunk'; exit 3" : "cp '" + made + "' \"$3\""));
    }
};

// The main window as the start drives it, each step it is asked for written down.
struct RecordingFrame : StartupFrame {
    std::vector<std::string> steps;
    std::vector<StadiumProject> recovered;
    void SetMaximised(bool maximised) override { steps.push_back(maximised ? "maximised" : "normal"); }
    void ShowFrame() override { steps.push_back("show"); }
    void ShowNewProject() override { steps.push_back("shownew"); }
    void EndProgram() override { steps.push_back("end"); }
    void OpenNamedFile(const std::string& path) override { steps.push_back("open " + path); }
    void RecoverProject(StadiumProject p) override { recovered.push_back(std::move(p)); }
};
