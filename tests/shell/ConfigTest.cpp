// The settings file, the Options window's logic and the help book's addresses.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <sstream>

#include "preview/PreviewViewOps.h"
#include "preview/VRMLOps.h"
#include "shell/HelpOps.h"
#include "shell/IniOps.h"
#include "shell/OptionsOps.h"
#include "shell/ProjectTestKit.h"

namespace fs = std::filesystem;

namespace {
class Config : public ::testing::Test {
protected:
    void TearDown() override { ResourceFolder.clear(); }
    void Put(const std::string& text) { m.Text(ConfigPath(), text); }
    FakeMachine m;
};
}  // namespace

TEST_F(Config, ReadsWhatWasLastWrittenIgnoringCaseAndKeepingBlanksAndOnlyTheTextOneIsTrue) {
    EXPECT_EQ(ReadConfig("Startup", "Maximise"), "");
    EXPECT_EQ(ReadConfigNumber("Previews", "ZoomAmount"), 0);
    WriteConfig("Crowd Wizard", "CrowdSpacing", "150");
    WriteConfig("Crowd Wizard", "CrowdSpacing", "175.5");
    WriteConfig("Crowd Wizard", "NoOfRows", "12");
    EXPECT_EQ(ReadConfigNumber("crowd wizard", "CROWDSPACING"), 175.5) << "other keys of the section stay";
    EXPECT_EQ(ReadConfig("Other", "NoOfRows"), "");
    for (const std::string& v : {std::string("  two blanks  "), std::string("\"q\""), std::string("\""),
                                 std::string(400, 'x'), std::string(254, 'y')}) {
        WriteConfig("Import", "Note", v);
        EXPECT_EQ(ReadConfig("Import", "Note"), v.substr(0, 254));
    }
    WriteIniValue("Startup", "Maximise", ConfigPath(), "1");
    EXPECT_TRUE(ReadConfigFlag("Startup", "Maximise")) << "another writer is seen: nothing is cached";
    for (const char* v : {"0", "", "yes", "true", "-1", "1 ", " 1", "01", "1"}) {
        WriteConfig("Terramason", "Previews", v);
        EXPECT_EQ(ReadConfigFlag("Terramason", "Previews"), v == std::string("1")) << '"' << v << '"';
        EXPECT_EQ(FlagShown(v), v == std::string("1")) << '"' << v << '"';
    }
    // By hand, where the file's own trimming would make "1 " true.
    for (const char* line : {"Previews=1 ", "Previews = 1\t"}) {
        Put(std::string("[Terramason]\r\n") + line + "\r\n");
        EXPECT_FALSE(ReadConfigFlag("Terramason", "Previews")) << '"' << line << '"';
    }
}

TEST_F(Config, AFileThatCannotBeReadOrWrittenIsPassedOverAndABrokenSectionLineDropped) {
    fs::create_directory(ConfigPath());  // a folder where the file should be
    for (const std::string& folder : {AppFolder, m.dir.file("missing/folder")}) {
        AppFolder = folder;
        WriteConfig("Startup", "Maximise", "1");
        EXPECT_EQ(ReadConfig("Startup", "Maximise"), "") << folder;
    }
    // The keys below an unclosed section line stay in the section above it, and saves do not grow it.
    AppFolder = m.dir.file("app2");
    fs::create_directories(AppFolder);
    Put("[Startup]\nMaximise=0\n[Previews\nMaximise=1\nNewProj=1\n");
    for (int i = 0; i < 3; ++i) WriteConfig("Terramason", "Starter", std::to_string(i));
    EXPECT_EQ(ReadConfig("Startup", "Maximise") + ReadConfig("Startup", "NewProj"), "11");
    EXPECT_EQ(ReadConfig("Terramason", "Starter"), "2");
    std::istringstream saved(ReadText(ConfigPath()));
    for (std::string line; std::getline(saved, line);)
        if (!line.empty() && line[0] == '[') { EXPECT_EQ(line.back(), ']') << line; }
}

TEST_F(Config, FirstRunWritesDefaultsOnceAndNeverOverwrites) {
    AppFolder = m.dir.file("fresh");  // created on demand
    EXPECT_TRUE(EnsureConfigFile());
    const std::pair<const char*, const char*> defaults[] = {
        {"Terramason/Starter", "0"},          {"Terramason/Previews", "1"},
        {"Terramason/OIFEditor", "1"},        {"Import/CrowdHeight", "260"},
        {"Crowd Wizard/CrowdHeight", "260"},  {"Crowd Wizard/NoOfRows", "10"},
        {"Crowd Wizard/CrowdSpacing", "150"}, {"Startup/Maximise", "0"}};
    for (const auto& [key, value] : defaults) {
        const std::string k = key;
        EXPECT_EQ(NumberShown(ReadConfig(k.substr(0, k.find('/')), k.substr(k.find('/') + 1))), value) << key;
    }
    WriteConfig("Terramason", "Starter", "1");
    EXPECT_FALSE(EnsureConfigFile());
    EXPECT_EQ(ReadConfig("Terramason", "Starter"), "1");
}

