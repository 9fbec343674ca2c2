#include "exchange/TextReading.h"

#include <cmath>

#include "core/Cp1252.h"
#include "core/NumberText.h"
#include "core/binaryOps.h"

std::vector<std::string> TextLines(std::string_view text) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t end = text.find_first_of("\r\n", start);
        if (end == std::string_view::npos) {
            lines.emplace_back(text.substr(start));
            break;
        }
        lines.emplace_back(text.substr(start, end - start));
        start = end + 1;
        if (text[end] == '\r' && start < text.size() && text[start] == '\n') ++start;
    }
    return lines;
}

std::string ReadTextFile(const std::string& path) {
    const ByteBuffer bytes = binaryOps::ReadFileBytes(path);
    return std::string(bytes.begin(), bytes.end());
}

std::vector<std::string_view> SplitFields(std::string_view text, char separator, std::size_t most) {
    std::vector<std::string_view> fields;
    std::size_t start = 0;
    while (fields.size() < most) {
        const std::size_t end = text.find(separator, start);
        fields.push_back(text.substr(start, end == std::string_view::npos ? std::string_view::npos : end - start));
        if (end == std::string_view::npos) break;
        start = end + 1;
    }
    return fields;
}

float SingleValue(double value, std::size_t line) {
    // Up to half a step above the largest single value, a value still rounds to it: the shortest
    // text of that value, "3.4028235E+38", lies there.
    constexpr double Beyond = 0x1.ffffffp127;
    if (!(std::fabs(value) < Beyond))
        throw TextRefusal("Line " + std::to_string(line) + ": " + DoubleText(value) +
                          " is too large for a number of the file.");
    return static_cast<float>(value);
}

float SingleValue(std::string_view text, std::size_t line) { return SingleValue(LeadingNumber(text), line); }

std::int16_t Rounded16(double value, std::size_t line) {
    const double whole = std::nearbyint(value);  // the default rounding mode: ties to even
    if (!(whole >= INT16_MIN && whole <= INT16_MAX))
        throw TextRefusal("Line " + std::to_string(line) + ": " + DoubleText(value) + " does not fit in 16 bits.");
    return static_cast<std::int16_t>(whole);
}

std::string ShownText(std::string_view raw) {
    constexpr std::size_t Longest = 40;
    if (raw.size() <= Longest) return "\"" + Cp1252ToUtf8(raw) + "\"";
    return "\"" + Cp1252ToUtf8(raw.substr(0, Longest)) + "...\"";
}

const std::string& LineReader::Next() {
    if (next_ >= lines_.size()) EndsEarly();
    return lines_[next_++];
}

void LineReader::Require(std::size_t count) const {
    if (lines_.size() - next_ < count) EndsEarly();
}

void LineReader::EndsEarly() const {
    throw TextRefusal("The file ends after line " + std::to_string(lines_.size()) +
                      ", but its counts call for more lines.");
}
