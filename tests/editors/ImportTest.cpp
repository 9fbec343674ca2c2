#include <gtest/gtest.h>

#include <filesystem>

#include "core/OIFOps.h"
#include "core/Views.h"
#include "editors/ImportOps.h"
#include "shell/ProjectTestKit.h"
#include "support/Chunks3DS.h"

namespace fs = std::filesystem;

namespace {
struct CountingViews : Views {
    int refreshed = 0, loaded = 0, rebuilt = 0;
    void RefreshPartsList() override { ++refreshed; }
    void RebuildPreviews() override { ++rebuilt; }
    void loadviews() override { ++loaded; }
};

Bytes PartsFile(int parts) {
    Bytes b;
    b.raw("OiFF").i16(1).i16(1).i32(0).i32(0).i32(0).i32(parts);
    for (int i = 0; i < parts; ++i) b.field("Imported", 28).raw("cr0" + std::to_string(i)).i32(0).i32(0);
    return b;
}

// A triangle with its texture points, and nothing else.
chunks3ds::Bytes3DS RoofModel() {
    using namespace chunks3ds;
    return File({Object("Roof", {Vertices({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}}), TexVerts({{0, 0}, {1, 0}, {1, 1}}),
                                 Faces({{0, 1, 2}})})});
}

class Importing : public ::testing::Test {
protected:
    void SetUp() override {
        CurrentProject.OIF = NewOIFFile();
        OIFPart own;
        own.Header.Name = "Own";
        CurrentProject.OIF = AddPart(own, CurrentProject.OIF);
        InstallViews(&views);
    }
    void TearDown() override {
        InstallViews(nullptr);
        ResetProgramState();
    }
    FakeMachine m;
    CountingViews views;
};
}  // namespace

TEST_F(Importing, OIFPartsAreAppendedAfterTheOwnOnes) {
    WriteFile(m.dir.file("two.oif"), PartsFile(2).data);
    m.desktop.dialogAnswers = {m.dir.file("missing.oif"), m.dir.file("two.oif")};
    importfile();
    EXPECT_EQ(m.desktop.dialogTitles.size(), 2u) << "a missing file asks again";
    ASSERT_EQ(CurrentProject.OIF.Header.PartCount, 3);
    EXPECT_EQ(CurrentProject.OIF.Parts[0].Header.Name.str().substr(0, 3), "Own");
    EXPECT_EQ(CurrentProject.OIF.Parts[2].Header.Texture.str(), "cr01");
    EXPECT_EQ(views.refreshed, 1);
    EXPECT_EQ(views.loaded, 1);
}

TEST_F(Importing, OFilesGoThroughTheConverterAndTheHandOverFileIsRemoved) {
    m.RegisterOIFTool();
    WriteFile(m.dir.file("made.oif"), PartsFile(1).data);
    m.InstallConverter(m.dir.file("made.oif"));
    m.Text(m.dir.file("stadium.o"), "O");
    EXPECT_TRUE(importo(m.dir.file("stadium.o")));
    EXPECT_EQ(CurrentProject.OIF.Header.PartCount, 2);
    EXPECT_FALSE(fs::exists(AppFolder + "/tempoif.oif"));
    EXPECT_TRUE(m.desktop.messages.empty());

    m.InstallConverter("");
    EXPECT_FALSE(importo(m.dir.file("stadium.o")));
    ASSERT_EQ(m.desktop.messages.size(), 1u);
    EXPECT_EQ(m.desktop.messages[0].text, "Invalid OIF file!\r\n\r\nPlugin fifastadadp: bad chunk\n");
    EXPECT_EQ(CurrentProject.OIF.Header.PartCount, 2);
}

TEST_F(Importing, A3DSModelBecomesOneNewPart) {
    WriteFile(m.dir.file("roof.3DS"), RoofModel());
    m.desktop.dialogAnswers = {m.dir.file("roof.3DS")};
    importfile();
    ASSERT_EQ(CurrentProject.OIF.Header.PartCount, 2);
    const OIFPart& part = CurrentProject.OIF.Parts[1];
    EXPECT_EQ(part.Header.Name, FixedText<28>("Part 1")) << "named after the part count before it was added";
    EXPECT_TRUE(part.Vertices.size() == 3u && part.Indices.size() == 3u);
    EXPECT_TRUE(views.refreshed == 1 && views.rebuilt == 1);
    EXPECT_TRUE(m.desktop.messages.empty());
}

