// Outside programs: the registry of the Wine prefix, the tools it names, starting and waiting
// for programs, and the facts of the system.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <thread>

#include "shell/Processes.h"
#include "shell/ProjectTestKit.h"
#include "shell/RegistryOps.h"
#include "shell/SystemInfoOps.h"
#include "shell/ToolsOps.h"
#include "shell/mdlOIFToolAuto.h"

namespace fs = std::filesystem;

namespace {
const char* SystemReg = R"(WINE REGISTRY Version 2
;; All keys relative to \\Machine

[Software\\EA SPORTS\\FIFA 2003] 1700000000
#time=1d9a8b7c6d5e4f3
"Install Dir"="C:\\Program Files\\EA SPORTS\\FIFA 2003\\"
"Language"="English"

[Software\\Problems Inc\\OEdit] 1700000000
"Runs"=dword:0000002a
@="default \"quoted\" text"

[Software\\Wow6432Node\\McNeel\\Rhinoceros\\3.0] 1700000000
"MostRecent"="3.0"
)";

const char* UserReg =
    "WINE REGISTRY Version 2\r\n\r\n[Software\\\\Problems Inc\\\\OIFTool] 1700000000\r\n"
    "\"InstallPath\"=\"C:\\\\Tools\\\\OIFTool\"\r\n";
}  // namespace

TEST(RegistryFiles, WindowsAndLocalPathsMeetThroughThePrefixsDrives) {
    ScratchFolder dir;
    const std::string prefix = dir.file("wine");
    fs::create_directories(prefix + "/drive_c/Program Files/EA Sports/FIFA 2003/data");
    fs::create_directories(prefix + "/drive_c/OIFTool");
    fs::create_directories(dir.file("games/fifa/Setup"));
    EXPECT_EQ(LocalPathToWindows(prefix + "/drive_c/OIFTool", prefix), "") << "a prefix without drives";
    // Windows to local matches the case of what exists; elements that do not keep theirs.
    const std::pair<std::string, std::string> toLocal[] = {
        {"C:\\Program Files\\EA SPORTS\\FIFA 2003\\", prefix + "/drive_c/Program Files/EA Sports/FIFA 2003/"},
        {"c:\\program files\\ea sports\\fifa 2003\\DATA", prefix + "/drive_c/Program Files/EA Sports/FIFA 2003/data"},
        {"C:\\Games\\New", prefix + "/drive_c/Games/New"},
        {"3.0", "3.0"},
        {"/home/me/fifa", "/home/me/fifa"}};
    for (const auto& [windows, local] : toLocal) EXPECT_EQ(WindowsPathToLocal(windows, prefix), local) << windows;
    fs::create_directories(prefix + "/dosdevices");
    fs::create_directory_symlink("../drive_c", prefix + "/dosdevices/c:");
    fs::create_directory_symlink(dir.file("games"), prefix + "/dosdevices/g:");
    fs::create_directory_symlink("/", prefix + "/dosdevices/z:");
    std::string root = fs::canonical(dir.path()).string();
    std::replace(root.begin(), root.end(), '/', '\\');
    EXPECT_EQ(WindowsPathToLocal("G:\\fifa\\setup", prefix), prefix + "/dosdevices/g:/fifa/Setup");
    // Local to Windows takes the closest drive, and back again for the paths that exist.
    const std::pair<std::string, std::string> toWindows[] = {
        {prefix + "/drive_c/OIFTool", "C:\\OIFTool"},
        {prefix + "/drive_c", "C:\\"},
        {prefix + "/drive_c/OIFTool/new.oif", "C:\\OIFTool\\new.oif"},
        {dir.file("games/fifa/../fifa"), "G:\\fifa"},
        {dir.file("wine/drive_cc/x"), "Z:" + root + "\\wine\\drive_cc\\x"},
    };
    for (const auto& [local, windows] : toWindows) {
        EXPECT_EQ(LocalPathToWindows(local, prefix), windows) << local;
        if (fs::exists(local)) { EXPECT_TRUE(fs::equivalent(WindowsPathToLocal(windows, prefix), local)) << local; }
    }
}

