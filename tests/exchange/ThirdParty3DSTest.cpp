// Models written by 3DS writers that are not ours (see tests/data/3ds/make.sh): Assimp's
// exporter and lib3ds.
#include <gtest/gtest.h>

#include <map>

#include "exchange/mdl3DS.h"

namespace {

Model3DS Load(const std::string& name) {
    const Parse3DS p = Parse3DSBytes(binaryOps::ReadFileBytes(std::string(TM_TEST_DATA) + "/3ds/" + name));
    EXPECT_EQ(p.error, "");
    return p.model;
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

TEST(ThirdParty3DS, Lib3dsModelReadsWithItsMeshesAndMaterials) {
    const Model3DS m = Load("terrace.3ds");
    ASSERT_EQ(m.meshes.size(), 2u);
    std::map<std::string, const Mesh3DS*> byName;
    for (const Mesh3DS& mesh : m.meshes) byName[mesh.name] = &mesh;
    ASSERT_TRUE(byName.count("Terrace") && byName.count("Roof"));
    EXPECT_EQ(byName["Terrace"]->vertexCount, 44);
    EXPECT_EQ(byName["Terrace"]->faceCount, 60);
    EXPECT_EQ(byName["Terrace"]->vertices[12], (Vertex3DS{0.5f, 0.8f, 0.4f}));
    // The last face of the writer's grid, on the far top corner, whose texture point is (1, 1).
    EXPECT_EQ(byName["Terrace"]->faces[59], (Face3DS{31, 43, 42, 7}));
    EXPECT_EQ(byName["Terrace"]->texVerts[43], (TexVert3DS{1, 1}));
    EXPECT_EQ(Material3DSTexture(m, byName["Terrace"]->materialName), "RWH0.BMP");
    EXPECT_EQ(Material3DSTexture(m, byName["Roof"]->materialName), "roof.bmp");
}
