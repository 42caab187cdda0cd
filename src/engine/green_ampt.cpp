#include "green_ampt.h"

#include "fault.h"
#include "intake.h"
#include "pattern.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace rainfold {

namespace {

const std::string kFindTs = "FindTs";
const std::string kFindTsVarMC = "FindTsVarMC";
const std::string kFindFAtTf = "FindF@Tf";
const std::string kFindFAtTfVarMC = "FindF@TfVarMC";
const std::string kFindTAtSs2 = "Findt@ss2";
const std::string kFindFGivenT = "FindFgivenT";
const std::string kFindFGivenTVarMC = "FindFgivenTVarMC";

constexpr int kScanSteps = 100;     // steps of the scan for ponding after the peak
constexpr int kStorageRounds = 100; // rounds of the storage-filled time
constexpr int kMaxBracketWidening = 64;

// D(t) under the whole ellipse, P the peak rate. Nothing has arrived at or before the first
// wetting (the arcsine form would divide by zero there).
double Applied(double t, double P, double H) {
    if (t <= 0)
        return 0;
    return AppliedDepth(t, H, Div(P, H), kPi / 2 * (H * H), EndOfPass::FullEllipse);
}

double Rate(double t, double P, double H) {
    return ApplicationRate(t, H, Div(P, H));
}

EquationParams ToEquation(const std::vector<double>& params) {
    EquationParams p{};
    for (size_t i = 1; i < p.size() && i < params.size(); ++i)
        p[i] = params[i];
    return p;
}

// The bracket of the F equations: from F0 + Ks (t - t0), which T's slope of at most 1 makes a
// lower bound, to the upper bound that holds whenever the deficit does not grow with depth.
// A deficit that grows with depth (omega < 0) slows the front and can put the root above that
// bound; the top is then pushed up until the equation changes sign.
void InfiltrationBracket(const std::string& name, const std::vector<double>& params,
                         const GreenAmptSoil& soil, bool deficitMayGrow, double t, double t0,
                         double F0, double& x1, double& x2) {
    const double delta = soil.Ks * (t - t0);
    x1 = F0 + delta;
    x2 = F0 + delta + Sqrt(2 * (soil.Hw * soil.dtheta0 + F0) * delta) + 1e-9;
    if (!deficitMayGrow)
        return;
    const EquationParams p = ToEquation(params);
    for (int n = 0; n < kMaxBracketWidening && EvalEquation(name, x2, p) < 0; ++n)
        x2 = x1 + 2 * (x2 - x1);
}

// The two F equations: F at any time t ("FindFgivenT": t, t0, F0, ...) and F at the end of the
// pass ("FindF@Tf": t0, F0, tf, ...). The same equation with its parameters in another order.
enum class FEquation { GivenT, AtEndOfPass };

// F at t of a soil ponded since t0 with F0 taken in.
double SolveInfiltration(FEquation eq, GreenAmptModel model, const GreenAmptSoil& soil, double t0,
                         double F0, double t, const Notify& notify) {
    const bool constant = model == GreenAmptModel::Constant;
    // A front already in the saturated part of the profile meets no suction: the soil takes in
    // Ks per hour. T has slope 1 there, so the root is the bracket's lower end itself, where the
    // residual is only rounding and bisection would walk away to the upper end.
    if (!constant && F0 >= SaturatedInfiltration(soil.dtheta0, soil.omega))
        return F0 + soil.Ks * (t - t0);
    const bool givenT = eq == FEquation::GivenT;
    const std::string& name = givenT ? (constant ? kFindFGivenT : kFindFGivenTVarMC)
                                     : (constant ? kFindFAtTf : kFindFAtTfVarMC);
    std::vector<double> params =
        givenT ? std::vector<double>{0, t, t0, F0} : std::vector<double>{0, t0, F0, t};
    params.insert(params.end(), {soil.Ks, soil.Hw, soil.dtheta0});
    if (!constant)
        params.push_back(soil.omega);
    double x1 = 0, x2 = 0;
    InfiltrationBracket(name, params, soil, !constant && soil.omega < 0, t, t0, F0, x1, x2);
    return FindRoot(name, x1, x2, kDepthAccuracy, params, notify);
}

void CheckPattern(double P, double H) {
    Checked(P);
    if (!(H > 0) || std::isinf(H))
        throw EngineFault(kInvalidArgument);
}

} // namespace

