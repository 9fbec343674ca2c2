#include <gtest/gtest.h>

#include <sys/stat.h>
#include <filesystem>

#include "core/ProgramState.h"
#include "shell/Processes.h"
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

TEST(SplitCommandLine, GroupsQuotedPaths) {
    EXPECT_EQ(SplitCommandLine("\"/a b/gfxpak\" -e \"/t/x y.fsh\" tp00"),
              (std::vector<std::string>{"/a b/gfxpak", "-e", "/t/x y.fsh", "tp00"}));
    EXPECT_EQ(SplitCommandLine("  notepad   \"\"  "), (std::vector<std::string>{"notepad", ""}));
    EXPECT_TRUE(SplitCommandLine("   ").empty());
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
