#pragma once
// The elliptical application pattern a point sees while the lateral passes over it.

#include "fault.h"

#include <cmath>

namespace rainfold {

// How the cumulative application is taken at and after the end of the pass.
enum class EndOfPass {
    Truncated,   // arcsine term replaced by H^2 (the ponding-onset search)
    FullEllipse, // arcsine term replaced by H^2 * Pi / 2 (the water balances)
};

inline constexpr double kPi = 3.14159265358979323846; // 4 * arctangent(1)

// arcsin(x) as arctangent(x / sqrt(1 - x^2)); undefined at x = +-1.
inline double ArcSin(double x) {
    return std::atan(Div(x, Sqrt(1 - x * x)));
}

// In these helpers H is the half time (h) and P the rate slope PeakRate / H (mm/h per h), the
// value the per-position routine computes once; S = (Pi / 2) * (H * H) is the pattern's area
// constant.

// sqrt(2 t H - t^2), a radicand below 0 (t past 2H, or rounding at the ends) taken as 0: the
// ellipse both the rate and the depth are drawn from.
inline double PatternRoot(double t, double H) {
    const double under = 2 * t * H - t * t;
    return std::sqrt(under < 0 ? 0.0 : under);
}

// a(t) = P * sqrt(2 t H - t^2), 0 under the root taken as 0, and 0 from t = 2H on.
double ApplicationRate(double t, double H, double P);

// D(t) for root = PatternRoot(t, H): the onset search has the root already from the rate.
inline double AppliedDepthFromRoot(double t, double H, double P, double S, double root,
                                   EndOfPass rule) {
    const double x = Div(t - H, H);
    double arcTerm;
    if (x >= 1)
        arcTerm = rule == EndOfPass::Truncated ? H * H : H * H * kPi / 2;
    else
        arcTerm = H * H * ArcSin(x);
    return 0.5 * P * (S + (t - H) * root + arcTerm);
}

// D(t), the depth applied from the first wetting to t (mm).
double AppliedDepth(double t, double H, double P, double S, EndOfPass rule);

} // namespace rainfold
