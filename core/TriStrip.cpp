#include "core/TriStrip.h"

#include <algorithm>
#include <map>
#include <memory>

#include <meshoptimizer.h>

namespace {

std::map<std::int32_t, std::vector<std::int32_t>> results;
std::int32_t nextHandle = 1;

// Strips `count` indices (whole triangles) read through `at`; hands each strip entry to `put`.
// Indices are 16-bit in the document: a negative one is the same vertex read unsigned.
template <class Read, class Put>
void Strip(std::size_t count, Read at, Put put) {
    if (count == 0) return;
    std::unique_ptr<unsigned int[]> in(new unsigned int[count]);
    unsigned int vertexCount = 0;
    for (std::size_t i = 0; i < count; ++i) {
        in[i] = static_cast<unsigned int>(at(i)) & 0xFFFFu;
        vertexCount = std::max(vertexCount, in[i] + 1);
    }
    // Left uninitialised: the stripper writes what it returns, and the bound is far larger.
    std::unique_ptr<unsigned int[]> strip(new unsigned int[meshopt_stripifyBound(count)]);
    const std::size_t n = meshopt_stripify(strip.get(), in.get(), count, vertexCount, 0);
    put(strip.get(), n);
}

}  // namespace

std::int32_t StripTriangles(std::int32_t triangleCount, const std::int32_t* indices, std::size_t indexCount) {
    const std::size_t whole = indexCount - indexCount % 3;
    const std::size_t count = triangleCount > 0 ? std::min(static_cast<std::size_t>(triangleCount) * 3, whole) : 0;
    std::vector<std::int32_t> result;
    Strip(
        count, [&](std::size_t i) { return indices[i]; },
        [&](const unsigned int* s, std::size_t n) { result.assign(s, s + n); });
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
    // The same stripping as the handle calls, without their copies in and out.
    std::vector<std::int16_t> out;
    Strip(
        triangles.size() - triangles.size() % 3,
        [&](std::size_t i) { return static_cast<std::uint16_t>(triangles[i]); },
        [&](const unsigned int* s, std::size_t n) {
            out.resize(n);
            for (std::size_t i = 0; i < n; ++i) out[i] = static_cast<std::int16_t>(s[i]);
        });
    return out;
}
