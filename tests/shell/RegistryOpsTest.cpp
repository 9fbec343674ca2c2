#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "core/ProgramState.h"
#include "shell/RegistryOps.h"
#include "support/ScriptedDesktop.h"
#include "support/TestFiles.h"

namespace fs = std::filesystem;

namespace {
void WriteText(const std::string& path, const std::string& text) {
    fs::create_directories(fs::path(path).parent_path());
    WriteFile(path, std::vector<std::uint8_t>(text.begin(), text.end()));
}

const char* SystemReg = R"(WINE REGISTRY Version 2
;; All keys relative to \\Machine

#arch=win32

[Software\\EA SPORTS\\FIFA 2003] 1700000000
#time=1d9a8b7c6d5e4f3
"Install Dir"="C:\\Program Files\\EA SPORTS\\FIFA 2003\\"
"Language"="English"

[Software\\Problems Inc\\OEdit] 1700000000
"Install Path"="C:\\Tools\\OEdit\\oedit.exe"
"Runs"=dword:0000002a
@="default \"quoted\" text"

[Software\\Wow6432Node\\McNeel\\Rhinoceros\\3.0] 1700000000
"MostRecent"="3.0"
)";

const char* UserReg =
    "WINE REGISTRY Version 2\r\n\r\n[Software\\\\Problems Inc\\\\OIFTool] 1700000000\r\n"
    "\"InstallPath\"=\"C:\\\\Tools\\\\OIFTool\"\r\n";
}  // namespace

TEST(RegistryFiles, FindStringsDwordsAndDefaultValuesIgnoringCase) {
    std::string v;
    ASSERT_TRUE(FindRegValue(SystemReg, "SOFTWARE\\EA SPORTS\\FIFA 2003", "Install Dir", v));
    EXPECT_EQ(v, "C:\\Program Files\\EA SPORTS\\FIFA 2003\\");
    ASSERT_TRUE(FindRegValue(SystemReg, "software\\problems inc\\oedit", "runs", v));
    EXPECT_EQ(v, "42");
    ASSERT_TRUE(FindRegValue(SystemReg, "Software\\Problems Inc\\OEdit", "@", v));
    EXPECT_EQ(v, "default \"quoted\" text");
    EXPECT_FALSE(FindRegValue(SystemReg, "Software\\EA SPORTS", "Install Dir", v)) << "keys match whole";
    EXPECT_FALSE(FindRegValue(SystemReg, "Software\\EA SPORTS\\FIFA 2003", "Missing", v));
    EXPECT_FALSE(FindRegValue("", "a", "b", v));
    ASSERT_TRUE(FindRegValue(UserReg, "Software\\Problems Inc\\OIFTool", "InstallPath", v)) << "CR LF files";
    EXPECT_EQ(v, "C:\\Tools\\OIFTool");
}

TEST(RegistryFiles, WindowsPathsBecomePathsInsideThePrefixMatchingCase) {
    ScratchFolder dir;
    const std::string prefix = dir.file("wine");
    fs::create_directories(prefix + "/drive_c/Program Files/EA Sports/FIFA 2003/data");
    EXPECT_EQ(WindowsPathToLocal("C:\\Program Files\\EA SPORTS\\FIFA 2003\\", prefix),
              prefix + "/drive_c/Program Files/EA Sports/FIFA 2003/");
    EXPECT_EQ(WindowsPathToLocal("c:\\program files\\ea sports\\fifa 2003\\DATA", prefix),
              prefix + "/drive_c/Program Files/EA Sports/FIFA 2003/data");
    // Elements that do not exist keep the case they were given.
    EXPECT_EQ(WindowsPathToLocal("C:\\Games\\New", prefix), prefix + "/drive_c/Games/New");
    EXPECT_EQ(WindowsPathToLocal("3.0", prefix), "3.0");
    EXPECT_EQ(WindowsPathToLocal("/home/me/fifa", prefix), "/home/me/fifa");
    // Other drives go through the prefix's drive links.
    fs::create_directories(dir.file("dvd/Setup"));
    fs::create_directories(prefix + "/dosdevices");
    fs::create_directory_symlink(dir.file("dvd"), prefix + "/dosdevices/d:");
    EXPECT_EQ(WindowsPathToLocal("D:\\setup", prefix), prefix + "/dosdevices/d:/Setup");
}

