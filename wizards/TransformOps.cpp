#include "wizards/TransformOps.h"

#include "core/NumberText.h"
#include "core/myOps.h"

namespace {

std::array<double, 3> Values(const std::array<std::string, 3>& texts) {
    return {LeadingNumber(texts[0]), LeadingNumber(texts[1]), LeadingNumber(texts[2])};
}

}  // namespace

OIFFile TransformParts(const OIFFile& doc, const TransformSettings& settings) {
    const std::array<double, 3> scale = Values(settings.scale), translate = Values(settings.translate);
    const std::array<double, 3> degrees = Values(settings.rotate);
    const bool rotates = degrees[0] != 0 || degrees[1] != 0 || degrees[2] != 0;
    const auto radians = [&](std::size_t axis) {
        return static_cast<float>(DegToRad(static_cast<float>(degrees[axis])));
    };
    const Point3 angles{radians(0), radians(1), radians(2)};
    OIFFile result = doc;
    for (std::size_t i = 0; i < result.Parts.size() && i < settings.parts.size(); ++i) {
        if (!settings.parts[i]) continue;
        for (OIFVertex& v : result.Parts[i].Vertices) {
            float* xyz[3] = {&v.X, &v.Y, &v.Z};
            for (std::size_t a = 0; a < 3; ++a) *xyz[a] = static_cast<float>(*xyz[a] / 100.0 * scale[a]);
            if (rotates) {
                const Point3 turned = RotatePoint({v.X, v.Y, v.Z}, angles);
                v.X = turned.x;
                v.Y = turned.y;
                v.Z = turned.z;
            }
            for (std::size_t a = 0; a < 3; ++a) *xyz[a] = static_cast<float>(*xyz[a] + translate[a]);
            for (std::size_t a = 0; a < 3; ++a)
                if (settings.mirror[a]) *xyz[a] = -*xyz[a];
            if (settings.flipU) v.U = 1 - v.U;
            if (settings.flipV) v.V = 1 - v.V;
        }
    }
    return result;
}
