#pragma once
// The window toolkit measures in twips, 1440 to the inch; the layout assumes a screen of 96 dots
// per inch, with 15 of them to a pixel.
#include <cmath>

inline constexpr double TwipsPerInch = 1440;
inline constexpr int TwipsPerPixel = static_cast<int>(TwipsPerInch / 96);

// Twips in a pixel of a screen with this logical resolution; the layout's 15 when it is unknown.
inline double TwipsPerPixelAt(double dotsPerInch) {
    return dotsPerInch > 0 ? TwipsPerInch / dotsPerInch : TwipsPerPixel;
}

// Twips to pixels, rounded to the nearest (ties to even).
inline int PixelsFromTwips(double twips) { return static_cast<int>(std::nearbyint(twips / TwipsPerPixel)); }
