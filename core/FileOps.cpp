#include "core/FileOps.h"

#include <fcntl.h>
#include <unistd.h>
#include <cctype>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {
std::string Lower(std::string s) {
    for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
}
}  // namespace

std::string FileExtension(const std::string& path) {
    for (std::size_t i = path.size(); i > 0; --i) {
        const char c = path[i - 1];
        if (c == '\\' || c == '/') return {};
        if (c == '.') return Lower(path.substr(i));
    }
    return {};
}

std::vector<std::string> ReadAllLines(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::vector<std::string> lines;
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.push_back(line);
    }
    return lines;
}

void AppendFile(const std::string& source, const std::string& target) {
    const int in = ::open(source.c_str(), O_RDONLY | O_CLOEXEC);
    if (in < 0) throw std::runtime_error("Cannot open \"" + source + "\".");
    const int out = ::open(target.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
    if (out < 0) {
        ::close(in);
        throw std::runtime_error("Cannot write \"" + target + "\".");
    }
    // The kernel copies the bytes itself: the joined preview files run to hundreds of megabytes.
    off_t at = ::lseek(out, 0, SEEK_END);
    bool ok = at >= 0;
    while (ok) {
        const ssize_t n = ::copy_file_range(in, nullptr, out, &at, 1 << 30, 0);
        if (n == 0) break;
        if (n > 0) continue;
        if (errno == EINTR) continue;
        // Some file systems cannot copy in the kernel: fall back to reading and writing.
        char buf[1 << 16];
        ssize_t r;
        while (ok && (r = ::read(in, buf, sizeof buf)) != 0) {
            if (r < 0) {
                ok = errno == EINTR;
                continue;
            }
            for (ssize_t done = 0; ok && done < r;) {
                const ssize_t w = ::pwrite(out, buf + done, static_cast<std::size_t>(r - done), at);
                if (w < 0) ok = errno == EINTR;
                else {
                    done += w;
                    at += w;
                }
            }
        }
        break;
    }
    ::close(in);
    if (::close(out) != 0) ok = false;
    if (!ok) throw std::runtime_error("Cannot write \"" + target + "\".");
}

bool FileExists(const std::string& path) {
    std::error_code ec;
    return !path.empty() && fs::is_regular_file(path, ec);
}
