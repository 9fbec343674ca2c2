#include <gtest/gtest.h>

#include <cfloat>
#include <string>
#include <vector>

#include "core/TestData.h"
#include "exchange/RAVOps.h"
#include "support/ScriptedDesktop.h"
#include "support/TestFiles.h"

namespace {

std::string Lines(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\r\n";
    return text;
}

// Two polygons with the quirks the reader must take: indented vertex lines, a seventh vertex
// field, a name holding an equals sign, lower-case colour digits, a fractional count, an LF line
// end among CR LF ones, and lines after the last polygon.
std::string GoodRAV() { return TestData("rav/good.rav"); }

std::string PointRow(const std::string& location) { return "\"Point\",\"point\",\"" + location + "\",\"Default\""; }

}  // namespace

TEST(ReadRAV, ReadsPolygonsVerticesAndGroupsWithTheLenientNumberRule) {
    const RAVParse p = ParseRAV(GoodRAV());
    ASSERT_EQ(p.error, "");
    // The name's value starts after the first equals sign; abcdef is 0; the seventh field is
    // ignored; the shortest text of the largest single value reads as it; 2.5 rounds to even.
    const RAVFile want{
        2,
        2,
        {{"Stand=North",
          3,
          2,
          {{100, -50.5f, 0, 0x0000FFFFu, 0.25f, 1}, {1000, FLT_MAX, 3, 0xFFu, 0, 0}, {7, 8, 9, 0x123456FFu, 1, 0}},
          {{"rowa", 4, {0, 1, 2, 1}, 0}, {"", 0, {}, 0}}},
         {"", 0, 1, {}, {{"adba", 2, {2, -1}, 0}}}}};
    EXPECT_EQ(p.file, want);
}

TEST(HexToLong, ReadsCapitalDigitsFromTheRightAndRefusesOverflow) {
    // A lower-case letter counts 0 in its place; zeros far to the left add nothing.
    const std::pair<const char*, std::optional<std::int32_t>> cases[] = {{"FF", 255},
                                                                         {"abcdef", 0},
                                                                         {"1a", 16},
                                                                         {"0000000000FF", 255},
                                                                         {"7FFFFFFF", 0x7FFFFFFF},
                                                                         {"80000000", std::nullopt}};
    for (const auto& [text, value] : cases) EXPECT_EQ(HexToLong(text), value) << text;
}

// A refused file leaves nothing behind.
TEST(TextReaders, RefuseWhatWouldReadPastTheFileOrOverflowSayingWhere) {
    const auto rows = TestTable("rav/refusals.txt");
    ASSERT_EQ(rows.size(), 21u);
    for (const auto& row : rows) {
        SCOPED_TRACE(row[1]);
        const std::string reason = row[2] == "-" ? "" : "Invalid " + row[0] + " file!\r\n\r\n" + row[2];
        if (row[0] == "CSV") {
            EXPECT_EQ(ParsePointTable(row[1]).error, reason);
            EXPECT_EQ(ParsePointTable(row[1]).quads, PolygonPart{});
            continue;
        }
        const RAVParse p = ParseRAV(row[1]);
        EXPECT_EQ(p.error, reason);
        EXPECT_TRUE(reason.empty() ? p.file.polygons.empty() : p.file == RAVFile{});
    }
    std::string list = "List=0";
    for (int i = 1; i < 1001; ++i) list += ",0";
    EXPECT_EQ(
        ParseRAV("Version=1\r\nPolygons=1\r\n[P]\r\nName=x\r\nVertices=0\r\nGroups=1\r\nGroup=rowa\r\nCount=1\r\n" +
                 list)
            .error,
        "Invalid RAV file!\r\n\r\nLine 9: an index list holds at most 1000 indices.");
}

TEST(ReadPointTable, MakesQuadsOfPointRowsWithTheRhinocerosAxes) {
    // Seven points, so the last three make no quad; a row of another type, an empty location and
    // a type word that is not exactly "point" are passed over.
    std::vector<std::string> rows = {"\"Name\",\"Kind\",\"Object Type\",\"Layer\"", PointRow("1,2,3"),
                                     "\"Curve\",\"curve\",\"9,9,9\",\"Default\"", PointRow(""),
                                     "\"Point\",\"Point\",\"9,9,9\",\"Default\""};
    for (const char* p : {"-1.5,0.25,10,junk", "0,0,0", "4,5,6", "7,8,9", "10,11,12", "13,14,15"})
        rows.push_back(PointRow(p));
    const PointTableParse p = ParsePointTable(Lines(rows));
    ASSERT_EQ(p.error, "");
    EXPECT_EQ(p.quads.Count, 1);
    ASSERT_EQ(p.quads.Vertices.size(), 4u);
    EXPECT_EQ(p.quads.Vertices[0], (OIFVertex{100, 300, 200, 0, 0, 0})) << "x = a, y = c, z = b, no sign change";
    EXPECT_EQ(p.quads.Vertices[1], (OIFVertex{-150, 1000, 25, 0, 0, 0}));
    EXPECT_EQ(p.quads.Vertices[3], (OIFVertex{400, 600, 500, 0, 0, 0}));
}

