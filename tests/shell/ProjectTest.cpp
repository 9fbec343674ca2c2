// A new project from a stadium of the game, the .o conversion both ways, and the save path.
#include <gtest/gtest.h>

#include <cstdlib>

#include "core/FileOps.h"
#include "core/OIFOps.h"
#include "core/myOps.h"
#include "shell/ProjectTestKit.h"
#include "shell/SaveOps.h"
#include "shell/StadiumCatalogue.h"
#include "shell/mdlOIFToolAuto.h"

namespace fs = std::filesystem;

namespace {
std::vector<std::uint8_t> OnePartOIF() {
    Bytes b;
    b.raw("OiFF").i16(1).i16(1).i32(0).i32(0).i32(0).i32(1);
    b.field("Stand", 28).raw("tp01").i32(1).i32(1).vertex(1, 2, 3, 0, 0, 0).i16(0);
    return b.data;
}
}  // namespace

TEST(Catalogue, EachRowsArchiveIsTheOneItsCaptionAndNumberNameAndTextSplitsWithItsDelimiter) {
    const std::vector<StadiumRow> rows = BuildStadiumCatalogue();
    ASSERT_EQ(rows.size(), 29u);
    for (int r = 0; r < 29; ++r) {
        const std::string big = "stad" + std::to_string(StadiumNumber(r)) + ".big";
        EXPECT_EQ(rows[std::size_t(r)].BigFile, big);
        EXPECT_NE(std::string(StadiumCaptions[std::size_t(r + 1)]).find("- " + big), std::string::npos);
    }
    for (int i = 0; i < 30; ++i) EXPECT_EQ(BaseUnsupported(i), i == 4 || i == 19 || (i >= 24 && i <= 27)) << i;
    for (const auto& [n, number] : {std::pair{-1, 0}, {0, 1}, {28, 58}, {29, 0}}) EXPECT_EQ(StadiumNumber(n), number);
    std::string t = "1,2,", empty, many;
    EXPECT_EQ(SplitText(t, ","), (std::vector<std::string>{"", "1", "2", ""}));
    EXPECT_TRUE(t.empty());
    EXPECT_EQ(SplitText(empty, ","), (std::vector<std::string>{"", ""}));
    for (int i = 0; i < 1500; ++i) many += "x;";
    EXPECT_EQ(SplitText(many, ";").size(), 1001u) << "at most 1000 parts, no overrun";
}

TEST(MakeProject, NoTemplateEmptiesTheScratchFolderAndStartsNothing) {
    FakeMachine m;
    m.Text(TempFolder() + "/stad5.big", "old");
    m.Text(TempFolder() + "/keep/inner.txt", "stays");
    StadiumProject p;
    p.OIF = ParseOIF(OnePartOIF()).doc;
    const StadiumProject made = MakeProject(p, 0, "Project1");
    EXPECT_EQ(std::tie(made.Name, made.BasedOn, made.OIF, made.Scene),
              std::make_tuple("Project1", -1, NewOIFFile(), DefaultPreviewScene()));
    ASSERT_EQ(made.Textures.size(), 35u);
    EXPECT_EQ(made.Textures[9].Name, "gras");
    EXPECT_FALSE(fs::exists(TempFolder() + "/stad5.big"));
    EXPECT_TRUE(fs::exists(TempFolder() + "/keep/inner.txt")) << "subfolders stay";
    EXPECT_TRUE(m.desktop.commands.empty() && m.desktop.messages.empty());
}

