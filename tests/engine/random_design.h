#pragma once
// Random designs over and a little beyond the ranges the checks accept, as an engineer's typing
// might give them, for the tests that compare the computation with itself or with its properties.

#include "checks.h"
#include "design.h"

#include <cstdio>
#include <random>
#include <string>

namespace rainfold {

inline std::string Text(double x) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%.6g", x);
    return buf;
}

inline DesignRecord RandomDesign(std::mt19937& rng) {
    auto u = [&rng](double lo, double hi) { return std::uniform_real_distribution<>(lo, hi)(rng); };
    DesignRecord d;
    d.txtSYL = Text(u(140, 3500));
    d.txtGPM = Text(u(90, 3500));
    d.txtAPPL = Text(u(0.2, 3.5));
    d.txtWetDiam = Text(u(0.5, 170));
    d.intakeFamilyIndex = std::uniform_int_distribution<>(0, 7)(rng);
    d.txtUk = Text(u(1, 120));
    d.txtUN = Text(u(-0.9, -0.05));
    d.surfaceOption = std::uniform_int_distribution<>(0, 3)(rng);
    const bool storage = d.surfaceOption >= kUserConstant;
    d.txtSurfStore = Text(storage ? u(0, 0.6) : u(0, 45));
    d.txtResidue = Text(storage ? u(0, 0.5) : u(0, 105));
    for (SegmentRow& row : d.segments)
        row = storage ? SegmentRow{Text(u(0, 0.6)), Text(u(0, 0.5))}
                      : SegmentRow{Text(u(0, 10)), Text(u(0, 100))};
    return d;
}

// The same with Green-Ampt inputs drawn too (the model switched on or not).
inline DesignRecord RandomDesign(std::mt19937& rng, bool greenAmpt) {
    auto u = [&rng](double lo, double hi) { return std::uniform_real_distribution<>(lo, hi)(rng); };
    DesignRecord d = RandomDesign(rng);
    d.greenAmpt = greenAmpt;
    const double thetaS = u(0.3, 0.5);
    d.txtKS = Text(u(0.5, 60));
    d.txtHW = Text(u(20, 300));
    d.txtThetaS = Text(thetaS);
    d.txtThetaI = Text(u(0.02, thetaS - 0.02));
    d.txtOmega = Text(u(-0.0005, 0.002));
    return d;
}

inline bool PassesChecks(const DesignRecord& d) {
    for (const CheckFailure& f : CheckDesign(d))
        if (f.kind == CheckKind::Error)
            return false;
    return true; // warnings accepted
}

} // namespace rainfold
