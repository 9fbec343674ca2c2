// End-to-end checks of the Stadium Importer's verbs: textures lists a model's textures, atlas
// paints a layout into a bitmap and adds the one part whose UVs point into it, for a 3DS model
// of three textures written by Assimp and for RAV text.
#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "cli/RunCli.h"
#include "support/TestFiles.h"

namespace {

using json = nlohmann::json;
using Rgb = std::array<std::uint8_t, 3>;

const std::string Atlas3DS = std::string(TM_TEST_DATA) + "/3ds/atlas.3ds";
const Rgb Black{0, 0, 0}, Red{255, 0, 0}, Blue{0, 0, 255}, Green{0, 160, 0}, Yellow{255, 255, 0};

// A 24-bit Windows bitmap, bottom row first, rows padded to four bytes.
void WriteBmp(const std::string& path, int width, int height, const std::function<Rgb(int, int)>& pixel) {
    const int row = (width * 3 + 3) / 4 * 4;
    Bytes b;
    b.raw("BM").u32(static_cast<std::uint32_t>(54 + row * height)).u32(0).u32(54);
    b.u32(40).i32(width).i32(height).i16(1).i16(24).u32(0).u32(static_cast<std::uint32_t>(row * height));
    b.u32(2835).u32(2835).u32(0).u32(0);
    for (int y = height - 1; y >= 0; --y) {
        for (int x = 0; x < width; ++x) {
            const Rgb c = pixel(x, y);
            b.u8(c[2]).u8(c[1]).u8(c[0]);
        }
        for (int pad = width * 3; pad < row; ++pad) b.u8(0);
    }
    WriteFile(path, b.data);
}

struct Bitmap {
    int width = 0, height = 0, bits = 0;
    std::vector<std::uint8_t> bytes;
    Rgb at(int x, int y) const {
        const std::uint32_t offset = bytes[10] | bytes[11] << 8 | bytes[12] << 16;
        const std::size_t p = offset + static_cast<std::size_t>((height - 1 - y) * ((width * 3 + 3) / 4 * 4) + x * 3);
        return {bytes[p + 2], bytes[p + 1], bytes[p]};
    }
};

Bitmap ReadBmp(const std::string& path) {
    Bitmap b;
    b.bytes = ReadFile(path);
    auto i32 = [&](std::size_t p) {
        return static_cast<int>(b.bytes[p] | b.bytes[p + 1] << 8 | b.bytes[p + 2] << 16 | b.bytes[p + 3] << 24);
    };
    b.width = i32(18);
    b.height = i32(22);
    b.bits = b.bytes[28];
    return b;
}

class cliImporter : public ::testing::Test {
protected:
    ScratchFolder scratch;
    std::string folder = scratch.path();

    // seats.bmp 128 by 64, red left and blue right; roof.bmp 64 by 32 yellow; grass.bmp 32 by 32 green.
    void WriteAtlasTextures() {
        WriteBmp(scratch.file("seats.bmp"), 128, 64, [](int x, int) { return x < 64 ? Red : Blue; });
        WriteBmp(scratch.file("roof.bmp"), 64, 32, [](int, int) { return Yellow; });
        WriteBmp(scratch.file("grass.bmp"), 32, 32, [](int, int) { return Green; });
    }
    std::string Layout(const std::string& text) {
        WriteFile(scratch.file("layout.json"), Bytes().raw(text).data);
        return scratch.file("layout.json");
    }
    CliResult Atlas(const std::string& model, const std::string& layout, std::vector<std::string> more = {}) {
        std::vector<std::string> args = {"atlas",      model,
                                         "--textures", folder,
                                         "--layout",   layout,
                                         "--bitmap",   scratch.file("atlas.bmp"),
                                         "-o",         scratch.file("out.oif")};
        args.insert(args.end(), more.begin(), more.end());
        return RunCli(args);
    }
    json Parts() {
        const CliResult r = RunCli({"dump", scratch.file("out.oif")});
        EXPECT_EQ(r.status, 0) << r.err;
        return json::parse(r.out)["parts"];
    }
};

const char* const ThreeTextures = R"({
    "seats.bmp": {"left": 256, "top": 64, "width": 128, "height": 64},
    "roof.bmp": {"left": 0, "top": 0, "width": 128, "height": 64, "mapped": true},
    "grass.bmp": {"left": 0, "top": 480, "width": 32, "height": 32}})";

}  // namespace

