#include <gtest/gtest.h>

#include <random>
#include <tuple>

#include "core/OIFOps.h"
#include "support/ScriptedDesktop.h"
#include "support/TestFiles.h"

namespace {

// Header of a stadium OIF with the given counts; FileLength is whatever the maker wrote.
Bytes Header(std::int32_t parts, std::int32_t trailerCount = 0, std::int32_t fileLength = 0) {
    Bytes b;
    b.raw("OiFF").i16(3).i16(1).i32(fileLength).i32(trailerCount).i32(77).i32(parts);
    return b;
}

// Two parts as a file maker other than this program might write them.
Bytes TwoPartFile(std::int32_t trailerCount, const std::string& trailer) {
    Bytes b = Header(2, trailerCount, 999);
    const std::string name28 = "ABCDEFGHIJKLMNOPQRSTUVWXYZ01";
    b.raw(name28).raw("cr01").i32(2).i32(3);
    b.vertex(1.5f, -2.25f, 3, 0xFFFFFFFFu, 0.5f, 1);
    b.vertex(-100000, 0.125f, 7, 0x00808080u, 0, -1);
    b.i16(0).i16(1).i16(-1);
    b.field("Caf\xE9", 28).raw("    ").i32(1).i32(0);  // blank texture, 8-bit name
    b.vertex(0, 0, 0, 0, 0, 0);
    b.raw(trailer);
    return b;
}

}  // namespace

