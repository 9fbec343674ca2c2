#include <gtest/gtest.h>

#include "core/oif.h"

namespace {

OIFVertex V(float x) { return OIFVertex{x, x + 1, x + 2, 0, 0, 0}; }

PolygonPart Quads(int count) {
    PolygonPart p;
    p.Texture = "ad01";
    for (int i = 0; i < 4 * count; ++i) p.Vertices.push_back(V(static_cast<float>(i)));
    p.Count = static_cast<std::int16_t>(count);
    return p;
}

std::vector<std::int16_t> Strip(std::initializer_list<int> values) {
    std::vector<std::int16_t> out;
    for (int v : values) out.push_back(static_cast<std::int16_t>(v));
    return out;
}

}  // namespace

TEST(FixedText, PadsShortTextWithBlanksAndCutsLongText) {
    FixedText<4> t = "ab";
    EXPECT_EQ(t.str(), "ab  ");
    t = "abcdef";
    EXPECT_EQ(t.str(), "abcd");
    FixedText<28> fresh;
    EXPECT_EQ(fresh.str(), std::string(28, ' '));
    const std::string exact28 = "ABCDEFGHIJKLMNOPQRSTUVWXYZ01";
    FixedText<28> name = exact28;
    EXPECT_EQ(name.str(), exact28);
}

TEST(MakePartFromQuads, EachQuadIsAStripInSecondFirstThirdFourthOrderJoinedByRepeatedIndices) {
    const std::pair<int, std::vector<std::int16_t>> cases[] = {{0, {}},
                                                               {1, {0, 1, 2, 3}},
                                                               {2, {0, 1, 2, 3, 3, 4, 4, 5, 6, 7}},
                                                               {3, {0, 1, 2, 3, 3, 4, 4, 5, 6, 7, 7, 8, 8, 9, 10, 11}}};
    for (const auto& [quads, strip] : cases) {
        const PolygonPart q = Quads(quads);
        const OIFPart p = MakePartFromQuads(q);
        EXPECT_EQ(p.Indices, strip) << quads;
        EXPECT_EQ(p.Header.IndexCount, static_cast<std::int32_t>(strip.size()));
        EXPECT_EQ(p.Header.VertexCount, 4 * quads);
        for (std::size_t i = 0; i < p.Vertices.size(); ++i) EXPECT_EQ(p.Vertices[i], q.Vertices[i ^ (i % 4 < 2)]) << i;
        EXPECT_EQ(p.Header.Texture.str(), "ad01");
        EXPECT_EQ(p.Header.Name.str(), std::string(28, ' '));
    }
}

TEST(ConcatParts, BridgesTwoStripsWithDegenerateTrianglesButNotAfterAnEmptyPart) {
    const OIFPart a = MakePartFromQuads(Quads(1));
    const OIFPart ab = ConcatParts(a, a);
    EXPECT_EQ(ab.Header.VertexCount, 8);
    EXPECT_EQ(ab.Indices, Strip({0, 1, 2, 3, 3, 4, 4, 5, 6, 7}));
    EXPECT_EQ(ab.Header.IndexCount, 10);
    EXPECT_EQ(ab.Vertices[4], a.Vertices[0]);
    EXPECT_EQ(ab.Header.Texture, a.Header.Texture);
    OIFPart empty;
    empty.Header.Name = "Crowd";
    const OIFPart r = ConcatParts(empty, a);
    EXPECT_EQ(r.Indices, Strip({0, 1, 2, 3}));
    EXPECT_EQ(r.Header.Name.str().substr(0, 5), "Crowd");
    EXPECT_EQ(r.Header.VertexCount, 4);
}

TEST(RemoveParts, KeepsTheUnflaggedPartsInTheirOrder) {
    OIFFile doc = NewOIFFile();
    for (const char* name : {"A", "B", "C"}) {
        OIFPart p;
        p.Header.Name = name;
        doc = AddPart(p, doc);
    }
    // A list that was not refreshed after a merge or import may have fewer or more rows than parts.
    const std::pair<std::vector<bool>, std::string> cases[] = {
        {{false, true, false}, "AC"}, {{true, true, true}, ""}, {{true}, "BC"}, {{false, false, false, true}, "ABC"}};
    for (const auto& [flags, want] : cases) {
        const OIFFile left = RemoveParts(doc, flags);
        std::string kept;
        for (const OIFPart& p : left.Parts) kept += p.Header.Name.str().substr(0, 1);
        EXPECT_EQ(kept, want);
        EXPECT_EQ(left.Header.PartCount, static_cast<std::int32_t>(kept.size()));
        EXPECT_EQ(left.Label, doc.Label);
    }
}
