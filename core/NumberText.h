#pragma once
// The program's one way of turning numbers into text and text into numbers. Every generated
// file, coordinate field and config value goes through here.
#include <cstdint>
#include <string>
#include <string_view>

// General decimal text of a single-precision value: at most 7 significant digits, no trailing
// zeros, "0." before fractions, exponent form ("1E+07") from 10000000 up.
std::string SingleText(float value);
// The same for a double with at most 15 significant digits.
std::string DoubleText(double value);
// The same two, appended to a text without making one of their own.
void AppendSingleText(std::string& out, float value);
void AppendDoubleText(std::string& out, double value);
// What a reader of number text makes of the text from first to last, as a VRML reader does: the
// nearest double, stored as a float. The text must be one whole number.
float SingleFromText(const char* first, const char* last);
// Appends SingleText(value) and returns what a reader gets back from it, which is not always value:
// seven digits do not hold every float.
float AppendSingleTextRead(std::string& out, float value);
// A 16-bit index as signed decimal; 65535 stored in an index reads back as -1.
std::string IndexText(std::int16_t value);

// The leading number of a text: optional blanks, sign, digits, one point, digits and an
// exponent; parsing stops at the first character that cannot continue a number. Text without
// a number gives 0.
double LeadingNumber(std::string_view text);

// The shortest decimal text that reads back to the same single-precision value.
std::string ShortestSingleText(float value);
