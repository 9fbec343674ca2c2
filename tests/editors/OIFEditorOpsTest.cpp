#include <gtest/gtest.h>

#include "core/OIFOps.h"
#include "editors/OIFEditorOps.h"
#include "shell/StadiumCatalogue.h"
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

std::vector<TextureSlot> Slots() {
    std::vector<TextureSlot> slots;
    for (const char* name : ProjectTextureNames) slots.push_back(TextureSlot{name, 0, {}});
    slots[1].Parts = {{"Left post", 0.25f, 0.5f}, {"Right post", 0.75f, 1}};
    slots[1].PartCount = 2;
    return slots;
}

}  // namespace

TEST(OIFEditorTextureList, IsTheProjectSlotsThenFourWithoutSlot) {
    const auto& names = TextureListNames();
    for (std::size_t i = 0; i < ProjectTextureNames.size(); ++i) EXPECT_EQ(names[i], ProjectTextureNames[i]);
    EXPECT_EQ(names[35], "alga");
    EXPECT_EQ(names[38], "hlgb");
}

TEST(OIFEditorBrightness, IsTheSecondByteRoundedHalfToEven) {
    EXPECT_EQ(VertexBrightness(0x00FFFFFF), 0) << "65536 keeps no low byte";
    EXPECT_EQ(VertexBrightness(0x00008000), 128);
    EXPECT_EQ(VertexBrightness(0x00000180), 2) << "a tie goes to the even 2";
    EXPECT_EQ(VertexBrightness(0x00000280), 2) << "a tie stays on the even 2";
    EXPECT_EQ(VertexBrightness(0x0000017F), 1);
    // The lighting wizard's grey: a low byte above 128 shows one higher.
    EXPECT_EQ(VertexBrightness(0xFF000000u + 200u * 65793u), 201);
    EXPECT_EQ(VertexBrightness(0xFF000000u + 30u * 65793u), 30);
    EXPECT_EQ(VertexBrightness(0xFFFFFFFFu), 0);
}

TEST(OIFEditorBrightness, PercentIsRoundedToTwoDecimals) {
    EXPECT_EQ(BrightnessPercentText(255), "100%");
    EXPECT_EQ(BrightnessPercentText(128), "50.2%");
    EXPECT_EQ(BrightnessPercentText(1), "0.39%");
    EXPECT_EQ(BrightnessPercentText(0), "0%");
}

TEST(OIFEditorRows, VertexAndIndexRowsTellFloatsInSevenDigits) {
    const std::vector<OIFVertex> vertices = {At(0, 1234.5678f, -1.57f), At(30000, 0.74f, 1e7f)};
    EXPECT_EQ(VertexRowText(vertices[0]), "0, 1234.568, -1.57");
    EXPECT_EQ(IndexRowText(1, vertices), "1: 30000, 0.74, 1E+07");
    // Indices above 32767 read negative and name no vertex; nor does one past the end.
    EXPECT_EQ(IndexRowText(-1, vertices), "-1: ");
    EXPECT_EQ(IndexRowText(2, vertices), "2: ");
}

TEST(OIFEditorRows, TextureManagerCaptionTrimsThePartRow) {
    EXPECT_EQ(TextureManagerCaption("North stand                 ", "tp01"), "Texture Manager - [North stand] - tp01");
}

TEST(OIFEditorTyping, StoresTheLeadingNumberAsAFloat) {
    OIFVertex v = At(5, 5, 5);
    StoreVertexField(v, VertexField::X, "12.5abc");
    StoreVertexField(v, VertexField::Y, "abc");
    StoreVertexField(v, VertexField::Z, "-3e2");
    StoreVertexField(v, VertexField::U, "0.");
    StoreVertexField(v, VertexField::V, "0.1234567891");
    EXPECT_EQ(v.X, 12.5f);
    EXPECT_EQ(v.Y, 0.0f);
    EXPECT_EQ(v.Z, -300.0f);
    EXPECT_EQ(v.U, 0.0f);
    EXPECT_EQ(v.V, 0.1234567891f);
    EXPECT_EQ(VertexFieldValue(v, VertexField::V), v.V);
}

TEST(OIFEditorTyping, PartNameIsStoredTrimmedAndPadded) {
    OIFPartHeader h;
    EXPECT_EQ(StorePartName(h, "  Roof  "), "Roof");
    EXPECT_EQ(h.Name.str(), std::string("Roof").append(24, ' '));
    EXPECT_EQ(StorePartName(h, "A name much longer than twenty-eight"), "A name much longer than twenty-eight");
    EXPECT_EQ(h.Name.str(), "A name much longer than twen");
}

