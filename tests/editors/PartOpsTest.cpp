#include <gtest/gtest.h>

#include "editors/PartOps.h"

namespace {

OIFFile Named(std::initializer_list<const char*> names) {
    OIFFile d = NewOIFFile();
    for (const char* name : names) {
        OIFPart p;
        p.Header.Name = name;
        p.Vertices.resize(3);
        p.Header.VertexCount = 3;
        d = AddPart(p, d);
    }
    return d;
}

std::vector<std::string> Names(const OIFFile& d) {
    std::vector<std::string> out;
    for (const OIFPart& p : d.Parts) out.push_back(p.Header.Name.str().substr(0, p.Header.Name.str().find(' ')));
    return out;
}

}  // namespace

TEST(RemoveParts, KeepsTheUnselectedPartsInTheirOrderAndCountsThem) {
    const OIFFile doc = Named({"Stand", "Roof", "Pitch", "Crowd", "Sky"});
    const OIFFile left = RemoveParts(doc, {false, true, false, true, false});
    EXPECT_EQ(Names(left), (std::vector<std::string>{"Stand", "Pitch", "Sky"}));
    EXPECT_EQ(left.Header.PartCount, 3);
    EXPECT_EQ(left.Parts[1], doc.Parts[2]) << "a kept part is copied whole";
    EXPECT_EQ(left.Label, doc.Label);
    EXPECT_EQ(left.Header.Magic, doc.Header.Magic);
}

TEST(RemoveParts, AllSelectedLeavesADocumentWithoutParts) {
    const OIFFile left = RemoveParts(Named({"A", "B"}), {true, true});
    EXPECT_TRUE(left.Parts.empty());
    EXPECT_EQ(left.Header.PartCount, 0);
}

TEST(RemoveParts, PartsWithoutARowAreKept) {
    // A list that was not refreshed after a merge or import has fewer rows than parts.
    const OIFFile left = RemoveParts(Named({"A", "B", "C"}), {true});
    EXPECT_EQ(Names(left), (std::vector<std::string>{"B", "C"}));
    EXPECT_EQ(left.Header.PartCount, 2);
}

TEST(RemoveParts, RowsBeyondThePartsChangeNothing) {
    const OIFFile left = RemoveParts(Named({"A"}), {false, true, true});
    EXPECT_EQ(Names(left), (std::vector<std::string>{"A"}));
    EXPECT_EQ(left.Header.PartCount, 1);
}

TEST(CountSelected, CountsTheSetFlags) {
    EXPECT_EQ(CountSelected({}), 0);
    EXPECT_EQ(CountSelected({false, false}), 0);
    EXPECT_EQ(CountSelected({true, false, true, true}), 3);
}
