#include "cli/JsonOut.h"

#include <charconv>
#include <cmath>

#include <nlohmann/json.hpp>

#include "core/Cp1252.h"
#include "core/NumberText.h"

namespace {

template <typename Int>
void AppendInt(std::string& out, Int value) {
    char buf[24];
    const auto end = std::to_chars(buf, buf + sizeof buf, value).ptr;
    out.append(buf, end);
}

// Collects output and hands it to the stream in large pieces.
class Sink {
public:
    explicit Sink(std::ostream& out) : out_(out) { text.reserve(Chunk + 4096); }
    void Flush() {
        out_.write(text.data(), static_cast<std::streamsize>(text.size()));
        text.clear();
    }
    void MaybeFlush() {
        if (text.size() >= Chunk) Flush();
    }
    std::string text;

private:
    static constexpr std::size_t Chunk = 1 << 20;
    std::ostream& out_;
};

void AppendVertex(std::string& out, const OIFVertex& v) {
    out += '[';
    out += JsonFloat(v.X);
    out += ", ";
    out += JsonFloat(v.Y);
    out += ", ";
    out += JsonFloat(v.Z);
    out += ", ";
    AppendInt(out, v.Shadow);
    out += ", ";
    out += JsonFloat(v.U);
    out += ", ";
    out += JsonFloat(v.V);
    out += ']';
}

}  // namespace

std::string JsonFloat(float value) {
    if (!std::isfinite(value)) return "null";
    // The program's number text drops the sign of zero; a dump shows the bits it found.
    if (value == 0 && std::signbit(value)) return "-0";
    return ShortestSingleText(value);
}

