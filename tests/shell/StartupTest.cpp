// The start of the program, the main window's place and title, and the shell's own commands.
#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>

#include "core/ProgramState.h"
#include "core/Views.h"
#include "shell/CommandOps.h"
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
    void RecoverProject(StadiumProject) override {}
};

// Views with a selection of their own that log what a command asked of them.
struct RecordingViews : Views {
    std::vector<bool> selection;
    std::vector<std::string> calls;
    bool flagDuringRebuild = false, throwOnRebuild = false;
    std::vector<bool> SelectedParts() override { return selection; }
    void RefreshPartsList() override { calls.push_back("RefreshPartsList"); }
    void RebuildPreviews() override {
        calls.push_back("RebuildPreviews");
        flagDuringRebuild = PreviewRefreshOn;
        if (throwOnRebuild) throw std::runtime_error("The preview file cannot be written.");
    }
};

using Steps = std::vector<std::string>;

}  // namespace

TEST(Startup, FollowsTheSettingsAsksForTheViewerOnceAndOpensANamedFile) {
    const struct {
        const char *maximise, *newProject, *starter, *file;
        std::vector<MessageAnswer> answers;
        Steps steps;
        std::vector<std::string> pages;
    } cases[] = {
        {"", "", "", "", {}, {"normal", "show"}, {}},
        {"1", "1", "0", "", {}, {"maximised", "show", "shownew"}, {}},
        {"1", "1", "0", "/home/me/stadium.oif", {}, {"maximised", "show", "open /home/me/stadium.oif"}, {}},
        {"0", "1", "1", "", {MessageAnswer::No}, {"normal", "show", "shownew"}, {}},
        {"0", "1", "1", "", {MessageAnswer::Yes}, {"normal", "show", "end"}, {ViewerDownloadAddress}},
    };
    for (const auto& c : cases) {
        ScratchFolder dir;
        AppFolder = dir.path();
        ScriptedDesktop desktop;
        if (*c.maximise) WriteConfig("Startup", "Maximise", c.maximise);
        if (*c.newProject) WriteConfig("Startup", "NewProj", c.newProject);
        if (*c.starter) WriteConfig("Terramason", "Starter", c.starter);
        desktop.answers = {c.answers.begin(), c.answers.end()};
        RecordingFrame frame;
        RunStartup(frame, c.file);
        EXPECT_EQ(frame.steps, c.steps);
        EXPECT_EQ(desktop.pages, c.pages);
        ASSERT_EQ(desktop.messages.size(), c.answers.size());
        if (!c.answers.empty()) {
            const ShownMessage& q = desktop.messages[0];
            EXPECT_EQ(q.title, "Cortona VRML plugin needed");
            EXPECT_EQ(q.text,
                      "You MUST download and install Cortona VRML plugin before you can use this program.\r\n\r\n"
                      "Do you want to download this now?");
            EXPECT_EQ(q.buttons, MessageButtons::YesNo);
            EXPECT_EQ(ReadConfig("Terramason", "Starter"), "0");
            RunStartup(frame);
            EXPECT_EQ(desktop.messages.size(), 1u) << "asked at most once";
        }
        AppFolder.clear();
    }
}

TEST(Startup, QuitQuestionKeepsItsTrailingBlanks) {
    ScriptedDesktop desktop;
    desktop.answers = {MessageAnswer::No, MessageAnswer::Yes};
    EXPECT_FALSE(ConfirmQuit());
    EXPECT_TRUE(ConfirmQuit());
    ASSERT_EQ(desktop.messages.size(), 2u);
    EXPECT_EQ(desktop.messages[0].text, "Are you sure you want to quit VORN Terramason?   ");
    EXPECT_EQ(desktop.messages[0].icon, MessageIcon::Exclamation);
    EXPECT_EQ(desktop.messages[0].title, "VORN Terramason");
}

TEST(PlaceMainWindow, HoldsThePreviewsWholeWithTheEditorBesideWhenThereIsRoom) {
    const struct {
        PixelSize screen;
        FramePlacement placed;
    } cases[] = {
        {{1920, 1080}, {1023 + 500, 723, false}},  // room for the editor beside
        {{1280, 1024}, {1280, 723, false}},        // the previews whole, the editor over as little as can be
        {{1023, 723}, {1023, 723, false}},         // exactly room
        {{1024, 700}, {1024, 700, true}},          // too low: maximised
        {{1000, 800}, {1000, 800, true}},          // too narrow: maximised
    };
    for (const auto& c : cases)
        EXPECT_EQ(PlaceMainWindow({1019, 633}, 500, {4, 90}, c.screen), c.placed) << c.screen.Width;
    EXPECT_EQ(MainTitle(false, ""), "VORN Terramason");
    EXPECT_EQ(MainTitle(true, "Project1"), "VORN Terramason - [design] - [Project1]");
    EXPECT_EQ(MainTitle(true, ""), "VORN Terramason - [design] - []");
}

