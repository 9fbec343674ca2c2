#include <gtest/gtest.h>

#include <unistd.h>
#include <cstdlib>
#include <filesystem>

#include "core/FileOps.h"
#include "core/OIFOps.h"
#include "core/myOps.h"
#include "shell/ProjectTestKit.h"
#include "shell/StadiumCatalogue.h"
#include "shell/mdlOIFToolAuto.h"

namespace fs = std::filesystem;

namespace {
Bytes OnePartOIF() {
    Bytes b;
    b.raw("OiFF").i16(1).i16(1).i32(0).i32(0).i32(0).i32(1);
    b.field("Stand", 28).raw("tp01").i32(1).i32(1).vertex(1, 2, 3, 0, 0, 0).i16(0);
    return b;
}

std::vector<std::string> Lines(const std::string& path) { return ReadAllLines(path); }
}  // namespace

TEST(Catalogue, CaptionsRowsAndTextureNamesStandInTheirOrder) {
    EXPECT_STREQ(StadiumCaptions[0], "None [No template]");
    EXPECT_STREQ(StadiumCaptions[4], "Gerland (SN) - stad8.big");
    EXPECT_STREQ(StadiumCaptions[29], "Square Oval (CN) - stad58.big");
    const std::vector<StadiumRow> rows = BuildStadiumCatalogue();
    ASSERT_EQ(rows.size(), 29u);
    EXPECT_EQ(rows[8].ExtraFile, "WestfalenOD__Nets_Westfallen__model158966064453125__.o");
    EXPECT_EQ(rows[5].ShadowFile, "");
    // Each row's archive is the one its caption names and the one StadiumNumber gives.
    for (int r = 0; r < 29; ++r) {
        const std::string big = "stad" + std::to_string(StadiumNumber(r)) + ".big";
        EXPECT_EQ(rows[static_cast<std::size_t>(r)].BigFile, big);
        EXPECT_NE(std::string(StadiumCaptions[static_cast<std::size_t>(r + 1)]).find("- " + big), std::string::npos);
    }
    EXPECT_EQ(ProjectTextureNames.size(), 35u);
    EXPECT_STREQ(ProjectTextureNames[6], "SL00");
    EXPECT_STREQ(ProjectTextureNames[34], "rwh3");
    for (int i = 0; i < 30; ++i) EXPECT_EQ(BaseUnsupported(i), i == 4 || i == 19 || (i >= 24 && i <= 27)) << i;
}

TEST(SplitText, AppendsTheDelimiterAndConsumesItsText) {
    std::string t = "1,2,";
    EXPECT_EQ(SplitText(t, ","), (std::vector<std::string>{"", "1", "2", ""}));
    EXPECT_TRUE(t.empty());
    std::string empty;
    EXPECT_EQ(SplitText(empty, ","), (std::vector<std::string>{"", ""}));
    std::string many;
    for (int i = 0; i < 1500; ++i) many += "x;";
    EXPECT_EQ(SplitText(many, ";").size(), 1001u) << "at most 1000 parts, no overrun";
    EXPECT_EQ(StadiumNumber(-1), 0);
    EXPECT_EQ(StadiumNumber(0), 1);
    EXPECT_EQ(StadiumNumber(28), 58);
    EXPECT_EQ(StadiumNumber(29), 0);
}

TEST(MakeProject, NoTemplateEmptiesTheScratchFolderAndStartsNothing) {
    FakeMachine m;
    fs::create_directories(TempFolder() + "/keep");
    m.Text(TempFolder() + "/stad5.big", "old");
    m.Text(TempFolder() + "/keep/inner.txt", "stays");
    StadiumProject p;
    p.OIF = ParseOIF(OnePartOIF().data).doc;
    const StadiumProject made = MakeProject(p, 0, "Project1");
    EXPECT_EQ(made.Name, "Project1");
    EXPECT_EQ(made.BasedOn, -1);
    EXPECT_EQ(made.OIF, NewOIFFile());
    ASSERT_EQ(made.Textures.size(), 35u);
    EXPECT_EQ(made.Textures[9].Name, "gras");
    EXPECT_EQ(made.Textures[9].PartCount, 0);
    EXPECT_EQ(made.Scene, DefaultPreviewScene());
    EXPECT_FALSE(fs::exists(TempFolder() + "/stad5.big"));
    EXPECT_TRUE(fs::exists(TempFolder() + "/keep/inner.txt")) << "subfolders stay";
    EXPECT_TRUE(m.desktop.commands.empty());
    EXPECT_TRUE(m.desktop.messages.empty());
    EXPECT_EQ(StadiumCatalogue.size(), 29u);
}

