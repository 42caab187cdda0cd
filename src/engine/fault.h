#pragma once
// Arithmetic that refuses to produce a division by zero, an infinity or a NaN. The computation
// throws EngineFault from deep inside; Calc_Results turns it into a status with its message.

#include <cmath>
#include <stdexcept>
#include <string>

namespace rainfold {

class EngineFault : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

inline constexpr const char* kDivisionByZero = "Division by zero.";
inline constexpr const char* kOverflow = "Overflow.";
inline constexpr const char* kInvalidArgument = "Invalid procedure call or argument.";

// Raises EngineFault. Kept out of line so that the checks below stay small enough to be inlined
// into the searches that run them many thousand times per design.
[[noreturn]] void ThrowFault(const char* message);

inline double Checked(double x) {
    if (!std::isfinite(x))
        ThrowFault(std::isnan(x) ? kInvalidArgument : kOverflow);
    return x;
}

inline double Div(double a, double b) {
    if (b == 0.0)
        ThrowFault(a == 0.0 ? kOverflow : kDivisionByZero);
    return Checked(a / b);
}

// a ^ b with the rules of a power operator: 0 to a negative power divides by zero, a negative
// base with a fractional power is an invalid argument.
inline double Pow(double a, double b) {
    if (a == 0.0 && b < 0.0)
        ThrowFault(kDivisionByZero);
    if (a < 0.0 && b != std::floor(b))
        ThrowFault(kInvalidArgument);
    return Checked(std::pow(a, b));
}

inline double Sqrt(double x) {
    if (x < 0.0)
        ThrowFault(kInvalidArgument);
    return std::sqrt(x);
}

inline double Log(double x) {
    if (!(x > 0.0))
        ThrowFault(kInvalidArgument);
    return std::log(x);
}

} // namespace rainfold
