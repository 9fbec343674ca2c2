// The sample stadium that ships with the editor: every file of it goes through the command a new
// user tries it with, and every texture that command gives a part has its picture beside it. A
// sample that no longer loads, or whose crowds float off their steps, fails here.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
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

TEST(SampleStadium, EveryCommandOfTheWalkThroughAddsItsPartsAndEveryTextureHasAPicture) {
    const std::string samples = TM_SAMPLES;
    ScratchFolder scratch;
    ScriptedDesktop desktop;
    ResetProgramState();
    AppFolder = scratch.path();
    SeedRandom(2003);
    bool ok = false;
    CurrentProject.OIF = LoadOIF(samples + "/stadium.oif", &ok);
    ASSERT_TRUE(ok);
    ASSERT_EQ(CurrentProject.OIF.Parts.size(), 6u);
    const OIFFile start = CurrentProject.OIF;
    ASSERT_TRUE(ImportCrowdFile(samples + "/crowds.txt", 0));
    // The crowd rows stand on the treads of their stand: per row V1, V0, V2, V3, the two base
    // corners on one tread and the tops 260 above them.
    std::size_t rows = 0, awayRows = 0, boardQuads = 0;
    std::set<std::string> textures;
    for (const OIFPart& p : CurrentProject.OIF.Parts)
        for (std::size_t q = 0; q + 3 < p.Vertices.size() && p.Header.Texture.str().starts_with("rw"); q += 4, ++rows) {
            awayRows += p.Header.Texture.str()[2] == 'a';
            const OIFVertex &base = p.Vertices[q], &top = p.Vertices[q + 1];
            const float tread = (base.Y - 100) / 75;
            EXPECT_TRUE(tread == std::round(tread) && tread >= 1 && tread <= 14) << "row base " << base.Y;
            EXPECT_FLOAT_EQ(top.Y - base.Y, 260);
            EXPECT_FLOAT_EQ(p.Vertices[q + 2].Y, base.Y);
        }
    EXPECT_EQ(rows, 4u * 14u);
    EXPECT_EQ(awayRows, 14u);  // the south stand
    ASSERT_TRUE(ImportAdboardFile(samples + "/adboards.3ds"));
    ASSERT_TRUE(ImportBannerFile(samples + "/banners.3ds", true));
    ASSERT_TRUE(ImportBannerFile(samples + "/banners.3ds", false));
    EXPECT_TRUE(desktop.messages.empty());
    for (const OIFPart& p : CurrentProject.OIF.Parts) {
        textures.insert(p.Header.Texture.str());
        boardQuads += p.Header.Texture.str().starts_with("adb") ? p.Vertices.size() / 4 : 0;
    }
    // Eight crowds, three boards, six banner and flag pictures for each team.
    EXPECT_EQ(textures.size(), 3u + 8u + 3u + 12u);
    for (const std::string& t : textures)
        EXPECT_TRUE(std::filesystem::exists(samples + "/textures/" + t + ".png")) << t;
    EXPECT_EQ(boardQuads, 52u);

    // The wizard fills each crowd plane with one row per step.
    CrowdWizardInput input;
    input.fromFile = input.bySpacing = true;
    input.file = samples + "/crowdplanes.3ds";
    std::size_t vertices = 0;
    ok = false;
    for (const OIFPart& p : MakeCrowds(start, input, &ok).Parts)
        vertices += p.Header.Texture.str().starts_with("rwh") ? p.Vertices.size() : 0;
    EXPECT_TRUE(ok);
    EXPECT_EQ(vertices, 4u * 4u * 14u);

    // The scoreboard loads into the importer with its three pictures, none looked for; a PNG's
    // header gives all the importer's load asks of a picture.
    const auto pngSize = [](const std::string& path) -> std::optional<PictureSize> {
        const std::vector<std::uint8_t> h = ReadFile(path);
        auto big = [&](std::size_t at) { return h[at] << 24 | h[at + 1] << 16 | h[at + 2] << 8 | h[at + 3]; };
        if (h.size() < 24 || h[1] != 'P' || h[2] != 'N') return std::nullopt;
        return PictureSize{big(16), big(20)};
    };
    ASSERT_EQ(LoadImportModel(samples + "/scoreboard/scoreboard.3ds", samples + "/scoreboard/", pngSize),
              LoadResult::Loaded);
    EXPECT_TRUE(desktop.dialogTitles.empty());
    std::vector<std::string> names;
    for (const ImportTexture& t : Importer.ImportTextures) names.push_back(t.Name);
    EXPECT_EQ(names, (std::vector<std::string>{"screen.png", "steel.png", "clock.png"}));
    AppFolder.clear();
    ResetProgramState();
}
