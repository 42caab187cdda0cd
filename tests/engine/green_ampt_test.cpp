// Green-Ampt infiltration on the elliptical pattern. The reference pass peaks at 40 mm/h with a
// half time of 0.4 h over soils with Hw = 110 mm. The check values and the roots come from
// tests/data/green_ampt_check.py, which solves the model its own way, at build time.

#include "calc.h"
#include "green_ampt.h"
#include "pattern.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <vector>

namespace rainfold {
namespace {

using Model = GreenAmptModel;
constexpr double kP = 40, kH = 0.4;
#include "green_ampt_check.inc"

TEST(GreenAmpt, CheckValuesOfTheReferencePass) {
    for (const GreenAmptCheck& c : kGreenAmptChecks) {
        SCOPED_TRACE(testing::Message() << "Ks " << c.Ks << " dtheta0 " << c.dtheta0 << " omega "
                                        << c.omega << " SS " << c.SS);
        int notices = 0;
        const GreenAmptSoil soil{c.Ks, 110, c.dtheta0, c.omega};
        const GreenAmptOutcome o =
            GreenAmpt(c.model, soil, kP, kH, c.SS, [&](const std::string&) { ++notices; });
        EXPECT_EQ(o.ponds, c.tp > 0);
        EXPECT_NEAR(o.tp, c.tp, c.tpTol);
        EXPECT_NEAR(o.pctRunoff, c.pct, c.pctTol);
        EXPECT_NEAR(o.F2H, c.F2H, 1e-5);
        EXPECT_EQ(notices, 0);
    }
}

// Each equation's zero, found by tests/data/green_ampt_check.py, lies within 1e-6 of where the
// residual changes sign, and FindRoot returns it within the accuracy passed.
TEST(GreenAmptEquations, ResidualsVanishAtTheModelsRootsAndFindRootReturnsThem) {
    const auto top = [](double F0, double delta) {
        return F0 + delta + std::sqrt(2 * (110 * 0.2 + F0) * delta) + 1e-9;
    };
    const struct {
        std::string name;
        std::vector<double> params;
        double x1, x2, root;
    } cases[] = {
        // clang-format off
        {"FindTs",           {0, kP, kH, 10, 110, 0.2},                 0, kH, kTsConstant},
        {"FindTsVarMC",      {0, kP, kH, 10, 110, 0.2, 0.002},          0, kH, kTsOmega002},
        {"FindF@Tf",         {0, 0.3, 5, 0.8, 10, 110, 0.2},            10, top(5, 5), kF5After5Constant},
        {"FindF@TfVarMC",    {0, 0.3, 5, 0.8, 10, 110, 0.2, 0.0002},    10, top(5, 5), kF5After5Omega0002},
        {"Findt@ss2",        {0, kP, kH, 12},                           0.1, 2 * kH, kDepth12Time},
        {"FindFgivenT",      {0, 0.6, 0.3, 5, 10, 110, 0.2},            8, top(5, 3), kF5After3Constant},
        // F* = 10 mm lies inside the bracket.
        {"FindFgivenTVarMC", {0, 0.6, 0.3, 5, 10, 110, 0.2, 0.002},     8, top(5, 3), kF5After3Omega002},
        // clang-format on
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EquationParams p{};
        std::copy(c.params.begin(), c.params.end(), p.begin());
        EXPECT_LT(EvalEquation(c.name, c.root - 1e-6, p), 0);
        EXPECT_GT(EvalEquation(c.name, c.root + 1e-6, p), 0);
        int notices = 0;
        const double x = FindRoot(c.name, c.x1, c.x2, 1e-6, c.params, [&](auto&) { ++notices; });
        EXPECT_NEAR(x, c.root, 1.1e-6);
        EXPECT_EQ(notices, 0);
    }
    // A deficit growing with depth is solved above the bracket that serves the others.
    const double x = PotentialInfiltration(Model::Varying, {10, 110, 0.2, -0.01}, 0.1, 1, 0.4, {});
    EXPECT_GT(x, top(1, 3));
    EXPECT_NEAR(x, kF1After3OmegaMinus01, 1.1e-6);
}

TEST(GreenAmpt, StorageFilledTime) {
    // Nothing taken in after ponding: D(t) = 10 + SS, which is D(H) = 4 Pi for this SS.
    EXPECT_NEAR(StorageFilledTime(0.2, kH, kP, 4 * kPi - 10, [](double) { return 10.0; }, {}), kH,
                2e-6);
    // The reference soil ponds and fills 2 mm of storage before the ponding ends.
    const GreenAmptSoil soil{10, 110, 0.2, 0};
    const GreenAmptOutcome o = GreenAmpt(Model::Constant, soil, kP, kH, 0, {});
    const auto Fpot = [&](double t) {
        return PotentialInfiltration(Model::Constant, soil, o.tp, o.Fp, t, {});
    };
    const auto excess = [&](double t) { // D(t) - F_pot(t)
        return EvalEquation("Findt@ss2", t, {0, kP, kH, Fpot(t), 0, 0, 0, 0});
    };
    const double ts = StorageFilledTime(o.tp, kH, kP, 2, Fpot, {});
    EXPECT_GT(ts, o.tp);
    EXPECT_LT(ts, o.te);
    EXPECT_NEAR(excess(ts), 2, 1e-4);
    EXPECT_LT(excess(ts - 1e-3), 2);
}

// Random designs that pass the input checks; those with omega = 0 also compare the models.
TEST(GreenAmpt, RandomDesignsGiveFiniteResultsWithinTheIterationLimit) {
    std::mt19937_64 rng(20240611);
    const auto U = [&](double a, double b) { return std::uniform_real_distribution<>(a, b)(rng); };
    const auto LogU = [&](double a, double b) { return std::exp(U(std::log(a), std::log(b))); };
    int notices = 0;
    const Notify notify = [&](const std::string&) { ++notices; };
    for (int d = 0; d < 10000; ++d) {
        // A machine and a position, through the pattern's formulas.
        const double L = U(100, 3000) * 0.3048,
                     Q = (U(110, 3000) - 100) * 0.06309 + 6.309 * U(0, 2);
        const double R = std::max(U(0, 400) / 2, 0.55) * 0.3048, depth = U(0.05, 4) * 25.4;
        const double r = 0.1 * std::floor(U(1, 11)) * L,
                     Tk = 2.7777 * kPi * L * L / 1e4 * depth / Q;
        const double P = 4584 * Q * r / (L * L * R), H = R / (2 * kPi * r / Tk), SS = U(0, 30);
        // Ks, Hw > 0, 0 < thetaS <= 1, 0 <= thetaI < thetaS, any omega.
        const double thetaS = U(0.01, 1), thetaI = U(0, thetaS);
        const double omegas[] = {0, LogU(1e-7, 0.1), -LogU(1e-7, 0.01),
                                 (thetaS - thetaI) / U(10, 3000)};
        const GreenAmptSoil soil{LogU(0.01, 500), LogU(0.1, 3000), thetaS - thetaI, omegas[d % 4]};
        const GreenAmptOutcome con = GreenAmpt(Model::Constant, soil, P, H, SS, notify);
        const GreenAmptOutcome var = GreenAmpt(Model::Varying, soil, P, H, SS, notify);
        for (const GreenAmptOutcome& o : {con, var}) {
            for (const double v : {o.tp, o.te, o.runoff, o.pctRunoff, o.F2H})
                ASSERT_TRUE(std::isfinite(v)) << d;
            ASSERT_LE(o.runoff + o.F2H, kPi / 2 * P * H * (1 + 1e-12) + 1e-9) << d;
        }
        if (soil.omega == 0) {
            ASSERT_NEAR(var.tp, con.tp, 1e-12) << d;
            ASSERT_NEAR(var.pctRunoff, con.pctRunoff, 1e-12) << d;
            ASSERT_NEAR(var.F2H, con.F2H, 1e-12) << d;
        }
    }
    EXPECT_EQ(notices, 0);
}

} // namespace
} // namespace rainfold
