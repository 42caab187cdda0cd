#pragma once
// A general bisection root finder over named equations, and the dispatcher that evaluates them.

#include "calc.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

namespace rainfold {

inline constexpr int kMaxHalvings = 40;
inline constexpr const char* kMaxIterationsMessage = "Exceeded the max iterations of ";

// Parameters as the equations see them: elements 1..7 are used, element 0 is never read.
using EquationParams = std::array<double, 8>;

// The seven equations, in the order the dispatcher compares their names ("FindTs", "FindTsVarMC",
// "FindF@Tf", "FindF@TfVarMC", "Findt@ss2", "FindFgivenT", "FindFgivenTVarMC").
enum class EquationId {
    FindTs,
    FindTsVarMC,
    FindFAtTf,
    FindFAtTfVarMC,
    FindTAtSs2,
    FindFGivenT,
    FindFGivenTVarMC,
    Unknown
};
// The equation a name selects: exact, case-sensitive comparison; Unknown for any other name.
EquationId EquationNamed(const std::string& name);

// The value of the named equation at x; a root is a zero of it. An unknown name gives 0.
double EvalEquation(const std::string& name, double x, const EquationParams& params);

// The bisection of FindRoot over any function f of x: the orientation from the sign at x1, the
// halvings, the limit and its message.
//
// A caller that needs less than the root may pass `settled(lo, hi)`: before the first halving
// and after each one it is told the range [lo, hi] in which the result is sure to end, and the
// bisection stops when it returns true, returning a value of that range. It is asked only where
// the bisection could not reach the limit, so no notice is lost.
struct NeverSettled {
    bool operator()(double, double) const { return false; }
};
template <class Function, class Settled = NeverSettled>
double Bisect(const Function& f, double x1, double x2, double xacc, const Notify& notify,
              const Settled& settled = {}) {
    const bool mayStopEarly = std::fabs(x2 - x1) < std::ldexp(xacc, kMaxHalvings);
    static_cast<void>(f(x2)); // evaluated, but the bracket is not checked for a sign change
    double rtb, dx;
    if (f(x1) < 0) {
        rtb = x1;
        dx = x2 - x1;
    } else {
        rtb = x2;
        dx = x1 - x2;
    }
    if (mayStopEarly && settled(std::min(x1, x2), std::max(x1, x2)))
        return rtb;
    for (int j = 1;; ++j) {
        if (j > kMaxHalvings) {
            if (notify)
                notify(std::string(kMaxIterationsMessage) + std::to_string(kMaxHalvings));
            break;
        }
        dx = dx * 0.5;
        const double xmid = rtb + dx;
        const double fmid = f(xmid);
        if (fmid <= 0)
            rtb = xmid;
        if (std::fabs(dx) < xacc || fmid == 0)
            break;
        // Later halvings can only add less than dx in all.
        if (mayStopEarly && settled(std::min(rtb, rtb + dx), std::max(rtb, rtb + dx)))
            break;
    }
    return rtb;
}

// Bisection of the named equation between x1 and x2 to accuracy xacc. params holds up to eight
// elements (0..7); elements 1..7 reach the equation. After kMaxHalvings halvings the message
// "Exceeded the max iterations of 40" goes to notify and the last estimate is returned.
double FindRoot(const std::string& name, double x1, double x2, double xacc,
                const std::vector<double>& params, const Notify& notify);

} // namespace rainfold
