#include "green_ampt.h"

#include "fault.h"
#include "intake.h"
#include "pattern.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
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
void InfiltrationBracket(const GreenAmptEquation& f, const GreenAmptSoil& soil, bool deficitMayGrow,
                         double t, double t0, double F0, double& x1, double& x2) {
    const double delta = soil.Ks * (t - t0);
    x1 = F0 + delta;
    x2 = F0 + delta + Sqrt(2 * (soil.Hw * soil.dtheta0 + F0) * delta) + 1e-9;
    if (!deficitMayGrow)
        return;
    for (int n = 0; n < kMaxBracketWidening && f(x2) < 0; ++n)
        x2 = x1 + 2 * (x2 - x1);
}

// The two F equations: F at any time t ("FindFgivenT": t, t0, F0, ...) and F at the end of the
// pass ("FindF@Tf": t0, F0, tf, ...). The same equation with its parameters in another order.
enum class FEquation { GivenT, AtEndOfPass };

// F at t of a soil ponded since t0 with F0 taken in: FindRoot's bisection of the named equation.
// `settled` may end it early (see Bisect).
template <class Settled = NeverSettled>
double SolveInfiltration(FEquation eq, GreenAmptModel model, const GreenAmptSoil& soil, double t0,
                         double F0, double t, const Notify& notify, const Settled& settled = {}) {
    const bool constant = model == GreenAmptModel::Constant;
    // A front already in the saturated part of the profile meets no suction: the soil takes in
    // Ks per hour. T has slope 1 there, so the root is the bracket's lower end itself, where the
    // residual is only rounding and bisection would walk away to the upper end.
    if (!constant && F0 >= SaturatedInfiltration(soil.dtheta0, soil.omega))
        return F0 + soil.Ks * (t - t0);
    const bool givenT = eq == FEquation::GivenT;
    const std::string& name = givenT ? (constant ? kFindFGivenT : kFindFGivenTVarMC)
                                     : (constant ? kFindFAtTf : kFindFAtTfVarMC);
    EquationParams params{0, t0, F0, t, soil.Ks, soil.Hw, soil.dtheta0, constant ? 0 : soil.omega};
    if (givenT)
        params[1] = t, params[2] = t0, params[3] = F0;
    const GreenAmptEquation f(EquationNamed(name), params);
    double x1 = 0, x2 = 0;
    InfiltrationBracket(f, soil, !constant && soil.omega < 0, t, t0, F0, x1, x2);
    return Bisect(f, x1, x2, kDepthAccuracy, notify, settled);
}

// The capacity of the ponded soil for the end-of-ponding search. Most steps of the search lie far
// from the end of ponding, where the capacity of every F the solve can still return stands on one
// side of the application rate by more than the search's tolerance: the solve stops there, and
// the search takes the very turn it would take at the root.
struct PondedCapacity {
    GreenAmptModel model;
    const GreenAmptSoil& soil;
    double tp, Fp;
    const Notify& notify;
    // The last F solved in full without a notice, and its time: the end of ponding is such a
    // step, and the runoff needs F there again.
    mutable std::optional<std::pair<double, double>> solved;

    double operator()(double t) const {
        return Capacity(model, soil,
                        SolveInfiltration(FEquation::GivenT, model, soil, tp, Fp, t, notify));
    }

    RateOrder Order(double t, double a) const {
        // Far beyond the rounding of either side: the capacity falls as F grows, and both are
        // worked out in a few operations.
        const double margin = kRateTolerance + 1e-9 * (1 + std::fabs(a));
        std::optional<RateOrder> known;
        const auto settled = [&](double lo, double hi) {
            try {
                if (Capacity(model, soil, hi) > a + margin)
                    known = RateOrder::CapacityAbove;
                else if (Capacity(model, soil, lo) < a - margin)
                    known = RateOrder::CapacityBelow;
            } catch (const EngineFault&) {
                // Left to the full solve, which meets the fault where it always did.
            }
            return known.has_value();
        };
        bool noticed = false;
        const Notify watched = [&](const std::string& message) {
            noticed = true;
            if (notify)
                notify(message);
        };
        const double F =
            SolveInfiltration(FEquation::GivenT, model, soil, tp, Fp, t, watched, settled);
        if (known)
            return *known;
        if (!noticed)
            solved = {t, F};
        return OrderOf(a, Capacity(model, soil, F));
    }
};

void CheckPattern(double P, double H) {
    Checked(P);
    if (!(H > 0) || std::isinf(H))
        throw EngineFault(kInvalidArgument);
}

} // namespace

