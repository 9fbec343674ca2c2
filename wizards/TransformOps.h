#pragma once
// The Stadium Transformation Wizard's change of the chosen parts' vertices: scale, rotate,
// translate, mirror, and a flip of the UVs, always in that order.
#include <array>
#include <string>
#include <vector>

#include "core/oif.h"

// The wizard's boxes as text, read as it reads them (a text without a number is 0), and its
// ticks. Part i is changed when parts[i] is set.
struct TransformSettings {
    std::vector<bool> parts;
    std::array<std::string, 3> scale{"100", "100", "100"};      // percent
    std::array<std::string, 3> rotate{"0.00", "0.00", "0.00"};  // degrees about x, y, z
    std::array<std::string, 3> translate{"0.00", "0.00", "0.00"};
    std::array<bool, 3> mirror{};
    bool flipU = false, flipV = false;
    bool operator==(const TransformSettings&) const = default;
};

// The document with the ticked parts' vertices changed. Rotation turns about Y, then X, then Z,
// and only when an angle is not 0; mirroring keeps the strips' order, so faces turn inside out.
OIFFile TransformParts(const OIFFile& doc, const TransformSettings& settings);
