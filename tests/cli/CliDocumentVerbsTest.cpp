// End-to-end checks of the verbs that change or draw a document: import, merge, previews, wire.
#include <sys/stat.h>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "cli/CliFixture.h"
#include "cli/RunCli.h"
#include "support/TestFiles.h"

namespace fs = std::filesystem;
using json = nlohmann::json;

namespace {

// A stadium of parts with the given textures, each one quad strip of four vertices.
std::vector<std::uint8_t> Stadium(const std::vector<std::string>& textures) {
    Bytes b;
    b.raw("OiFF").i16(1).i16(1).i32(0).i32(0).i32(0).i32(static_cast<std::int32_t>(textures.size()));
    for (std::size_t i = 0; i < textures.size(); ++i) {
        b.field("Part " + std::to_string(i), 28).raw(textures[i]).i32(4).i32(4);
        for (int v = 0; v < 4; ++v) b.vertex(static_cast<float>(i), static_cast<float>(v), 0, 0, 0, 0);
        b.i16(0).i16(1).i16(2).i16(3);
    }
    return b.data;
}

class cliDocumentVerbs : public CliScratchTest {};

}  // namespace

TEST_F(cliDocumentVerbs, importAddsThePartsBehindTheOwnOnes) {
    const std::string into = Put("into.oif", Stadium({"tp00"}));
    const std::string more = Put("more.oif", Stadium({"cr01", "ad02"}));
    const CliResult r = RunCli({"import", more, "--into", into, "-o", scratch.file("out.oif")});
    ASSERT_EQ(r.status, 0) << r.err;
    const json doc = Dump(scratch.file("out.oif"));
    ASSERT_EQ(doc["parts"].size(), 3u);
    EXPECT_EQ(doc["parts"][0]["texture"], "tp00");
    EXPECT_EQ(doc["parts"][2]["texture"], "ad02");
    // Without --into the parts go into an empty stadium.
    ASSERT_EQ(RunCli({"import", more, "-o", scratch.file("alone.oif")}).status, 0);
    EXPECT_EQ(Dump(scratch.file("alone.oif"))["header"]["partCount"], 2);
}

TEST_F(cliDocumentVerbs, importRefusesWhatItCannotReadAndWritesNothing) {
    const std::string csv = Put("points.csv", {'x'});
    CliResult r = RunCli({"import", csv, "-o", scratch.file("out.oif")});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.errLines(), (std::vector<std::string>{"File type not supported!"}));
    std::vector<std::uint8_t> broken = Stadium({"tp00"});
    broken.resize(broken.size() - 1);
    r = RunCli({"import", Put("broken.oif", broken), "-o", scratch.file("out.oif")});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.errLines(), (std::vector<std::string>{"Invalid OIF file!"}));
    r = RunCli({"import", scratch.file("missing.oif"), "-o", scratch.file("out.oif")});
    EXPECT_EQ(r.status, 1);
    EXPECT_FALSE(fs::exists(scratch.file("out.oif")));
}

TEST_F(cliDocumentVerbs, importConvertsOFilesWithTheConverterOfTheToolFolder) {
    const std::string tools = scratch.file("oiftool");
    fs::create_directories(tools);
    fs::create_directories(scratch.file("terramason"));
    const std::string conf = "HKEY_CURRENT_USER\\Software\\Problems Inc\\OIFTool\\InstallPath=" + tools + "\n";
    WriteFile(scratch.file("terramason/registry.conf"), std::vector<std::uint8_t>(conf.begin(), conf.end()));
    const std::string made = Put("made.oif", Stadium({"rwh0"}));
    const std::string script = "#!/bin/sh\n[ \"$1\" = --to-oif ] && cp '" + made + "' \"$3\"\n";
    WriteFile(tools + "/oifconvert", std::vector<std::uint8_t>(script.begin(), script.end()));
    ::chmod((tools + "/oifconvert").c_str(), 0755);
    const CliResult r = RunCli({"import", Put("stadium.o", {'O'}), "-o", scratch.file("out.oif")});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(Dump(scratch.file("out.oif"))["parts"][0]["texture"], "rwh0");
    EXPECT_FALSE(fs::exists(scratch.file("terramason/tempoif.oif"))) << "the hand-over file is removed";
}

