// The crowd generator: rows up a plane, their dealing to the four crowd parts and the strips
// that join them, and Import Crowds of RAV text and 3DS models.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <set>

#include "core/DrawnTriangles.h"
#include "core/ProgramState.h"
#include "core/TestData.h"
#include "core/Views.h"
#include "core/myOps.h"
#include "shell/IniOps.h"
#include "support/Chunks3DS.h"
#include "support/ScriptedDesktop.h"
#include "support/TestFiles.h"
#include "wizards/CrowdModule.h"

namespace {

using namespace chunks3ds;

OIFVertex At(float x, float y, float z) { return {x, y, z, 0, 0, 0}; }

// A plane with its bottom edge along x from 0 to `width` and its left edge going back (-z) and
// up, `depth` long across the ground.
CrowdRow Plane(float width, float depth, float rise = 500) {
    return CrowdRow{{At(width, rise, -depth), At(width, 0, 0), At(0, 0, 0), At(0, rise, -depth)}};
}

float Length(const OIFVertex& a, const OIFVertex& b) { return std::hypot(a.X - b.X, a.Y - b.Y, a.Z - b.Z); }

// A part whose one strip draws each row as its two triangles and nothing else.
void ExpectOneStripOfRows(const OIFPart& part) {
    ASSERT_EQ(part.Vertices.size() % 4, 0u);
    std::multiset<Triangle3> rows;
    for (int r = 0; r < static_cast<int>(part.Vertices.size()) / 4; ++r) {
        rows.insert({4 * r, 4 * r + 1, 4 * r + 2});
        rows.insert({4 * r + 1, 4 * r + 2, 4 * r + 3});
    }
    EXPECT_EQ(DrawnTriangles(part.Indices, true), rows) << part.Header.Name.str();
    EXPECT_EQ(part.Header.VertexCount, static_cast<int>(part.Vertices.size()));
    EXPECT_EQ(part.Header.IndexCount, static_cast<int>(part.Indices.size()));
}

std::vector<CrowdRow> Rows(std::int16_t n) { return MakeCrowdRows(Plane(1040, 1000), n, 300, CrowdTileWidth, 0); }

class Crowds : public ::testing::Test {
protected:
    void SetUp() override {
        AppFolder = scratch.path();
        CurrentProject.OIF = NewOIFFile();
        InstallViews(&views);
        SeedRandom(2003);
    }
    void TearDown() override {
        InstallViews(nullptr);
        ResetProgramState();
    }
    std::string Put(const std::string& name, const std::vector<std::uint8_t>& bytes) {
        WriteFile(scratch.file(name), bytes);
        return scratch.file(name);
    }
    struct CountingViews : Views {
        int refreshed = 0, rebuilt = 0;
        void RefreshPartsList() override { ++refreshed; }
        void RebuildPreviews() override { ++rebuilt; }
    } views;
    ScratchFolder scratch;
    ScriptedDesktop desktop;
};

// Two crowd meshes, the second of the away material, and a triangle that is no row.
Bytes3DS CrowdModel() {
    const auto quad = [](float x) {
        return std::vector<std::array<float, 3>>{{x, 0, 0}, {x + 5.2f, 0, 0}, {x + 5.2f, 0, 1}, {x, 0, 1}};
    };
    return File({Material("Home", "rowa.bmp"), Material("Away", "rowb"),
                 Object("north", {Vertices(quad(0)), Faces({{0, 1, 2}, {0, 2, 3}}, {FaceMaterial("Home")})}),
                 Object("south", {Vertices(quad(10)), Faces({{0, 1, 2}, {0, 2, 3}}, {FaceMaterial("Away")})}),
                 Object("flag", {Vertices({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}}), Faces({{0, 1, 2}})})});
}

}  // namespace

