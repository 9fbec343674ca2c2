#include "exchange/RAVOps.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/Desktop.h"
#include "core/NumberText.h"
#include "core/myOps.h"
#include "exchange/TextReading.h"

namespace {

// A vertex line holds x, y, z, u, v and the colour; what follows a sixth comma is not read.
constexpr std::size_t VertexFields = 6;
// SplitText keeps at most this many pieces, so no index list can be longer.
constexpr std::size_t MaxIndices = 1000;

// The next line as a key line whose value is a count.
std::int16_t KeyCount(LineReader& in) {
    const std::string& line = in.Next();
    return Rounded16(RAVValueNumber(line), in.LineNumber());
}

OIFVertex ReadVertex(std::string_view line, std::size_t number) {
    const std::vector<std::string_view> fields = SplitFields(line, ',', VertexFields);
    if (fields.size() < VertexFields)
        throw TextRefusal("Line " + std::to_string(number) + ": a vertex needs six comma-separated values.");
    OIFVertex v;
    v.X = SingleValue(fields[0], number);
    v.Y = SingleValue(fields[1], number);
    v.Z = SingleValue(fields[2], number);
    v.U = SingleValue(fields[3], number);
    v.V = SingleValue(fields[4], number);
    // The colour text is RRGGBB; the stored shadow word is RRGGBBFF. Anything wider would not fit.
    const std::optional<std::int32_t> colour = HexToLong(fields[5]);
    if (!colour || *colour >= 0x1000000)
        throw TextRefusal("Line " + std::to_string(number) + ": the colour " + ShownText(fields[5]) +
                          " is larger than FFFFFF.");
    v.Shadow = static_cast<std::uint32_t>(*colour) * 256u + 255u;
    return v;
}

RAVGroup ReadGroup(LineReader& in) {
    RAVGroup group;
    group.name = RAVValueText(in.Next());
    group.indexCount = KeyCount(in);
    std::string list = RAVValueText(in.Next());
    const std::size_t number = in.LineNumber();
    // Counted before SplitText, which would stop quietly at its limit.
    const std::size_t pieces = static_cast<std::size_t>(std::count(list.begin(), list.end(), ',')) + 1;
    if (pieces > MaxIndices)
        throw TextRefusal("Line " + std::to_string(number) + ": an index list holds at most 1000 indices.");
    if (group.indexCount > 0 && static_cast<std::size_t>(group.indexCount) > pieces)
        throw TextRefusal("Line " + std::to_string(number) + ": the list holds " + std::to_string(pieces) +
                          " indices, fewer than its count of " + std::to_string(group.indexCount) + ".");
    if (group.indexCount > 0) {
        const std::vector<std::string> parts = SplitText(list, ",");  // parts[0] is unused
        group.indices.reserve(static_cast<std::size_t>(group.indexCount));
        for (std::size_t j = 1; j <= static_cast<std::size_t>(group.indexCount); ++j)
            group.indices.push_back(Rounded16(LeadingNumber(parts[j]), number));
    }
    return group;
}

RAVPolygon ReadPolygon(LineReader& in) {
    RAVPolygon polygon;
    in.Next();  // a header line of its own, whatever it says
    polygon.name = RAVValueText(in.Next());
    polygon.vertexCount = KeyCount(in);
    if (polygon.vertexCount > 0) {
        in.Require(static_cast<std::size_t>(polygon.vertexCount));
        polygon.vertices.reserve(static_cast<std::size_t>(polygon.vertexCount));
        for (int i = 0; i < polygon.vertexCount; ++i) {
            const std::string& line = in.Next();
            polygon.vertices.push_back(ReadVertex(line, in.LineNumber()));
        }
    }
    polygon.groupCount = KeyCount(in);
    if (polygon.groupCount > 0) {
        in.Require(3 * static_cast<std::size_t>(polygon.groupCount));
        polygon.groups.reserve(static_cast<std::size_t>(polygon.groupCount));
        for (int g = 0; g < polygon.groupCount; ++g) polygon.groups.push_back(ReadGroup(in));
    }
    return polygon;
}

// The cells of one CSV line: each enclosed in double quotes, one comma between two. A cell ends
// at the next double quote; there is no escape for one inside a cell.
std::vector<std::string_view> QuotedCells(std::string_view line, std::size_t number) {
    std::vector<std::string_view> cells;
    const auto notCells = [number] {
        return TextRefusal("Line " + std::to_string(number) + " is not a row of quoted cells.");
    };
    std::size_t pos = 0;
    while (pos < line.size()) {
        if (line[pos] != '"') throw notCells();
        const std::size_t close = line.find('"', pos + 1);
        if (close == std::string_view::npos) throw notCells();
        cells.push_back(line.substr(pos + 1, close - pos - 1));
        pos = close + 1;
        if (pos == line.size()) break;
        if (line[pos] != ',' || pos + 1 == line.size()) throw notCells();
        ++pos;
    }
    return cells;
}

// A location "a,b,c" in Rhinoceros units; the game has y up where Rhinoceros has z up.
OIFVertex PointAt(std::string_view location, std::size_t number) {
    const std::vector<std::string_view> xyz = SplitFields(location, ',', 3);
    if (xyz.size() < 3)
        throw TextRefusal("Line " + std::to_string(number) + ": the point " + ShownText(location) +
                          " has fewer than three coordinates.");
    OIFVertex v;
    v.X = SingleValue(LeadingNumber(xyz[0]) * 100, number);
    v.Y = SingleValue(LeadingNumber(xyz[2]) * 100, number);
    v.Z = SingleValue(LeadingNumber(xyz[1]) * 100, number);
    return v;
}

}  // namespace

