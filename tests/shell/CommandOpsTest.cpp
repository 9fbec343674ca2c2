#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>

#include "core/ProgramState.h"
#include "core/Views.h"
#include "shell/CommandOps.h"
#include "support/ScriptedDesktop.h"
#include "support/TestFiles.h"

namespace {

// Views with a selection of its own that log what the command asked of them.
struct RecordingViews : Views {
    std::vector<bool> selection;
    std::vector<std::string> calls;
    bool flagDuringRebuild = false;
    bool throwOnRebuild = false;
    std::vector<bool> SelectedParts() override { return selection; }
    void RefreshPartsList() override { calls.push_back("RefreshPartsList"); }
    void RebuildPreviews() override {
        calls.push_back("RebuildPreviews");
        flagDuringRebuild = PreviewRefreshOn;
        if (throwOnRebuild) throw std::runtime_error("The preview file cannot be written.");
    }
};

class DeletingParts : public ::testing::Test {
protected:
    void SetUp() override {
        CurrentProject.OIF = NewOIFFile();
        for (const char* name : {"North stand", "South stand", "Roof"}) {
            OIFPart p;
            p.Header.Name = name;
            CurrentProject.OIF = AddPart(p, CurrentProject.OIF);
        }
        InstallViews(&views);
    }
    void TearDown() override {
        InstallViews(nullptr);
        ResetProgramState();
    }
    std::string NameOf(std::size_t i) const { return CurrentProject.OIF.Parts[i].Header.Name.str(); }

    ScriptedDesktop desktop;
    RecordingViews views;
};

}  // namespace

TEST(EditUpdate, FollowsTheFocusedControlAndTheClipboard) {
    struct Case {
        ControlKind kind;
        bool text, picture;
        EditCommandState expected;
    };
    const Case cases[] = {
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
    for (const Case& c : cases) {
        const EditCommandState got = EditUpdate(c.kind, c.text, c.picture);
        EXPECT_EQ(got, c.expected) << "control kind " << int(c.kind) << ", text " << c.text << ", picture "
                                   << c.picture;
    }
}

TEST_F(DeletingParts, AsksWithTheCountAndRemovesTheSelectedParts) {
    views.selection = {true, false, true};
    desktop.answers = {MessageAnswer::Yes};
    EXPECT_EQ(DeleteSelectedParts(), 2);
    ASSERT_EQ(desktop.messages.size(), 1u);
    EXPECT_EQ(desktop.messages[0].text, "Are you sure you want to delete the 2 selected parts?");
    EXPECT_EQ(desktop.messages[0].title, "Terramason");
    EXPECT_EQ(desktop.messages[0].icon, MessageIcon::Question);
    EXPECT_EQ(desktop.messages[0].buttons, MessageButtons::YesNo);
    ASSERT_EQ(CurrentProject.OIF.Parts.size(), 1u);
    EXPECT_EQ(NameOf(0).substr(0, 11), "South stand");
    EXPECT_EQ(CurrentProject.OIF.Header.PartCount, 1);
    EXPECT_EQ(views.calls, (std::vector<std::string>{"RefreshPartsList", "RebuildPreviews"}));
}

TEST_F(DeletingParts, AnswerNoChangesNothing) {
    views.selection = {true, true, true};
    desktop.answers = {MessageAnswer::No};
    const OIFFile before = CurrentProject.OIF;
    EXPECT_EQ(DeleteSelectedParts(), 0);
    EXPECT_EQ(desktop.messages.size(), 1u);
    EXPECT_EQ(CurrentProject.OIF, before);
    EXPECT_TRUE(views.calls.empty());
}

TEST_F(DeletingParts, NothingSelectedAsksNothing) {
    views.selection = {false, false, false};
    const OIFFile before = CurrentProject.OIF;
    EXPECT_EQ(DeleteSelectedParts(), 0);
    EXPECT_TRUE(desktop.messages.empty());
    EXPECT_EQ(CurrentProject.OIF, before);
    EXPECT_TRUE(views.calls.empty());

    views.selection.clear();  // no rows at all
    EXPECT_EQ(DeleteSelectedParts(), 0);
    EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(DeletingParts, WithoutAPartsListEveryPartCountsAsSelected) {
    InstallViews(nullptr);
    desktop.answers = {MessageAnswer::No};
    DeleteSelectedParts();
    ASSERT_EQ(desktop.messages.size(), 1u);
    EXPECT_EQ(desktop.messages[0].text, "Are you sure you want to delete the 3 selected parts?");
}

TEST(RefreshPreviewsByHand, RebuildsWithTheFlagOnAndPutsItBack) {
    for (const bool before : {false, true}) {
        RecordingViews views;
        InstallViews(&views);
        PreviewRefreshOn = before;
        RefreshPreviewsByHand();
        EXPECT_EQ(views.calls, std::vector<std::string>{"RebuildPreviews"});
        EXPECT_TRUE(views.flagDuringRebuild);
        EXPECT_EQ(PreviewRefreshOn, before);
        InstallViews(nullptr);
    }
    PreviewRefreshOn = true;
}

TEST(RefreshPreviewsByHand, AFailedRebuildStillPutsTheFlagBack) {
    RecordingViews views;
    views.throwOnRebuild = true;
    InstallViews(&views);
    PreviewRefreshOn = false;
    EXPECT_THROW(RefreshPreviewsByHand(), std::runtime_error);
    EXPECT_FALSE(PreviewRefreshOn);
    InstallViews(nullptr);
    PreviewRefreshOn = true;
}

TEST(VRMLSource, ShowsTheViewsFileInTheScratchFolder) {
    ScratchFolder folder;
    AppFolder = folder.path();
    ScriptedDesktop desktop;
    std::filesystem::create_directories(TempFolder());
    for (const char* view : PreviewViewNames) WriteFile(folder.file("temp/" + std::string(view) + ".wrl"), {'#'});
    for (const char* view : PreviewViewNames) OpenVRMLSource(view);
    EXPECT_EQ(desktop.shownFiles,
              (std::vector<std::string>{folder.file("temp/Top.wrl"), folder.file("temp/Perspective.wrl"),
                                        folder.file("temp/Back.wrl"), folder.file("temp/Right.wrl")}));
    EXPECT_TRUE(desktop.commands.empty());
    AppFolder.clear();
}
