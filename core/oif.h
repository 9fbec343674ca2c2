#pragma once
// The stadium document: plain records copied by value, as the OIF file holds them.
#include <cstdint>
#include <string>
#include <vector>

#include "core/FixedText.h"

struct OIFVertex {
    float X = 0, Y = 0, Z = 0;
    std::uint32_t Shadow = 0;
    float U = 0, V = 0;
    bool operator==(const OIFVertex&) const = default;
};

struct OIFPartHeader {
    FixedText<28> Name;
    FixedText<4> Texture;
    std::int32_t VertexCount = 0;
    std::int32_t IndexCount = 0;
    bool operator==(const OIFPartHeader&) const = default;
};

struct OIFPart {
    OIFPartHeader Header;
    std::vector<OIFVertex> Vertices;
    std::vector<std::int16_t> Indices;
    bool operator==(const OIFPart&) const = default;
};

// Zero, as a record that no document was ever assigned to; NewOIFFile gives the empty document.
struct OIFHeader {
    FixedText<4> Magic;
    std::int16_t Version = 0;
    std::int16_t Kind = 0;
    std::int32_t FileLength = 0;
    std::int32_t TrailerCount = 0;
    std::int32_t TrailerSpare = 0;
    std::int32_t PartCount = 0;
    bool operator==(const OIFHeader&) const = default;
};

struct OIFFile {
    std::string Label;
    std::string Note;
    OIFHeader Header;
    std::vector<OIFPart> Parts;
    std::vector<std::uint8_t> Trailer;
    bool operator==(const OIFFile&) const = default;
};

// A run of quads of one texture; four vertices per quad.
struct PolygonPart {
    FixedText<4> Texture;
    std::vector<OIFVertex> Vertices;
    std::int16_t Count = 0;
    bool operator==(const PolygonPart&) const = default;
};

struct PolygonList {
    std::int16_t Count = 0;
    std::vector<PolygonPart> Items;
    bool operator==(const PolygonList&) const = default;
};

struct PreviewViewpoint {
    float PositionX = 0, PositionY = 0, PositionZ = 0;
    std::int16_t AxisX = 0, AxisY = 0, AxisZ = 0;  // 0 false, -1 true
    float Angle = 0;                               // radians
    std::string Description;
    float SceneRotationX = 0, SceneRotationY = 0, SceneRotationZ = 0;
    bool operator==(const PreviewViewpoint&) const = default;
};

struct PreviewScene {
    std::int16_t RotateX = 0, RotateY = 0, RotateZ = 0;
    float RotateAngle = 0;  // degrees
    std::int16_t ColourR = 0, ColourG = 0, ColourB = 255;
    std::string Title;
    std::vector<PreviewViewpoint> Viewpoints;
    std::int16_t ViewpointCount = 0;
    bool operator==(const PreviewScene&) const = default;
};

struct TexturePart {
    std::string Name = "[New Item]";
    float U = 0, V = 0;
    bool operator==(const TexturePart&) const = default;
};

struct TextureSlot {
    std::string Name;
    std::int16_t PartCount = 0;
    std::vector<TexturePart> Parts;
    bool operator==(const TextureSlot&) const = default;
};

struct StadiumRow {
    std::string ModelFile, StaticTextureFile, ShadowFile, SkyFile, TextureFile, ExtraFile, BigFile;
    bool operator==(const StadiumRow&) const = default;
};

constexpr std::int16_t VBTrue = -1;
constexpr std::int16_t VBFalse = 0;

PreviewScene DefaultPreviewScene();

struct StadiumProject {
    std::string Name;  // empty: no project yet
    std::int16_t BasedOn = -1;
    OIFFile OIF;
    PreviewScene Scene = DefaultPreviewScene();
    PolygonList Polygons;
    std::vector<TextureSlot> Textures;
    bool operator==(const StadiumProject&) const = default;
};

OIFFile NewOIFFile();
OIFFile AddPart(const OIFPart& part, const OIFFile& doc);
// The document without the parts whose flag is set; the others keep their order. A part
// without a flag (the list is shorter than the document) is kept.
OIFFile RemoveParts(const OIFFile& doc, const std::vector<bool>& selected);

OIFPart MakePartFromQuads(const PolygonPart& quads);
OIFPart ConcatParts(const OIFPart& a, const OIFPart& b);
// ConcatParts in place: b is appended to a without copying a.
void AppendPart(OIFPart& a, const OIFPart& b);
PolygonList NewPolygonList();
// Appends a copy of part; returns the list.
PolygonList AddPolygonPart(const PolygonPart& part, const PolygonList& list);
PreviewScene AddViewpoint(const std::string& description, float x, float y, float z, std::int16_t axisX,
                          std::int16_t axisY, std::int16_t axisZ, float angle, const PreviewScene& scene);
