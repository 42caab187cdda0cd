#pragma once
// Number-to-text conversions of the displays.

#include <string>

namespace rainfold {

// x with a fixed number of decimals ("0" -> 0, "0.0" -> 1, "0.00" -> 2, "0.0000" -> 4); halves
// round away from zero, judged on the number's 15-significant-digit decimal form.
std::string FormatFixed(double x, int decimals);

// A number as plain text: up to 15 significant digits, no trailing zeros, whole numbers without
// a decimal point, E notation for very large or small magnitudes ("1E+15", "1E-05").
std::string PlainNumber(double x);

} // namespace rainfold
