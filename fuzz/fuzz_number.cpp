// The number text of the program over arbitrary bytes: the whole input as text for
// LeadingNumber, and its first 4 and 8 bytes as a float and a double for SingleText and
// DoubleText.
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

#include "FuzzCheck.h"
#include "core/NumberText.h"

namespace {

// The value rounded to `digits` significant digits, by way of the exponent form.
double Rounded(double value, int digits) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.*e", digits - 1, value);
    return std::strtod(buf, nullptr);
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

int SignificantDigits(const std::string& mantissa) {
    int count = 0;
    bool leading = true;
    for (char c : mantissa) {
        if (!IsDigit(c)) continue;
        if (leading && c == '0') continue;
        leading = false;
        ++count;
    }
    return count;
}

// `value` is what the text stands for once NaN, infinities and -0 are mapped as the program
// maps them.
void CheckGeneralText(const std::string& text, double value, int digits) {
    const double expected = Rounded(value, digits);
    char* end = nullptr;
    const double read = std::strtod(text.c_str(), &end);
    FUZZ_CHECK(!text.empty() && end == text.c_str() + text.size(), "the whole text is one number");
    FUZZ_CHECK(read == expected, "the text reads back as the value rounded to its digits");
    if (value == 0) FUZZ_CHECK(text == "0", "zero, negative zero included, is written 0");

    const std::size_t e = text.find('E');
    const std::string mantissa = text.substr(0, e);
    FUZZ_CHECK(SignificantDigits(mantissa) <= digits, "no more significant digits than the precision");
    const std::size_t point = mantissa.find('.');
    if (point != std::string::npos) {
        FUZZ_CHECK(point > 0 && IsDigit(mantissa[point - 1]), "a fraction has a digit before its point");
        FUZZ_CHECK(mantissa.back() != '0' && mantissa.back() != '.', "no trailing zeros");
    }
    const double magnitude = std::fabs(expected);
    const bool exponentForm = expected != 0 && (magnitude >= std::pow(10.0, digits) || magnitude < 1e-4);
    FUZZ_CHECK((e != std::string::npos) == exponentForm, "exponent form exactly for large and tiny values");
    if (std::isfinite(read)) FUZZ_CHECK(LeadingNumber(text) == read, "the program reads its own numbers");
}

void CheckLeadingNumber(const std::string& text) {
    const double value = LeadingNumber(text);
    FUZZ_CHECK(std::isfinite(value), "LeadingNumber is always finite");
    FUZZ_CHECK(LeadingNumber(text + "x") == value, "what follows the number does not count");
    FUZZ_CHECK(LeadingNumber(" \t" + text) == value, "leading blanks do not count");
    if (!text.empty() && (IsDigit(text[0]) || text[0] == '.'))
        FUZZ_CHECK(LeadingNumber("-" + text) == -value, "a minus sign negates");

    // Plain decimal text that the C library reads whole is read the same way.
    if (!text.empty() && text.find_first_not_of("0123456789.eE+-") == std::string::npos) {
        char* end = nullptr;
        const double c = std::strtod(text.c_str(), &end);
        if (end == text.c_str() + text.size() && std::isfinite(c))
            FUZZ_CHECK(value == c, "a complete decimal number reads as the C library reads it");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    CheckLeadingNumber(text);

    if (size >= 4) {
        float f;
        std::memcpy(&f, data, 4);
        double shown = std::isnan(f) ? 0.0 : static_cast<double>(f);
        if (std::isinf(f)) shown = std::copysign(static_cast<double>(std::numeric_limits<float>::max()), shown);
        CheckGeneralText(SingleText(f), shown, 7);
    }
    if (size >= 8) {
        double d;
        std::memcpy(&d, data, 8);
        double shown = std::isnan(d) ? 0.0 : d;
        if (std::isinf(d)) shown = std::copysign(std::numeric_limits<double>::max(), shown);
        CheckGeneralText(DoubleText(d), shown, 15);
    }
    return 0;
}
