#include "core/myOps.h"

#include <cmath>

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
