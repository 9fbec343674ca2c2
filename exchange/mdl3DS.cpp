#include "exchange/mdl3DS.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <numeric>
#include <unordered_map>
#include <utility>

#include "core/Desktop.h"
#include "core/ProgramState.h"
#include "core/Shading.h"
#include "core/TriStrip.h"
#include "exchange/VertexWeld.h"

Model3DS Table3DS;

using namespace binaryOps;

namespace {

std::function<void(const std::string&)>& LogSink() {
    static std::function<void(const std::string&)> sink;
    return sink;
}

std::string Hex(std::uint32_t value) {
    char text[16];
    std::snprintf(text, sizeof text, "%X", static_cast<unsigned>(value));
    return text;
}

constexpr std::uint32_t HeaderSize = 6;

// Walks the chunks of one file. The current mesh and material are kept from one object to the
// next, so that an object without texture vertices or face material reuses those of the one
// before it: files written that way rely on it.
class ChunkWalker {
public:
    explicit ChunkWalker(const ByteBuffer& bytes) : bytes_(bytes) {}

    Parse3DS Run() {
        Parse3DS result;
        if (bytes_.size() < HeaderSize || GetU16(0) != 0x4D4D) {
            result.error = Invalid3DSMessage;
            return result;
        }
        try {
            Log3DS("PRIMARY");
            const Chunk3DS primary = Header(0, bytes_.size(), "the file");
            EachChild(primary, HeaderSize, [&](const Chunk3DS& c) { TopLevel(c); });
            // Every use of a model is its meshes: one without any would add an empty part.
            if (model_.meshes.empty()) Refuse("it holds no mesh.");
            result.model = std::move(model_);
        } catch (const Refusal& refusal) {
            result.error = "This 3ds file is damaged and was not loaded: " + refusal.why;
        }
        return result;
    }

private:
    struct Refusal {
        std::string why;
    };

    [[noreturn]] static void Refuse(std::string why) { throw Refusal{std::move(why)}; }

    std::uint16_t GetU16(std::size_t pos) const { return static_cast<std::uint16_t>(GetI16(bytes_, pos)); }

    static std::string Describe(const Chunk3DS& c) {
        return "the chunk 0x" + Hex(c.id) + " at byte " + std::to_string(c.position);
    }

    // The header at pos, which must lie with all its length inside [pos, end).
    Chunk3DS Header(std::size_t pos, std::size_t end, const char* parent) const {
        Chunk3DS c;
        c.id = GetU16(pos);
        c.length = GetU32(bytes_, pos + 2);
        c.position = static_cast<std::uint32_t>(pos);
        if (c.length < HeaderSize) Refuse(Describe(c) + " is shorter than its own header.");
        if (c.length > end - pos) Refuse(Describe(c) + " runs past the end of " + parent + ".");
        return c;
    }

    // Reads the chunks inside `parent` from `start` on, each stepped over by its length
    // whatever its handler read. A few bytes left over at the end, too few for a header, are
    // padding and ignored.
    template <class Act>
    void EachChild(const Chunk3DS& parent, std::size_t start, Act act) {
        const std::size_t end = std::size_t{parent.position} + parent.length;
        std::size_t pos = start;
        while (pos < end && end - pos >= HeaderSize) {
            const Chunk3DS c = Header(pos, end, ("the chunk 0x" + Hex(parent.id) + " that holds it").c_str());
            act(c);
            pos = std::size_t{c.position} + c.length;
        }
    }

    static std::size_t Payload(const Chunk3DS& c) { return std::size_t{c.position} + HeaderSize; }
    static std::size_t End(const Chunk3DS& c) { return std::size_t{c.position} + c.length; }

    void Need(const Chunk3DS& c, std::size_t from, std::size_t bytes, const char* what) const {
        if (from > End(c) || End(c) - from < bytes) Refuse(Describe(c) + " is too short for " + what + ".");
    }