GreenAmptEquation::GreenAmptEquation(EquationId id, const EquationParams& p) : id_(id), p_(p) {
    switch (id) {
    case EquationId::FindTs:
    case EquationId::FindTsVarMC:
    case EquationId::FindTAtSs2: {
        // P and H; the slope is left to each evaluation where it is not a number, so that the
        // fault comes where it always came.
        const double P = p[1], H = p[2];
        slopeDefined_ = H != 0.0 && std::isfinite(P / H);
        slope_ = slopeDefined_ ? P / H : 0.0;
        area_ = kPi / 2 * (H * H);
        if (id == EquationId::FindTs)
            fixedEnd_ = p[3] * p[4] * p[5];
        else if (id == EquationId::FindTsVarMC)
            soil_ = {p[3], p[4], p[5], p[6]};
        break;
    }
    case EquationId::FindFAtTf:
    case EquationId::FindFAtTfVarMC:
    case EquationId::FindFGivenT:
    case EquationId::FindFGivenTVarMC: {
        // FindF@Tf: tp, Fp, tf, ...; FindFgivenT: t, t0, F0, ...: the fixed end and the two
        // times in another order, then Ks, Hw, dtheta0 (and omega).
        const bool atEnd = id == EquationId::FindFAtTf || id == EquationId::FindFAtTfVarMC;
        const double t = atEnd ? p[3] : p[1], t0 = atEnd ? p[1] : p[2], F0 = p[2 + !atEnd];
        const bool varying = id == EquationId::FindFAtTfVarMC || id == EquationId::FindFGivenTVarMC;
        soil_ = {p[4], p[5], p[6], varying ? p[7] : 0.0};
        fixedEnd_ = varying ? VarPondedTime(F0, soil_.Hw, soil_.dtheta0, soil_.omega)
                            : ConstPondedTime(F0, soil_.Hw, soil_.dtheta0);
        shift_ = soil_.Ks * (t - t0);
        break;
    }
    case EquationId::Unknown:
        break;
    }
}

double GreenAmptEquation::operator()(double x) const {
    const double P = p_[1], H = p_[2];
    const auto slope = [&] { return slopeDefined_ ? slope_ : Div(P, H); };
    // D(t) under the whole ellipse. Nothing has arrived at or before the first wetting (the
    // arcsine form would divide by zero there).
    const auto applied = [&](double t) {
        return t <= 0 ? 0.0 : AppliedDepth(t, H, slope(), area_, EndOfPass::FullEllipse);
    };
    const GreenAmptSoil& s = soil_;
    switch (id_) {
    case EquationId::FindTs: {
        const double D = applied(x);
        return D * (ApplicationRate(x, H, slope()) - p_[3]) - fixedEnd_;
    }
    case EquationId::FindTsVarMC: {
        // zf(D) (a - Ks) - Ks Hw is zf (a - f(D)): the sign says whether the application outruns
        // the capacity. Once D passes F* the capacity is Ks; the weight of the difference stays
        // at z*.
        const double D = applied(x);
        const double a = ApplicationRate(x, H, slope());
        if (D > SaturatedInfiltration(s.dtheta0, s.omega))
            return SaturatedDepth(s.dtheta0, s.omega) * (a - s.Ks);
        return FrontDepth(D, s.dtheta0, s.omega) * (a - s.Ks) - s.Ks * s.Hw;
    }
    case EquationId::FindTAtSs2:
        return applied(x) - p_[3];
    case EquationId::FindFAtTf:
    case EquationId::FindFGivenT:
        return ConstPondedTime(x, s.Hw, s.dtheta0) - fixedEnd_ - shift_;
    case EquationId::FindFAtTfVarMC:
    case EquationId::FindFGivenTVarMC:
        return VarPondedTime(x, s.Hw, s.dtheta0, s.omega) - fixedEnd_ - shift_;
    case EquationId::Unknown:
        break;
    }
    return 0;
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
    const GreenAmptEquation g(EquationNamed(name), ToEquation(params));

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
                           double SS, const Notify& notify, bool infiltrationAtEnd) {
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
    const PondedCapacity fc{model, soil, tp, Fp, notify, std::nullopt};
    int status = kNotStarted;
    double te = SearchPondEnd(tp, H, Div(P, H), fc, status);
    // The application still outran the capacity at the last step inside the pass: the surface
    // stayed ponded to the end.
    if (status == kNoCrossing)
        te = 2 * H;
    out.te = te;

    const bool solvedAtEnd = fc.solved && fc.solved->first == te;
    double runoff = Applied(te, P, H) - (solvedAtEnd ? fc.solved->second : Fpot(te)) - SS;
    if (runoff <= 0)
        runoff = 0;
    out.runoff = runoff;
    out.pctRunoff = Div(100 * runoff, kPi / 2 * P * H);
    if (!infiltrationAtEnd)
        return out;

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
