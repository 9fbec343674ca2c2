#pragma once
// A fixed-length text field: always exactly N bytes, blank-padded on the right when given a
// shorter text and cut to N when given a longer one. Bytes are kept as the file holds them
// (Windows-1252); nothing here converts them.
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

template <std::size_t N>
class FixedText {
public:
    FixedText() { bytes_.fill(' '); }
    FixedText(std::string_view text) { assign(text); }  // NOLINT: assignment from text is the point
    FixedText(const char* text) : FixedText(std::string_view(text)) {}
    FixedText(const std::string& text) : FixedText(std::string_view(text)) {}  // NOLINT

    FixedText& operator=(std::string_view text) {
        assign(text);
        return *this;
    }
    FixedText& operator=(const char* text) {
        assign(text);
        return *this;
    }
    FixedText& operator=(const std::string& text) {
        assign(text);
        return *this;
    }

    std::string str() const { return std::string(bytes_.data(), N); }
    std::string_view view() const { return std::string_view(bytes_.data(), N); }
    operator std::string() const { return str(); }  // NOLINT
    static constexpr std::size_t size() { return N; }

    bool operator==(const FixedText&) const = default;
    bool operator==(std::string_view text) const { return view() == text; }

private:
    void assign(std::string_view text) {
        const std::size_t n = text.size() < N ? text.size() : N;
        for (std::size_t i = 0; i < N; ++i) bytes_[i] = i < n ? text[i] : ' ';
    }
    std::array<char, N> bytes_{};
};
