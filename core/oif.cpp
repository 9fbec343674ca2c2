#include "core/oif.h"

OIFFile NewOIFFile() {
    OIFFile doc;
    doc.Label = "OIF1";
    doc.Header.Magic = "OiFF";
    doc.Header.Version = 1;
    doc.Header.Kind = 1;
    return doc;
}

OIFFile AddPart(const OIFPart& part, const OIFFile& doc) {
    OIFFile result = doc;
    result.Parts.push_back(part);
    result.Header.PartCount += 1;
    return result;
}

OIFFile RemoveParts(const OIFFile& doc, const std::vector<bool>& selected) {
    OIFFile result = doc;
    result.Parts.clear();
    for (std::size_t i = 0; i < doc.Parts.size(); ++i)
        if (i >= selected.size() || !selected[i]) result.Parts.push_back(doc.Parts[i]);
    result.Header.PartCount = static_cast<std::int32_t>(result.Parts.size());
    return result;
}

OIFPart MakePartFromQuads(const PolygonPart& quads) {
    OIFPart part;
    part.Header.Texture = quads.Texture;
    const int count = quads.Count > 0 ? quads.Count : 0;
    // Source order 1, 0, 2, 3 makes each quad a two-triangle strip of its own.
    static constexpr int order[4] = {1, 0, 2, 3};
    part.Vertices.resize(static_cast<std::size_t>(4 * count));
    for (int q = 0; q < count; ++q)
        for (int k = 0; k < 4; ++k) {
            const std::size_t src = static_cast<std::size_t>(4 * q + order[k]);
            if (src < quads.Vertices.size()) part.Vertices[static_cast<std::size_t>(4 * q + k)] = quads.Vertices[src];
        }
    part.Header.VertexCount = 4 * count;
    const int indexCount = count > 0 ? 6 * count - 2 : 0;
    part.Indices.reserve(static_cast<std::size_t>(indexCount));
    int n = 0;
    for (int i = 0; i < indexCount; ++i) {
        part.Indices.push_back(static_cast<std::int16_t>(n));
        if (i % 6 != 3 && i % 6 != 5) ++n;
    }
    part.Header.IndexCount = indexCount;
    return part;
}

void AppendPart(OIFPart& a, const OIFPart& b) {
    const int base = a.Header.VertexCount;
    a.Vertices.insert(a.Vertices.end(), b.Vertices.begin(), b.Vertices.end());
    a.Header.VertexCount += static_cast<std::int32_t>(b.Vertices.size());
    if (!b.Indices.empty()) {
        a.Indices.reserve(a.Indices.size() + b.Indices.size() + 2);
        // Two repeated indices join the strips with degenerate triangles; an empty strip needs no
        // joint, and a doubled head would turn the winding of every triangle after it.
        if (!a.Indices.empty()) {
            a.Indices.push_back(a.Indices.back());
            a.Indices.push_back(static_cast<std::int16_t>(b.Indices[0] + base));
        }
        for (std::int16_t index : b.Indices) a.Indices.push_back(static_cast<std::int16_t>(index + base));
    }
    a.Header.IndexCount = static_cast<std::int32_t>(a.Indices.size());
}

OIFPart ConcatParts(const OIFPart& a, const OIFPart& b) {
    OIFPart result = a;
    AppendPart(result, b);
    return result;
}

PolygonList NewPolygonList() { return PolygonList{}; }

PolygonList AddPolygonPart(const PolygonPart& part, const PolygonList& list) {
    PolygonList result = list;
    result.Items.push_back(part);
    result.Count = static_cast<std::int16_t>(result.Count + 1);
    return result;
}

PreviewScene AddViewpoint(const std::string& description, float x, float y, float z, std::int16_t axisX,
                          std::int16_t axisY, std::int16_t axisZ, float angle, const PreviewScene& scene) {
    PreviewScene result = scene;
    PreviewViewpoint vp;
    vp.Description = description;
    vp.PositionX = x;
    vp.PositionY = y;
    vp.PositionZ = z;
    vp.AxisX = axisX;
    vp.AxisY = axisY;
    vp.AxisZ = axisZ;
    vp.Angle = angle;
    result.Viewpoints.push_back(vp);
    result.ViewpointCount = static_cast<std::int16_t>(result.ViewpointCount + 1);
    return result;
}

PreviewScene DefaultPreviewScene() {
    PreviewScene scene;
    const std::int16_t T = VBTrue, F = VBFalse;
    scene = AddViewpoint("Top", 0, 30000, 0, T, F, F, -1.57f, scene);
    scene = AddViewpoint("Panoramic", -6500, 7000, 10000, T, T, F, -0.74f, scene);
    scene = AddViewpoint("Centre", 0, 1000, 0, F, F, F, 0, scene);
    scene = AddViewpoint("Elevated", 0, 6000, 6000, T, F, F, -0.74f, scene);
    scene = AddViewpoint("Front", 0, 2000, 15000, F, F, F, 0, scene);
    scene = AddViewpoint("Right", -15000, 3000, 0, F, T, F, -1.57f, scene);
    return scene;
}
