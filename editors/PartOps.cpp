#include "editors/PartOps.h"

#include <map>
#include <string>

void MergeSameTexture(OIFFile& doc, bool crowdOnly) {
    if (doc.Parts.size() < 2) return;
    // One pass: each part either starts its texture's group or is appended to it. This gives
    // what pairwise merging in document order gives, without copying a part per merge.
    std::vector<OIFPart> kept;
    kept.reserve(doc.Parts.size());
    std::map<std::string, std::size_t> groups;  // texture -> place in `kept`
    for (OIFPart& part : doc.Parts) {
        const std::string texture = part.Header.Texture.str();
        const bool joins = !crowdOnly || texture.compare(0, 2, "rw") == 0;
        const auto group = joins ? groups.find(texture) : groups.end();
        if (group != groups.end()) {
            AppendPart(kept[group->second], part);
        } else {
            if (joins) groups.emplace(texture, kept.size());
            kept.push_back(std::move(part));
        }
    }
    doc.Parts = std::move(kept);
    doc.Header.PartCount = static_cast<std::int32_t>(doc.Parts.size());
}
