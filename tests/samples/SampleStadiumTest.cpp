// The sample stadium that ships with the editor: every file of it goes through the command a new
// user tries it with, and every texture that command gives a part has its picture beside it. A
// sample that no longer loads, or whose crowds float off their steps, fails here.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <optional>
#include <set>

#include "core/OIFOps.h"
#include "core/ProgramState.h"
#include "core/myOps.h"
#include "importer/stmapOps.h"
#include "support/ScriptedDesktop.h"
#include "support/TestFiles.h"
#include "wizards/AdboardOps.h"
#include "wizards/CrowdModule.h"

namespace {

const std::string kSamples = TM_SAMPLES;

// Width and height from a PNG's header, which is all the importer's load asks of a picture.
std::optional<PictureSize> PngSize(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    unsigned char header[24] = {};
    if (!in.read(reinterpret_cast<char*>(header), sizeof header) || header[1] != 'P' || header[2] != 'N')
        return std::nullopt;
    auto big = [&](int at) {
        return (header[at] << 24) | (header[at + 1] << 16) | (header[at + 2] << 8) | header[at + 3];
    };
    return PictureSize{big(16), big(20)};
}

class SampleStadium : public ::testing::Test {
protected:
    void SetUp() override {
        ResetProgramState();
        AppFolder = scratch.path();
        SeedRandom(2003);
        CurrentProject.Name = "Sample";
        bool ok = false;
        CurrentProject.OIF = LoadOIF(kSamples + "/stadium.oif", &ok);
        ASSERT_TRUE(ok);
    }
    void TearDown() override {
        AppFolder.clear();
        ResetProgramState();
    }

    std::vector<const OIFPart*> PartsNamed(const std::string& texturePrefix) const {
        std::vector<const OIFPart*> parts;
        for (const OIFPart& p : CurrentProject.OIF.Parts)
            if (p.Header.Texture.str().rfind(texturePrefix, 0) == 0) parts.push_back(&p);
        return parts;
    }

    ScratchFolder scratch;
    ScriptedDesktop desktop;
};

TEST_F(SampleStadium, EveryCommandOfTheWalkThroughAddsItsPartsAndEveryTextureHasAPicture) {
    ASSERT_EQ(CurrentProject.OIF.Parts.size(), 6u);
    ASSERT_TRUE(ImportCrowdFile(kSamples + "/crowds.txt", 0));
    // The crowd rows stand on the treads of their stand: per row V1, V0, V2, V3, the two base
    // corners on one tread and the tops 260 above them.
    std::size_t rows = 0, awayRows = 0;
    for (const OIFPart* p : PartsNamed("rw"))
        for (std::size_t q = 0; q + 3 < p->Vertices.size(); q += 4, ++rows) {
            awayRows += p->Header.Texture.str()[2] == 'a';
            const OIFVertex &base = p->Vertices[q], &top = p->Vertices[q + 1];
            const float tread = (base.Y - 100) / 75;
            EXPECT_TRUE(tread == std::round(tread) && tread >= 1 && tread <= 14) << "row base " << base.Y;
            EXPECT_FLOAT_EQ(top.Y - base.Y, 260);
            EXPECT_FLOAT_EQ(p->Vertices[q + 2].Y, base.Y);
        }
    EXPECT_EQ(rows, 4u * 14u);
    EXPECT_EQ(awayRows, 14u);  // the south stand
    ASSERT_TRUE(ImportAdboardFile(kSamples + "/adboards.3ds"));
    ASSERT_TRUE(ImportBannerFile(kSamples + "/banners.3ds", true));
    ASSERT_TRUE(ImportBannerFile(kSamples + "/banners.3ds", false));
    EXPECT_TRUE(desktop.messages.empty());
    std::set<std::string> textures;
    for (const OIFPart& p : CurrentProject.OIF.Parts) textures.insert(p.Header.Texture.str());
    // Eight crowds, three boards, six banner and flag pictures for each team.
    EXPECT_EQ(textures.size(), 3u + 8u + 3u + 12u);
    for (const std::string& t : textures)
        EXPECT_TRUE(std::filesystem::exists(kSamples + "/textures/" + t + ".png")) << t;
    std::size_t boardQuads = 0;
    for (const OIFPart* p : PartsNamed("adb")) boardQuads += p->Vertices.size() / 4;
    EXPECT_EQ(boardQuads, 52u);
}

TEST_F(SampleStadium, TheWizardFillsEachCrowdPlaneWithOneRowPerStep) {
    CrowdWizardInput input;
    input.fromFile = true;
    input.file = kSamples + "/crowdplanes.3ds";
    input.bySpacing = true;
    bool read = false;
    const OIFFile doc = MakeCrowds(CurrentProject.OIF, input, &read);
    ASSERT_TRUE(read);
    std::size_t vertices = 0;
    for (const OIFPart& p : doc.Parts)
        if (p.Header.Texture.str().rfind("rwh", 0) == 0) vertices += p.Vertices.size();
    EXPECT_EQ(vertices, 4u * 4u * 14u);
}

TEST_F(SampleStadium, TheScoreboardLoadsIntoTheImporterWithItsThreePictures) {
    ASSERT_EQ(LoadImportModel(kSamples + "/scoreboard/scoreboard.3ds", kSamples + "/scoreboard/", PngSize),
              LoadResult::Loaded);
    EXPECT_TRUE(desktop.dialogTitles.empty());  // no picture had to be looked for
    std::vector<std::string> names;
    for (const ImportTexture& t : Importer.ImportTextures) names.push_back(t.Name);
    EXPECT_EQ(names, (std::vector<std::string>{"screen.png", "steel.png", "clock.png"}));
}

}  // namespace