TEST_F(cliImporter, texturesListsEachTextureOnceInMaterialOrderAndNamesAMissingOne) {
    WriteAtlasTextures();
    CliResult r = RunCli({"textures", Atlas3DS, "--textures", folder});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(json::parse(r.out), json::parse(R"([
        {"name": "seats.bmp", "path": ")" + folder +
                                              R"(/seats.bmp", "width": 128, "height": 64},
        {"name": "roof.bmp", "path": ")" + folder +
                                              R"(/roof.bmp", "width": 64, "height": 32},
        {"name": "grass.bmp", "path": ")" + folder +
                                              R"(/grass.bmp", "width": 32, "height": 32}])"));

    std::remove(scratch.file("roof.bmp").c_str());
    r = RunCli({"textures", Atlas3DS, "--textures", folder + "/"});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.errLines(), (std::vector<std::string>{"The texture file \"roof.bmp\" is not in \"" + folder + "/\"."}));
}

TEST_F(cliImporter, atlasPaintsEachTextureIntoItsRectangleAndPointsThePartsUVsThere) {
    WriteAtlasTextures();
    const CliResult r = Atlas(Atlas3DS, Layout(ThreeTextures));
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.err, "wrote " + scratch.file("atlas.bmp") + " (786,486 bytes), " + scratch.file("out.oif") +
                         ": 1 part, 11 vertices\n");

    const Bitmap bmp = ReadBmp(scratch.file("atlas.bmp"));
    ASSERT_EQ(bmp.width, 512);
    ASSERT_EQ(bmp.height, 512);
    EXPECT_EQ(bmp.bits, 24);
    // Copied one to one; stretched to twice; black wherever no texture lies.
    const std::pair<std::array<int, 2>, Rgb> samples[] = {
        {{256, 64}, Red},   {{319, 127}, Red},   {{320, 64}, Blue},  {{383, 127}, Blue},  {{255, 64}, Black},
        {{384, 64}, Black}, {{256, 128}, Black}, {{0, 0}, Yellow},   {{127, 63}, Yellow}, {{128, 0}, Black},
        {{0, 64}, Black},   {{0, 480}, Green},   {{31, 511}, Green}, {{32, 511}, Black},  {{511, 511}, Black}};
    for (const auto& [p, colour] : samples) EXPECT_EQ(bmp.at(p[0], p[1]), colour) << p[0] << "," << p[1];

    // Every vertex of the part is a vertex of the model, its UV flipped in V and moved into the
    // rectangle of its mesh's texture.
    const json model = json::parse(RunCli({"dump-3ds", Atlas3DS}).out);
    const std::map<std::string, std::array<double, 4>> rectangles = {
        {"seats.bmp", {256, 64, 128, 64}}, {"roof.bmp", {0, 0, 128, 64}}, {"grass.bmp", {0, 480, 32, 32}}};
    std::map<std::string, std::string> textureOf;
    for (const json& m : model["materials"]) textureOf[m["name"]] = m["textureFile"];
    std::vector<std::array<float, 5>> expected;
    for (const json& mesh : model["meshes"]) {
        const auto& r4 = rectangles.at(textureOf.at(mesh["materialName"]));
        for (std::size_t k = 0; k < mesh["vertices"].size(); ++k) {
            const json& p = mesh["vertices"][k];
            const float u = mesh["texVerts"][k][0], v = 1.0f - mesh["texVerts"][k][1].get<float>();
            expected.push_back({p[0].get<float>() * 100, p[2].get<float>() * 100, -p[1].get<float>() * 100,
                                static_cast<float>((r4[2] * u + r4[0]) / 512),
                                static_cast<float>((r4[3] * v + r4[1]) / 512)});
        }
    }
    const json parts = Parts();
    ASSERT_EQ(parts.size(), 1u);
    EXPECT_EQ(parts[0]["name"], "Part 0 [tp00]" + std::string(15, ' '));
    EXPECT_EQ(parts[0]["texture"], "tp00");
    ASSERT_EQ(parts[0]["vertices"].size(), expected.size());
    for (const json& v : parts[0]["vertices"]) {
        const std::array<float, 5> got{v[0], v[1], v[2], v[4], v[5]};
        EXPECT_NE(std::find(expected.begin(), expected.end(), got), expected.end()) << v.dump();
    }
    EXPECT_GE(parts[0]["indices"].size(), 7u) << "five triangles in one strip";
}

