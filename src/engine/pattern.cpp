#include "pattern.h"

#include "fault.h"

#include <cmath>

namespace rainfold {

double ArcSin(double x) {
    return std::atan(Div(x, Sqrt(1 - x * x)));
}

double ApplicationRate(double t, double H, double P) {
    if (t >= 2 * H)
        return 0;
    const double under = 2 * t * H - t * t;
    return P * std::sqrt(under < 0 ? 0.0 : under);
}

double AppliedDepth(double t, double H, double P, double S, EndOfPass rule) {
    const double under = 2 * t * H - t * t;
    const double root = std::sqrt(under < 0 ? 0.0 : under);
    const double x = Div(t - H, H);
    double arcTerm;
    if (x >= 1)
        arcTerm = rule == EndOfPass::Truncated ? H * H : H * H * kPi / 2;
    else
        arcTerm = H * H * ArcSin(x);
    return 0.5 * P * (S + (t - H) * root + arcTerm);
}

} // namespace rainfold
