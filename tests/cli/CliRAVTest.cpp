// End-to-end checks of the RAV verbs: dump-rav and rav-script.
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "cli/RunCli.h"
#include "exchange/RhinoScriptOps.h"
#include "support/TestFiles.h"

namespace {

using json = nlohmann::json;

// One crowd row after the exporter's empty first polygon; the row's name has an 8-bit letter.
const char* const Export =
    "Version=3\r\nNumPoly=2\r\n[P0]\r\nName=\r\nNumVert=0\r\nNumGrps=0\r\n"
    "[P1]\r\nName=Trib\xFCne\r\nNumVert=4\r\n  200,0,0,1,0,FFFFFF\r\n  200,100,50,1,1,FF\r\n"
    "  0,100,50,0,1,0\r\n  0.1,0,-0,0,0,808080\r\nNumGrps=1\r\nGroup1=rowa\r\nNumIdx=4\r\nIndices=0,1,2,3\r\n";

class cliRAV : public ::testing::Test {
protected:
    std::string Put(const std::string& name, const std::string& text) {
        WriteFile(scratch.file(name), Bytes().raw(text).data);
        return scratch.file(name);
    }
    ScratchFolder scratch;
};

}  // namespace

TEST_F(cliRAV, dumpShowsPolygonsWithUnsignedShadowsAndDecodedNames) {
    const CliResult r = RunCli({"dump-rav", Put("rows.txt", Export)});
    ASSERT_EQ(r.status, 0) << r.err;
    const json doc = json::parse(r.out);
    EXPECT_EQ(doc["version"], 3);
    ASSERT_EQ(doc["polygons"].size(), 2u);
    EXPECT_EQ(doc["polygons"][0], json::parse(R"({"name": "", "vertices": [], "groups": []})"));
    const json& row = doc["polygons"][1];
    EXPECT_EQ(row["name"], "Trib\u00FCne");
    EXPECT_EQ(row["vertices"][0], json::parse("[200, 0, 0, 4294967295, 1, 0]"));
    EXPECT_NE(r.out.find("[0.1, 0, -0, 2155905279, 0, 0]"), std::string::npos)
        << "floats as their shortest single text";
    EXPECT_EQ(row["groups"], json::parse(R"([{"name": "rowa", "indices": [0, 1, 2, 3]}])"));
}

TEST_F(cliRAV, scriptIsTheConvertorsAndRefusedFilesExitWithTheEditorsMessage) {
    const std::string script = scratch.file("script.txt");
    CliResult r = RunCli({"rav-script", Put("rows.txt", Export), script, "C:\\tex\\"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(ReadText(script), RhinoScriptText(Export, "C:\\tex\\").text);

    const std::string shortFile = Put("short.txt", "Version=1\r\nNumPoly=2\r\n");
    r = RunCli({"dump-rav", shortFile});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "");
    const std::vector<std::string> message = {"Invalid RAV file!", "",
                                              "The file ends after line 2, but its counts call for more lines."};
    EXPECT_EQ(r.errLines(), message);

    Put("script.txt", "older script");
    r = RunCli({"rav-script", shortFile, script, "/tex/"});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.errLines(), message);
    EXPECT_EQ(ReadText(script), "older script");
}
