#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <set>

#include "core/DrawnTriangles.h"
#include "exchange/mdl3DS.h"
#include "support/Chunks3DS.h"
#include "support/TestFiles.h"

using namespace chunks3ds;

namespace {

Bytes3DS Square(const std::string& name, const std::string& material) {
    return Object(name,
                  {Vertices({{0, 0, 0}, {1, 0, 0}, {1, 2, 0}, {0, 2, 0}}), TexVerts({{0, 0}, {1, 0}, {1, 1}, {0, 1}}),
                   Faces({{0, 1, 2}, {0, 2, 3}}, {FaceMaterial(material)})});
}

// A mesh of n vertices with texture points and no faces, all at one place or each at its own.
Mesh3DS Many(int n, bool apart, float layer = 0) {
    Mesh3DS mesh;
    mesh.vertexCount = mesh.texVertCount = n;
    for (int i = 0; i < n; ++i) mesh.vertices.push_back({apart ? static_cast<float>(i) : 0, layer, 0});
    mesh.texVerts.assign(static_cast<std::size_t>(n), {0, 0});
    return mesh;
}

Model3DS Parsed(const Bytes3DS& bytes) {
    const Parse3DS p = Parse3DSBytes(bytes);
    EXPECT_EQ(p.error, "");
    return p.model;
}

}  // namespace

TEST(Read3DS, ReadsMeshesMaterialsAndStepsOverWhatItDoesNotUse) {
    const Bytes3DS file = Chunk(0x4D4D, {Chunk(0x0002, {I32(3)}), Chunk(0x1234, {I32(99), I32(98)}),
                                         Chunk(0x3D3D, {Chunk(0x3D3E, {I32(2)}), Material("Seats", "SEATS.BMP"),
                                                        Chunk(0x0100, {I32(1)}), Square("Stand", "Seats")}),
                                         Chunk(0xB000, {Chunk(0xB00A, {I32(5)})})});
    const Model3DS m = Parsed(file);
    ASSERT_EQ(m.meshes.size(), 1u);
    EXPECT_EQ(m.meshes[0], (Mesh3DS{"Stand",
                                    4,
                                    2,
                                    4,
                                    {{0, 0, 0}, {1, 0, 0}, {1, 2, 0}, {0, 2, 0}},
                                    {{0, 1, 2, 7}, {0, 2, 3, 7}},
                                    {{0, 0}, {1, 0}, {1, 1}, {0, 1}},
                                    {},
                                    "Seats"}));
    ASSERT_EQ(m.materials.size(), 1u);
    EXPECT_EQ(Material3DSTexture(m, "Seats"), "SEATS.BMP");
    EXPECT_EQ(Material3DSTexture(m, "seats"), "") << "names match exactly";
}

TEST(Read3DS, TracesEveryChunkThroughTheOneHook) {
    std::vector<std::string> trace;
    const auto before = SetLog3DSSink([&](const std::string& line) { trace.push_back(line); });
    const Bytes3DS file = Chunk(
        0x4D4D,
        {Chunk(0x0002, {I32(3)}), Chunk(0x0007),
         Chunk(0x3D3D,
               {Chunk(0x3D3E, {I32(2)}), Chunk(0x0100),
                Chunk(0xAFFF, {Chunk(0xA000, {Text("M")}), Chunk(0xA010),
                               Chunk(0xA200, {Chunk(0xA300, {Text("m.bmp")}), Chunk(0xA351)})}),
                Chunk(0x4000,
                      {Text("Obj"), Chunk(0x4700),
                       Chunk(0x4100, {Vertices({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}), TexVerts({{0, 0}, {1, 0}, {0, 1}}),
                                      Chunk(0x4160, {Bytes3DS(48, 0)}), Chunk(0x4165), Chunk(0x4111),
                                      Faces({{0, 1, 2}}, {FaceMaterial("M"), Chunk(0x4150), Chunk(0x4190)})})})}),
         Chunk(0xB000, {Chunk(0xB00A)})});
    Parsed(file);
    SetLog3DSSink(before);
    // The hand-worked trace: one line per chunk, indented by depth, with what each one loaded.
    std::string expected;
    for (const std::string& line : trace) expected += line + "\n";
    EXPECT_EQ(expected, ReadText(std::string(TM_TEST_DATA) + "/3ds/trace.txt"));
}

