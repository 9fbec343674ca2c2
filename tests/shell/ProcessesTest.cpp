#include <gtest/gtest.h>

#include <sys/stat.h>
#include <filesystem>

#include "core/ProgramState.h"
#include "shell/fileOps.h"
#include "support/ScriptedDesktop.h"
#include "support/TestFiles.h"

namespace {
std::string Script(const ScratchFolder& dir, const std::string& name, const std::string& body) {
    const std::string path = dir.file(name);
    const std::string text = "#!/bin/sh\n" + body + "\n";
    WriteFile(path, std::vector<std::uint8_t>(text.begin(), text.end()));
    ::chmod(path.c_str(), 0755);
    return path;
}
}  // namespace

TEST(FileExtension, LooksOnlyAtTheLastPathElement) {
    EXPECT_EQ(FileExtension("stadium.OIF"), "oif");
    EXPECT_EQ(FileExtension("/home/me/v1.2/stadium"), "");
    EXPECT_EQ(FileExtension("C:\\v1.2\\stadium"), "");
    EXPECT_EQ(FileExtension("model.3ds"), "3ds");
    EXPECT_EQ(FileExtension("name."), "");
    EXPECT_EQ(FileExtension("archive.tar.gz"), "gz");
    EXPECT_EQ(FileExtension(""), "");
}

TEST(SplitCommandLine, GroupsQuotedPaths) {
    EXPECT_EQ(SplitCommandLine("\"/a b/gfxpak\" -e \"/t/x y.fsh\" tp00"),
              (std::vector<std::string>{"/a b/gfxpak", "-e", "/t/x y.fsh", "tp00"}));
    EXPECT_EQ(SplitCommandLine("  notepad   \"\"  "), (std::vector<std::string>{"notepad", ""}));
    EXPECT_TRUE(SplitCommandLine("   ").empty());
}

TEST(ToolFolders, GameFolderAlwaysEndsInASeparator) {
    ScriptedDesktop desktop;
    const std::string key = "HKEY_LOCAL_MACHINE\\SOFTWARE\\EA SPORTS\\FIFA 2003\\Install Dir";
    EXPECT_EQ(FifaInstallDir(), "/");
    desktop.registry[key] = "/games/fifa";
    EXPECT_EQ(FifaInstallDir(), "/games/fifa/");
    desktop.registry[key] = "/games/fifa/";
    EXPECT_EQ(FifaInstallDir(), "/games/fifa/");
}

TEST(ToolFolders, RhinocerosIsFoundOnlyWhenItsProgramExists) {
    ScriptedDesktop desktop;
    ScratchFolder dir;
    desktop.registry["HKEY_LOCAL_MACHINE\\SOFTWARE\\McNeel\\Rhinoceros\\3.0\\MostRecent"] = "3.0";
    desktop.registry["HKEY_LOCAL_MACHINE\\SOFTWARE\\McNeel\\Rhinoceros\\3.0\\Install\\Path"] = dir.path();
    EXPECT_EQ(RhinoExecutable(), "");
    WriteFile(dir.file("rhino3.exe"), {0});
    EXPECT_EQ(RhinoExecutable(), dir.file("rhino3.exe"));
}

TEST(StartProcess, BlankCommandsStartNothingAndFailuresAreTold) {
    ScriptedDesktop desktop;
    StartProcess("   ", WindowMode::Normal);
    EXPECT_TRUE(desktop.commands.empty());
    EXPECT_TRUE(desktop.messages.empty());
    StartProcess(" \"/no/such/program\" /run ", WindowMode::Normal);
    ASSERT_EQ(desktop.messages.size(), 1u);
    EXPECT_EQ(desktop.messages[0].text, "Could not start process: \"/no/such/program\" /run");
    EXPECT_EQ(desktop.messages[0].title, "Error");
    EXPECT_EQ(StartedProcessId(), 0);
}

TEST(StartProcess, WindowsProgramsNeedWine) {
    ScriptedDesktop desktop;
    desktop.runProcesses = true;
    const std::string command = PlatformCommand("\"C:/Tools/oedit.exe\" /rgbemulation");
    if (WineInstalled()) EXPECT_EQ(command, "wine \"C:/Tools/oedit.exe\" /rgbemulation");
    else EXPECT_EQ(command, "");
    EXPECT_EQ(PlatformCommand("\"/usr/bin/true\" x"), "\"/usr/bin/true\" x");
}

TEST(RunAndWait, WaitsForTheProgramWithTheWindowsAlive) {
    ScriptedDesktop desktop;
    desktop.runProcesses = true;
    ScratchFolder dir;
    const std::string tool = Script(dir, "slow", "sleep 0.3; echo done > \"$1\"");
    EXPECT_TRUE(RunAndWait("\"" + tool + "\" \"" + dir.file("out") + "\"", WindowMode::Hidden));
    EXPECT_EQ(ReadText(dir.file("out")), "done\n");
    EXPECT_GE(desktop.pumps, 2) << "the event pump turns while waiting";
    EXPECT_FALSE(RunAndWait("\"" + tool + "\"", WindowMode::Maximised)) << "only hidden and normal start";
    EXPECT_FALSE(RunAndWait("/no/such/tool", WindowMode::Hidden));
    const std::string hang = Script(dir, "hang", "sleep 30");
    EXPECT_FALSE(RunAndWait("\"" + hang + "\"", WindowMode::Hidden, 200));
    EXPECT_EQ(desktop.ended.size(), 1u) << "a program past its time is ended";
}

TEST(TextFiles, ReadAllLinesAndAppendFile) {
    ScratchFolder dir;
    const std::string text = "first\r\nsecond\n\nlast";
    WriteFile(dir.file("a.txt"), std::vector<std::uint8_t>(text.begin(), text.end()));
    EXPECT_EQ(ReadAllLines(dir.file("a.txt")), (std::vector<std::string>{"first", "second", "", "last"}));
    EXPECT_TRUE(ReadAllLines(dir.file("missing.txt")).empty());
    WriteFile(dir.file("b.txt"), {'X'});
    AppendFile(dir.file("a.txt"), dir.file("b.txt"));
    EXPECT_EQ(ReadText(dir.file("b.txt")), "X" + text);
    EXPECT_THROW(AppendFile(dir.file("missing.txt"), dir.file("b.txt")), std::runtime_error);
}
