// terramason-oifconvert.exe run under Wine against a stand-in OIFTool (FakeOIFTool.cpp) that
// records every call it gets, and the editor's .o import and save through it. The cases share
// one throwaway Wine prefix under the build tree.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <thread>

#include "core/OIFOps.h"
#include "core/ProgramState.h"
#include "editors/ImportOps.h"
#include "shell/SaveOps.h"
#include "shell/mdlOIFToolAuto.h"
#include "support/ScriptedDesktop.h"
#include "support/TestFiles.h"

namespace fs = std::filesystem;

namespace {

const std::string Prefix = TM_WINE_PREFIX;
const std::string ToolFolder = Prefix + "/drive_c/OIFTool";  // C:\OIFTool, where the stand-in is oiftool.exe
const std::string Bridge = (fs::read_symlink("/proc/self/exe").parent_path() / OIFToolBridgeName).string();

// Runs a shell command in the prefix, without the Mono and Gecko installers and Wine's chatter;
// its exit code out, its output in `output`.
int InPrefix(const std::string& command, std::string* output = nullptr) {
    const std::string out = Prefix + "-output.txt";
    const std::string line = "WINEPREFIX='" + Prefix + "' WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml=' " +
                             command + " >'" + out + "' 2>&1";
    const int status = std::system(line.c_str());
    if (output) *output = ReadText(out);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

int Register() { return InPrefix("wine regedit '" TM_TEST_PREFIX_REG "'"); }

std::vector<std::string> LogLines(const std::string& name) {
    std::istringstream in(ReadText(ToolFolder + "/" + name));
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line.substr(0, line.find('\r')));
    return lines;
}

// A line `times` times in one of the stand-in's logs, waited for a few seconds, since OIFTool's
// programs run on by themselves.
bool Appears(const std::string& log, const std::string& line, long times = 1) {
    for (int i = 0; i < 100; ++i) {
        const std::vector<std::string> lines = LogLines(log);
        if (std::count(lines.begin(), lines.end(), line) >= times) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    return false;
}

// A new prefix for every run, made before the first case and gone after the last: a prefix holds
// some 600 MB of Windows libraries, and nothing of an earlier run can then count.
class WinePrefix : public ::testing::Environment {
public:
    void SetUp() override {
        InPrefix("wineserver -k");
        fs::remove_all(Prefix);
        ASSERT_EQ(InPrefix("wineboot -i"), 0);
        fs::create_directories(ToolFolder);
        fs::copy_file(TM_FAKE_OIFTOOL, ToolFolder + "/oiftool.exe", fs::copy_options::overwrite_existing);
        ASSERT_EQ(Register(), 0);
        // Wine writes user.reg, where the editor reads OIFTool's install path, when it stops.
        InPrefix("wineserver -k");
    }
    // Nothing of Wine stays running, and nothing of the prefix stays on disk.
    void TearDown() override {
        InPrefix("wineserver -k");
        InPrefix("wineserver -w");
        fs::remove_all(Prefix);
        fs::remove(Prefix + "-output.txt");
    }
};
[[maybe_unused]] ::testing::Environment* const environment = ::testing::AddGlobalTestEnvironment(new WinePrefix);

class OIFToolBridge : public ::testing::Test {
protected:
    void SetUp() override { Clean(); }
    void TearDown() override { ResetProgramState(); }
    void Clean() {
        for (const char* file : {"calls.log", "starts.log", "fail", "hang"}) fs::remove(ToolFolder + "/" + file);
        fs::remove(Prefix + "/drive_c/out.dat");
        WriteFile(Prefix + "/drive_c/in.dat", {'m', 'o', 'd', 'e', 'l'});
    }
    void Mark(const std::string& mode) { WriteFile(ToolFolder + "/" + mode, {}); }
};

using Lines = std::vector<std::string>;
const Lines ToOIFStart = {"put WizIns.optConverttoOIF.value True", "call WizIns.GotoNextSlide",
                          "call WizIns.LoadPlugin fifastadadp",    "put WizIns.txtExpO C:\\in.dat",
                          "put WizIns.txtExpOIF C:\\out.dat",      "call WizIns.GotoNextSlide"};
const Lines ToOStart = {"put WizIns.optConverttoO.value True",    "call WizIns.GotoNextSlide",
                        "call WizIns.LoadPlugin fifastadadp",     "put WizIns.txtImpOIF C:\\in.dat",
                        "put WizIns.txtImpO C:\\out.dat",         "call WizIns.GotoNextSlide",
                        "put WizIns.optOFileAttached.value True", "call ShowWizard"};
// In both directions the Next button is read until it is enabled again: grey while OIFTool works.
const Lines Converted = {"get WizIns.cmdNext.Enabled False", "get WizIns.cmdNext.Enabled True",
                         "put WizIns.cmdNext.Enabled False", "call WizIns.Hide",
                         "get WizIns.LastSuccess True",      "release"};
const Lines Failed = {"get WizIns.cmdNext.Enabled False",
                      "get WizIns.cmdNext.Enabled True",
                      "put WizIns.cmdNext.Enabled False",
                      "call WizIns.Hide",
                      "get WizIns.LastSuccess False",
                      "get WizIns.txtExpProgress.text",
                      "release"};
const Lines GaveUp = {"get WizIns.cmdNext.Enabled False", "call WizIns.Hide", "get WizIns.txtExpProgress.text",
                      "release"};
std::string FailureLog(const std::string& source) {
    return "Plugin: fifastadadp\r\nReading " + source +
           "\r\nError: the model has no mesh chunk.\r\nNothing was written.\r\n";
}
const std::string HangLog =
    "OIFTool did not finish within 2 seconds; its wizard was hidden. Its log so far:\r\nConverting...\r\n";
const std::string Unregistered =
    "Could not start process: C:\\Nowhere\\oiftool.exe\r\nOIFTool is not registered in this Wine prefix: there is "
    "no automation server \"OIFTool.OIFToolLoader\". Install OIFTool in this prefix.\r\n";

// The calls in their order, the exit code and the output for a conversion, a failure, a wizard
// that never finishes, and an OIFTool that is not registered (which is never called).
TEST_F(OIFToolBridge, MakesOIFToolsCallsInTheirOrderAndReportsTheOutcome) {
    const struct {
        const char *direction, *mode;  // mode: the stand-in's marker, "" converts
        int exitCode;
        const Lines* end;
        std::string output;
    } cases[] = {
        {"--to-oif", "", 0, &Converted, ""},
        {"--to-o", "", 0, &Converted, ""},
        {"--to-oif", "fail", 1, &Failed, FailureLog("C:\\in.dat")},
        {"--to-o", "fail", 1, &Failed, FailureLog("C:\\in.dat")},
        {"--to-oif", "hang", 2, &GaveUp, HangLog},
        {"--to-o", "hang", 2, &GaveUp, HangLog},
        {"--to-oif", "unregistered", 3, nullptr, Unregistered},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.direction) + " " + c.mode);
        Clean();
        const bool registered = c.end;
        if (!registered) { ASSERT_EQ(InPrefix("wine reg delete 'HKCR\\OIFTool.OIFToolLoader' /f"), 0); }
        if (*c.mode && registered) Mark(c.mode);
        std::string output;
        const int code = InPrefix("wine '" + Bridge + "' --tool-folder 'C:\\" + (registered ? "OIFTool" : "Nowhere") +
                                      "' --timeout-seconds 2 " + c.direction + " 'C:\\in.dat' 'C:\\out.dat'",
                                  &output);
        if (!registered) { ASSERT_EQ(Register(), 0); }
        EXPECT_EQ(code, c.exitCode);
        EXPECT_EQ(output, c.output);
        EXPECT_EQ(fs::exists(Prefix + "/drive_c/out.dat"), c.exitCode == 0);
        if (!registered) {
            EXPECT_FALSE(fs::exists(ToolFolder + "/calls.log"));
            continue;
        }
        EXPECT_TRUE(Appears("calls.log", "release"));
        Lines calls = std::string(c.direction) == "--to-oif" ? ToOIFStart : ToOStart;
        calls.insert(calls.end(), c.end->begin(), c.end->end());
        EXPECT_EQ(LogLines("calls.log"), calls);
    }
}