TEST(OptionsKeyTable, ControlsAreUniqueAndApplyStoresEachOnce) {
    std::set<std::string> controls, sectionKeys;
    for (const OptionKey& k : OptionKeys) {
        EXPECT_TRUE(controls.insert(k.control).second) << k.control;
        EXPECT_TRUE(sectionKeys.insert(std::string(k.section) + "/" + k.key).second) << k.key;
        EXPECT_EQ(OptionKeyOf(k.control), &k);
    }
    std::multiset<std::string> applied(std::begin(ApplyBeforeViewer), std::end(ApplyBeforeViewer));
    applied.insert(std::begin(ApplyAfterViewer), std::end(ApplyAfterViewer));
    EXPECT_EQ(std::set<std::string>(applied.begin(), applied.end()), controls);
    EXPECT_EQ(applied.size(), controls.size());
    EXPECT_EQ(OptionKeyOf("Maximise"), nullptr) << "looked up by control, not by key";
}

TEST(OptionsTexts, NumberBoxesShowAndStoreTheLeadingNumberPrintedAgain) {
    // 123456789 is a double, not seven digits.
    const std::pair<const char*, const char*> cases[] = {
        {"260", "260"}, {"150.00", "150"}, {"", "0"},         {"abc", "0"},     {"  37.50xyz", "37.5"},
        {"-12", "-12"}, {"0.1", "0.1"},    {"175abc", "175"}, {"2.5.5", "2.5"}, {"123456789", "123456789"}};
    for (const auto& [text, shown] : cases)
        EXPECT_EQ(NumberShown(text) + "|" + NumberStored(text), std::string(shown) + "|" + shown) << text;
}

TEST_F(Config, OptionsOpenInTheControlsFormAndApplyStoresInOrderWithTheViewerChangeBetween) {
    for (const auto& [section, key, value] : {std::tuple{"Startup", "Maximise", "1"},
                                              {"Startup", "NewProj", "1 "},
                                              {"Crowd Wizard", "CrowdSpacing", "150.00"},
                                              {"Crowd Wizard", "NoOfRows", "12 rows"},
                                              {"Terramason", "Starter", "yes"}})
        WriteConfig(section, key, value);
    OptionContents c = ReadOptions();
    EXPECT_EQ(c.size(), OptionKeys.size());
    const std::map<std::string, std::string> shown = {
        {"maxwindow", "1"},    {"newproj", "0"},  {"crowdspacing", "150"},   {"noofrows", "12"},
        {"vrmlreminder", "0"}, {"previews", "0"}, {"crowdwizardheight", "0"}};
    for (const auto& [control, text] : shown) EXPECT_EQ(c.at(control), text) << control;
    ApplyOptions({{"maxwindow", "1"}}, {});
    EXPECT_EQ(ReadConfig("Startup", "NewProj") + ReadConfig("Previews", "ZoomAmount"), "00")
        << "a control missing from the contents is stored as 0";

    WriteConfig("Terramason", "OIFEditor", "1");
    for (const OptionKey& k : OptionKeys) c[k.control] = k.kind == OptionKind::Flag ? "1" : "7";
    c["refreshpreviewbox"] = c["oifeditor"] = "0";
    c["crowdspacing"] = "150.00";
    std::string steps;
    ApplyOptions(
        c, [&] { steps += "viewer " + ReadConfig("Terramason", "OIFEditor") + "|"; },
        [&](const std::string& s, const std::string& k, const std::string& v) {
            steps += s + "/" + k + "=" + v + "|";
            WriteConfig(s, k, v);
        });
    EXPECT_EQ(
        steps,
        "Terramason/Previews=1|Terramason/PreviewRefresh=0|Previews/PerspectiveTex=1|viewer 1|Terramason/OIFEditor=0|"
        "Stadium Importer/AutoClose=1|Import/CrowdHeight=7|Crowd Wizard/CrowdHeight=7|Crowd Wizard/NoOfRows=7|"
        "Crowd Wizard/CrowdSpacing=150|Crowd Wizard/Home=1|Terramason/Starter=1|Startup/NewProj=1|"
        "Startup/Maximise=1|Previews/ZoomAmount=7|");
    EXPECT_EQ(ReadConfig("Crowd Wizard", "CrowdSpacing"), "150");
}

