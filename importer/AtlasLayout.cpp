#include "importer/AtlasLayout.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <stdexcept>

#include "core/Cp1252.h"
#include "core/Desktop.h"
#include "core/ProgramState.h"

namespace {

constexpr double HimetricPerTwip = 1.7639322916666;

IntRect RectOf(const TextureBox& b) { return {b.Left, b.Top, b.Left + b.Width, b.Top + b.Height}; }

// A size below zero is refused, as the controls refuse it.
void SetSize(std::int32_t& size, double value) {
    if (value >= 0) size = RoundEven(value);
}

}  // namespace

std::int32_t SheetWidthFor(int entry) { return entry == 1 ? 256 : 512; }

std::int32_t WindowWidthForSheet(std::int32_t windowWidth, std::int32_t sheetLeft, std::int32_t sheetWidth,
                                 std::int32_t newSheetWidth) {
    const std::int32_t margin = windowWidth - (sheetLeft + sheetWidth);
    return sheetLeft + newSheetWidth + margin;
}

std::int32_t RoundEven(double value) {
    if (std::isnan(value)) return 0;
    constexpr double low = std::numeric_limits<std::int32_t>::min(), high = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::clamp(std::nearbyint(value), low, high));
}

std::int32_t ChequerCell(std::int32_t sheetHeight) { return RoundEven(sheetHeight / 50.0); }

TextureBox NaturalBox(PictureSize picture, std::int32_t sheetWidth, std::int32_t sheetHeight) {
    TextureBox box;
    box.Width = picture.Width;
    box.Height = picture.Height;
    box.Left = RoundEven((static_cast<double>(sheetWidth) - box.Width) / 2);
    box.Top = RoundEven((static_cast<double>(sheetHeight) - box.Height) / 2);
    return box;
}

std::int32_t PictureHimetric(std::int32_t pixels) {
    // 2540 hundredths of a millimetre to an inch of 96 pixels, rounded to the nearest.
    return static_cast<std::int32_t>((static_cast<std::int64_t>(pixels) * 2540 + 48) / 96);
}

std::int32_t ResetSize(std::int32_t pixels) { return RoundEven(PictureHimetric(pixels) / HimetricPerTwip); }

void ResetBox(TextureBox& box, PictureSize picture, std::int32_t sheetWidth, std::int32_t sheetHeight) {
    box.Width = ResetSize(picture.Width);
    box.Height = ResetSize(picture.Height);
    box.Left = RoundEven((static_cast<double>(sheetWidth) - box.Width) / 2);
    box.Top = RoundEven((static_cast<double>(sheetHeight) - box.Height) / 2);
}

BoundsReport CheckBoundsOf(const std::vector<TextureBox>& boxes, const std::vector<ImportTexture>& textures,
                           std::int32_t windowWidthTwips, std::int32_t windowHeightTwips) {
    for (const TextureBox& b : boxes)
        if (!b.Visible) return {false, NotAllMappedMessage};
    auto name = [&](std::size_t n) { return n < textures.size() ? Cp1252ToUtf8(textures[n].Name) : std::string(); };
    for (std::size_t n = 0; n < boxes.size(); ++n) {
        const TextureBox& b = boxes[n];
        if (b.Left < 0 || b.Top < 0 || static_cast<std::int64_t>(b.Top) + b.Height > windowHeightTwips ||
            static_cast<std::int64_t>(b.Left) + b.Width > windowWidthTwips)
            return {false, "Texture '" + name(n) + "' is out of image boundaries."};
    }
    for (std::size_t n = 0; n < boxes.size(); ++n)
        for (std::size_t k = n + 1; k < boxes.size(); ++k)
            if (Overlaps(RectOf(boxes[n]), RectOf(boxes[k])))
                return {false, "Textures '" + name(n) + "' and '" + name(k) + "' are overlapping."};
    return {true, BoundsFineMessage};
}

bool CheckBounds(const std::vector<TextureBox>& boxes, const std::vector<ImportTexture>& textures,
                 std::int32_t windowWidthTwips, std::int32_t windowHeightTwips, bool verbose) {
    const BoundsReport report = CheckBoundsOf(boxes, textures, windowWidthTwips, windowHeightTwips);
    if (verbose) ShowMessage(report.message, MessageIcon::Information, CheckBoundsTitle);
    return report.ok;
}

bool Overlaps(const IntRect& a, const IntRect& b) {
    const std::int64_t width = static_cast<std::int64_t>(std::min(a.Right, b.Right)) - std::max(a.Left, b.Left);
    const std::int64_t height = static_cast<std::int64_t>(std::min(a.Bottom, b.Bottom)) - std::max(a.Top, b.Top);
    return width > 0 && height > 0;
}

void CopyRectangles(const std::vector<TextureBox>& boxes, std::vector<ImportTexture>& textures) {
    for (std::size_t i = 0; i < boxes.size() && i < textures.size(); ++i) {
        const IntRect r = RectOf(boxes[i]);
        textures[i].Left = r.Left;
        textures[i].Top = r.Top;
        textures[i].Right = r.Right;
        textures[i].Bottom = r.Bottom;
    }
}

