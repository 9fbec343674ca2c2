#include "core/binaryOps.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/Desktop.h"

namespace binaryOps {

namespace {
std::string ErrnoText(int err) { return std::error_code(err, std::generic_category()).message(); }
}  // namespace

ByteBuffer ReadFileBytes(const std::string& path) {
    std::FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) throw std::runtime_error("Cannot open \"" + path + "\": " + ErrnoText(errno) + ".");
    ByteBuffer data;
    std::uint8_t chunk[1 << 16];
    std::size_t n;
    while ((n = std::fread(chunk, 1, sizeof chunk, f)) > 0) data.insert(data.end(), chunk, chunk + n);
    const bool failed = std::ferror(f) != 0;
    const int err = errno;
    std::fclose(f);
    if (failed) throw std::runtime_error("Cannot read \"" + path + "\": " + ErrnoText(err) + ".");
    return data;
}

std::string GetText(const ByteBuffer& b, std::size_t pos, int& count) {
    if (count == 0) count = b.empty() ? 0 : static_cast<int>(b.size() - 1);
    std::string text;
    while (count > 0 && pos < b.size() && b[pos] != 0) {
        PumpEvents();
        text += static_cast<char>(b[pos]);
        ++pos;
        --count;
    }
    return text;
}

void PutText(ByteBuffer& b, std::size_t pos, std::string& text, int n) {
    if (n <= static_cast<int>(text.size())) text.resize(static_cast<std::size_t>(n < 0 ? 0 : n));
    bool first = true;
    for (int i = 0; i < n; ++i) {
        if (!text.empty()) {
            b[pos + static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(text.front());
            text.erase(0, 1);
        } else {
            b[pos + static_cast<std::size_t>(i)] = first ? 0 : 0x20;
            first = false;
        }
    }
    text.clear();
}

void WriteBytesFile(const ByteBuffer& buffer, const std::string& path) {
    namespace fs = std::filesystem;
    const fs::path target(path);
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    std::string pattern = (folder / ("." + target.filename().string() + ".XXXXXX")).string();
    const int fd = ::mkstemp(pattern.data());
    if (fd < 0) throw std::runtime_error("Cannot write \"" + path + "\": " + ErrnoText(errno) + ".");
    auto fail = [&](int err) {
        ::close(fd);
        ::unlink(pattern.c_str());
        throw std::runtime_error("Cannot write \"" + path + "\": " + ErrnoText(err) + ". The file was not changed.");
    };
    std::size_t done = 0;
    while (done < buffer.size()) {
        const ssize_t n = ::write(fd, buffer.data() + done, buffer.size() - done);
        if (n < 0) {
            if (errno == EINTR) continue;
            fail(errno);
        }
        done += static_cast<std::size_t>(n);
    }
    if (::fsync(fd) != 0) fail(errno);
    // A new file gets the permissions the user would get from creating it; an existing one keeps its own.
    struct stat st {};
    if (::stat(path.c_str(), &st) == 0) {
        ::fchmod(fd, st.st_mode & 07777);
    } else {
        const mode_t mask = ::umask(0);
        ::umask(mask);
        ::fchmod(fd, 0666 & ~mask);
    }
    if (::close(fd) != 0) {
        const int err = errno;
        ::unlink(pattern.c_str());
        throw std::runtime_error("Cannot write \"" + path + "\": " + ErrnoText(err) + ". The file was not changed.");
    }
    if (::rename(pattern.c_str(), path.c_str()) != 0) {
        const int err = errno;
        ::unlink(pattern.c_str());
        throw std::runtime_error("Cannot write \"" + path + "\": " + ErrnoText(err) + ". The file was not changed.");
    }
}

double UnsignedFromLong(std::int32_t value) {
    return value < 0 ? static_cast<double>(value) + 4294967296.0 : static_cast<double>(value);
}

std::int32_t LongFromUnsigned(double value) {
    if (!(value >= 0) || value >= 4294967296.0) throw std::overflow_error("Overflow");
    // Whole numbers are what callers pass; a fraction rounds to nearest, ties to even.
    const double whole = std::nearbyint(value);
    if (whole >= 4294967296.0) throw std::overflow_error("Overflow");
    const auto wide = static_cast<std::int64_t>(whole);
    return static_cast<std::int32_t>(wide > 2147483647LL ? wide - 4294967296LL : wide);
}

}  // namespace binaryOps
