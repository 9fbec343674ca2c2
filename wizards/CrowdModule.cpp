#include "wizards/CrowdModule.h"

#include <cmath>
#include <filesystem>
#include <stdexcept>

#include "core/Desktop.h"
#include "core/FileOps.h"
#include "core/NumberOps.h"
#include "core/NumberText.h"
#include "core/OIFOps.h"
#include "core/ProgramState.h"
#include "core/Views.h"
#include "core/myOps.h"
#include "editors/PartOps.h"
#include "shell/IniOps.h"

namespace {

struct Edge {
    float x, y, z;
};

Edge Between(const OIFVertex& from, const OIFVertex& to) { return {to.X - from.X, to.Y - from.Y, to.Z - from.Z}; }

// The point `i` steps of edge / rows along from `start`, raised by `lift`.
OIFVertex Step(const OIFVertex& start, const Edge& edge, std::int16_t rows, int i, float lift) {
    const auto along = [&](float e) { return e / static_cast<float>(rows) * static_cast<float>(i); };
    OIFVertex p;
    p.X = start.X + along(edge.x);
    p.Y = start.Y + along(edge.y) + lift;
    p.Z = start.Z + along(edge.z);
    p.Shadow = CrowdRowShadow;
    return p;
}

void SetUV(OIFVertex& v, float u, float w) {
    v.U = u;
    v.V = w;
}

// Puts the crowd height back to 0 however the import ends.
struct HeightInForce {
    explicit HeightInForce(float height) { CrowdHeightInForce = height; }
    ~HeightInForce() { CrowdHeightInForce = 0; }
    HeightInForce(const HeightInForce&) = delete;
    HeightInForce& operator=(const HeightInForce&) = delete;
};

float BoxValue(const std::string& text) { return static_cast<float>(LeadingNumber(text)); }

std::int16_t RowCount(const std::string& text) {
    const double n = std::nearbyint(LeadingNumber(text));
    if (!(n >= INT16_MIN && n <= INT16_MAX)) throw std::runtime_error("The number of rows must be at most 32767.");
    return static_cast<std::int16_t>(n);
}

// A plane from a mesh or the typed corners: only the places count.
CrowdRow Plane(const std::array<Point3, 4>& corners) {
    // Bottom Left, Bottom Right, Top Right, Top Left are V2, V1, V0, V3.
    static constexpr int place[4] = {2, 1, 0, 3};
    CrowdRow plane;
    for (std::size_t i = 0; i < 4; ++i) {
        OIFVertex& v = plane.V[static_cast<std::size_t>(place[i])];
        v.X = corners[i].x;
        v.Y = corners[i].y;
        v.Z = corners[i].z;
    }
    return plane;
}

}  // namespace

std::vector<CrowdRow> MakeCrowdRows(const CrowdRow& plane, std::int16_t& rows, float rowHeight, float tileWidth,
                                    float spacing) {
    const Edge right = Between(plane.V[1], plane.V[0]);
    const Edge left = Between(plane.V[2], plane.V[3]);
    if (spacing != 0) {
        const float n = std::sqrt(left.x * left.x + left.z * left.z) / spacing;
        try {
            const int count = RoundDownInt(n) + 1;
            if (count > INT16_MAX) throw std::overflow_error("Overflow");
            rows = static_cast<std::int16_t>(count);
        } catch (const std::overflow_error&) {
            throw std::runtime_error("The crowd spacing gives more than 32767 rows.");
        }
    }
    if (rows < 1)
        throw std::runtime_error("The number of rows is " + std::to_string(rows) + ": it must be at least 1.");
    std::vector<CrowdRow> result(static_cast<std::size_t>(rows));
    for (int i = 0; i < rows; ++i) {
        CrowdRow& row = result[static_cast<std::size_t>(i)];
        row.V[2] = Step(plane.V[2], left, rows, i, 0);
        row.V[3] = Step(plane.V[2], left, rows, i, rowHeight);
        row.V[1] = Step(plane.V[1], right, rows, i, 0);
        row.V[0] = Step(plane.V[1], right, rows, i, rowHeight);
        const Edge base = Between(row.V[2], row.V[1]);
        const float d = std::sqrt(base.x * base.x + base.y * base.y + base.z * base.z);
        const auto s = static_cast<float>(RandomBetween(0, 1, false));
        const float e = d / tileWidth + s;
        // Odd rows run the texture the other way.
        const float leftU = i % 2 == 0 ? s : e, rightU = i % 2 == 0 ? e : s;
        SetUV(row.V[2], leftU, 1);
        SetUV(row.V[3], leftU, 0);
        SetUV(row.V[1], rightU, 1);
        SetUV(row.V[0], rightU, 0);
    }
    return result;
}

void AddPartVertex(OIFPart& part, const OIFVertex& vertex) {
    part.Vertices.push_back(vertex);
    part.Header.VertexCount += 1;
}

void AddPartIndex(OIFPart& part, std::int16_t index) {
    part.Indices.push_back(index);
    part.Header.IndexCount += 1;
}

