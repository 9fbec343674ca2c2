#include "preview/PreviewViewOps.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string>

#include "core/NumberText.h"
#include "core/myOps.h"

bool RenderFlagsShowTextures(int flags) { return (flags & 256) == 0; }

int PreviewWindowOf(const std::string& description) {
    for (int i = 0; i < PreviewWindowCount; ++i)
        if (description == PreviewWindowNames[i]) return i;
    return -1;
}

int ActiveViewIndex(const std::array<bool, PreviewWindowCount>& active) {
    for (int i = 0; i < PreviewWindowCount; ++i)
        if (active[i]) return i;
    return -1;
}

void ZoomView(PreviewViewpoint& view, int turns, double amount) {
    // Worked in double and stored back in the view's single precision, as the head file prints it.
    view.PositionZ = static_cast<float>(view.PositionZ - turns * amount);
}

void PanView(PreviewViewpoint& view, int keyCode) {
    switch (keyCode) {
    case KeyLeft: view.PositionX += 1000; break;
    case KeyUp: view.PositionY -= 1000; break;
    case KeyRight: view.PositionX -= 1000; break;
    case KeyDown: view.PositionY += 1000; break;
    default: break;
    }
}

void PressTurn(TurnStart& start, std::int16_t button, float x, float y) {
    start.Button = button;
    if (button != MouseLeft) return;
    start.X = x;
    start.Y = y;
}

bool ReleaseTurn(PreviewViewpoint& view, const TurnStart& start, float x, float y, double twipsPerPixel) {
    if (start.Button != MouseLeft) return false;
    // The travel is a single-precision quotient; the angle and the sum are double until stored.
    const auto scale = static_cast<float>(twipsPerPixel);
    const float down = (y - start.Y) * scale / 100.0f;
    const float across = (x - start.X) * scale / 100.0f;
    view.SceneRotationX = static_cast<float>(view.SceneRotationX + DegToRad(down));
    view.SceneRotationY = static_cast<float>(view.SceneRotationY + DegToRad(across));
    return true;
}

namespace {
// The head prints every angle and coordinate as SingleText.
float Printed(float value) {
    std::string text;
    return AppendSingleTextRead(text, value);
}
float FlagValue(std::int16_t flag) { return flag ? 1.0f : 0.0f; }
}  // namespace

ViewPose HeadPose(const PreviewViewpoint& view) {
    return {Printed(view.PositionX),     Printed(view.PositionY),      Printed(view.PositionZ),
            FlagValue(view.AxisX),       FlagValue(view.AxisY),        FlagValue(view.AxisZ),
            Printed(view.Angle),         Printed(view.SceneRotationZ), Printed(view.SceneRotationX),
            Printed(view.SceneRotationY)};
}

Tint PartTint(int partNumber) {
    static constexpr Tint tints[] = {{0.40f, 0.46f, 0.60f}, {0.62f, 0.50f, 0.34f}, {0.36f, 0.55f, 0.40f},
                                     {0.60f, 0.38f, 0.36f}, {0.32f, 0.52f, 0.58f}, {0.52f, 0.40f, 0.58f},
                                     {0.54f, 0.54f, 0.30f}, {0.58f, 0.46f, 0.48f}};
    constexpr int count = static_cast<int>(std::size(tints));
    return tints[((partNumber % count) + count) % count];
}

std::array<PixelRect, PreviewWindowCount> PreviewWindowLayout() {
    constexpr double listStrip = 1850, width = 6715, height = 4750;
    auto rect = [&](double left, double top) {
        return PixelRect{PixelsFromTwips(left), PixelsFromTwips(top), PixelsFromTwips(width), PixelsFromTwips(height)};
    };
    std::array<PixelRect, PreviewWindowCount> layout;
    layout[ViewTop] = rect(listStrip, 0);
    layout[ViewPerspective] = rect(listStrip + width, 0);
    layout[ViewBack] = rect(listStrip, height);
    layout[ViewRight] = rect(listStrip + width, height);
    return layout;
}

PixelRect CortonaViewerControlRect(int width, int height, int stripHeight) {
    const int right = PixelsFromTwips(double(width) * TwipsPerPixel - 100);
    const int bottom = PixelsFromTwips(double(height) * TwipsPerPixel - 50);
    return {0, stripHeight, std::max(0, right), std::max(0, bottom - stripHeight)};
}

PixelRect StadiumPreviewControlRect(int width, int height) {
    return {0, 0, std::max(0, PixelsFromTwips(double(width) * TwipsPerPixel - 150)),
            std::max(0, PixelsFromTwips(double(height) * TwipsPerPixel - 390))};
}

PixelRect StadiumPreviewPlacement(int screenWidth, int screenHeight, int frameWidth) {
    const int w = PixelsFromTwips(6885.0 * screenWidth / 1024);
    const int h = PixelsFromTwips(6885.0 * screenHeight / 768);
    return {std::max(0, frameWidth - w), 0, w, h};
}
