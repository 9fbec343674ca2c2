#include "editors/TextureManagerOps.h"

#include <filesystem>
#include <stdexcept>

#include "core/Desktop.h"
#include "core/FileOps.h"
#include "core/NumberText.h"
#include "core/ProgramState.h"
#include "core/Twips.h"

namespace {
// The window's design: its size in twips around a 512 by 512 picture.
constexpr int DesignedPicture = 512;
constexpr int DesignedWidthTwips = 11535;
constexpr int DesignedHeightTwips = 8565;
constexpr int RoomUnderUVTwips = 1000;
}  // namespace

TextureSlot* SlotOfTextureRow(std::vector<TextureSlot>& slots, int row) {
    // The four names after the project's slots have none; the list offers them all the same.
    if (row < 0 || static_cast<std::size_t>(row) >= slots.size()) return nullptr;
    return &slots[static_cast<std::size_t>(row)];
}

TexturePart* TexturePointAt(std::vector<TextureSlot>& slots, int row, int pointRow) {
    TextureSlot* slot = SlotOfTextureRow(slots, row);
    if (!slot || pointRow < 0 || static_cast<std::size_t>(pointRow) >= slot->Parts.size()) return nullptr;
    return &slot->Parts[static_cast<std::size_t>(pointRow)];
}

bool AddTexturePart(std::vector<TextureSlot>& slots, int row) {
    TextureSlot* slot = SlotOfTextureRow(slots, row);
    if (!slot) return false;
    slot->Parts.push_back(TexturePart{});
    slot->PartCount = static_cast<std::int16_t>(slot->Parts.size());
    return true;
}

void StoreUVText(TexturePart& point, int field, std::string_view text) {
    (field == 1 ? point.V : point.U) = static_cast<float>(LeadingNumber(text));
}

ImagePick PickOnImage(TexturePart& point, int x, int y, int width, int height) {
    ImagePick pick;
    if (width <= 0 || height <= 0) return pick;
    point.U = static_cast<float>(static_cast<double>(x) / width);
    point.V = static_cast<float>(static_cast<double>(y) / height);
    if (width > 1) {
        pick.uText = SingleText(static_cast<float>(static_cast<double>(x) / (width - 1)));
        StoreUVText(point, 0, pick.uText);
    }
    if (height > 1) {
        pick.vText = SingleText(static_cast<float>(static_cast<double>(y) / (height - 1)));
        StoreUVText(point, 1, pick.vText);
    }
    return pick;
}

WindowPixels TextureWindowSize(int pictureWidth, int pictureHeight, int uvboxBottom) {
    const int widthTwips = (pictureWidth - DesignedPicture) * TwipsPerPixel + DesignedWidthTwips;
    int heightTwips = (pictureHeight - DesignedPicture) * TwipsPerPixel + DesignedHeightTwips;
    const int edgeTwips = uvboxBottom * TwipsPerPixel;
    if (heightTwips - edgeTwips < RoomUnderUVTwips) heightTwips = edgeTwips + RoomUnderUVTwips;
    return {PixelsFromTwips(widthTwips), PixelsFromTwips(heightTwips)};
}

std::string PointerPositionText(int x, int y) { return "(" + std::to_string(x) + ", " + std::to_string(y) + ")"; }

std::string TexturePngPath(std::string_view name) { return TempFolder() + "/" + std::string(name) + ".png"; }

bool ImportCopiesFile(const std::string& path) { return FileExtension(path) == "png"; }

void ImportTextureImage(const std::string& source, std::string_view name,
                        const std::function<bool(const std::string& target)>& writePng) {
    const std::string target = TexturePngPath(name);
    std::filesystem::create_directories(std::filesystem::path(target).parent_path());
    if (ImportCopiesFile(source))
        std::filesystem::copy_file(source, target, std::filesystem::copy_options::overwrite_existing);
    else if (!writePng(target)) throw std::runtime_error("Cannot write \"" + target + "\".");
}

bool NameTextureForPreview(const std::string& source, const std::string& name) {
    if (name.empty()) {
        ShowMessage("Enter a texture name.", MessageIcon::Exclamation, "Terramason");
        return false;
    }
    // The name becomes a file name in the scratch folder, and nowhere else.
    if (name.find_first_of("/\\") != std::string::npos || name.find("..") != std::string::npos) {
        ShowMessage(
            "A texture name cannot hold \"/\", \"\\\" or \"..\": the picture is kept in the scratch folder "
            "under the name it is given.",
            MessageIcon::Exclamation, "Terramason");
        return false;
    }
    std::filesystem::copy_file(source, TexturePngPath(name), std::filesystem::copy_options::overwrite_existing);
    return true;
}
