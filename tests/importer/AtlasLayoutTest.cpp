// The sheet's rules without the window: sizes on load and reset, the bounds check with its
// messages, the drag with both snaps, the handles and the arrow keys, and layout files.
#include <gtest/gtest.h>

#include "importer/AtlasLayout.h"
#include "importer/LayoutFile.h"
#include "support/ScriptedDesktop.h"

namespace {

TextureBox Box(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height, bool visible = true) {
    return {left, top, width, height, visible};
}

std::vector<ImportTexture> Named(std::initializer_list<const char*> names) {
    std::vector<ImportTexture> out;
    for (const char* n : names) {
        out.emplace_back();
        out.back().Name = n;
    }
    return out;
}

// The outer size of the designed window in twips, with a frame round the client area.
constexpr std::int32_t WideTwips = 688 * TwipsPerPixel, HighTwips = 577 * TwipsPerPixel;

TEST(ImporterSizes, LoadCentresAtPixelSizeAndResetIsFifteenTimesThat) {
    EXPECT_EQ(NaturalBox({128, 64}, 512, 512), Box(192, 224, 128, 64, false));
    EXPECT_EQ(NaturalBox({255, 1}, 512, 512), Box(128, 256, 255, 1, false)) << "128.5 and 255.5 round to even";
    EXPECT_EQ(ResetSize(256), 3840);
    EXPECT_EQ(ResetSize(128), 1920);
    EXPECT_EQ(ResetSize(1), 15);
    TextureBox box = Box(5, 5, 256, 256, true);
    ResetBox(box, {256, 64}, 512, 512);
    EXPECT_EQ(box, Box(-1664, -224, 3840, 960, true));
    EXPECT_EQ(CheckBoundsOf({box}, Named({"big.bmp"}), WideTwips, HighTwips).message,
              "Texture 'big.bmp' is out of image boundaries.");
    EXPECT_EQ(ChequerCell(512), 10);
    EXPECT_EQ(SheetWidthFor(1), 256);
    EXPECT_EQ(WindowWidthForSheet(672, 156, 512, 256), 416);
    EXPECT_EQ(WindowWidthForSheet(416, 156, 256, 512), 672);
}

TEST(ImporterBounds, TellsTheFirstFaultOfItsThreeStages) {
    ScriptedDesktop desktop;
    const auto names = Named({"a.bmp", "b.bmp", "c.bmp"});
    const std::string fine = "All bounds are fine.";
    const std::pair<std::vector<TextureBox>, std::string> cases[] = {
        // Unmapped hides the overlap that follows.
        {{Box(0, 0, 10, 10), Box(0, 0, 10, 10), Box(50, 0, 10, 10, false)}, "Not all textures mapped!"},
        {{Box(0, 0, 10, 10), Box(-1, 20, 10, 10), Box(0, 0, 10, 10)}, "Texture 'b.bmp' is out of image boundaries."},
        {{Box(0, -1, 10, 10)}, "Texture 'a.bmp' is out of image boundaries."},
        // Over the sheet's right and bottom edges passes; only thousands of pixels out fail.
        {{Box(480, 500, 100, 100)}, fine},
        {{Box(0, 0, WideTwips + 1, 10)}, "Texture 'a.bmp' is out of image boundaries."},
        {{Box(0, 0, 10, HighTwips + 1)}, "Texture 'a.bmp' is out of image boundaries."},
        // A shared edge at x = 100 passes; 99 against 100 overlaps.
        {{Box(0, 0, 100, 50), Box(100, 0, 50, 50), Box(0, 50, 100, 10)}, fine},
        {{Box(0, 0, 100, 50), Box(200, 0, 50, 50), Box(99, 40, 10, 10)},
         "Textures 'a.bmp' and 'c.bmp' are overlapping."},
    };
    for (const auto& [boxes, message] : cases) {
        const BoundsReport r = CheckBoundsOf(boxes, names, WideTwips, HighTwips);
        EXPECT_EQ(r.message, message);
        EXPECT_EQ(r.ok, message == fine) << message;
    }
    EXPECT_TRUE(CheckBoundsOf({Box(3, 3, 10, 10)}, Named({"x"}), WideTwips, HighTwips).ok);

    EXPECT_FALSE(CheckBounds({Box(0, 0, 1, 1, false)}, names, WideTwips, HighTwips, false));
    EXPECT_TRUE(desktop.messages.empty());
    EXPECT_TRUE(CheckBounds({Box(0, 0, 1, 1)}, names, WideTwips, HighTwips, true));
    ASSERT_EQ(desktop.messages.size(), 1u);
    EXPECT_EQ(desktop.messages[0].title, "Check Bounds");
    EXPECT_EQ(desktop.messages[0].icon, MessageIcon::Information);
}

// Sheet edges snap by the texture's size; other mapped textures snap in list order, the last hit
// standing, and a texture snap undoes the edge snap.
TEST(ImporterDrag, SnapsToTheSheetsFarEdgesAndToOtherMappedTextures) {
    const std::vector<TextureBox> one = {Box(100, 100, 128, 64)};
    // The other texture's right edge is at 100; the moving one faces it at the same height.
    const std::vector<TextureBox> pair = {Box(0, 200, 100, 50), Box(300, 200, 40, 40)};
    const std::vector<TextureBox> unmapped = {Box(0, 200, 100, 50, false), Box(300, 200, 40, 40)};
    // The edge snap puts the left at 0, texture 0 (right edge at 1) at 1, texture 2 at 2.
    const std::vector<TextureBox> three = {Box(-101, 0, 102, 100), Box(300, 0, 40, 40), Box(-98, 0, 100, 100)};
    const std::vector<TextureBox> two = {three[0], three[1], Box(-98, 0, 100, 100, false)};
    constexpr int Any = -9999;  // a top not looked at
    const struct {
        const std::vector<TextureBox>& boxes;
        std::size_t moving;
        double dx, dy;
        SnapRules snap;
        std::int32_t sheet;
        BoxPlace place;
    } cases[] = {
        {one, 0, 283, 351, {true, false}, 512, {384, 448}},  // 383 + 128 is 1 short of 512
        {one, 0, 283, 351, {true, false}, 256, {383, 448}},
        {one, 0, -107.4, -260, {false, false}, 512, {-7, -160}},
        {pair, 1, -204, 0, {false, true}, 512, {96, Any}},
        {pair, 1, -203, 0, {false, true}, 512, {100, Any}},
        {pair, 1, -197, 0, {false, true}, 512, {100, Any}},
        {pair, 1, -196, 0, {false, true}, 512, {104, Any}},
        {pair, 1, -199, -44, {false, true}, 512, {101, Any}},  // above by more than the strips reach
        {pair, 1, -199, -43, {false, true}, 512, {100, Any}},
        {pair, 1, -290, 52, {false, true}, 512, {10, 250}},  // a top 2 under the other's bottom
        {pair, 1, -290, -38, {false, true}, 512, {10, 160}},
        {unmapped, 1, -199, 0, {false, true}, 512, {101, Any}},
        {three, 1, -298, 0, {true, false}, 512, {0, Any}},
        {three, 1, -298, 0, {true, true}, 512, {2, Any}},
        {two, 1, -298, 0, {true, true}, 512, {1, Any}},
    };
    for (const auto& c : cases) {
        const BoxPlace p = DragPlace(c.boxes, c.moving, c.dx, c.dy, 0, 0, c.sheet, SheetHeight, c.snap);
        EXPECT_EQ(p.Left, c.place.Left) << c.dx << ", " << c.dy;
        EXPECT_EQ(p.Top, c.place.Top == Any ? p.Top : c.place.Top) << c.dx << ", " << c.dy;
    }
}

TEST(ImporterHandles, SitOutsideTheBoxAndResizeWithoutGoingBelowZero) {
    const auto places = HandlePlaces(Box(100, 50, 41, 20), 6);
    const std::array<HandlePlace, 8> expected{
        {{94, 44}, {118, 44}, {141, 44}, {94, 57}, {141, 57}, {94, 70}, {118, 70}, {141, 70}}};
    EXPECT_EQ(places, expected) << "(41 - 6) / 2 is 17.5 and rounds to 18";

    TextureBox box = Box(100, 50, 40, 20);
    ResizeByHandle(box, 1, 5, -5);
    EXPECT_EQ(box, Box(105, 45, 35, 25));
    ResizeByHandle(box, 8, -10, 10);
    EXPECT_EQ(box, Box(105, 45, 25, 35));
    ResizeByHandle(box, 2, 50, 50);
    EXPECT_EQ(box, Box(105, 95, 25, 35)) << "the top moves on, the refused height stays";
    ResizeByHandle(box, 4, 30, 0);
    EXPECT_EQ(box, Box(135, 95, 25, 35));
    ResizeByHandle(box, 5, 7, 99);
    ResizeByHandle(box, 7, 99, -5);
    EXPECT_EQ(box, Box(135, 95, 32, 30));
    ResizeByHandle(box, 3, -40, 0);
    ResizeByHandle(box, 6, 0, -31);
    ArrowKeyStep(box, ArrowKey::Up, true, false);
    ArrowKeyStep(box, ArrowKey::Left, true, true);
    EXPECT_EQ(box, Box(135, 95, 27, 29)) << "keys size at the right and bottom only";
    box.Height = 3;
    ArrowKeyStep(box, ArrowKey::Up, true, true);
    EXPECT_EQ(box.Height, 3) << "a height below zero is refused";
}

TEST(ImporterLayoutFile, PlacesNamedTexturesAndRefusesWhatItCannotPlace) {
    const LayoutFile layout = ParseLayoutFile(
        R"({"wall.bmp": {"left": 0, "top": 2.5, "width": 128, "height": 64},
            "Tribüne.bmp": {"left": -4, "top": 0, "width": 0, "height": 1, "mapped": false}})");
    ASSERT_EQ(layout.error, "");
    auto textures = Named({"pitch.bmp", "wall.bmp", "Trib\xFCne.bmp"});
    std::vector<TextureBox> boxes(3, Box(9, 9, 9, 9, false));
    EXPECT_EQ(ApplyLayout(layout, textures, boxes), "");
    EXPECT_EQ(boxes, (std::vector<TextureBox>{Box(9, 9, 9, 9, false), Box(0, 2, 128, 64), Box(-4, 0, 0, 1, false)}));

