#pragma once
// The Stadium Importer's sheet as numbers: where each texture's box stands, what the mouse and
// the arrow keys do to it, and whether a layout can be painted. All places are sheet pixels;
// the window only shows these boxes and feeds its events in.
#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "core/Twips.h"
#include "importer/stmapOps.h"

// A texture's box on the sheet. Visible means mapped. Left and Top may be negative, and the box
// may reach past the sheet.
struct TextureBox {
    std::int32_t Left = 0, Top = 0, Width = 0, Height = 0;
    bool Visible = false;
    bool operator==(const TextureBox&) const = default;
};

inline constexpr std::int32_t SheetHeight = 512;
// The entries of the sheet size list, in order.
inline constexpr std::array<const char*, 2> SheetSizeTexts{"512x512", "256x512"};
std::int32_t SheetWidthFor(int entry);

// The window as designed: the sheet's corner and the client area around a 512 sheet.
inline constexpr std::int32_t SheetLeft = 156, SheetTop = 4;
inline constexpr std::int32_t DesignClientWidth = 672, DesignClientHeight = 539;
// The window's width that keeps the margin right of the sheet when the sheet becomes
// `newSheetWidth` wide.
std::int32_t WindowWidthForSheet(std::int32_t windowWidth, std::int32_t sheetLeft, std::int32_t sheetWidth,
                                 std::int32_t newSheetWidth);

// Rounding of a fraction to a whole pixel, ties to even, as the controls do it.
std::int32_t RoundEven(double value);

// The side of a chequer cell: a fiftieth of the sheet's height.
std::int32_t ChequerCell(std::int32_t sheetHeight);

// A texture as loading places it: unmapped, at its pixel size, centred on the sheet.
TextureBox NaturalBox(PictureSize picture, std::int32_t sheetWidth, std::int32_t sheetHeight);
// A picture's width or height in hundredths of a millimetre, as the platform's picture object
// tells it at 96 dots per inch.
std::int32_t PictureHimetric(std::int32_t pixels);
// Reset's size: hundredths of a millimetre divided by the hundredths in a twip, but not by the
// twips in a pixel, so fifteen times the pixel size. The users of the tool know it this way.
std::int32_t ResetSize(std::int32_t pixels);
// Gives the box ResetSize and centres it on the sheet; mapped or not stays as it was.
void ResetBox(TextureBox& box, PictureSize picture, std::int32_t sheetWidth, std::int32_t sheetHeight);

inline constexpr const char* CheckBoundsTitle = "Check Bounds";
inline constexpr const char* NotAllMappedMessage = "Not all textures mapped!";
inline constexpr const char* BoundsFineMessage = "All bounds are fine.";

struct BoundsReport {
    bool ok = false;
    std::string message;  // what CheckBounds(true) shows
};
// The three stages: every texture mapped, none out of bounds, no two overlapping. The bounds
// stage compares pixels with the window's outer size in twips, so in practice it catches only a
// negative left or top: a texture over the right or bottom edge of the sheet passes.
BoundsReport CheckBoundsOf(const std::vector<TextureBox>& boxes, const std::vector<ImportTexture>& textures,
                           std::int32_t windowWidthTwips, std::int32_t windowHeightTwips);
// The same, shown in an information box when `verbose`.
bool CheckBounds(const std::vector<TextureBox>& boxes, const std::vector<ImportTexture>& textures,
                 std::int32_t windowWidthTwips, std::int32_t windowHeightTwips, bool verbose);

// Left, top, right, bottom; right and bottom exclusive.
struct IntRect {
    std::int32_t Left = 0, Top = 0, Right = 0, Bottom = 0;
};
// True when the intersection has a positive width and height: touching edges do not overlap.
bool Overlaps(const IntRect& a, const IntRect& b);

// The rectangles ExportAtlas copies into the textures: each box's left, top, right and bottom.
void CopyRectangles(const std::vector<TextureBox>& boxes, std::vector<ImportTexture>& textures);

enum class AtlasExport { Failed, Painted, PartAdded };
// "Import Model and Texture" once the layout is within bounds, for the window and the command
// line alike: the boxes become the textures' rectangles, `paint` writes the atlas bitmap of
// Importer.ImportTextures (throwing std::runtime_error with the message for the user), and the
// loaded model, by its kind, becomes one part named with `texture`, added to CurrentProject.OIF.
// A model neither 3DS nor RAV text makes no part. A failure is reported in a box and stops there.
AtlasExport ExportAtlas(const std::vector<TextureBox>& boxes, ImportSheet sheet, const std::string& texture,
                        const std::function<void(const std::vector<ImportTexture>&)>& paint);

inline constexpr std::int32_t EdgeSnapDistance = 3;  // inclusive
inline constexpr std::int32_t SnapHalf = 2;          // half the width of a texture snap strip

struct SnapRules {
    bool toEdges = true;
    bool toTextures = true;
};
struct BoxPlace {
    std::int32_t Left = 0, Top = 0;
    bool operator==(const BoxPlace&) const = default;
};
// Where a dragged texture lands: the mouse (relative to the texture's box) less where the drag
// began, snapped to the sheet's edges and then to the mapped textures in list order, the last hit
// standing.
BoxPlace DragPlace(const std::vector<TextureBox>& boxes, std::size_t moving, double mouseX, double mouseY,
                   std::int32_t dragStartX, std::int32_t dragStartY, std::int32_t sheetWidth, std::int32_t sheetHeight,
                   SnapRules snap);
// The status bar's text during a drag: "(left, top) widthxheight".
std::string DragStatusText(const TextureBox& box);

inline constexpr std::int32_t HandleSize = 6;
struct HandlePlace {
    std::int32_t Left = 0, Top = 0;
    bool operator==(const HandlePlace&) const = default;
};
// The eight handles round a box, numbered 1 to 8 from the top left by rows; they lie outside
// it, touching it. Element 0 of the result is handle 1.
std::array<HandlePlace, 8> HandlePlaces(const TextureBox& box, std::int32_t handleSize);
// Dragging handle `element` (1 to 8) by dx, dy. Each change of a side stands alone: a size that
// would fall below zero is refused and the next change still runs.
void ResizeByHandle(TextureBox& box, int element, double dx, double dy);

inline constexpr std::int32_t KeyStep = 1, KeyStepCtrl = 5;
enum class ArrowKey { Left, Right, Up, Down };
// An arrow key moves the box; with Shift it sizes it at the right and bottom edge. Ctrl steps 5.
void ArrowKeyStep(TextureBox& box, ArrowKey key, bool shift, bool ctrl);
