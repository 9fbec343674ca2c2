// Adboards and banners: meshes dealt in turn to their textures, the UV band of each board, the
// commands' questions and refusals.
#include <gtest/gtest.h>

#include "core/ProgramState.h"
#include "support/Chunks3DS.h"
#include "support/ScriptedDesktop.h"
#include "support/TestFiles.h"
#include "wizards/AdboardOps.h"

namespace {

using namespace chunks3ds;

// `quads` four-vertex meshes and one triangle mesh, which is no board.
Bytes3DS Boards(int quads) {
    return QuadMeshes(quads, {Object("tri", {Vertices({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}}), Faces({{0, 1, 2}})})});
}

std::vector<std::string> Textures(const OIFFile& doc) {
    std::vector<std::string> names;
    for (const OIFPart& part : doc.Parts) names.push_back(part.Header.Texture.str());
    return names;
}

class Boards3DS : public ::testing::Test {
protected:
    void SetUp() override { CurrentProject.OIF = NewOIFFile(); }
    void TearDown() override { ResetProgramState(); }
    std::string Put(const std::string& name, const std::vector<std::uint8_t>& bytes) {
        WriteFile(scratch.file(name), bytes);
        return scratch.file(name);
    }
    ScratchFolder scratch;
    ScriptedDesktop desktop;
};

}  // namespace

TEST_F(Boards3DS, SevenBoardsGiveThreeTwoAndTwoWithTheirBands) {
    desktop.dialogAnswers = {Put("boards.3ds", Boards(7))};
    importadboard();
    const OIFFile& doc = CurrentProject.OIF;
    ASSERT_EQ(Textures(doc), (std::vector<std::string>{"adba", "adbb", "adbc"}));
    EXPECT_TRUE(doc.Parts[0].Header.Name == FixedText<28>("Part 0 [adba]") &&
                doc.Parts[2].Header.Name == FixedText<28>("Part 2 [adbc]"));
    const float bands[3][2] = {{0.0f, 0.33f}, {0.33f, 0.66f}, {0.66f, 1.0f}};
    const int quads[3] = {3, 2, 2};
    for (std::size_t p = 0; p < 3; ++p) {
        const OIFPart& part = doc.Parts[p];
        ASSERT_EQ(part.Header.VertexCount, 4 * quads[p]);
        for (const OIFVertex& v : part.Vertices)
            EXPECT_TRUE((v.V == bands[p][0] || v.V == bands[p][1]) && (v.U == 0 || v.U == 1)) << p << ": " << v.V;
    }
    // The first board of "adba": its bottom right corner leads, at the bottom of its band.
    EXPECT_TRUE(doc.Parts[0].Vertices[0].X == 100 && doc.Parts[0].Vertices[0].V == 0.33f);

    // A second import adds parts of the same textures: no merge.
    desktop.dialogAnswers = {scratch.file("boards.3ds")};
    importadboard();
    EXPECT_EQ(doc.Header.PartCount, 6);
    EXPECT_EQ(desktop.dialogTitles,
              (std::vector<std::string>{"Import adboard polygons...", "Import adboard polygons..."}));
}

TEST_F(Boards3DS, BannersAlternateWithFlagsForTheTeamAnswered) {
    desktop.dialogAnswers = {Put("banners.3ds", Boards(4))};
    desktop.answers = {MessageAnswer::Yes};
    importbanner();
    ASSERT_EQ(desktop.messages.size(), 1u);
    EXPECT_TRUE(desktop.messages[0].text == "Are these banners for the home team?" &&
                desktop.messages[0].title == "Terramason");
    EXPECT_EQ(Textures(CurrentProject.OIF), (std::vector<std::string>{"hbna", "hbnb", "hfla", "hflb"}));
    for (const OIFPart& part : CurrentProject.OIF.Parts) EXPECT_EQ(part.Header.VertexCount, 4);
    const OIFVertex& first = CurrentProject.OIF.Parts[0].Vertices[0];
    EXPECT_TRUE(first.U == 1 && first.V == 1) << "a banner takes the whole texture";
    EXPECT_EQ(CurrentProject.OIF.Parts[2].Vertices[0].X, 300) << "the second mesh is the first flag";

    CurrentProject.OIF = NewOIFFile();
    EXPECT_TRUE(ImportBannerFile(scratch.file("banners.3ds"), false));
    EXPECT_EQ(Textures(CurrentProject.OIF), (std::vector<std::string>{"abna", "abnb", "afla", "aflb"}));
    CurrentProject.OIF = NewOIFFile();
    ImportBannerFile(Put("seven.3ds", Boards(7)), true);
    EXPECT_EQ(Textures(CurrentProject.OIF), (std::vector<std::string>{"hbna", "hbnb", "hbnc", "hfla", "hflb", "hflc"}));
    EXPECT_EQ(CurrentProject.OIF.Parts[0].Header.VertexCount, 8) << "the seventh mesh starts again at bna";
}

TEST_F(Boards3DS, TheCommandsRefuseOtherFilesAndAddNothingWithoutQuads) {
    desktop.dialogAnswers = {"", scratch.file("missing.3ds"), Put("boards.txt", Boards(3))};
    importadboard();
    importadboard();
    importadboard();
    ASSERT_EQ(desktop.messages.size(), 1u);
    EXPECT_TRUE(desktop.messages[0].text == "Unknown file extension!" &&
                desktop.messages[0].icon == MessageIcon::Exclamation);
    desktop.dialogAnswers = {Put("none.3ds", Boards(0))};
    desktop.answers = {MessageAnswer::Yes};
    importbanner();
    EXPECT_EQ(CurrentProject.OIF, NewOIFFile());
    Bytes3DS cut = Boards(2);
    cut.resize(40);
    desktop.dialogAnswers = {Put("cut.3ds", cut)};
    importadboard();
    EXPECT_EQ(CurrentProject.OIF, NewOIFFile());
    EXPECT_EQ(desktop.messages.size(), 3u) << "the damaged model is told";
}