TEST_F(cliImporter, aLayoutThatCannotBePaintedWritesNothing) {
    WriteAtlasTextures();
    const std::string out = scratch.file("out.oif");
    // grass.bmp left out: it stays unmapped at the centre.
    CliResult r = Atlas(Atlas3DS, Layout(R"({"seats.bmp": {"left": 0, "top": 0, "width": 128, "height": 64},
                                              "roof.bmp": {"left": 100, "top": 10, "width": 64, "height": 32}})"));
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.errLines(), (std::vector<std::string>{"Texture cannot be properly made. Please check bounds!",
                                                      "Not all textures mapped!"}));
    r = Atlas(Atlas3DS, Layout(R"({"wall.bmp": {"left": 0, "top": 0, "width": 1, "height": 1}})"));
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.errLines(),
              (std::vector<std::string>{"The layout places \"wall.bmp\", which is not a texture of the model."}));
    r = Atlas(Atlas3DS, Layout(ThreeTextures), {"--sheet", "300x512"});
    EXPECT_EQ(r.status, 2);
    EXPECT_FALSE(std::ifstream(out).good());
    EXPECT_FALSE(std::ifstream(scratch.file("atlas.bmp")).good());
}

TEST_F(cliImporter, atlasOfRAVTextFixesTheRowsAndGivesEachCornerItsPlaceInTheTexture) {
    // The exporter's empty first polygon, then a home row and an away row.
    const std::string rav =
        "Version=1\r\nNumPoly=3\r\n[P0]\r\nName=\r\nNumVert=0\r\nNumGrps=0\r\n"
        "[P1]\r\nName=a\r\nNumVert=4\r\n  200,0,0,1,0,FFFFFF\r\n  200,100,50,1,1,FFFFFF\r\n"
        "  0,100,50,0,1,FFFFFF\r\n  0,0,0,0,0,FFFFFF\r\nNumGrps=1\r\nGroup1=rowa\r\nNumIdx=4\r\nIndices=0,1,2,3\r\n"
        "[P2]\r\nName=b\r\nNumVert=4\r\n  200,0,500,1,0,FFFFFF\r\n  200,100,550,1,1,FFFFFF\r\n"
        "  0,100,550,0,1,FFFFFF\r\n  0,0,500,0,0,FFFFFF\r\nNumGrps=1\r\nGroup1=rowb\r\nNumIdx=4\r\nIndices=0,1,2,3\r\n";
    WriteFile(scratch.file("rows.txt"), Bytes().raw(rav).data);
    WriteBmp(scratch.file("rowa.bmp"), 64, 32, [](int, int) { return Red; });
    WriteBmp(scratch.file("rowb.bmp"), 64, 32, [](int, int) { return Blue; });
    const CliResult r =
        Atlas(scratch.file("rows.txt"), Layout(R"({"rowa.bmp": {"left": 0, "top": 0, "width": 256, "height": 32},
                                                                  "rowb.bmp": {"left": 0, "top": 32, "width": 256, "height": 32}})"),
              {"--sheet", "256x512", "--shade", "0", "--texture", "rwh0"});
    ASSERT_EQ(r.status, 0) << r.err;
    const Bitmap bmp = ReadBmp(scratch.file("atlas.bmp"));
    EXPECT_EQ(bmp.width, 256);
    EXPECT_EQ(bmp.at(255, 31), Red);
    EXPECT_EQ(bmp.at(0, 32), Blue);
    const json parts = Parts();
    ASSERT_EQ(parts.size(), 1u);
    EXPECT_EQ(parts[0]["texture"], "rwh0");
    // Corners (0, 1), (1, 1), (1, 0), (0, 0) of each row, unflipped for RAV text, in its strip
    // of the narrow sheet: U runs over the whole width, V over a sixteenth.
    std::multiset<std::array<double, 2>> uvs;
    for (const json& v : parts[0]["vertices"]) {
        EXPECT_EQ(v[3], 0x006E6E6E);
        uvs.insert({v[4].get<double>(), v[5].get<double>() * 16});
    }
    EXPECT_EQ(uvs,
              (std::multiset<std::array<double, 2>>{{0, 1}, {1, 1}, {1, 0}, {0, 0}, {0, 2}, {1, 2}, {1, 1}, {0, 1}}));
}
