#pragma once
// Welding near vertices and finding exact duplicates, the two steps that turn a model's meshes
// into one part. Both follow a rule stated pair by pair in vertex order; the functions here give
// that rule's outcome without comparing every pair, for the 3DS import and the Stadium Importer.
#include <cmath>
#include <cstdint>
#include <vector>

#include "core/oif.h"

// True when the two places differ by less than t on every axis: a box, not a sphere.
inline bool Near(const OIFVertex& a, const OIFVertex& b, double t) {
    return std::fabs(a.X - b.X) < t && std::fabs(a.Y - b.Y) < t && std::fabs(a.Z - b.Z) < t;
}

inline void PlaceAt(OIFVertex& v, const OIFVertex& at) {
    v.X = at.X;
    v.Y = at.Y;
    v.Z = at.Z;
}

// Equal as floats (so -0 equals +0 and a NaN equals nothing) with the same lighting word.
inline bool SameVertex(const OIFVertex& a, const OIFVertex& b) {
    return a.X == b.X && a.Y == b.Y && a.Z == b.Z && a.U == b.U && a.V == b.V && a.Shadow == b.Shadow;
}

// For i from the first vertex up and each later j in order: j takes i's place when Near. A moved
// vertex is compared at its new place from then on. Colours and UVs stay. No t above 0 welds
// nothing.
void WeldNearGrid(std::vector<OIFVertex>& v, double t);

// Appends to `kept` each vertex that has no SameVertex there yet; returns for each vertex the
// place of its first equal in `kept`.
std::vector<std::int32_t> KeepFirstHashed(const std::vector<OIFVertex>& v, std::vector<OIFVertex>& kept);