// From nothing installed, to OIFTool without the game, to the game whose archive unpacks no
// model, to one that does: each step tells why it ends empty, until the stadium loads.
TEST(MakeProject, UnpacksConvertsAndLoadsTheChosenStadiumAndTellsWhyNot) {
    FakeMachine m;
    StadiumProject p;
    const std::pair<MessageIcon, std::string> told[] = {
        {MessageIcon::Critical, "OIFTool has not been installed properly!"},
        {MessageIcon::Exclamation, "Invalid O File"}};
    for (int i = 0; i < 2; ++i) {
        m.desktop.messages.clear();
        EXPECT_EQ(MakeProject(p, 29, "Oval").OIF, NewOIFFile());  // row 28, archive 58
        ASSERT_EQ(m.desktop.messages.size(), 1u);
        EXPECT_EQ(std::pair(m.desktop.messages[0].icon, m.desktop.messages[0].text), told[i]);
        EXPECT_NE(m.desktop.commands.at(0).find("/data/stad58.big\""), std::string::npos);
        m.RegisterOIFTool();
    }
    m.InstallGame();
    m.Script(AppFolder + "/gfxpak", "echo \"gfxpak|$PWD|$*\" >> '" + m.log + "'");
    WriteFile(m.dir.file("made.oif"), OnePartOIF());
    m.InstallConverter(m.dir.file("made.oif"));
    m.desktop.messages.clear();
    m.desktop.commands.clear();
    const fs::path before = fs::current_path();
    EXPECT_EQ(MakeProject(p, 3, "Olympia").BasedOn, 2);  // "Olympiastadion (OD) - stad5.big"
    EXPECT_EQ(fs::current_path(), before);
    const std::string temp = TempFolder(), gfxpak = "\"" + AppFolder + "/gfxpak\"";
    std::vector<std::string> want = {gfxpak + " -u \"" + m.game + "/Data/Stad5.BIG\""};
    for (const char* image : {"skcd", "tp00", "tp01", "tp02", "tp03", "tp04", "tp05"})
        want.push_back(gfxpak + " -e \"" + temp + "/OlympiaODTexObj.texobj01397705078125_static.fsh\" " + image);
    EXPECT_EQ(m.desktop.commands, want);
    const std::vector<std::string> calls = ReadAllLines(m.log);
    ASSERT_EQ(calls.size(), 8u);
    for (const std::string& call : calls) EXPECT_EQ(call.rfind("gfxpak|" + temp + "|", 0), 0u) << "run in the scratch";
    EXPECT_EQ(ReadText(temp + "/stad5.big"), "BIGF five") << "the archive is copied into the scratch folder";
    ASSERT_EQ(m.desktop.messages.size(), 1u);
    EXPECT_EQ(m.desktop.messages[0].text, "Invalid O File") << "the fake gfxpak unpacked no model";

    // With the model unpacked, the converter runs and its file is loaded.
    m.Script(AppFolder + "/gfxpak", "[ \"$1\" = -u ] && : > OlympiaOD__Olympia_od__model168670654296875__.o; true");
    m.desktop.commands.clear();
    const StadiumProject loaded = MakeProject(p, 3, "Olympia");
    ASSERT_EQ(m.desktop.commands.size(), 9u);
    EXPECT_EQ(m.desktop.commands[8], "\"" + m.oiftool + "/oifconvert\" --to-oif \"" + temp +
                                         "/OlympiaOD__Olympia_od__model168670654296875__.o\" \"" + temp +
                                         "/stadium.oif\"");
    ASSERT_EQ(loaded.OIF.Parts.size(), 1u);
    EXPECT_EQ(loaded.OIF.Parts[0].Header.Texture.str(), "tp01");
    EXPECT_EQ(fs::current_path(), before);
}

TEST(Conversion, FailuresSayWhyWithTheConvertersLog) {
    FakeMachine m;
    m.RegisterOIFTool();
    m.Text(m.dir.file("model.o"), "O");
    m.Text(m.dir.file("in.oif"), "x");
    m.Script(m.dir.file("bin/wine"), "exit 0");
    const std::string path = std::getenv("PATH");
    // Without a converter of its own in the OIFTool folder, OIFTool runs under Wine: with no
    // Wine it counts as not installed, and with no prefix to run in the conversion fails.
    const struct {
        std::string path;
        bool converter, toO;
        std::string in, message;
    } cases[] = {
        {path, true, false, "model.o", "Failed, Status log: \r\nPlugin fifastadadp: bad chunk\n"},
        {path, true, true, "missing.oif", "Invalid OIF File"},
        {path, true, true, "in.oif", "No O file has been made!"},
        {m.dir.file("bin"), false, false, "model.o",
         "Failed, Status log: \r\nOIFTool runs in a Wine prefix, and " + m.prefix + " is not one."},
        {m.dir.file("empty"), false, false, "model.o", "OIFTool has not been installed properly!"},
    };
    for (const auto& c : cases) {
        ::setenv("PATH", c.path.c_str(), 1);
        fs::remove(m.oiftool + "/oifconvert");
        if (c.converter) m.InstallConverter("");
        m.desktop.messages.clear();
        m.desktop.commands.clear();
        if (c.toO) ConvertOIFToO(m.dir.file(c.in), m.dir.file("out.o"));
        else ConvertOToOIF(m.dir.file(c.in), m.dir.file("out.oif"));
        ASSERT_EQ(m.desktop.messages.size(), 1u) << c.message;
        EXPECT_EQ(m.desktop.messages[0].text, c.message);
        EXPECT_EQ(m.desktop.messages[0].icon, c.toO ? MessageIcon::Exclamation : MessageIcon::Critical) << c.message;
        if (c.converter && !c.toO) { EXPECT_EQ(ToolPath, m.oiftool); }
        if (c.in == "in.oif") { EXPECT_EQ(m.desktop.messages[0].title, "OIFTool"); }
        EXPECT_TRUE(c.converter || m.desktop.commands.empty()) << c.message;
    }
    ::setenv("PATH", path.c_str(), 1);
}

