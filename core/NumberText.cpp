#include "core/NumberText.h"

#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

namespace {
// General decimal text with at most `digits` significant digits, written at `first`; returns
// the end. No locale, no allocation: the preview writers call this for every coordinate.
char* GeneralText(char* first, char* last, double value, int digits) {
    if (std::isnan(value) || value == 0) {  // also turns -0 into "0"
        *first = '0';
        return first + 1;
    }
    if (std::isinf(value)) value = value > 0 ? std::numeric_limits<double>::max() : -std::numeric_limits<double>::max();
    char* end = std::to_chars(first, last, value, std::chars_format::general, digits).ptr;
    for (char* c = first; c != end; ++c)
        if (*c == 'e') *c = 'E';
    return end;
}

float FiniteSingle(float value) {
    if (std::isinf(value)) return value > 0 ? std::numeric_limits<float>::max() : -std::numeric_limits<float>::max();
    return value;
}
}  // namespace

void AppendSingleText(std::string& out, float value) {
    char buf[32];
    out.append(buf, GeneralText(buf, buf + sizeof buf, static_cast<double>(FiniteSingle(value)), 7));
}

void AppendDoubleText(std::string& out, double value) {
    char buf[40];
    out.append(buf, GeneralText(buf, buf + sizeof buf, value, 15));
}

float SingleFromText(const char* first, const char* last) {
    double value = 0;
    std::from_chars(first, last, value);
    return static_cast<float>(value);
}

float AppendSingleTextRead(std::string& out, float value) {
    char buf[32];
    char* end = GeneralText(buf, buf + sizeof buf, static_cast<double>(FiniteSingle(value)), 7);
    out.append(buf, end);
    return SingleFromText(buf, end);
}

std::string SingleText(float value) {
    std::string s;
    AppendSingleText(s, value);
    return s;
}

std::string DoubleText(double value) {
    std::string s;
    AppendDoubleText(s, value);
    return s;
}

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
