#include "core/myOps.h"

#include <chrono>
#include <cmath>
#include <random>
#include <stdexcept>

int NumericKeyFilter(int key, const std::string& field) {
    if (key >= '0' && key <= '9') return key;
    if (key == KeyTab || key == KeyEnter || key == KeyBackspace) return key;
    if (key == '.') return field.empty() || field.find('.') != std::string::npos ? 0 : key;
    return 0;
}

std::string TrimBlanks(std::string_view text) {
    std::size_t first = 0, last = text.size();
    while (first < last && text[first] == ' ') ++first;
    while (last > first && text[last - 1] == ' ') --last;
    return std::string(text.substr(first, last - first));
}

double Pi() { return 4 * std::atan(1.0); }

double DegToRad(double degrees) { return Pi() * degrees / 180; }

namespace {

std::mt19937_64& Generator() {
    static std::mt19937_64 generator(
        static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count()));
    return generator;
}

}  // namespace

void SeedRandom(std::uint64_t seed) { Generator().seed(seed); }

double RandomBetween(double low, double high, bool whole) {
    // 53 random bits make r; a distribution object would give other numbers with another
    // standard library, and a seeded run must repeat everywhere.
    const double r = static_cast<double>(Generator()() >> 11) * 0x1.0p-53;
    const double value = (high - low) * r + low;
    if (!whole) return value;
    const double rounded = std::nearbyint(value);
    if (!(rounded >= INT16_MIN && rounded <= INT16_MAX)) throw std::overflow_error("Overflow");
    return rounded;
}

Point3 RotatePoint(const Point3& point, const Point3& angles) {
    const float cx = std::cos(angles.x), sx = std::sin(angles.x);
    const float cy = std::cos(angles.y), sy = std::sin(angles.y);
    const float cz = std::cos(angles.z), sz = std::sin(angles.z);
    const float x1 = point.x * cy + point.z * sy;
    const float z1 = point.z * cy - point.x * sy;
    const float y1 = point.y * cx - z1 * sx;
    const float z2 = point.y * sx + z1 * cx;
    const float x2 = x1 * cz - y1 * sz;
    const float y2 = x1 * sz + y1 * cz;
    return {x2, y2, z2};
}

std::vector<std::string> SplitText(std::string& text, const std::string& delimiter) {
    std::vector<std::string> parts(1);
    if (delimiter.empty()) {
        parts.push_back(text);
        text.clear();
        return parts;
    }
    text += delimiter;
    std::size_t start = 0, at;
    while ((at = text.find(delimiter, start)) != std::string::npos && parts.size() <= 1000) {
        parts.push_back(text.substr(start, at - start));
        start = at + delimiter.size();
    }
    text.clear();
    return parts;
}
