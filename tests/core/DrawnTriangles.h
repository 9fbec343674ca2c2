#pragma once
// The triangles a strip draws, for tests that check a strip against the triangles it stands for.
#include <algorithm>
#include <array>
#include <cstdint>
#include <set>
#include <vector>

using Triangle3 = std::array<int, 3>;

// A triangle of vertex numbers as a set: started at its smallest index so that the winding counts
// but the start corner does not, or sorted when the winding does not count either. Indices are
// read unsigned, as the game reads them.
inline bool AddTriangle(std::multiset<Triangle3>& out, Triangle3 t, bool anyWinding) {
    if (t[0] == t[1] || t[1] == t[2] || t[0] == t[2]) return false;
    if (anyWinding) std::sort(t.begin(), t.end());
    while (t[0] > t[1] || t[0] > t[2]) t = {t[1], t[2], t[0]};
    out.insert(t);
    return true;
}

inline int Unsigned(std::int16_t i) { return static_cast<std::uint16_t>(i); }

// Every window of three of the strip, the odd ones turned back to the strip's winding; the
// degenerate joins are left out.
inline std::multiset<Triangle3> DrawnTriangles(const std::vector<std::int16_t>& strip, bool anyWinding = false) {
    std::multiset<Triangle3> out;
    for (std::size_t i = 2; i < strip.size(); ++i) {
        Triangle3 t{Unsigned(strip[i - 2]), Unsigned(strip[i - 1]), Unsigned(strip[i])};
        if (i % 2 == 1) std::swap(t[0], t[1]);
        AddTriangle(out, t, anyWinding);
    }
    return out;
}

// The non-degenerate triangles of a plain list of three indices each.
inline std::multiset<Triangle3> ListedTriangles(const std::vector<std::int16_t>& list, bool anyWinding = false) {
    std::multiset<Triangle3> out;
    for (std::size_t i = 0; i + 2 < list.size(); i += 3)
        AddTriangle(out, {Unsigned(list[i]), Unsigned(list[i + 1]), Unsigned(list[i + 2])}, anyWinding);
    return out;
}
