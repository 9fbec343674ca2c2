#pragma once
// Hand-made 3DS chunks for tests and benchmarks: each helper gives the complete bytes of one
// chunk, header included, so files are written as nested calls.
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>
#include <vector>

namespace chunks3ds {

using Bytes3DS = std::vector<std::uint8_t>;

inline void Put16(Bytes3DS& b, std::uint16_t v) { b.insert(b.end(), {std::uint8_t(v), std::uint8_t(v >> 8)}); }
inline void Put32(Bytes3DS& b, std::uint32_t v) { Put16(b, std::uint16_t(v)), Put16(b, std::uint16_t(v >> 16)); }
inline void PutFloat(Bytes3DS& b, float f) { Put32(b, std::bit_cast<std::uint32_t>(f)); }
inline Bytes3DS Text(const std::string& s) { return Bytes3DS(s.c_str(), s.c_str() + s.size() + 1); }
inline Bytes3DS I16(std::int16_t v) { return {std::uint8_t(v), std::uint8_t(std::uint16_t(v) >> 8)}; }
inline Bytes3DS I32(std::int32_t v) {
    Bytes3DS b;
    Put32(b, std::uint32_t(v));
    return b;
}

// A chunk of the given id whose payload is the pieces one after the other.
inline Bytes3DS Chunk(std::uint16_t id, std::initializer_list<Bytes3DS> pieces = {}) {
    Bytes3DS b = {std::uint8_t(id), std::uint8_t(id >> 8), 0, 0, 0, 0};
    for (const Bytes3DS& p : pieces) b.insert(b.end(), p.begin(), p.end());
    const auto length = static_cast<std::uint32_t>(b.size());
    std::memcpy(b.data() + 2, &length, 4);
    return b;
}

template <std::size_t N>
Bytes3DS Floats(std::uint16_t id, const std::vector<std::array<float, N>>& points) {
    Bytes3DS b = I16(static_cast<std::int16_t>(points.size()));
    for (const auto& p : points)
        for (float f : p) PutFloat(b, f);
    return Chunk(id, {b});
}
inline Bytes3DS Vertices(const std::vector<std::array<float, 3>>& points) { return Floats(0x4110, points); }
inline Bytes3DS TexVerts(const std::vector<std::array<float, 2>>& uvs) { return Floats(0x4140, uvs); }
inline Bytes3DS Faces(const std::vector<std::array<std::uint16_t, 3>>& faces,
                      std::initializer_list<Bytes3DS> sub = {}) {
    Bytes3DS b = I16(static_cast<std::int16_t>(faces.size()));
    for (const auto& f : faces) {
        for (std::uint16_t i : f) Put16(b, i);
        Put16(b, 7);
    }
    for (const Bytes3DS& s : sub) b.insert(b.end(), s.begin(), s.end());
    return Chunk(0x4120, {b});
}
inline Bytes3DS FaceMaterial(const std::string& name) { return Chunk(0x4130, {Text(name), I16(0)}); }
inline Bytes3DS Material(const std::string& name, const std::string& file) {
    return Chunk(0xAFFF, {Chunk(0xA000, {Text(name)}), Chunk(0xA200, {Chunk(0xA300, {Text(file)})})});
}
inline Bytes3DS MaterialNamed(const std::string& name) { return Chunk(0xAFFF, {Chunk(0xA000, {Text(name)})}); }
inline Bytes3DS Object(const std::string& name, std::initializer_list<Bytes3DS> meshChunks) {
    return Chunk(0x4000, {Text(name), Chunk(0x4100, meshChunks)});
}
inline Bytes3DS File(std::initializer_list<Bytes3DS> editChunks) {
    return Chunk(0x4D4D, {Chunk(0x0002, {I32(3)}), Chunk(0x3D3D, editChunks)});
}

// `quads` meshes of four vertices, each a unit square on the ground, two units apart along x.
inline Bytes3DS QuadMeshes(int quads, std::initializer_list<Bytes3DS> moreChunks = {}) {
    Bytes3DS edit;
    for (int i = 0; i < quads; ++i) {
        const auto x = static_cast<float>(2 * i);
        const Bytes3DS mesh =
            Object("quad" + std::to_string(i),
                   {Vertices({{x, 0, 0}, {x + 1, 0, 0}, {x + 1, 0, 1}, {x, 0, 1}}), Faces({{0, 1, 2}, {0, 2, 3}})});
        edit.insert(edit.end(), mesh.begin(), mesh.end());
    }
    for (const Bytes3DS& c : moreChunks) edit.insert(edit.end(), c.begin(), c.end());
    return Chunk(0x4D4D, {Chunk(0x0002, {I32(3)}), Chunk(0x3D3D, {edit})});
}

}  // namespace chunks3ds
