// Models written by 3DS writers that are not ours (see tests/data/3ds/make.sh): Assimp's
// exporter and lib3ds.
#include <gtest/gtest.h>

#include <array>
#include <map>
#include <set>

#include "core/DrawnTriangles.h"
#include "exchange/mdl3DS.h"

namespace {

Model3DS Load(const std::string& name) {
    const Parse3DS p = Parse3DSBytes(binaryOps::ReadFileBytes(std::string(TM_TEST_DATA) + "/3ds/" + name));
    EXPECT_EQ(p.error, "");
    return p.model;
}

using Corner = std::array<float, 5>;  // x, y, z, u, v in game axes
using Triangle = std::array<Corner, 3>;

// A triangle with its corners turned to start at the smallest, so that winding counts but the
// first corner does not.
Triangle Turned(Triangle t) {
    while (t[1] < t[0] || t[2] < t[0]) t = {t[1], t[2], t[0]};
    return t;
}

// The triangles of the model, worked out from the meshes and the axis rule by hand.
std::multiset<Triangle> ExpectedTriangles(const Model3DS& m) {
    std::multiset<Triangle> out;
    for (const Mesh3DS& mesh : m.meshes)
        for (const Face3DS& f : mesh.faces) {
            Triangle t;
            const std::uint16_t corners[3] = {f.a, f.b, f.c};
            for (int k = 0; k < 3; ++k) {
                const Vertex3DS& p = mesh.vertices[corners[k]];
                t[k] = {p.x * 100, p.z * 100, -p.y * 100, mesh.texVerts[corners[k]].u, mesh.texVerts[corners[k]].v};
            }
            out.insert(Turned(t));
        }
    return out;
}

// The triangles that a part's one strip draws, leaving out the joins.
std::multiset<Triangle> PartTriangles(const OIFPart& part) {
    std::multiset<Triangle> out;
    for (const Triangle3& n : DrawnTriangles(part.Indices)) {
        Triangle t;
        for (int k = 0; k < 3; ++k) {
            const OIFVertex& v = part.Vertices.at(static_cast<std::size_t>(n[k]));
            t[k] = {v.X, v.Y, v.Z, v.U, v.V};
        }
        out.insert(Turned(t));
    }
    return out;
}

}  // namespace

TEST(ThirdParty3DS, AssimpExportReadsWithItsMaterialsAndMapFiles) {
    const Model3DS m = Load("box.3ds");
    ASSERT_EQ(m.meshes.size(), 2u);
    EXPECT_EQ(m.meshes[0].name, "Stand_Stand_0");
    EXPECT_EQ(m.meshes[0].vertices[2], (Vertex3DS{2, 0, 1}));
    EXPECT_EQ(m.meshes[0].faces[1], (Face3DS{0, 2, 3, 0}));
    EXPECT_EQ(m.meshes[1].texVerts[0], (TexVert3DS{0.25f, 0.5f}));
    EXPECT_EQ(Material3DSTexture(m, m.meshes[0].materialName), "wall.bmp");
    EXPECT_EQ(Material3DSTexture(m, m.meshes[1].materialName), "pitch.bmp");
    EXPECT_EQ(Material3DSTexture(m, "DefaultMaterial_0"), "") << "a material without a map, the first of the file";
}

TEST(ThirdParty3DS, Lib3dsModelMakesOnePartOfTheSameTriangles) {
    const Model3DS m = Load("terrace.3ds");
    ASSERT_EQ(m.meshes.size(), 2u);
    std::map<std::string, const Mesh3DS*> byName;
    for (const Mesh3DS& mesh : m.meshes) byName[mesh.name] = &mesh;
    ASSERT_TRUE(byName.count("Terrace") && byName.count("Roof"));
    EXPECT_EQ(byName["Terrace"]->vertexCount, 44);
    EXPECT_EQ(byName["Terrace"]->faceCount, 60);
    EXPECT_EQ(byName["Terrace"]->vertices[12], (Vertex3DS{0.5f, 0.8f, 0.4f}));
    EXPECT_EQ(Material3DSTexture(m, byName["Terrace"]->materialName), "RWH0.BMP");
    EXPECT_EQ(Material3DSTexture(m, byName["Roof"]->materialName), "roof.bmp");

    const Part3DS made = Make3DSPartFrom(m, {}, 0);
    ASSERT_EQ(made.error, "");
    EXPECT_EQ(made.part.Vertices.size(), 48u);
    EXPECT_EQ(PartTriangles(made.part), ExpectedTriangles(m));
}