TEST(RAVAndCSV, EveryPrefixOfAGoodFileIsReadOrRefusedWithAMessage) {
    const std::string rav = GoodRAV();
    for (std::size_t n = 0; n <= rav.size(); ++n) {
        const RAVParse p = ParseRAV(std::string_view(rav).substr(0, n));
        EXPECT_TRUE(p.error.empty() || p.error.rfind("Invalid RAV file!\r\n\r\n", 0) == 0) << n;
    }
    std::vector<std::string> rows = {"\"Name\",\"Kind\",\"Object Type\""};
    for (int i = 0; i < 9; ++i) rows.push_back("\"P\",\"point\",\"" + std::to_string(i) + ",1,2\"");
    const std::string csv = Lines(rows);
    for (std::size_t n = 0; n <= csv.size(); ++n) {
        const PointTableParse p = ParsePointTable(std::string_view(csv).substr(0, n));
        EXPECT_TRUE(p.error.empty() ? p.quads.Vertices.size() == 4u * static_cast<std::size_t>(p.quads.Count)
                                    : p.error.rfind("Invalid CSV file!\r\n\r\n", 0) == 0)
            << n;
    }
}

TEST(ReadRAVFile, ReportsARefusalInABoxAndGivesNothing) {
    ScratchFolder dir;
    ScriptedDesktop desktop;
    WriteFile(dir.file("good.txt"), Bytes().raw(GoodRAV()).data);
    WriteFile(dir.file("short.txt"), Bytes().raw("Version=1\r\nPolygons=1\r\n").data);
    bool ok = false;
    EXPECT_EQ(ReadRAVFile(dir.file("good.txt"), &ok).polygons.size(), 2u);
    EXPECT_TRUE(ok && desktop.messages.empty());
    EXPECT_EQ(ReadRAVFile(dir.file("short.txt"), &ok), RAVFile{});
    EXPECT_FALSE(ok);
    ASSERT_EQ(desktop.messages.size(), 1u);
    EXPECT_TRUE(desktop.messages[0].title == "VORN Terramason" && desktop.messages[0].icon == MessageIcon::Exclamation);
    EXPECT_THROW(ReadRAVFile(dir.file("missing.txt")), std::runtime_error);
}

TEST(ChooseQuadCorners, TakesStrictWinnersAndTheEqualUExceptions) {
    struct Case {
        std::array<float, 4> u, v;
        QuadCorners corners;
    };
    const Case cases[] = {
        {{1, 1, 0, 0}, {0, 1, 1, 0}, {1, 2, 3, 0}},  // a crowd row as the 3DS import lays it out
        // Equal u of the last two: the earlier one is C ...
        {{0, 1, 0, 0.5f}, {0, 1, 0.1f, 0.9f}, {1, 3, 0, 2}},
        {{1, 0, 0, 0.5f}, {1, 0, 0.1f, 0.9f}, {0, 3, 1, 2}},
        // ... except for vertices 0 and 1 behind A and B of 2 and 3, and 0 and 2 behind A 3, B 1.
        {{0, 0, 1, 0.5f}, {0, 0.1f, 1, 0.9f}, {2, 3, 1, 0}},
        {{0, 0, 0.5f, 1}, {0, 0.1f, 0.9f, 1}, {3, 2, 1, 0}},
        {{0, 0.5f, 0, 1}, {0, 0.9f, 0.1f, 1}, {3, 1, 2, 0}},
        // No strict A: no corner; no strict B: only A.
        {{1, 0, 1, 0}, {0, 1, 0, 1}, {-1, -1, -1, -1}},
        {{1, 0, 0, 0}, {1, 0.5f, 0.5f, 0}, {0, -1, -1, -1}},
    };
    for (const Case& c : cases) {
        const QuadCorners k = ChooseQuadCorners(c.u, c.v);
        EXPECT_EQ(k, c.corners) << "got " << k.A << k.B << k.C << k.D << " for u " << c.u[0] << c.u[1] << c.u[2]
                                << c.u[3];
    }
}