TEST(Read3DS, LaterRecordsInheritWhatTheyLeaveOut) {
    const Bytes3DS file = File({Material("Rock", "rock.bmp"), MaterialNamed("Moss"), Square("A", "Rock"),
                                Object("B", {Vertices({{5, 5, 5}, {6, 5, 5}, {5, 6, 5}}), Faces({{0, 1, 2}})}),
                                Object("C", {Vertices({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}}),
                                             Faces({{0, 1, 2}}, {FaceMaterial("Rock"), FaceMaterial("Moss")})}),
                                Chunk(0x4000, {Text("Lamp"), Chunk(0x4600)})});
    const Model3DS m = Parsed(file);
    ASSERT_EQ(m.meshes.size(), 3u) << "an object without a mesh adds nothing";
    EXPECT_EQ(Material3DSTexture(m, "Moss"), "rock.bmp") << "a material without a map keeps the one before";
    EXPECT_EQ(m.meshes[1].materialName, "Rock") << "a mesh without a face material keeps the one before";
    EXPECT_EQ(m.meshes[1].texVertCount, 4);
    EXPECT_EQ(m.meshes[1].texVerts, m.meshes[0].texVerts) << "a mesh without texture vertices keeps the ones before";
    EXPECT_EQ(m.meshes[2].materialName, "Moss") << "the last face material names the material";
}

TEST(Read3DS, RefusesDamagedFilesSayingWhere) {
    const Bytes3DS good = File({Square("A", "M")});
    // Where the chunks of the one object sit: primary 0, version 6, edit 16, object 22.
    const std::size_t object = 22, mesh = object + 6 + 2;
    const std::size_t vertices = mesh + 6, texVerts = vertices + 6 + 2 + 48, faces = texVerts + 6 + 2 + 32;
    const auto length = [&](std::size_t at, std::uint32_t n) {
        Bytes3DS b = good;
        for (int i = 0; i < 4; ++i) b[at + 2 + i] = static_cast<std::uint8_t>(n >> (8 * i));
        return b;
    };
    const auto byte = [&](std::size_t at, std::uint8_t value) {
        Bytes3DS b = good;
        b[at] = value;
        return b;
    };
    const std::string noMesh = "This 3ds file is damaged and was not loaded: it holds no mesh.";
    const std::pair<Bytes3DS, std::string> cases[] = {
        {Chunk(0x4D4D), noMesh},
        {File({Material("M", "m.bmp")}), noMesh},
        {Chunk(0x3D3D, {Square("A", "M")}), Invalid3DSMessage},
        {{}, Invalid3DSMessage},
        {{0x4D, 0x4D, 6, 0}, Invalid3DSMessage},
        {length(0, static_cast<std::uint32_t>(good.size() + 1)), "runs past the end of the file"},
        {length(vertices, 200), "0x4110"},
        {length(texVerts, 3), "shorter than its own header"},
        {byte(vertices + 6, 5), "too short for its vertices"},
        {byte(vertices + 6, 0), "gives 0 vertices"},
        {byte(faces + 7, 0xFF), "faces"},
        {byte(faces + 8, 4), "face on vertex 4 but only 4 vertices"},
        // A later mesh that inherits faces must still own the vertices they name.
        {File({Square("A", "M"), Object("B", {Vertices({{0, 0, 0}, {1, 1, 1}})})}), "\"B\""},
    };
    for (const auto& [bytes, message] : cases) {
        const Parse3DS p = Parse3DSBytes(bytes);
        EXPECT_NE(p.error.find(message), std::string::npos) << p.error << " is not " << message;
        EXPECT_EQ(p.model, Model3DS{}) << "a refused file must leave no tables";
    }
    // Padding too short for a header at the end of a chunk is not a chunk.
    EXPECT_EQ(Parsed(Chunk(0x4D4D, {Chunk(0x3D3D, {Square("A", "M")}), Bytes3DS{1, 2, 3}})).meshes.size(), 1u);
}

