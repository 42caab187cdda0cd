#include "calc.h"

#include "fault.h"
#include "green_ampt.h"
#include "intake.h"
#include "pattern.h"
#include "storage.h"

#include <stdexcept>

namespace rainfold {

namespace {

// Everything the per-position routine needs besides its indices.
struct PositionInputs {
    int family = 0;
    double r = 0;  // radius of the position, m
    double Qk = 0; // flow of the capacity case, L/s
    double R = 0;  // wetted radius, m
    double L = 0;  // system length, m
    double Tk = 0; // hours per revolution of the case
};

// Onset of ponding: the first search, refined into the step that holds the crossing until the
// rates agree. Leaves the final status, the ponding time and a and D there.
int SearchPondStart(double H, double K, double N, double S, double P, double& tp, double& ap,
                    double& Dp) {
    double dt = 2 * H / kNSteps;
    double t0 = 0;
    int status = kNotStarted;
    int i = 0;
    FindPondStart(dt, t0, H, K, N, S, P, status, i, Dp, ap, tp);
    for (int round = 1; status == kCrossingInStep || status == kExactlyEqual; ++round) {
        if (round > kMaxRefinements)
            ThrowSearchDidNotSettle();
        t0 = t0 + (i - 1) * dt;
        dt = dt / kNSteps;
        FindPondStart(dt, t0, H, K, N, S, P, status, i, Dp, ap, tp);
    }
    return status;
}

void CalcPosition(int capacityCase, int position, int slot, const PositionInputs& in,
                  const DesignRecord& design, Results& res, const Notify& notify) {
    double K = kIntakeK.at(static_cast<size_t>(in.family));
    double N = kIntakeN.at(static_cast<size_t>(in.family));
    const double userK = Read(res.UserK);
    const double userN = Read(res.UserN);
    if (slot == 2 && userK != 0 && userN != 0) {
        K = userK;
        N = userN;
    }

    // The elliptical pattern at this radius.
    const double peakRate = Div(4584 * in.Qk * in.r, in.L * in.L * in.R);
    const double speed = Div(2 * kPi * in.r, in.Tk);
    const double H = Div(in.R, speed);
    const double S = kPi / 2 * (H * H);
    const double P = Div(peakRate, H);
    res.PeakRate.at(capacityCase, position, slot) = peakRate;
    res.HalfTime.at(capacityCase, position, slot) = H;

    double tp = 0, ap = 0, Dp = 0;
    const int status = SearchPondStart(H, K, N, S, P, tp, ap, Dp);
    res.PondFlag.at(capacityCase, position, slot) = status;

    double runoff = 0;
    if (status != kNoCrossing) {
        res.PondStart.at(capacityCase, position, slot) = tp;
        // After ponding the soil takes water at capacity along the same power law, shifted in
        // time so that it matches the application rate at the ponding time.
        const double tshift = tp - Pow(Div(ap, K), Div(1, N));
        const auto capacity = [&](double t) { return K * Pow(t - tshift, N); };
        int endStatus = kNotStarted;
        const double te = SearchPondEnd(tp, H, P, capacity, endStatus);
        res.PondEnd.at(capacityCase, position, slot) = te;

        const auto infiltrated = [&](double t) { return Div(K * Pow(t - tshift, N + 1), N + 1); };
        const double applied = AppliedDepth(te, H, P, S, EndOfPass::FullEllipse) - Dp;
        runoff = applied - (infiltrated(te) - infiltrated(tp)) -
                 Read(res.SurfStore.at(static_cast<size_t>(position)));
        if (runoff <= 0)
            runoff = 0;
    } else {
        res.PondStart.at(capacityCase, position, slot) = 0.0;
        res.PondEnd.at(capacityCase, position, slot) = 0.0;
    }

    const double appliedDepth = kPi / 2 * peakRate * H;
    res.PctRunoff.at(capacityCase, position, slot) = Checked(Div(100 * runoff, appliedDepth));

    if (slot == 2 && design.greenAmpt)
        GreenAmptPosition(capacityCase, position, res, notify);
}

// A field's number; one beyond the range of a double overflows as it is read.
double Number(const std::string& text) {
    return Checked(Val(text));
}

// A typed storage near the largest double overflows on the way to millimetres: that is a fault,
// not a storage of infinity.
void FillSurfaceStorage(const DesignRecord& design, Results& res) {
    for (size_t i = 1; i <= 10; ++i) {
        const SegmentRow& row = design.segments[i - 1];
        switch (design.surfaceOption) {
        case kConstantSlopeResidue:
            res.SurfStore[i] = 25.4 * (SlopeStorage(Number(design.txtSurfStore)) +
                                       ResidueStorage(Number(design.txtResidue)));
            break;
        case kVariableSlopeResidue:
            res.SurfStore[i] =
                25.4 * (SlopeStorage(Number(row.col1)) + ResidueStorage(Number(row.col2)));
            break;
        case kUserConstant:
            res.SurfStore[i] =
                Checked((Number(design.txtSurfStore) + Number(design.txtResidue)) * 25.4);
            break;
        case kUserVariable:
            // The residue column is read but only the surface column counts: the residue term
            // of the sum belongs to the slope/residue path, which this option never takes.
            res.SurfStore[i] = Checked(25.4 * (Number(row.col1) + 0.0));
            break;
        default:
            break; // no option ticked: storage keeps what it held
        }
    }
}

void CheckCaseFlows(double Q0) {
    for (int k = 1; k <= 3; ++k)
        if (!(6.309 * k + Q0 > 0))
            throw EngineFault("The system capacity less 100 gpm must be above 0 gpm.");
}

} // namespace

EngineInputs ReadEngineInputs(const DesignRecord& design) {
    EngineInputs in;
    in.L = Val(design.txtSYL) * 0.3048;
    in.Q0 = (Val(design.txtGPM) - 200) * 0.06309;
    in.d = Val(design.txtAPPL) * 25.4;
    double R = Val(design.txtWetDiam) / 2;
    if (2 * R < 1.1)
        R = 0.55;
    in.R = R * 0.3048;
    in.F = design.intakeFamilyIndex + 1;
    return in;
}

int SlotFamily(int F, int slot) {
    if (F == 1)
        return slot;
    if (F == 7)
        return 4 + slot;
    return F - 2 + slot;
}

CalcOutcome Calc_Results(const DesignRecord& design, Results& res, const Notify& notify) {
    try {
        const EngineInputs in = ReadEngineInputs(design);
        for (double x : {in.L, in.Q0, in.d, in.R})
            Checked(x);
        Number(design.txtWetDiam); // the floor on the radius would hide an overflow
        res.GAKs = Number(design.txtKS);
        res.GAHw = Number(design.txtHW);
        res.GADeltaTheta = Checked(Number(design.txtThetaS) - Number(design.txtThetaI));
        res.GAOmega = Number(design.txtOmega);

        FillSurfaceStorage(design, res);

        if (design.intakeFamilyIndex == -1)
            return {CalcStatus::NoFamily, kSelectFamilyMessage};
        if (design.intakeFamilyIndex < -1 || design.intakeFamilyIndex > kCustomizedValuesIndex)
            throw std::out_of_range("Subscript out of range.");
        const bool customized = design.intakeFamilyIndex == kCustomizedValuesIndex;
        res.UserK = customized ? Number(design.txtUk) : 0.0;
        res.UserN = customized ? Number(design.txtUN) : 0.0;
        // With customised values the middle slot would otherwise fall back on an empty family.
        if (customized && (Read(res.UserK) == 0 || Read(res.UserN) == 0))
            throw EngineFault("K and N must not be 0 for Customized Values.");
        CheckCaseFlows(in.Q0);

        const double A = kPi * in.L * in.L / 10000;
        Div(2.7777 * A * in.d, in.Q0 + 12.618); // hours at the entered capacity; not kept

        // "Customized Values" has no family beyond the seventh to put in the third slot.
        const int slots = customized ? 2 : 3;
        for (int k = 1; k <= 3; ++k) {
            PositionInputs pos;
            pos.Qk = 6.309 * k + in.Q0;
            pos.Tk = Div(2.7777 * A * in.d, pos.Qk);
            res.HoursPerRev[static_cast<size_t>(k)] = pos.Tk;
            pos.R = in.R;
            pos.L = in.L;
            for (int j = 1; j <= 10; ++j) {
                for (int m = 1; m <= slots; ++m) {
                    pos.Qk = 6.309 * k + in.Q0;
                    pos.r = 0.1 * j * in.L;
                    pos.family = SlotFamily(in.F, m);
                    CalcPosition(k, j, m, pos, design, res, notify);
                }
            }
            res.CaseSpare1[static_cast<size_t>(k)].reset();
            res.CaseSpare2[static_cast<size_t>(k)].reset();
        }
        return {};
    } catch (const EngineFault& e) {
        return {CalcStatus::Fault, e.what()};
    } catch (const std::out_of_range&) {
        return {CalcStatus::Fault, "Subscript out of range."};
    }
}

} // namespace rainfold
