#pragma once
// The Green-Ampt soil model on the elliptical application pattern: the equations the root solver
// evaluates, and the per-position computation for the middle family slot.

#include "calc.h"
#include "results.h"
#include "root_solver.h"

namespace rainfold {

// Bodies of the Green-Ampt equations of the dispatcher (parameters as in EvalEquation).
double EqFindTs(double t, const EquationParams& p);
double EqFindTsVarMC(double t, const EquationParams& p);
double EqFindFAtTf(double F, const EquationParams& p);
double EqFindFAtTfVarMC(double F, const EquationParams& p);
double EqFindTAtSs2(double t, const EquationParams& p);
double EqFindFGivenT(double F, const EquationParams& p);
double EqFindFGivenTVarMC(double F, const EquationParams& p);

// Both Green-Ampt computations (constant, then varying water content) for one capacity case and
// position, reading PeakRate and HalfTime of the middle slot and writing the Green-Ampt arrays.
void GreenAmptPosition(int capacityCase, int position, Results& results, const Notify& notify);

} // namespace rainfold
