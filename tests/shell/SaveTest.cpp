#include <gtest/gtest.h>

#include <filesystem>

#include "core/OIFOps.h"
#include "shell/ProjectTestKit.h"
#include "shell/SaveOps.h"

namespace fs = std::filesystem;

namespace {
OIFFile TwoParts() {
    OIFFile d = NewOIFFile();
    for (const char* texture : {"cr01", "ad02"}) {
        OIFPart p;
        p.Header.Name = "Part";
        p.Header.Texture = texture;
        d = AddPart(p, d);
    }
    return d;
}

class Saving : public ::testing::Test {
protected:
    void SetUp() override { CurrentProject.OIF = TwoParts(); }
    void TearDown() override { ResetProgramState(); }
    FakeMachine m;
};
}  // namespace

TEST_F(Saving, CancelDoesNothing) {
    m.desktop.dialogAnswers = {""};
    exportoif();
    EXPECT_EQ(m.desktop.dialogTitles, (std::vector<std::string>{"Export OIF file..."}));
    EXPECT_TRUE(m.desktop.messages.empty());
    EXPECT_EQ(CurrentProject.OIF.Parts[0].Header.Texture.str(), "cr01");
}

TEST_F(Saving, SecondSaveOfTheLiveDocumentWritesBlankTextures) {
    const std::string path = m.dir.file("Stadium.OIF");
    m.desktop.dialogAnswers = {path};
    exportoif();
    const OIFParse first = ParseOIF(ReadFile(path));
    ASSERT_EQ(first.error, "");
    EXPECT_EQ(first.doc.Parts[1].Header.Texture.str(), "ad02");
    EXPECT_EQ(CurrentProject.OIF.Parts[1].Header.Texture.str(), "    ");

    // The file exists now: No reopens the dialog, Yes replaces.
    m.desktop.dialogAnswers = {path, path};
    m.desktop.answers = {MessageAnswer::No, MessageAnswer::Yes};
    exportoif();
    EXPECT_EQ(m.desktop.dialogTitles.size(), 3u);
    ASSERT_EQ(m.desktop.messages.size(), 2u);
    EXPECT_EQ(m.desktop.messages[0].text, path + " already exists.   \r\nDo you want to replace it?   ");
    EXPECT_EQ(m.desktop.messages[0].title, "Save As");
    EXPECT_EQ(m.desktop.messages[0].icon, MessageIcon::Exclamation);
    const std::vector<std::uint8_t> second = ReadFile(path);
    EXPECT_EQ(std::string(second.begin() + 24 + 28, second.begin() + 24 + 32), "    ");
    EXPECT_EQ(ParseOIF(second).doc.Parts[0].Header.Texture.str(), "tp00");
}

TEST_F(Saving, OtherExtensionsWriteNothingAndSayNothing) {
    m.desktop.dialogAnswers = {m.dir.file("stadium.txt"), m.dir.file("stadium")};
    exportoif();
    exportoif();
    EXPECT_FALSE(fs::exists(m.dir.file("stadium.txt")));
    EXPECT_FALSE(fs::exists(m.dir.file("stadium")));
    EXPECT_TRUE(m.desktop.messages.empty());
}

TEST_F(Saving, ToOGoesThroughTheHandOverFileAndTheConverter) {
    m.RegisterOIFTool();
    m.Script(m.oiftool + "/oifconvert", "cp \"$2\" \"$3\"");
    m.Text(AppFolder + "/temp.oif", "stale");
    const std::string target = m.dir.file("stadium.o");
    m.desktop.dialogAnswers = {target};
    exportoif();
    EXPECT_TRUE(m.desktop.messages.empty());
    const OIFParse handedOver = ParseOIF(ReadFile(AppFolder + "/temp.oif"));
    ASSERT_EQ(handedOver.error, "");
    EXPECT_EQ(handedOver.doc.Parts.size(), 2u);
    EXPECT_EQ(ReadFile(target), ReadFile(AppFolder + "/temp.oif")) << "the fake converter copies its input";
    EXPECT_EQ(CurrentProject.OIF.Parts[0].Header.Texture.str(), "    ");
}

TEST_F(Saving, AFailedWriteIsToldAndTheOldFileStays) {
    const std::string folder = m.dir.file("taken.oif");
    fs::create_directory(folder);
    m.desktop.dialogAnswers = {folder};
    exportoif();
    ASSERT_EQ(m.desktop.messages.size(), 1u);
    EXPECT_NE(m.desktop.messages[0].text.find("Cannot write"), std::string::npos);
    EXPECT_EQ(m.desktop.messages[0].icon, MessageIcon::Critical);
    EXPECT_TRUE(fs::is_directory(folder));
}

TEST_F(Saving, WithoutAProjectTheFileIsAZeroHeaderThatDoesNotLoad) {
    ResetProgramState();
    const std::string path = m.dir.file("none.oif");
    m.desktop.dialogAnswers = {path};
    exportoif();
    const std::vector<std::uint8_t> bytes = ReadFile(path);
    ASSERT_EQ(bytes.size(), 24u);
    EXPECT_EQ(ParseOIF(bytes).error, InvalidOIFTypeMessage);
}
