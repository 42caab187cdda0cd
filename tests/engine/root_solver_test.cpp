// Bisection over named equations. "Findt@ss2" is D(t) - target under the application pattern, a
// rising function of t inside the pass, so its root is where D(t) equals the target. Its
// parameters are the peak rate, the half time and the target.

#include "pattern.h"
#include "root_solver.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace rainfold {
namespace {

constexpr double kH = 0.5;  // half time, h: the pass lasts from 0 to 1 h
constexpr double kP = 80.0; // peak rate, mm/h

double Depth(double t) {
    return EvalEquation("Findt@ss2", t, EquationParams{0, kP, kH, 0, 0, 0, 0, 0});
}

struct Solve {
    std::vector<std::string> notices;
    double operator()(const std::string& name, double x1, double x2, double xacc, double target) {
        return FindRoot(name, x1, x2, xacc, {0, kP, kH, target},
                        [this](const std::string& m) { notices.push_back(m); });
    }
};

TEST(FindRoot, OrientationFromTheSignAtX1AndExactZeros) {
    const double target = Depth(0.35);
    const struct {
        const char* what;
        double x1, x2, xacc, target, expected, tolerance;
    } cases[] = {
        {"f(x1) < 0: moves up from x1", 0.1, 0.9, 1e-9, target, 0.35, 2e-9},
        {"f(x1) > 0: moves up from x2", 0.9, 0.1, 1e-9, target, 0.35, 2e-9},
        // f(x1) == 0 takes the second branch: rtb starts at x2 and, every midpoint lying above
        // the root, never moves from it.
        {"f(x1) == 0", 0.35, 0.8, 1e-9, target, 0.8, 2e-9},
        // D is constant from the end of the pass (t = 1) on, so with the target D(1.5) every
        // midpoint from 1 on is a root; the first midpoint, 1, ends the solve at once.
        {"flat from the end of the pass", 0.5, 1.5, 1e-12, Depth(1.5), 1.0, 0},
    };
    for (const auto& c : cases) {
        Solve solve;
        EXPECT_NEAR(solve("Findt@ss2", c.x1, c.x2, c.xacc, c.target), c.expected, c.tolerance)
            << c.what;
        EXPECT_TRUE(solve.notices.empty()) << c.what;
    }
    // An unknown name evaluates to 0 everywhere: second branch, then the first midpoint.
    EXPECT_EQ(Solve()("no such equation", 0.2, 0.6, 1e-12, 0), 0.4);
}

// Root at t* = 0.5 + (8M + 7.5) * 2^-43 on the bracket [0.5, 1]: after n halvings of the width
// 0.5 the estimate is 0.5 + floor((t* - 0.5) / (0.5 * 2^-n)) * 0.5 * 2^-n, which differs for
// n = 39, 40 and 41.
TEST(FindRoot, HalvingCountAndLimit) {
    const double M = std::floor(0.3 * std::ldexp(1.0, 40));
    const double q = (8 * M + 7.5) * std::ldexp(1.0, -43);
    const double root = 0.5 + q;
    auto afterHalvings = [&](int n) {
        const double step = std::ldexp(0.5, -n);
        return 0.5 + std::floor(q / step) * step;
    };
    ASSERT_NE(afterHalvings(39), afterHalvings(40));
    ASSERT_NE(afterHalvings(41), afterHalvings(40));

    Solve limited;
    EXPECT_EQ(limited("Findt@ss2", 0.5, 1.0, 0.0, Depth(root)), afterHalvings(40));
    ASSERT_EQ(limited.notices.size(), 1u);
    EXPECT_EQ(limited.notices[0], "Exceeded the max iterations of 40");

    // xacc = 1e-6 on a width of 0.5: 19 halvings (0.5 * 2^-19 < 1e-6 <= 0.5 * 2^-18).
    Solve converged;
    EXPECT_EQ(converged("Findt@ss2", 0.5, 1.0, 1e-6, Depth(root)), afterHalvings(19));
    EXPECT_TRUE(converged.notices.empty());
}

} // namespace
} // namespace rainfold
