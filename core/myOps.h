#pragma once
// Small helpers the editors share.
#include <string>
#include <string_view>

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

double Pi();
double DegToRad(double degrees);
