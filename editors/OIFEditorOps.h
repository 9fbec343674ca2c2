#pragma once
// The rules of the OIF Editor that need no window: what its lists and fields show for a part and
// a vertex, how typed text is stored, the predefined UVs of a texture, and the export of one part.
#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/binaryOps.h"
#include "core/oif.h"

// The texture names both editors offer: the project's 35 slots in their order, then four
// textures that have no slot and so no predefined UVs.
inline constexpr std::size_t TextureListCount = 39;
const std::array<std::string, TextureListCount>& TextureListNames();

// The brightness of a vertex's lighting word: the word divided by 256, rounded half to even, its
// low 8 bits. So it is the word's second byte, one higher when the low byte is above 128.
int VertexBrightness(std::uint32_t shadow);
// The brightness as a share of 255 in percent, rounded to 2 decimals, with "%": 128 gives "50.2%".
std::string BrightnessPercentText(int brightness);

// A row of the vertex list: "X, Y, Z".
std::string VertexRowText(const OIFVertex& vertex);
// A row of the index list: "index: X, Y, Z" of the vertex it names. An index that names no
// vertex of the part (above 32767 it reads negative) shows only "index: ".
std::string IndexRowText(std::int16_t index, const std::vector<OIFVertex>& vertices);
// The caption the part selection gives the Texture Manager.
std::string TextureManagerCaption(std::string_view partRow, std::string_view texture);

enum class VertexField { X, Y, Z, U, V };
float VertexFieldValue(const OIFVertex& vertex, VertexField field);
// Stores the leading number of the text (0 when it starts with none) as a 32-bit float.
void StoreVertexField(OIFVertex& vertex, VertexField field, std::string_view text);

// Stores the trimmed text as the part's name and returns it, for the row of the part list.
std::string StorePartName(OIFPartHeader& part, std::string_view text);

// The names of the predefined UVs of the first slot whose name is the trimmed field text, case
// ignored; none when no slot has that name.
std::vector<std::string> PredefinedUVNames(const std::vector<TextureSlot>& slots, std::string_view fieldText);
// The last row of the texture list whose name is exactly the field text; -1 when none is.
int TextureListRow(std::string_view fieldText);
// Gives the vertex the U and V of predefined UV (pointRow - 1) of slot textureRow; row 0 of the
// point list is the "[Select predefined UV]" prompt. Returns false, changing nothing, when the
// rows name no point.
bool ApplyPredefinedUV(OIFVertex& vertex, const std::vector<TextureSlot>& slots, int textureRow, int pointRow);

inline constexpr const char* ExportPartTitle = "Export OIF part...";
inline constexpr const char* ExportPartFilter = "O Intermediate Files (*.oif)|*.oif";
// The file of one part: the document's header with that part as its only one. The document
// keeps its texture names.
ByteBuffer PartFileBytes(const OIFFile& doc, std::size_t part);
// "Export": asks for a path (and, for a file that exists, whether to replace it) and writes the
// part there. Returns false when the user ended the command.
bool ExportPart(const OIFFile& doc, std::size_t part);