    // A zero-terminated string inside the chunk; one without its terminator ends at the chunk.
    std::string String(const Chunk3DS& c, std::size_t& pos) const {
        const std::size_t end = End(c);
        const std::size_t start = std::min(pos, end);
        std::size_t stop = start;
        while (stop < end && bytes_[stop] != 0) ++stop;
        pos = stop < end ? stop + 1 : end;
        return std::string(reinterpret_cast<const char*>(bytes_.data()) + start, stop - start);
    }

    std::int16_t Count(const Chunk3DS& c, const char* what, bool zeroAllowed) const {
        Need(c, Payload(c), 2, "its count");
        const std::int16_t n = GetI16(bytes_, Payload(c));
        if (n < 0 || (n == 0 && !zeroAllowed)) Refuse(Describe(c) + " gives " + std::to_string(n) + " " + what + ".");
        return n;
    }

    // A version chunk at either level: its name, then its number one level deeper.
    void Version(const Chunk3DS& c, const std::string& depth, const char* name) {
        Log3DS(depth + name);
        Need(c, Payload(c), 4, "a version");
        Log3DS(depth + "--Version = " + std::to_string(GetI32(bytes_, Payload(c))));
    }

    void TopLevel(const Chunk3DS& c) {
        switch (c.id) {
        case 0x0002: Version(c, "--", "VERSION"); break;
        case 0x3D3D:
            Log3DS("--EDIT3DS");
            EachChild(c, Payload(c), [&](const Chunk3DS& s) { Edit(s); });
            break;
        case 0xB000:
            Log3DS("--KEYF3DS");
            EachChild(c, Payload(c), [&](const Chunk3DS& s) { Log3DS("----0x" + Hex(s.id)); });
            break;
        default: Log3DS("--0x" + Hex(c.id));
        }
    }

    void Edit(const Chunk3DS& c) {
        switch (c.id) {
        case 0x3D3E: Version(c, "----", "MESH_VERSION"); break;
        case 0xAFFF:
            Log3DS("----MATERIAL");
            EachChild(c, Payload(c), [&](const Chunk3DS& s) { Material(s); });
            model_.materials.push_back(material_);
            break;
        case 0x4000: {
            Log3DS("----NAMED_OBJECT");
            std::size_t pos = Payload(c);
            mesh_.name = String(c, pos);
            Log3DS("------Name = " + mesh_.name);
            EachChild(c, pos, [&](const Chunk3DS& s) { Object(s); });
            break;
        }
        default: Log3DS("----0x" + Hex(c.id));
        }
    }

    void Material(const Chunk3DS& c) {
        switch (c.id) {
        case 0xA000: {
            Log3DS("------MAT_NAME");
            std::size_t pos = Payload(c);
            material_.name = String(c, pos);
            Log3DS("--------Name = " + material_.name);
            break;
        }
        case 0xA200:
            Log3DS("------MAT_TEXMAP");
            EachChild(c, Payload(c), [&](const Chunk3DS& s) {
                if (s.id == 0xA300) {
                    Log3DS("--------MAT_TEXFLNM");
                    std::size_t pos = Payload(s);
                    material_.textureFile = String(s, pos);
                    Log3DS("----------Filename = " + material_.textureFile);
                } else {
                    Log3DS("--------0x" + Hex(s.id));
                }
            });
            break;
        default: Log3DS("------0x" + Hex(c.id));
        }
    }

    void Object(const Chunk3DS& c) {
        if (c.id != 0x4100) {
            Log3DS("------0x" + Hex(c.id));
            return;
        }
        Log3DS("------OBJ_MESH");
        EachChild(c, Payload(c), [&](const Chunk3DS& s) { Mesh(s); });
        for (const Face3DS& f : mesh_.faces) {
            if (std::max({f.a, f.b, f.c}) >= mesh_.vertexCount)
                Refuse("the mesh \"" + mesh_.name + "\" has a face on vertex " +
                       std::to_string(std::max({f.a, f.b, f.c})) + " but only " + std::to_string(mesh_.vertexCount) +
                       " vertices.");
        }
        model_.meshes.push_back(mesh_);
    }

