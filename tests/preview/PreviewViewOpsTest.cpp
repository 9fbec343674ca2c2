#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <tuple>

#include "preview/PreviewViewOps.h"

namespace {
PreviewViewpoint View(float x, float y, float z) {
    PreviewViewpoint v;
    v.PositionX = x;
    v.PositionY = y;
    v.PositionZ = z;
    v.Description = "Perspective";
    v.SceneRotationX = 0.74f;
    v.SceneRotationY = -0.74f;
    return v;
}
}  // namespace

TEST(ActiveWindow, TheFirstActiveInTheOrderTopRightBackPerspectiveWins) {
    const std::pair<std::array<bool, 4>, int> cases[] = {
        {{false, false, false, false}, -1},      {{false, false, false, true}, ViewPerspective},
        {{false, false, true, false}, ViewBack}, {{false, true, false, true}, ViewRight},  // the earlier wins
        {{true, true, true, true}, ViewTop},
    };
    for (const auto& [active, view] : cases) EXPECT_EQ(ActiveViewIndex(active), view) << view;
    const std::pair<const char*, int> names[] = {
        {"Top", ViewTop}, {"Right", ViewRight}, {"Back", ViewBack}, {"Perspective", ViewPerspective},
        {"", -1},         {"top", -1},          {"Vertex", -1},     {"Perspective ", -1},
        {"Front", -1}};
    for (const auto& [name, view] : names) EXPECT_EQ(PreviewWindowOf(name), view) << '"' << name << '"';
}

TEST(RenderFlags, OnlyValuesWithoutThe256BitShowTextures) {
    for (const auto& [flags, textured] :
         {std::pair{RenderTextured, true}, {RenderUntextured, false}, {256, false}, {0, true}})
        EXPECT_EQ(RenderFlagsShowTextures(flags), textured) << flags;
}

// From 30000: the camera may pass through the model and out the other side.
TEST(Zoom, EachTurnMovesTheCameraNearerByTheAmountInSinglePrecision) {
    const std::tuple<int, double, float> cases[] = {{1, 1000, 29000}, {-3, 1000, 33000},  {2, 250.5, 29499},
                                                    {4, 0, 30000},    {1, 0.1, 29999.9f}, {10, 10000, -70000}};
    for (const auto& [turns, amount, z] : cases) {
        PreviewViewpoint v = View(5, 1500, 30000);
        ZoomView(v, turns, amount);
        EXPECT_EQ(v.PositionZ, z) << turns << " of " << amount;
        v.PositionZ = 30000;
        EXPECT_EQ(v, View(5, 1500, 30000)) << "nothing but PositionZ moves";
    }
}

TEST(Pan, ArrowKeysMoveTheCameraByAThousandAndOtherKeysNothing) {
    const std::tuple<int, float, float> cases[] = {
        {KeyLeft, 1000, 0}, {KeyRight, -1000, 0}, {KeyUp, 0, -1000}, {KeyDown, 0, 1000}, {0, 0, 0},  {65, 0, 0},
        {36, 0, 0},         {41, 0, 0},           {13, 0, 0},        {27, 0, 0},         {33, 0, 0}, {34, 0, 0}};
    for (const auto& [key, dx, dy] : cases) {
        PreviewViewpoint v = View(1, 2, 3);
        PanView(v, key);
        EXPECT_EQ(v, View(1 + dx, 2 + dy, 3)) << key;
    }
}

TEST(Turn, ALeftDragTurnsOneDegreePerHundredTwipsOfTravel) {
    // Pixels across and down, dots per inch, degrees about X and about Y. 96 dots per inch are 15
    // twips to the pixel, 120 are 12; a screen that gives no resolution counts as 96.
    const std::tuple<float, float, double, double, double> cases[] = {
        {150, 0, 96, 0, 22.5}, {0, 100, 96, 15, 0}, {-40, -20, 96, -3, -6}, {100, 0, 120, 0, 12},
        {100, 50, 144, 5, 10}, {100, 0, 0, 0, 15},  {0, 0, 96, 0, 0},       {4800, -7200, 96, -1080, 720}};
    const double degree = std::atan(1.0) * 4 / 180;
    for (const auto& [dx, dy, dotsPerInch, aboutX, aboutY] : cases) {
        PreviewViewpoint v = View(0, 0, 0);
        TurnStart start;
        PressTurn(start, MouseLeft, 300, 400);
        ASSERT_TRUE(ReleaseTurn(v, start, 300 + dx, 400 + dy, TwipsPerPixelAt(dotsPerInch)));
        EXPECT_NEAR(v.SceneRotationX, 0.74f + aboutX * degree, 1e-5) << dx << " " << dy;
        EXPECT_NEAR(v.SceneRotationY, -0.74f + aboutY * degree, 1e-5) << dx << " at " << dotsPerInch;
        v.SceneRotationX = 0.74f;
        v.SceneRotationY = -0.74f;
        EXPECT_EQ(v, View(0, 0, 0)) << "nothing else turns";
    }
}