std::string RAVValueText(std::string_view line) {
    const std::size_t equals = line.find('=');
    return std::string(equals == std::string_view::npos ? line : line.substr(equals + 1));
}

double RAVValueNumber(std::string_view line) { return LeadingNumber(RAVValueText(line)); }

std::optional<std::int32_t> HexToLong(std::string_view text) {
    std::int64_t value = 0;
    std::int64_t weight = 1;
    for (std::size_t p = 0; p < text.size(); ++p) {
        const char c = text[text.size() - 1 - p];
        int digit = 0;
        if (c >= '0' && c <= '9') digit = c - '0';
        else if (c >= 'A' && c <= 'F') digit = c - 'A' + 10;
        if (digit != 0) {
            // 16^8 alone is past the largest 32-bit value.
            if (p >= 8) return std::nullopt;
            value += digit * weight;
            if (value > INT32_MAX) return std::nullopt;
        }
        if (p < 8) weight *= 16;
    }
    return static_cast<std::int32_t>(value);
}

RAVParse ParseRAV(std::string_view text) {
    RAVParse result;
    try {
        const std::vector<std::string> lines = TextLines(text);
        if (lines.empty()) throw TextRefusal("The file is empty.");
        LineReader in(lines);
        RAVFile& file = result.file;
        file.version = KeyCount(in);
        file.polygonCount = KeyCount(in);
        if (file.polygonCount > 0) {
            // Every polygon takes at least its four lines of header, name and counts.
            in.Require(4 * static_cast<std::size_t>(file.polygonCount));
            file.polygons.reserve(static_cast<std::size_t>(file.polygonCount));
            for (int p = 0; p < file.polygonCount; ++p) file.polygons.push_back(ReadPolygon(in));
        }
    } catch (const TextRefusal& refusal) {
        result.file = RAVFile{};
        result.error = std::string(InvalidRAVMessage) + "\r\n\r\n" + refusal.what();
    }
    return result;
}

PointTableParse ParsePointTable(std::string_view bytes) {
    PointTableParse result;
    try {
        const std::vector<std::string> lines = TextLines(bytes);
        if (lines.empty()) throw TextRefusal("The file is empty.");
        const std::vector<std::string_view> header = QuotedCells(lines[0], 1);
        // The location stands under "Object Type" and the type word one column to its left.
        const auto typeColumn = std::find(header.begin(), header.end(), std::string_view("Object Type"));
        if (typeColumn == header.end() || typeColumn == header.begin())
            throw TextRefusal("The first line has no \"Object Type\" column with a column before it.");
        const std::size_t c = static_cast<std::size_t>(typeColumn - header.begin());
        std::vector<OIFVertex>& points = result.quads.Vertices;
        for (std::size_t r = 1; r < lines.size(); ++r) {
            const std::vector<std::string_view> cells = QuotedCells(lines[r], r + 1);
            if (cells.size() != header.size())
                throw TextRefusal("Line " + std::to_string(r + 1) + " has " + std::to_string(cells.size()) +
                                  " cells, but the first line has " + std::to_string(header.size()) + ".");
            if (cells[c - 1] == "point" && !cells[c].empty()) points.push_back(PointAt(cells[c], r + 1));
        }
        const std::size_t quads = points.size() / 4;
        if (quads > INT16_MAX) throw TextRefusal("It holds more than 32767 quads.");
        points.resize(quads * 4);
        result.quads.Count = static_cast<std::int16_t>(quads);
    } catch (const TextRefusal& refusal) {
        result.quads = PolygonPart{};
        result.error = std::string(InvalidCSVMessage) + "\r\n\r\n" + refusal.what();
    }
    return result;
}

RAVFile ReadRAVFile(const std::string& path, bool* ok) {
    RAVParse parsed = ParseRAV(ReadTextFile(path));
    if (ok) *ok = parsed.error.empty();
    if (!parsed.error.empty()) ShowMessage(parsed.error, MessageIcon::Exclamation);
    return std::move(parsed.file);
}

PolygonPart ReadPointTable(const std::string& path, bool* ok) {
    PointTableParse parsed = ParsePointTable(ReadTextFile(path));
    if (ok) *ok = parsed.error.empty();
    if (!parsed.error.empty()) ShowMessage(parsed.error, MessageIcon::Exclamation);
    return std::move(parsed.quads);
}

