#pragma once
// A general bisection root finder over named equations, and the dispatcher that evaluates them.

#include "calc.h"

#include <array>
#include <string>
#include <vector>

namespace rainfold {

inline constexpr int kMaxHalvings = 40;
inline constexpr const char* kMaxIterationsMessage = "Exceeded the max iterations of ";

// Parameters as the equations see them: elements 1..7 are used, element 0 is never read.
using EquationParams = std::array<double, 8>;

// The value of the named equation at x; a root is a zero of it. An unknown name gives 0.
double EvalEquation(const std::string& name, double x, const EquationParams& params);

// Bisection of the named equation between x1 and x2 to accuracy xacc. params holds up to eight
// elements (0..7); elements 1..7 reach the equation. After kMaxHalvings halvings the message
// "Exceeded the max iterations of 40" goes to notify and the last estimate is returned.
double FindRoot(const std::string& name, double x1, double x2, double xacc,
                const std::vector<double>& params, const Notify& notify);

} // namespace rainfold
