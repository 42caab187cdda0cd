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

// One of the dispatcher's equations bound to its parameters (elements 1..7, as in
// EvalEquation). A solve evaluates it dozens of times with the same parameters, so what does not
// change with x is worked out once here: the ponded time at the bracket's fixed end, the shift
// Ks (t - t0), the pattern's slope and area constant. Each value is bit for bit the one the
// residual would give computed afresh.
class GreenAmptEquation {
public:
    GreenAmptEquation(EquationId id, const EquationParams& p);
    double operator()(double x) const;

private:
    EquationId id_;
    EquationParams p_;
    GreenAmptSoil soil_;
    double fixedEnd_ = 0; // T at the fixed end of the F equations; Ks Hw (dtheta0) of FindTs
    double shift_ = 0;    // Ks (t - t0) of the F equations
    double slope_ = 0, area_ = 0; // P / H and (Pi / 2) H^2 of the pattern
    bool slopeDefined_ = false;
};

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
// Without `infiltrationAtEnd` the computation stops at the runoff and F2H is left at 0.
GreenAmptOutcome GreenAmpt(GreenAmptModel model, const GreenAmptSoil& soil, double P, double H,
                           double SS, const Notify& notify, bool infiltrationAtEnd = true);

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
