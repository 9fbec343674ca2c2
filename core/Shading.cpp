#include "core/Shading.h"

#include <algorithm>
#include <cmath>

float OriginDistance(const OIFVertex& vertex) {
    const double x = vertex.X, y = vertex.Y, z = vertex.Z;
    return static_cast<float>(std::sqrt(x * x + y * y + z * z));
}

std::uint32_t DistanceShade(float distance, float farthest, double brightness) {
    const double ratio = static_cast<double>(distance) / farthest;
    const double g =
        std::isfinite(ratio) ? std::nearbyint(NearestGrey - ratio * (NearestGrey - FarthestGrey)) : NearestGrey;
    const double s = std::nearbyint((g - FarthestGrey) * brightness) + FarthestGrey;
    const auto grey = static_cast<std::uint32_t>(std::clamp(s, 0.0, 255.0));
    return 0xFF000000u + grey * 65536u + grey * 256u + grey;
}

void ShadeByDistance(std::vector<OIFVertex>& vertices, bool shade) {
    if (!shade) {
        for (OIFVertex& v : vertices) v.Shadow = UnshadedColour;
        return;
    }
    std::vector<float> distance(vertices.size());
    float farthest = 0;
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        distance[i] = OriginDistance(vertices[i]);
        farthest = std::max(farthest, distance[i]);
    }
    for (std::size_t i = 0; i < vertices.size(); ++i) vertices[i].Shadow = DistanceShade(distance[i], farthest);
}
