#pragma once
// Autodesk 3DS files: the meshes, texture coordinates, faces and materials that stadium work
// needs, and the one part welded from them. Everything else in a file is stepped over by its
// chunk length.
#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/binaryOps.h"
#include "core/oif.h"

inline constexpr const char* Invalid3DSMessage = "not a valid 3ds file!";
inline constexpr const char* Loading3DSText = "Loading 3ds file...";

struct Chunk3DS {
    std::uint16_t id = 0;
    std::uint32_t length = 0;    // as in the file, the 6 header bytes included
    std::uint32_t position = 0;  // offset of the chunk's first header byte
};

struct Material3DS {
    std::string name;
    std::string textureFile;
    std::int32_t textureIndex = 0;
    bool operator==(const Material3DS&) const = default;
};

struct Vertex3DS {
    float x = 0, y = 0, z = 0;
    bool operator==(const Vertex3DS&) const = default;
};
struct Face3DS {
    std::uint16_t a = 0, b = 0, c = 0, flags = 0;
    bool operator==(const Face3DS&) const = default;
};
struct TexVert3DS {
    float u = 0, v = 0;
    bool operator==(const TexVert3DS&) const = default;
};

struct Mesh3DS {
    std::string name;
    std::int32_t vertexCount = 0;
    std::int32_t faceCount = 0;
    std::int32_t texVertCount = 0;
    std::vector<Vertex3DS> vertices;
    std::vector<Face3DS> faces;
    std::vector<TexVert3DS> texVerts;
    std::array<float, 12> matrix{};  // read and never used
    std::string materialName;
    bool operator==(const Mesh3DS&) const = default;
};

struct Model3DS {
    std::vector<Mesh3DS> meshes;
    std::vector<Material3DS> materials;
    bool operator==(const Model3DS&) const = default;
};

struct Parse3DS {
    Model3DS model;     // empty on a refusal
    std::string error;  // empty when the bytes were read
};

// Reads a whole 3DS file held in memory. Every chunk is checked against its parent and every
// count against its chunk before anything is read, and each face index against its mesh, so a
// refused file is refused as a whole.
Parse3DS Parse3DSBytes(const ByteBuffer& bytes);

// The program-wide table that each Read3DSFile refills and the callers read right after it.
extern Model3DS Table3DS;

// Fills Table3DS from the file at path with the progress window up. A refused file leaves the
// table empty, is reported in a message box, and gives false.
bool Read3DSFile(const std::string& path);

// The texture file of the first material of that exact name; empty when none has it.
std::string Material3DSTexture(const Model3DS& model, const std::string& materialName);
std::string Material3DSTexture(const std::string& materialName);

// The trace of the chunk walk: every line goes through here, and by default nowhere. A sink
// switches it on (the returned one is what was installed before).
void Log3DS(const std::string& text);
std::function<void(const std::string&)> SetLog3DSSink(std::function<void(const std::string&)> sink);

// A 3DS point in the game's axes and units: 3DS is z-up in metres, the game y-up in
// centimetres, so (x, y, z) becomes (x * 100, z * 100, -y * 100). Colour and UV are 0.
OIFVertex GameVertex(const Vertex3DS& point);
// Vertex i of the mesh as the first working vertex of a part: GameVertex, white, and the mesh's
// texture coordinates unchanged. The mesh has passed MeshProblem.
OIFVertex WorkVertex(const Mesh3DS& mesh, std::int32_t i);
// Why the mesh cannot be made into part geometry, as the message the user sees; "" when it can:
// counts beyond what was read, a face on a vertex the mesh does not have, or fewer texture
// coordinates than vertices.
std::string MeshProblem(const Mesh3DS& mesh);

struct Make3DSOptions {
    bool doProcess = true;
    std::int16_t shadeMode = 1;  // 1: shaded by distance; anything else: flat grey
    std::int16_t weldMode = 0;   // 1: vertices nearer than weldDistance metres are welded
    std::int32_t weldDistance = 0;
};

struct Part3DS {
    OIFPart part;
    std::string error;  // empty when the part was made
};

// Joins every mesh into one part in game axes and units, shades, welds, removes duplicate
// vertices and strips the triangles. `partNumber` goes into the name "Part <n>".
Part3DS Make3DSPartFrom(const Model3DS& model, const Make3DSOptions& options, std::int32_t partNumber);

// The same, by the plain pairwise comparisons that define what welding and duplicate removal
// mean. Kept as the reference that the fast method is proven against.
Part3DS Make3DSPartReference(const Model3DS& model, const Make3DSOptions& options, std::int32_t partNumber);

// The part from Table3DS, named after the current document's part count, with the progress
// window up. A model that cannot make a part is reported in a message box and gives nothing.
std::optional<OIFPart> Make3DSPart(const Make3DSOptions& options);