// Each refusal is told once, in its own words, and leaves the document and the views as they were.
TEST_F(Importing, RefusedFilesAndTypesAreToldAndChangeNothing) {
    Bytes bad = PartsFile(2);
    bad.data.resize(bad.data.size() - 3);
    WriteFile(m.dir.file("bad.oif"), bad.data);
    chunks3ds::Bytes3DS damaged = RoofModel();
    damaged.resize(damaged.size() - 2);
    WriteFile(m.dir.file("bad.3ds"), damaged);
    m.Text(m.dir.file("model.CSV"), "x");
    m.Text(m.dir.file("model.txt"), "x");
    m.Text(m.dir.file("bad.csv"), "\"Name\",\"Kind\"\r\n\"a\",\"point\"\r\n");
    const OIFFile before = CurrentProject.OIF;
    EXPECT_FALSE(ImportByExtension(m.dir.file("bad.3ds")));
    EXPECT_FALSE(importcsv(m.dir.file("bad.csv")));
    m.desktop.dialogAnswers = {m.dir.file("model.CSV"), "", m.dir.file("model.txt")};
    importfile();
    importfile();
    importpolygonpart();
    EXPECT_TRUE(views.refreshed == 0 && views.rebuilt == 0);
    EXPECT_FALSE(importoif(m.dir.file("bad.oif")));
    const char* said[] = {"damaged", "Object Type", UnsupportedFileMessage, UnsupportedFileMessage,
                          "Invalid OIF file!"};
    ASSERT_EQ(m.desktop.messages.size(), std::size(said));
    for (std::size_t i = 0; i < std::size(said); ++i)
        EXPECT_NE(m.desktop.messages[i].text.find(said[i]), std::string::npos) << m.desktop.messages[i].text;
    EXPECT_EQ(m.desktop.messages[4].text, "Invalid OIF file!");
    EXPECT_EQ(m.desktop.messages[2].icon, MessageIcon::Exclamation);
    EXPECT_EQ(CurrentProject.OIF, before);
    EXPECT_EQ(CurrentProject.Polygons.Count, 0);
}

namespace {
// Eight points of a Rhinoceros table: two quads, then one point too many that is dropped.
std::string PointTable() {
    std::string t = "\"Name\",\"Kind\",\"Object Type\"\r\n";
    for (int i = 0; i < 9; ++i) t += "\"p" + std::to_string(i) + "\",\"point\",\"" + std::to_string(i) + ",0.5,2\"\r\n";
    return t;
}
}  // namespace

TEST_F(Importing, PointTablesBecomeAQuadPartOrJoinThePolygonList) {
    m.Text(m.dir.file("rows.csv"), PointTable());
    ASSERT_TRUE(importcsv(m.dir.file("rows.csv")));
    ASSERT_EQ(CurrentProject.OIF.Header.PartCount, 2);
    const OIFPart& quads = CurrentProject.OIF.Parts[1];
    ASSERT_EQ(quads.Vertices.size(), 8u);
    EXPECT_TRUE(quads.Vertices[0].X == 100 && quads.Vertices[0].Y == 200 && quads.Vertices[0].Z == 50)
        << "V1 of the first quad comes first";
    EXPECT_TRUE(fs::exists(TempFolder() + "/stad1.wrl"));

    const OIFFile before = CurrentProject.OIF;
    m.desktop.dialogAnswers = {m.dir.file("gone.csv"), m.dir.file("rows.csv"), m.dir.file("rows.csv"), ""};
    importpolygonpart();
    importpolygonpart();
    importpolygonpart();
    EXPECT_EQ(CurrentProject.Polygons.Count, 2);
    EXPECT_EQ(CurrentProject.Polygons.Items[1].Count, 2);
    EXPECT_EQ(CurrentProject.OIF, before) << "the polygon list is not the document";
    EXPECT_TRUE(fs::exists(AppFolder + "/stad2.wrl"));
}
