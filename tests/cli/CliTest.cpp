// End-to-end checks of terramason-cli on OIF files written byte by byte, independent of the
// program's own writer.
#include <cmath>
#include <cstring>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "cli/CliFixture.h"

namespace {

using json = nlohmann::json;
using ByteVector = std::vector<std::uint8_t>;

const std::vector<std::string> InvalidFile = {"Invalid OIF file!"};
const std::vector<std::string> NotAStadium = {"Invalid OIF file type!", "", "Not a stadium OIF file."};

struct HeaderFields {
    std::string magic = "OiFF";
    std::int16_t version = 1;
    std::int16_t kind = 1;
    std::int32_t fileLength = 0;
    std::int32_t trailerCount = 0;
    std::int32_t trailerSpare = 0;
    std::int32_t partCount = 0;
};

void Header(Bytes& b, const HeaderFields& h) {
    b.raw(h.magic)
        .i16(h.version)
        .i16(h.kind)
        .i32(h.fileLength)
        .i32(h.trailerCount)
        .i32(h.trailerSpare)
        .i32(h.partCount);
}

// Shows where two byte images first part, which a plain vector comparison does not.
void ExpectSameBytes(const ByteVector& actual, const ByteVector& expected) {
    const std::size_t common = std::min(actual.size(), expected.size());
    for (std::size_t i = 0; i < common; ++i)
        if (actual[i] != expected[i]) {
            ADD_FAILURE() << "first difference at byte " << i << ": " << int(actual[i]) << " instead of "
                          << int(expected[i]);
            return;
        }
    EXPECT_EQ(actual.size(), expected.size());
}

std::string Padded(const std::string& text, std::size_t n) { return text + std::string(n - text.size(), ' '); }

constexpr const char* Name28 = "ABCDEFGHIJKLMNOPQRSTUVWXYZ01";

// Two parts and a six-byte trailer. Part 1 has a name of exactly 28 characters, a two-letter
// texture and edge values; part 2 has 8-bit characters in its name, a blank texture and no
// indices.
ByteVector TwoPartFile(bool withTrailer) {
    Bytes b;
    Header(b, {.version = 3, .fileLength = 999, .trailerCount = 2, .trailerSpare = -7, .partCount = 2});
    b.raw(Name28).raw(std::string("ab\0 ", 4)).i32(2).i32(3);
    b.vertex(0.1f, -2.5f, 1e7f, 0xFFFFFFFFu, 1.0f / 3.0f, 1.0f);
    b.vertex(std::numeric_limits<float>::max(), std::numeric_limits<float>::denorm_min(), -123.456f, 0, 0.5f,
             16777216.0f);
    b.i16(-1).i16(32767).i16(-32768);
    b.field("Caf\xE9 \x80", 28).raw("    ").i32(1).i32(0);
    b.vertex(1, 2, 3, 0x80000000u, 0, 0);
    if (withTrailer) b.u8(0xDE).u8(0xAD).u8(0xBE).u8(0xEF).u8(0x00).u8(0x7F);
    return b.data;
}

// Suites are named cli... so that `ctest -R cli` picks out the end-to-end checks.
using cliDump = CliScratchTest;
using cliResave = CliScratchTest;
using cliFailure = CliScratchTest;

// ---- dump ----

TEST_F(cliDump, showsEveryFieldAsTheFileHoldsIt) {
    const CliResult r = RunCli({"dump", Put("two.oif", TwoPartFile(true))});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.err, "");
    const json doc = json::parse(r.out);

    EXPECT_EQ(doc["label"], "OIF1");
    EXPECT_EQ(doc["header"], json::parse(R"({"magic": "OiFF", "version": 3, "kind": 1, "fileLength": 999,
        "trailerCount": 2, "trailerSpare": -7, "partCount": 2})"));
    ASSERT_EQ(doc["parts"].size(), 2u);

    const json& first = doc["parts"][0];
    EXPECT_EQ(first["name"], Name28);
    EXPECT_EQ(first["texture"], "ab  ");
    EXPECT_EQ(first["indices"], json::parse("[-1, 32767, -32768]"));
    ASSERT_EQ(first["vertices"].size(), 2u);
    EXPECT_EQ(first["vertices"][0][3].get<std::uint64_t>(), 4294967295u);
    EXPECT_TRUE(first["vertices"][0][3].is_number_unsigned());
    // How each float is written is checked case by case below.
    EXPECT_EQ(static_cast<float>(first["vertices"][0][0].get<double>()), 0.1f);

