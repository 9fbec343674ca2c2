#pragma once
// The rules of the four preview windows that need no window: which one is active, and what a
// wheel turn, an arrow key or a drag does to a view. The windows feed these with their events
// and write the changed view back with WriteViewHeader and InstallView.
#include <array>
#include <cstdint>
#include <string>

#include "core/Twips.h"
#include "core/oif.h"

// The windows in the order of ViewerWindows and PreviewViews.
enum PreviewWindowIndex : int { ViewTop = 0, ViewRight = 1, ViewBack = 2, ViewPerspective = 3 };
inline constexpr int PreviewWindowCount = 4;
// The descriptions of the views, which are also the captions and file names of their windows.
inline constexpr std::array<const char*, PreviewWindowCount> PreviewWindowNames = {"Top", "Right", "Back",
                                                                                   "Perspective"};
// The index of a description; -1 for any other text.
int PreviewWindowOf(const std::string& description);

// Render flags of a viewer: with the 256 bit clear it draws textures, with it set it does not.
inline constexpr int RenderTextured = 1024;
inline constexpr int RenderUntextured = 1280;
bool RenderFlagsShowTextures(int flags);

// Mouse buttons and key codes as the handlers receive them.
inline constexpr std::int16_t MouseLeft = 1;
inline constexpr std::int16_t MouseRight = 2;
inline constexpr std::int16_t MouseMiddle = 4;
inline constexpr int KeyLeft = 37;
inline constexpr int KeyUp = 38;
inline constexpr int KeyRight = 39;
inline constexpr int KeyDown = 40;

// The first active window in the order Top, Right, Back, Perspective; -1 when none is. An input
// handler acts on this index, whichever window the event arose in.
int ActiveViewIndex(const std::array<bool, PreviewWindowCount>& active);

// A wheel turn of `turns` (+1 towards the "+" button) moves the camera nearer by `amount` each.
void ZoomView(PreviewViewpoint& view, int turns, double amount);

// Arrow keys move the camera by 1000 units; any other key leaves the view as it is.
void PanView(PreviewViewpoint& view, int keyCode);

// What a window keeps of the last mouse press over its viewer.
struct TurnStart {
    std::int16_t Button = 0;
    float X = 0, Y = 0;
    bool operator==(const TurnStart&) const = default;
};
// Every press stores its button; only a left press moves the stored position.
void PressTurn(TurnStart& start, std::int16_t button, float x, float y);
// A release turns the view only after a left press: 100 twips of mouse travel to one degree,
// vertical travel about X and horizontal travel about Y. The press and the release are in pixels
// of a screen with `twipsPerPixel`. Returns whether it turned. While the button is held, the same
// turn of a copy of the view is what the viewer shows.
bool ReleaseTurn(PreviewViewpoint& view, const TurnStart& start, float x, float y, double twipsPerPixel);

// What a reader of a view's head file takes from it: the camera of its Viewpoint and the angles of
// the three nested turns, each number as its text in the file reads back. A viewer that already
// shows the parts behind the head needs nothing else to show the file.
struct ViewPose {
    float X = 0, Y = 0, Z = 0;
    float AxisX = 0, AxisY = 0, AxisZ = 0;  // the orientation flags as 0 or 1
    float Angle = 0;
    float TurnZ = 0, TurnX = 0, TurnY = 0;  // outermost first; the model is turned about Y first
    bool operator==(const ViewPose&) const = default;
};
ViewPose HeadPose(const PreviewViewpoint& view);

// The colour an untextured part is drawn in, by its part number: muted tints around slate-blue
// that stand out from the grey background, neighbours different, so that parts are told apart.
struct Tint {
    float R = 0, G = 0, B = 0;
    bool operator==(const Tint&) const = default;
};
Tint PartTint(int partNumber);

// A rectangle in pixels.
struct PixelRect {
    int Left = 0, Top = 0, Width = 0, Height = 0;
    bool operator==(const PixelRect&) const = default;
};

// Where loadviews puts the four windows inside the main window, by PreviewWindowIndex. The strip
// at the left is kept free for the parts list.
std::array<PixelRect, PreviewWindowCount> PreviewWindowLayout();

// Inside a CortonaViewer of inner size W x H (pixels): the viewer below the title strip of height
// `stripHeight`, W - 100 twips wide, reaching down to H - 50 twips.
PixelRect CortonaViewerControlRect(int width, int height, int stripHeight);

// The viewer of the wireframe window "Stadium Preview": the window's size less 150 x 390 twips,
// never below zero.
PixelRect StadiumPreviewControlRect(int width, int height);

// The size of "Stadium Preview" as showvrml sets it for a screen of the given pixels: 6885 twips
// scaled by the screen against 1024 x 768. The window stands at the right edge of the main
// window, `frameWidth` pixels wide, but never left of it.
PixelRect StadiumPreviewPlacement(int screenWidth, int screenHeight, int frameWidth);