// Random planes against the rule itself: row i of n starts i/n of the way up each side edge and
// stands its height above it; with a spacing n is the left edge's length across the ground over
// the spacing, rounded up. Each row takes the texture once per tile width from a random start,
// every other row the other way round.
TEST(MakeCrowdRows, StepUpBothSideEdgesWithAURangeAsLongAsTheRowRunningOppositeToItsNeighbours) {
    std::mt19937 random(9);
    std::uniform_real_distribution<float> place(-3000, 3000);
    for (int round = 0; round < 60; ++round) {
        CrowdRow p;
        for (OIFVertex& v : p.V) v = At(place(random), place(random), place(random));
        const float spacing = round % 2 ? 0 : 350 + place(random) / 10;
        std::int16_t rows = static_cast<std::int16_t>(1 + round % 9);
        const std::vector<CrowdRow> made = MakeCrowdRows(p, rows, 300, CrowdTileWidth, spacing);
        const float across = std::hypot(p.V[3].X - p.V[2].X, p.V[3].Z - p.V[2].Z);
        if (spacing > 0) { EXPECT_EQ(rows, std::ceil(across / spacing)) << "round " << round; }
        ASSERT_EQ(made.size(), static_cast<std::size_t>(rows));
        std::set<float> starts;
        for (std::size_t i = 0; i < made.size(); ++i) {
            const CrowdRow& r = made[i];
            const float f = static_cast<float>(i) / rows;
            const auto up = [&](const OIFVertex& a, const OIFVertex& b, float lift) {
                return At(a.X + (b.X - a.X) * f, a.Y + (b.Y - a.Y) * f + lift, a.Z + (b.Z - a.Z) * f);
            };
            const OIFVertex want[4] = {up(p.V[1], p.V[0], 300), up(p.V[1], p.V[0], 0), up(p.V[2], p.V[3], 0),
                                       up(p.V[2], p.V[3], 300)};
            for (std::size_t k = 0; k < 4; ++k) {
                EXPECT_LT(Length(r.V[k], want[k]), 0.01) << "round " << round << " row " << i << " corner " << k;
                EXPECT_TRUE(r.V[k].Shadow == CrowdRowShadow && r.V[k].V == (k == 1 || k == 2));
            }
            EXPECT_NEAR(r.V[1].U - r.V[2].U, (i % 2 ? -1 : 1) * Length(r.V[2], r.V[1]) / 520, 1e-3) << "row " << i;
            EXPECT_TRUE(r.V[3].U == r.V[2].U && r.V[0].U == r.V[1].U);
            starts.insert(std::min(r.V[1].U, r.V[2].U));
        }
        EXPECT_EQ(starts.size(), made.size()) << "each row starts at a random place";
    }
    std::int16_t none = 0;
    EXPECT_THROW(MakeCrowdRows(Plane(1000, 450), none, 300, CrowdTileWidth, 0), std::runtime_error);
}

TEST_F(Crowds, DealsRowsOneSixthOneThirdOneThirdOneSixth) {
    const OIFFile doc = AddCrowdParts(CurrentProject.OIF, Rows(6000), true);
    const double expected[4] = {1000, 2000, 2000, 1000};
    for (std::size_t i = 0; i < 4; ++i) {
        const int rows = doc.Parts[i].Header.VertexCount / 4;
        // Five standard deviations of the binomial count: 29 for a sixth, 37 for a third.
        const double sd = std::sqrt(6000 * (expected[i] / 6000) * (1 - expected[i] / 6000));
        EXPECT_NEAR(rows, expected[i], 5 * sd) << "part " << i;
    }
}

TEST_F(Crowds, RowsGoToFourNewPartsAndALaterPlaneMergesIntoTheSameFourStrips) {
    CrowdWizardInput input;
    input.x = {"0", "1040", "1040", "0"};
    input.y = {"0", "0", "500", "500"};
    input.z = {"0", "0", "-1000", "-1000"};
    OIFFile doc = MakeCrowds(CurrentProject.OIF, input);
    // Each row's vertices go in as V1, V0, V2, V3.
    const auto first = std::find_if(doc.Parts.begin(), doc.Parts.end(), [](auto& p) { return !p.Vertices.empty(); });
    ASSERT_NE(first, doc.Parts.end());
    EXPECT_EQ(first->Vertices[1].Y - first->Vertices[0].Y, 300);
    EXPECT_TRUE(first->Vertices[0].X == 1040 && first->Vertices[2].X == 0);
    input.z = {"-3000", "-3000", "-4000", "-4000"};
    doc = MakeCrowds(doc, input);
    ASSERT_EQ(doc.Header.PartCount, 4);
    int vertices = 0;
    for (int i = 0; i < 4; ++i) {
        const OIFPart& part = doc.Parts[static_cast<std::size_t>(i)];
        EXPECT_EQ(part.Header.Name, FixedText<28>("Part " + std::to_string(i) + " [rwh" + std::to_string(i) + "]"));
        EXPECT_EQ(part.Header.Texture, FixedText<4>("rwh" + std::to_string(i)));
        ExpectOneStripOfRows(part);
        vertices += part.Header.VertexCount;
    }
    EXPECT_EQ(vertices, 2 * 10 * 4);
    input.rows = "0";
    EXPECT_THROW(MakeCrowds(doc, input), std::runtime_error);
}