TEST(EditUpdate, FollowsTheFocusedControlAndTheClipboard) {
    const struct {
        ControlKind kind;
        bool text, picture;
        EditCommandState expected;
    } cases[] = {
        {ControlKind::TextBox, true, false, {true, true, true}},
        {ControlKind::TextBox, false, true, {true, true, false}},
        {ControlKind::ComboBox, true, false, {true, true, true}},
        {ControlKind::ListBox, true, false, {true, true, true}},
        {ControlKind::ListBox, false, false, {true, true, false}},
        {ControlKind::PictureBox, false, true, {true, true, true}},
        {ControlKind::PictureBox, true, false, {true, true, false}},
        {ControlKind::Other, true, true, {false, false, false}},
        {ControlKind::None, true, true, {true, true, false}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(EditUpdate(c.kind, c.text, c.picture), c.expected) << int(c.kind) << c.text << c.picture;
}

TEST(DeletingParts, AsksWithTheCountAndRemovesOnlyOnYes) {
    const struct {
        bool views;
        std::vector<bool> selection;
        std::vector<MessageAnswer> answers;
        const char* question;  // nullptr: nothing is asked
        std::vector<std::string> left;
    } cases[] = {
        {true, {true, false, true}, {MessageAnswer::Yes}, "the 2 selected parts", {"South stand"}},
        {true, {true, true, true}, {MessageAnswer::No}, "the 3 selected parts", {"North stand", "South stand", "Roof"}},
        {true, {false, false, false}, {}, nullptr, {"North stand", "South stand", "Roof"}},
        {true, {}, {}, nullptr, {"North stand", "South stand", "Roof"}},  // no rows at all
        {false, {}, {MessageAnswer::No}, "the 3 selected parts", {"North stand", "South stand", "Roof"}},  // no list
    };
    for (const auto& c : cases) {
        ScriptedDesktop desktop;
        RecordingViews views;
        views.selection = c.selection;
        InstallViews(c.views ? &views : nullptr);
        CurrentProject.OIF = NewOIFFile();
        for (const char* name : {"North stand", "South stand", "Roof"}) {
            OIFPart p;
            p.Header.Name = name;
            CurrentProject.OIF = AddPart(p, CurrentProject.OIF);
        }
        desktop.answers = {c.answers.begin(), c.answers.end()};
        EXPECT_EQ(DeleteSelectedParts(), 3 - int(c.left.size()));
        ASSERT_EQ(desktop.messages.size(), c.question ? 1u : 0u);
        if (c.question) {
            EXPECT_EQ(desktop.messages[0].text, "Are you sure you want to delete " + std::string(c.question) + "?");
            EXPECT_EQ(desktop.messages[0].title, "Terramason");
            EXPECT_EQ(desktop.messages[0].icon, MessageIcon::Question);
            EXPECT_EQ(desktop.messages[0].buttons, MessageButtons::YesNo);
        }
        ASSERT_EQ(CurrentProject.OIF.Parts.size(), c.left.size());
        EXPECT_EQ(CurrentProject.OIF.Header.PartCount, int(c.left.size()));
        for (std::size_t i = 0; i < c.left.size(); ++i)
            EXPECT_EQ(CurrentProject.OIF.Parts[i].Header.Name.str().substr(0, c.left[i].size()), c.left[i]);
        const Steps calls = c.left.size() < 3 ? Steps{"RefreshPartsList", "RebuildPreviews"} : Steps{};
        EXPECT_EQ(views.calls, calls);
        InstallViews(nullptr);
        ResetProgramState();
    }
}

TEST(RefreshPreviewsByHand, RebuildsWithTheFlagOnAndPutsItBackEvenOnAFailure) {
    for (const bool before : {false, true})
        for (const bool fails : {false, true}) {
            RecordingViews views;
            views.throwOnRebuild = fails;
            InstallViews(&views);
            PreviewRefreshOn = before;
            if (fails) EXPECT_THROW(RefreshPreviewsByHand(), std::runtime_error);
            else RefreshPreviewsByHand();
            EXPECT_EQ(views.calls, Steps{"RebuildPreviews"});
            EXPECT_TRUE(views.flagDuringRebuild);
            EXPECT_EQ(PreviewRefreshOn, before);
            InstallViews(nullptr);
        }
    PreviewRefreshOn = true;
}

TEST(VRMLSource, ShowsTheViewsFileInTheScratchFolder) {
    ScratchFolder folder;
    AppFolder = folder.path();
    ScriptedDesktop desktop;
    std::filesystem::create_directories(TempFolder());
    Steps files;
    for (const char* view : PreviewViewNames) {
        files.push_back(folder.file("temp/" + std::string(view) + ".wrl"));
        WriteFile(files.back(), {'#'});
        OpenVRMLSource(view);
    }
    EXPECT_EQ(desktop.shownFiles, files);
    EXPECT_TRUE(desktop.commands.empty());
    AppFolder.clear();
}
