#include "root_solver.h"

#include "green_ampt.h"

#include <cmath>
#include <string_view>

namespace rainfold {

double EvalEquation(const std::string& name, double x, const EquationParams& params) {
    using namespace std::string_view_literals;
    // Compared as views: the lengths settle most comparisons before any character is read.
    const std::string_view n = name;
    if (n == "FindTs"sv)
        return EqFindTs(x, params);
    else if (n == "FindTsVarMC"sv)
        return EqFindTsVarMC(x, params);
    else if (n == "FindF@Tf"sv)
        return EqFindFAtTf(x, params);
    else if (n == "FindF@TfVarMC"sv)
        return EqFindFAtTfVarMC(x, params);
    else if (n == "Findt@ss2"sv)
        return EqFindTAtSs2(x, params);
    else if (n == "FindFgivenT"sv)
        return EqFindFGivenT(x, params);
    else if (n == "FindFgivenTVarMC"sv)
        return EqFindFGivenTVarMC(x, params);
    return 0;
}

double FindRoot(const std::string& name, double x1, double x2, double xacc,
                const std::vector<double>& params, const Notify& notify) {
    std::array<double, 8> local{};
    for (size_t i = 0; i < local.size() && i < params.size(); ++i)
        local[i] = params[i];
    // The equation sees a fresh copy of elements 1..7 each time.
    const auto eval = [&](double x) {
        EquationParams p{};
        for (size_t i = 1; i < p.size(); ++i)
            p[i] = local[i];
        return EvalEquation(name, x, p);
    };

    eval(x2); // evaluated, but the bracket is not checked for a sign change
    const double f = eval(x1);
    double rtb, dx;
    if (f < 0) {
        rtb = x1;
        dx = x2 - x1;
    } else {
        rtb = x2;
        dx = x1 - x2;
    }
    for (int j = 1;; ++j) {
        if (j > kMaxHalvings) {
            if (notify)
                notify(std::string(kMaxIterationsMessage) + std::to_string(kMaxHalvings));
            break;
        }
        dx = dx * 0.5;
        const double xmid = rtb + dx;
        const double fmid = eval(xmid);
        if (fmid <= 0)
            rtb = xmid;
        if (std::fabs(dx) < xacc || fmid == 0)
            break;
    }
    return rtb;
}

} // namespace rainfold
