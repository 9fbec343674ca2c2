#pragma once
// What the readers of line-based text share (RAV text, CSV point tables, and the Rhinoceros
// script writer): lines, fields, numbers for fixed-size fields, and the refusal of a file that
// breaks its form.
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

// Why a file is refused, in words for the user. Thrown inside a parser and caught at its top,
// where it becomes the parser's error text.
class TextRefusal : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The lines of a text without their ends. LF, CR LF and a lone CR each end a line; a text that
// ends in a line end has no empty line after it, and an empty text has no lines.
std::vector<std::string> TextLines(std::string_view text);

// The whole file as bytes. Throws std::runtime_error with a message for the user.
std::string ReadTextFile(const std::string& path);

// The fields of a text cut at `separator`, at most `most` of them: the last one ends at the next
// separator, and what follows is not looked at.
std::vector<std::string_view> SplitFields(std::string_view text, char separator, std::size_t most);

// A value for a single-precision field of line `line` (counted from 1); refused when it lies
// beyond that range.
float SingleValue(double value, std::size_t line);
// The same for the leading number of a text.
float SingleValue(std::string_view text, std::size_t line);
// A value rounded to the nearest whole number, ties to even, for a 16-bit field; refused when it
// does not fit.
std::int16_t Rounded16(double value, std::size_t line);

// Text of the file as a message quotes it: in double quotes, in UTF-8, cut after 40 bytes.
std::string ShownText(std::string_view raw);

// Hands out the lines of a file in order and refuses the file when it has fewer than asked for.
class LineReader {
public:
    explicit LineReader(const std::vector<std::string>& lines) : lines_(lines) {}
    const std::string& Next();
    // The number, from 1, of the line that Next gave last.
    std::size_t LineNumber() const { return next_; }
    // Refuses the file unless at least `count` lines are left.
    void Require(std::size_t count) const;

private:
    [[noreturn]] void EndsEarly() const;
    const std::vector<std::string>& lines_;
    std::size_t next_ = 0;
};
