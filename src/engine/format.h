#pragma once
// Numbers to text and text to numbers. Every number the program reads or writes goes through
// here, and always with a point as the decimal mark and no grouping, whatever the system's
// language settings: a German or Brazilian desktop computes, shows and saves exactly what an
// English one does.

#include <string>
#include <string_view>

namespace rainfold {

// x with a fixed number of decimals ("0" -> 0, "0.0" -> 1, "0.00" -> 2, "0.0000" -> 4); halves
// round away from zero, judged on the number's 15-significant-digit decimal form.
std::string FormatFixed(double x, int decimals);

// A number as plain text: up to 15 significant digits, no trailing zeros, whole numbers without
// a decimal point, E notation for very large or small magnitudes ("1E+15", "1E-05").
std::string PlainNumber(double x);

// The shortest text that reads back as exactly x ("0.1", "800.0000000000001", "1e+300"); "nan",
// "inf" or "-inf" for those.
std::string ShortestText(double x);

// x with `decimals` digits after the point, rounded to nearest (ties to even on the binary
// value), as "%.*f" would write it in the C locale.
std::string FixedText(double x, int decimals);

// x with `digits` significant digits, as "%.*g" would write it in the C locale.
std::string SignificantText(double x, int digits);

// The value of a decimal number written with a point: an optional sign, digits with at most one
// point, and an optional exponent ("-12.5", "+3", ".5", "1e-3"). Magnitudes beyond the double
// range read as infinity, below it as zero. Returns false, leaving `value` alone, when the text
// is not wholly such a number.
bool ParseDecimal(std::string_view text, double& value);

} // namespace rainfold
