#include "exchange/VertexWeld.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <unordered_map>

// The same outcome as the pairwise rule without comparing every pair. Vertices that share a place
// form a group whose place never changes; a weld moves a whole group onto the group of the
// vertex being looked at. Groups sit in a grid of cells a little wider than the distance, so
// a vertex only meets the groups of the 27 cells around its own. The extra width keeps the
// rounding of the cell arithmetic from hiding a neighbour; places too far out for that
// arithmetic are kept in a list of their own and compared one by one.
void WeldNearGrid(std::vector<OIFVertex>& v, double t) {
    if (!(t > 0)) return;  // nothing is nearer than no distance
    const auto n = static_cast<std::uint32_t>(v.size());
    const double cellSize = t * 1.01;
    constexpr double gridLimit = 2199023255552.0;    // 2^41 cells from the origin
    constexpr double farFrom = 1099511627776.0 - 2;  // 2^40 - 2
    constexpr std::uint32_t None = 0xFFFFFFFFu;

    std::vector<std::uint32_t> parent(n);
    std::iota(parent.begin(), parent.end(), 0u);
    std::vector<std::uint32_t> pending(n, 1);  // members of a group still to be looked at
    const std::vector<OIFVertex> place = v;     // a group's place is its first vertex's
    auto find = [&](std::uint32_t x) {
        while (parent[x] != x) x = parent[x] = parent[parent[x]];
        return x;
    };

    struct Cell {
        std::int64_t x, y, z;
        bool operator==(const Cell&) const = default;
    };
    struct CellHash {
        std::size_t operator()(const Cell& c) const {
            std::uint64_t h = static_cast<std::uint64_t>(c.x) * 0x9E3779B97F4A7C15ull;
            h ^= static_cast<std::uint64_t>(c.y) * 0xC2B2AE3D27D4EB4Full + (h << 6) + (h >> 2);
            h ^= static_cast<std::uint64_t>(c.z) * 0x165667B19E3779F9ull + (h << 6) + (h >> 2);
            return static_cast<std::size_t>(h);
        }
    };

    // Number the occupied cells, then lay their members out cell by cell.
    std::unordered_map<Cell, std::uint32_t, CellHash> cellNumber;
    cellNumber.reserve(n);
    std::vector<Cell> cells;
    std::vector<std::uint32_t> cellOf(n, None), farList;
    for (std::uint32_t i = 0; i < n; ++i) {
        const OIFVertex& p = place[i];
        // A place with no finite coordinates is never near anything.
        if (!std::isfinite(p.X) || !std::isfinite(p.Y) || !std::isfinite(p.Z)) continue;
        const double qx = p.X / cellSize, qy = p.Y / cellSize, qz = p.Z / cellSize;
        const double q = std::max({std::fabs(qx), std::fabs(qy), std::fabs(qz)});
        if (q >= farFrom) farList.push_back(i);
        if (q >= gridLimit) continue;
        const Cell c{static_cast<std::int64_t>(std::floor(qx)), static_cast<std::int64_t>(std::floor(qy)),
                     static_cast<std::int64_t>(std::floor(qz))};
        const auto [it, added] = cellNumber.try_emplace(c, static_cast<std::uint32_t>(cells.size()));
        if (added) cells.push_back(c);
        cellOf[i] = it->second;
    }
    const std::size_t cellCount = cells.size();
    std::vector<std::uint32_t> begin(cellCount + 1, 0), end(cellCount), members(n);
    for (std::uint32_t i = 0; i < n; ++i)
        if (cellOf[i] != None) ++begin[cellOf[i] + 1];
    for (std::size_t c = 0; c < cellCount; ++c) begin[c + 1] += begin[c];
    std::copy(begin.begin(), begin.end() - 1, end.begin());
    for (std::uint32_t i = 0; i < n; ++i)
        if (cellOf[i] != None) members[end[cellOf[i]]++] = i;

    // The occupied cells around each cell, found once per cell rather than once per vertex.
    std::vector<std::uint32_t> aroundBegin(cellCount + 1, 0), around;
    around.reserve(cellCount * 9);
    for (std::size_t c = 0; c < cellCount; ++c) {
        for (std::int64_t dx = -1; dx <= 1; ++dx)
            for (std::int64_t dy = -1; dy <= 1; ++dy)
                for (std::int64_t dz = -1; dz <= 1; ++dz) {
                    const auto it = cellNumber.find(Cell{cells[c].x + dx, cells[c].y + dy, cells[c].z + dz});
                    if (it != cellNumber.end()) around.push_back(it->second);
                }
        aroundBegin[c + 1] = static_cast<std::uint32_t>(around.size());
    }

    // Welds the live groups of [first, last) that are near `root` into it; returns the new
    // end of the range, with merged and finished groups dropped from it.
    auto weldInto = [&](std::uint32_t root, std::uint32_t* first, std::uint32_t* last) {
        std::uint32_t* keep = first;
        for (std::uint32_t* m = first; m != last; ++m) {
            const std::uint32_t h = *m;
            if (parent[h] != h || pending[h] == 0) continue;  // merged away or done with
            if (h != root && Near(place[root], place[h], t)) {
                parent[h] = root;
                pending[root] += pending[h];
                pending[h] = 0;
                continue;
            }
            *keep++ = h;
        }
        return keep;
    };

    for (std::uint32_t i = 0; i < n; ++i) {
        const std::uint32_t root = find(i);
        PlaceAt(v[i], place[root]);
        --pending[root];
        const OIFVertex& p = place[root];
        if (!std::isfinite(p.X) || !std::isfinite(p.Y) || !std::isfinite(p.Z)) continue;
        if (std::max({std::fabs(p.X / cellSize), std::fabs(p.Y / cellSize), std::fabs(p.Z / cellSize)}) >= gridLimit / 2) {
            farList.resize(static_cast<std::size_t>(weldInto(root, farList.data(), farList.data() + farList.size()) - farList.data()));
            continue;
        }
        const std::uint32_t c = cellOf[root];
        for (std::uint32_t k = aroundBegin[c]; k < aroundBegin[c + 1]; ++k) {
            const std::uint32_t a = around[k];
            end[a] = static_cast<std::uint32_t>(weldInto(root, members.data() + begin[a], members.data() + end[a]) - members.data());
        }
    }
}

