#include "preview/PreviewViewOps.h"

#include <algorithm>
#include <cmath>

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

bool ReleaseTurn(PreviewViewpoint& view, const TurnStart& start, float x, float y) {
    if (start.Button != MouseLeft) return false;
    // The travel is a single-precision quotient; the angle and the sum are double until stored.
    const float down = (y - start.Y) / 100.0f;
    const float across = (x - start.X) / 100.0f;
    view.SceneRotationX = static_cast<float>(view.SceneRotationX + DegToRad(down));
    view.SceneRotationY = static_cast<float>(view.SceneRotationY + DegToRad(across));
    return true;
}

int PixelsFromTwips(double twips) { return static_cast<int>(std::nearbyint(twips / TwipsPerPixel)); }

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
