#pragma once
// The byte-buffer toolkit under the OIF codec. The number readers and writers do no bounds
// checks: the caller has checked the position against the buffer's size.
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

using ByteBuffer = std::vector<std::uint8_t>;

namespace binaryOps {

// Reads a whole file. Throws std::runtime_error with a user-readable text when it cannot.
ByteBuffer ReadFileBytes(const std::string& path);

inline std::int16_t GetI16(const ByteBuffer& b, std::size_t pos) {
    return static_cast<std::int16_t>(b[pos] | (b[pos + 1] << 8));
}
inline std::int32_t GetI32(const ByteBuffer& b, std::size_t pos) {
    return static_cast<std::int32_t>(
        static_cast<std::uint32_t>(b[pos]) | (static_cast<std::uint32_t>(b[pos + 1]) << 8) |
        (static_cast<std::uint32_t>(b[pos + 2]) << 16) | (static_cast<std::uint32_t>(b[pos + 3]) << 24));
}
inline std::uint32_t GetU32(const ByteBuffer& b, std::size_t pos) { return static_cast<std::uint32_t>(GetI32(b, pos)); }
inline float GetF32(const ByteBuffer& b, std::size_t pos) {
    const std::uint32_t bits = GetU32(b, pos);
    float f;
    std::memcpy(&f, &bits, 4);
    return f;
}

inline void PutI16(ByteBuffer& b, std::size_t pos, std::int16_t v) {
    const auto u = static_cast<std::uint16_t>(v);
    b[pos] = static_cast<std::uint8_t>(u);
    b[pos + 1] = static_cast<std::uint8_t>(u >> 8);
}
inline void PutU32(ByteBuffer& b, std::size_t pos, std::uint32_t u) {
    b[pos] = static_cast<std::uint8_t>(u);
    b[pos + 1] = static_cast<std::uint8_t>(u >> 8);
    b[pos + 2] = static_cast<std::uint8_t>(u >> 16);
    b[pos + 3] = static_cast<std::uint8_t>(u >> 24);
}
inline void PutI32(ByteBuffer& b, std::size_t pos, std::int32_t v) { PutU32(b, pos, static_cast<std::uint32_t>(v)); }
inline void PutF32(ByteBuffer& b, std::size_t pos, float v) {
    std::uint32_t bits;
    std::memcpy(&bits, &v, 4);
    PutU32(b, pos, bits);
}

// Reads characters from pos upward until a NUL, the end of the buffer, or `count` characters;
// `count` goes down by one per character read. A count of 0 on entry means "up to the last byte".
std::string GetText(const ByteBuffer& b, std::size_t pos, int& count);

// Writes exactly n bytes at pos: the text cut to n, then one NUL and blanks up to n. The text
// is consumed: the caller's variable is empty afterwards, which SaveOIF relies on.
void PutText(ByteBuffer& b, std::size_t pos, std::string& text, int n);

// Writes the buffer as the whole file. The bytes go to a temporary file in the same folder that
// then replaces the target, so a failure half-way leaves the old file as it was. Throws
// std::runtime_error with a user-readable text on failure.
void WriteBytesFile(const ByteBuffer& buffer, const std::string& path);

// Shadow words are held unsigned but shown and computed through signed 32-bit values.
double UnsignedFromLong(std::int32_t value);
// Throws std::overflow_error for negative values and values of 4294967296 or more.
std::int32_t LongFromUnsigned(double value);

}  // namespace binaryOps
