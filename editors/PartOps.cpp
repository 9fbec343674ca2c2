#include "editors/PartOps.h"

#include <algorithm>

OIFFile RemoveParts(const OIFFile& doc, const std::vector<bool>& selected) {
    OIFFile result = doc;
    result.Parts.clear();
    for (std::size_t i = 0; i < doc.Parts.size(); ++i)
        if (i >= selected.size() || !selected[i]) result.Parts.push_back(doc.Parts[i]);
    result.Header.PartCount = static_cast<std::int32_t>(result.Parts.size());
    return result;
}

int CountSelected(const std::vector<bool>& selected) {
    return static_cast<int>(std::count(selected.begin(), selected.end(), true));
}
