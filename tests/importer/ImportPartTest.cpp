// The one part the Stadium Importer makes: UVs into the atlas, the 3DS and RAV work meshes with
// the RAV slot shift, shading, merging, duplicates, and the fast optimiser against the pairwise
// rules on random models.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstring>
#include <random>

#include "importer/stmapOps.h"

namespace {

ImportTexture At(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) {
    ImportTexture t;
    t.Left = left;
    t.Top = top;
    t.Right = left + width;
    t.Bottom = top + height;
    return t;
}

OIFVertex Place(float x, float y, float z, float u = 0, float v = 0) { return {x, y, z, 0, u, v}; }

ImportSettings Plain(std::int16_t shade = 0, std::int16_t merge = 0, float dist = 0.5f) {
    ImportSettings s;
    s.FlipU = 0;
    s.FlipV = 0;
    s.Shade = shade;
    s.Merge = merge;
    s.MergeDist = dist;
    return s;
}

TEST(ImporterUV, RemapsIntoTheTexturesRectangleOnTheSheet) {
    OIFVertex v = Place(0, 0, 0, 0.5f, 0);
    RemapUV(v, At(256, 64, 128, 64), 512, 512);
    EXPECT_FLOAT_EQ(v.U, 0.625f);
    EXPECT_FLOAT_EQ(v.V, 0.125f);
    // Outside 0 to 1 stays outside the rectangle; on the narrow sheet a right edge at 256 is 1.
    OIFVertex w = Place(0, 0, 0, 1.5f, 1);
    RemapUV(w, At(128, 0, 128, 512), 256, 512);
    EXPECT_FLOAT_EQ(w.U, 1.25f);
    EXPECT_FLOAT_EQ(w.V, 1.0f);
}

TEST(ImporterWorkMesh, RefusesWhatItCannotIndexOrTexture) {
    Model3DS m;
    Mesh3DS mesh;
    mesh.name = "bare";
    mesh.vertexCount = 3;
    mesh.vertices.resize(3);
    m.meshes = {mesh};
    const std::vector<ImportTexture> one = {At(0, 0, 1, 1)};
    EXPECT_EQ(Work3DSMesh(m, one, Plain(), {}).error,
              "The mesh \"bare\" has 3 vertices but only 0 texture coordinates; every vertex needs one.");
    m.meshes[0].texVerts.resize(3);
    m.meshes[0].faceCount = 1;
    m.meshes[0].faces = {{0, 1, 3, 0}};
    EXPECT_EQ(Work3DSMesh(m, one, Plain(), {}).error, "The mesh \"bare\" has a face on a vertex it does not have.");
    m.meshes[0].faces = {{0, 1, 2, 0}};
    m.meshes.resize(10923, m.meshes[0]);  // 32769 vertices
    EXPECT_EQ(Work3DSMesh(m, one, Plain(), {}).error,
              "The model has 32769 vertices; the Stadium Importer takes at most 32768.");
    m.meshes.pop_back();
    const ImportMeshResult most = Work3DSMesh(m, one, Plain(), {});
    EXPECT_EQ(most.error, "");
    EXPECT_EQ(most.mesh.WorkIndices.back(), 32765);
}

RAVPolygon Row(float x, std::int16_t texture, std::int16_t groups = 1, std::int16_t vertexCount = 4) {
    RAVPolygon p;
    p.vertexCount = vertexCount;
    p.groupCount = groups;
    for (int k = 0; k < vertexCount; ++k) p.vertices.push_back(Place(x + static_cast<float>(k), 10, 20, 0.3f, 0.3f));
    for (int g = 0; g < groups; ++g) p.groups.push_back({"rowa", 0, {}, texture});
    return p;
}

// Polygon k takes the four vertex slots from 4 (k - 1), polygon 0 the last ones. A polygon of two
// groups leaves its slot zero; a triangle shortens the mesh, so polygon 0 finds its slots taken
// and a row whose slot runs past the end is left out rather than written outside the mesh.
TEST(ImporterWorkMesh, RAVPolygonsSitOneSlotLowAndPolygonZeroTakesTheLastSlots) {
    const std::vector<ImportTexture> textures = {At(0, 0, 512, 512), At(0, 0, 256, 256)};
    const struct {
        std::vector<RAVPolygon> polygons;
        std::size_t vertices;
        std::vector<std::int16_t> indices;  // then zeros, up to the count
        std::size_t indexCount;
        std::vector<std::pair<int, float>> xs;  // the x of some vertices
    } cases[] = {
        {{Row(1000, 0), Row(100, 1), Row(200, 0, 2), Row(300, 0)},
         16,
         {12, 13, 14, 12, 14, 15, 0, 1, 2, 0, 2, 3, 8, 9, 10, 8, 10, 11},
         30,
         {{0, 100}, {4, 0}, {8, 300}, {12, 1000}, {13, 1001}}},
        {{Row(1000, 0), Row(100, 0, 1, 3), Row(200, 0), Row(300, 0)},
         15,
         {4, 5, 6, 4, 6, 7, 8, 9, 10, 8, 10, 11},
         24,
         {{4, 200}, {8, 300}}},
        {{RAVPolygon{}, Row(100, 0, 1, 3), Row(200, 0), Row(300, 0)}, 11, {4, 5, 6, 4, 6, 7}, 18, {{4, 200}}},
    };
    for (const auto& c : cases) {
        RAVFile rav;
        rav.polygons = c.polygons;
        const ImportMeshResult made = WorkRAVMesh(rav, textures, Plain(), {512, 512});
        ASSERT_EQ(made.error, "");
        ASSERT_EQ(made.mesh.WorkVertices.size(), c.vertices);
        std::vector<std::int16_t> indices = c.indices;
        indices.resize(c.indexCount, 0);
        EXPECT_EQ(made.mesh.WorkIndices, indices) << c.vertices;
        for (const auto& [at, x] : c.xs) EXPECT_EQ(made.mesh.WorkVertices[static_cast<std::size_t>(at)].X, x) << at;
    }
    // Corner UVs are fixed whatever the polygon says, then go into the group's texture.
    RAVFile one;
    one.polygons = {RAVPolygon{}, Row(100, 1)};
    const std::vector<OIFVertex> v = WorkRAVMesh(one, textures, Plain(), {512, 512}).mesh.WorkVertices;
    const float u[4] = {0, 0.5f, 0.5f, 0}, w[4] = {0.5f, 0.5f, 0, 0};
    for (std::size_t k = 0; k < 4; ++k)
        EXPECT_TRUE(v.at(k).U == u[k] && v[k].V == w[k] && v[k].Shadow == 0xFFD0D0DAu) << "corner " << k;
}

TEST(ImporterPart, TakesFourCharactersOfTheTextureNameBlankPadded) {
    OptimisedMesh mesh;
    EXPECT_EQ(FinishImportPart(mesh, "ab", 0).Header.Texture.str(), "ab  ");
    EXPECT_EQ(FinishImportPart(mesh, "stadium", 3).Header.Name.str(), "Part 3 [stad]" + std::string(15, ' '));
}

std::uint32_t Grey(std::uint32_t g) { return 0xFF000000u + g * 0x010101u; }

TEST(ImporterOptimise, MergesInABoxInOrderAndKeepsTheShadeAndUVs) {
    ImportMesh work;
    // 1 is near 0 on every axis, where a sphere would not take it, and moves onto 0. 2 was near
    // 1's old place only, so it stays. 4 moves onto 0 with the UVs of 1 and becomes 1.
    work.WorkVertices = {Place(0, 0, 0), Place(40, 40, 40, 0.5f), Place(80, 40, 40, 0.5f), Place(0, 0, 60),
                         Place(10, 0, 0, 0.5f)};
    work.WorkIndices = {0, 1, 2, 1, 4, 3};
    const OptimisedMesh merged = OptimiseImportMesh(work, Plain(0, 1, 0.5f));
    ASSERT_EQ(merged.OptVertices.size(), 4u);
    OIFVertex moved = Place(0, 0, 0, 0.5f);
    moved.Shadow = 0x006E6E6Eu;
    EXPECT_EQ(merged.OptVertices[1], moved) << "a merge moves the place only";
    EXPECT_EQ(merged.OptVertices[2].X, 80.0f);
    EXPECT_EQ(merged.WorkIndices, (std::vector<std::int16_t>{0, 1, 2, 1, 1, 3}));
    EXPECT_EQ(OptimiseImportMesh(work, Plain(0, 1, 0)).OptVertices.size(), 5u) << "no difference is below 0";
    EXPECT_EQ(OptimiseImportMesh(work, Plain(0, 0, 0.5f)).OptVertices.size(), 5u);
    // Shaded first, merged after: the moved vertices keep the greys of their old places.
    const OptimisedMesh shaded = OptimiseImportMesh(work, Plain(1, 1, 0.5f));
    ASSERT_EQ(shaded.OptVertices.size(), 5u);
    EXPECT_EQ(shaded.OptVertices[0].Shadow, Grey(240));
    EXPECT_NE(shaded.OptVertices[1].Shadow, Grey(240));
    EXPECT_EQ(shaded.OptVertices[1].X, 0.0f);
}

bool SameBits(const OptimisedMesh& a, const OptimisedMesh& b) {
    return a.WorkIndices == b.WorkIndices && a.StripIndices == b.StripIndices &&
           a.OptVertices.size() == b.OptVertices.size() &&
           std::memcmp(a.OptVertices.data(), b.OptVertices.data(), a.OptVertices.size() * sizeof(OIFVertex)) == 0;
}

// Models whose places sit on a coarse lattice, so that exact and near duplicates, chains of near
// vertices and signed zeros are common, with UVs from a handful of values.
ImportMesh RandomModel(std::mt19937& random, std::size_t vertices) {
    std::uniform_int_distribution<int> cell(-6, 6), uv(0, 3), jitter(-3, 3), pick(0, 9);
    ImportMesh m;
    for (std::size_t i = 0; i < vertices; ++i) {
        OIFVertex v;
        if (i > 0 && pick(random) < 3) {
            v = m.WorkVertices[std::uniform_int_distribution<std::size_t>(0, i - 1)(random)];
            if (pick(random) < 5) v.X += static_cast<float>(jitter(random)) * 7.5f;
        } else {
            v = Place(static_cast<float>(cell(random)) * 30.0f, static_cast<float>(cell(random)) * 30.0f,
                      pick(random) == 0 ? -0.0f : static_cast<float>(cell(random)) * 30.0f,
                      static_cast<float>(uv(random)) / 3, static_cast<float>(uv(random)) / 3);
        }
        m.WorkVertices.push_back(v);
    }
    std::uniform_int_distribution<int> corner(0, static_cast<int>(vertices) - 1);
    for (std::size_t t = 0; t < vertices; ++t)
        for (int k = 0; k < 3; ++k) m.WorkIndices.push_back(static_cast<std::int16_t>(corner(random)));
    return m;
}

TEST(ImporterOptimise, TheFastMethodGivesThePairwiseResultOnRandomModels) {
    // No vertices, or places with no finite coordinates, leave the grid without a single cell.
    EXPECT_TRUE(OptimiseImportMesh(ImportMesh{}, Plain(0, 1)).OptVertices.empty());
    ImportMesh nowhere;
    nowhere.WorkVertices = {Place(NAN, 0, 0), Place(INFINITY, 1, 1), Place(NAN, 0, 0)};
    nowhere.WorkIndices = {0, 1, 2};
    EXPECT_TRUE(SameBits(OptimiseImportMesh(nowhere, Plain(0, 1)), OptimiseImportMeshReference(nowhere, Plain(0, 1))));

    std::mt19937 random(2003);
    int merging = 0;
    for (int round = 0; round < 120; ++round) {
        const ImportMesh work = RandomModel(random, 50 + static_cast<std::size_t>(round) * 7);
        ImportSettings s = Plain(static_cast<std::int16_t>(round % 2), static_cast<std::int16_t>(round % 3 != 0),
                                 static_cast<float>(round % 5) * 0.2f);
        const OptimisedMesh fast = OptimiseImportMesh(work, s);
        const OptimisedMesh reference = OptimiseImportMeshReference(work, s);
        ASSERT_TRUE(SameBits(fast, reference)) << "round " << round;
        ImportSettings apart = s;
        apart.Merge = 0;
        merging += fast.OptVertices.size() < OptimiseImportMesh(work, apart).OptVertices.size();
    }
    EXPECT_GT(merging, 40) << "the models must give the merge something to do";
}

}  // namespace