TEST(MakeProject, UnpacksConvertsAndLoadsTheChosenStadium) {
    FakeMachine m;
    m.InstallGame();
    m.InstallGfxpak();
    m.RegisterOIFTool();
    WriteFile(m.dir.file("made.oif"), OnePartOIF().data);
    m.InstallConverter(m.dir.file("made.oif"));
    const fs::path before = fs::current_path();
    StadiumProject p;
    const StadiumProject made = MakeProject(p, 3, "Olympia");  // "Olympiastadion (OD) - stad5.big"
    EXPECT_EQ(fs::current_path(), before);
    EXPECT_EQ(made.BasedOn, 2);

    const std::string temp = TempFolder();
    const std::string archive = m.game + "/Data/Stad5.BIG";
    const std::string gfxpak = "\"" + AppFolder + "/gfxpak\"";
    const std::string pack = "\"" + temp + "/OlympiaODTexObj.texobj01397705078125_static.fsh\" ";
    std::vector<std::string> want = {gfxpak + " -u \"" + archive + "\""};
    for (const char* image : {"skcd", "tp00", "tp01", "tp02", "tp03", "tp04", "tp05"})
        want.push_back(gfxpak + " -e " + pack + image);
    want.push_back("\"" + m.oiftool + "/oifconvert\" --to-oif \"" + temp +
                   "/OlympiaOD__Olympia_od__model168670654296875__.o\" \"" + temp + "/stadium.oif\"");
    // The model must exist for the conversion to run: gfxpak is fake, so the test provides it.
    EXPECT_EQ(m.desktop.commands.size(), 8u);
    EXPECT_EQ(std::vector<std::string>(m.desktop.commands.begin(), m.desktop.commands.begin() + 8),
              std::vector<std::string>(want.begin(), want.begin() + 8));
    const std::vector<std::string> calls = Lines(m.log);
    ASSERT_GE(calls.size(), 8u);
    EXPECT_EQ(calls[0], "gfxpak|" + temp + "|-u " + archive);
    for (std::size_t i = 1; i < 8; ++i) EXPECT_EQ(calls[i].substr(0, 8 + temp.size()), "gfxpak|" + temp + "|");
    EXPECT_EQ(ReadText(temp + "/stad5.big"), "BIGF five") << "the archive is copied into the scratch folder";
    ASSERT_EQ(m.desktop.messages.size(), 1u);
    EXPECT_EQ(m.desktop.messages[0].text, "Invalid O File") << "the fake gfxpak unpacked no model";

    // With the model unpacked, the converter runs and its file is loaded.
    m.Script(AppFolder + "/gfxpak",
             "echo \"gfxpak|$PWD|$*\" >> '" + m.log +
                 "'; [ \"$1\" = -u ] && : > OlympiaOD__Olympia_od__model168670654296875__.o; true");
    m.desktop.commands.clear();
    StadiumProject q;
    const StadiumProject loaded = MakeProject(q, 3, "Olympia");
    ASSERT_EQ(m.desktop.commands.size(), 9u);
    EXPECT_EQ(m.desktop.commands[8], want[8]);
    ASSERT_EQ(loaded.OIF.Parts.size(), 1u);
    EXPECT_EQ(loaded.OIF.Parts[0].Header.Texture.str(), "tp01");
    EXPECT_EQ(fs::current_path(), before);
}

