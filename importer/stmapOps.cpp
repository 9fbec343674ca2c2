#include "importer/stmapOps.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <stdexcept>

#include "core/Cp1252.h"
#include "core/Desktop.h"
#include "core/FileOps.h"
#include "core/ProgramState.h"
#include "core/Shading.h"
#include "core/TriStrip.h"
#include "exchange/VertexWeld.h"

ImportState Importer;

namespace {

std::string Lower(std::string text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

// Finds or adds the texture of `name`; returns its index, or -1 when the user gave up on a missing
// file or its picture cannot be read. An empty name makes no entry and gives `keep`.
std::int32_t TextureIndexFor(const std::string& name, std::int32_t keep, std::vector<ImportTexture>& textures,
                             const std::string& texturesPath, const PictureReader& read, bool& gaveUp) {
    for (std::size_t j = 0; j < textures.size(); ++j)
        if (textures[j].Name == name) return static_cast<std::int32_t>(j);
    if (name.empty()) return keep;
    ImportTexture t;
    t.Name = name;
    t.Path = texturesPath + name;
    if (!FileExists(t.Path)) {
        t.Path =
            TheDesktop().OpenFile(MissingTextureTitle + Cp1252ToUtf8(name), MissingTextureFilter, "", texturesPath);
        if (t.Path.empty()) {
            gaveUp = true;
            return keep;
        }
    }
    const std::optional<PictureSize> picture = read(t.Path);
    if (!picture) {
        ShowMessage("The picture \"" + t.Path + "\" cannot be read.", MessageIcon::Exclamation);
        gaveUp = true;
        return keep;
    }
    t.Picture = *picture;
    textures.push_back(std::move(t));
    return static_cast<std::int32_t>(textures.size() - 1);
}

bool SomeTextures(const std::vector<ImportTexture>& textures) {
    if (!textures.empty()) return true;
    ShowMessage(NoTexturesMessage, MessageIcon::Critical, NoTexturesTitle);
    return false;
}

// The flips, then the texture's rectangle.
void PlaceUV(OIFVertex& v, const ImportTexture& texture, const ImportSettings& settings, ImportSheet sheet) {
    if (settings.FlipU == 1) v.U = 1 - v.U;
    if (settings.FlipV == 1) v.V = 1 - v.V;
    RemapUV(v, texture, sheet.Width, sheet.Height);
}

std::string TooManyVertices(std::size_t count) {
    return "The model has " + std::to_string(count) + " vertices; the Stadium Importer takes at most " +
           std::to_string(MostImportVertices) + ".";
}

// Greys by distance from the origin, worked in singles: 240 at the centre down to 30 at the
// farthest vertex. A model all at the origin has no farthest distance and stays at 240.
ImportMeshResult Refusal(std::string error) {
    ImportMeshResult result;
    result.error = std::move(error);
    return result;
}

double MergeDistance(const ImportSettings& settings) { return static_cast<double>(settings.MergeDist) * 100.0; }

void Strip(OptimisedMesh& out) { out.StripIndices = StripPartIndices(out.WorkIndices); }

}  // namespace

ImportKind ImportKindOf(const std::string& file) {
    const std::string extension = Lower(FileExtension(file));
    if (extension == "3ds") return ImportKind::Model3DS;
    if (extension == "txt") return ImportKind::RAVText;
    return ImportKind::Other;
}

ImportSettings DefaultImportSettings(ImportKind kind) {
    ImportSettings s;
    s.FlipV = kind == ImportKind::RAVText ? 0 : 1;
    return s;
}

bool Build3DSTextures(Model3DS& model, std::vector<ImportTexture>& textures, const std::string& texturesPath,
                      const PictureReader& read) {
    textures.clear();
    for (Material3DS& m : model.materials) {
        bool gaveUp = false;
        m.textureIndex = TextureIndexFor(m.textureFile, m.textureIndex, textures, texturesPath, read, gaveUp);
        if (gaveUp) return false;
    }
    return SomeTextures(textures);
}

bool BuildRAVTextures(RAVFile& rav, std::vector<ImportTexture>& textures, const std::string& texturesPath,
                      const PictureReader& read) {
    textures.clear();
    for (RAVPolygon& polygon : rav.polygons) {
        if (polygon.groupCount != 1 || polygon.groups.empty()) continue;
        RAVGroup& group = polygon.groups[0];
        if (group.name.empty()) continue;
        bool gaveUp = false;
        const std::int32_t index =
            TextureIndexFor(group.name + ".bmp", group.textureIndex, textures, texturesPath, read, gaveUp);
        if (gaveUp) return false;
        group.textureIndex = static_cast<std::int16_t>(index);
    }
    return SomeTextures(textures);
}

std::int32_t MeshTextureIndex(const Model3DS& model, const std::string& materialName) {
    for (const Material3DS& m : model.materials)
        if (m.name == materialName) return m.textureIndex;
    return 0;
}

std::int32_t MeshTextureIndex(const std::string& materialName) { return MeshTextureIndex(Table3DS, materialName); }

namespace {
LoadResult LoadModelTextures(const std::string& file, const PictureReader& read) {
    switch (ImportKindOf(file)) {
    case ImportKind::Model3DS:
        if (!Read3DSFile(file)) return LoadResult::Refused;
        return Build3DSTextures(Table3DS, Importer.ImportTextures, Importer.TexturesPath, read) ? LoadResult::Loaded
                                                                                                : LoadResult::Refused;
    case ImportKind::RAVText: {
        bool ok = false;
        try {
            Importer.ImportRAV = ReadRAVFile(file, &ok);
        } catch (const std::runtime_error& e) {
            ShowMessage(e.what(), MessageIcon::Exclamation);
            return LoadResult::Refused;
        }
        if (!ok) return LoadResult::Refused;
        return BuildRAVTextures(Importer.ImportRAV, Importer.ImportTextures, Importer.TexturesPath, read)
                   ? LoadResult::Loaded
                   : LoadResult::Refused;
    }
    case ImportKind::Other: break;
    }
    ShowMessage(UnsupportedExtensionMessage, MessageIcon::None);
    return LoadResult::Unsupported;
}
}  // namespace

LoadResult LoadImportModel(const std::string& file, const std::string& texturesPath, const PictureReader& read) {
    Importer.ImportFile = file;
    Importer.TexturesPath = texturesPath;
    if (Importer.TexturesPath.empty() || Importer.TexturesPath.back() != '/') Importer.TexturesPath += '/';
    Importer.ImportTextures.clear();
    const LoadResult result = LoadModelTextures(file, read);
    // A load given up half-way keeps nothing: a texture whose picture was never kept, or a list
    // that the model does not stand behind, would be acted on by the next command.
    if (result != LoadResult::Loaded) {
        Importer.ImportTextures.clear();
        Importer.ImportFile.clear();
    }
    return result;
}

void RemapUV(OIFVertex& vertex, const ImportTexture& r, std::int32_t sheetWidth, std::int32_t sheetHeight) {
    const double u = (static_cast<double>(r.Right - r.Left) * vertex.U + r.Left) / sheetWidth;
    const double v = (static_cast<double>(r.Bottom - r.Top) * vertex.V + r.Top) / sheetHeight;
    vertex.U = static_cast<float>(u);
    vertex.V = static_cast<float>(v);
}

ImportMeshResult Work3DSMesh(const Model3DS& model, const std::vector<ImportTexture>& textures,
                             const ImportSettings& settings, ImportSheet sheet) {
    if (textures.empty()) return Refusal(NoTexturesMessage);
    ImportMeshResult result;
    std::size_t vertexTotal = 0, indexTotal = 0;
    for (const Mesh3DS& mesh : model.meshes) {
        result.error = MeshProblem(mesh);
        if (!result.error.empty()) return result;
        vertexTotal += static_cast<std::size_t>(mesh.vertexCount);
        indexTotal += static_cast<std::size_t>(mesh.faceCount) * 3;
    }
    if (vertexTotal > MostImportVertices) return Refusal(TooManyVertices(vertexTotal));
    ImportMesh& w = result.mesh;
    w.WorkVertices.reserve(vertexTotal);
    w.WorkIndices.reserve(indexTotal);
    std::int32_t base = 0;
    for (const Mesh3DS& mesh : model.meshes) {
        const std::int32_t t = std::clamp<std::int32_t>(MeshTextureIndex(model, mesh.materialName), 0,
                                                        static_cast<std::int32_t>(textures.size()) - 1);
        for (std::int32_t f = 0; f < mesh.faceCount; ++f) {
            const Face3DS& face = mesh.faces[static_cast<std::size_t>(f)];
            for (const std::uint16_t corner : {face.a, face.b, face.c})
                w.WorkIndices.push_back(static_cast<std::int16_t>(corner + base));
        }
        for (std::int32_t k = 0; k < mesh.vertexCount; ++k) {
            OIFVertex v = WorkVertex(mesh, k);
            PlaceUV(v, textures[static_cast<std::size_t>(t)], settings, sheet);
            w.WorkVertices.push_back(v);
        }
        base += mesh.vertexCount;
    }
    return result;
}

ImportMeshResult WorkRAVMesh(const RAVFile& rav, const std::vector<ImportTexture>& textures,
                             const ImportSettings& settings, ImportSheet sheet) {
    if (textures.empty()) return Refusal(NoTexturesMessage);
    std::int64_t vertexTotal = 0, indexTotal = 0;
    for (const RAVPolygon& polygon : rav.polygons) {
        vertexTotal += polygon.vertexCount;
        indexTotal += polygon.groupCount * 6;
    }
    const auto slots = static_cast<std::size_t>(std::max<std::int64_t>(vertexTotal, 0));
    if (slots > MostImportVertices) return Refusal(TooManyVertices(slots));
    ImportMeshResult result;
    ImportMesh& w = result.mesh;
    w.WorkVertices.assign(slots, OIFVertex{});
    w.WorkIndices.assign(static_cast<std::size_t>(std::max<std::int64_t>(indexTotal, 0)), 0);

    auto isRow = [](const RAVPolygon& p) {
        return p.groupCount == 1 && !p.groups.empty() && p.vertexCount == 4 && p.vertices.size() == 4;
    };
    // Polygon s sits one slot of four lower than its number says; the last four slots are then
    // free unless the polygons are too few in vertices to leave them so.
    std::size_t slotsUsed = 0;
    for (std::size_t s = 1; s < rav.polygons.size(); ++s)
        if (isRow(rav.polygons[s])) slotsUsed = 4 * s;
    std::size_t p = 0;
    for (std::size_t s = 0; s < rav.polygons.size(); ++s) {
        const RAVPolygon& polygon = rav.polygons[s];
        if (!isRow(polygon)) continue;
        std::size_t base = 4 * s - 4;
        if (s == 0) {
            if (slots < 4 || slotsUsed > slots - 4) continue;
            base = slots - 4;
        }
        if (base + 4 > slots || p + 6 > w.WorkIndices.size()) continue;
        const ImportTexture& texture = textures[static_cast<std::size_t>(std::clamp<std::int32_t>(
            polygon.groups[0].textureIndex, 0, static_cast<std::int32_t>(textures.size()) - 1))];
        const auto b = static_cast<std::int16_t>(base);
        const std::int16_t triangles[6] = {b, static_cast<std::int16_t>(b + 1), static_cast<std::int16_t>(b + 2),
                                           b, static_cast<std::int16_t>(b + 2), static_cast<std::int16_t>(b + 3)};
        std::copy(triangles, triangles + 6, w.WorkIndices.begin() + static_cast<std::ptrdiff_t>(p));
        p += 6;
        static constexpr float CornerU[4] = {0, 1, 1, 0}, CornerV[4] = {1, 1, 0, 0};
        for (std::size_t k = 0; k < 4; ++k) {
            OIFVertex v;
            v.X = polygon.vertices[k].X;
            v.Y = polygon.vertices[k].Y;
            v.Z = polygon.vertices[k].Z;
            v.Shadow = 0xFFD0D0DAu;
            v.U = CornerU[k];
            v.V = CornerV[k];
            PlaceUV(v, texture, settings, sheet);
            w.WorkVertices[base + k] = v;
        }
    }
    return result;
}

OptimisedMesh OptimiseImportMesh(ImportMesh work, const ImportSettings& settings) {
    ShadeByDistance(work.WorkVertices, settings.Shade == 1);
    if (settings.Merge == 1) WeldNearGrid(work.WorkVertices, MergeDistance(settings));
    OptimisedMesh out;
    const std::vector<std::int32_t> where = KeepFirstHashed(work.WorkVertices, out.OptVertices);
    out.WorkIndices = std::move(work.WorkIndices);
    // Only an entry that names a work vertex is renumbered, as the entry-by-entry rewrite does.
    for (std::int16_t& index : out.WorkIndices)
        if (index >= 0 && static_cast<std::size_t>(index) < where.size())
            index = static_cast<std::int16_t>(where[static_cast<std::size_t>(index)]);
    Strip(out);
    return out;
}

OptimisedMesh OptimiseImportMeshReference(ImportMesh work, const ImportSettings& settings) {
    std::vector<OIFVertex>& v = work.WorkVertices;
    ShadeByDistance(v, settings.Shade == 1);
    if (settings.Merge == 1) {
        const double d = MergeDistance(settings);
        for (std::size_t i = 0; i < v.size(); ++i)
            for (std::size_t j = i + 1; j < v.size(); ++j)
                if (Near(v[i], v[j], d)) PlaceAt(v[j], v[i]);
    }
    OptimisedMesh out;
    for (std::size_t i = 0; i < v.size(); ++i) {
        std::size_t n = 0;
        while (n < out.OptVertices.size() && !SameVertex(out.OptVertices[n], v[i])) ++n;
        if (n == out.OptVertices.size()) out.OptVertices.push_back(v[i]);
        for (std::int16_t& index : work.WorkIndices)
            if (index == static_cast<std::int64_t>(i)) index = static_cast<std::int16_t>(n);
    }
    out.WorkIndices = std::move(work.WorkIndices);
    Strip(out);
    return out;
}

OIFPart FinishImportPart(const OptimisedMesh& mesh, const std::string& texture, std::int32_t partCount) {
    OIFPart part;
    part.Header.Texture = texture.substr(0, 4);
    part.Header.Name = "Part " + std::to_string(partCount) + " [" + part.Header.Texture.str() + "]";
    part.Vertices = mesh.OptVertices;
    part.Indices = mesh.StripIndices;
    part.Header.VertexCount = static_cast<std::int32_t>(part.Vertices.size());
    part.Header.IndexCount = static_cast<std::int32_t>(part.Indices.size());
    return part;
}

namespace {

ImportPartResult FinishFrom(ImportMeshResult made, const std::string& texture) {
    ImportPartResult result;
    if (made.error.empty())
        result.part = FinishImportPart(OptimiseImportMesh(std::move(made.mesh), Importer.Settings), texture,
                                       CurrentProject.OIF.Header.PartCount);
    else result.error = std::move(made.error);
    TheDesktop().HideLoading();
    return result;
}

}  // namespace

ImportPartResult Make3DSImportPart(const std::string& texture, ImportSheet sheet) {
    TheDesktop().ShowLoading(Processing3DSText);
    return FinishFrom(Work3DSMesh(Table3DS, Importer.ImportTextures, Importer.Settings, sheet), texture);
}

ImportPartResult MakeRAVImportPart(RAVFile& rav, const std::string& texture, ImportSheet sheet) {
    TheDesktop().ShowLoading(ProcessingRAVText);
    FixCrowdPolygons(rav);
    return FinishFrom(WorkRAVMesh(rav, Importer.ImportTextures, Importer.Settings, sheet), texture);
}
