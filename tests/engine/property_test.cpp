// Properties that hold for every design the checks let through.
//
// Applied depth at any position: (Pi/2) * PeakRate * HalfTime with
//   PeakRate = 4584 Qk r / (L^2 R),  HalfTime = R / (2 Pi r / Tk),  Tk = 2.7777 (Pi L^2 / 10000) d
//   / Qk
// so PeakRate * HalfTime = 4584 Tk Qk / (2 Pi L^2) = 4584 * 2.7777 * d / 20000, and
//   (Pi/2) * PeakRate * HalfTime = d * 4584 * 2.7777 * Pi / 40000,
// the same at every position, capacity and family; about 1.00004 d, since 4584 * 2.7777 is close
// to (14400 / Pi) * (25 / 9).

#include "calc.h"
#include "checks.h"
#include "pattern.h"
#include "random_design.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <random>
#include <string>

namespace rainfold {
namespace {

TEST(Properties, RandomCheckedDesigns) {
    std::mt19937 rng(20240611);
    int computed = 0, withRunoff = 0;
    for (int n = 0; n < 10000; ++n) {
        const DesignRecord d = RandomDesign(rng);
        if (!PassesChecks(d))
            continue;
        ++computed;
        Results r;
        const CalcOutcome out = Calc_Results(d, r);
        // The checks let through capacities down to 100 gpm; below 100.5 the first case would
        // run a flow that rounds to 0 gpm, which the computation refuses.
        if (Val(d.txtGPM) < 100.5) {
            ASSERT_EQ(out.message, "The system capacity less 100 gpm must be above 0 gpm.");
            continue;
        }
        ASSERT_TRUE(out.ok()) << "design " << n << ": " << out.message;
        const double depth = Val(d.txtAPPL) * 25.4 * 4584 * 2.7777 * kPi / 40000;
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
                    ASSERT_NEAR(kPi / 2 * peak * half, depth, 1e-9 * depth)
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
                }
        }
    }
    // The generator must exercise the computation, not just the checks.
    EXPECT_GT(computed, 2000);
    EXPECT_GT(withRunoff, 10000);
}

} // namespace
} // namespace rainfold