TEST(Turn, ARightPressOverwritesTheButtonSoTheReleaseDoesNotTurn) {
    TurnStart start;
    PressTurn(start, MouseLeft, 10, 20);
    PressTurn(start, MouseRight, 500, 600);
    EXPECT_EQ(start.Button, MouseRight);
    EXPECT_EQ(start.X, 10) << "only a left press stores the position";
    EXPECT_EQ(start.Y, 20);
    PreviewViewpoint v = View(1, 2, 3);
    EXPECT_FALSE(ReleaseTurn(v, start, 9999, 9999, 15));
    EXPECT_EQ(v, View(1, 2, 3));
    PressTurn(start, MouseMiddle, 0, 0);
    EXPECT_FALSE(ReleaseTurn(v, start, 9999, 9999, 15));
    EXPECT_FALSE(ReleaseTurn(v, TurnStart{}, 9999, 9999, 15)) << "no press at all";
    EXPECT_EQ(v, View(1, 2, 3));
}

TEST(HeadPose, IsWhatAReaderTakesFromTheHeadText) {
    PreviewViewpoint turned = View(1234.5678f, -0.000123456789f, 1e8f);
    turned.AxisY = -1;
    turned.Angle = 3.14159265f;
    turned.SceneRotationY = static_cast<float>(-0.74f + 22.5 * std::atan(1.0) * 4 / 180);
    turned.SceneRotationZ = 1e-9f;
    EXPECT_EQ(HeadPose(View(0, 1500, 30000)), (ViewPose{0, 1500, 30000, 0, 0, 0, 0, 0, 0.74f, -0.74f}));
    // Seven digits each: 1234.568, -0.0001234568, 1E+08, 3.141593, -0.3473009, 1E-09.
    EXPECT_EQ(HeadPose(turned),
              (ViewPose{1234.568f, -0.0001234568f, 1e8f, 0, 1, 0, 3.141593f, 1e-9f, 0.74f, -0.3473009f}));
}

TEST(PartTint, NeighbouringPartsDifferAndEveryTintStandsOutFromTheGrey) {
    for (int n = -3; n < 40; ++n) {
        const Tint t = PartTint(n), next = PartTint(n + 1);
        EXPECT_GT(std::fabs(t.R - next.R) + std::fabs(t.G - next.G) + std::fabs(t.B - next.B), 0.15f) << n;
        // Lit fully it stays darker than the background of 0.75.
        EXPECT_LT(std::max({t.R, t.G, t.B}) * 1.3f, 0.9f) << n;
    }
}

TEST(Layout, TwipsRoundToTheNearestPixelWithTiesToEven) {
    for (const auto& [twips, pixels] :
         {std::pair{0.0, 0}, {15.0, 1}, {22.5, 2}, {37.5, 2}, {1850.0, 123}, {6715.0, 448}, {-100.0, -7}})
        EXPECT_EQ(PixelsFromTwips(twips), pixels) << twips;
}

// 600 x 400 pixels are 9000 x 6000 twips; 6885 twips are 459 pixels on a 1024 x 768 screen.
TEST(Layout, WindowsAndViewersFromTheirTwipSizes) {
    const auto layout = PreviewWindowLayout();
    const std::pair<PixelRect, PixelRect> cases[] = {
        {layout[ViewTop], {123, 0, 448, 317}},
        {layout[ViewPerspective], {571, 0, 448, 317}},  // 8565 twips
        {layout[ViewBack], {123, 317, 448, 317}},
        {layout[ViewRight], {571, 317, 448, 317}},
        {CortonaViewerControlRect(600, 400, 20), {0, 20, 593, 377}},  // 8900 wide, down to 5950
        {CortonaViewerControlRect(3, 3, 20), {0, 20, 0, 0}},          // never negative
        {StadiumPreviewControlRect(600, 400), {0, 0, 590, 374}},      // less 150 by 390 twips
        {StadiumPreviewControlRect(5, 5), {0, 0, 0, 0}},
        {StadiumPreviewPlacement(1024, 768, 1024), {565, 0, 459, 459}},
        {StadiumPreviewPlacement(2048, 768, 1000), {82, 0, 918, 459}},
        {StadiumPreviewPlacement(1280, 1024, 300), {0, 0, 574, 612}},  // never left of the main window
    };
    for (const auto& [got, want] : cases) EXPECT_EQ(got, want) << want.Left << " " << want.Top << " " << want.Width;
}
