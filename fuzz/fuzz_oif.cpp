// ParseOIF over arbitrary bytes. Besides memory safety (the sanitizers), every input is held
// against an independent walk of the file layout, and every accepted document must survive
// EncodeOIF and a second ParseOIF with only the changes the writer is meant to make.
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "FuzzCheck.h"
#include "core/OIFOps.h"

namespace {

std::uint32_t U32At(const std::uint8_t* p) {
    return static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
           static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}
std::int32_t I32At(const std::uint8_t* p) { return static_cast<std::int32_t>(U32At(p)); }
std::int16_t I16At(const std::uint8_t* p) { return static_cast<std::int16_t>(p[0] | p[1] << 8); }

// A text field as a reader sees it: up to the first NUL or the whole field.
std::string FieldText(const std::uint8_t* p, std::size_t n) {
    std::size_t len = 0;
    while (len < n && p[len] != 0) ++len;
    return std::string(reinterpret_cast<const char*>(p), len);
}

std::string_view TrimBlanks(std::string_view s) {
    while (!s.empty() && s.front() == ' ') s.remove_prefix(1);
    while (!s.empty() && s.back() == ' ') s.remove_suffix(1);
    return s;
}

std::string CutAtNul(std::string_view s) { return std::string(s.substr(0, s.find('\0'))); }

// The document the bytes describe, walked without the codec; nullopt when the bytes are not a
// complete stadium file.
std::optional<OIFFile> Walk(const std::uint8_t* data, std::size_t size) {
    if (size < 24 || std::memcmp(data, "OiFF", 4) != 0 || I16At(data + 6) != 1) return std::nullopt;
    OIFFile doc;
    doc.Label = "OIF1";
    doc.Header.Magic = "OiFF";
    doc.Header.Version = I16At(data + 4);
    doc.Header.Kind = 1;
    doc.Header.FileLength = I32At(data + 8);
    doc.Header.TrailerCount = I32At(data + 12);
    doc.Header.TrailerSpare = I32At(data + 16);
    doc.Header.PartCount = I32At(data + 20);
    if (doc.Header.PartCount < 0) return std::nullopt;
    std::size_t pos = 24;
    for (std::int32_t i = 0; i < doc.Header.PartCount; ++i) {
        if (size - pos < 40) return std::nullopt;
        OIFPart part;
        part.Header.Name = FieldText(data + pos, 28);
        const std::string field = FieldText(data + pos + 28, 4);
        const std::string_view texture = TrimBlanks(field);
        part.Header.Texture = texture.empty() ? std::string_view("tp00") : texture;
        part.Header.VertexCount = I32At(data + pos + 32);
        part.Header.IndexCount = I32At(data + pos + 36);
        pos += 40;
        if (part.Header.VertexCount < 0 || part.Header.IndexCount < 0) return std::nullopt;
        const std::uint64_t body = 24ull * static_cast<std::uint64_t>(part.Header.VertexCount) +
                                   2ull * static_cast<std::uint64_t>(part.Header.IndexCount);
        if (body > size - pos) return std::nullopt;
        for (std::int32_t v = 0; v < part.Header.VertexCount; ++v, pos += 24) {
            OIFVertex vertex;
            std::memcpy(&vertex.X, data + pos, 4);
            std::memcpy(&vertex.Y, data + pos + 4, 4);
            std::memcpy(&vertex.Z, data + pos + 8, 4);
            vertex.Shadow = U32At(data + pos + 12);
            std::memcpy(&vertex.U, data + pos + 16, 4);
            std::memcpy(&vertex.V, data + pos + 20, 4);
            part.Vertices.push_back(vertex);
        }
        for (std::int32_t k = 0; k < part.Header.IndexCount; ++k, pos += 2) part.Indices.push_back(I16At(data + pos));
        doc.Parts.push_back(std::move(part));
    }
    doc.Trailer.assign(data + pos, data + size);
    return doc;
}

// operator== of the records, except that coordinates compare by their bits: a NaN read from a
// file must come back as the same NaN, and NaN never equals itself.
bool SameVertexBits(const OIFVertex& a, const OIFVertex& b) {
    const auto bits = [](float f) {
        std::uint32_t u;
        std::memcpy(&u, &f, 4);
        return u;
    };
    return bits(a.X) == bits(b.X) && bits(a.Y) == bits(b.Y) && bits(a.Z) == bits(b.Z) && a.Shadow == b.Shadow &&
           bits(a.U) == bits(b.U) && bits(a.V) == bits(b.V);
}

bool SameDocument(const OIFFile& a, const OIFFile& b) {
    if (a.Label != b.Label || a.Note != b.Note || !(a.Header == b.Header) || a.Trailer != b.Trailer ||
        a.Parts.size() != b.Parts.size())
        return false;
    for (std::size_t i = 0; i < a.Parts.size(); ++i) {
        const OIFPart& p = a.Parts[i];
        const OIFPart& q = b.Parts[i];
        if (!(p.Header == q.Header) || p.Indices != q.Indices || p.Vertices.size() != q.Vertices.size()) return false;
        for (std::size_t v = 0; v < p.Vertices.size(); ++v)
            if (!SameVertexBits(p.Vertices[v], q.Vertices[v])) return false;
    }
    return true;
}

void CheckRefusal(const std::uint8_t* data, std::size_t size, const OIFParse& parsed) {
    const OIFFile& doc = parsed.doc;
    FUZZ_CHECK(doc.Parts.empty() && doc.Header.PartCount == 0, "a refused file leaves no parts");
    FUZZ_CHECK(doc.Trailer.empty(), "a refused file leaves no trailer");
    FUZZ_CHECK(doc.Label == "OIF1", "the label is set on every path");
    FUZZ_CHECK(doc.Header.Magic == FixedText<4>(FieldText(data, size < 4 ? size : 4)),
               "the magic that was read is kept");
    const bool rightMagic = size >= 24 && std::memcmp(data, "OiFF", 4) == 0;
    if (size >= 24) {
        FUZZ_CHECK(doc.Header.FileLength == I32At(data + 8), "the file length that was read is kept");
        FUZZ_CHECK(doc.Header.Kind == I16At(data + 6), "the kind that was read is kept");
    }
    if (rightMagic && I16At(data + 6) != 1)
        FUZZ_CHECK(parsed.error == InvalidOIFTypeMessage, "a stadium magic with another kind is not a stadium file");
    else FUZZ_CHECK(parsed.error == InvalidOIFMessage, "every other refusal is an invalid file");
}

void CheckAccepted(const OIFFile& doc) {
    FUZZ_CHECK(doc.Header.PartCount >= 0 && static_cast<std::size_t>(doc.Header.PartCount) == doc.Parts.size(),
               "PartCount counts the parts");
    for (const OIFPart& part : doc.Parts) {
        FUZZ_CHECK(
            part.Header.VertexCount >= 0 && static_cast<std::size_t>(part.Header.VertexCount) == part.Vertices.size(),
            "VertexCount counts the vertices");
        FUZZ_CHECK(
            part.Header.IndexCount >= 0 && static_cast<std::size_t>(part.Header.IndexCount) == part.Indices.size(),
            "IndexCount counts the indices");
        FUZZ_CHECK(TrimBlanks(part.Header.Texture.view()).size() > 0, "a blank texture reads as tp00");
    }
}

// What a save and a load give back: the writer trims names and the reader cuts them at a NUL,
// the texture is trimmed and a blank one becomes tp00, FileLength is the new length, and the
// trailer goes unless TrailerCount asks for it.
OIFFile AfterRoundTrip(const OIFFile& doc, std::size_t newLength) {
    OIFFile expected = doc;
    expected.Header.FileLength = static_cast<std::int32_t>(newLength);
    if (doc.Header.TrailerCount <= 0) expected.Trailer.clear();
    for (OIFPart& part : expected.Parts) {
        part.Header.Name = CutAtNul(TrimBlanks(part.Header.Name.view()));
        const std::string held = CutAtNul(part.Header.Texture.view());
        const std::string_view texture = TrimBlanks(held);
        part.Header.Texture = texture.empty() ? std::string_view("tp00") : texture;
    }
    return expected;
}

void CheckRoundTrip(const OIFFile& doc) {
    OIFFile given = doc;
    const ByteBuffer encoded = EncodeOIF(given);

    std::size_t length = 24;
    for (const OIFPart& part : doc.Parts) length += 40 + 24 * part.Vertices.size() + 2 * part.Indices.size();
    if (doc.Header.TrailerCount > 0) length += doc.Trailer.size();
    FUZZ_CHECK(encoded.size() == length, "the file is as long as its parts and the counted trailer");

    // The writer's one side effect on the document it is given is the blanked textures.
    OIFFile blanked = doc;
    for (OIFPart& part : blanked.Parts) part.Header.Texture = "";
    FUZZ_CHECK(SameDocument(given, blanked), "EncodeOIF changes nothing but the textures of its argument");

    const OIFParse again = ParseOIF(encoded);
    FUZZ_CHECK(again.error.empty(), "what the writer writes, the reader accepts");
    FUZZ_CHECK(SameDocument(again.doc, AfterRoundTrip(doc, encoded.size())),
               "a save and a load keep the document up to the writer's trimming");

    // After one trip the document is in the writer's own form, so a second trip is exact.
    OIFFile second = again.doc;
    FUZZ_CHECK(EncodeOIF(second) == encoded, "a second save writes the same bytes");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ByteBuffer input(data, data + size);
    const OIFParse parsed = ParseOIF(input);
    const std::optional<OIFFile> walked = Walk(data, size);
    if (!parsed.error.empty()) {
        FUZZ_CHECK(!walked, "a complete stadium file is accepted");
        CheckRefusal(data, size, parsed);
        return 0;
    }
    FUZZ_CHECK(walked.has_value(), "only a complete stadium file is accepted");
    FUZZ_CHECK(SameDocument(parsed.doc, *walked), "the document holds what the bytes say");
    CheckAccepted(parsed.doc);
    CheckRoundTrip(parsed.doc);
    return 0;
}