TEST(Conversion, TheBridgeIsFoundBesideTheProgramElseInItsInstall) {
    ScratchFolder dir;
    const std::string beside = dir.file("build/bin/terramason-oifconvert.exe");
    const std::string installed = dir.file("usr/lib/terramason/terramason-oifconvert.exe");
    const std::string inBin = dir.file("usr/bin/terramason-oifconvert.exe");
    const struct {
        std::vector<std::string> present;
        std::string executableFolder, found;
    } cases[] = {
        {{beside}, dir.file("build/bin"), beside},
        {{installed}, dir.file("usr/bin"), installed},
        {{installed, inBin}, dir.file("usr/bin"), inBin},
        {{installed}, dir.file("build/bin"), ""},
        {{}, "", ""},
    };
    for (const auto& c : cases) {
        fs::remove_all(dir.file("build"));
        fs::remove_all(dir.file("usr"));
        for (const std::string& file : c.present) {
            fs::create_directories(fs::path(file).parent_path());
            WriteFile(file, {'M', 'Z'});
        }
        EXPECT_EQ(FindOIFToolBridge(c.executableFolder), c.found) << c.executableFolder;
    }
}

class Saving : public ::testing::Test {
protected:
    void SetUp() override {
        CurrentProject.OIF = NewOIFFile();
        for (const char* texture : {"cr01", "ad02"}) {
            OIFPart p;
            p.Header.Texture = texture;
            CurrentProject.OIF = AddPart(p, CurrentProject.OIF);
        }
    }
    void TearDown() override { ResetProgramState(); }
    std::string Texture(std::size_t part) const { return CurrentProject.OIF.Parts[part].Header.Texture.str(); }
    FakeMachine m;
};

TEST_F(Saving, CancelOrAnotherExtensionWritesNothingAndAFailedWriteIsTold) {
    fs::create_directory(m.dir.file("taken.oif"));
    m.desktop.dialogAnswers = {"", m.dir.file("stadium.txt"), m.dir.file("stadium"), m.dir.file("taken.oif")};
    for (int i = 0; i < 3; ++i) exportoif();
    EXPECT_EQ(m.desktop.dialogTitles[0], "Export OIF file...");
    EXPECT_EQ(Texture(0), "cr01");
    EXPECT_FALSE(fs::exists(m.dir.file("stadium.txt")) || fs::exists(m.dir.file("stadium")));
    EXPECT_TRUE(m.desktop.messages.empty());
    exportoif();
    ASSERT_EQ(m.desktop.messages.size(), 1u);
    EXPECT_NE(m.desktop.messages[0].text.find("Cannot write"), std::string::npos);
    EXPECT_EQ(m.desktop.messages[0].icon, MessageIcon::Critical);
    EXPECT_TRUE(fs::is_directory(m.dir.file("taken.oif")));
}

TEST_F(Saving, SecondSaveOfTheLiveDocumentWritesBlankTexturesAndAsksBeforeReplacing) {
    const std::string path = m.dir.file("Stadium.OIF");
    m.desktop.dialogAnswers = {path, path, path};
    exportoif();
    EXPECT_EQ(ParseOIF(ReadFile(path)).doc.Parts[1].Header.Texture.str(), "ad02");
    EXPECT_EQ(Texture(1), "    ");
    // The file exists now: No reopens the dialog, Yes replaces.
    m.desktop.answers = {MessageAnswer::No, MessageAnswer::Yes};
    exportoif();
    EXPECT_EQ(m.desktop.dialogTitles.size(), 3u);
    ASSERT_EQ(m.desktop.messages.size(), 2u);
    const ShownMessage& q = m.desktop.messages[0];
    EXPECT_EQ(q.title + "|" + q.text, "Save As|" + path + " already exists.   \r\nDo you want to replace it?   ");
    EXPECT_EQ(q.icon, MessageIcon::Exclamation);
    const std::vector<std::uint8_t> second = ReadFile(path);
    EXPECT_EQ(std::string(second.begin() + 24 + 28, second.begin() + 24 + 32), "    ");
    EXPECT_EQ(ParseOIF(second).doc.Parts[0].Header.Texture.str(), "tp00");
}

TEST_F(Saving, ToOGoesThroughTheHandOverFileAndTheConverterAndWithoutAProjectTheFileDoesNotLoad) {
    m.RegisterOIFTool();
    m.Script(m.oiftool + "/oifconvert", "cp \"$2\" \"$3\"");
    m.Text(AppFolder + "/temp.oif", "stale");
    m.desktop.dialogAnswers = {m.dir.file("stadium.o"), m.dir.file("none.oif")};
    exportoif();
    EXPECT_TRUE(m.desktop.messages.empty());
    EXPECT_EQ(ParseOIF(ReadFile(AppFolder + "/temp.oif")).doc.Parts.size(), 2u);
    EXPECT_EQ(ReadFile(m.dir.file("stadium.o")), ReadFile(AppFolder + "/temp.oif")) << "the converter copies";
    EXPECT_EQ(Texture(0), "    ");
    ResetProgramState();
    exportoif();
    const std::vector<std::uint8_t> bytes = ReadFile(m.dir.file("none.oif"));
    ASSERT_EQ(bytes.size(), 24u);
    EXPECT_EQ(ParseOIF(bytes).error, InvalidOIFTypeMessage);
}
