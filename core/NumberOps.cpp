#include "core/NumberOps.h"

#include <cmath>
#include <stdexcept>

double RoundToFactor(double value, double factor, bool up) {
    if (std::isnan(value)) return 0;
    const double t = value / factor + (up ? 0.5 : -0.5);
    const double cut = std::trunc(t);
    if (!(cut >= INT16_MIN && cut <= INT16_MAX)) throw std::overflow_error("Overflow");
    // t - cut lies strictly between -1 and 1, so this adds -1, 0 or 1; a half rounds to 0.
    return (cut + std::nearbyint(t - cut)) * factor;
}

std::int16_t RoundDownInt(double value) {
    const double r = std::nearbyint(RoundToFactor(value, 1.0, false));
    if (!(r >= INT16_MIN && r <= INT16_MAX)) throw std::overflow_error("Overflow");
    return static_cast<std::int16_t>(r);
}