AtlasExport ExportAtlas(const std::vector<TextureBox>& boxes, ImportSheet sheet, const std::string& texture,
                        const std::function<void(const std::vector<ImportTexture>&)>& paint) {
    CopyRectangles(boxes, Importer.ImportTextures);
    try {
        paint(Importer.ImportTextures);
    } catch (const std::exception& e) {
        ShowMessage(e.what(), MessageIcon::Exclamation);
        return AtlasExport::Failed;
    }
    std::optional<ImportPartResult> made;
    switch (ImportKindOf(Importer.ImportFile)) {
    case ImportKind::Model3DS: made = Make3DSImportPart(texture, sheet); break;
    case ImportKind::RAVText: made = MakeRAVImportPart(Importer.ImportRAV, texture, sheet); break;
    case ImportKind::Other: return AtlasExport::Painted;
    }
    if (!made->error.empty()) {
        ShowMessage(made->error, MessageIcon::Exclamation);
        return AtlasExport::Failed;
    }
    CurrentProject.OIF = AddPart(made->part, CurrentProject.OIF);
    return AtlasExport::PartAdded;
}

BoxPlace DragPlace(const std::vector<TextureBox>& boxes, std::size_t moving, double mouseX, double mouseY,
                   std::int32_t dragStartX, std::int32_t dragStartY, std::int32_t sheetWidth, std::int32_t sheetHeight,
                   SnapRules snap) {
    const TextureBox& m = boxes[moving];
    const std::int32_t W = m.Width, H = m.Height;
    std::int32_t X = RoundEven(mouseX - dragStartX + m.Left);
    std::int32_t Y = RoundEven(mouseY - dragStartY + m.Top);
    if (snap.toEdges) {
        constexpr std::int32_t d = EdgeSnapDistance;
        if (std::abs(X) <= d) X = 0;
        if (std::abs(Y) <= d) Y = 0;
        if (std::abs(W + X - sheetWidth) <= d) X = sheetWidth - W;
        if (std::abs(H + Y - sheetHeight) <= d) Y = sheetHeight - H;
    }
    if (snap.toTextures) {
        constexpr std::int32_t s = SnapHalf;
        for (std::size_t k = 0; k < boxes.size(); ++k) {
            const TextureBox& o = boxes[k];
            if (k == moving || !o.Visible) continue;
            const std::int32_t oR = o.Left + o.Width, oB = o.Top + o.Height;
            if (Overlaps({X - s, Y - s, X + s, Y + H + s}, {oR - s, o.Top - s, oR + s, oB + s})) X = oR;
            if (Overlaps({X + W - s, Y - s, X + W + s, Y + H + s}, {o.Left - s, o.Top - s, o.Left + s, oB + s}))
                X = o.Left - W;
            if (Overlaps({X - s, Y - s, X + W + s, Y + s}, {o.Left - s, oB - s, oR + s, oB + s})) Y = oB;
            if (Overlaps({X - s, Y + H - s, X + W + s, Y + H + s}, {o.Left - s, o.Top - s, oR + s, o.Top + s}))
                Y = o.Top - H;
        }
    }
    return {X, Y};
}

std::string DragStatusText(const TextureBox& b) {
    return "(" + std::to_string(b.Left) + ", " + std::to_string(b.Top) + ") " + std::to_string(b.Width) + "x" +
           std::to_string(b.Height);
}

std::array<HandlePlace, 8> HandlePlaces(const TextureBox& b, std::int32_t h) {
    const std::int32_t L = b.Left, T = b.Top, W = b.Width, H = b.Height;
    const std::int32_t middleX = RoundEven((W - h) / 2.0 + L), middleY = RoundEven((H - h) / 2.0 + T);
    return {{{L - h, T - h},
             {middleX, T - h},
             {W + L, T - h},
             {L - h, middleY},
             {W + L, middleY},
             {L - h, H + T},
             {middleX, H + T},
             {W + L, H + T}}};
}

void ResizeByHandle(TextureBox& b, int element, double dx, double dy) {
    // Which sides the handle carries: the left or right one, the top or bottom one.
    const bool left = element == 1 || element == 4 || element == 6;
    const bool right = element == 3 || element == 5 || element == 8;
    const bool top = element >= 1 && element <= 3;
    const bool bottom = element >= 6 && element <= 8;
    if (left) {
        SetSize(b.Width, b.Width - dx);
        b.Left = RoundEven(b.Left + dx);
    }
    if (right) SetSize(b.Width, b.Width + dx);
    if (top) {
        SetSize(b.Height, b.Height - dy);
        b.Top = RoundEven(b.Top + dy);
    }
    if (bottom) SetSize(b.Height, b.Height + dy);
}

void ArrowKeyStep(TextureBox& b, ArrowKey key, bool shift, bool ctrl) {
    const std::int32_t step = ctrl ? KeyStepCtrl : KeyStep;
    if (!shift) {
        switch (key) {
        case ArrowKey::Left: b.Left -= step; break;
        case ArrowKey::Right: b.Left += step; break;
        case ArrowKey::Up: b.Top -= step; break;
        case ArrowKey::Down: b.Top += step; break;
        }
        return;
    }
    switch (key) {
    case ArrowKey::Left: SetSize(b.Width, b.Width - step); break;
    case ArrowKey::Right: SetSize(b.Width, b.Width + step); break;
    case ArrowKey::Up: SetSize(b.Height, b.Height - step); break;
    case ArrowKey::Down: SetSize(b.Height, b.Height + step); break;
    }
}
