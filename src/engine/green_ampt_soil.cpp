#include "green_ampt_soil.h"

#include "fault.h"

#include <cmath>
#include <limits>

namespace rainfold {

namespace {
constexpr double kInfinite = std::numeric_limits<double>::infinity();

// zf(F) for omega != 0 and F <= F*. Up to F* the quantity under the root is >= 0; at F*
// rounding may take it just below.
double FrontDepthAbove(double F, double dtheta0, double omega) {
    const double under = dtheta0 * dtheta0 - 2 * omega * F;
    return Div(2 * F, dtheta0 + std::sqrt(under < 0 ? 0.0 : under));
}
} // namespace

double ConstCapacity(double F, double Ks, double Hw, double dtheta0) {
    const double M = Hw * dtheta0;
    return Ks * (1 + Div(M, F));
}

double ConstPondedTime(double F, double Hw, double dtheta0) {
    const double M = Hw * dtheta0;
    return F - M * Log(1 + Div(F, M));
}

double SaturatedDepth(double dtheta0, double omega) {
    if (omega <= 0)
        return kInfinite;
    const double zs = Div(dtheta0, omega);
    return std::isfinite(zs) ? zs : kInfinite;
}

double SaturatedInfiltration(double dtheta0, double omega) {
    const double zs = SaturatedDepth(dtheta0, omega);
    if (std::isinf(zs))
        return kInfinite;
    return dtheta0 * zs - omega * zs * zs / 2;
}

double FrontDepth(double F, double dtheta0, double omega) {
    if (omega == 0)
        return Div(F, dtheta0);
    if (F > SaturatedInfiltration(dtheta0, omega))
        return kInfinite;
    return FrontDepthAbove(F, dtheta0, omega);
}

double VarCapacity(double F, double Ks, double Hw, double dtheta0, double omega) {
    if (omega == 0)
        return ConstCapacity(F, Ks, Hw, dtheta0);
    // Once the front reaches the saturated part of the profile no suction is left to pull the
    // water in: the soil takes it at the saturated conductivity.
    if (F > SaturatedInfiltration(dtheta0, omega))
        return Ks;
    const double zf = FrontDepthAbove(F, dtheta0, omega);
    return Div(Ks * (zf + Hw), zf);
}

double VarPondedTimeAtDepth(double z, double Hw, double dtheta0, double omega) {
    return dtheta0 * z - omega * z * z / 2 + omega * Hw * z -
           Hw * (dtheta0 + omega * Hw) * Log(1 + Div(z, Hw));
}

double VarPondedTime(double F, double Hw, double dtheta0, double omega) {
    if (omega == 0)
        return ConstPondedTime(F, Hw, dtheta0);
    // The root solves evaluate this thousands of times a design: z* and F* are worked out here
    // once rather than through SaturatedDepth and SaturatedInfiltration.
    if (omega > 0) {
        const double zs = Div(dtheta0, omega);
        const double Fs = dtheta0 * zs - omega * zs * zs / 2;
        if (std::isfinite(zs) && F > Fs)
            return VarPondedTimeAtDepth(zs, Hw, dtheta0, omega) + (F - Fs);
    }
    return VarPondedTimeAtDepth(FrontDepthAbove(F, dtheta0, omega), Hw, dtheta0, omega);
}

double Capacity(GreenAmptModel model, const GreenAmptSoil& soil, double F) {
    if (model == GreenAmptModel::Constant)
        return ConstCapacity(F, soil.Ks, soil.Hw, soil.dtheta0);
    return VarCapacity(F, soil.Ks, soil.Hw, soil.dtheta0, soil.omega);
}

double PondedTime(GreenAmptModel model, const GreenAmptSoil& soil, double F) {
    if (model == GreenAmptModel::Constant)
        return ConstPondedTime(F, soil.Hw, soil.dtheta0);
    return VarPondedTime(F, soil.Hw, soil.dtheta0, soil.omega);
}

} // namespace rainfold