TEST_F(cliDocumentVerbs, mergeJoinsExactTexturesAndCrowdOnlyKeepsTheRest) {
    const std::string in = Put("in.oif", Stadium({"tp00", "TP00", "tp00", "rwh0", "tp00", "rwh0"}));
    ASSERT_EQ(RunCli({"merge", in, "-o", scratch.file("all.oif")}).status, 0);
    const json all = Dump(scratch.file("all.oif"));
    ASSERT_EQ(all["parts"].size(), 3u);
    EXPECT_EQ(all["parts"][0]["vertices"].size(), 12u) << "how parts join is MergeSameTexture's (PartOperationsTest)";
    ASSERT_EQ(RunCli({"merge", in, "--crowd-only", "-o", scratch.file("crowd.oif")}).status, 0);
    const json crowd = Dump(scratch.file("crowd.oif"));
    ASSERT_EQ(crowd["parts"].size(), 5u);
    EXPECT_EQ(crowd["parts"][3]["vertices"].size(), 8u);
}

TEST_F(cliDocumentVerbs, previewsWriteTheFourViewsWithoutTheHiddenParts) {
    const std::string in = Put("in.oif", Stadium({"tp00", "cr01", "ad02"}));
    const std::string dir = scratch.file("views");
    fs::create_directories(dir);
    const CliResult r = RunCli({"previews", in, dir, "--hide", "1"});
    ASSERT_EQ(r.status, 0) << r.err;
    for (const char* view : {"Top", "Right", "Back", "Perspective"}) {
        const std::string text = ReadText(dir + "/" + view + ".wrl");
        EXPECT_EQ(text.rfind("#VRML V2.0 utf8\r\n", 0), 0u) << view;
        EXPECT_NE(text.find("description \"" + std::string(view) + "\""), std::string::npos);
        EXPECT_NE(text.find("url \"tp00.png\""), std::string::npos);
        EXPECT_EQ(text.find("url \"cr01.png\""), std::string::npos) << "part 1 is hidden";
        EXPECT_NE(text.find("url \"ad02.png\""), std::string::npos);
    }
    EXPECT_TRUE(fs::exists(dir + "/Part_1.tmp")) << "hidden parts still get their part file";
    EXPECT_EQ(RunCli({"previews", in, dir, "--hide", "x"}).status, 2);
}

TEST_F(cliDocumentVerbs, wireMarksTheChosenVertex) {
    const std::string in = Put("in.oif", Stadium({"tp00", "cr01"}));
    ASSERT_EQ(RunCli({"wire", in, scratch.file("w.wrl"), "--vertex", "1:2"}).status, 0);
    const std::string text = ReadText(scratch.file("w.wrl"));
    EXPECT_NE(text.find("   translation 1 2 0\r\n"), std::string::npos);
    EXPECT_NE(text.find("   position 1 2 100\r\n"), std::string::npos);
    EXPECT_LT(text.find("\"Vertex\""), text.find("\"Top\""));
    ASSERT_EQ(RunCli({"wire", in, scratch.file("h.wrl"), "--hide", "0,1"}).status, 0);
    EXPECT_EQ(ReadText(scratch.file("h.wrl")).find("Shape"), std::string::npos);
    EXPECT_EQ(RunCli({"wire", in, scratch.file("x.wrl"), "--vertex", "1-2"}).status, 2);
}

TEST_F(cliDocumentVerbs, partsTheDocumentDoesNotHaveAreUsageErrorsAndNothingIsWritten) {
    const std::string in = Put("in.oif", Stadium({"tp00", "cr01"}));
    const std::string out = scratch.file("x.out");
    const struct {
        std::vector<std::string> args;
        const char* said;
    } cases[] = {
        {{"previews", in, scratch.path(), "--hide", "0,2"}, "--hide: part 2 is not in the document"},
        {{"wire", in, out, "--hide", "7"}, "--hide: part 7 is not in the document"},
        {{"wire", in, out, "--vertex", "2:0"}, "--vertex: the document has no vertex 0 in part 2"},
        {{"wire", in, out, "--vertex", "1:4"}, "--vertex: the document has no vertex 4 in part 1"},
        {{"transform", in, "--parts", "1,2", "-o", out}, "--parts: part 2 is not in the document"},
    };
    for (const auto& c : cases) {
        const CliResult r = RunCli(c.args);
        EXPECT_EQ(r.status, 2) << c.said;
        EXPECT_EQ(r.err.rfind(c.said, 0), 0u) << r.err;
        EXPECT_FALSE(fs::exists(out)) << c.said;
        EXPECT_FALSE(fs::exists(scratch.file("Top.wrl"))) << c.said;
    }
}
