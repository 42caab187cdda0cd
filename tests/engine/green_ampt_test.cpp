// Green-Ampt infiltration on the elliptical pattern. The reference pass peaks at 40 mm/h with a
// half time of 0.4 h over soils with Hw = 110 mm. The check values and the roots come from
// tests/data/green_ampt_check.py, which solves the model its own way, at build time.

#include "green_ampt.h"
#include "pattern.h"
#include "root_solver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
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

} // namespace
} // namespace rainfold
