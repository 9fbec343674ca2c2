// The row height fixing of crowd polygons: corners found from the UVs, heights raised, U ranges
// that follow the row's proportions, the random turn of half the rows, and the collapse of rows
// whose corners cannot be told apart.
#include <gtest/gtest.h>

#include <array>
#include <utility>
#include <vector>

#include "core/myOps.h"
#include "exchange/RAVOps.h"

namespace {

OIFVertex At(float x, float y, float z, float u, float v, std::uint32_t shadow) { return {x, y, z, shadow, u, v}; }

// A row polygon as Import Crowds lays one out: bottom left, bottom right, top right, top left,
// with the UVs of a 3DS crowd mesh. `rise` lifts the right-hand end of the base line.
RAVPolygon Row(float width, float height, float rise = 0) {
    RAVPolygon p;
    p.vertexCount = 4;
    p.vertices = {At(0, 0, 0, 0, 1, 0xFF000001), At(width, rise, 0, 1, 1, 0xFF000002),
                  At(width, rise + height, 0, 1, 0, 0xFF000003), At(0, height, 0, 0, 0, 0xFF000004)};
    p.groupCount = 1;
    p.groups = {RAVGroup{"rowa", 0, {}, 0}};
    return p;
}

struct HeightInForce {
    explicit HeightInForce(float h) { CrowdHeightInForce = h; }
    ~HeightInForce() { CrowdHeightInForce = 0; }
};

std::array<float, 8> UVs(const RAVPolygon& p) {
    std::array<float, 8> uv{};
    for (std::size_t i = 0; i < 4; ++i) {
        uv[2 * i] = p.vertices[i].U;
        uv[2 * i + 1] = p.vertices[i].V;
    }
    return uv;
}

// The UVs a fixed row has with U range u, as laid out or turned the other way.
std::array<float, 8> Laid(float u) { return {0, 1, u, 1, u, 0, 0, 0}; }
std::array<float, 8> Turned(float u) { return {u, 1, 0, 1, 0, 0, u, 0}; }

}  // namespace

TEST(FixCrowdPolygon, RaisesTheTopToTheHeightInForceAndMeasuresItFromTheLeftCorner) {
    SeedRandom(2);
    {
        const HeightInForce h(260);
        const RAVPolygon level = FixCrowdPolygon(Row(520, 100));
        EXPECT_EQ(level.vertices[2].Y, 260);
        EXPECT_EQ(level.vertices[3].Y, 260);
        EXPECT_FLOAT_EQ(std::max(level.vertices[0].U, level.vertices[1].U), 0.5f);
        // The right end stands 50 higher: its top goes to 310, and the height is taken from the
        // left corner's base, 3.1, not 2.6.
        const RAVPolygon sloping = FixCrowdPolygon(Row(520, 100, 50));
        EXPECT_EQ(sloping.vertices[3].Y, 310);
        EXPECT_FLOAT_EQ(std::max(sloping.vertices[0].U, sloping.vertices[1].U), 5.2f / 3.1f / 4);
    }
    const RAVPolygon kept = FixCrowdPolygon(Row(520, 100));
    EXPECT_EQ(kept.vertices[2].Y, 100) << "no height in force keeps the file's heights";
}

// A is the bottom right, B the bottom left, C the top left, D the top right; the colours stay in
// their places; the U span of a row 5.2 wide and 1 high is 1.3, laid out or turned, about half turned.
TEST(FixCrowdPolygon, PutsTheCornersInOrderWithAUSpanOfWidthOverHeightOverFourAndTurnsHalf) {
    int turned = 0;
    SeedRandom(3);
    for (int i = 0; i < 400; ++i) {
        const RAVPolygon fixed = FixCrowdPolygon(Row(520, 100));
        std::vector<std::array<float, 3>> places;
        for (const OIFVertex& v : fixed.vertices) places.push_back({v.X, v.Y, static_cast<float>(v.Shadow & 0xF)});
        ASSERT_EQ(places, (std::vector<std::array<float, 3>>{{520, 0, 1}, {0, 0, 2}, {0, 100, 3}, {520, 100, 4}}));
        const std::array<float, 8> uv = UVs(fixed);
        ASSERT_TRUE(uv == Laid(1.3f) || uv == Turned(1.3f));
        turned += uv == Turned(1.3f);
    }
    // 200 expected; 5 standard deviations (10 each) either way.
    EXPECT_GT(turned, 150);
    EXPECT_LT(turned, 250);
}

TEST(FixCrowdPolygon, CollapsesToTheOriginWithoutStrictCorners) {
    SeedRandom(4);
    RAVPolygon tied = Row(520, 100);
    tied.vertices[3].U = 1;  // the top left now ties the bottom right for the greatest u + v
    tied.vertices[3].V = 1;
    const RAVPolygon fixed = FixCrowdPolygon(tied);
    for (const OIFVertex& v : fixed.vertices)
        EXPECT_TRUE(v.X == 0 && v.Y == 0 && v.Z == 0 && v.U == 0) << "no height: U 0";
    // Without a strict B only A keeps its place.
    RAVPolygon noB = Row(520, 100);
    noB.vertices[0].V = 0;
    noB.vertices[2].V = 0;
    noB.vertices[3].V = 0;
    const RAVPolygon half = FixCrowdPolygon(noB);
    EXPECT_EQ(half.vertices[0].X, 520);
    for (std::size_t i = 1; i < 4; ++i) EXPECT_EQ(half.vertices[i].X, 0);
}

TEST(FixCrowdPolygons, FixesEveryFourVertexPolygonWhateverItsGroups) {
    SeedRandom(5);
    RAVFile list;
    RAVPolygon twoGroups = Row(520, 100);
    twoGroups.groups.push_back(RAVGroup{"rowb", 0, {}, 0});
    twoGroups.groupCount = 2;
    RAVPolygon three = Row(520, 100);
    three.vertices.pop_back();
    three.vertexCount = 3;
    list.polygons = {twoGroups, three};
    list.polygonCount = 2;
    FixCrowdPolygons(list);
    EXPECT_EQ(list.polygons[0].vertices[0].X, 520) << "bottom right first";
    EXPECT_EQ(list.polygons[1], three);
}