TEST(Read3DS, NoPrefixOrBitFlipOfAGoodFileReadsOutsideIt) {
    const Bytes3DS good = File({Material("M", "m.bmp"), Square("A", "M"), Square("B", "M")});
    for (std::size_t n = 0; n < good.size(); ++n) {
        const Bytes3DS prefix(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(n));
        EXPECT_FALSE(Parse3DSBytes(prefix).error.empty()) << n;
    }
    std::mt19937 random(7);
    for (int round = 0; round < 3000; ++round) {
        Bytes3DS bent = good;
        for (int flips = 0; flips < 3; ++flips)
            bent[random() % bent.size()] ^= static_cast<std::uint8_t>(1u << (random() % 8));
        const Parse3DS p = Parse3DSBytes(bent);
        for (const Mesh3DS& m : p.model.meshes)
            for (const Face3DS& f : m.faces) ASSERT_LT(std::max({f.a, f.b, f.c}), m.vertexCount);
    }
}

TEST(Make3DSPart, TurnsTheAxesShadesStripsAndNamesThePart) {
    const Model3DS m =
        Parsed(File({Square("A", "M"), Object("B", {Vertices({{0, 0, 0}, {4, 0, 0}, {0, 0, 3}}),
                                                    TexVerts({{0.5f, 0.25f}, {1, 0}, {0, 1}}), Faces({{0, 1, 2}})})}));
    const Part3DS made = Make3DSPartFrom(m, {}, 7);
    ASSERT_EQ(made.error, "");
    const OIFPart& p = made.part;
    EXPECT_EQ(p.Header.Name, FixedText<28>("Part 7"));
    EXPECT_EQ(p.Header.Texture, FixedText<4>("")) << "the caller sets the texture";
    // (1, 2, 0) of mesh A becomes x 100, y 0, z -200. B's origin has other UVs than A's: both stay.
    ASSERT_EQ(p.Vertices.size(), 7u);
    EXPECT_TRUE(p.Vertices[2].X == 100 && p.Vertices[2].Y == 0 && p.Vertices[2].Z == -200 && p.Vertices[6].Y == 300);
    EXPECT_TRUE(p.Vertices[4].U == 0.5f && p.Vertices[4].V == 0.25f) << "texture coordinates go through as read";
    // Shaded over the whole part (the grey rule is core's): B's (4, 0, 0) is farthest, so A's
    // (1, 0, 0) at 100 of 400 units is 187.5, grey 188.
    EXPECT_EQ(p.Vertices[1].Shadow, 0xFFBCBCBCu);
    EXPECT_EQ(p.Header.VertexCount, 7);
    EXPECT_EQ(p.Header.IndexCount, static_cast<std::int32_t>(p.Indices.size()));
    EXPECT_EQ(DrawnTriangles(p.Indices), (std::multiset<Triangle3>{{0, 1, 2}, {0, 2, 3}, {4, 5, 6}}))
        << "B's vertices follow A's";

    const Part3DS flat = Make3DSPartFrom(m, {true, 0, 0, 0}, 0);
    for (const OIFVertex& v : flat.part.Vertices) EXPECT_EQ(v.Shadow, 0x006E6E6Eu);
    const Part3DS bare = Make3DSPartFrom(m, {false, 1, 0, 0}, 3);
    EXPECT_TRUE(bare.part.Vertices.empty() && bare.part.Indices.empty());
    EXPECT_EQ(bare.part.Header.Name, FixedText<28>("Part 3"));
}

TEST(Make3DSPart, RefusesModelsItCannotMakeAPartOf) {
    const Model3DS noUVs =
        Parsed(File({Object("Bare", {Vertices({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}), Faces({{0, 1, 2}})})}));
    const Part3DS made = Make3DSPartFrom(noUVs, {}, 0);
    EXPECT_NE(made.error.find("\"Bare\" has 3 vertices but only 0 texture coordinates"), std::string::npos);
    EXPECT_EQ(made.part, OIFPart{});

    // Two meshes of 33,000 different vertices each: too many for 16-bit indices.
    Model3DS big;
    big.meshes = {Many(33000, true, 0), Many(33000, true, 1)};
    EXPECT_NE(Make3DSPartFrom(big, {}, 0).error.find("66000 different vertices"), std::string::npos);
}

