#include <gtest/gtest.h>

#include <filesystem>

#include "core/ProgramState.h"
#include "shell/Processes.h"
#include "shell/ToolsOps.h"
#include "shell/mdlOIFToolAuto.h"
#include "support/ScriptedDesktop.h"
#include "support/TestFiles.h"

namespace fs = std::filesystem;

namespace {

constexpr OutsideTool EveryTool[] = {OutsideTool::OEdit, OutsideTool::OIFTool, OutsideTool::ZModeler,
                                     OutsideTool::Rhinoceros, OutsideTool::ConvRav};

class OutsideTools : public ::testing::Test {
protected:
    void SetUp() override {
        AppFolder = dir.file("app");
        fs::create_directories(AppFolder);
    }
    void TearDown() override { AppFolder.clear(); }
    std::string Touch(const std::string& relative) {
        const std::string path = dir.file(relative);
        fs::create_directories(fs::path(path).parent_path());
        WriteFile(path, {'M', 'Z'});
        return path;
    }
    // Registers every tool, as a machine with all of them would.
    void RegisterAll() {
        desktop.registry[OEditRegistryValue] = dir.file("OEdit/oedit.exe");
        desktop.registry[OIFToolRegistryValue] = dir.file("OIFTool");
        desktop.registry[ZModelerRegistryValue] = dir.file("ZModeler/");
        desktop.registry["HKEY_LOCAL_MACHINE\\SOFTWARE\\McNeel\\Rhinoceros\\3.0\\MostRecent"] = "3.0";
        desktop.registry["HKEY_LOCAL_MACHINE\\SOFTWARE\\McNeel\\Rhinoceros\\3.0\\Install\\Path"] = dir.file("Rhino");
    }
    ScratchFolder dir;
    ScriptedDesktop desktop;
};

}  // namespace

TEST_F(OutsideTools, CommandLinesFollowTheRegistry) {
    RegisterAll();
    Touch("Rhino/rhino3.exe");
    EXPECT_EQ(ToolCommandLine(OutsideTool::OEdit), "\"" + dir.file("OEdit/oedit.exe") + "\" /rgbemulation");
    EXPECT_EQ(ToolCommandLine(OutsideTool::OIFTool), "\"" + dir.file("OIFTool/oiftool.exe") + "\" /run");
    EXPECT_EQ(ToolCommandLine(OutsideTool::ZModeler), "\"" + dir.file("ZModeler/zmodeler.exe") + "\"")
        << "a folder that ends in a separator gets no second one";
    EXPECT_EQ(ToolCommandLine(OutsideTool::Rhinoceros), "\"" + dir.file("Rhino/rhino3.exe") + "\"");
    EXPECT_EQ(ToolCommandLine(OutsideTool::ConvRav), "\"" + AppFolder + "/Tools/convrav.exe\"");
}

TEST_F(OutsideTools, MissingRegistryValuesGiveNoProgram) {
    for (OutsideTool tool :
         {OutsideTool::OEdit, OutsideTool::OIFTool, OutsideTool::ZModeler, OutsideTool::Rhinoceros}) {
        EXPECT_EQ(ToolProgram(tool), "") << int(tool);
        EXPECT_EQ(ToolCommandLine(tool), "") << int(tool);
        EXPECT_FALSE(ToolInstalled(tool)) << int(tool);
    }
}

TEST_F(OutsideTools, InstalledMeansTheProgramFileExists) {
    RegisterAll();
    for (OutsideTool tool : EveryTool) EXPECT_FALSE(ToolInstalled(tool)) << "registered but not there: " << int(tool);

    Touch("OEdit/oedit.exe");
    Touch("OIFTool/oiftool.exe");
    Touch("ZModeler/zmodeler.exe");
    Touch("Rhino/rhino3.exe");
    Touch("app/Tools/convrav.exe");
    for (OutsideTool tool : EveryTool) EXPECT_TRUE(ToolInstalled(tool)) << int(tool);

    // A folder named like the program is no program.
    desktop.registry[OEditRegistryValue] = dir.file("OEdit");
    EXPECT_FALSE(ToolInstalled(OutsideTool::OEdit));
}

TEST_F(OutsideTools, AMissingToolIsPassedOverWithoutAWord) {
    RegisterAll();
    for (OutsideTool tool : EveryTool) StartTool(tool);
    EXPECT_TRUE(desktop.commands.empty());
    EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(OutsideTools, AnInstalledToolStartsThroughWineOrNotAtAll) {
    RegisterAll();
    Touch("OIFTool/oiftool.exe");
    desktop.startedId = 4242;
    StartTool(OutsideTool::OIFTool);
    if (WineInstalled())
        EXPECT_EQ(desktop.commands, std::vector<std::string>{"wine \"" + dir.file("OIFTool/oiftool.exe") + "\" /run"});
    else EXPECT_TRUE(desktop.commands.empty()) << "a Windows program cannot run without Wine";
    EXPECT_TRUE(desktop.messages.empty());
}
