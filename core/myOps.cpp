#include "core/myOps.h"

#include <cmath>

int NumericKeyFilter(int key, const std::string& field) {
    if (key >= '0' && key <= '9') return key;
    if (key == KeyTab || key == KeyEnter || key == KeyBackspace) return key;
    if (key == '.') return field.empty() || field.find('.') != std::string::npos ? 0 : key;
    return 0;
}

double Pi() { return 4 * std::atan(1.0); }

double DegToRad(double degrees) { return Pi() * degrees / 180; }