TEST(ParseOIF, TrimsTexturesAndStopsNamesAtTheFirstNul) {
    Bytes b = Header(3);
    b.field("", 28).raw(" ab ").i32(0).i32(0);
    b.raw(std::string("Roof\0garbage\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 28)).raw(std::string("\0abc", 4)).i32(0).i32(0);
    b.raw(std::string("  Roof  \0garbagexxxxxxxxxxxx", 28)).raw(std::string("ab\0\0", 4)).i32(0).i32(0);
    OIFParse r = ParseOIF(b.data);
    ASSERT_EQ(r.error, "");
    EXPECT_EQ(r.doc.Parts[0].Header.Name.str(), std::string(28, ' '));
    EXPECT_EQ(r.doc.Parts[0].Header.Texture.str(), "ab  ");
    EXPECT_EQ(r.doc.Parts[1].Header.Name.str(), "Roof" + std::string(24, ' '));
    EXPECT_EQ(r.doc.Parts[1].Header.Texture.str(), "tp00") << "a texture that starts with NUL is blank";
    EXPECT_EQ(r.doc.Parts[2].Header.Texture.str(), "ab  ");
    EXPECT_TRUE(r.doc.Trailer.empty());
}

TEST(EncodeOIF, WritesTheFileFormatByteForByte) {
    OIFFile d = ParseOIF(TwoPartFile(1, "TAIL").data).doc;
    // What the writer does not write back as read: the label, the length carried unchecked, the
    // 8-bit name padded with blanks.
    EXPECT_TRUE(d.Label == "OIF1" && d.Header.FileLength == 999);
    EXPECT_EQ(d.Parts[1].Header.Name.str(), "Caf\xE9" + std::string(24, ' '));
    d.Parts[0].Header.Texture = "ab";   // held as "ab  ": written as letters and two blanks
    d.Parts[1].Header.Name = "  xy  ";  // trimmed, then NUL and blanks
    const ByteBuffer out = EncodeOIF(d);

    Bytes want;
    const std::int32_t length = 24 + (40 + 48 + 6) + (40 + 24) + 4;
    want.raw("OiFF").i16(3).i16(1).i32(length).i32(1).i32(77).i32(2);
    want.raw("ABCDEFGHIJKLMNOPQRSTUVWXYZ01").raw("ab  ").i32(2).i32(3);
    want.vertex(1.5f, -2.25f, 3, 0xFFFFFFFFu, 0.5f, 1).vertex(-100000, 0.125f, 7, 0x00808080u, 0, -1);
    want.i16(0).i16(1).i16(-1);
    want.field("xy", 28).raw("tp00").i32(1).i32(0).vertex(0, 0, 0, 0, 0, 0);
    want.raw("TAIL");
    EXPECT_EQ(out, want.data);
}

TEST(EncodeOIF, TrailerIsWrittenOnlyWhenTheHeaderCountsIt) {
    EXPECT_EQ(ParseOIF(TwoPartFile(0, "XYZ").data).doc.Trailer.size(), 3u) << "read and held in memory";
    // A positive count with nothing held writes no trailer and does not fail.
    for (const auto& [count, held, written] :
         {std::tuple{1, "XYZ", 3u}, {0, "XYZ", 0u}, {-1, "XYZ", 0u}, {5, "", 0u}}) {
        OIFFile d = ParseOIF(TwoPartFile(1, held).data).doc;
        d.Header.TrailerCount = count;
        const ByteBuffer out = EncodeOIF(d);
        EXPECT_EQ(out.size(), 182u + written) << count;
        EXPECT_EQ(binaryOps::GetI32(out, 8), static_cast<std::int32_t>(out.size())) << count;
    }
}

TEST(EncodeOIF, LeavesEveryTextureOfTheDocumentBlank) {
    OIFFile live = ParseOIF(TwoPartFile(0, "").data).doc;
    const ByteBuffer first = EncodeOIF(live);
    EXPECT_EQ(ParseOIF(first).doc.Parts[0].Header.Texture.str(), "cr01") << "the file itself is right";
    for (const OIFPart& p : live.Parts) EXPECT_EQ(p.Header.Texture.str(), "    ");
    // Saving the same document again writes blanks (which read back as the default texture).
    const ByteBuffer second = EncodeOIF(live);
    EXPECT_EQ(std::string(second.begin() + 24 + 28, second.begin() + 24 + 32), "    ");
}

// The empty stadium of a new project reloads; the document of no project has a zero header,
// and the magic is still written and refused as not a stadium.
TEST(EncodeOIF, EmptyDocumentsAreTwentyFourBytes) {
    Bytes want;
    want.raw("OiFF").i16(1).i16(1).i32(24).i32(0).i32(0).i32(0);
    OIFFile fresh = NewOIFFile();
    EXPECT_EQ(EncodeOIF(fresh), want.data);
    EXPECT_EQ(fresh.Label, "OIF1");
    EXPECT_EQ(ParseOIF(want.data).error, "");
    OIFFile none;
    const ByteBuffer noProject = EncodeOIF(none);
    EXPECT_EQ(binaryOps::GetI16(noProject, 6), 0);
    EXPECT_EQ(ParseOIF(noProject).error, InvalidOIFTypeMessage);
}

TEST(OIFCodec, KeepsTheBitsOfEveryVertexFieldThroughALoadAndASave) {
    Bytes b = Header(1);
    // A signalling NaN: a float register would quiet it.
    b.field("p", 28)
        .raw("tp00")
        .i32(1)
        .i32(0)
        .u32(0x7FA00001)
        .f32(-0.0f)
        .f32(1e-30f)
        .u32(0xFFFFFFFFu)
        .f32(0.25f)
        .f32(-7);
    OIFFile doc = ParseOIF(b.data).doc;
    const ByteBuffer out = EncodeOIF(doc);
    EXPECT_EQ(ByteBuffer(out.begin() + 24, out.end()), ByteBuffer(b.data.begin() + 24, b.data.end()));
}

TEST(ParseOIF, RefusesWrongMagicWrongKindAndCountsThatLie) {
    const auto part = [](std::int32_t vertices, std::int32_t indices, const std::string& more = "") {
        Bytes b = Header(1);
        b.field("p", 28).raw("tp00").i32(vertices).i32(indices).raw(more);
        return b;
    };
    const auto head = [](const char* magic, std::int16_t kind) {
        Bytes b;
        b.raw(magic).i16(1).i16(kind).i32(24).i32(0).i32(0).i32(0);
        return b;
    };
    const std::tuple<const char*, Bytes, std::string> cases[] = {
        {"capital magic", head("OIFF", 1), "Invalid OIF file!"},
        {"kind 2", head("OiFF", 2), "Invalid OIF file type!\r\n\r\nNot a stadium OIF file."},
        {"kind 0", head("OiFF", 0), InvalidOIFTypeMessage},
        {"magic judged before kind", head("OiFf", 2), InvalidOIFMessage},
        {"huge part count", Header(0x7FFFFFFF), InvalidOIFMessage},
        {"negative part count", Header(-1), InvalidOIFMessage},
        {"huge vertex count", part(0x7FFFFFFF, 0), InvalidOIFMessage},
        // 24 times this count wraps to 8 in 32 bits, which the file would seem to hold.
        {"vertex count wrapping in 32 bits", part(0x0AAAAAAB, 0, std::string(8, 'x')), InvalidOIFMessage},
        {"huge index count", part(0, 0x7FFFFFFF), InvalidOIFMessage},
        {"negative vertex count", part(-1, 0), InvalidOIFMessage},
        {"negative index count", part(0, -4, std::string(64, 'x')), InvalidOIFMessage},
    };
    for (const auto& [what, bytes, message] : cases) EXPECT_EQ(ParseOIF(bytes.data).error, message) << what;
    // A refused kind still tells its header, and no parts.
    const OIFParse r = ParseOIF(head("OiFF", 2).data);
    EXPECT_TRUE(r.doc.Header.Kind == 2 && r.doc.Header.FileLength == 24 && r.doc.Parts.empty());
    EXPECT_EQ(r.doc.Header.Magic.str(), "OiFF");
}

TEST(ParseOIF, RefusesEveryTruncationWithoutReadingPastTheEnd) {
    const ByteBuffer whole = TwoPartFile(0, "").data;
    // The header promises two parts, so every shorter prefix lacks bytes that a count asks for.
    for (std::size_t n = 0; n < whole.size(); ++n) {
        const ByteBuffer cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(n));
        const OIFParse r = ParseOIF(cut);
        EXPECT_EQ(r.error, InvalidOIFMessage) << "length " << n;
        EXPECT_TRUE(r.doc.Parts.empty());
        EXPECT_EQ(r.doc.Header.PartCount, 0);
    }
    EXPECT_EQ(ParseOIF(whole).error, "");
}

TEST(LoadOIF, ReportsRefusalsInABoxAndLeavesTheProgressWindowUp) {
    ScriptedDesktop desktop;
    ScratchFolder dir;
    Bytes kind2;
    kind2.raw("OiFF").i16(1).i16(2).i32(24).i32(0).i32(0).i32(0);
    WriteFile(dir.file("k.oif"), kind2.data);
    bool ok = true;
    const OIFFile d = LoadOIF(dir.file("k.oif"), &ok);
    EXPECT_FALSE(ok);
    EXPECT_TRUE(d.Parts.empty());
    ASSERT_EQ(desktop.messages.size(), 1u);
    EXPECT_EQ(desktop.messages[0].text, InvalidOIFTypeMessage);
    EXPECT_TRUE(desktop.messages[0].title == "VORN Terramason" && desktop.messages[0].icon == MessageIcon::Exclamation);
    EXPECT_EQ(desktop.loadingTexts, (std::vector<std::string>{"Loading OIF file..."}));
    EXPECT_TRUE(desktop.loadingShown);

    // The next load that ends well takes the progress window down.
    WriteFile(dir.file("good.oif"), TwoPartFile(0, "").data);
    const OIFFile good = LoadOIF(dir.file("good.oif"), &ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(good.Parts.size(), 2u);
    EXPECT_FALSE(desktop.loadingShown);
    EXPECT_EQ(desktop.messages.size(), 1u);
}

TEST(SaveOIF, ShowsItsProgressTextAndTakesItDown) {
    ScriptedDesktop desktop;
    OIFFile d = NewOIFFile();
    EXPECT_EQ(SaveOIF(d).size(), 24u);
    EXPECT_EQ(desktop.loadingTexts, (std::vector<std::string>{"Saving OIF file ..."}));
    EXPECT_FALSE(desktop.loadingShown);
}

TEST(OIFCodec, RandomDocumentsSurviveASaveAndALoad) {
    std::mt19937 rng(2003);
    std::uniform_real_distribution<float> coord(-50000, 50000);
    std::uniform_int_distribution<int> small(0, 40), byte(1, 255);
    for (int round = 0; round < 50; ++round) {
        OIFFile doc = NewOIFFile();
        doc.Header.Version = static_cast<std::int16_t>(small(rng));
        doc.Header.TrailerCount = round % 2;
        doc.Header.TrailerSpare = small(rng);
        const int parts = small(rng) % 6;
        for (int p = 0; p < parts; ++p) {
            OIFPart part;
            std::string name;
            for (int k = small(rng) % 29; k > 0; --k) name += static_cast<char>(byte(rng));
            if (!name.empty()) name.front() = 'n';  // the writer trims blanks at either end
            if (!name.empty()) name.back() = 'e';
            part.Header.Name = name;
            part.Header.Texture = "t" + std::to_string(p % 10) + "ab";
            for (int v = small(rng); v > 0; --v)
                part.Vertices.push_back({coord(rng), coord(rng), coord(rng), static_cast<std::uint32_t>(rng()),
                                         coord(rng) / 50000, coord(rng) / 50000});
            for (int i = small(rng); i > 0; --i) part.Indices.push_back(static_cast<std::int16_t>(rng()));
            part.Header.VertexCount = static_cast<std::int32_t>(part.Vertices.size());
            part.Header.IndexCount = static_cast<std::int32_t>(part.Indices.size());
            doc = AddPart(part, doc);
        }
        for (int t = small(rng) % 5; t > 0; --t) doc.Trailer.push_back(static_cast<std::uint8_t>(byte(rng)));
        if (doc.Header.TrailerCount == 0) doc.Trailer.clear();
        OIFFile copy = doc;
        const ByteBuffer bytes = EncodeOIF(copy);
        OIFParse back = ParseOIF(bytes);
        ASSERT_EQ(back.error, "");
        doc.Header.FileLength = static_cast<std::int32_t>(bytes.size());
        EXPECT_EQ(back.doc, doc) << "round " << round;
    }
}
