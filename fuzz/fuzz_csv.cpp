// ParsePointTable over arbitrary bytes. Besides memory safety (the sanitizers), a refusal must
// leave nothing behind, the points must come in whole quads of blank texture, colour and UVs,
// and an accepted table written out again as a table of its points must give the same quads.
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "FuzzCheck.h"
#include "exchange/RAVOps.h"

namespace {

// A coordinate in Rhinoceros units, with digits enough to come back to the same single value.
std::string Units(float gameUnits) {
    char buf[40];
    std::snprintf(buf, sizeof buf, "%.17g", static_cast<double>(gameUnits) / 100);
    return buf;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const PointTableParse parsed = ParsePointTable(std::string_view(reinterpret_cast<const char*>(data), size));
    if (!parsed.error.empty()) {
        FUZZ_CHECK(parsed.quads == PolygonPart{}, "a refused table leaves nothing behind");
        FUZZ_CHECK(parsed.error.rfind("Invalid CSV file!\r\n\r\n", 0) == 0, "a refusal says what it refuses");
        return 0;
    }
    const PolygonPart& quads = parsed.quads;
    FUZZ_CHECK(quads.Count >= 0 && quads.Vertices.size() == 4 * static_cast<std::size_t>(quads.Count),
               "the points are whole quads, counted");
    FUZZ_CHECK(quads.Texture == PolygonPart{}.Texture, "the texture stays blank");
    bool nearLimit = false;
    for (const OIFVertex& v : quads.Vertices) {
        FUZZ_CHECK(v.Shadow == 0 && v.U == 0 && v.V == 0, "colours and UVs stay 0");
        // Near the largest single value, a trip through text and back can step past it.
        for (float c : {v.X, v.Y, v.Z}) nearLimit = nearLimit || std::fabs(c) > 1e38f;
    }
    if (nearLimit) return 0;
    std::string table = "\"Kind\",\"Object Type\"\r\n";
    for (const OIFVertex& v : quads.Vertices)
        table += "\"point\",\"" + Units(v.X) + "," + Units(v.Z) + "," + Units(v.Y) + "\"\r\n";
    const PointTableParse again = ParsePointTable(table);
    FUZZ_CHECK(again.error.empty(), "a table of the points read is read");
    FUZZ_CHECK(again.quads == quads, "the points are read as the table gives them, y from the third value");
    return 0;
}
