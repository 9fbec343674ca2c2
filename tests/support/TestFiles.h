#pragma once
// Helpers for tests that need files: a scratch folder that removes itself, and a byte builder
// for writing OIF files by hand, independent of the program's own writer.
#include <bit>
#include <cstdint>
#include <string>
#include <vector>

class ScratchFolder {
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    const std::string& path() const { return path_; }
    std::string file(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

class Bytes {
public:
    Bytes& raw(const std::string& s) {
        data.insert(data.end(), s.begin(), s.end());
        return *this;
    }
    Bytes& u8(std::uint8_t v) {
        data.push_back(v);
        return *this;
    }
    Bytes& i16(std::int16_t v) { return u8(std::uint8_t(v)).u8(std::uint8_t(std::uint16_t(v) >> 8)); }
    Bytes& u32(std::uint32_t v) { return i16(std::int16_t(v & 0xFFFF)).i16(std::int16_t(v >> 16)); }
    Bytes& i32(std::int32_t v) { return u32(static_cast<std::uint32_t>(v)); }
    Bytes& f32(float v) { return u32(std::bit_cast<std::uint32_t>(v)); }
    // A text field as the file format stores it: the text, one NUL, blanks up to n.
    Bytes& field(const std::string& s, std::size_t n);
    Bytes& vertex(float x, float y, float z, std::uint32_t shadow, float u, float v) {
        return f32(x).f32(y).f32(z).u32(shadow).f32(u).f32(v);
    }
    std::vector<std::uint8_t> data;
};

void WriteFile(const std::string& path, const std::vector<std::uint8_t>& bytes);
std::vector<std::uint8_t> ReadFile(const std::string& path);
std::string ReadText(const std::string& path);