    textures.pop_back();
    EXPECT_EQ(ApplyLayout(layout, textures, boxes),
              "The layout places \"Tribüne.bmp\", which is not a texture of the model.");
    const std::pair<const char*, const char*> refused[] = {
        {"[1]", "The layout is not a JSON object of texture names."},
        {R"({"a": {"left": 0, "top": 0, "width": 1}})", "The layout gives no \"height\" of \"a\"."},
        {R"({"a": {"left": "0", "top": 0, "width": 1, "height": 1}})",
         "The layout's \"left\" of \"a\" is not a number."},
        {R"({"a": {"left": 0, "top": 0, "width": -1, "height": 1}})", "The layout's \"width\" of \"a\" is below zero."},
        {R"({"a": {"left": 1e7, "top": 0, "width": 1, "height": 1}})",
         "The layout's \"left\" of \"a\" is out of range."},
        {R"({"a": {"left": 0, "top": 0, "width": 1, "height": 1, "wdth": 1}})",
         "The layout's entry \"a\" has an unknown key \"wdth\"."},
    };
    for (const auto& [text, message] : refused) {
        const LayoutFile bad = ParseLayoutFile(text);
        EXPECT_EQ(bad.error, message) << text;
        EXPECT_TRUE(bad.entries.empty());
    }
}

}  // namespace