QuadCorners ChooseQuadCorners(const std::array<float, 4>& u, const std::array<float, 4>& v) {
    QuadCorners k;
    // The strict winner among `candidates` of `score`; -1 on a tie for the top.
    const auto strictWinner = [](const std::vector<int>& candidates, auto score) {
        for (int i : candidates) {
            bool wins = true;
            for (int j : candidates)
                if (j != i && !(score(i) > score(j))) wins = false;
            if (wins) return i;
        }
        return -1;
    };
    k.A = strictWinner({0, 1, 2, 3}, [&](int i) { return u[i] + v[i]; });
    if (k.A < 0) return k;
    std::vector<int> rest;
    for (int i = 0; i < 4; ++i)
        if (i != k.A) rest.push_back(i);
    k.B = strictWinner(rest, [&](int i) { return v[i]; });
    if (k.B < 0) return k;
    std::vector<int> last;
    for (int i : rest)
        if (i != k.B) last.push_back(i);
    const int p = last[0], q = last[1];  // p < q
    // On equal u the earlier vertex is C, except for these pairs, where the comparisons that
    // find C are made the other way round.
    const bool laterOnTie = (p == 0 && q == 1) || (p == 0 && q == 2 && k.A == 3 && k.B == 1);
    if (u[q] < u[p]) k.C = q;
    else if (u[p] < u[q]) k.C = p;
    else k.C = laterOnTie ? q : p;
    k.D = k.C == p ? q : p;
    return k;
}

float CrowdHeightInForce = 0;

RAVPolygon FixCrowdPolygon(const RAVPolygon& polygon) {
    RAVPolygon fixed = polygon;
    if (polygon.vertices.size() != 4) return fixed;
    const std::vector<OIFVertex>& in = polygon.vertices;
    const QuadCorners k = ChooseQuadCorners({in[0].U, in[1].U, in[2].U, in[3].U}, {in[0].V, in[1].V, in[2].V, in[3].V});
    // A corner that was not found is the origin.
    const auto corner = [&](int i) { return i < 0 ? OIFVertex{} : in[static_cast<std::size_t>(i)]; };
    OIFVertex a = corner(k.A), b = corner(k.B), c = corner(k.C), d = corner(k.D);
    if (CrowdHeightInForce > 0) {
        c.Y = b.Y + CrowdHeightInForce;
        d.Y = a.Y + CrowdHeightInForce;
    }
    // D is measured against B, not A: a sloping row gets a height of its own.
    const float h = d.Y / 100.0f - b.Y / 100.0f;
    const float dx = a.X / 100.0f - b.X / 100.0f, dz = a.Z / 100.0f - b.Z / 100.0f;
    const double w = std::sqrt(static_cast<double>(dx) * dx + static_cast<double>(dz) * dz);
    const auto u = static_cast<float>(h != 0 ? w / h / 4.0 : 0.0);
    const OIFVertex* corners[4] = {&a, &b, &c, &d};
    const float us[4] = {0, u, u, 0}, vs[4] = {1, 1, 0, 0};
    for (std::size_t i = 0; i < 4; ++i) {
        OIFVertex& out = fixed.vertices[i];
        out.X = corners[i]->X;
        out.Y = corners[i]->Y;
        out.Z = corners[i]->Z;
        out.U = us[i];
        out.V = vs[i];
    }
    if (RandomBetween(0, 1, true) == 0) {
        std::swap(fixed.vertices[0].U, fixed.vertices[1].U);
        std::swap(fixed.vertices[0].V, fixed.vertices[1].V);
        std::swap(fixed.vertices[2].U, fixed.vertices[3].U);
        std::swap(fixed.vertices[2].V, fixed.vertices[3].V);
    }
    return fixed;
}

void FixCrowdPolygons(RAVFile& list) {
    for (RAVPolygon& polygon : list.polygons)
        if (polygon.vertices.size() == 4) polygon = FixCrowdPolygon(polygon);
}

RAVFile AppendCrowdRows(const std::vector<CrowdRow>& rows, const std::string& groupName, RAVFile list) {
    if (list.polygons.size() + rows.size() > static_cast<std::size_t>(INT16_MAX))
        throw std::runtime_error("A list of rows holds at most 32767 polygons.");
    list.polygons.reserve(list.polygons.size() + rows.size());
    for (const CrowdRow& row : rows) {
        RAVPolygon polygon;
        polygon.vertexCount = 4;
        polygon.vertices = {row.V[2], row.V[1], row.V[0], row.V[3]};
        polygon.groupCount = 1;
        polygon.groups = {RAVGroup{groupName, 0, {}, 0}};
        list.polygons.push_back(std::move(polygon));
    }
    list.polygonCount = static_cast<std::int16_t>(list.polygons.size());
    return list;
}
