#pragma once
// The rules of the Texture Manager and of the texture naming window that need no window: the
// predefined UVs of the project's texture slots, the click on the image, the window's size, and
// where the images for the previews go.
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "core/oif.h"

// The slot behind a row of the texture list; null for no row, for the four rows without a slot
// and while the project has no slots.
TextureSlot* SlotOfTextureRow(std::vector<TextureSlot>& slots, int row);
// Point pointRow of that slot, or null.
TexturePart* TexturePointAt(std::vector<TextureSlot>& slots, int row, int pointRow);

// "Add": a point named "[New Item]" at 0, 0 at the end of the slot. A row without a slot gets
// nothing and gives false.
bool AddTexturePart(std::vector<TextureSlot>& slots, int row);
// Stores the leading number of the text in V for field 1, in U for any other.
void StoreUVText(TexturePart& point, int field, std::string_view text);

// What a left press on the image shows in the U and V fields; a field without text stays as it
// was.
struct ImagePick {
    std::string uText, vText;
};
// A press at pixel (x, y) of an image width by height pixels. The point first takes x / width and
// y / height; then the fields show x / (width - 1) and y / (height - 1), which are stored as
// their texts read back, so the far edge gives exactly 1. An image 1 pixel across keeps
// x / width on that axis.
ImagePick PickOnImage(TexturePart& point, int x, int y, int width, int height);

// The window follows its picture: a 512 by 512 picture gives the designed size, and the window
// never ends within 1000 twips under the V field. All in pixels; uvboxBottom is the lower edge of
// the V field in the window.
struct WindowPixels {
    int width = 0, height = 0;
    bool operator==(const WindowPixels&) const = default;
};
WindowPixels TextureWindowSize(int pictureWidth, int pictureHeight, int uvboxBottom);

// "(x, y)": the mouse over the picture, in its pixels.
std::string PointerPositionText(int x, int y);

// The image a texture shows in the previews: "<name>.png" in the scratch folder.
std::string TexturePngPath(std::string_view name);
// A PNG is imported by copying it; any other image is converted to PNG.
bool ImportCopiesFile(const std::string& path);
// "&Import texture": the picture at `source` becomes the image of the named texture. A PNG is
// copied as it is; any other picture is handed to `writePng` with the target path, which writes
// it as PNG and says whether it could. Throws std::runtime_error when the image is not written.
void ImportTextureImage(const std::string& source, std::string_view name,
                        const std::function<bool(const std::string& target)>& writePng);

inline constexpr const char* ImportTextureTitle = "Import texture...";
inline constexpr const char* ImportTextureFilter =
    "All supported images|*.png;*.jpg;*.gif;*.bmp|Portable Network Graphics (*.png)|*.png|JPEG Compliant "
    "(*.jpg)|*.jpg|Graphics Interchange (*.gif)|*.gif|Windows Bitmap (*.bmp)|*.bmp";
inline constexpr const char* PreviewTextureTitle = "Import texture for preview...";
inline constexpr const char* PreviewTextureFilter = "Portable Network Graphics (*.png)|*.png";

// "&Ok" of the texture naming window: copies the chosen PNG to the image of the named texture.
// An empty name, or one that would lead out of the scratch folder, is refused with a message and
// gives false.
bool NameTextureForPreview(const std::string& source, const std::string& name);
