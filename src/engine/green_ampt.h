#pragma once
// The Green-Ampt soil model on the elliptical application pattern: the equations the root solver
// evaluates, and the per-position computation for the middle family slot.

#include "calc.h"
#include "green_ampt_soil.h"
#include "results.h"
#include "root_solver.h"

#include <functional>
#include <optional>

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

// Accuracies of the Green-Ampt root solves.
inline constexpr double kTimeAccuracy = 1e-6;  // h
inline constexpr double kDepthAccuracy = 1e-6; // mm

// The Green-Ampt parameters of the last computation. Throws EngineFault when they leave the
// model undefined (Ks, Hw or the moisture deficit not above 0, omega not a finite number).
GreenAmptSoil GreenAmptSoilOf(const Results& results);

// Everything one Green-Ampt computation finds for one position. P is the peak application rate
// (mm/h), H the half time (h), both as stored for the middle slot.
struct GreenAmptOutcome {
    bool ponds = false;
    double tp = 0;        // time to surface saturation, h; 0 when the position never ponds
    double Fp = 0;        // depth applied (and taken in) by tp, mm
    double te = 0;        // end of ponding, h; 0 when the position never ponds
    double runoff = 0;    // runoff depth, mm
    double pctRunoff = 0; // percent of the whole pass's depth that runs off
    double F2H = 0;       // cumulative infiltration at the end of application, mm
};
GreenAmptOutcome GreenAmpt(GreenAmptModel model, const GreenAmptSoil& soil, double P, double H,
                           double SS, const Notify& notify);

// Time at which the surface saturates; empty when the position never ponds.
std::optional<double> GreenAmptPondingTime(GreenAmptModel model, const GreenAmptSoil& soil,
                                           double P, double H, const Notify& notify);

// F_pot(t): what a soil that ponded at tp with Fp taken in has taken in by t >= tp, if the
// surface stays ponded.
double PotentialInfiltration(GreenAmptModel model, const GreenAmptSoil& soil, double tp, double Fp,
                             double t, const Notify& notify);

// First time after ponding at which the surface excess D(t) - Fc(t) fills the storage SS, for
// any cumulative infiltration Fc(t) valid after tp. Rounds of t <- D^-1(Fc(t) + SS) from tp,
// at most 100, until t moves by less than 1e-6 h. Close to 2H when the storage never fills:
// callers show the time only when the position has runoff.
double StorageFilledTime(double tp, double H, double P, double SS,
                         const std::function<double(double)>& Fc, const Notify& notify);

} // namespace rainfold
