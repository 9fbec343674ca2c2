#include "exchange/VertexWeld.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <unordered_map>

namespace {

constexpr std::uint32_t None = 0xFFFFFFFFu;

struct Cell {
    std::int64_t x, y, z;
    bool operator==(const Cell&) const = default;
};

// Lexicographic order, in which the cells of one row along z lie side by side.
bool operator<(const Cell& a, const Cell& b) {
    if (a.x != b.x) return a.x < b.x;
    if (a.y != b.y) return a.y < b.y;
    return a.z < b.z;
}

struct Member {
    Cell cell;
    std::uint32_t vertex;
};

}  // namespace

namespace {

constexpr double GridLimit = 2199023255552.0;    // 2^41 cells from the origin
constexpr double FarFrom = 1099511627776.0 - 2;  // 2^40 - 2

bool FinitePlace(const OIFVertex& p) { return std::isfinite(p.X) && std::isfinite(p.Y) && std::isfinite(p.Z); }

// The vertices sorted into cells of a grid, each cell's members side by side, with the occupied
// cells around each cell; places too far out for the grid's arithmetic are listed apart.
struct CellGrid {
    std::vector<Cell> cells;
    std::vector<std::uint32_t> begin, end, members, cellOf, farList;
    std::vector<std::uint32_t> aroundBegin, around;
};

void SortIntoCells(const std::vector<OIFVertex>& place, double cellSize, CellGrid& g) {
    const auto n = static_cast<std::uint32_t>(place.size());
    std::vector<Member> sorted;
    sorted.reserve(n);
    for (std::uint32_t i = 0; i < n; ++i) {
        const OIFVertex& p = place[i];
        // A place with no finite coordinates is never near anything.
        if (!FinitePlace(p)) continue;
        const double qx = p.X / cellSize, qy = p.Y / cellSize, qz = p.Z / cellSize;
        const double q = std::max({std::fabs(qx), std::fabs(qy), std::fabs(qz)});
        if (q >= FarFrom) g.farList.push_back(i);
        if (q >= GridLimit) continue;
        sorted.push_back({{static_cast<std::int64_t>(std::floor(qx)), static_cast<std::int64_t>(std::floor(qy)),
                           static_cast<std::int64_t>(std::floor(qz))},
                          i});
    }
    std::sort(sorted.begin(), sorted.end(), [](const Member& a, const Member& b) {
        return a.cell < b.cell || (a.cell == b.cell && a.vertex < b.vertex);
    });
    g.members.resize(sorted.size());
    g.cellOf.assign(n, None);
    for (std::size_t k = 0; k < sorted.size(); ++k) {
        if (k == 0 || !(sorted[k].cell == sorted[k - 1].cell)) {
            g.cells.push_back(sorted[k].cell);
            g.begin.push_back(static_cast<std::uint32_t>(k));
        }
        g.members[k] = sorted[k].vertex;
        g.cellOf[sorted[k].vertex] = static_cast<std::uint32_t>(g.cells.size() - 1);
    }
    const std::size_t cellCount = g.cells.size();
    g.end.resize(cellCount);
    for (std::size_t c = 0; c < cellCount; ++c)
        g.end[c] = c + 1 < cellCount ? g.begin[c + 1] : static_cast<std::uint32_t>(sorted.size());
}

// The occupied cells around each cell. For each of the nine rows along z next to a cell's own,
// the row's first cell in sorted order only moves forward from one cell to the next, so nine
// cursors walking with the cells find them all without a lookup.
void FindNeighbours(CellGrid& g) {
    const std::size_t cellCount = g.cells.size();
    g.aroundBegin.assign(cellCount + 1, 0);
    g.around.reserve(cellCount * 9);
    std::array<std::size_t, 9> cursor{};
    for (std::size_t c = 0; c < cellCount; ++c) {
        for (std::size_t o = 0; o < 9; ++o) {
            const std::int64_t dx = static_cast<std::int64_t>(o / 3) - 1, dy = static_cast<std::int64_t>(o % 3) - 1;
            const Cell low{g.cells[c].x + dx, g.cells[c].y + dy, g.cells[c].z - 1};
            const Cell high{g.cells[c].x + dx, g.cells[c].y + dy, g.cells[c].z + 1};
            std::size_t& k = cursor[o];
            while (k < cellCount && g.cells[k] < low) ++k;
            for (std::size_t m = k; m < cellCount && !(high < g.cells[m]); ++m)
                g.around.push_back(static_cast<std::uint32_t>(m));
        }
        g.aroundBegin[c + 1] = static_cast<std::uint32_t>(g.around.size());
    }
}

}  // namespace

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
    std::vector<std::uint32_t> parent(n);
    std::iota(parent.begin(), parent.end(), 0u);
    std::vector<std::uint32_t> pending(n, 1);  // members of a group still to be looked at
    const std::vector<OIFVertex> place = v;    // a group's place is its first vertex's
    auto find = [&](std::uint32_t x) {
        while (parent[x] != x) x = parent[x] = parent[parent[x]];
        return x;
    };
    CellGrid g;
    SortIntoCells(place, cellSize, g);
    FindNeighbours(g);

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
        if (!FinitePlace(p)) continue;
        if (std::max({std::fabs(p.X / cellSize), std::fabs(p.Y / cellSize), std::fabs(p.Z / cellSize)}) >=
            GridLimit / 2) {
            std::vector<std::uint32_t>& far = g.farList;
            far.resize(static_cast<std::size_t>(weldInto(root, far.data(), far.data() + far.size()) - far.data()));
            continue;
        }
        const std::uint32_t c = g.cellOf[root];
        for (std::uint32_t k = g.aroundBegin[c]; k < g.aroundBegin[c + 1]; ++k) {
            const std::uint32_t a = g.around[k];
            std::uint32_t* members = g.members.data();
            g.end[a] = static_cast<std::uint32_t>(weldInto(root, members + g.begin[a], members + g.end[a]) - members);
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
