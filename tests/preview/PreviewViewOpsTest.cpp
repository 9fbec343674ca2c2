#include <gtest/gtest.h>

#include <cmath>

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
    EXPECT_EQ(ActiveViewIndex({false, false, false, false}), -1);
    EXPECT_EQ(ActiveViewIndex({false, false, false, true}), ViewPerspective);
    EXPECT_EQ(ActiveViewIndex({false, false, true, false}), ViewBack);
    // Two showing the active colour at once: the lookup takes the earlier, not the later.
    EXPECT_EQ(ActiveViewIndex({false, true, false, true}), ViewRight);
    EXPECT_EQ(ActiveViewIndex({true, true, true, true}), ViewTop);
}

TEST(ActiveWindow, WindowsAreFoundByTheExactDescription) {
    EXPECT_EQ(PreviewWindowOf("Top"), ViewTop);
    EXPECT_EQ(PreviewWindowOf("Right"), ViewRight);
    EXPECT_EQ(PreviewWindowOf("Back"), ViewBack);
    EXPECT_EQ(PreviewWindowOf("Perspective"), ViewPerspective);
    for (const char* other : {"", "top", "Vertex", "Perspective ", "Front"})
        EXPECT_EQ(PreviewWindowOf(other), -1) << other;
}

TEST(RenderFlags, OnlyValuesWithoutThe256BitShowTextures) {
    EXPECT_TRUE(RenderFlagsShowTextures(RenderTextured));
    EXPECT_FALSE(RenderFlagsShowTextures(RenderUntextured));
    EXPECT_FALSE(RenderFlagsShowTextures(256));
    EXPECT_TRUE(RenderFlagsShowTextures(0));
}

TEST(Zoom, EachTurnMovesTheCameraNearerByTheAmount) {
    PreviewViewpoint v = View(0, 1500, 30000);
    ZoomView(v, 1, 1000);
    EXPECT_EQ(v.PositionZ, 29000);
    ZoomView(v, -3, 1000);
    EXPECT_EQ(v.PositionZ, 32000);
    ZoomView(v, 2, 250.5);
    EXPECT_EQ(v.PositionZ, 31499);
    PreviewViewpoint unchanged = View(0, 1500, 30000);
    unchanged.PositionZ = 31499;
    EXPECT_EQ(v, unchanged) << "nothing but PositionZ moves";
}

TEST(Zoom, AnAmountOfNothingLeavesTheView) {
    PreviewViewpoint v = View(5, 6, 7);
    ZoomView(v, 4, 0);
    EXPECT_EQ(v, View(5, 6, 7));
}

TEST(Zoom, TheResultIsKeptInSinglePrecision) {
    PreviewViewpoint v = View(0, 0, 30000);
    ZoomView(v, 1, 0.1);
    EXPECT_EQ(v.PositionZ, static_cast<float>(30000 - 0.1));
    EXPECT_NE(static_cast<double>(v.PositionZ), 30000 - 0.1);
    // The camera may pass through the model and out the other side.
    ZoomView(v, 10, 10000);
    EXPECT_FLOAT_EQ(v.PositionZ, -70000.1f);
}

TEST(Pan, ArrowKeysMoveTheCameraByAThousand) {
    PreviewViewpoint v = View(0, 1500, 20000);
    PanView(v, KeyLeft);
    EXPECT_EQ(v.PositionX, 1000);
    PanView(v, KeyUp);
    EXPECT_EQ(v.PositionY, 500);
    PanView(v, KeyRight);
    PanView(v, KeyRight);
    EXPECT_EQ(v.PositionX, -1000);
    PanView(v, KeyDown);
    PanView(v, KeyDown);
    EXPECT_EQ(v.PositionY, 2500);
    EXPECT_EQ(v.PositionZ, 20000);
}

TEST(Pan, OtherKeysChangeNothing) {
    for (int key : {0, 65, 36, 41, 13, 27, 33, 34}) {
        PreviewViewpoint v = View(1, 2, 3);
        PanView(v, key);
        EXPECT_EQ(v, View(1, 2, 3)) << key;
    }
}

TEST(Turn, ALeftDragTurnsByOneDegreePerHundredUnits) {
    PreviewViewpoint v = View(0, 0, 0);
    v.SceneRotationX = 0;
    v.SceneRotationY = 0;
    TurnStart start;
    PressTurn(start, MouseLeft, 1000, 2000);
    EXPECT_EQ(start, (TurnStart{MouseLeft, 1000, 2000}));
    ASSERT_TRUE(ReleaseTurn(v, start, 10000, 2000 + 4500));
    const double degree = std::atan(1.0) * 4 / 180;
    EXPECT_FLOAT_EQ(v.SceneRotationX, static_cast<float>(45 * degree)) << "vertical travel turns about X";
    EXPECT_FLOAT_EQ(v.SceneRotationY, static_cast<float>(90 * degree)) << "horizontal travel turns about Y";
    EXPECT_EQ(v.SceneRotationZ, 0);
}

