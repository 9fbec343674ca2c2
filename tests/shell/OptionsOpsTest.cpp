#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "core/ProgramState.h"
#include "preview/PreviewViewOps.h"
#include "preview/VRMLOps.h"
#include "shell/IniOps.h"
#include "shell/OptionsOps.h"
#include "support/TestFiles.h"

namespace {
class OptionsConfig : public ::testing::Test {
protected:
    void SetUp() override { AppFolder = dir.path(); }
    void TearDown() override { AppFolder.clear(); }
    ScratchFolder dir;
};

// Every control ticked or filled, as a user could leave the window.
OptionContents AllControls(const std::string& flag, const std::string& number) {
    OptionContents c;
    for (const OptionKey& k : OptionKeys) c[k.control] = k.kind == OptionKind::Flag ? flag : number;
    return c;
}
}  // namespace

TEST(OptionsKeyTable, ControlsAreUniqueAndApplyStoresEachOnce) {
    std::set<std::string> controls, sectionKeys;
    for (const OptionKey& k : OptionKeys) {
        EXPECT_TRUE(controls.insert(k.control).second) << k.control;
        EXPECT_TRUE(sectionKeys.insert(std::string(k.section) + "/" + k.key).second) << k.key;
        EXPECT_EQ(OptionKeyOf(k.control), &k);
    }
    std::multiset<std::string> applied;
    for (const char* c : ApplyBeforeViewer) applied.insert(c);
    for (const char* c : ApplyAfterViewer) applied.insert(c);
    EXPECT_EQ(std::set<std::string>(applied.begin(), applied.end()), controls);
    EXPECT_EQ(applied.size(), controls.size());
    EXPECT_EQ(OptionKeyOf("Label1"), nullptr);
    EXPECT_EQ(OptionKeyOf("Maximise"), nullptr) << "looked up by control, not by key";
}

TEST(OptionsTexts, OnlyTheTextOneTicksABox) {
    EXPECT_TRUE(FlagShown("1"));
    for (const char* v : {"1 ", " 1", "01", "", "0", "true", "-1", "1.0"})
        EXPECT_FALSE(FlagShown(v)) << '"' << v << '"';
    EXPECT_EQ(FlagStored(true), "1");
    EXPECT_EQ(FlagStored(false), "0");
}

TEST(OptionsTexts, NumberBoxesShowTheStoredNumberPrintedAgain) {
    EXPECT_EQ(NumberShown("260"), "260");
    EXPECT_EQ(NumberShown("150.00"), "150");
    EXPECT_EQ(NumberShown(""), "0") << "a missing key shows 0, not the default text";
    EXPECT_EQ(NumberShown("abc"), "0");
    EXPECT_EQ(NumberShown("  37.50xyz"), "37.5");
    EXPECT_EQ(NumberShown("-12"), "-12");
    EXPECT_EQ(NumberShown("0.1"), "0.1");
    EXPECT_EQ(NumberShown("123456789"), "123456789") << "printed as a double, not cut to 7 digits";
}

TEST(OptionsTexts, NumberBoxesStoreOnlyTheLeadingNumber) {
    EXPECT_EQ(NumberStored("175abc"), "175");
    EXPECT_EQ(NumberStored("150.00"), "150");
    EXPECT_EQ(NumberStored("260.00"), "260");
    EXPECT_EQ(NumberStored("rows"), "0");
    EXPECT_EQ(NumberStored(""), "0");
    EXPECT_EQ(NumberStored("2.5.5"), "2.5");
}

TEST_F(OptionsConfig, OpeningReadsEveryKeyIntoItsControlsForm) {
    WriteConfig("Startup", "Maximise", "1");
    WriteConfig("Startup", "NewProj", "1 ");
    WriteConfig("Previews", "ZoomAmount", "500");
    WriteConfig("Crowd Wizard", "CrowdSpacing", "150.00");
    WriteConfig("Import", "CrowdHeight", "260");
    WriteConfig("Crowd Wizard", "NoOfRows", "12 rows");
    const OptionContents c = ReadOptions();
    EXPECT_EQ(c.size(), OptionKeys.size());
    EXPECT_EQ(c.at("maxwindow"), "1");
    EXPECT_EQ(c.at("newproj"), "0") << "1 with a trailing blank is false";
    EXPECT_EQ(c.at("zoomamount"), "500");
    EXPECT_EQ(c.at("crowdspacing"), "150");
    EXPECT_EQ(c.at("optimisecrowdheight"), "260");
    EXPECT_EQ(c.at("noofrows"), "12");
    EXPECT_EQ(c.at("crowdwizardheight"), "0") << "missing";
    EXPECT_EQ(c.at("previews"), "0") << "missing";
}

