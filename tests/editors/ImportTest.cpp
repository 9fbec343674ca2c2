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

TEST_F(Importing, ARefusedFileLeavesTheDocumentAsItWas) {
    const OIFFile before = CurrentProject.OIF;
    Bytes bad = PartsFile(2);
    bad.data.resize(bad.data.size() - 3);
    WriteFile(m.dir.file("bad.oif"), bad.data);
    EXPECT_FALSE(importoif(m.dir.file("bad.oif")));
    EXPECT_EQ(CurrentProject.OIF, before);
    ASSERT_EQ(m.desktop.messages.size(), 1u);
    EXPECT_EQ(m.desktop.messages[0].text, "Invalid OIF file!");
}

TEST_F(Importing, UnsupportedTypesAreToldAndCancelDoesNothing) {
    m.Text(m.dir.file("model.CSV"), "x");
    m.desktop.dialogAnswers = {m.dir.file("model.CSV"), ""};
    importfile();
    importfile();
    ASSERT_EQ(m.desktop.messages.size(), 1u);
    EXPECT_EQ(m.desktop.messages[0].text, "File type not supported!");
    EXPECT_EQ(m.desktop.messages[0].icon, MessageIcon::Exclamation);
    EXPECT_EQ(CurrentProject.OIF.Header.PartCount, 1);
    EXPECT_EQ(views.refreshed, 0);
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

TEST_F(Importing, A3DSModelBecomesOneNewPartAndADamagedOneChangesNothing) {
    using namespace chunks3ds;
    const Bytes3DS model = File({Object("Roof", {Vertices({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}}),
                                                 TexVerts({{0, 0}, {1, 0}, {1, 1}}), Faces({{0, 1, 2}})})});
    WriteFile(m.dir.file("roof.3DS"), model);
    m.desktop.dialogAnswers = {m.dir.file("roof.3DS")};
    importfile();
    ASSERT_EQ(CurrentProject.OIF.Header.PartCount, 2);
    const OIFPart& part = CurrentProject.OIF.Parts[1];
    EXPECT_EQ(part.Header.Name, FixedText<28>("Part 1")) << "named after the part count before it was added";
    EXPECT_EQ(part.Vertices.size(), 3u);
    EXPECT_EQ(part.Indices.size(), 3u);
    EXPECT_EQ(views.refreshed, 1);
    EXPECT_EQ(views.rebuilt, 1);
    EXPECT_TRUE(m.desktop.messages.empty());

    const OIFFile before = CurrentProject.OIF;
    Bytes3DS damaged = model;
    damaged.resize(damaged.size() - 2);
    WriteFile(m.dir.file("bad.3ds"), damaged);
    EXPECT_FALSE(ImportByExtension(m.dir.file("bad.3ds")));
    EXPECT_EQ(CurrentProject.OIF, before);
    ASSERT_EQ(m.desktop.messages.size(), 1u);
    EXPECT_NE(m.desktop.messages[0].text.find("damaged"), std::string::npos);
    EXPECT_EQ(views.rebuilt, 1);
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
    EXPECT_EQ(quads.Vertices[0].X, 100.0f) << "V1 of the first quad comes first";
    EXPECT_EQ(quads.Vertices[0].Y, 200.0f);
    EXPECT_EQ(quads.Vertices[0].Z, 50.0f);
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

    m.Text(m.dir.file("model.txt"), "x");
    m.Text(m.dir.file("bad.csv"), "\"Name\",\"Kind\"\r\n\"a\",\"point\"\r\n");
    m.desktop.dialogAnswers = {m.dir.file("model.txt")};
    importpolygonpart();
    EXPECT_FALSE(importcsv(m.dir.file("bad.csv")));
    ASSERT_EQ(m.desktop.messages.size(), 2u);
    EXPECT_EQ(m.desktop.messages[0].text, "File type not supported!");
    EXPECT_NE(m.desktop.messages[1].text.find("Object Type"), std::string::npos);
    EXPECT_EQ(CurrentProject.OIF, before);
}