TEST(Turn, TwoTurnsAddUpWithoutLimit) {
    PreviewViewpoint v = View(0, 0, 0);
    const float startX = v.SceneRotationX, startY = v.SceneRotationY;
    TurnStart start;
    PressTurn(start, MouseLeft, 0, 0);
    for (int i = 0; i < 2; ++i) ASSERT_TRUE(ReleaseTurn(v, start, -36000, 36000));
    const double turn = std::atan(1.0) * 4 * 2;  // 360 degrees, twice
    EXPECT_NEAR(v.SceneRotationX, startX + 2 * turn, 1e-5);
    EXPECT_NEAR(v.SceneRotationY, startY - 2 * turn, 1e-5);
    EXPECT_GT(v.SceneRotationX, 12.0f) << "no wrap into one turn";
}

TEST(Turn, ARightPressOverwritesTheButtonSoTheReleaseDoesNotTurn) {
    TurnStart start;
    PressTurn(start, MouseLeft, 10, 20);
    PressTurn(start, MouseRight, 500, 600);
    EXPECT_EQ(start.Button, MouseRight);
    EXPECT_EQ(start.X, 10) << "only a left press stores the position";
    EXPECT_EQ(start.Y, 20);
    PreviewViewpoint v = View(1, 2, 3);
    EXPECT_FALSE(ReleaseTurn(v, start, 9999, 9999));
    EXPECT_EQ(v, View(1, 2, 3));
    PressTurn(start, MouseMiddle, 0, 0);
    EXPECT_FALSE(ReleaseTurn(v, start, 9999, 9999));
    EXPECT_FALSE(ReleaseTurn(v, TurnStart{}, 9999, 9999)) << "no press at all";
    EXPECT_EQ(v, View(1, 2, 3));
}

TEST(Turn, AReleaseWithoutTravelLeavesTheAngles) {
    PreviewViewpoint v = View(0, 0, 0);
    TurnStart start;
    PressTurn(start, MouseLeft, 300, 400);
    ASSERT_TRUE(ReleaseTurn(v, start, 300, 400));
    EXPECT_EQ(v, View(0, 0, 0));
}

TEST(Layout, TwipsRoundToTheNearestPixelWithTiesToEven) {
    EXPECT_EQ(PixelsFromTwips(0), 0);
    EXPECT_EQ(PixelsFromTwips(15), 1);
    EXPECT_EQ(PixelsFromTwips(22.5), 2);
    EXPECT_EQ(PixelsFromTwips(37.5), 2);
    EXPECT_EQ(PixelsFromTwips(1850), 123);
    EXPECT_EQ(PixelsFromTwips(6715), 448);
    EXPECT_EQ(PixelsFromTwips(-100), -7);
}

TEST(Layout, FourWindowsInTwoRowsRightOfTheListStrip) {
    const auto layout = PreviewWindowLayout();
    EXPECT_EQ(layout[ViewTop], (PixelRect{123, 0, 448, 317}));
    EXPECT_EQ(layout[ViewPerspective], (PixelRect{571, 0, 448, 317})) << "8565 twips";
    EXPECT_EQ(layout[ViewBack], (PixelRect{123, 317, 448, 317}));
    EXPECT_EQ(layout[ViewRight], (PixelRect{571, 317, 448, 317}));
}

TEST(Layout, TheViewerFillsTheWindowBelowTheStripLessItsMargins) {
    // 600 x 400 pixels are 9000 x 6000 twips: 8900 wide, down to 5950.
    EXPECT_EQ(CortonaViewerControlRect(600, 400, 20), (PixelRect{0, 20, 593, 377}));
    EXPECT_EQ(CortonaViewerControlRect(3, 3, 20), (PixelRect{0, 20, 0, 0})) << "never negative";
}

TEST(Layout, StadiumPreviewViewerIsTheWindowLess150By390Twips) {
    EXPECT_EQ(StadiumPreviewControlRect(600, 400), (PixelRect{0, 0, 590, 374}));
    EXPECT_EQ(StadiumPreviewControlRect(5, 5), (PixelRect{0, 0, 0, 0}));
}

TEST(Layout, ShowvrmlScalesTheWindowWithTheScreen) {
    // 6885 twips are 459 pixels on a 1024 x 768 screen.
    EXPECT_EQ(StadiumPreviewPlacement(1024, 768, 1024), (PixelRect{565, 0, 459, 459}));
    EXPECT_EQ(StadiumPreviewPlacement(2048, 768, 1000), (PixelRect{82, 0, 918, 459}));
    EXPECT_EQ(StadiumPreviewPlacement(1280, 1024, 300).Left, 0) << "never left of the main window";
    EXPECT_EQ(StadiumPreviewPlacement(1280, 1024, 300).Width, 574);   // 8606.25 twips
    EXPECT_EQ(StadiumPreviewPlacement(1280, 1024, 300).Height, 612);  // 9180 twips
}
