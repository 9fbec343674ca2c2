#pragma once
// Rounding to a step, as the crowd rows count their steps up a plane.
#include <cstdint>

// The value to a multiple of `factor`: the value in steps, moved half a step up (or down), cut
// to a whole number of steps, and the cut-off fraction rounded back on, halves to even. So
// RoundToFactor(3.0, 1, false) is 2 and RoundToFactor(3.2, 1, false) is 3. A value that is not
// a number gives 0. Throws std::overflow_error when the steps do not fit 16 bits.
double RoundToFactor(double value, double factor, bool up);

// RoundToFactor(value, 1, false) as a 16-bit integer: for a positive value its ceiling minus 1.
std::int16_t RoundDownInt(double value);