TEST_F(OptionsConfig, ApplyStoresInItsOrderWithTheViewerChangeBetween) {
    std::vector<std::string> steps;
    const ConfigWriter record = [&](const std::string& s, const std::string& k, const std::string& v) {
        steps.push_back(s + "/" + k + "=" + v);
    };
    OptionContents c = AllControls("1", "7");
    c["refreshpreviewbox"] = "0";
    c["crowdspacing"] = "150.00";
    c["noofrows"] = "9abc";
    ApplyOptions(
        c, [&] { steps.push_back("viewer"); }, record);
    const std::vector<std::string> expected{
        "Terramason/Previews=1",     "Terramason/PreviewRefresh=0",
        "Previews/PerspectiveTex=1", "viewer",
        "Terramason/OIFEditor=1",    "Stadium Importer/AutoClose=1",
        "Import/CrowdHeight=7",      "Crowd Wizard/CrowdHeight=7",
        "Crowd Wizard/NoOfRows=9",   "Crowd Wizard/CrowdSpacing=150",
        "Crowd Wizard/Home=1",       "Terramason/Starter=1",
        "Startup/NewProj=1",         "Startup/Maximise=1",
        "Previews/ZoomAmount=7",
    };
    EXPECT_EQ(steps, expected);
}

TEST_F(OptionsConfig, ApplyWritesConfigAndTheViewerChangeSeesOnlyTheFirstGroup) {
    WriteConfig("Terramason", "OIFEditor", "1");
    std::string texAtViewer, oifAtViewer;
    OptionContents c = AllControls("0", "0");
    c["viewtextures"] = "1";
    c["crowdspacing"] = "150abc";
    ApplyOptions(c, [&] {
        texAtViewer = ReadConfig("Previews", "PerspectiveTex");
        oifAtViewer = ReadConfig("Terramason", "OIFEditor");
    });
    EXPECT_EQ(texAtViewer, "1");
    EXPECT_EQ(oifAtViewer, "1") << "oifeditor is stored after the viewer change";
    EXPECT_EQ(ReadConfig("Terramason", "OIFEditor"), "0");
    EXPECT_EQ(ReadConfig("Crowd Wizard", "CrowdSpacing"), "150");
    for (const OptionKey& k : OptionKeys) EXPECT_FALSE(ReadConfig(k.section, k.key).empty()) << k.key;
}

TEST_F(OptionsConfig, ApplyOfWhatOpeningShowedNormalisesTheStoredTexts) {
    WriteConfig("Crowd Wizard", "CrowdSpacing", "150.00");
    WriteConfig("Terramason", "Starter", "yes");
    WriteConfig("Startup", "Maximise", "1");
    ApplyOptions(ReadOptions(), {});
    EXPECT_EQ(ReadConfig("Crowd Wizard", "CrowdSpacing"), "150");
    EXPECT_EQ(ReadConfig("Terramason", "Starter"), "0");
    EXPECT_EQ(ReadConfig("Startup", "Maximise"), "1");
    EXPECT_EQ(ReadConfig("Previews", "ZoomAmount"), "0") << "a missing number is stored as 0";
}

TEST_F(OptionsConfig, AControlMissingFromTheContentsStoresAsEmpty) {
    ApplyOptions({{"maxwindow", "1"}}, {});
    EXPECT_EQ(ReadConfig("Startup", "Maximise"), "1");
    EXPECT_EQ(ReadConfig("Startup", "NewProj"), "0");
    EXPECT_EQ(ReadConfig("Crowd Wizard", "NoOfRows"), "0");
}

TEST_F(OptionsConfig, PerspectiveFlagsFollowTheStoredTextureSetting) {
    EXPECT_EQ(PerspectiveViewerChange(RenderUntextured), (ViewerChange{RenderUntextured, false})) << "no key";
    WriteConfig("Previews", "PerspectiveTex", "1");
    EXPECT_EQ(PerspectiveViewerChange(RenderUntextured), (ViewerChange{RenderTextured, true}));
    EXPECT_EQ(PerspectiveViewerChange(RenderTextured), (ViewerChange{RenderTextured, false}));
    EXPECT_EQ(PerspectiveViewerChange(0), (ViewerChange{RenderTextured, true}));
    WriteConfig("Previews", "PerspectiveTex", "0");
    EXPECT_EQ(PerspectiveViewerChange(RenderTextured), (ViewerChange{RenderUntextured, true}));
    EXPECT_EQ(PerspectiveViewerChange(RenderUntextured), (ViewerChange{RenderUntextured, false}));
    WriteConfig("Previews", "PerspectiveTex", "1 ");
    EXPECT_EQ(PerspectiveViewerChange(RenderTextured), (ViewerChange{RenderUntextured, true}));
}
