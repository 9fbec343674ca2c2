#include "core/OIFOps.h"

#include <bit>
#include <cstring>
#include <map>
#include <stdexcept>

#include "core/Desktop.h"
#include "core/myOps.h"

namespace {

constexpr std::size_t HeaderSize = 24;
constexpr std::size_t PartHeadSize = 40;
constexpr std::size_t VertexSize = 24;

// On a little-endian host the vertex records of the file are the in-memory vertices.
constexpr bool BlockCopy =
    std::endian::native == std::endian::little && sizeof(OIFVertex) == VertexSize && sizeof(float) == 4;

void ReadVertices(const ByteBuffer& b, std::size_t pos, std::vector<OIFVertex>& out) {
    if constexpr (BlockCopy) {
        if (!out.empty()) std::memcpy(out.data(), b.data() + pos, out.size() * VertexSize);
    } else {
        for (OIFVertex& v : out) {
            v.X = binaryOps::GetF32(b, pos);
            v.Y = binaryOps::GetF32(b, pos + 4);
            v.Z = binaryOps::GetF32(b, pos + 8);
            v.Shadow = binaryOps::GetU32(b, pos + 12);
            v.U = binaryOps::GetF32(b, pos + 16);
            v.V = binaryOps::GetF32(b, pos + 20);
            pos += VertexSize;
        }
    }
}

void ReadIndices(const ByteBuffer& b, std::size_t pos, std::vector<std::int16_t>& out) {
    if constexpr (BlockCopy) {
        if (!out.empty()) std::memcpy(out.data(), b.data() + pos, out.size() * 2);
    } else {
        for (std::int16_t& i : out) {
            i = binaryOps::GetI16(b, pos);
            pos += 2;
        }
    }
}

// The writers append to a buffer whose capacity is already reserved: a buffer sized up front
// would be zero-filled first, and for a large stadium that fill, not the copy, is what costs.
void AppendVertices(ByteBuffer& b, const std::vector<OIFVertex>& in) {
    if constexpr (BlockCopy) {
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(in.data());
        b.insert(b.end(), bytes, bytes + in.size() * VertexSize);
    } else {
        std::size_t pos = b.size();
        b.resize(pos + in.size() * VertexSize);
        for (const OIFVertex& v : in) {
            binaryOps::PutF32(b, pos, v.X);
            binaryOps::PutF32(b, pos + 4, v.Y);
            binaryOps::PutF32(b, pos + 8, v.Z);
            binaryOps::PutU32(b, pos + 12, v.Shadow);
            binaryOps::PutF32(b, pos + 16, v.U);
            binaryOps::PutF32(b, pos + 20, v.V);
            pos += VertexSize;
        }
    }
}

void AppendIndices(ByteBuffer& b, const std::vector<std::int16_t>& in) {
    if constexpr (BlockCopy) {
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(in.data());
        b.insert(b.end(), bytes, bytes + in.size() * 2);
    } else {
        std::size_t pos = b.size();
        b.resize(pos + in.size() * 2);
        for (std::int16_t i : in) {
            binaryOps::PutI16(b, pos, i);
            pos += 2;
        }
    }
}

}  // namespace

OIFParse ParseOIF(const ByteBuffer& b) {
    OIFParse result;
    OIFFile& doc = result.doc;
    doc = NewOIFFile();
    doc.Header = OIFHeader{};
    auto refuse = [&](const char* message) {
        doc.Parts.clear();
        doc.Header.PartCount = 0;
        result.error = message;
        return result;
    };
    if (b.size() < HeaderSize) {
        // Whatever of the magic there is, a file without a whole header is no OIF file.
        int count = 4;
        doc.Header.Magic = binaryOps::GetText(b, 0, count);
        return refuse(InvalidOIFMessage);
    }
    int count = 4;
    doc.Header.Magic = binaryOps::GetText(b, 0, count);
    doc.Header.FileLength = binaryOps::GetI32(b, 8);
    doc.Header.Kind = binaryOps::GetI16(b, 6);
    if (doc.Header.Magic.view() != "OiFF") return refuse(InvalidOIFMessage);
    if (doc.Header.Kind != 1) return refuse(InvalidOIFTypeMessage);
    doc.Header.Version = binaryOps::GetI16(b, 4);
    doc.Header.TrailerCount = binaryOps::GetI32(b, 12);
    doc.Header.TrailerSpare = binaryOps::GetI32(b, 16);
    const std::int32_t partCount = binaryOps::GetI32(b, 20);
    // Every part needs at least its 40-byte head, which bounds what a lying count can ask for.
    if (partCount < 0 || static_cast<std::uint64_t>(partCount) * PartHeadSize > b.size() - HeaderSize)
        return refuse(InvalidOIFMessage);

    doc.Parts.resize(static_cast<std::size_t>(partCount));
    std::size_t pos = HeaderSize;
    for (OIFPart& part : doc.Parts) {
        PumpEvents();
        if (b.size() - pos < PartHeadSize) return refuse(InvalidOIFMessage);
        count = 28;
        part.Header.Name = binaryOps::GetText(b, pos, count);
        pos += 28;
        count = 4;
        std::string texture = TrimBlanks(binaryOps::GetText(b, pos, count));
        part.Header.Texture = texture.empty() ? std::string("tp00") : texture;
        pos += 4;
        const std::int32_t vertexCount = binaryOps::GetI32(b, pos);
        const std::int32_t indexCount = binaryOps::GetI32(b, pos + 4);
        pos += 8;
        if (vertexCount < 0 || indexCount < 0) return refuse(InvalidOIFMessage);
        const std::uint64_t body =
            static_cast<std::uint64_t>(vertexCount) * VertexSize + static_cast<std::uint64_t>(indexCount) * 2;
        if (body > b.size() - pos) return refuse(InvalidOIFMessage);
        part.Header.VertexCount = vertexCount;
        part.Header.IndexCount = indexCount;
        part.Vertices.resize(static_cast<std::size_t>(vertexCount));
        ReadVertices(b, pos, part.Vertices);
        pos += static_cast<std::size_t>(vertexCount) * VertexSize;
        part.Indices.resize(static_cast<std::size_t>(indexCount));
        ReadIndices(b, pos, part.Indices);
        pos += static_cast<std::size_t>(indexCount) * 2;
    }
    doc.Header.PartCount = partCount;
    if (pos < b.size()) doc.Trailer.assign(b.begin() + static_cast<std::ptrdiff_t>(pos), b.end());
    return result;
}

