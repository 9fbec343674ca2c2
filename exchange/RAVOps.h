#pragma once
// RAV exported text and the point tables that Rhinoceros writes as CSV. Both readers check every
// count against the lines and cells that are there before they read, so a short or lying file is
// refused with a message and never read past its end.
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/oif.h"

inline constexpr const char* InvalidRAVMessage = "Invalid RAV file!";
inline constexpr const char* InvalidCSVMessage = "Invalid CSV file!";

struct RAVGroup {
    std::string name;  // material or texture name, such as "rowa"; raw Windows-1252 bytes
    std::int16_t indexCount = 0;
    std::vector<std::int16_t> indices;
    std::int16_t textureIndex = 0;  // the Stadium Importer's own field; the reader leaves it 0
    bool operator==(const RAVGroup&) const = default;
};

struct RAVPolygon {
    std::string name;
    std::int16_t vertexCount = 0;  // as the file says; a count of 0 or less reads no vertex lines
    std::int16_t groupCount = 0;
    std::vector<OIFVertex> vertices;
    std::vector<RAVGroup> groups;
    bool operator==(const RAVPolygon&) const = default;
};

struct RAVFile {
    std::int16_t version = 0;
    std::int16_t polygonCount = 0;
    std::vector<RAVPolygon> polygons;
    bool operator==(const RAVFile&) const = default;
};

struct RAVParse {
    RAVFile file;       // empty on a refusal
    std::string error;  // empty when the file was read
};

struct PointTableParse {
    PolygonPart quads;  // empty on a refusal
    std::string error;
};

// The text after the first equals sign of a key line, untrimmed; the whole line without one.
std::string RAVValueText(std::string_view line);
// The leading number of RAVValueText, 0 when it does not begin like a number.
double RAVValueNumber(std::string_view line);

// Hexadecimal text read from the right: the digit at position p counts 16^p. Only capital A to F
// are letters; any other character counts as 0, or as its own value for 0 to 9. Empty when the
// value does not fit a signed 32-bit number.
std::optional<std::int32_t> HexToLong(std::string_view text);

// Reads the polygons of RAV exported text.
RAVParse ParseRAV(std::string_view text);
// Reads the points of a Rhinoceros CSV table and makes one quad of every four, in file order.
PointTableParse ParsePointTable(std::string_view bytes);

// The two readers over a file. A refusal is shown in a message box and gives the empty result;
// `ok`, when given, tells whether the file was accepted. A file that cannot be read throws
// std::runtime_error with a message for the user.
RAVFile ReadRAVFile(const std::string& path, bool* ok = nullptr);
PolygonPart ReadPointTable(const std::string& path, bool* ok = nullptr);

// The corners of a four-vertex crowd row, found from its UVs: A has the greatest u + v, B the
// greatest v of the other three, and of the last two C has the smaller u. Each is a vertex index
// 0 to 3, or -1 where no vertex wins strictly: without A there is no corner at all, and without B
// only A is known.
struct QuadCorners {
    int A = -1, B = -1, C = -1, D = -1;
    bool operator==(const QuadCorners&) const = default;
};
QuadCorners ChooseQuadCorners(const std::array<float, 4>& u, const std::array<float, 4>& v);

// A quad of four vertices, the working form of crowds, adboards and banners. As a plane: V[0]
// top right, V[1] bottom right, V[2] bottom left, V[3] top left. As a finished row V[1] and V[2]
// stand on the row's base line and V[0], V[3] are those points raised by the row's height. In a
// polygon of the list the vertices run V[2], V[1], V[0], V[3].
struct CrowdRow {
    std::array<OIFVertex, 4> V{};
    bool operator==(const CrowdRow&) const = default;
};

// The away crowd's group name; every other name is the home crowd.
inline constexpr const char* AwayCrowdGroup = "rowb";

// The row height that FixCrowdPolygon sets rows to: 0 (keep the file's heights) except while
// Import Crowds runs with the fixing answered Yes.
extern float CrowdHeightInForce;

// A crowd row polygon with its corners and UVs worked out again from the UVs it has: the row
// stands on B (and C) of ChooseQuadCorners, its height is raised to CrowdHeightInForce when that
// is above 0, and its U range follows width over height, so the texture keeps its proportions.
// Half of the rows, at random, run the texture the other way. Colours stay by vertex. Corners
// without a strict winner count as the origin: such a row collapses, as it always has. A polygon
// without exactly four vertices comes back unchanged.
RAVPolygon FixCrowdPolygon(const RAVPolygon& polygon);
// FixCrowdPolygon on every polygon of exactly four vertices; the others stay as they are.
void FixCrowdPolygons(RAVFile& list);

// The list with one polygon per row added at its end: the row's vertices as V[2], V[1], V[0],
// V[3], one group named `groupName` without indices, and no polygon name.
RAVFile AppendCrowdRows(const std::vector<CrowdRow>& rows, const std::string& groupName, RAVFile list);