    void Mesh(const Chunk3DS& c) {
        switch (c.id) {
        case 0x4110: {
            Log3DS("--------MESH_VERTICES");
            const std::int16_t n = Count(c, "vertices", false);
            Need(c, Payload(c) + 2, std::size_t{12} * n, "its vertices");
            mesh_.vertices.resize(n);
            std::size_t pos = Payload(c) + 2;
            for (Vertex3DS& v : mesh_.vertices) {
                v = Vertex3DS{GetF32(bytes_, pos), GetF32(bytes_, pos + 4), GetF32(bytes_, pos + 8)};
                pos += 12;
            }
            mesh_.vertexCount = n;
            Log3DS("----------Loaded " + std::to_string(n) + " vertices");
            break;
        }
        case 0x4140: {
            Log3DS("--------MESH_TEX_VERT");
            const std::int16_t n = Count(c, "texture vertices", true);
            Need(c, Payload(c) + 2, std::size_t{8} * n, "its texture vertices");
            mesh_.texVerts.resize(n);
            std::size_t pos = Payload(c) + 2;
            for (TexVert3DS& t : mesh_.texVerts) {
                t = TexVert3DS{GetF32(bytes_, pos), GetF32(bytes_, pos + 4)};
                pos += 8;
            }
            mesh_.texVertCount = n;
            Log3DS("----------Loaded " + std::to_string(n) + " texture verts");
            break;
        }
        case 0x4160:
            Log3DS("--------MESH_XFMATRIX");
            Need(c, Payload(c), 48, "a matrix");
            for (std::size_t i = 0; i < 12; ++i) mesh_.matrix[i] = GetF32(bytes_, Payload(c) + 4 * i);
            break;
        case 0x4165: Log3DS("--------MESH_COLOR_IND (nl)"); break;
        case 0x4120: {
            Log3DS("--------MESH_FACES");
            const std::int16_t n = Count(c, "faces", false);
            Need(c, Payload(c) + 2, std::size_t{8} * n, "its faces");
            mesh_.faces.resize(n);
            std::size_t pos = Payload(c) + 2;
            for (Face3DS& f : mesh_.faces) {
                f = {GetU16(pos), GetU16(pos + 2), GetU16(pos + 4), GetU16(pos + 6)};
                pos += 8;
            }
            mesh_.faceCount = n;
            Log3DS("----------Loaded " + std::to_string(n) + " faces");
            EachChild(c, pos, [&](const Chunk3DS& s) { FaceDetail(s); });
            break;
        }
        default: Log3DS("--------0x" + Hex(c.id));
        }
    }

    void FaceDetail(const Chunk3DS& c) {
        if (c.id == 0x4130) {
            Log3DS("----------MESH_MATER");
            std::size_t pos = Payload(c);
            mesh_.materialName = String(c, pos);
            Log3DS("------------Name = " + mesh_.materialName);
        } else if (c.id == 0x4150) {
            Log3DS("----------MESH_SMOOTH (nl)");
        } else {
            Log3DS("----------0x" + Hex(c.id));
        }
    }

