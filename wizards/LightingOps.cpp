#include "wizards/LightingOps.h"

#include <algorithm>
#include <stdexcept>

#include "core/NumberText.h"
#include "core/Shading.h"
#include "core/myOps.h"

OIFFile ApplyLighting(const OIFFile& doc, const std::string& originText) {
    float farthest = 0;
    bool anyVertex = false;
    for (const OIFPart& part : doc.Parts)
        for (const OIFVertex& v : part.Vertices) {
            farthest = std::max(farthest, OriginDistance(v));
            anyVertex = true;
        }
    if (anyVertex && !(farthest > 0))
        throw std::runtime_error("All vertices lie at the origin, so there is no distance to light them by.");
    const double p = std::clamp(LeadingNumber(originText), 0.0, 100.0) / 100;
    OIFFile lit = doc;
    for (OIFPart& part : lit.Parts)
        for (OIFVertex& v : part.Vertices) v.Shadow = DistanceShade(OriginDistance(v), farthest, p);
    return lit;
}

int LightingKeyFilter(int key, const std::string& text) {
    if (key == KeyTab || key == KeyEnter || key == KeyBackspace) return key;
    if (key == '.') return text.find('.') == std::string::npos ? key : 0;
    if (key < '0' || key > '9') return 0;
    if (key == '0' && text == "0") return 0;
    return LeadingNumber(text + static_cast<char>(key)) < 0 ? 0 : key;
}
