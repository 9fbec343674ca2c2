#include "editors/OIFEditorOps.h"

#include "core/Desktop.h"
#include "core/FileOps.h"
#include "core/NumberText.h"
#include "core/OIFOps.h"
#include "core/myOps.h"
#include "shell/SaveOps.h"
#include "shell/StadiumCatalogue.h"

namespace {

std::array<std::string, TextureListCount> MakeTextureList() {
    std::array<std::string, TextureListCount> names;
    std::size_t i = 0;
    for (const char* name : ProjectTextureNames) names[i++] = name;
    for (const char* name : {"alga", "algb", "hlga", "hlgb"}) names[i++] = name;
    return names;
}

char LowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool EqualNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (LowerAscii(a[i]) != LowerAscii(b[i])) return false;
    return true;
}

// Serves the const and the changing use alike.
template <class Vertex>
auto& FieldOf(Vertex& vertex, VertexField field) {
    switch (field) {
    case VertexField::X: return vertex.X;
    case VertexField::Y: return vertex.Y;
    case VertexField::Z: return vertex.Z;
    case VertexField::U: return vertex.U;
    case VertexField::V: break;
    }
    return vertex.V;
}

}  // namespace

const std::array<std::string, TextureListCount>& TextureListNames() {
    static const std::array<std::string, TextureListCount> names = MakeTextureList();
    return names;
}

int VertexBrightness(std::uint32_t shadow) {
    std::uint32_t quotient = shadow >> 8;
    const std::uint32_t rest = shadow & 0xFFu;
    if (rest > 128 || (rest == 128 && (quotient & 1u))) ++quotient;
    return static_cast<int>(quotient & 0xFFu);
}

std::string BrightnessPercentText(int brightness) {
    // Hundredths of a percent, rounded half to even in whole numbers so that no binary fraction
    // decides a tie.
    const long long scaled = static_cast<long long>(brightness) * 10000;
    long long hundredths = scaled / 255;
    const long long rest = scaled % 255;
    if (2 * rest > 255 || (2 * rest == 255 && (hundredths & 1))) ++hundredths;
    return DoubleText(static_cast<double>(hundredths) / 100) + "%";
}

std::string VertexRowText(const OIFVertex& vertex) {
    std::string row;
    AppendSingleText(row, vertex.X);
    row += ", ";
    AppendSingleText(row, vertex.Y);
    row += ", ";
    AppendSingleText(row, vertex.Z);
    return row;
}

std::string IndexRowText(std::int16_t index, const std::vector<OIFVertex>& vertices) {
    std::string row = IndexText(index) + ": ";
    if (index >= 0 && static_cast<std::size_t>(index) < vertices.size())
        row += VertexRowText(vertices[static_cast<std::size_t>(index)]);
    return row;
}

std::string TextureManagerCaption(std::string_view partRow, std::string_view texture) {
    return "Texture Manager - [" + TrimBlanks(partRow) + "] - " + std::string(texture);
}

float VertexFieldValue(const OIFVertex& vertex, VertexField field) { return FieldOf(vertex, field); }

void StoreVertexField(OIFVertex& vertex, VertexField field, std::string_view text) {
    FieldOf(vertex, field) = static_cast<float>(LeadingNumber(text));
}

std::string StorePartName(OIFPartHeader& part, std::string_view text) {
    std::string name = TrimBlanks(text);
    part.Name = name;
    return name;
}

std::vector<std::string> PredefinedUVNames(const std::vector<TextureSlot>& slots, std::string_view fieldText) {
    const std::string wanted = TrimBlanks(fieldText);
    std::vector<std::string> names;
    for (const TextureSlot& slot : slots) {
        if (!EqualNoCase(slot.Name, wanted)) continue;
        for (const TexturePart& point : slot.Parts) names.push_back(point.Name);
        break;
    }
    return names;
}

int TextureListRow(std::string_view fieldText) {
    int row = -1;
    for (std::size_t i = 0; i < TextureListCount; ++i)
        if (TextureListNames()[i] == fieldText) row = static_cast<int>(i);
    return row;
}

bool ApplyPredefinedUV(OIFVertex& vertex, const std::vector<TextureSlot>& slots, int textureRow, int pointRow) {
    if (textureRow < 0 || pointRow < 1 || static_cast<std::size_t>(textureRow) >= slots.size()) return false;
    const std::vector<TexturePart>& points = slots[static_cast<std::size_t>(textureRow)].Parts;
    if (static_cast<std::size_t>(pointRow - 1) >= points.size()) return false;
    const TexturePart& point = points[static_cast<std::size_t>(pointRow - 1)];
    vertex.U = point.U;
    vertex.V = point.V;
    return true;
}

ByteBuffer PartFileBytes(const OIFFile& doc, std::size_t part) {
    OIFFile one;
    one.Header = doc.Header;
    one.Header.PartCount = 1;
    one.Parts.push_back(doc.Parts.at(part));
    // The encoder blanks the textures of what it is given: this copy, not the document.
    return SaveOIF(one);
}

bool ExportPart(const OIFFile& doc, std::size_t part) {
    const std::string path = TheDesktop().SaveFile(ExportPartTitle, ExportPartFilter, "", "");
    if (TrimBlanks(path).empty()) return false;
    if (FileExists(path) && AskQuestion(ReplaceFileQuestion(path), MessageButtons::YesNo, MessageIcon::Exclamation,
                                        "Save As") != MessageAnswer::Yes)
        return false;
    binaryOps::WriteBytesFile(PartFileBytes(doc, part), path);
    return true;
}
