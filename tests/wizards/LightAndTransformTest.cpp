// The lighting formula and its key filter, and the transformation of chosen parts.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <stdexcept>
#include <tuple>

#include "core/myOps.h"
#include "wizards/LightingOps.h"
#include "wizards/TransformOps.h"

namespace {

OIFFile Doc(std::vector<OIFVertex> vertices) {
    OIFPart part;
    part.Vertices = std::move(vertices);
    part.Header.VertexCount = static_cast<int>(part.Vertices.size());
    return AddPart(part, NewOIFFile());
}

// One part with a vertex at each distance from the origin, off every axis but y.
OIFFile Line(std::initializer_list<float> distances) {
    std::vector<OIFVertex> v;
    for (float d : distances) v.push_back({0.6f * d, 0, -0.8f * d, 0x12345678u, 0.25f, 0.75f});
    return Doc(v);
}

std::uint32_t Grey(std::uint32_t g) { return 0xFF000000u + g * 0x010101u; }

// The shadows, each told as its grey where it is an opaque grey.
std::vector<std::uint32_t> Greys(const OIFFile& doc) {
    std::vector<std::uint32_t> s;
    for (const OIFVertex& v : doc.Parts[0].Vertices)
        s.push_back(v.Shadow == Grey(v.Shadow & 0xFF) ? v.Shadow & 0xFF : v.Shadow);
    return s;
}

}  // namespace

TEST(ApplyLighting, GreysFrom240AtTheOriginTo30AtTheFarthestVertex) {
    const OIFFile line = Line({0, 250, 500, 1000});
    // (300, 400, 0) is 500 away, half of the farthest: without its height it would be 300, grey 177.
    const OIFFile offPlane = Doc({{300, 400, 0, 0, 0, 0}, {0, 0, 1000, 0, 0, 0}});
    // 240 - 0.25 * 210 is 187.5, which rounds to even; at 80 the range above 30 shrinks to 168.
    const std::tuple<const OIFFile*, const char*, std::vector<std::uint32_t>> cases[] = {
        {&line, "100", {240, 188, 135, 30}}, {&line, "150", {240, 188, 135, 30}}, {&line, "80", {198, 156, 114, 30}},
        {&line, "-5", {30, 30, 30, 30}},     {&line, "", {30, 30, 30, 30}},       {&offPlane, "100", {135, 30}}};
    for (const auto& [doc, percent, greys] : cases) EXPECT_EQ(Greys(ApplyLighting(*doc, percent)), greys) << percent;
    // Lighting again gives the same: the old colours do not count.
    EXPECT_EQ(ApplyLighting(ApplyLighting(line, "80"), "80"), ApplyLighting(line, "80"));
    EXPECT_THROW(ApplyLighting(Line({0, 0}), "80"), std::runtime_error) << "all vertices at the origin";
    EXPECT_EQ(ApplyLighting(NewOIFFile(), "80"), NewOIFFile());
}

TEST(LightingKeyFilter, TakesDigitsOnePointAndNoSecondLeadingZero) {
    const std::tuple<int, const char*, int> cases[] = {{'7', "8", '7'},  {'.', "", '.'}, {'.', "1.5", 0}, {'0', "0", 0},
                                                       {'0', "10", '0'}, {'5', "-", 0},  {'-', "", 0},    {'a', "", 0}};
    for (const auto& [key, text, want] : cases)
        EXPECT_EQ(LightingKeyFilter(key, text), want) << key << " after " << text;
    for (int key : {KeyTab, KeyEnter, KeyBackspace}) EXPECT_EQ(LightingKeyFilter(key, "0"), key);
}

TEST(TransformParts, LeavesEverythingAsItIsByDefaultAndChangesOnlyTickedParts) {
    OIFFile doc = Line({100, 200});
    doc = AddPart(doc.Parts[0], doc);
    TransformSettings settings;
    settings.parts = {true, true};
    EXPECT_EQ(TransformParts(doc, settings), doc);
    settings.parts = {false, true};
    settings.scale = {"100", "0", "50"};
    settings.flipU = true;
    const OIFFile flat = TransformParts(doc, settings);
    EXPECT_EQ(flat.Parts[0], doc.Parts[0]);
    for (const OIFVertex& v : flat.Parts[1].Vertices) EXPECT_TRUE(v.Y == 0 && v.U == 0.75f && v.V == 0.75f);
    EXPECT_FLOAT_EQ(flat.Parts[1].Vertices[1].Z, -80);
}

TEST(TransformParts, ScalesRotatesTranslatesAndMirrorsInThatOrder) {
    // Doubled, turned to (0, 0, -2), moved to (10, 0, -2) and mirrored in x. Whatever the boxes'
    // order on the page, turns go Y, X, Z; every pair of axes in the other order ends elsewhere:
    // X first (0, 0, -1), Z before Y (0, 1, 0), Z before X (0, 0, 1).
    const TransformSettings cases[] = {{{true}, {"100", "100", "100"}, {"0", "90", "0"}},
                                       {{true}, {"200", "100", "100"}, {"0", "90", "0"}, {"10", "0", "0"}, {true}},
                                       {{true}, {"100", "100", "100"}, {"90", "90", "0"}},
                                       {{true}, {"100", "100", "100"}, {"0", "90", "90"}},
                                       {{true}, {"100", "100", "100"}, {"90", "0", "90"}}};
    const std::array<float, 3> ends[] = {{0, 0, -1}, {-10, 0, -2}, {0, 1, 0}, {0, 0, -1}, {0, 1, 0}};
    OIFPart part;
    part.Vertices = {{1, 0, 0, 0, 0, 0}};
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const OIFVertex v = TransformParts(AddPart(part, NewOIFFile()), cases[i]).Parts[0].Vertices[0];
        EXPECT_LT(std::fabs(v.X - ends[i][0]) + std::fabs(v.Y - ends[i][1]) + std::fabs(v.Z - ends[i][2]), 1e-5) << i;
    }
}
