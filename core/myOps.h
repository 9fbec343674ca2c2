#pragma once
// Small helpers shared across the program: key codes and filters, text, angles, random draws.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Key codes as the editors' key handlers receive them.
inline constexpr int KeyBackspace = 8;
inline constexpr int KeyTab = 9;
inline constexpr int KeyEnter = 13;

// The key filter of the UV fields: digits, ".", Tab, Enter and Backspace pass; a "." only when
// the field is not empty and holds no "." yet. Returns the key if it may pass, else 0.
int NumericKeyFilter(int key, const std::string& field);

// The text without the blanks at either end; tabs and other white space stay, as the
// editors' fields have always kept them.
std::string TrimBlanks(std::string_view text);

// Cuts text at each delimiter after appending one: "1,2," gives "1", "2", "". The result's
// element 0 is unused so that the first part has index 1; at most 1000 parts are kept. Consumes
// its text argument.
std::vector<std::string> SplitText(std::string& text, const std::string& delimiter);

double Pi();
double DegToRad(double degrees);

// A draw from [low, high): (high - low) * r + low with r uniform in [0, 1). With `whole` the
// result is rounded to a 16-bit integer, halves to even, so the two ends of a whole range come
// half as often as the numbers between them; callers rely on that skew. One generator serves the
// whole program; it seeds itself from the clock on first use unless SeedRandom came first.
double RandomBetween(double low, double high, bool whole);
// Seeds the program's generator, so that a run can be repeated draw for draw.
void SeedRandom(std::uint64_t seed);

struct Point3 {
    float x = 0, y = 0, z = 0;
    bool operator==(const Point3&) const = default;
};
// Turns a point about Y, then X, then Z, by the angles in radians, in single floats throughout.
Point3 RotatePoint(const Point3& point, const Point3& angles);
