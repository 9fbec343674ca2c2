#pragma once
// A layout file: the places of a model's textures on the sheet, written by hand or by a script,
// for laying out an atlas without the window. A JSON object that maps a texture's name to
// {"left", "top", "width", "height", "mapped"}; "mapped" may be left out and then counts as true.
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "importer/AtlasLayout.h"

// Places further out than this are refused: no sheet or window comes near them, and sums of
// them stay far inside 32-bit numbers.
inline constexpr double LayoutLimit = 1000000;

struct LayoutEntry {
    std::string name;  // Windows-1252 bytes, as the model's texture names are
    TextureBox box;    // whole pixels, rounded half to even
    bool operator==(const LayoutEntry&) const = default;
};

struct LayoutFile {
    std::vector<LayoutEntry> entries;  // in the file's order; a name given twice counts once, the last
    std::string error;                 // empty when the text was taken
};

LayoutFile ParseLayoutFile(std::string_view json);

// The boxes of the textures with the file's places over them; textures the file leaves out keep
// their boxes. A name that is no texture of the model is an error, and the boxes stay as given.
std::string ApplyLayout(const LayoutFile& layout, const std::vector<ImportTexture>& textures,
                        std::vector<TextureBox>& boxes);
