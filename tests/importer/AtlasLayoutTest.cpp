// The sheet's rules without the window: sizes on load and reset, the bounds check with its
// messages, the drag with both snaps, the handles and the arrow keys, and layout files.
#include <gtest/gtest.h>

#include <random>
#include <tuple>

#include "core/TestData.h"
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
    for (const auto& [pixels, twips] : {std::pair{256, 3840}, {128, 1920}, {1, 15}})
        EXPECT_EQ(ResetSize(pixels), twips);
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
        {{Box(0, 0, WideTwips, HighTwips)}, fine},
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
    EXPECT_TRUE(desktop.messages[0].title == "Check Bounds" && desktop.messages[0].icon == MessageIcon::Information);
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
    // 383 + 128 is 1 short of 512. At 44 above the strips no longer reach; at 52 below the top is 2
    // under the other's bottom.
    const struct {
        const std::vector<TextureBox>& boxes;
        std::size_t moving;
        double dx, dy;
        SnapRules snap;
        std::int32_t sheet;
        BoxPlace place;
    } cases[] = {
        {one, 0, 283, 351, {true, false}, 512, {384, 448}},      {one, 0, 283, 351, {true, false}, 256, {383, 448}},
        {one, 0, -107.4, -260, {false, false}, 512, {-7, -160}}, {pair, 1, -204, 0, {false, true}, 512, {96, Any}},
        {pair, 1, -203, 0, {false, true}, 512, {100, Any}},      {pair, 1, -197, 0, {false, true}, 512, {100, Any}},
        {pair, 1, -196, 0, {false, true}, 512, {104, Any}},      {pair, 1, -199, -44, {false, true}, 512, {101, Any}},
        {pair, 1, -199, -43, {false, true}, 512, {100, Any}},    {pair, 1, -290, 52, {false, true}, 512, {10, 250}},
        {pair, 1, -290, -38, {false, true}, 512, {10, 160}},     {unmapped, 1, -199, 0, {false, true}, 512, {101, Any}},
        {three, 1, -298, 0, {true, false}, 512, {0, Any}},       {three, 1, -298, 0, {true, true}, 512, {2, Any}},
        {two, 1, -298, 0, {true, true}, 512, {1, Any}}};
    for (const auto& c : cases) {
        const BoxPlace p = DragPlace(c.boxes, c.moving, c.dx, c.dy, 0, 0, c.sheet, SheetHeight, c.snap);
        EXPECT_EQ(p.Left, c.place.Left) << c.dx << ", " << c.dy;
        EXPECT_EQ(p.Top, c.place.Top == Any ? p.Top : c.place.Top) << c.dx << ", " << c.dy;
    }
}

// A handle carries the sides it sits on by the drag, whichever handle it is; a size that would go
// below zero stays as it was while the side still moves.
TEST(ImporterHandles, MoveTheSidesTheySitOnAndKeysSizeOnlyAtTheRightAndBottom) {
    EXPECT_EQ(HandlePlaces(Box(100, 50, 41, 20), 6),
              (std::array<HandlePlace, 8>{
                  {{94, 44}, {118, 44}, {141, 44}, {94, 57}, {141, 57}, {94, 70}, {118, 70}, {141, 70}}}))
        << "(41 - 6) / 2 is 17.5 and rounds to 18";
    std::mt19937 random(8);
    std::uniform_int_distribution<int> pick(0, 120), travel(-150, 150);
    for (int round = 0; round < 800; ++round) {
        const int element = 1 + round % 8;
        // Seven wide and high at least, so that the middle handles stand between the corners.
        TextureBox box = Box(pick(random), pick(random), 7 + pick(random), 7 + pick(random)), want = box;
        const HandlePlace at = HandlePlaces(box, 6)[static_cast<std::size_t>(element - 1)];
        const int dx = travel(random), dy = travel(random);
        if (at.Left < box.Left) want.Left += dx, want.Width -= box.Width - dx >= 0 ? dx : 0;
        if (at.Left == box.Left + box.Width && box.Width + dx >= 0) want.Width += dx;
        if (at.Top < box.Top) want.Top += dy, want.Height -= box.Height - dy >= 0 ? dy : 0;
        if (at.Top == box.Top + box.Height && box.Height + dy >= 0) want.Height += dy;
        ResizeByHandle(box, element, dx, dy);
        ASSERT_EQ(box, want) << "handle " << element << " by " << dx << ", " << dy;
    }
    const std::tuple<ArrowKey, bool, bool, TextureBox> keys[] = {
        {ArrowKey::Left, false, false, Box(99, 50, 40, 3)}, {ArrowKey::Right, false, true, Box(105, 50, 40, 3)},
        {ArrowKey::Up, false, true, Box(100, 45, 40, 3)},   {ArrowKey::Down, false, false, Box(100, 51, 40, 3)},
        {ArrowKey::Left, true, true, Box(100, 50, 35, 3)},  {ArrowKey::Right, true, false, Box(100, 50, 41, 3)},
        {ArrowKey::Up, true, true, Box(100, 50, 40, 3)},    {ArrowKey::Down, true, true, Box(100, 50, 40, 8)}};
    for (const auto& [key, shift, ctrl, want] : keys) {
        TextureBox box = Box(100, 50, 40, 3);
        ArrowKeyStep(box, key, shift, ctrl);
        EXPECT_EQ(box, want) << static_cast<int>(key) << shift << ctrl;
    }
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
    const auto refused = TestTable("layout/refusals.txt");
    ASSERT_EQ(refused.size(), 6u);
    for (const auto& row : refused) {
        const LayoutFile bad = ParseLayoutFile(row[0]);
        EXPECT_EQ(bad.error, row[1]) << row[0];
        EXPECT_TRUE(bad.entries.empty());
    }
}

}  // namespace
