#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "core/NumberText.h"
#include "core/TestData.h"
#include "exchange/RhinoScriptOps.h"
#include "exchange/TextReading.h"

namespace {

using Vertex = std::array<double, 5>;  // x, y, z, u, v as the file writes them

struct Row {
    std::array<Vertex, 4> v;
    std::string group;
};

// A crowd row from x0 to x0 + 200, 100 high and 50 deep, with the UVs of the 3DS import: vertex 1
// is corner A, 2 is B, 3 is C and 0 is D.
Row Standard(const std::string& group, double x0 = 0) {
    return {{{{x0 + 200, 0, 0, 1, 0}, {x0 + 200, 100, 50, 1, 1}, {x0, 100, 50, 0, 1}, {x0, 0, 0, 0, 0}}}, group};
}

// A RAV export in the exporter's layout: keys of 8 and 7 characters where they count, an empty
// first polygon, then four vertices and one group to each row.
std::string Export(const std::vector<Row>& rows) {
    std::string t = "Version=1\r\nNumPoly=" + std::to_string(rows.size() + 1) + "\r\n";
    t += "[Polygon 0]\r\nName=\r\nNumVert=0\r\nNumGrps=0\r\n";
    for (std::size_t i = 0; i < rows.size(); ++i) {
        t += "[Polygon " + std::to_string(i + 1) + "]\r\nName=row\r\nNumVert=4\r\n";
        for (const Vertex& v : rows[i].v)
            t += "  " + DoubleText(v[0]) + "," + DoubleText(v[1]) + "," + DoubleText(v[2]) + "," + DoubleText(v[3]) +
                 "," + DoubleText(v[4]) + ",FFFFFF\r\n";
        t += "NumGrps=1\r\nGroup1=" + rows[i].group + "\r\nNumIdx=4\r\nIndices=0,1,2,3\r\n";
    }
    return t;
}

std::vector<std::string> LinesStartingWith(const std::string& script, const std::string& start) {
    std::vector<std::string> found;
    for (const std::string& line : TextLines(script))
        if (line.rfind(start, 0) == 0) found.push_back(line);
    return found;
}

std::string Script(const std::vector<Row>& rows, const std::string& texturePath = "/tex/") {
    const RhinoScript s = RhinoScriptText(Export(rows), texturePath);
    EXPECT_EQ(s.error, "");
    return s.text;
}

}  // namespace

// The scripts of no row and of one row, worked out by hand.
TEST(RhinoScript, CountOfOneGivesTheLayersAndShowOnly) { EXPECT_EQ(Script({}), TestData("rhino/no_rows.txt")); }

TEST(RhinoScript, WritesEachRowAsANamedTexturedHiddenFace) {
    Row first = Standard("rowa");
    first.v[3][0] = -123456;  // corner C
    EXPECT_EQ(Script({first}), TestData("rhino/one_row.txt"));
}

TEST(RhinoScript, DealsHomeAndAwayTexturesInTurnAndSkipsVerticalRows) {
    Row vertical = Standard("rowa");
    for (Vertex& v : vertical.v) v[0] = 5, v[2] = 7;
    const std::string script = Script({Standard("rowa"), Standard("rowb"), vertical, Standard("adba"), Standard("rowc"),
                                       Standard("rowd"), Standard("rowa"), Standard("rowa"), Standard("rowb")});
    EXPECT_EQ(LinesStartingWith(script, "name "),
              (std::vector<std::string>{"name object1", "name object2", "name object4", "name object5", "name object6",
                                        "name object7", "name object8", "name object9"}));
    EXPECT_EQ(LinesStartingWith(script, "/tex/"),
              (std::vector<std::string>{"/tex/rwh0.bmp", "/tex/rwa0.bmp", "/tex/adba.bmp", "/tex/rwh1.bmp",
                                        "/tex/rwh2.bmp", "/tex/rwh3.bmp", "/tex/rwh0.bmp", "/tex/rwa1.bmp"}));
    EXPECT_EQ(LinesStartingWith(script, "-changelayer").size(), 7u) << "every face but adba's changes layer";
    EXPECT_EQ(LinesStartingWith(script, "hide").size(), 8u) << "adba's face is hidden too";
    EXPECT_EQ(LinesStartingWith(script, "3DFace").size(), 8u);
}

TEST(RhinoScript, CornersWithoutAStrictWinnerKeepThePreviousRowsText) {
    Row flat = Standard("rowa", 1000);
    for (Vertex& v : flat.v) v[3] = v[4] = 0;
    EXPECT_EQ(LinesStartingWith(Script({flat}), "3DFace"), (std::vector<std::string>{"3DFace ,, ,, ,, ,,"}));
    EXPECT_EQ(LinesStartingWith(Script({Standard("rowa"), flat}), "3DFace"),
              (std::vector<std::string>(2, "3DFace 2,0.5,1 0,0.5,1 0,0,0 2,0,0")));
}

TEST(ThreeDecimalText, RoundsHalvesAwayFromZeroAndDropsTrailingZeros) {
    // 1.0005 is rounded as shown with 15 digits, not by its binary value.
    for (const auto& [x, text] :
         {std::pair{1.0005, "1.001"}, {-0.0625, "-0.063"}, {-0.0004, "0"}, {0.9996, "1"}, {1e18, "1E+18"}})
        EXPECT_EQ(ThreeDecimalText(x), text) << x;
}

TEST(RhinoScript, RefusesAShortFileAndEveryPrefixIsScriptedOrRefused) {
    const std::string good = Export({Standard("rowa"), Standard("rowb")});
    EXPECT_EQ(RhinoScriptText("", "/").error, "Invalid RAV file!\r\n\r\nThe file is empty.");
    std::string longCount = good;
    longCount.replace(longCount.find("NumPoly=3"), 9, "NumPoly=4");
    EXPECT_EQ(RhinoScriptText(longCount, "/").error,
              "Invalid RAV file!\r\n\r\nThe file ends after line 28, but its counts call for more lines.");
    for (std::size_t n = 0; n <= good.size(); ++n) {
        const RhinoScript s = RhinoScriptText(std::string_view(good).substr(0, n), "/");
        EXPECT_TRUE(s.error.empty() ? s.text.ends_with("show\r\n") : s.text.empty()) << n;
    }
}
