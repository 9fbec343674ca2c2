// End-to-end checks of the 3DS and point table verbs: dump-3ds, import of a .3ds, import-csv
// and quads.
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "cli/CliFixture.h"
#include "support/Chunks3DS.h"

namespace {

using json = nlohmann::json;
using namespace chunks3ds;

Bytes3DS Model() {
    return File(
        {Material("Seats", "rwh0.bmp"), Object("Stand", {Vertices({{0, 0, 0}, {1, 0, 0}, {1, 2, 0.5f}, {0, 2, 0.5f}}),
                                                         TexVerts({{0, 0}, {1, 0}, {1, 1}, {0, 1}}),
                                                         Faces({{0, 1, 2}, {0, 2, 3}}, {FaceMaterial("Seats")})})});
}

// Four points under "Object Type", the word "point" one column to the left.
const char* const Table =
    "\"Name\",\"Type\",\"Object Type\"\r\n\"a\",\"point\",\"0,0,0\"\r\n\"b\",\"point\",\"1,0,0\"\r\n"
    "\"c\",\"point\",\"1,0,1\"\r\n\"d\",\"point\",\"0,0,1\"\r\n";

using cliExchange = CliScratchTest;

}  // namespace

TEST_F(cliExchange, dump3dsPrintsTheTablesAndImportMakesOneStrippedPart) {
    const std::string model = Put("stand.3ds", Model());
    CliResult r = RunCli({"dump-3ds", model});
    ASSERT_EQ(r.status, 0) << r.err;
    const json tables = json::parse(r.out);
    EXPECT_EQ(tables["meshes"][0]["vertices"][2], json::parse("[1, 2, 0.5]"));
    EXPECT_EQ(tables["meshes"][0]["faces"][1], json::parse("[0, 2, 3, 7]"));
    EXPECT_EQ(tables["meshes"][0]["materialName"], "Seats");
    EXPECT_EQ(tables["materials"], json::parse(R"([{"name": "Seats", "textureFile": "rwh0.bmp"}])"));

    const std::string out = scratch.file("out.oif");
    r = RunCli({"import", model, "-o", out});
    ASSERT_EQ(r.status, 0) << r.err;
    const json doc = Dump(out);
    ASSERT_EQ(doc["parts"].size(), 1u);
    // (1, 2, 0.5) in 3DS axes is (100, 50, -200) in the game's.
    EXPECT_EQ(doc["parts"][0]["vertices"][2][0], 100);
    EXPECT_EQ(doc["parts"][0]["vertices"][2][1], 50);
    EXPECT_EQ(doc["parts"][0]["vertices"][2][2], -200);
    EXPECT_EQ(doc["parts"][0]["indices"].size(), 4u) << "two triangles in one strip";
}

TEST_F(cliExchange, brokenModelsExitWithTheEditorsMessageAndWriteNothing) {
    Bytes3DS cut = Model();
    cut.resize(cut.size() / 2);
    const std::string out = scratch.file("out.oif");
    CliResult r = RunCli({"import", Put("cut.3ds", cut), "-o", out});
    EXPECT_EQ(r.status, 1);
    ASSERT_EQ(r.errLines().size(), 1u);
    EXPECT_NE(r.errLines()[0].find("damaged"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(out));
    r = RunCli({"dump-3ds", Put("foreign.3ds", Bytes().raw("PK\x03\x04 not a model").data)});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.errLines(), std::vector<std::string>{"not a valid 3ds file!"});
}

TEST_F(cliExchange, pointTablesGiveAQuadPartWithItsWireframeAndAQuadPreview) {
    const std::string table = Put("row.csv", Bytes().raw(Table).data);
    const std::string out = scratch.file("out.oif"), wire = scratch.file("wire.wrl");
    CliResult r = RunCli({"import-csv", table, "-o", out, "--wire", wire});
    ASSERT_EQ(r.status, 0) << r.err;
    const json doc = Dump(out);
    EXPECT_EQ(doc["parts"][0]["indices"], json::parse("[0, 1, 2, 3]"));
    EXPECT_EQ(doc["parts"][0]["vertices"][0], json::parse("[100, 0, 0, 0, 0, 0]")) << "V1 first, x = a * 100";
    EXPECT_NE(ReadText(wire).find("100 0 0"), std::string::npos);

    const std::string quads = scratch.file("quads.wrl");
    r = RunCli({"quads", table, table, "-o", quads});
    ASSERT_EQ(r.status, 0) << r.err;
    const std::string text = ReadText(quads);
    // Two lists of one quad each, and the quad one past the points that each index block names.
    std::size_t blocks = 0;
    for (std::size_t at = text.find("coordIndex"); at != std::string::npos; at = text.find("coordIndex", at + 1))
        ++blocks;
    EXPECT_EQ(blocks, 2u);
    EXPECT_NE(text.find("               4 5 -1"), std::string::npos);
}
