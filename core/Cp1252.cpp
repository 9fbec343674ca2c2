#include "core/Cp1252.h"

#include <cstdint>

namespace {
// 0x80..0x9F; 0 marks the five bytes that Windows-1252 leaves undefined (kept as C1 controls).
constexpr char32_t High[32] = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
                               0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
                               0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

void AppendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

char FromCodePoint(char32_t c) {
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) return static_cast<char>(c);
    for (int i = 0; i < 32; ++i)
        if (High[i] == c || (High[i] == 0 && c == static_cast<char32_t>(0x80 + i))) return static_cast<char>(0x80 + i);
    return '?';
}
}  // namespace

std::string Cp1252ToUtf8(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size());
    for (char ch : bytes) {
        const auto b = static_cast<std::uint8_t>(ch);
        if (b >= 0x80 && b < 0xA0) {
            const char32_t c = High[b - 0x80];
            AppendUtf8(out, c ? c : static_cast<char32_t>(b));
        } else {
            AppendUtf8(out, b);
        }
    }
    return out;
}

std::string Utf8ToCp1252(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    std::size_t i = 0;
    while (i < utf8.size()) {
        const auto b = static_cast<std::uint8_t>(utf8[i]);
        int extra = b >= 0xF0 ? 3 : b >= 0xE0 ? 2 : b >= 0xC0 ? 1 : 0;
        char32_t c = b;
        if (extra > 0) c = b & (0x3F >> extra);
        bool ok = b < 0x80 || extra > 0;
        for (int k = 1; ok && k <= extra; ++k) {
            if (i + k >= utf8.size() || (static_cast<std::uint8_t>(utf8[i + k]) & 0xC0) != 0x80) ok = false;
            else c = (c << 6) | (static_cast<std::uint8_t>(utf8[i + k]) & 0x3F);
        }
        if (!ok) {
            out += static_cast<char>(b);
            ++i;
            continue;
        }
        out += FromCodePoint(c);
        i += static_cast<std::size_t>(extra) + 1;
    }
    return out;
}