    const json& second = doc["parts"][1];
    EXPECT_EQ(second["name"], Padded("Caf\xC3\xA9 \xE2\x82\xAC", 28 + 3));  // é and € are 2 and 3 bytes in UTF-8
    EXPECT_EQ(second["texture"], "tp00");
    EXPECT_EQ(second["vertices"][0][3].get<std::uint64_t>(), 2147483648u);
    EXPECT_EQ(second["indices"], json::array());

    EXPECT_EQ(doc["trailer"], "deadbeef007f");
}

TEST_F(cliDump, writesFloatsAsTheShortestTextThatReadsBack) {
    struct Case {
        float value;
        const char* text;  // nullptr: only reading back is checked
    };
    const std::vector<Case> cases = {
        {0.1f, "0.1"},
        {-2.5f, "-2.5"},
        {1e7f, "1e+07"},
        {1.0f / 3.0f, "0.33333334"},
        {16777216.0f, "16777216"},
        {1.5e-5f, "1.5e-05"},
        {-123.456f, "-123.456"},
        {std::numeric_limits<float>::max(), "3.4028235e+38"},
        {std::numeric_limits<float>::denorm_min(), "1e-45"},
        {100.0f, nullptr},
        {-0.0f, "-0"},
        // JSON has no word for these; a number would misstate the file.
        {std::numeric_limits<float>::infinity(), "null"},
        {std::numeric_limits<float>::quiet_NaN(), "null"},
    };
    Bytes b;
    Header(b, {.partCount = 1});
    b.field("floats", 28).field("tp01", 4).i32(static_cast<std::int32_t>(cases.size())).i32(0);
    for (const Case& c : cases) b.vertex(c.value, 0, 0, 0, 0, 0);
    const CliResult r = RunCli({"dump", Put("floats.oif", b.data)});
    ASSERT_EQ(r.status, 0) << r.err;
    ASSERT_TRUE(json::accept(r.out)) << r.out;
    const json vertices = json::parse(r.out)["parts"][0]["vertices"];
    ASSERT_EQ(vertices.size(), cases.size());
    for (std::size_t i = 0; i < cases.size(); ++i) {
        const Case& c = cases[i];
        if (c.text) {
            EXPECT_NE(r.out.find("[" + std::string(c.text) + ", 0, 0, 0, 0, 0]"), std::string::npos) << c.text;
        }
        if (std::isfinite(c.value)) { EXPECT_EQ(static_cast<float>(vertices[i][0].get<double>()), c.value) << i; }
    }
}

// ---- resave ----

// The writer's rules are EncodeOIF's (OIFCodecTest); here resave reaches it and writes its bytes.
TEST_F(cliResave, changesOnlyPaddingAndLengthOfATrailerlessFile) {
    const ByteVector in = TwoPartFile(false);
    const CliResult r = RunCli({"resave", Put("in.oif", in), scratch.file("out.oif")});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out + r.err, "wrote " + scratch.file("out.oif") + ": 2 parts, 3 vertices\n");
    EXPECT_EQ(RunCli({"resave", "--quiet", scratch.file("in.oif"), scratch.file("out.oif")}).err, "");
    ByteVector expected = in;
    const auto length = static_cast<std::uint32_t>(expected.size());
    for (int i = 0; i < 4; ++i) expected[8 + i] = static_cast<std::uint8_t>(length >> (8 * i));
    expected[24 + 28 + 2] = ' ';  // "ab" NUL blank is held as "ab  "
    const std::size_t secondTexture = 24 + 40 + 2 * 24 + 3 * 2 + 28;
    std::memcpy(&expected[secondTexture], "tp00", 4);
    ExpectSameBytes(ReadFile(scratch.file("out.oif")), expected);
}

// ---- refusals ----

struct Broken {
    const char* what;
    ByteVector bytes;
    std::vector<std::string> message;
};

// A well-formed one-part file, then one field spoilt.
ByteVector OnePart(HeaderFields h, std::int32_t vertexCount = 1, std::int32_t indexCount = 3) {
    Bytes b;
    Header(b, h);
    b.field("Seats", 28).field("tp01", 4).i32(vertexCount).i32(indexCount);
    b.vertex(1, 2, 3, 4, 5, 6).i16(0).i16(0).i16(0);
    return b.data;
}