std::string JsonString(std::string_view utf8) {
    return nlohmann::json(std::string(utf8)).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string JsonDocumentText(std::string_view cp1252) { return JsonString(Cp1252ToUtf8(cp1252)); }

void WriteOIFJson(std::ostream& out, const OIFFile& doc) {
    Sink sink(out);
    std::string& s = sink.text;
    const OIFHeader& h = doc.Header;
    s += "{\n  \"label\": ";
    s += JsonDocumentText(doc.Label);
    s += ",\n  \"header\": {\"magic\": ";
    s += JsonDocumentText(h.Magic.view());
    s += ", \"version\": ";
    AppendInt(s, h.Version);
    s += ", \"kind\": ";
    AppendInt(s, h.Kind);
    s += ", \"fileLength\": ";
    AppendInt(s, h.FileLength);
    s += ", \"trailerCount\": ";
    AppendInt(s, h.TrailerCount);
    s += ", \"trailerSpare\": ";
    AppendInt(s, h.TrailerSpare);
    s += ", \"partCount\": ";
    AppendInt(s, h.PartCount);
    s += "},\n  \"parts\": [";
    for (std::size_t p = 0; p < doc.Parts.size(); ++p) {
        const OIFPart& part = doc.Parts[p];
        s += p == 0 ? "\n    {\"name\": " : ",\n    {\"name\": ";
        s += JsonDocumentText(part.Header.Name.view());
        s += ", \"texture\": ";
        s += JsonDocumentText(part.Header.Texture.view());
        s += ",\n     \"vertices\": [";
        for (std::size_t i = 0; i < part.Vertices.size(); ++i) {
            s += i == 0 ? "\n       " : ",\n       ";
            AppendVertex(s, part.Vertices[i]);
            sink.MaybeFlush();
        }
        s += part.Vertices.empty() ? "],\n     \"indices\": [" : "\n     ],\n     \"indices\": [";
        for (std::size_t i = 0; i < part.Indices.size(); ++i) {
            if (i > 0) s += ", ";
            AppendInt(s, part.Indices[i]);
            sink.MaybeFlush();
        }
        s += "]}";
    }
    s += doc.Parts.empty() ? "],\n  \"trailer\": \"" : "\n  ],\n  \"trailer\": \"";
    static constexpr char Hex[] = "0123456789abcdef";
    for (std::uint8_t byte : doc.Trailer) {
        s += Hex[byte >> 4];
        s += Hex[byte & 0x0F];
        sink.MaybeFlush();
    }
    s += "\"\n}\n";
    sink.Flush();
}

void WriteRAVJson(std::ostream& out, const RAVFile& file) {
    std::string s = "{\n  \"version\": ";
    AppendInt(s, file.version);
    s += ",\n  \"polygons\": [";
    for (std::size_t p = 0; p < file.polygons.size(); ++p) {
        const RAVPolygon& polygon = file.polygons[p];
        s += p == 0 ? "\n    {\"name\": " : ",\n    {\"name\": ";
        s += JsonDocumentText(polygon.name);
        s += ",\n     \"vertices\": [";
        for (std::size_t i = 0; i < polygon.vertices.size(); ++i) {
            s += i == 0 ? "" : ", ";
            AppendVertex(s, polygon.vertices[i]);
        }
        s += "],\n     \"groups\": [";
        for (std::size_t g = 0; g < polygon.groups.size(); ++g) {
            s += g == 0 ? "{\"name\": " : ", {\"name\": ";
            s += JsonDocumentText(polygon.groups[g].name);
            s += ", \"indices\": [";
            for (std::size_t i = 0; i < polygon.groups[g].indices.size(); ++i) {
                if (i > 0) s += ", ";
                AppendInt(s, polygon.groups[g].indices[i]);
            }
            s += "]}";
        }
        s += "]}";
    }
    s += file.polygons.empty() ? "]\n}\n" : "\n  ]\n}\n";
    out << s;
}

void Write3DSJson(std::ostream& out, const Model3DS& model) {
    // A list of rows, each row a list of numbers, one row after another on the line.
    auto rows = [](std::string& s, std::size_t count, auto row) {
        s += "[";
        for (std::size_t i = 0; i < count; ++i) {
            s += i == 0 ? "[" : ", [";
            row(i);
            s += "]";
        }
        s += "]";
    };
    std::string s = "{\n  \"meshes\": [";
    for (std::size_t m = 0; m < model.meshes.size(); ++m) {
        const Mesh3DS& mesh = model.meshes[m];
        s += m == 0 ? "\n    {\"name\": " : ",\n    {\"name\": ";
        s += JsonDocumentText(mesh.name);
        s += ",\n     \"vertices\": ";
        rows(s, mesh.vertices.size(), [&](std::size_t i) {
            const Vertex3DS& v = mesh.vertices[i];
            s += JsonFloat(v.x) + ", " + JsonFloat(v.y) + ", " + JsonFloat(v.z);
        });
        s += ",\n     \"faces\": ";
        rows(s, mesh.faces.size(), [&](std::size_t i) {
            const Face3DS& f = mesh.faces[i];
            s += std::to_string(f.a) + ", " + std::to_string(f.b) + ", " + std::to_string(f.c) + ", " +
                 std::to_string(f.flags);
        });
        s += ",\n     \"texVerts\": ";
        rows(s, mesh.texVerts.size(),
             [&](std::size_t i) { s += JsonFloat(mesh.texVerts[i].u) + ", " + JsonFloat(mesh.texVerts[i].v); });
        s += ",\n     \"materialName\": " + JsonDocumentText(mesh.materialName) + "}";
    }
    s += model.meshes.empty() ? "],\n  \"materials\": [" : "\n  ],\n  \"materials\": [";
    for (std::size_t m = 0; m < model.materials.size(); ++m) {
        s += m == 0 ? "\n    {\"name\": " : ",\n    {\"name\": ";
        s += JsonDocumentText(model.materials[m].name) +
             ", \"textureFile\": " + JsonDocumentText(model.materials[m].textureFile) + "}";
    }
    s += model.materials.empty() ? "]\n}\n" : "\n  ]\n}\n";
    out << s;
}