// Values of the hives: strings, dwords and default values, keys and names in any case but whole.
TEST(RegistryFiles, UserFileComesFirstThenThePrefixHives) {
    FakeMachine m;
    const std::string file = RegistryFilePath(), lm = "HKEY_LOCAL_MACHINE\\SOFTWARE\\";
    m.Text(m.prefix + "/system.reg", SystemReg);
    m.Text(m.prefix + "/user.reg", UserReg);  // CR LF
    const std::string oiftool = "HKEY_CURRENT_USER\\Software\\Problems Inc\\OIFTool\\InstallPath";
    const std::string language = lm + "EA SPORTS\\FIFA 2003\\Language";
    const std::pair<std::string, std::string> before[] = {
        {oiftool, m.prefix + "/drive_c/Tools/OIFTool"},
        {language, "English"},
        {"hkey_local_machine\\software\\problems inc\\oedit\\runs", "42"},
        {lm + "Problems Inc\\OEdit\\@", "default \"quoted\" text"},
        {lm + "EA SPORTS\\Install Dir", ""},
        {lm + "EA SPORTS\\FIFA 2003\\Missing", ""},
        {"HKEY_CURRENT_USER\\SOFTWARE\\EA SPORTS\\FIFA 2003\\Language", ""},  // not in the machine's hive
        {lm + "McNeel\\Rhinoceros\\3.0\\MostRecent", "3.0"},                  // 32-bit keys of a 64-bit prefix
    };
    for (const auto& [path, value] : before) EXPECT_EQ(LinuxRegistryValue(path, file, m.prefix), value) << path;
    m.Text(file, "# my tools\n" + oiftool + " = /opt/oiftool\nbroken line without equals\n");
    EXPECT_EQ(LinuxRegistryValue(oiftool, file, m.prefix), "/opt/oiftool");
    EXPECT_EQ(LinuxRegistryValue(lm + "Nobody\\Value", file, m.prefix), "");
    EXPECT_EQ(LinuxRegistryValue(language, file, ""), "") << "without a prefix only the file counts";
    EXPECT_EQ(LinuxRegistryValue("NoHive", file, m.prefix), "");
}

TEST(OutsideTools, CommandLinesFollowTheRegistryAndOnlyExistingProgramsStart) {
    FakeMachine m;
    m.desktop.runProcesses = false;
    m.desktop.winePrefix.clear();
    const std::string rhino = "HKEY_LOCAL_MACHINE\\SOFTWARE\\McNeel\\Rhinoceros\\3.0\\";
    const struct {
        OutsideTool tool;
        std::string registryKey, registered, program, arguments;
    } tools[] = {
        {OutsideTool::OEdit, OEditRegistryValue, "OEdit/oedit.exe", "OEdit/oedit.exe", " /rgbemulation"},
        {OutsideTool::OIFTool, OIFToolRegistryValue, "OIFTool", "OIFTool/oiftool.exe", " /run"},
        {OutsideTool::ZModeler, ZModelerRegistryValue, "ZModeler/", "ZModeler/zmodeler.exe",
         ""},  // no second separator
        {OutsideTool::Rhinoceros, rhino + "Install\\Path", "Rhino", "Rhino/rhino3.exe", ""},
        {OutsideTool::ConvRav, "", "", "app/Tools/convrav.exe", ""},
    };
    for (const auto& t : tools)
        if (!t.registered.empty()) { EXPECT_EQ(ToolProgram(t.tool) + ToolCommandLine(t.tool), "") << t.program; }
    EXPECT_EQ(FifaInstallDir(), "/");
    m.desktop.registry = {{rhino + "MostRecent", "3.0"},
                          {"HKEY_LOCAL_MACHINE\\SOFTWARE\\EA SPORTS\\FIFA 2003\\Install Dir", "/games/fifa"}};
    for (const auto& t : tools)
        if (!t.registered.empty()) m.desktop.registry[t.registryKey] = m.dir.file(t.registered);
    EXPECT_EQ(FifaInstallDir(), "/games/fifa/");
    for (const auto& t : tools) {
        EXPECT_FALSE(ToolInstalled(t.tool)) << "registered but not there: " << t.program;
        StartTool(t.tool);
        m.Text(m.dir.file(t.program), "MZ");
        EXPECT_TRUE(ToolInstalled(t.tool)) << t.program;
        EXPECT_EQ(ToolCommandLine(t.tool), "\"" + m.dir.file(t.program) + "\"" + t.arguments);
    }
    EXPECT_EQ(RhinoExecutable(), m.dir.file("Rhino/rhino3.exe"));
    EXPECT_TRUE(m.desktop.commands.empty() && m.desktop.messages.empty()) << "a missing tool is passed over";
    StartTool(OutsideTool::OIFTool);
    EXPECT_EQ(m.desktop.commands, WineInstalled()
                                      ? std::vector<std::string>{"wine " + ToolCommandLine(OutsideTool::OIFTool)}
                                      : std::vector<std::string>{})
        << "a Windows program runs through Wine or not at all";
    m.desktop.registry[OEditRegistryValue] = m.dir.file("OEdit");
    EXPECT_FALSE(ToolInstalled(OutsideTool::OEdit)) << "a folder named like the program is no program";
}

