#include <gtest/gtest.h>

#include "core/ProgramState.h"
#include "shell/IniOps.h"
#include "shell/Startup.h"
#include "support/ScriptedDesktop.h"
#include "support/TestFiles.h"

namespace {

struct RecordingFrame : StartupFrame {
    std::vector<std::string> steps;
    void SetMaximised(bool maximised) override { steps.push_back(maximised ? "maximised" : "normal"); }
    void ShowFrame() override { steps.push_back("show"); }
    void ShowNewProject() override { steps.push_back("shownew"); }
    void EndProgram() override { steps.push_back("end"); }
    void OpenNamedFile(const std::string& path) override { steps.push_back("open " + path); }
    void RecoverProject(StadiumProject project) override {
        steps.push_back("recover " + project.Name);
        recovered = std::move(project);
    }
    StadiumProject recovered;
};

class Startup : public ::testing::Test {
protected:
    void SetUp() override { AppFolder = dir.path(); }
    void TearDown() override { AppFolder.clear(); }
    ScratchFolder dir;
    ScriptedDesktop desktop;
    RecordingFrame frame;
    using Steps = std::vector<std::string>;
};

}  // namespace

TEST_F(Startup, WithoutAConfigFileTheWindowOpensNormallyAndAsksNothing) {
    RunStartup(frame);
    EXPECT_EQ(frame.steps, (Steps{"normal", "show"}));
    EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(Startup, FollowsMaximiseAndNewProjectUnlessAFileIsNamed) {
    WriteConfig("Startup", "Maximise", "1");
    WriteConfig("Startup", "NewProj", "1");
    RunStartup(frame);
    EXPECT_EQ(frame.steps, (Steps{"maximised", "show", "shownew"}));
    frame.steps.clear();
    RunStartup(frame, "/home/me/stadium.oif");
    EXPECT_EQ(frame.steps, (Steps{"maximised", "show", "open /home/me/stadium.oif"}));
}

TEST_F(Startup, ViewerQuestionAnsweredNoIsAskedOnceAndStartUpGoesOn) {
    WriteConfig("Terramason", "Starter", "1");
    WriteConfig("Startup", "NewProj", "1");
    desktop.answers = {MessageAnswer::No};
    RunStartup(frame);
    ASSERT_EQ(desktop.messages.size(), 1u);
    const ShownMessage& q = desktop.messages[0];
    EXPECT_EQ(q.title, "Cortona VRML plugin needed");
    EXPECT_EQ(q.text,
              "You MUST download and install Cortona VRML plugin before you can use this program.\r\n\r\n"
              "Do you want to download this now?");
    EXPECT_EQ(q.icon, MessageIcon::Question);
    EXPECT_EQ(q.buttons, MessageButtons::YesNo);
    EXPECT_EQ(ReadConfig("Terramason", "Starter"), "0");
    EXPECT_TRUE(desktop.pages.empty());
    EXPECT_EQ(frame.steps, (Steps{"normal", "show", "shownew"}));

    RecordingFrame second;
    RunStartup(second);
    EXPECT_EQ(desktop.messages.size(), 1u) << "asked at most once";
}

TEST_F(Startup, ViewerQuestionAnsweredYesOpensThePageAndEndsTheProgram) {
    WriteConfig("Terramason", "Starter", "1");
    WriteConfig("Startup", "NewProj", "1");
    desktop.answers = {MessageAnswer::Yes};
    RunStartup(frame);
    EXPECT_EQ(desktop.pages, (std::vector<std::string>{ViewerDownloadAddress}));
    EXPECT_EQ(ReadConfig("Terramason", "Starter"), "0");
    EXPECT_EQ(frame.steps, (Steps{"normal", "show", "end"}));
}

TEST_F(Startup, QuitQuestionKeepsItsTrailingBlanks) {
    desktop.answers = {MessageAnswer::No, MessageAnswer::Yes};
    EXPECT_FALSE(ConfirmQuit());
    EXPECT_TRUE(ConfirmQuit());
    ASSERT_EQ(desktop.messages.size(), 2u);
    EXPECT_EQ(desktop.messages[0].text, "Are you sure you want to quit VORN Terramason?   ");
    EXPECT_EQ(desktop.messages[0].icon, MessageIcon::Exclamation);
    EXPECT_EQ(desktop.messages[0].title, "VORN Terramason");
}

TEST(PlaceMainWindow, HoldsThePreviewsWholeWithTheEditorBesideWhenThereIsRoom) {
    const PixelSize need{1019, 633}, chrome{4, 90};
    const struct {
        PixelSize screen;
        FramePlacement placed;
    } cases[] = {
        {{1920, 1080}, {1023 + 500, 723, false}},  // room for the editor beside
        {{1280, 1024}, {1023, 723, false}},        // the previews whole, the editor over them
        {{1023, 723}, {1023, 723, false}},         // exactly room
        {{1024, 700}, {1024, 700, true}},          // too low: maximised
        {{1000, 800}, {1000, 800, true}},          // too narrow: maximised
    };
    for (const auto& c : cases)
        EXPECT_EQ(PlaceMainWindow(need, 500, chrome, c.screen), c.placed) << c.screen.Width << "x" << c.screen.Height;
}

TEST(MainTitle, ShowsTheProjectOnceThereIsOne) {
    EXPECT_EQ(MainTitle(false, ""), "VORN Terramason");
    EXPECT_EQ(MainTitle(true, "Project1"), "VORN Terramason - [design] - [Project1]");
    EXPECT_EQ(MainTitle(true, ""), "VORN Terramason - [design] - []");
}
