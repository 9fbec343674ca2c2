// ParseRAV and the RAV Convertor's script over arbitrary text. Besides memory safety (the
// sanitizers), a refusal must leave nothing behind, every count must match what was read, and an
// accepted file written out again in the same layout must read back to the same record: so
// names, numbers, colours and the group indices are read as the text gives them.
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "FuzzCheck.h"
#include "core/NumberText.h"
#include "exchange/RAVOps.h"
#include "exchange/RhinoScriptOps.h"

namespace {

std::size_t Expected(std::int16_t count) { return count > 0 ? static_cast<std::size_t>(count) : 0; }

void CheckCounts(const RAVFile& file) {
    FUZZ_CHECK(file.polygons.size() == Expected(file.polygonCount), "polygonCount counts the polygons");
    for (const RAVPolygon& p : file.polygons) {
        FUZZ_CHECK(p.vertices.size() == Expected(p.vertexCount), "vertexCount counts the vertices");
        FUZZ_CHECK(p.groups.size() == Expected(p.groupCount), "groupCount counts the groups");
        for (const OIFVertex& v : p.vertices) FUZZ_CHECK((v.Shadow & 0xFF) == 0xFF, "a shadow ends in FF");
        for (const RAVGroup& g : p.groups) {
            FUZZ_CHECK(g.indices.size() == Expected(g.indexCount), "indexCount counts the indices");
            FUZZ_CHECK(g.textureIndex == 0, "the reader leaves textureIndex alone");
        }
    }
}

// The record in the layout the reader takes, with keys of its own choosing.
std::string Written(const RAVFile& file) {
    std::string t =
        "Version=" + std::to_string(file.version) + "\nPolygons=" + std::to_string(file.polygonCount) + "\n";
    for (const RAVPolygon& p : file.polygons) {
        t += "[Polygon]\nName=" + p.name + "\nVertices=" + std::to_string(p.vertexCount) + "\n";
        for (const OIFVertex& v : p.vertices) {
            char colour[16];
            std::snprintf(colour, sizeof colour, "%06X", static_cast<unsigned>(v.Shadow >> 8));
            t += "  " + ShortestSingleText(v.X) + "," + ShortestSingleText(v.Y) + "," + ShortestSingleText(v.Z) + "," +
                 ShortestSingleText(v.U) + "," + ShortestSingleText(v.V) + "," + colour + "\n";
        }
        t += "Groups=" + std::to_string(p.groupCount) + "\n";
        for (const RAVGroup& g : p.groups) {
            t += "Group=" + g.name + "\nCount=" + std::to_string(g.indexCount) + "\nList=";
            for (std::size_t i = 0; i < g.indices.size(); ++i) t += (i ? "," : "") + std::to_string(g.indices[i]);
            t += "\n";
        }
    }
    return t;
}

std::size_t Occurrences(const std::string& text, std::string_view line) {
    std::size_t n = 0;
    for (std::size_t at = text.find(line); at != std::string::npos; at = text.find(line, at + 1)) ++n;
    return n;
}

void CheckScript(std::string_view input) {
    const RhinoScript script = RhinoScriptText(input, "/t/");
    if (!script.error.empty()) {
        FUZZ_CHECK(script.text.empty(), "a refused export writes no script");
        FUZZ_CHECK(script.error.rfind("Invalid RAV file!\r\n\r\n", 0) == 0, "a refusal says what it refuses");
        return;
    }
    FUZZ_CHECK(script.text.rfind("setactiveviewport top\r\n", 0) == 0, "the script starts with the layers");
    FUZZ_CHECK(script.text.size() >= 6 && script.text.compare(script.text.size() - 6, 6, "show\r\n") == 0,
               "the script ends with show");
    const std::size_t faces = Occurrences(script.text, "\r\n3DFace ");
    FUZZ_CHECK(Occurrences(script.text, "\r\nname object") == faces, "every face is named");
    FUZZ_CHECK(Occurrences(script.text, "\r\nselall\r\nhide\r\n") == faces, "every face is hidden");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    CheckScript(input);
    const RAVParse parsed = ParseRAV(input);
    if (!parsed.error.empty()) {
        FUZZ_CHECK(parsed.file == RAVFile{}, "a refused file leaves nothing behind");
        FUZZ_CHECK(parsed.error.rfind("Invalid RAV file!\r\n\r\n", 0) == 0, "a refusal says what it refuses");
        return 0;
    }
    CheckCounts(parsed.file);
    const RAVParse again = ParseRAV(Written(parsed.file));
    FUZZ_CHECK(again.error.empty(), "what was read, written out again, is read");
    FUZZ_CHECK(again.file == parsed.file, "the file holds what the text says");
    return 0;
}