    const ByteBuffer& bytes_;
    Model3DS model_;
    Mesh3DS mesh_;
    Material3DS material_;
};

// ---- the part

struct Working {
    std::vector<OIFVertex> vertices;
    std::vector<std::int32_t> indices;
};

// Joins the meshes in game axes (3DS is z-up) and units, 100 to a 3DS unit.
std::string JoinMeshes(const Model3DS& model, Working& w) {
    std::size_t vertexTotal = 0, indexTotal = 0;
    for (const Mesh3DS& mesh : model.meshes) {
        if (std::string problem = MeshProblem(mesh); !problem.empty()) return problem;
        vertexTotal += static_cast<std::size_t>(mesh.vertexCount);
        indexTotal += 3 * static_cast<std::size_t>(mesh.faceCount);
    }
    w.vertices.reserve(vertexTotal);
    w.indices.reserve(indexTotal);
    std::int32_t base = 0;
    for (const Mesh3DS& mesh : model.meshes) {
        for (std::int32_t f = 0; f < mesh.faceCount; ++f) {
            const Face3DS& face = mesh.faces[f];
            w.indices.insert(w.indices.end(), {face.a + base, face.b + base, face.c + base});
        }
        for (std::int32_t i = 0; i < mesh.vertexCount; ++i) w.vertices.push_back(WorkVertex(mesh, i));
        base += mesh.vertexCount;
    }
    return {};
}

void WeldPairwise(std::vector<OIFVertex>& v, double t) {
    if (!(t > 0)) return;
    for (std::size_t i = 0; i < v.size(); ++i) {
        for (std::size_t j = i + 1; j < v.size(); ++j)
            if (Near(v[i], v[j], t)) PlaceAt(v[j], v[i]);
        PumpEvents();
    }
}

// Returns for each vertex the place of its first equal in the kept list.
std::vector<std::int32_t> KeepFirstPairwise(const std::vector<OIFVertex>& v, std::vector<OIFVertex>& kept) {
    std::vector<std::int32_t> where(v.size());
    for (std::size_t i = 0; i < v.size(); ++i) {
        std::size_t k = 0;
        while (k < kept.size() && !SameVertex(v[i], kept[k])) ++k;
        if (k == kept.size()) kept.push_back(v[i]);
        where[i] = static_cast<std::int32_t>(k);
        PumpEvents();
    }
    return where;
}

using WeldMethod = void (*)(std::vector<OIFVertex>&, double);
using KeepMethod = std::vector<std::int32_t> (*)(const std::vector<OIFVertex>&, std::vector<OIFVertex>&);

constexpr std::size_t MostVertices = 65536;  // what 16-bit indices reach

Part3DS MakePart(const Model3DS& model, const Make3DSOptions& options, std::int32_t partNumber, WeldMethod weld,
                 KeepMethod keep) {
    Part3DS result;
    OIFPart& part = result.part;
    part.Header.Name = "Part " + std::to_string(partNumber);
    Working w;
    result.error = JoinMeshes(model, w);
    if (!result.error.empty() || !options.doProcess) {
        if (!result.error.empty()) result.part = OIFPart{};
        return result;
    }
    ShadeByDistance(w.vertices, options.shadeMode == 1);
    if (options.weldMode == 1) {
        const double t = static_cast<double>(options.weldDistance) * 100.0;
        weld(w.vertices, t);
    }
    std::vector<OIFVertex> kept;
    const std::vector<std::int32_t> where = keep(w.vertices, kept);
    if (kept.size() > MostVertices) {
        result.part = OIFPart{};
        result.error = "The model has " + std::to_string(kept.size()) + " different vertices; a part holds at most " +
                       std::to_string(MostVertices) + ".";
        return result;
    }
    for (std::int32_t& index : w.indices) index = where[static_cast<std::size_t>(index)];

    const std::int32_t handle =
        StripTriangles(static_cast<std::int32_t>(w.indices.size() / 3), w.indices.data(), w.indices.size());
    std::vector<std::int32_t> strip(static_cast<std::size_t>(GetTriStripCount(handle)));
    GetTriStripData(handle, strip.data());
    CleanUpData(handle);

    part.Vertices = std::move(kept);
    part.Indices.reserve(strip.size());
    for (const std::int32_t index : strip) part.Indices.push_back(static_cast<std::int16_t>(index));
    part.Header.VertexCount = static_cast<std::int32_t>(part.Vertices.size());
    part.Header.IndexCount = static_cast<std::int32_t>(part.Indices.size());
    return result;
}

}  // namespace