// Every refusal rule is ParseOIF's (OIFCodecTest); here both kinds of message reach the user.
std::vector<Broken> BrokenFiles() {
    ByteVector shortHeader = OnePart({.partCount = 1});
    shortHeader.resize(23);
    return {
        {"HeaderCutShort", shortHeader, InvalidFile},
        {"KindTwo", OnePart({.kind = 2, .partCount = 1}), NotAStadium},
    };
}

void PrintTo(const Broken& c, std::ostream* os) { *os << c.what; }

class cliRefused : public CliScratchTest, public ::testing::WithParamInterface<Broken> {};

TEST_P(cliRefused, withTheEditorsMessageAndNothingWritten) {
    const Broken& c = GetParam();
    const std::string in = Put("in.oif", c.bytes);

    const CliResult dump = RunCli({"dump", in});
    EXPECT_EQ(dump.status, 1);
    EXPECT_EQ(dump.out, "");
    EXPECT_EQ(dump.errLines(), c.message);

    const std::string out = scratch.file("out.oif");
    const CliResult resave = RunCli({"resave", in, out});
    EXPECT_EQ(resave.status, 1);
    EXPECT_EQ(resave.errLines(), c.message);
    EXPECT_FALSE(std::filesystem::exists(out));
}

INSTANTIATE_TEST_SUITE_P(brokenFile, cliRefused, ::testing::ValuesIn(BrokenFiles()),
                         [](const ::testing::TestParamInfo<Broken>& p) { return std::string(p.param.what); });

TEST_F(cliResave, refusedInputLeavesAnExistingOutputAlone) {
    const ByteVector before = {'k', 'e', 'e', 'p'};
    const std::string out = Put("out.oif", before);
    const CliResult r = RunCli({"resave", Put("in.oif", OnePart({.kind = 2, .partCount = 1})), out});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(ReadFile(out), before);
}

// ---- failures and usage ----

TEST_F(cliFailure, filesThatCannotBeReadOrWrittenGiveAMessage) {
    const std::string missing = scratch.file("missing.oif");
    for (const std::vector<std::string>& args :
         {std::vector<std::string>{"dump", missing}, {"resave", missing, scratch.file("out.oif")}}) {
        const CliResult r = RunCli(args);
        EXPECT_EQ(r.status, 1) << args[0];
        EXPECT_EQ(r.out, "");
        EXPECT_NE(r.err.find(missing), std::string::npos) << r.err;
    }
    EXPECT_FALSE(std::filesystem::exists(scratch.file("out.oif")));
    EXPECT_FALSE(std::filesystem::exists(missing));  // reading must not create the file

    const std::string unwritable = scratch.file("no-such-folder/out.oif");
    const CliResult r = RunCli({"resave", Put("in.oif", OnePart({.partCount = 1})), unwritable});
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find("Cannot write"), std::string::npos) << r.err;

    const CliResult folder = RunCli({"dump", scratch.path()});
    EXPECT_EQ(folder.status, 1);
    EXPECT_NE(folder.err, "");
}

TEST(cliUsage, wrongArgumentsExitWithTwoAndAUsageLine) {
    const std::vector<std::vector<std::string>> wrong = {
        {},
        {"frob"},
        {"dump"},
        {"dump", "a.oif", "b.oif"},
        {"dump", "--bogus", "a.oif"},
        {"resave", "a.oif"},
        {"resave", "a.oif", "b.oif", "c.oif"},
    };
    for (const auto& args : wrong) {
        std::string shown;
        for (const std::string& a : args) shown += " " + a;
        const CliResult r = RunCli(args);
        EXPECT_EQ(r.status, 2) << shown;
        EXPECT_EQ(r.out, "") << shown;
        EXPECT_NE(r.err.find("Usage: terramason-cli"), std::string::npos) << shown << "\n" << r.err;
    }
    const CliResult verb = RunCli({"resave", "a.oif"});
    EXPECT_NE(verb.err.find("Usage: terramason-cli resave IN.oif OUT.oif"), std::string::npos) << verb.err;
    EXPECT_NE(RunCli({"frob"}).err.find("frob"), std::string::npos);
}

}  // namespace