// Float equality, hashed: -0 is stored as +0, and a vertex with a NaN equals nothing, so it is
// never looked up nor entered.
std::vector<std::int32_t> KeepFirstHashed(const std::vector<OIFVertex>& v, std::vector<OIFVertex>& kept) {
    struct Key {
        std::uint32_t bits[6];
        bool operator==(const Key&) const = default;
    };
    struct KeyHash {
        std::size_t operator()(const Key& k) const {
            std::uint64_t h = 0xCBF29CE484222325ull;
            for (std::uint32_t b : k.bits) h = (h ^ b) * 0x100000001B3ull;
            return static_cast<std::size_t>(h ^ (h >> 29));
        }
    };
    auto bits = [](float f) { return f == 0.0f ? 0u : std::bit_cast<std::uint32_t>(f); };
    std::unordered_map<Key, std::int32_t, KeyHash> first;
    first.reserve(v.size());
    std::vector<std::int32_t> where(v.size());
    for (std::size_t i = 0; i < v.size(); ++i) {
        const OIFVertex& x = v[i];
        const auto next = static_cast<std::int32_t>(kept.size());
        if (std::isnan(x.X) || std::isnan(x.Y) || std::isnan(x.Z) || std::isnan(x.U) || std::isnan(x.V)) {
            kept.push_back(x);
            where[i] = next;
            continue;
        }
        const Key key{{bits(x.X), bits(x.Y), bits(x.Z), bits(x.U), bits(x.V), x.Shadow}};
        const auto [it, added] = first.try_emplace(key, next);
        if (added) kept.push_back(x);
        where[i] = it->second;
    }
    return where;
}