TEST_F(Config, PerspectiveFlagsFollowTheStoredTextureSetting) {
    const struct {
        const char* stored;
        int flags;
        ViewerChange change;
    } cases[] = {
        {nullptr, RenderUntextured, {RenderUntextured, false}}, {"1", RenderUntextured, {RenderTextured, true}},
        {"1", RenderTextured, {RenderTextured, false}},         {"1", 0, {RenderTextured, true}},
        {"0", RenderTextured, {RenderUntextured, true}},        {"0", RenderUntextured, {RenderUntextured, false}},
        {"1 ", RenderTextured, {RenderUntextured, true}}};
    for (const auto& c : cases) {
        if (c.stored) WriteConfig("Previews", "PerspectiveTex", c.stored);
        EXPECT_EQ(PerspectiveViewerChange(c.flags), c.change) << (c.stored ? c.stored : "no key") << " " << c.flags;
    }
}

TEST_F(Config, HelpPagesAndTheReadmeShowInTheProgramFromTheirInstallAndWhatCannotOpenIsNamed) {
    fs::create_directories(m.dir.file("prefix/bin"));
    fs::create_directories(m.dir.file("build/bin"));
    m.Text(m.dir.file("prefix/share/terramason/help/index.html"), "<");
    m.Text(m.dir.file("prefix/share/terramason/readme.txt"), "r");
    const std::string source = m.dir.file("source/resources");
    EXPECT_EQ(FindResourceFolder(m.dir.file("build/bin"), source), source);
    EXPECT_EQ(FindResourceFolder("", source), source);
    ResourceFolder = FindResourceFolder(m.dir.file("prefix/bin"), source);
    EXPECT_EQ(ResourceFolder, m.dir.file("prefix/share/terramason"));
    OpenHelpPage(HelpContentsPage);
    OpenReadme();
    EXPECT_EQ(m.desktop.pages, std::vector<std::string>{"file://" + ResourceFolder + "/help/index.html"});
    EXPECT_EQ(m.desktop.shownFiles, std::vector<std::string>{ResourceFolder + "/readme.txt"});
    OpenHelpPage("crowdwizard.html");
    m.desktop.browserAnswers = false;
    OpenHelpWebPage(WebPage::Forums);
    ASSERT_EQ(m.desktop.messages.size(), 2u);
    EXPECT_NE(m.desktop.messages[0].text.find(ResourceFolder + "/help/crowdwizard.html"), std::string::npos);
    EXPECT_NE(m.desktop.messages[1].text.find(DefaultWebAddress(WebPage::Forums)), std::string::npos);
    EXPECT_EQ(m.desktop.pages.size(), 2u) << "a missing page goes nowhere";
    ResourceFolder = "/opt/My Tools/terramason";
    EXPECT_EQ(HelpPageAddress("index.html"), "file:///opt/My%20Tools/terramason/help/index.html");
    ResourceFolder = "resources";
    EXPECT_EQ(HelpPageAddress("index.html").rfind("file:///", 0), 0u) << "absolute";
    EXPECT_TRUE(HelpPageAddress("index.html").ends_with("/resources/help/index.html"));
}

TEST_F(Config, WebPagesHaveDefaultAddressesThatTheConfigFileReplaces) {
    for (WebPage page :
         {WebPage::TechnicalSupport, WebPage::OnlineHelp, WebPage::MakersSite, WebPage::Forums, WebPage::ToolsSite}) {
        EXPECT_EQ(WebPageAddress(page), DefaultWebAddress(page));
        EXPECT_EQ(WebPageAddress(page).rfind("https://", 0), 0u) << WebPageKey(page);
    }
    const std::string site = DefaultWebAddress(WebPage::MakersSite);
    EXPECT_EQ(DefaultWebAddress(WebPage::OnlineHelp), site.substr(0, site.size() - 1) + "/stadiums/Terramason");
    WriteConfig("Web", "Forums", "https://forum.example.org/fifa");
    WriteConfig("Web", "TechnicalSupport", "   ");
    WriteConfig("Web", "MakersSite", "http://mirror.example.net/osk/");
    EXPECT_EQ(WebPageAddress(WebPage::TechnicalSupport), DefaultWebAddress(WebPage::TechnicalSupport)) << "blank";
    EXPECT_EQ(WebPageAddress(WebPage::OnlineHelp), "http://mirror.example.net/osk/stadiums/Terramason");
    WriteConfig("Web", "OnlineHelp", "http://help.example.net/");
    EXPECT_EQ(WebPageAddress(WebPage::OnlineHelp), "http://help.example.net/") << "its own address wins";
    OpenHelpWebPage(WebPage::Forums);
    EXPECT_EQ(m.desktop.pages, std::vector<std::string>{"https://forum.example.org/fifa"});
}