TEST(MakeProject, WithNothingInstalledTellsWhyAndEndsEmpty) {
    FakeMachine m;
    StadiumProject p;
    const StadiumProject made = MakeProject(p, 29, "Oval");  // row 28, archive 58
    ASSERT_EQ(m.desktop.messages.size(), 1u);
    EXPECT_EQ(m.desktop.messages[0].text, "OIFTool has not been installed properly!");
    EXPECT_EQ(m.desktop.messages[0].icon, MessageIcon::Critical);
    EXPECT_TRUE(made.OIF.Parts.empty());
    EXPECT_EQ(made.OIF, NewOIFFile());
    // gfxpak was asked for the archive numbered 58 in the (missing) game folder.
    ASSERT_FALSE(m.desktop.commands.empty());
    EXPECT_NE(m.desktop.commands[0].find("/data/stad58.big\""), std::string::npos);

    // OIFTool registered but the game missing: the model is not there.
    m.RegisterOIFTool();
    m.desktop.messages.clear();
    StadiumProject q;
    MakeProject(q, 29, "Oval");
    ASSERT_EQ(m.desktop.messages.size(), 1u);
    EXPECT_EQ(m.desktop.messages[0].text, "Invalid O File");
}

TEST(Conversion, AFailingConverterShowsItsLog) {
    FakeMachine m;
    m.RegisterOIFTool();
    m.InstallConverter("");
    m.Text(m.dir.file("model.o"), "O");
    ConvertOToOIF(m.dir.file("model.o"), m.dir.file("out.oif"));
    ASSERT_EQ(m.desktop.messages.size(), 1u);
    EXPECT_EQ(m.desktop.messages[0].text, "Failed, Status log: \r\nPlugin fifastadadp: bad chunk\n");
    EXPECT_EQ(m.desktop.messages[0].icon, MessageIcon::Critical);
    EXPECT_EQ(ToolPath, m.oiftool);

    m.desktop.messages.clear();
    ConvertOIFToO(m.dir.file("missing.oif"), m.dir.file("out.o"));
    ASSERT_EQ(m.desktop.messages.size(), 1u);
    EXPECT_EQ(m.desktop.messages[0].text, "Invalid OIF File");
    m.Text(m.dir.file("in.oif"), "x");
    ConvertOIFToO(m.dir.file("in.oif"), m.dir.file("out.o"));
    ASSERT_EQ(m.desktop.messages.size(), 2u);
    EXPECT_EQ(m.desktop.messages[1].text, "No O file has been made!");
    EXPECT_EQ(m.desktop.messages[1].title, "OIFTool");
}

// Without a converter of its own in the OIFTool folder, OIFTool runs under Wine: with no Wine it
// counts as not installed, and with no prefix to run in the conversion fails and says why.
TEST(Conversion, WithoutWineOrAPrefixNothingIsConverted) {
    FakeMachine m;
    m.RegisterOIFTool();
    m.Text(m.dir.file("model.o"), "O");
    m.Script(m.dir.file("bin/wine"), "exit 0");
    const struct {
        std::string path, message;
    } cases[] = {
        {m.dir.file("bin"), "Failed, Status log: \r\nOIFTool runs in a Wine prefix, and " + m.prefix + " is not one."},
        {m.dir.file("empty"), "OIFTool has not been installed properly!"},
    };
    const std::string path = std::getenv("PATH");
    for (const auto& c : cases) {
        ::setenv("PATH", c.path.c_str(), 1);
        m.desktop.messages.clear();
        ConvertOToOIF(m.dir.file("model.o"), m.dir.file("out.oif"));
        ASSERT_EQ(m.desktop.messages.size(), 1u);
        EXPECT_EQ(m.desktop.messages[0].text, c.message);
    }
    ::setenv("PATH", path.c_str(), 1);
    EXPECT_TRUE(m.desktop.commands.empty());
}

TEST(Conversion, TheBridgeIsFoundBesideTheProgramElseInItsInstall) {
    ScratchFolder dir;
    const std::string beside = dir.file("build/bin/terramason-oifconvert.exe");
    const std::string installed = dir.file("usr/lib/terramason/terramason-oifconvert.exe");
    const struct {
        std::vector<std::string> present;
        std::string executableFolder, found;
    } cases[] = {
        {{beside}, dir.file("build/bin"), beside},
        {{installed}, dir.file("usr/bin"), installed},
        {{installed, dir.file("usr/bin/terramason-oifconvert.exe")},
         dir.file("usr/bin"),
         dir.file("usr/bin/terramason-oifconvert.exe")},
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
