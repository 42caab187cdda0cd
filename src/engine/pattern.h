#pragma once
// The elliptical application pattern a point sees while the lateral passes over it.

namespace rainfold {

// How the cumulative application is taken at and after the end of the pass.
enum class EndOfPass {
    Truncated,   // arcsine term replaced by H^2 (the ponding-onset search)
    FullEllipse, // arcsine term replaced by H^2 * Pi / 2 (the water balances)
};

inline constexpr double kPi = 3.14159265358979323846; // 4 * arctangent(1)

// arcsin(x) as arctangent(x / sqrt(1 - x^2)); undefined at x = +-1.
double ArcSin(double x);

// In these helpers H is the half time (h) and P the rate slope PeakRate / H (mm/h per h), the
// value the per-position routine computes once; S = (Pi / 2) * (H * H) is the pattern's area
// constant.

// a(t) = P * sqrt(2 t H - t^2), 0 under the root taken as 0, and 0 from t = 2H on.
double ApplicationRate(double t, double H, double P);

// D(t), the depth applied from the first wetting to t (mm).
double AppliedDepth(double t, double H, double P, double S, EndOfPass rule);

} // namespace rainfold