TEST(OIFEditorPredefinedUV, PointsComeFromTheFirstSlotOfTheTrimmedNameInAnyCase) {
    std::vector<TextureSlot> slots = Slots();
    slots.push_back(TextureSlot{"tp01", 1, {{"Later slot", 0, 0}}});
    EXPECT_EQ(PredefinedUVNames(slots, " TP01 "), (std::vector<std::string>{"Left post", "Right post"}));
    EXPECT_TRUE(PredefinedUVNames(slots, "tp02").empty());
    EXPECT_TRUE(PredefinedUVNames(slots, "alga").empty()) << "no slot has that name";
}

TEST(OIFEditorPredefinedUV, PickedPointIsFoundByTheExactListName) {
    EXPECT_EQ(TextureListRow("tp01"), 1);
    EXPECT_EQ(TextureListRow("hlgb"), 38);
    EXPECT_EQ(TextureListRow("TP01"), -1) << "the list row is matched with case";
    EXPECT_EQ(TextureListRow("tp01 "), -1);

    const std::vector<TextureSlot> slots = Slots();
    OIFVertex v = At(1, 2, 3);
    EXPECT_TRUE(ApplyPredefinedUV(v, slots, 1, 2));
    EXPECT_EQ(v.U, 0.75f);
    EXPECT_EQ(v.V, 1.0f);
    EXPECT_EQ(v.X, 1.0f);
    const OIFVertex before = v;
    EXPECT_FALSE(ApplyPredefinedUV(v, slots, 1, 0)) << "row 0 is the prompt";
    EXPECT_FALSE(ApplyPredefinedUV(v, slots, -1, 1));
    EXPECT_FALSE(ApplyPredefinedUV(v, slots, 1, 3));
    EXPECT_FALSE(ApplyPredefinedUV(v, slots, 36, 1)) << "alga has no slot";
    EXPECT_EQ(v, before);
}

namespace {
class ExportingAPart : public ::testing::Test {
protected:
    ExportingAPart() {
        doc = NewOIFFile();
        doc.Header.Version = 7;
        doc.Header.TrailerCount = 1;
        doc.Trailer = {1, 2, 3};
        for (const char* texture : {"tp00", "gras", "rwa1"}) {
            OIFPart p;
            p.Header.Name = std::string("Part ") + texture;
            p.Header.Texture = texture;
            p.Vertices = {At(1, 2, 3), At(4, 5, 6), At(7, 8, 9)};
            p.Indices = {0, 1, 2};
            p.Header.VertexCount = 3;
            p.Header.IndexCount = 3;
            doc = AddPart(p, doc);
        }
    }
    OIFFile doc;
    ScratchFolder dir;
    ScriptedDesktop desktop;
};
}  // namespace

TEST_F(ExportingAPart, WritesOnePartWithItsTextureAndTheDocumentKeepsItsNames) {
    const OIFFile before = doc;
    const std::string path = dir.file("gras.oif");
    desktop.dialogAnswers = {path};
    EXPECT_TRUE(ExportPart(doc, 1));
    EXPECT_EQ(desktop.dialogTitles, std::vector<std::string>{"Export OIF part..."});
    EXPECT_TRUE(desktop.messages.empty());
    EXPECT_EQ(doc, before);

    const OIFParse read = ParseOIF(ReadFile(path));
    ASSERT_EQ(read.error, "");
    ASSERT_EQ(read.doc.Parts.size(), 1u);
    EXPECT_EQ(read.doc.Parts[0], before.Parts[1]);
    EXPECT_EQ(read.doc.Header.Version, 7);
    EXPECT_TRUE(read.doc.Trailer.empty()) << "only the header is carried";
}

TEST_F(ExportingAPart, AnExistingFileIsReplacedOnlyOnYes) {
    const std::string path = dir.file("taken.oif");
    WriteFile(path, {'x'});
    desktop.dialogAnswers = {path, path};
    desktop.answers = {MessageAnswer::No, MessageAnswer::Yes};
    EXPECT_FALSE(ExportPart(doc, 0));
    EXPECT_EQ(ReadFile(path), std::vector<std::uint8_t>{'x'});
    ASSERT_EQ(desktop.messages.size(), 1u);
    EXPECT_EQ(desktop.messages[0].text, path + " already exists.   \r\nDo you want to replace it?   ");
    EXPECT_EQ(desktop.messages[0].title, "Save As");
    EXPECT_EQ(desktop.messages[0].icon, MessageIcon::Exclamation);

    EXPECT_TRUE(ExportPart(doc, 0));
    EXPECT_EQ(ParseOIF(ReadFile(path)).doc.Parts.size(), 1u);
}

TEST_F(ExportingAPart, ABlankAnswerEndsWithoutAQuestion) {
    desktop.dialogAnswers = {"   "};
    EXPECT_FALSE(ExportPart(doc, 0));
    EXPECT_TRUE(desktop.messages.empty());
}
