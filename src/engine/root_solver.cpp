#include "root_solver.h"

#include "green_ampt.h"

#include <string_view>

namespace rainfold {

EquationId EquationNamed(const std::string& name) {
    using namespace std::string_view_literals;
    // Compared as views: the lengths settle most comparisons before any character is read.
    const std::string_view n = name;
    if (n == "FindTs"sv)
        return EquationId::FindTs;
    else if (n == "FindTsVarMC"sv)
        return EquationId::FindTsVarMC;
    else if (n == "FindF@Tf"sv)
        return EquationId::FindFAtTf;
    else if (n == "FindF@TfVarMC"sv)
        return EquationId::FindFAtTfVarMC;
    else if (n == "Findt@ss2"sv)
        return EquationId::FindTAtSs2;
    else if (n == "FindFgivenT"sv)
        return EquationId::FindFGivenT;
    else if (n == "FindFgivenTVarMC"sv)
        return EquationId::FindFGivenTVarMC;
    return EquationId::Unknown;
}

double EvalEquation(const std::string& name, double x, const EquationParams& params) {
    const EquationId id = EquationNamed(name);
    return id == EquationId::Unknown ? 0.0 : GreenAmptEquation(id, params)(x);
}

double FindRoot(const std::string& name, double x1, double x2, double xacc,
                const std::vector<double>& params, const Notify& notify) {
    std::array<double, 8> local{};
    for (size_t i = 0; i < local.size() && i < params.size(); ++i)
        local[i] = params[i];
    // Every evaluation sees the same elements 1..7, so the equation is bound to them once, with
    // the parts of its value that do not change with x worked out then.
    EquationParams p{};
    for (size_t i = 1; i < p.size(); ++i)
        p[i] = local[i];
    const EquationId id = EquationNamed(name);
    if (id == EquationId::Unknown)
        return Bisect([](double) { return 0.0; }, x1, x2, xacc, notify);
    return Bisect(GreenAmptEquation(id, p), x1, x2, xacc, notify);
}

} // namespace rainfold
