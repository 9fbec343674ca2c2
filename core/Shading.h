#pragma once
// Light baked into vertex colours by distance from the origin: grey 240 at the centre down to 30
// at the farthest vertex. The 3DS import, the Stadium Importer and the Lighting Wizard all shade
// by this one rule; the wizard also dims it towards the farthest grey.
#include <cstdint>
#include <vector>

#include "core/oif.h"

inline constexpr int NearestGrey = 240;
inline constexpr int FarthestGrey = 30;
// The colour of every vertex of a model made without shading: flat grey 110, top byte clear.
inline constexpr std::uint32_t UnshadedColour = 0x006E6E6Eu;

// The vertex's distance from the origin, as a single.
float OriginDistance(const OIFVertex& vertex);

// The shadow colour at `distance` when the farthest vertex is at `farthest`: grey
// g = 240 - distance / farthest * 210, rounded with halves to even, then (g - 30) * brightness
// rounded the same way + 30, in each of the three low bytes under a full alpha byte. With
// brightness 1 that is g itself. A ratio without a value (everything at the origin) is the centre.
std::uint32_t DistanceShade(float distance, float farthest, double brightness = 1);

// Every vertex shaded by DistanceShade against the farthest of them; without `shade`, every
// vertex gets UnshadedColour.
void ShadeByDistance(std::vector<OIFVertex>& vertices, bool shade);
