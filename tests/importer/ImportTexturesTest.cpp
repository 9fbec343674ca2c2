// The Stadium Importer's texture list: which materials and RAV groups make textures, the dialog
// for a missing file, the refusals, and where each mesh's texture is found again.
#include <gtest/gtest.h>

#include <map>

#include "importer/stmapOps.h"
#include "support/ScriptedDesktop.h"
#include "support/TestFiles.h"

namespace {

class ImporterTextures : public ::testing::Test {
protected:
    ScriptedDesktop desktop;
    ScratchFolder folder;
    std::string path = folder.path() + "/";
    std::vector<ImportTexture> textures;
    std::vector<std::string> decoded;
    // Every file decodes to 32 by 16, except those named "broken".
    PictureReader read = [this](const std::string& file) -> std::optional<PictureSize> {
        decoded.push_back(file);
        if (file.find("broken") != std::string::npos) return std::nullopt;
        return PictureSize{32, 16};
    };

    void Files(std::initializer_list<const char*> names) {
        for (const char* name : names) WriteFile(folder.file(name), {0});
    }
    static Model3DS Materials(std::initializer_list<std::pair<const char*, const char*>> list) {
        Model3DS m;
        for (const auto& [name, file] : list) m.materials.push_back({name, file, 0});
        return m;
    }
    static std::vector<std::string> Names(const std::vector<ImportTexture>& t) {
        std::vector<std::string> out;
        for (const ImportTexture& x : t) out.push_back(x.Name);
        return out;
    }
};

TEST_F(ImporterTextures, MaterialsShareATextureByExactFileNameAndAnEmptyFileMakesNone) {
    Files({"wall.bmp", "Wall.bmp", "pitch.bmp"});
    Model3DS m = Materials({{"a", "wall.bmp"}, {"b", "pitch.bmp"}, {"c", "wall.bmp"}, {"d", "Wall.bmp"}, {"e", ""}});
    m.materials[4].textureIndex = 7;
    ASSERT_TRUE(Build3DSTextures(m, textures, path, read));
    EXPECT_EQ(Names(textures), (std::vector<std::string>{"wall.bmp", "pitch.bmp", "Wall.bmp"}));
    std::vector<std::int32_t> indices;
    for (const Material3DS& x : m.materials) indices.push_back(x.textureIndex);
    EXPECT_EQ(indices, (std::vector<std::int32_t>{0, 1, 0, 2, 7}));
    EXPECT_TRUE(textures[1].Path == path + "pitch.bmp" && textures[1].Picture == (PictureSize{32, 16}));
    EXPECT_TRUE(decoded.size() == 3u && desktop.dialogTitles.empty());
}

TEST_F(ImporterTextures, AMissingFileIsAskedForAndCancellingEndsTheLoad) {
    Files({"elsewhere.png"});
    Model3DS m = Materials({{"a", "roof.bmp"}, {"b", "seats.bmp"}});
    desktop.dialogAnswers = {folder.file("elsewhere.png"), ""};
    EXPECT_FALSE(Build3DSTextures(m, textures, path, read));
    EXPECT_EQ(desktop.dialogTitles,
              (std::vector<std::string>{"Select file for roof.bmp", "Select file for seats.bmp"}));
    ASSERT_EQ(textures.size(), 1u);
    EXPECT_TRUE(textures[0].Name == "roof.bmp" && textures[0].Path == folder.file("elsewhere.png"));
    EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(ImporterTextures, RefusesAModelWithoutTexturesAndAPictureThatCannotBeRead) {
    Model3DS none = Materials({{"a", ""}});
    EXPECT_FALSE(Build3DSTextures(none, textures, path, read));
    RAVFile rav;
    rav.polygons.push_back({"p", 4, 2, {}, {{"rowa", 0, {}, 0}, {"rowb", 0, {}, 0}}});
    EXPECT_FALSE(BuildRAVTextures(rav, textures, path, read));
    ASSERT_EQ(desktop.messages.size(), 2u);
    for (const ShownMessage& m : desktop.messages)
        EXPECT_TRUE(m.text == "There are no textures in this 3ds file!" && m.title == "Terramason" &&
                    m.icon == MessageIcon::Critical);
    Files({"broken.bmp"});
    Model3DS broken = Materials({{"a", "broken.bmp"}});
    EXPECT_FALSE(Build3DSTextures(broken, textures, path, read));
    EXPECT_EQ(desktop.messages.back().text, "The picture \"" + folder.file("broken.bmp") + "\" cannot be read.");
}

TEST_F(ImporterTextures, RAVGroupsNameTheirBitmapAndOnlyPolygonsOfOneGroupCount) {
    Files({"rowa.bmp", "rowb.bmp"});
    RAVFile rav;
    rav.polygons = {{"empty", 0, 0, {}, {}},
                    {"two", 4, 2, {}, {{"skip", 0, {}, 0}, {"skip2", 0, {}, 0}}},
                    {"a", 4, 1, {}, {{"rowb", 0, {}, 0}}},
                    {"b", 4, 1, {}, {{"rowa", 0, {}, 0}}},
                    {"c", 4, 1, {}, {{"rowb", 0, {}, 0}}},
                    {"d", 4, 1, {}, {{"", 0, {}, 5}}}};
    ASSERT_TRUE(BuildRAVTextures(rav, textures, path, read));
    EXPECT_EQ(Names(textures), (std::vector<std::string>{"rowb.bmp", "rowa.bmp"}));
    std::vector<std::int16_t> indices;
    for (std::size_t s = 2; s < rav.polygons.size(); ++s) indices.push_back(rav.polygons[s].groups[0].textureIndex);
    EXPECT_EQ(indices, (std::vector<std::int16_t>{0, 1, 0, 5}));
}

TEST_F(ImporterTextures, MeshTextureIndexTakesTheFirstMaterialOfANameAndElseZero) {
    Model3DS m = Materials({{"stone", "a.bmp"}, {"stone", "b.bmp"}, {"grass", "c.bmp"}});
    for (std::size_t i = 0; i < 3; ++i) m.materials[i].textureIndex = 4 + static_cast<std::int32_t>(i);
    EXPECT_EQ(MeshTextureIndex(m, "stone"), 4);
    EXPECT_EQ(MeshTextureIndex(m, "grass"), 6);
    EXPECT_EQ(MeshTextureIndex(m, "Grass"), 0);
    EXPECT_EQ(MeshTextureIndex(Model3DS{}, "stone"), 0);
}

}  // namespace