OIFFile AddCrowdParts(const OIFFile& doc, const std::vector<CrowdRow>& rows, bool home) {
    OIFFile result = doc;
    const std::size_t first = result.Parts.size();
    const std::string side = home ? "h" : "a";
    for (std::size_t i = 0; i < 4; ++i) {
        OIFPart part;
        const std::string texture = "rw" + side + std::to_string(i);
        part.Header.Name = "Part " + std::to_string(first + i) + " [" + texture + "]";
        part.Header.Texture = texture;
        result.Parts.push_back(std::move(part));
    }
    for (const CrowdRow& row : rows) {
        OIFPart& part = result.Parts[first + static_cast<std::size_t>(RandomBetween(0, 3, true))];
        if (part.Vertices.size() + 4 > static_cast<std::size_t>(INT16_MAX) + 1)
            throw std::runtime_error("A crowd part holds at most 32768 vertices; there are too many rows.");
        for (int k : {1, 0, 2, 3}) AddPartVertex(part, row.V[static_cast<std::size_t>(k)]);
        const auto n = static_cast<int>(part.Vertices.size());
        if (part.Indices.empty()) {
            for (std::int16_t k = 0; k < 4; ++k) AddPartIndex(part, k);
        } else {
            // Two degenerate triangles bridge from the last row to this one.
            AddPartIndex(part, part.Indices.back());
            AddPartIndex(part, static_cast<std::int16_t>(n - 4));
            for (int k = 4; k >= 1; --k) AddPartIndex(part, static_cast<std::int16_t>(n - k));
        }
    }
    result.Header.PartCount += 4;
    MergeSameTexture(result, true);
    return result;
}

OIFFile BuildCrowdParts(const OIFFile& doc, RAVFile list, bool fixRows) {
    if (fixRows) FixCrowdPolygons(list);
    std::vector<CrowdRow> home, away;
    for (const RAVPolygon& polygon : list.polygons) {
        if (polygon.groups.size() != 1 || polygon.vertices.size() < 4) continue;
        const std::vector<OIFVertex>& v = polygon.vertices;
        const CrowdRow row{{v[2], v[1], v[0], v[3]}};
        (polygon.groups[0].name == AwayCrowdGroup ? away : home).push_back(row);
    }
    OIFFile result = doc;
    if (!home.empty()) result = AddCrowdParts(result, home, true);
    if (!away.empty()) result = AddCrowdParts(result, away, false);
    return result;
}

CrowdRow QuadFrom3DSMesh(const Mesh3DS& mesh) {
    static constexpr int place[4] = {2, 1, 0, 3};
    static constexpr float uv[4][2] = {{0, 1}, {1, 1}, {1, 0}, {0, 0}};
    CrowdRow row;
    for (std::size_t i = 0; i < 4; ++i) {
        OIFVertex& v = row.V[static_cast<std::size_t>(place[i])];
        v = GameVertex(mesh.vertices[i]);
        v.U = uv[i][0];
        v.V = uv[i][1];
    }
    return row;
}

std::vector<const Mesh3DS*> FourVertexMeshes(const Model3DS& model) {
    std::vector<const Mesh3DS*> meshes;
    for (const Mesh3DS& mesh : model.meshes)
        if (mesh.vertexCount == 4 && mesh.vertices.size() == 4) meshes.push_back(&mesh);
    return meshes;
}

bool ImportCrowdFile(const std::string& path, float height) {
    const HeightInForce inForce(height);
    const std::string extension = FileExtension(path);
    RAVFile list;
    if (extension == "txt") {
        bool ok = false;
        list = ReadRAVFile(path, &ok);
        if (!ok) return false;
    } else if (extension == "3ds") {
        if (!Read3DSFile(path)) return false;
        for (const Mesh3DS* mesh : FourVertexMeshes(Table3DS)) {
            CrowdRow row = QuadFrom3DSMesh(*mesh);
            if (height > 0) {
                row.V[0].Y = row.V[1].Y + height;
                row.V[3].Y = row.V[2].Y + height;
            }
            list = AppendCrowdRows({row}, Material3DSTexture(mesh->materialName), std::move(list));
        }
    } else {
        return false;
    }
    CurrentProject.OIF = BuildCrowdParts(CurrentProject.OIF, std::move(list), true);
    TheViews().RefreshPartsList();
    TheViews().RebuildPreviews();
    return true;
}

void importcrowd() {
    const std::string path = TheDesktop().OpenFile(ImportCrowdTitle, ImportCrowdFilter, "", "");
    if (path.empty() || !FileExists(path)) return;
    const bool fix =
        AskQuestion(RowHeightQuestion, MessageButtons::YesNo, MessageIcon::Question, ShortTitle) == MessageAnswer::Yes;
    ImportCrowdFile(path, fix ? static_cast<float>(ReadConfigNumber("Import", "CrowdHeight")) : 0.0f);
}

OIFFile MakeCrowds(const OIFFile& doc, const CrowdWizardInput& input, bool* modelRead) {
    const std::string group = input.home ? HomeCrowdGroup : AwayCrowdGroup;
    const float rowHeight = BoxValue(input.rowHeight);
    const float spacing = input.bySpacing ? BoxValue(input.spacing) : 0.0f;
    RAVFile list;
    const auto fill = [&](const CrowdRow& plane) {
        std::int16_t rows = RowCount(input.rows);
        list = AppendCrowdRows(MakeCrowdRows(plane, rows, rowHeight, CrowdTileWidth, spacing), group, std::move(list));
    };
    if (input.fromFile) {
        const bool read = Read3DSFile(input.file);
        if (modelRead) *modelRead = read;
        for (const Mesh3DS* mesh : FourVertexMeshes(Table3DS)) fill(QuadFrom3DSMesh(*mesh));
    } else {
        std::array<Point3, 4> corners;
        for (std::size_t i = 0; i < 4; ++i)
            corners[i] = {BoxValue(input.x[i]), BoxValue(input.y[i]), BoxValue(input.z[i])};
        fill(Plane(corners));
    }
    return BuildCrowdParts(doc, std::move(list), false);
}
