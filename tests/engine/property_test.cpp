// Properties that hold for every design the checks let through, and the explorer's fast average
// against the results page's, over random designs.
//
// The depth applied at any position, (Pi/2) PeakRate HalfTime with PeakRate = 4584 Qk r / (L^2 R),
// HalfTime = R Tk / (2 Pi r) and Tk = 2.7777 (Pi L^2 / 10000) d / Qk, is d 4584 2.7777 Pi / 40000
// at every position, capacity and family: about 1.00004 d.

#include "calc.h"
#include "checks.h"
#include "explore.h"
#include "green_ampt.h"
#include "page_average.h"
#include "pattern.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <random>
#include <stdexcept>
#include <string>

namespace rainfold {
namespace {

std::string Text(double x) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%.6g", x);
    return buf;
}

// Over and a little beyond the ranges the checks accept, as an engineer's typing might give them.
DesignRecord RandomDesign(std::mt19937& rng, bool greenAmpt) {
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
    // Ks, Hw > 0, 0 < thetaS <= 1, 0 <= thetaI < thetaS and any omega: all the checks let through.
    d.greenAmpt = greenAmpt;
    const auto logU = [&](double lo, double hi) { return std::exp(u(std::log(lo), std::log(hi))); };
    const double thetaS = u(0.01, 1), thetaI = u(0, thetaS);
    const double omegas[] = {0, logU(1e-7, 0.1), -logU(1e-7, 0.01),
                             (thetaS - thetaI) / u(10, 3000)};
    d.txtKS = Text(logU(0.01, 500));
    d.txtHW = Text(logU(0.1, 3000));
    d.txtThetaS = Text(thetaS);
    d.txtThetaI = Text(thetaI);
    d.txtOmega = Text(omegas[std::uniform_int_distribution<>(0, 3)(rng)]);
    return d;
}

// Every design checks the properties of its record; every eighth also compares the explorer's
// numbers with the page's, bit for bit, at the design and at a point of its map on each axis.
TEST(Properties, RandomCheckedDesigns) {
    std::mt19937 rng(20240611);
    std::uniform_real_distribution<> logD(0, std::log(150.0)), depth(0.25, 3), store(0, 1);
    int computed = 0, withRunoff = 0, compared[2] = {}, ponded = 0, notices = 0;
    const Notify notify = [&](const std::string&) { ++notices; };
    for (int n = 0; n < 10000; ++n) {
        const DesignRecord d = RandomDesign(rng, n % 25 == 0);
        bool passes = true;
        for (const CheckFailure& f : CheckDesign(d))
            passes = passes && f.kind != CheckKind::Error; // warnings accepted
        if (!passes)
            continue;
        ++computed;
        Results r;
        const CalcOutcome out = Calc_Results(d, r);
        std::string why;
        const std::optional<RunoffProbe> probe = RunoffProbe::Make(d, why);
        // The checks let through capacities down to 100 gpm; below 100.5 the first case would
        // run a flow that rounds to 0 gpm, which the computation and the explorer refuse.
        if (Val(d.txtGPM) < 100.5) {
            ASSERT_EQ(out.message, "The system capacity less 100 gpm must be above 0 gpm.");
            ASSERT_EQ(why, out.message);
            continue;
        }
        ASSERT_TRUE(out.ok()) << "design " << n << ": " << out.message;
        ASSERT_TRUE(probe) << why;
        const double applied = Val(d.txtAPPL) * 25.4 * 4584 * 2.7777 * kPi / 40000;
        const GreenAmptSoil soil{Read(r.GAKs), Read(r.GAHw), Read(r.GADeltaTheta), Read(r.GAOmega)};
        for (int c = 1; c <= 3; ++c) {
            ASSERT_TRUE(std::isfinite(Read(r.HoursPerRev[c])));
            for (int j = 1; j <= 10; ++j)
                for (int m = 1; m <= 3; ++m) {
                    if (!r.PctRunoff.at(c, j, m).has_value()) {
                        ASSERT_EQ(d.intakeFamilyIndex, kCustomizedValuesIndex);
                        ASSERT_EQ(m, 3);
                        continue;
                    }
                    const double peak = Read(r.PeakRate.at(c, j, m));
                    const double half = Read(r.HalfTime.at(c, j, m));
                    const double pct = Read(r.PctRunoff.at(c, j, m));
                    const double start = Read(r.PondStart.at(c, j, m));
                    const double end = Read(r.PondEnd.at(c, j, m));
                    ASSERT_NEAR(kPi / 2 * peak * half, applied, 1e-9 * applied)
                        << "design " << n << " at " << c << "/" << j << "/" << m;
                    ASSERT_TRUE(pct >= 0 && pct <= 100) << pct;
                    ASSERT_TRUE(std::isfinite(start) && std::isfinite(end));
                    // Ponding starts and ends inside the pass, in that order.
                    if (Read(r.PondFlag.at(c, j, m)) != 1) {
                        ASSERT_GT(start, 0);
                        ASSERT_GE(end, start);
                        ASSERT_LE(end, 2 * half * (1 + 1e-12));
                    } else {
                        ASSERT_EQ(pct, 0);
                    }
                    withRunoff += pct > 0;
                    if (!d.greenAmpt || m != 2)
                        continue;
                    // Both Green-Ampt models on the middle slot's pattern: what is recorded, and
                    // the water balance.
                    const double SS = Read(r.SurfStore.at(static_cast<size_t>(j)));
                    const auto con =
                        GreenAmpt(GreenAmptModel::Constant, soil, peak, half, SS, notify);
                    const auto var =
                        GreenAmpt(GreenAmptModel::Varying, soil, peak, half, SS, notify);
                    const double applied = kPi / 2 * peak * half;
                    for (const GreenAmptOutcome& o : {con, var}) {
                        for (const double v : {o.tp, o.te, o.runoff, o.pctRunoff, o.F2H})
                            ASSERT_TRUE(std::isfinite(v)) << n;
                        ASSERT_LE(o.runoff + o.F2H, applied * (1 + 1e-12) + 1e-9) << n;
                        ASSERT_GE(o.F2H, o.ponds ? o.Fp : applied - 1e-9) << n;
                        ponded += o.ponds;
                    }
                    if (soil.omega == 0) { // the models agree
                        ASSERT_NEAR(var.tp, con.tp, 1e-12) << n;
                        ASSERT_NEAR(var.pctRunoff, con.pctRunoff, 1e-12) << n;
                        ASSERT_NEAR(var.F2H, con.F2H, 1e-12) << n;
                    }
                    ASSERT_EQ(Read(r.GATs.at(c, j, 1)), con.tp);
                    ASSERT_EQ(Read(r.GAPctRunoff.at(c, j, 1)), con.pctRunoff);
                    ASSERT_EQ(Read(r.GAVarTs.at(c, j, 1)), var.tp);
                    ASSERT_EQ(Read(r.GAVarFTf.at(c, j, 1)), var.F2H);
                    ASSERT_EQ(Read(r.GAVarPctRunoff.at(c, j, 1)), var.pctRunoff);
                    ASSERT_FALSE(r.GAVarTs.at(c, j, 0).has_value());
                }
        }
        for (int point = 0; point < (n % 8 ? 0 : 3); ++point) {
            const ExploreAxis axis = point == 1 ? ExploreAxis::Depth : ExploreAxis::Storage;
            const double D = std::round(std::exp(logD(rng)) * 10) / 10;
            const double y = std::round((point == 1 ? depth(rng) : store(rng)) * 100) / 100;
            const DesignRecord at = point == 0 ? d : DesignAt(d, axis, D, y);
            double fast = 0, fastEnd = 0;
            try {
                if (point == 0) {
                    const ExploreValue v = FastWeightedAverage(d);
                    if (!v.ok)
                        throw std::runtime_error(v.message);
                    fast = v.value;
                    fastEnd = probe->OuterEnd(probe->designDiameter(), probe->designDepth());
                } else {
                    const std::optional<double> storage =
                        point == 1 ? std::nullopt : std::optional<double>(y);
                    const double depth = point == 1 ? y : probe->designDepth();
                    fast = probe->WeightedAverage(D, depth, storage);
                    fastEnd = probe->OuterEnd(D, depth, storage);
                }
            } catch (const std::exception& e) {
                ASSERT_FALSE(PageAverage(at)) << "design " << n << ": " << e.what();
                continue;
            }
            const std::optional<double> page = PageAverage(at);
            if (!page)
                continue; // a fault at a position the average does not read
            ASSERT_TRUE(SameBits(fast, *page))
                << "design " << n << " point " << point << ": " << fast << " against " << *page;
            ASSERT_TRUE(SameBits(fastEnd, *PageOuterEnd(at)))
                << "design " << n << " point " << point;
            ++compared[d.greenAmpt];
        }
    }
    // The generator must exercise the computation, not just the checks.
    EXPECT_GT(computed, 8000);
    EXPECT_GT(withRunoff, 200000);
    EXPECT_GT(compared[0], 2500);
    EXPECT_GT(compared[1], 100);
    EXPECT_GT(ponded, 10000);
    EXPECT_EQ(notices, 0); // within the iteration limit
}

} // namespace
} // namespace rainfold