TEST(Processes, CommandLinesSplitStartAndAreWaitedFor) {
    EXPECT_EQ(SplitCommandLine("\"/a b/gfxpak\" -e \"/t/x y.fsh\" tp00"),
              (std::vector<std::string>{"/a b/gfxpak", "-e", "/t/x y.fsh", "tp00"}));
    EXPECT_EQ(SplitCommandLine("  notepad   \"\"  "), (std::vector<std::string>{"notepad", ""}));
    EXPECT_TRUE(SplitCommandLine("   ").empty());
    EXPECT_EQ(PlatformCommand("\"/usr/bin/true\" x"), "\"/usr/bin/true\" x");
    EXPECT_EQ(PlatformCommand("\"C:/Tools/oedit.exe\" /x"), WineInstalled() ? "wine \"C:/Tools/oedit.exe\" /x" : "");
    FakeMachine m;
    m.desktop.runProcesses = false;
    StartProcess("   ", WindowMode::Normal);
    EXPECT_TRUE(m.desktop.commands.empty() && m.desktop.messages.empty()) << "a blank command starts nothing";
    StartProcess(" \"/no/such/program\" /run ", WindowMode::Normal);
    ASSERT_EQ(m.desktop.messages.size(), 1u);
    EXPECT_EQ(m.desktop.messages[0].title + "|" + m.desktop.messages[0].text,
              "Error|Could not start process: \"/no/such/program\" /run");
    EXPECT_EQ(StartedProcessId(), 0);

    m.desktop.runProcesses = true;
    const std::string tool = m.dir.file("slow"), hang = m.dir.file("hang");
    m.Script(tool, "sleep 0.3; echo done > \"$1\"");
    m.Script(hang, "sleep 30 & echo $! > \"$1\"; wait");
    EXPECT_TRUE(RunAndWait("\"" + tool + "\" \"" + m.dir.file("out") + "\"", WindowMode::Hidden));
    EXPECT_EQ(ReadText(m.dir.file("out")), "done\n");
    EXPECT_GE(m.desktop.pumps, 2) << "the event pump turns while waiting";
    EXPECT_FALSE(RunAndWait("\"" + tool + "\"", WindowMode::Maximised)) << "only hidden and normal start";
    EXPECT_FALSE(RunAndWait("/no/such/tool", WindowMode::Hidden));
    EXPECT_FALSE(RunAndWait("\"" + hang + "\" \"" + m.dir.file("child") + "\"", WindowMode::Hidden, 300));
    EXPECT_EQ(m.desktop.ended.size(), 1u) << "a program past its time is ended";
    std::string child = "/proc/" + ReadText(m.dir.file("child"));
    child.pop_back();  // the line's end
    auto gone = [&] {
        return ReadText(child + "/stat").find(") Z") != std::string::npos || !std::filesystem::exists(child);
    };
    for (int i = 0; i < 50 && !gone(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_TRUE(gone()) << "and what it started with it";
}

TEST(SystemFacts, NameTheSystemTheKernelAndTheMemory) {
    const std::set<std::string> installed = {"gnome-system-monitor", "kinfocenter"};
    std::vector<std::string> asked;
    EXPECT_EQ(FindSystemInfoTool([&](const std::string& name) {
                  asked.push_back(name);
                  return installed.count(name) > 0;
              }),
              "kinfocenter");
    EXPECT_EQ(asked.back(), "kinfocenter") << "it stops at the first it finds";
    EXPECT_EQ(FindSystemInfoTool([](const std::string&) { return false; }), "");
    const std::pair<const char*, const char*> names[] = {
        {"NAME=\"Debian GNU/Linux\"\nPRETTY_NAME=\"Debian GNU/Linux 12 (bookworm)\"\n",
         "Debian GNU/Linux 12 (bookworm)"},
        {"PRETTY_NAME=Arch Linux\r\n", "Arch Linux"},
        {"PRETTY_NAME='Void'\n", "Void"},
        {"NAME=Alpine\n#PRETTY_NAME=\"x\"\n", ""},
        {"", ""}};
    for (const auto& [text, name] : names) EXPECT_EQ(OsReleaseName(text), name) << text;
    const std::pair<const char*, const char*> memory[] = {{"MemTotal:        8029412 kB\nMemFree:  1 kB\n", "7.7 GB"},
                                                          {"MemFree:  1 kB\nMemTotal: 1048576 kB\n", "1.0 GB"},
                                                          {"MemTotal: lots\n", ""},
                                                          {"", ""}};
    for (const auto& [text, shown] : memory) EXPECT_EQ(TotalMemoryText(text), shown) << text;
    const std::vector<std::string> facts = SystemFacts();
    ASSERT_GE(facts.size(), 2u);
    EXPECT_EQ(facts[0].rfind("Operating system: ", 0), 0u) << facts[0];
    EXPECT_EQ(facts[1].rfind("Kernel: Linux ", 0), 0u) << facts[1];
}