TEST(Make3DSPart, IndicesAboveSixteenBitsOfSignedRangeStillNameTheirVertices) {
    // 60,003 vertices that collapse to 3 distinct ones; the last mesh's face starts past 32767.
    Model3DS m;
    m.meshes = {Many(30000, false), Many(30000, false), Many(3, true)};
    m.meshes[2].faceCount = 1;
    m.meshes[2].faces = {{0, 1, 2, 0}};
    const Part3DS made = Make3DSPartFrom(m, {true, 0, 0, 0}, 0);
    ASSERT_EQ(made.error, "");
    ASSERT_EQ(made.part.Vertices.size(), 3u);
    EXPECT_EQ(DrawnTriangles(made.part.Indices), (std::multiset<Triangle3>{{0, 1, 2}}));
}

TEST(Make3DSPart, WeldAndDuplicateRuleAtTheirEdges) {
    auto mesh = [](std::vector<std::array<float, 3>> points, std::vector<std::array<float, 2>> uvs) {
        Mesh3DS m;
        for (const auto& p : points) m.vertices.push_back({p[0], p[1], p[2]});
        for (const auto& t : uvs) m.texVerts.push_back({t[0], t[1]});
        m.vertexCount = m.texVertCount = static_cast<std::int32_t>(points.size());
        return m;
    };
    const float nan = std::numeric_limits<float>::quiet_NaN();
    // Weld distance 1 is 100 game units, i.e. 1 unit of the file: strictly less welds.
    Model3DS m{{mesh({{0, 0, 0}, {0.99f, 0, 0}, {1, 0, 0}, {0, -0.0f, 0}, {nan, 0, 0}, {nan, 0, 0}},
                     {{0, 0}, {0, 0}, {0, 0}, {0, 0}, {0, 0}, {0, 0}})},
               {}};
    const OIFPart welded = Make3DSPartFrom(m, {true, 0, 1, 1}, 0).part;
    ASSERT_EQ(welded.Vertices.size(), 4u) << "99 units weld, 100 do not; -0 equals 0; NaN equals nothing";
    EXPECT_EQ(welded.Vertices[1].X, 100.0f);
    EXPECT_EQ(Make3DSPartFrom(m, {true, 0, 0, 1}, 0).part.Vertices.size(), 5u);
}

TEST(Make3DSPart, FastMethodGivesThePartOfThePairwiseRule) {
    std::mt19937 random(2024);
    std::uniform_real_distribution<float> coordinate(-20, 20), jitter(-0.8f, 0.8f);
    for (int round = 0; round < 40; ++round) {
        Model3DS m;
        const int meshes = 1 + round % 3;
        // Some rounds lie so far out that cell numbers lose their precision.
        const float scale = round % 4 == 3 ? 1e10f : round % 4 == 2 ? 3e8f : 1.0f;
        for (int k = 0; k < meshes; ++k) {
            Mesh3DS mesh;
            const int n = 20 + static_cast<int>(random() % 300);
            for (int i = 0; i < n; ++i) {
                Vertex3DS p{std::round(coordinate(random)) * scale, std::round(coordinate(random)) / 4,
                            coordinate(random) * scale};
                if (i > 0 && random() % 3 == 0) p = mesh.vertices[random() % i];  // exact duplicate
                if (i > 0 && random() % 4 == 0) {                                 // near one
                    p = mesh.vertices[random() % i];
                    p.x += jitter(random);
                    p.z -= jitter(random) / 2;
                }
                mesh.vertices.push_back(p);
                mesh.texVerts.push_back({static_cast<float>(random() % 2), random() % 5 == 0 ? -0.0f : 0.0f});
            }
            for (int f = 0; f < n; ++f)
                mesh.faces.push_back({static_cast<std::uint16_t>(random() % n),
                                      static_cast<std::uint16_t>(random() % n),
                                      static_cast<std::uint16_t>(random() % n), 0});
            mesh.vertexCount = mesh.texVertCount = n;
            mesh.faceCount = n;
            m.meshes.push_back(mesh);
        }
        for (const Make3DSOptions options : {Make3DSOptions{true, 1, 0, 0}, Make3DSOptions{true, 0, 1, 1},
                                             Make3DSOptions{true, 1, 1, 2}, Make3DSOptions{true, 0, 1, 7}}) {
            const Part3DS fast = Make3DSPartFrom(m, options, round);
            const Part3DS reference = Make3DSPartReference(m, options, round);
            ASSERT_EQ(fast.error, reference.error);
            ASSERT_EQ(fast.part, reference.part) << "round " << round << " weld " << options.weldDistance;
        }
    }
}
