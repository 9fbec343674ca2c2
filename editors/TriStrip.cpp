#include "editors/TriStrip.h"

#include <algorithm>
#include <map>

#include <meshoptimizer.h>

namespace {
std::map<std::int32_t, std::vector<std::int32_t>> results;
std::int32_t nextHandle = 1;
}  // namespace

std::int32_t StripTriangles(std::int32_t triangleCount, const std::int32_t* indices, std::size_t indexCount) {
    const std::size_t count = triangleCount > 0 ? std::min<std::size_t>(static_cast<std::size_t>(triangleCount) * 3, indexCount - indexCount % 3) : 0;
    // Indices are 16-bit in the document; a negative one is the same vertex read unsigned.
    std::vector<unsigned int> in(count);
    unsigned int vertexCount = 0;
    for (std::size_t i = 0; i < count; ++i) {
        in[i] = static_cast<unsigned int>(indices[i]) & 0xFFFFu;
        vertexCount = std::max(vertexCount, in[i] + 1);
    }
    std::vector<unsigned int> strip(meshopt_stripifyBound(count));
    const std::size_t n = count ? meshopt_stripify(strip.data(), in.data(), count, vertexCount, 0) : 0;
    std::vector<std::int32_t> result(n);
    for (std::size_t i = 0; i < n; ++i) result[i] = static_cast<std::int32_t>(strip[i]);
    const std::int32_t handle = nextHandle++;
    results[handle] = std::move(result);
    return handle;
}

std::int32_t GetTriStripCount(std::int32_t handle) {
    const auto it = results.find(handle);
    return it == results.end() ? 0 : static_cast<std::int32_t>(it->second.size());
}

void GetTriStripData(std::int32_t handle, std::int32_t* out) {
    const auto it = results.find(handle);
    if (it != results.end()) std::copy(it->second.begin(), it->second.end(), out);
}

void CleanUpData(std::int32_t handle) { results.erase(handle); }

std::vector<std::int16_t> StripPartIndices(const std::vector<std::int16_t>& triangles) {
    std::vector<std::int32_t> in(triangles.begin(), triangles.end());
    const std::int32_t handle =
        StripTriangles(static_cast<std::int32_t>(triangles.size() / 3), in.data(), in.size());
    std::vector<std::int32_t> out(static_cast<std::size_t>(GetTriStripCount(handle)));
    GetTriStripData(handle, out.data());
    CleanUpData(handle);
    return std::vector<std::int16_t>(out.begin(), out.end());
}
