#include <gtest/gtest.h>

#include <filesystem>

#include "core/ProgramState.h"
#include "shell/HelpOps.h"
#include "shell/IniOps.h"
#include "support/ScriptedDesktop.h"
#include "support/TestFiles.h"

namespace fs = std::filesystem;

namespace {

class HelpBook : public ::testing::Test {
protected:
    void SetUp() override {
        AppFolder = dir.file("user");
        fs::create_directories(AppFolder);
        ResourceFolder = dir.file("share/terramason");
    }
    void TearDown() override {
        AppFolder.clear();
        ResourceFolder.clear();
    }
    ScratchFolder dir;
    ScriptedDesktop desktop;
};

}  // namespace

TEST(FindResourceFolder, AnInstallBesideTheProgramsFolderElseTheSourceTree) {
    ScratchFolder dir;
    fs::create_directories(dir.file("prefix/bin"));
    fs::create_directories(dir.file("prefix/share/terramason/help"));
    fs::create_directories(dir.file("build/bin"));
    EXPECT_EQ(FindResourceFolder(dir.file("prefix/bin"), dir.file("source/resources")),
              dir.file("prefix/share/terramason"));
    EXPECT_EQ(FindResourceFolder(dir.file("build/bin"), dir.file("source/resources")), dir.file("source/resources"));
    EXPECT_EQ(FindResourceFolder("", dir.file("source/resources")), dir.file("source/resources"));
}

TEST_F(HelpBook, PagesAndTheReadmeShowInTheProgramAndWhatCannotOpenIsNamed) {
    fs::create_directories(dir.file("share/terramason/help"));
    WriteFile(dir.file("share/terramason/help/index.html"), {'<'});
    WriteFile(dir.file("share/terramason/readme.txt"), {'r'});
    OpenHelpPage(HelpContentsPage);
    OpenReadme();
    EXPECT_EQ(desktop.pages, std::vector<std::string>{"file://" + dir.file("share/terramason/help/index.html")});
    EXPECT_EQ(desktop.shownFiles, std::vector<std::string>{dir.file("share/terramason/readme.txt")});
    EXPECT_TRUE(desktop.messages.empty());

    OpenHelpPage("crowdwizard.html");
    desktop.browserAnswers = false;
    OpenHelpWebPage(WebPage::Forums);
    ASSERT_EQ(desktop.messages.size(), 2u);
    EXPECT_NE(desktop.messages[0].text.find(dir.file("share/terramason/help/crowdwizard.html")), std::string::npos);
    EXPECT_NE(desktop.messages[1].text.find(DefaultWebAddress(WebPage::Forums)), std::string::npos);
    EXPECT_EQ(desktop.pages.size(), 2u) << "a missing page goes nowhere";
}

TEST_F(HelpBook, AddressesAreAbsoluteAndEncoded) {
    ResourceFolder = "/opt/My Tools/terramason";
    EXPECT_EQ(HelpPageAddress("index.html"), "file:///opt/My%20Tools/terramason/help/index.html");
    ResourceFolder = "resources";
    const std::string address = HelpPageAddress("index.html");
    EXPECT_EQ(address.rfind("file:///", 0), 0u) << address;
    EXPECT_NE(address.find("/resources/help/index.html"), std::string::npos) << address;
}

TEST_F(HelpBook, WebPagesHaveDefaultAddresses) {
    for (WebPage page :
         {WebPage::TechnicalSupport, WebPage::OnlineHelp, WebPage::MakersSite, WebPage::Forums, WebPage::ToolsSite}) {
        EXPECT_EQ(WebPageAddress(page), DefaultWebAddress(page));
        EXPECT_EQ(WebPageAddress(page).rfind("https://", 0), 0u) << WebPageKey(page);
    }
    const std::string site = DefaultWebAddress(WebPage::MakersSite);
    EXPECT_EQ(DefaultWebAddress(WebPage::OnlineHelp), site.substr(0, site.size() - 1) + "/stadiums/Terramason");
}

TEST_F(HelpBook, ConfigIniReplacesAnAddress) {
    WriteConfig("Web", "Forums", "https://forum.example.org/fifa");
    WriteConfig("Web", "TechnicalSupport", "   ");
    EXPECT_EQ(WebPageAddress(WebPage::Forums), "https://forum.example.org/fifa");
    EXPECT_EQ(WebPageAddress(WebPage::TechnicalSupport), DefaultWebAddress(WebPage::TechnicalSupport))
        << "a blank value is no address";
    OpenHelpWebPage(WebPage::Forums);
    EXPECT_EQ(desktop.pages, std::vector<std::string>{"https://forum.example.org/fifa"});
}

TEST_F(HelpBook, OnlineHelpMovesWithTheMakersSite) {
    WriteConfig("Web", "MakersSite", "http://mirror.example.net/osk/");
    EXPECT_EQ(WebPageAddress(WebPage::OnlineHelp), "http://mirror.example.net/osk/stadiums/Terramason");
    WriteConfig("Web", "OnlineHelp", "http://help.example.net/");
    EXPECT_EQ(WebPageAddress(WebPage::OnlineHelp), "http://help.example.net/") << "its own address wins";
}
