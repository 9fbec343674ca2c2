#include "core/NumberText.h"

#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

namespace {
std::string GeneralText(double value, int digits) {
    if (std::isnan(value)) return "0";
    if (std::isinf(value)) value = value > 0 ? std::numeric_limits<double>::max() : -std::numeric_limits<double>::max();
    if (value == 0) return "0";  // also turns -0 into "0"
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.*G", digits, value);
    std::string text = buf;
    // %G keeps at most two exponent digits' worth of padding ("1E+07"), as wanted; values that
    // round to zero in the last digit still print their sign, which is dropped here.
    if (text == "-0") return "0";
    return text;
}
}  // namespace

std::string SingleText(float value) {
    if (std::isinf(value)) return GeneralText(value > 0 ? std::numeric_limits<float>::max() : -std::numeric_limits<float>::max(), 7);
    return GeneralText(static_cast<double>(value), 7);
}

std::string DoubleText(double value) { return GeneralText(value, 15); }

std::string IndexText(std::int16_t value) { return std::to_string(value); }

double LeadingNumber(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size() && (text[i] == ' ' || text[i] == '\t')) ++i;
    std::string number;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) number += text[i++];
    bool digits = false, point = false;
    for (; i < text.size(); ++i) {
        const char c = text[i];
        if (std::isdigit(static_cast<unsigned char>(c))) {
            digits = true;
            number += c;
        } else if (c == '.' && !point) {
            point = true;
            number += c;
        } else {
            break;
        }
    }
    if (!digits) return 0;
    // An exponent counts only when digits follow it: "2e" is 2, "2e3" is 2000.
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        std::size_t j = i + 1;
        std::string exponent = "e";
        if (j < text.size() && (text[j] == '+' || text[j] == '-')) exponent += text[j++];
        const std::size_t start = j;
        while (j < text.size() && std::isdigit(static_cast<unsigned char>(text[j]))) exponent += text[j++];
        if (j > start) number += exponent;
    }
    const double value = std::strtod(number.c_str(), nullptr);
    return std::isfinite(value) ? value : 0;
}

std::string ShortestSingleText(float value) {
    if (std::isnan(value)) return "0";
    if (value == 0) return "0";
    // to_chars picks the fewest digits that read back exactly, in the shorter of the fixed and
    // the exponent form ("100", not "1e+02").
    char buf[64];
    const auto result = std::to_chars(buf, buf + sizeof buf, value);
    return std::string(buf, result.ptr);
}
