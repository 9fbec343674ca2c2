// The lighting formula and its key filter, and the transformation of chosen parts.
#include <gtest/gtest.h>

#include <stdexcept>

#include "core/myOps.h"
#include "wizards/LightingOps.h"
#include "wizards/TransformOps.h"

namespace {

// One part with a vertex at each distance from the origin along the given axis mix.
OIFFile Line(std::initializer_list<float> distances) {
    OIFPart part;
    for (float d : distances) part.Vertices.push_back({0.6f * d, 0, -0.8f * d, 0x12345678u, 0.25f, 0.75f});
    part.Header.VertexCount = static_cast<int>(part.Vertices.size());
    return AddPart(part, NewOIFFile());
}

std::uint32_t Grey(std::uint32_t g) { return 0xFF000000u + g * 0x010101u; }

std::vector<std::uint32_t> Shadows(const OIFFile& doc) {
    std::vector<std::uint32_t> s;
    for (const OIFPart& part : doc.Parts)
        for (const OIFVertex& v : part.Vertices) s.push_back(v.Shadow);
    return s;
}

}  // namespace

TEST(ApplyLighting, GreysFrom240AtTheOriginTo30AtTheFarthestVertex) {
    const OIFFile doc = Line({0, 250, 500, 1000});
    // 240 - 0.25 * 210 is 187.5, which rounds to even.
    EXPECT_EQ(Shadows(ApplyLighting(doc, "100")),
              (std::vector<std::uint32_t>{Grey(240), Grey(188), Grey(135), Grey(30)}));
    EXPECT_EQ(Shadows(ApplyLighting(doc, "150")), Shadows(ApplyLighting(doc, "100")));
    // At 80 percent the range above 30 shrinks: 210 * 0.8 = 168, 105 * 0.8 = 84.
    EXPECT_EQ(Shadows(ApplyLighting(doc, "80")),
              (std::vector<std::uint32_t>{Grey(198), Grey(156), Grey(114), Grey(30)}));
    EXPECT_EQ(Shadows(ApplyLighting(doc, "-5")), std::vector<std::uint32_t>(4, Grey(30)));
    EXPECT_EQ(Shadows(ApplyLighting(doc, "")), std::vector<std::uint32_t>(4, Grey(30)));
    // Lighting again gives the same: the old colours do not count.
    EXPECT_EQ(ApplyLighting(ApplyLighting(doc, "80"), "80"), ApplyLighting(doc, "80"));
}

TEST(ApplyLighting, MeasuresTheDistanceOnAllThreeAxes) {
    // (300, 400, 0) is 500 from the origin, half of the farthest 1000: 240 - 105 = 135. Without
    // its height it would stand at 300, grey 177.
    OIFPart part;
    part.Vertices = {{300, 400, 0, 0, 0, 0}, {0, 0, 1000, 0, 0, 0}};
    EXPECT_EQ(Shadows(ApplyLighting(AddPart(part, NewOIFFile()), "100")),
              (std::vector<std::uint32_t>{Grey(135), Grey(30)}));
}

TEST(ApplyLighting, RefusesADocumentWhoseVerticesAllLieAtTheOrigin) {
    EXPECT_THROW(ApplyLighting(Line({0, 0}), "80"), std::runtime_error);
    EXPECT_EQ(ApplyLighting(NewOIFFile(), "80"), NewOIFFile());
}

TEST(LightingKeyFilter, TakesDigitsOnePointAndNoSecondLeadingZero) {
    EXPECT_EQ(LightingKeyFilter('7', "8"), '7');
    EXPECT_EQ(LightingKeyFilter('.', ""), '.');
    EXPECT_EQ(LightingKeyFilter('.', "1.5"), 0);
    EXPECT_EQ(LightingKeyFilter('0', "0"), 0);
    EXPECT_EQ(LightingKeyFilter('0', "10"), '0');
    EXPECT_EQ(LightingKeyFilter('5', "-"), 0) << "the value would turn negative";
    EXPECT_EQ(LightingKeyFilter('-', ""), 0);
    EXPECT_EQ(LightingKeyFilter('a', ""), 0);
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
    for (const OIFVertex& v : flat.Parts[1].Vertices) {
        EXPECT_EQ(v.Y, 0);
        EXPECT_EQ(v.U, 0.75f);
        EXPECT_EQ(v.V, 0.75f);
    }
    EXPECT_FLOAT_EQ(flat.Parts[1].Vertices[1].Z, -80);
}

TEST(TransformParts, ScalesRotatesTranslatesAndMirrorsInThatOrder) {
    OIFPart part;
    part.Vertices = {{1, 0, 0, 0, 0, 0}};
    const OIFFile doc = AddPart(part, NewOIFFile());
    TransformSettings settings;
    settings.parts = {true};
    settings.rotate = {"0", "90", "0"};
    const OIFVertex turned = TransformParts(doc, settings).Parts[0].Vertices[0];
    EXPECT_NEAR(turned.X, 0, 1e-6);
    EXPECT_NEAR(turned.Z, -1, 1e-6);

    // (1, 0, 0) doubled, turned to (0, 0, -2), moved to (10, 0, -2) and mirrored in x.
    settings.scale = {"200", "100", "100"};
    settings.translate = {"10", "0", "0"};
    settings.mirror = {true, false, false};
    const OIFVertex all = TransformParts(doc, settings).Parts[0].Vertices[0];
    EXPECT_NEAR(all.X, -10, 1e-5);
    EXPECT_NEAR(all.Z, -2, 1e-5);

    // Whatever the boxes' order on the page, Y turns first: about X and Y, (1, 0, 0) ends at
    // (0, 1, 0); X first would give (0, 0, -1).
    settings = TransformSettings{};
    settings.parts = {true};
    settings.rotate = {"90", "90", "0"};
    const OIFVertex both = TransformParts(doc, settings).Parts[0].Vertices[0];
    EXPECT_NEAR(both.Y, 1, 1e-6);
    EXPECT_NEAR(both.Z, 0, 1e-6);
    // About Y and Z: Y takes (1, 0, 0) to (0, 0, -1), which Z leaves; Z first would give (0, 1, 0).
    settings.rotate = {"0", "90", "90"};
    const OIFVertex yz = TransformParts(doc, settings).Parts[0].Vertices[0];
    EXPECT_NEAR(yz.Y, 0, 1e-6);
    EXPECT_NEAR(yz.Z, -1, 1e-6);
    // About X and Z: X leaves (1, 0, 0), Z takes it to (0, 1, 0); Z first would give (0, 0, 1).
    settings.rotate = {"90", "0", "90"};
    const OIFVertex xz = TransformParts(doc, settings).Parts[0].Vertices[0];
    EXPECT_NEAR(xz.Y, 1, 1e-6);
    EXPECT_NEAR(xz.Z, 0, 1e-6);
}