OIFFile LoadOIF(const std::string& path, bool* ok) {
    Desktop& desktop = TheDesktop();
    desktop.ShowLoading("Loading OIF file...");
    ByteBuffer bytes;
    try {
        bytes = binaryOps::ReadFileBytes(path);
    } catch (...) {
        desktop.HideLoading();
        throw;
    }
    OIFParse parsed = ParseOIF(bytes);
    if (ok) *ok = parsed.error.empty();
    if (!parsed.error.empty()) {
        // The progress window stays up on a refusal, as it always has, until the next load or
        // save that ends well takes it down.
        ShowMessage(parsed.error, MessageIcon::Exclamation);
        return parsed.doc;
    }
    desktop.HideLoading();
    return parsed.doc;
}

ByteBuffer EncodeOIF(OIFFile& doc) {
    std::uint64_t size = HeaderSize;
    for (std::size_t i = 0; i < doc.Parts.size(); ++i) {
        const OIFPartHeader& h = doc.Parts[i].Header;
        if (h.VertexCount < 0 || h.IndexCount < 0 ||
            static_cast<std::size_t>(h.VertexCount) != doc.Parts[i].Vertices.size() ||
            static_cast<std::size_t>(h.IndexCount) != doc.Parts[i].Indices.size())
            throw std::logic_error("Part " + std::to_string(i) +
                                   " does not hold as many vertices or indices as its counts say.");
        size += PartHeadSize + static_cast<std::uint64_t>(h.VertexCount) * VertexSize +
                static_cast<std::uint64_t>(h.IndexCount) * 2;
    }
    const bool withTrailer = doc.Header.TrailerCount > 0;
    if (withTrailer) size += doc.Trailer.size();
    if (size > 0x7FFFFFFFu) throw std::length_error("The document is too large for an OIF file (over 2 GB).");

    ByteBuffer b;
    b.reserve(static_cast<std::size_t>(size));
    b.resize(HeaderSize);
    b[0] = 'O';
    b[1] = 'i';
    b[2] = 'F';
    b[3] = 'F';
    binaryOps::PutI16(b, 4, doc.Header.Version);
    binaryOps::PutI16(b, 6, doc.Header.Kind);
    binaryOps::PutI32(b, 12, doc.Header.TrailerCount);
    binaryOps::PutI32(b, 16, doc.Header.TrailerSpare);
    binaryOps::PutI32(b, 20, static_cast<std::int32_t>(doc.Parts.size()));
    for (OIFPart& part : doc.Parts) {
        std::size_t pos = b.size();
        b.resize(pos + PartHeadSize);
        std::string name = TrimBlanks(part.Header.Name.view());
        binaryOps::PutText(b, pos, name, 28);
        pos += 28;
        std::string texture = part.Header.Texture.str();
        binaryOps::PutText(b, pos, texture, 4);
        part.Header.Texture = texture;  // consumed by PutText: the document's texture is now blank
        pos += 4;
        binaryOps::PutI32(b, pos, part.Header.VertexCount);
        binaryOps::PutI32(b, pos + 4, part.Header.IndexCount);
        AppendVertices(b, part.Vertices);
        AppendIndices(b, part.Indices);
    }
    if (withTrailer) b.insert(b.end(), doc.Trailer.begin(), doc.Trailer.end());
    binaryOps::PutI32(b, 8, static_cast<std::int32_t>(b.size()));
    return b;
}

ByteBuffer SaveOIF(OIFFile& doc) {
    Desktop& desktop = TheDesktop();
    desktop.ShowLoading("Saving OIF file ...");
    ByteBuffer bytes;
    try {
        bytes = EncodeOIF(doc);
    } catch (...) {
        desktop.HideLoading();
        throw;
    }
    desktop.HideLoading();
    return bytes;
}