// The editor's own path: registry, Wine command line, Windows paths, log capture and messages.
TEST_F(OIFToolBridge, TheEditorImportsAndSavesOFilesThroughIt) {
    ScratchFolder dir;
    ScriptedDesktop desktop;
    desktop.winePrefix = Prefix;
    desktop.runProcesses = true;
    AppFolder = dir.file("app");
    fs::create_directories(AppFolder);
    OIFPart part;
    part.Header.Texture = "tp01";
    // The stand-in copies bytes, so an .oif file's bytes stand for a model.
    OIFFile model = AddPart(part, NewOIFFile());
    WriteFile(dir.file("stadium.o"), SaveOIF(model));
    desktop.dialogAnswers = {dir.file("stadium.o")};
    importfile();
    EXPECT_TRUE(desktop.messages.empty());
    ASSERT_EQ(CurrentProject.OIF.Parts.size(), 1u);
    EXPECT_EQ(CurrentProject.OIF.Parts[0].Header.Texture.str(), "tp01");
    std::string windowsDir = "Z:" + fs::canonical(dir.path()).string();
    std::replace(windowsDir.begin(), windowsDir.end(), '/', '\\');
    EXPECT_EQ(desktop.commands, Lines{"env \"WINEPREFIX=" + Prefix + "\" WINEDEBUG=-all wine \"" + Bridge +
                                      "\" --tool-folder \"C:\\OIFTool\" --to-oif \"" + windowsDir + "\\stadium.o\" \"" +
                                      windowsDir + "\\app\\tempoif.oif\""});
    const std::string toolStart = "start \"C:\\OIFTool\\oiftool.exe\" hidden";
    EXPECT_TRUE(Appears("starts.log", toolStart));

    desktop.dialogAnswers = {dir.file("saved.o")};
    exportoif();
    EXPECT_TRUE(desktop.messages.empty());
    EXPECT_EQ(ReadFile(dir.file("saved.o")), ReadFile(AppFolder + "/temp.oif"));
    // The next save finds the hand-over file and closes the OIFTool that the last run left.
    ASSERT_TRUE(Appears("starts.log", toolStart, 2));
    desktop.dialogAnswers = {dir.file("saved.o")};
    desktop.answers = {MessageAnswer::Yes};
    exportoif();
    EXPECT_TRUE(Appears("starts.log", "closed"));

    Mark("fail");
    ConvertOToOIF(dir.file("stadium.o"), dir.file("failed.oif"));
    ASSERT_EQ(desktop.messages.size(), 2u);
    EXPECT_EQ(desktop.messages[1].text, "Failed, Status log: \r\n" + FailureLog(windowsDir + "\\stadium.o"));
}

}  // namespace
