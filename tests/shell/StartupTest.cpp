// The start of the program, the main window's place and title, and the shell's own commands.
#include <gtest/gtest.h>

#include <stdexcept>

#include "core/Views.h"
#include "shell/CommandOps.h"
#include "shell/IniOps.h"
#include "shell/ProjectTestKit.h"

namespace {

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
constexpr auto Yes = MessageAnswer::Yes, No = MessageAnswer::No;

}  // namespace

TEST(Startup, FollowsTheSettingsAsksForTheViewerOnceAndOpensANamedFile) {
    const struct {
        const char *maximise, *newProject, *starter, *file;
        std::vector<MessageAnswer> answers;
        Steps steps, pages;
    } cases[] = {
        {"", "", "", "", {}, {"normal", "show"}, {}},
        {"1", "1", "0", "", {}, {"maximised", "show", "shownew"}, {}},
        {"1", "1", "0", "/home/me/stadium.oif", {}, {"maximised", "show", "open /home/me/stadium.oif"}, {}},
        {"0", "1", "1", "", {No}, {"normal", "show", "shownew"}, {}},
        {"0", "1", "1", "", {Yes}, {"normal", "show", "end"}, {ViewerDownloadAddress}},
    };
    for (const auto& c : cases) {
        FakeMachine m;
        for (const auto& [key, value] : {std::pair{"Maximise", c.maximise}, {"NewProj", c.newProject}})
            if (*value) WriteConfig("Startup", key, value);
        if (*c.starter) WriteConfig("Terramason", "Starter", c.starter);
        m.desktop.answers = {c.answers.begin(), c.answers.end()};
        RecordingFrame frame;
        RunStartup(frame, c.file);
        EXPECT_EQ(frame.steps, c.steps);
        EXPECT_EQ(m.desktop.pages, c.pages);
        ASSERT_EQ(m.desktop.messages.size(), c.answers.size());
        if (c.answers.empty()) continue;
        const ShownMessage& q = m.desktop.messages[0];
        EXPECT_EQ(q.title + "|" + q.text,
                  "Cortona VRML plugin needed|You MUST download and install Cortona VRML plugin before you can use "
                  "this program.\r\n\r\nDo you want to download this now?");
        EXPECT_EQ(q.buttons, MessageButtons::YesNo);
        RunStartup(frame);
        EXPECT_EQ(m.desktop.messages.size(), 1u) << "asked at most once";
    }
    ScriptedDesktop desktop;
    desktop.answers = {No, Yes};
    EXPECT_FALSE(ConfirmQuit());
    EXPECT_TRUE(ConfirmQuit());
    const ShownMessage& quit = desktop.messages.at(1);
    EXPECT_EQ(quit.title + "|" + quit.text, "VORN Terramason|Are you sure you want to quit VORN Terramason?   ");
    EXPECT_EQ(quit.icon, MessageIcon::Exclamation);
}

TEST(PlaceMainWindow, HoldsThePreviewsWholeWithTheEditorBesideWhenThereIsRoom) {
    const std::pair<PixelSize, FramePlacement> cases[] = {
        {{1920, 1080}, {1023 + 500, 723, false}},  // room for the editor beside
        {{1280, 1024}, {1280, 723, false}},        // the previews whole, the editor over as little as can be
        {{1023, 723}, {1023, 723, false}},         // exactly room
        {{1024, 700}, {1024, 700, true}},          // too low: maximised
        {{1000, 800}, {1000, 800, true}},          // too narrow: maximised
    };
    for (const auto& [screen, placed] : cases)
        EXPECT_EQ(PlaceMainWindow({1019, 633}, 500, {4, 90}, screen), placed) << screen.Width;
    // The editor in an area beside previews ending at 1019: beside, narrowed to fit, or at the edge.
    EXPECT_EQ(PlaceEditor(1700, 1019, 588, 500), (EditorPlacement{1019, 588}));
    EXPECT_EQ(PlaceEditor(1600, 1019, 588, 500), (EditorPlacement{1019, 581}));
    EXPECT_EQ(PlaceEditor(1280, 1019, 588, 500), (EditorPlacement{692, 588}));
    EXPECT_EQ(MainTitle(false, "Project1"), "VORN Terramason");
    EXPECT_EQ(MainTitle(true, "Project1"), "VORN Terramason - [design] - [Project1]");
}

TEST(EditUpdate, FollowsTheFocusedControlAndTheClipboard) {
    using K = ControlKind;
    const struct {
        ControlKind kind;
        bool text, picture;
        EditCommandState expected;
    } cases[] = {
        {K::TextBox, true, false, {true, true, true}},     {K::TextBox, false, true, {true, true, false}},
        {K::ComboBox, true, false, {true, true, true}},    {K::ListBox, true, false, {true, true, true}},
        {K::ListBox, false, false, {true, true, false}},   {K::PictureBox, false, true, {true, true, true}},
        {K::PictureBox, true, false, {true, true, false}}, {K::Other, true, true, {false, false, false}},
        {K::None, true, true, {true, true, false}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(EditUpdate(c.kind, c.text, c.picture), c.expected) << int(c.kind) << c.text << c.picture;
}

TEST(DeletingParts, AsksWithTheCountAndRemovesOnlyOnYes) {
    const struct {
        bool views;
        std::vector<bool> selection;
        std::vector<MessageAnswer> answers;
        int asked;  // the count in the question; 0: nothing is asked
        std::string left;
    } cases[] = {
        {true, {true, false, true}, {Yes}, 2, "S"},
        {true, {true, true, true}, {No}, 3, "NSR"},
        {true, {false, false, false}, {}, 0, "NSR"},
        {true, {}, {}, 0, "NSR"},     // no rows at all
        {false, {}, {No}, 3, "NSR"},  // no list
    };
    for (const auto& c : cases) {
        ScriptedDesktop desktop;
        RecordingViews views;
        views.selection = c.selection;
        InstallViews(c.views ? &views : nullptr);
        CurrentProject.OIF = NewOIFFile();
        for (const char* name : {"North", "South", "Roof"}) {
            OIFPart p;
            p.Header.Name = name;
            CurrentProject.OIF = AddPart(p, CurrentProject.OIF);
        }
        desktop.answers = {c.answers.begin(), c.answers.end()};
        EXPECT_EQ(DeleteSelectedParts(), 3 - int(c.left.size()));
        ASSERT_EQ(desktop.messages.size(), c.asked ? 1u : 0u);
        if (c.asked) {
            const ShownMessage& q = desktop.messages[0];
            EXPECT_EQ(q.title + "|" + q.text,
                      "Terramason|Are you sure you want to delete the " + std::to_string(c.asked) + " selected parts?");
            EXPECT_EQ(std::pair(q.icon, q.buttons), std::pair(MessageIcon::Question, MessageButtons::YesNo));
        }
        EXPECT_EQ(CurrentProject.OIF.Header.PartCount, int(c.left.size()));
        std::string left;
        for (const OIFPart& p : CurrentProject.OIF.Parts) left += p.Header.Name.str()[0];
        EXPECT_EQ(left, c.left);
        EXPECT_EQ(views.calls, c.left.size() < 3 ? (Steps{"RefreshPartsList", "RebuildPreviews"}) : Steps{});
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
    FakeMachine m;
    m.desktop.runProcesses = false;
    Steps files;
    for (const char* view : PreviewViewNames) {
        files.push_back(TempFolder() + "/" + view + ".wrl");
        m.Text(files.back(), "#");
        OpenVRMLSource(view);
    }
    EXPECT_EQ(m.desktop.shownFiles, files);
    EXPECT_TRUE(m.desktop.commands.empty());
}