TEST_F(Crowds, BuildTakesOneGroupRowsAndOnlyRowbIsAway) {
    RAVFile list;
    const std::vector<CrowdRow> rows = Rows(1);
    for (const char* group : {"rowa", "ROWB", "rowc", "rowb"}) list = AppendCrowdRows(rows, group, std::move(list));
    ASSERT_EQ(list.polygonCount, 4);
    EXPECT_EQ(list.polygons[0].vertices[0], rows[0].V[2]);
    EXPECT_EQ(list.polygons[0].vertices[2], rows[0].V[0]);
    list.polygons[1].groups.push_back(RAVGroup{"rowb", 0, {}, 0});  // two groups: no row
    list.polygons[2].vertices.resize(3);                            // too few vertices: no row
    const OIFFile doc = BuildCrowdParts(CurrentProject.OIF, list, false);
    ASSERT_EQ(doc.Header.PartCount, 8);
    int home = 0, away = 0;
    for (std::size_t i = 0; i < 8; ++i) (i < 4 ? home : away) += doc.Parts[i].Header.VertexCount;
    EXPECT_TRUE(home == 4 && away == 4);
    EXPECT_EQ(doc.Parts[7].Header.Name, FixedText<28>("Part 7 [rwa3]"));
}

TEST_F(Crowds, ImportOfRAVTextKeepsItsColoursAndFixesItsRows) {
    // One row of colour 102030 in group rowb, 5.2 wide and 1 high.
    const std::string rav = TestData("rav/crowd_row.rav");
    desktop.dialogAnswers = {Put("rows.txt", Bytes().raw(rav).data)};
    desktop.answers = {MessageAnswer::Yes};
    WriteConfig("Import", "CrowdHeight", "260");
    importcrowd();
    ASSERT_EQ(desktop.messages.size(), 1u);
    EXPECT_TRUE(desktop.messages[0].text == RowHeightQuestion && desktop.messages[0].title == "Terramason");
    EXPECT_EQ(desktop.dialogTitles, std::vector<std::string>{"Import crowd polygons..."});
    ASSERT_EQ(CurrentProject.OIF.Header.PartCount, 4);
    EXPECT_EQ(CurrentProject.OIF.Parts[0].Header.Texture, FixedText<4>("rwa0"));
    float top = 0;
    for (const OIFPart& part : CurrentProject.OIF.Parts)
        for (const OIFVertex& v : part.Vertices) {
            EXPECT_EQ(v.Shadow, 0x102030FFu);
            top = std::max(top, v.Y);
        }
    EXPECT_TRUE(top == 260 && CrowdHeightInForce == 0);
    EXPECT_TRUE(views.refreshed == 1 && views.rebuilt == 1);
}

TEST_F(Crowds, ImportOf3DSMakesRowsOfFourVertexMeshesByMaterial) {
    const std::string model = Put("crowd.3ds", CrowdModel());
    EXPECT_TRUE(ImportCrowdFile(model, 0));
    ASSERT_EQ(CurrentProject.OIF.Header.PartCount, 8);
    std::vector<OIFVertex> home, away;
    for (std::size_t i = 0; i < 8; ++i)
        for (const OIFVertex& v : CurrentProject.OIF.Parts[i].Vertices) (i < 4 ? home : away).push_back(v);
    ASSERT_TRUE(home.size() == 4u && away.size() == 4u) << "away: the mesh of texture file \"rowb\"";
    for (const OIFVertex& v : home)
        EXPECT_TRUE(v.Shadow == 0 && v.Z == 0 && (v.Y == 0 || v.Y == 100)) << "heights kept";

    // Answered Yes while the key is missing, the result is that of No.
    const auto answered = [&](MessageAnswer a) {
        SeedRandom(5);
        CurrentProject.OIF = NewOIFFile();
        desktop.dialogAnswers = {model};
        desktop.answers = {a};
        importcrowd();
        return CurrentProject.OIF;
    };
    EXPECT_EQ(answered(MessageAnswer::Yes), answered(MessageAnswer::No));
}

TEST_F(Crowds, ImportEndsQuietlyOnCancelAndLeavesTheDocumentOnARefusal) {
    desktop.dialogAnswers = {"", scratch.file("missing.txt"),
                             Put("bad.txt", Bytes().raw("Version=1\r\nNumPoly=3\r\n").data)};
    desktop.answers = {MessageAnswer::Yes};
    WriteConfig("Import", "CrowdHeight", "260");
    for (int i = 0; i < 3; ++i) importcrowd();
    ASSERT_EQ(desktop.messages.size(), 2u) << "the question, then the refusal";
    EXPECT_EQ(desktop.messages[1].text.rfind("Invalid RAV file!", 0), 0u);
    EXPECT_EQ(CurrentProject.OIF, NewOIFFile());
    EXPECT_EQ(CrowdHeightInForce, 0);
    EXPECT_EQ(views.rebuilt, 0);
}
