#include <gtest/gtest.h>

#include "core/OIFOps.h"
#include "editors/OIFEditorOps.h"
#include "support/ScriptedDesktop.h"
#include "support/TestFiles.h"

namespace {
OIFVertex At(float x, float y, float z) {
    OIFVertex v;
    v.X = x;
    v.Y = y;
    v.Z = z;
    return v;
}
}  // namespace

TEST(OIFEditorBrightness, IsTheSecondByteRoundedHalfToEven) {
    // A tie goes to the even 2 from either side; the lighting wizard's grey of 200 (its low byte
    // above 128) shows one higher.
    for (const auto& [shadow, brightness] :
         {std::pair{0x180u, 2}, {0x280u, 2}, {0x17Fu, 1}, {0xFF000000u + 200u * 65793u, 201}, {0xFFFFFFFFu, 0}})
        EXPECT_EQ(VertexBrightness(shadow), brightness) << shadow;
    EXPECT_EQ(BrightnessPercentText(255), "100%");
    EXPECT_EQ(BrightnessPercentText(1), "0.39%");
}

TEST(OIFEditorRows, TellFloatsInSevenDigitsAndIndicesSigned) {
    const std::vector<OIFVertex> vertices = {At(0, 1234.5678f, -1.57f), At(30000, 0.74f, 1e7f)};
    EXPECT_EQ(VertexRowText(vertices[0]), "0, 1234.568, -1.57");
    EXPECT_EQ(IndexRowText(1, vertices), "1: 30000, 0.74, 1E+07");
    // Indices above 32767 read negative and name no vertex; nor does one past the end.
    EXPECT_EQ(IndexRowText(-1, vertices), "-1: ");
    EXPECT_EQ(IndexRowText(2, vertices), "2: ");
}

TEST(OIFEditorPredefinedUV, PointsComeFromTheFirstSlotOfTheNameButPicksNeedTheListSpelling) {
    const std::vector<TextureSlot> slots = {{"tp00", 0, {}},
                                            {"tp01", 2, {{"Left post", 0.25f, 0.5f}, {"Right post", 0.75f, 1}}},
                                            {"tp01", 1, {{"Later slot", 0, 0}}}};
    EXPECT_EQ(PredefinedUVNames(slots, " TP01 "), (std::vector<std::string>{"Left post", "Right post"}));
    EXPECT_TRUE(PredefinedUVNames(slots, "alga").empty());
    EXPECT_EQ(TextureListRow("hlgb"), 38);
    EXPECT_TRUE(TextureListRow("TP01") == -1 && TextureListRow("tp01 ") == -1);

    OIFVertex v = At(1, 2, 3);
    EXPECT_TRUE(ApplyPredefinedUV(v, slots, 1, 2));
    EXPECT_EQ(v.U, 0.75f);
    EXPECT_EQ(v.V, 1.0f);
    const OIFVertex before = v;
    EXPECT_FALSE(ApplyPredefinedUV(v, slots, 1, 0)) << "row 0 is the prompt";
    EXPECT_FALSE(ApplyPredefinedUV(v, slots, 1, 3));
    EXPECT_FALSE(ApplyPredefinedUV(v, slots, 36, 1)) << "alga has no slot";
    EXPECT_EQ(v, before);
}

TEST(OIFEditorExport, CarriesOnlyTheHeaderAndReplacesAFileOnlyOnYes) {
    ScratchFolder dir;
    ScriptedDesktop desktop;
    OIFFile doc = NewOIFFile();
    doc.Header.Version = 7;
    doc.Header.TrailerCount = 1;
    doc.Trailer = {1, 2, 3};
    OIFPart part;
    part.Header.Texture = "gras";
    doc = AddPart(part, AddPart(part, doc));
    const std::string path = dir.file("taken.oif");
    WriteFile(path, {'x'});
    desktop.dialogAnswers = {"  ", path, path};
    desktop.answers = {MessageAnswer::No, MessageAnswer::Yes};

    EXPECT_FALSE(ExportPart(doc, 1));
    EXPECT_TRUE(desktop.messages.empty()) << "a blank answer ends without a question";
    EXPECT_FALSE(ExportPart(doc, 1));
    EXPECT_EQ(ReadFile(path), std::vector<std::uint8_t>{'x'});
    ASSERT_EQ(desktop.messages.size(), 1u);
    EXPECT_EQ(desktop.messages[0].text, path + " already exists.   \r\nDo you want to replace it?   ");
    EXPECT_TRUE(desktop.messages[0].title == "Save As" && desktop.messages[0].icon == MessageIcon::Exclamation);

    EXPECT_TRUE(ExportPart(doc, 1));
    const OIFParse read = ParseOIF(ReadFile(path));
    ASSERT_EQ(read.doc.Parts.size(), 1u);
    EXPECT_EQ(read.doc.Header.Version, 7);
    EXPECT_TRUE(read.doc.Trailer.empty());
}
