// The 3DS reader over arbitrary bytes. Besides memory safety (the sanitizers): an accepted file
// has every face inside its mesh, and the part made of it by the fast weld and duplicate
// removal is the part of the pairwise rule, with every strip index naming a kept vertex.
#include <cstdint>
#include <cstring>

#include "FuzzCheck.h"
#include "exchange/mdl3DS.h"

namespace {

// Equal to the bit, so that a NaN kept by both methods counts as the same.
bool SameBits(const OIFPart& a, const OIFPart& b) {
    return a.Header == b.Header && a.Indices == b.Indices && a.Vertices.size() == b.Vertices.size() &&
           (a.Vertices.empty() ||
            std::memcmp(a.Vertices.data(), b.Vertices.data(), a.Vertices.size() * sizeof(OIFVertex)) == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Parse3DS parsed = Parse3DSBytes(ByteBuffer(data, data + size));
    if (!parsed.error.empty()) {
        FUZZ_CHECK(parsed.model == Model3DS{}, "a refused file leaves no tables");
        return 0;
    }
    std::size_t vertices = 0;
    for (const Mesh3DS& mesh : parsed.model.meshes) {
        FUZZ_CHECK(mesh.vertexCount == static_cast<std::int32_t>(mesh.vertices.size()), "vertex count matches");
        FUZZ_CHECK(mesh.faceCount == static_cast<std::int32_t>(mesh.faces.size()), "face count matches");
        for (const Face3DS& f : mesh.faces)
            FUZZ_CHECK(f.a < mesh.vertexCount && f.b < mesh.vertexCount && f.c < mesh.vertexCount,
                       "face inside its mesh");
        vertices += mesh.vertices.size();
    }
    // The pairwise rule is quadratic: compare on models small enough to stay fast.
    if (vertices > 3000) return 0;
    const auto weld = static_cast<std::int32_t>(size % 4);
    const Make3DSOptions options{true, static_cast<std::int16_t>(size % 2), static_cast<std::int16_t>(weld > 0), weld};
    const Part3DS fast = Make3DSPartFrom(parsed.model, options, 0);
    const Part3DS reference = Make3DSPartReference(parsed.model, options, 0);
    FUZZ_CHECK(fast.error == reference.error, "both methods refuse alike");
    FUZZ_CHECK(SameBits(fast.part, reference.part), "the fast part is the pairwise part");
    for (const std::int16_t index : fast.part.Indices)
        FUZZ_CHECK(static_cast<std::uint16_t>(index) < fast.part.Vertices.size(), "strip index names a kept vertex");
    return 0;
}