TEST(RegistryFiles, LocalPathsBecomePathsOnThePrefixsClosestDrive) {
    ScratchFolder dir;
    const std::string prefix = dir.file("wine");
    fs::create_directories(prefix + "/drive_c/OIFTool");
    fs::create_directories(dir.file("games/fifa"));
    EXPECT_EQ(LocalPathToWindows(prefix + "/drive_c/OIFTool", prefix), "") << "a prefix without drives";
    fs::create_directories(prefix + "/dosdevices");
    fs::create_directory_symlink("../drive_c", prefix + "/dosdevices/c:");
    fs::create_directory_symlink(dir.file("games"), prefix + "/dosdevices/g:");
    fs::create_directory_symlink("/", prefix + "/dosdevices/z:");
    std::string root = fs::canonical(dir.path()).string();
    std::replace(root.begin(), root.end(), '/', '\\');
    const struct {
        std::string local, windows;
    } cases[] = {
        {prefix + "/drive_c/OIFTool", "C:\\OIFTool"},
        {prefix + "/drive_c", "C:\\"},
        {prefix + "/drive_c/OIFTool/new.oif", "C:\\OIFTool\\new.oif"},
        {dir.file("games/fifa/../fifa"), "G:\\fifa"},
        {dir.file("games/fifa/model.o"), "G:\\fifa\\model.o"},
        {dir.file("wine/drive_cc/x"), "Z:" + root + "\\wine\\drive_cc\\x"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(LocalPathToWindows(c.local, prefix), c.windows) << c.local;
        // And back again, for the paths that exist.
        if (fs::exists(c.local)) {
            EXPECT_TRUE(fs::equivalent(WindowsPathToLocal(c.windows, prefix), c.local)) << c.local;
        }
    }
}

TEST(RegistryFiles, UserFileComesFirstThenThePrefixHives) {
    ScratchFolder dir;
    AppFolder = dir.path();
    const std::string prefix = dir.file("wine");
    WriteText(prefix + "/system.reg", SystemReg);
    WriteText(prefix + "/user.reg", UserReg);
    const std::string file = RegistryFilePath();
    EXPECT_EQ(LinuxRegistryValue("HKEY_CURRENT_USER\\Software\\Problems Inc\\OIFTool\\InstallPath", file, prefix),
              prefix + "/drive_c/Tools/OIFTool");
    EXPECT_EQ(LinuxRegistryValue("HKEY_LOCAL_MACHINE\\SOFTWARE\\EA SPORTS\\FIFA 2003\\Language", file, prefix),
              "English");
    // HKEY_CURRENT_USER values are not looked for in the machine's hive.
    EXPECT_EQ(LinuxRegistryValue("HKEY_CURRENT_USER\\SOFTWARE\\EA SPORTS\\FIFA 2003\\Language", file, prefix), "");
    EXPECT_EQ(LinuxRegistryValue("HKEY_LOCAL_MACHINE\\SOFTWARE\\McNeel\\Rhinoceros\\3.0\\MostRecent", file, prefix),
              "3.0")
        << "32-bit keys of a 64-bit prefix";
    WriteText(file,
              "# where my tools are\nHKEY_CURRENT_USER\\Software\\Problems Inc\\OIFTool\\InstallPath = /opt/oiftool\n"
              "broken line without equals\n");
    EXPECT_EQ(LinuxRegistryValue("HKEY_CURRENT_USER\\Software\\Problems Inc\\OIFTool\\InstallPath", file, prefix),
              "/opt/oiftool");
    EXPECT_EQ(LinuxRegistryValue("HKEY_LOCAL_MACHINE\\SOFTWARE\\Nobody\\Value", file, prefix), "");
    EXPECT_EQ(LinuxRegistryValue("HKEY_LOCAL_MACHINE\\SOFTWARE\\EA SPORTS\\FIFA 2003\\Language", file, ""), "")
        << "without a prefix only the file counts";
    EXPECT_EQ(LinuxRegistryValue("NoHive", file, prefix), "");
    AppFolder.clear();
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
