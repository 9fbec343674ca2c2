#include "support/TestFiles.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

ScratchFolder::ScratchFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "terramason-test-XXXXXX").string();
    if (!::mkdtemp(pattern.data())) throw std::runtime_error("cannot make a scratch folder");
    path_ = pattern;
}

ScratchFolder::~ScratchFolder() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
}

Bytes& Bytes::i16(std::int16_t v) {
    const auto u = static_cast<std::uint16_t>(v);
    data.push_back(static_cast<std::uint8_t>(u & 0xFF));
    data.push_back(static_cast<std::uint8_t>(u >> 8));
    return *this;
}

Bytes& Bytes::u32(std::uint32_t v) {
    for (int i = 0; i < 4; ++i) data.push_back(static_cast<std::uint8_t>((v >> (8 * i)) & 0xFF));
    return *this;
}

Bytes& Bytes::f32(float v) {
    std::uint32_t bits;
    std::memcpy(&bits, &v, 4);
    return u32(bits);
}

Bytes& Bytes::field(const std::string& s, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) {
        if (i < s.size()) data.push_back(static_cast<std::uint8_t>(s[i]));
        else data.push_back(i == s.size() ? 0 : 0x20);
    }
    return *this;
}

void WriteFile(const std::string& path, const std::vector<std::uint8_t>& bytes) {
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

std::vector<std::uint8_t> ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::vector<std::uint8_t>(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::string ReadText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}
