#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <random>
#include <tuple>

#include "core/DrawnTriangles.h"
#include "core/OIFOps.h"
#include "core/TriStrip.h"
#include "core/myOps.h"
#include "editors/PartOps.h"

namespace {

OIFPart Part(const std::string& name, const std::string& texture, int vertices, std::vector<std::int16_t> indices) {
    OIFPart p;
    p.Header.Name = name;
    p.Header.Texture = texture;
    for (int i = 0; i < vertices; ++i) p.Vertices.push_back(OIFVertex{static_cast<float>(i), 0, 0, 0, 0, 0});
    p.Indices = std::move(indices);
    p.Header.VertexCount = vertices;
    p.Header.IndexCount = static_cast<std::int32_t>(p.Indices.size());
    return p;
}

OIFFile Doc(std::vector<OIFPart> parts) {
    OIFFile d = NewOIFFile();
    for (const OIFPart& p : parts) d = AddPart(p, d);
    return d;
}

// Pairwise merging in document order, as the rule is written: the reference for the fast merge.
void MergeByTheRule(OIFFile& doc, bool crowdOnly) {
    std::size_t i = 0;
    while (i + 1 < doc.Parts.size()) {
        const std::string texture = doc.Parts[i].Header.Texture.str();
        if (!crowdOnly || texture.substr(0, 2) == "rw") {
            std::size_t j = i + 1;
            while (j < doc.Parts.size()) {
                if (doc.Parts[j].Header.Texture.str() == texture) {
                    doc.Parts[i] = ConcatParts(doc.Parts[i], doc.Parts[j]);
                    doc.Parts.erase(doc.Parts.begin() + static_cast<std::ptrdiff_t>(j));
                } else {
                    ++j;
                }
            }
        }
        ++i;
    }
    doc.Header.PartCount = static_cast<std::int32_t>(doc.Parts.size());
}

}  // namespace

// Textures that differ only in case, crowd rows and others, and empty or one-part documents.
TEST(MergeSameTexture, GivesWhatPairwiseMergingGivesOnRandomDocuments) {
    std::mt19937 rng(5);
    const std::array<const char*, 7> textures = {"tp00", "tp01", "rwh0", "rwa1", "TP00", "rwh1", "RWh0"};
    for (int round = 0; round < 200; ++round) {
        std::vector<OIFPart> parts;
        const int n = static_cast<int>(rng() % 12);
        for (int k = 0; k < n; ++k) {
            std::vector<std::int16_t> idx;
            const int v = static_cast<int>(rng() % 5);
            for (int i = static_cast<int>(rng() % 6); i > 0; --i)
                idx.push_back(static_cast<std::int16_t>(v ? rng() % v : 0));
            parts.push_back(Part("p" + std::to_string(k), textures[rng() % textures.size()], v, idx));
        }
        for (bool crowdOnly : {false, true}) {
            OIFFile fast = Doc(parts), rule = Doc(parts);
            MergeSameTexture(fast, crowdOnly);
            MergeByTheRule(rule, crowdOnly);
            ASSERT_EQ(fast, rule) << "round " << round << (crowdOnly ? " crowd only" : "");
        }
    }
}

// The strip contract: every non-degenerate triangle is drawn as often as it was given, and
// every other window of three is a join.
static void ExpectStripKeepsTriangles(const std::vector<std::int16_t>& triangles,
                                      const std::vector<std::int16_t>& strip) {
    EXPECT_EQ(DrawnTriangles(strip, true), ListedTriangles(triangles, true));
}

static std::int16_t I(int i) { return static_cast<std::int16_t>(i); }

TEST(Stripper, KeepsEveryTriangleOfRandomMeshesAndMakesAGridALongStrip) {
    std::mt19937 rng(17);
    for (int round = 0; round < 300; ++round) {
        const int vertices = 3 + static_cast<int>(rng() % 40);
        std::vector<std::int16_t> tris;
        for (int t = static_cast<int>(rng() % 60); t > 0; --t) {
            const int kind = static_cast<int>(rng() % 10);
            if (kind == 0 && tris.size() >= 3) {
                tris.insert(tris.end(), tris.end() - 3, tris.end());  // the same triangle again
            } else if (kind == 1) {
                const auto v = static_cast<std::int16_t>(rng() % vertices);
                tris.insert(tris.end(), {v, v, static_cast<std::int16_t>(rng() % vertices)});  // degenerate
            } else {
                for (int k = 0; k < 3; ++k) tris.push_back(static_cast<std::int16_t>(rng() % vertices));
            }
        }
        SCOPED_TRACE(round);
        ExpectStripKeepsTriangles(tris, StripPartIndices(tris));
    }
    // A grid of 20 by 20 squares becomes a strip shorter than its list of triangles.
    std::vector<std::int16_t> grid;
    for (int a = 0; a < 21 * 20; ++a)
        if (a % 21 < 20) grid.insert(grid.end(), {I(a), I(a + 21), I(a + 1), I(a + 1), I(a + 21), I(a + 22)});
    const std::vector<std::int16_t> strip = StripPartIndices(grid);
    ExpectStripKeepsTriangles(grid, strip);
    EXPECT_LT(strip.size(), grid.size() * 2 / 3);
}

TEST(Stripper, HandlesAreIndependentAndCountsAreWholeTriangles) {
    const std::int32_t tri[] = {0, 1, 2, 2, 1, 3, 9};
    const std::int32_t h1 = StripTriangles(2, tri, 7);
    const std::int32_t h2 = StripTriangles(5, tri, 7);  // asks for more than there is: whole triangles only
    EXPECT_NE(h1, h2);
    EXPECT_EQ(GetTriStripCount(h1), GetTriStripCount(h2));
    std::vector<std::int32_t> out(static_cast<std::size_t>(GetTriStripCount(h1)));
    GetTriStripData(h1, out.data());
    CleanUpData(h1);
    EXPECT_EQ(GetTriStripCount(h1), 0) << "a cleaned-up handle holds nothing";
    EXPECT_EQ(GetTriStripCount(h2), static_cast<std::int32_t>(out.size()));
    CleanUpData(h2);
    EXPECT_EQ(GetTriStripCount(StripTriangles(0, tri, 0)), 0);
    EXPECT_TRUE(StripPartIndices({}).empty());
    // Indices above 32767 are held negative and come back the same.
    const std::vector<std::int16_t> high = {-1, -2, -3};
    ExpectStripKeepsTriangles(high, StripPartIndices(high));
}

TEST(NumericKeyFilter, LetsDigitsAndOnePointThrough) {
    const std::tuple<int, const char*, int> cases[] = {
        {'7', "", '7'},  {KeyBackspace, "", KeyBackspace},    {KeyTab, "1", KeyTab}, {KeyEnter, "1", KeyEnter},
        {'.', "1", '.'}, {'.', "", 0} /* no leading point */, {'.', "1.5", 0},       {'-', "1", 0},
        {'a', "", 0}};
    for (const auto& [key, text, want] : cases)
        EXPECT_EQ(NumericKeyFilter(key, text), want) << key << " after " << text;
    EXPECT_DOUBLE_EQ(Pi(), 3.14159265358979323846);
    EXPECT_DOUBLE_EQ(DegToRad(90), Pi() / 2);
}