OIFVertex GameVertex(const Vertex3DS& point) {
    OIFVertex v;
    v.X = point.x * 100.0f;
    v.Y = point.z * 100.0f;
    v.Z = -point.y * 100.0f;
    return v;
}

OIFVertex WorkVertex(const Mesh3DS& mesh, std::int32_t i) {
    const auto at = static_cast<std::size_t>(i);
    OIFVertex v = GameVertex(mesh.vertices[at]);
    v.Shadow = 0xFFFFFFFFu;
    v.U = mesh.texVerts[at].u;
    v.V = mesh.texVerts[at].v;
    return v;
}

std::string MeshProblem(const Mesh3DS& mesh) {
    const std::string quoted = "\"" + mesh.name + "\"";
    if (mesh.vertexCount < 0 || mesh.faceCount < 0 ||
        static_cast<std::size_t>(mesh.vertexCount) > mesh.vertices.size() ||
        static_cast<std::size_t>(mesh.faceCount) > mesh.faces.size())
        return "The mesh " + quoted + " holds fewer vertices or faces than its counts say.";
    for (std::int32_t f = 0; f < mesh.faceCount; ++f) {
        const Face3DS& face = mesh.faces[static_cast<std::size_t>(f)];
        if (std::max({face.a, face.b, face.c}) >= mesh.vertexCount)
            return "The mesh " + quoted + " has a face on a vertex it does not have.";
    }
    const std::size_t coordinates = mesh.texVerts.size();
    if (coordinates < static_cast<std::size_t>(mesh.vertexCount))
        return "The mesh " + quoted + " has " + std::to_string(mesh.vertexCount) + " vertices but only " +
               std::to_string(coordinates) + " texture coordinates; every vertex needs one.";
    return {};
}

Parse3DS Parse3DSBytes(const ByteBuffer& bytes) { return ChunkWalker(bytes).Run(); }

bool Read3DSFile(const std::string& path) {
    Table3DS = Model3DS{};
    Desktop& desktop = TheDesktop();
    desktop.ShowLoading(Loading3DSText);
    Parse3DS parsed;
    try {
        parsed = Parse3DSBytes(ReadFileBytes(path));
    } catch (const std::exception& e) { parsed.error = e.what(); }
    desktop.HideLoading();
    if (!parsed.error.empty()) {
        ShowMessage(parsed.error, MessageIcon::Exclamation);
        return false;
    }
    Table3DS = std::move(parsed.model);
    return true;
}

std::string Material3DSTexture(const Model3DS& model, const std::string& materialName) {
    for (const Material3DS& m : model.materials)
        if (m.name == materialName) return m.textureFile;
    return {};
}

std::string Material3DSTexture(const std::string& materialName) { return Material3DSTexture(Table3DS, materialName); }

void Log3DS(const std::string& text) {
    if (LogSink()) LogSink()(text);
}

std::function<void(const std::string&)> SetLog3DSSink(std::function<void(const std::string&)> sink) {
    return std::exchange(LogSink(), std::move(sink));
}

Part3DS Make3DSPartFrom(const Model3DS& model, const Make3DSOptions& options, std::int32_t partNumber) {
    return MakePart(model, options, partNumber, WeldNearGrid, KeepFirstHashed);
}

Part3DS Make3DSPartReference(const Model3DS& model, const Make3DSOptions& options, std::int32_t partNumber) {
    return MakePart(model, options, partNumber, WeldPairwise, KeepFirstPairwise);
}

std::optional<OIFPart> Make3DSPart(const Make3DSOptions& options) {
    Desktop& desktop = TheDesktop();
    desktop.ShowLoading(Loading3DSText);
    Part3DS made = Make3DSPartFrom(Table3DS, options, CurrentProject.OIF.Header.PartCount);
    desktop.HideLoading();
    if (!made.error.empty()) {
        ShowMessage(made.error, MessageIcon::Exclamation);
        return std::nullopt;
    }
    return std::move(made.part);
}