double EqFindTs(double t, const EquationParams& p) {
    const double P = p[1], H = p[2], Ks = p[3], Hw = p[4], dtheta0 = p[5];
    return Applied(t, P, H) * (Rate(t, P, H) - Ks) - Ks * Hw * dtheta0;
}

// zf(D) (a - Ks) - Ks Hw is zf (a - f(D)): the sign says whether the application outruns the
// capacity. Once D passes F* the capacity is Ks; the weight of the difference stays at z*.
double EqFindTsVarMC(double t, const EquationParams& p) {
    const double P = p[1], H = p[2], Ks = p[3], Hw = p[4], dtheta0 = p[5], omega = p[6];
    const double D = Applied(t, P, H);
    const double a = Rate(t, P, H);
    if (D > SaturatedInfiltration(dtheta0, omega))
        return SaturatedDepth(dtheta0, omega) * (a - Ks);
    return FrontDepth(D, dtheta0, omega) * (a - Ks) - Ks * Hw;
}

double EqFindFAtTf(double F, const EquationParams& p) {
    const double tp = p[1], Fp = p[2], tf = p[3], Ks = p[4], Hw = p[5], dtheta0 = p[6];
    return ConstPondedTime(F, Hw, dtheta0) - ConstPondedTime(Fp, Hw, dtheta0) - Ks * (tf - tp);
}

double EqFindFAtTfVarMC(double F, const EquationParams& p) {
    const double tp = p[1], Fp = p[2], tf = p[3], Ks = p[4], Hw = p[5], dtheta0 = p[6],
                 omega = p[7];
    return VarPondedTime(F, Hw, dtheta0, omega) - VarPondedTime(Fp, Hw, dtheta0, omega) -
           Ks * (tf - tp);
}

double EqFindTAtSs2(double t, const EquationParams& p) {
    return Applied(t, p[1], p[2]) - p[3];
}

double EqFindFGivenT(double F, const EquationParams& p) {
    const double t = p[1], t0 = p[2], F0 = p[3], Ks = p[4], Hw = p[5], dtheta0 = p[6];
    return ConstPondedTime(F, Hw, dtheta0) - ConstPondedTime(F0, Hw, dtheta0) - Ks * (t - t0);
}

double EqFindFGivenTVarMC(double F, const EquationParams& p) {
    const double t = p[1], t0 = p[2], F0 = p[3], Ks = p[4], Hw = p[5], dtheta0 = p[6], omega = p[7];
    return VarPondedTime(F, Hw, dtheta0, omega) - VarPondedTime(F0, Hw, dtheta0, omega) -
           Ks * (t - t0);
}

GreenAmptSoil GreenAmptSoilOf(const Results& results) {
    GreenAmptSoil soil;
    soil.Ks = Read(results.GAKs);
    soil.Hw = Read(results.GAHw);
    soil.dtheta0 = Read(results.GADeltaTheta);
    soil.omega = Read(results.GAOmega);
    if (!(soil.Ks > 0) || std::isinf(soil.Ks))
        throw EngineFault("Invalid saturated hydraulic conductivity.");
    if (!(soil.Hw > 0) || std::isinf(soil.Hw))
        throw EngineFault("Invalid wetting front suction head.");
    if (!(soil.dtheta0 > 0) || std::isinf(soil.dtheta0))
        throw EngineFault("Invalid initial water content.");
    if (!std::isfinite(soil.omega))
        throw EngineFault("Invalid linear variation of water content.");
    return soil;
}

std::optional<double> GreenAmptPondingTime(GreenAmptModel model, const GreenAmptSoil& soil,
                                           double P, double H, const Notify& notify) {
    CheckPattern(P, H);
    if (P <= soil.Ks)
        return std::nullopt;
    const bool constant = model == GreenAmptModel::Constant;
    const std::string& name = constant ? kFindTs : kFindTsVarMC;
    std::vector<double> params = {0, P, H, soil.Ks, soil.Hw, soil.dtheta0};
    if (!constant)
        params.push_back(soil.omega);
    const EquationParams p = ToEquation(params);
    const auto g = [&](double t) { return EvalEquation(name, t, p); };

    if (g(H) >= 0)
        return FindRoot(name, 0, H, kTimeAccuracy, params, notify);
    // The capacity still exceeds the application at the peak; the falling limb may yet outrun
    // it, so look for the first step after the peak where it does.
    double before = g(H);
    for (int k = 1; k <= kScanSteps; ++k) {
        const double tk = H + k * H / kScanSteps;
        const double gk = g(tk);
        if (before < 0 && 0 <= gk)
            return FindRoot(name, H + (k - 1) * H / kScanSteps, tk, kTimeAccuracy, params, notify);
        before = gk;
    }
    return std::nullopt;
}

double PotentialInfiltration(GreenAmptModel model, const GreenAmptSoil& soil, double tp, double Fp,
                             double t, const Notify& notify) {
    return SolveInfiltration(FEquation::GivenT, model, soil, tp, Fp, t, notify);
}

GreenAmptOutcome GreenAmpt(GreenAmptModel model, const GreenAmptSoil& soil, double P, double H,
                           double SS, const Notify& notify) {
    CheckPattern(P, H);
    GreenAmptOutcome out;
    const double D2H = Applied(2 * H, P, H);
    const std::optional<double> ponding = GreenAmptPondingTime(model, soil, P, H, notify);
    if (!ponding) {
        out.F2H = D2H; // every drop is taken in
        return out;
    }
    const double tp = *ponding;
    const double Fp = Applied(tp, P, H);
    out.ponds = true;
    out.tp = tp;
    out.Fp = Fp;

    const auto Fpot = [&](double t) {
        return PotentialInfiltration(model, soil, tp, Fp, t, notify);
    };
    const auto fc = [&](double t) { return Capacity(model, soil, Fpot(t)); };
    int status = kNotStarted;
    double te = SearchPondEnd(tp, H, Div(P, H), fc, status);
    // The application still outran the capacity at the last step inside the pass: the surface
    // stayed ponded to the end.
    if (status == kNoCrossing)
        te = 2 * H;
    out.te = te;

    double runoff = Applied(te, P, H) - Fpot(te) - SS;
    if (runoff <= 0)
        runoff = 0;
    out.runoff = runoff;
    out.pctRunoff = Div(100 * runoff, kPi / 2 * P * H);

    const double FpotEnd =
        SolveInfiltration(FEquation::AtEndOfPass, model, soil, tp, Fp, 2 * H, notify);
    // After ponding ends the surface may dry before the pass is over: the soil cannot have taken
    // in more than reached it and did not run off.
    out.F2H = std::min(FpotEnd, D2H - runoff);
    return out;
}

void GreenAmptPosition(int capacityCase, int position, Results& results, const Notify& notify) {
    const double P = Read(results.PeakRate.at(capacityCase, position, 2));
    const double H = Read(results.HalfTime.at(capacityCase, position, 2));
    const double SS = Read(results.SurfStore.at(static_cast<size_t>(position)));
    const GreenAmptSoil soil = GreenAmptSoilOf(results);

    const GreenAmptOutcome constant = GreenAmpt(GreenAmptModel::Constant, soil, P, H, SS, notify);
    results.GATs.at(capacityCase, position, 1) = constant.tp;
    results.GAPctRunoff.at(capacityCase, position, 1) = constant.pctRunoff;

    const GreenAmptOutcome varying = GreenAmpt(GreenAmptModel::Varying, soil, P, H, SS, notify);
    results.GAVarTs.at(capacityCase, position, 1) = varying.tp;
    results.GAVarFTf.at(capacityCase, position, 1) = varying.F2H;
    results.GAVarPctRunoff.at(capacityCase, position, 1) = varying.pctRunoff;
}

double StorageFilledTime(double tp, double H, double P, double SS,
                         const std::function<double(double)>& Fc, const Notify& notify) {
    double t = tp;
    for (int round = 1; round <= kStorageRounds; ++round) {
        const double next =
            FindRoot(kFindTAtSs2, t, 2 * H, kTimeAccuracy, {0, P, H, Fc(t) + SS}, notify);
        const bool settled = std::fabs(next - t) < kTimeAccuracy;
        t = next;
        if (settled)
            break;
    }
    return t;
}

} // namespace rainfold
