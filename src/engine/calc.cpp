#include "calc.h"

#include "fault.h"
#include "format.h"
#include "green_ampt.h"
#include "intake.h"
#include "pattern.h"
#include "storage.h"

#include <stdexcept>

namespace rainfold {

namespace {

// Onset of ponding: the first search, refined into the step that holds the crossing until the
// rates agree. Leaves the final status, the ponding time and a and D there.
int SearchPondStart(double H, double K, double N, double S, double P, double& tp, double& ap,
                    double& Dp, PatternSteps* steps) {
    double dt = 2 * H / kNSteps;
    double t0 = 0;
    int status = kNotStarted;
    int i = 0;
    const auto known = [&] { return steps ? &steps->Find(H, P, S, t0, dt) : nullptr; };
    FindPondStart(dt, t0, H, K, N, S, P, status, i, Dp, ap, tp, known());
    for (int round = 1; status == kCrossingInStep || status == kExactlyEqual; ++round) {
        if (round > kMaxRefinements)
            ThrowSearchDidNotSettle();
        t0 = t0 + (i - 1) * dt;
        dt = dt / kNSteps;
        FindPondStart(dt, t0, H, K, N, S, P, status, i, Dp, ap, tp, known());
    }
    return status;
}

// Writes what one position found into the results record, as far as the computation got.
void Record(const IntakePosition& found, int capacityCase, int position, int slot, Results& res) {
    if (found.reached >= IntakePosition::kPattern) {
        res.PeakRate.at(capacityCase, position, slot) = found.peakRate;
        res.HalfTime.at(capacityCase, position, slot) = found.halfTime;
    }
    if (found.reached >= IntakePosition::kOnset) {
        res.PondFlag.at(capacityCase, position, slot) = found.pondFlag;
        res.PondStart.at(capacityCase, position, slot) = found.pondStart;
    }
    if (found.reached >= IntakePosition::kEnd)
        res.PondEnd.at(capacityCase, position, slot) = found.pondEnd;
    if (found.reached >= IntakePosition::kRunoff)
        res.PctRunoff.at(capacityCase, position, slot) = found.pctRunoff;
}

void CalcPosition(int capacityCase, int position, int slot, const PositionInputs& in,
                  const DesignRecord& design, Results& res, const Notify& notify,
                  PatternSteps& steps) {
    double K = kIntakeK.at(static_cast<size_t>(in.family));
    double N = kIntakeN.at(static_cast<size_t>(in.family));
    const double userK = Read(res.UserK);
    const double userN = Read(res.UserN);
    if (slot == 2 && userK != 0 && userN != 0) {
        K = userK;
        N = userN;
    }

    IntakePosition found;
    try {
        ComputeIntakePosition(in, K, N, Read(res.SurfStore.at(static_cast<size_t>(position))),
                              found, &steps);
    } catch (...) {
        Record(found, capacityCase, position, slot, res);
        throw;
    }
    Record(found, capacityCase, position, slot, res);

    if (slot == 2 && design.greenAmpt)
        GreenAmptPosition(capacityCase, position, res, notify);
}

} // namespace

EngineInputs ReadEngineInputs(const DesignRecord& design) {
    EngineInputs in;
    in.L = Val(design.txtSYL) * 0.3048;
    in.Q0 = (Val(design.txtGPM) - 200) * 0.06309;
    in.d = DepthMm(Val(design.txtAPPL));
    in.R = WettedRadius(Val(design.txtWetDiam));
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

double FieldNumber(const std::string& text) {
    return Checked(Val(text));
}

void ReadGreenAmptFields(const DesignRecord& design, Results& res) {
    res.GAKs = FieldNumber(design.txtKS);
    res.GAHw = FieldNumber(design.txtHW);
    res.GADeltaTheta = Checked(FieldNumber(design.txtThetaS) - FieldNumber(design.txtThetaI));
    res.GAOmega = FieldNumber(design.txtOmega);
}

// A typed storage near the largest double overflows on the way to millimetres: that is a fault,
// not a storage of infinity.
void FillSurfaceStorage(const DesignRecord& design, Results& res) {
    for (size_t i = 1; i <= 10; ++i) {
        const SegmentRow& row = design.segments[i - 1];
        switch (design.surfaceOption) {
        case kConstantSlopeResidue:
            res.SurfStore[i] = 25.4 * (SlopeStorage(FieldNumber(design.txtSurfStore)) +
                                       ResidueStorage(FieldNumber(design.txtResidue)));
            break;
        case kVariableSlopeResidue:
            res.SurfStore[i] = 25.4 * (SlopeStorage(FieldNumber(row.col1)) +
                                       ResidueStorage(FieldNumber(row.col2)));
            break;
        case kUserConstant:
            res.SurfStore[i] =
                Checked((FieldNumber(design.txtSurfStore) + FieldNumber(design.txtResidue)) * 25.4);
            break;
        case kUserVariable:
            // The residue column is read but only the surface column counts: the residue term
            // of the sum belongs to the slope/residue path, which this option never takes.
            res.SurfStore[i] = Checked(25.4 * (FieldNumber(row.col1) + 0.0));
            break;
        default:
            break; // no option ticked: storage keeps what it held
        }
    }
}

// Judged on the whole gallons the results page shows: a flow of a fraction of a gallon would be
// headed "0 (gpm)" over a revolution of billions of hours.
void CheckCaseFlows(double Q0) {
    for (int k = 1; k <= 3; ++k)
        if (!(Val(FormatFixed((6.309 * k + Q0) / 0.06309, 0)) > 0))
            throw EngineFault("The system capacity less 100 gpm must be above 0 gpm.");
}

// The typed family's rate K t^N must fall from an unlimited first instant: a K of 0 or less takes
// nothing in (or gives water back), and an N of -1 or less has no finite cumulative intake.
void CheckCustomizedValues(double K, double N) {
    if (K == 0 || N == 0)
        throw EngineFault("K and N must not be 0 for Customized Values.");
    if (!(K > 0) || !(N > -1))
        throw EngineFault("K must be above 0 and N above -1 for Customized Values.");
}

double WettedRadius(double wettedDiameterFt) {
    double R = wettedDiameterFt / 2;
    if (2 * R < 1.1)
        R = 0.55;
    return R * 0.3048;
}

double DepthMm(double depthIn) {
    return depthIn * 25.4;
}

PositionInputs PositionOf(const EngineInputs& in, int k, int j) {
    const double A = kPi * in.L * in.L / 10000;
    PositionInputs pos;
    pos.Qk = 6.309 * k + in.Q0;
    pos.Tk = Div(2.7777 * A * in.d, pos.Qk);
    pos.R = in.R;
    pos.L = in.L;
    pos.r = 0.1 * j * in.L;
    return pos;
}

void ComputeIntakePosition(const PositionInputs& in, double K, double N, double SS,
                           IntakePosition& out, PatternSteps* steps) {
    // The elliptical pattern at this radius.
    const double peakRate = Div(4584 * in.Qk * in.r, in.L * in.L * in.R);
    const double speed = Div(2 * kPi * in.r, in.Tk);
    const double H = Div(in.R, speed);
    const double S = kPi / 2 * (H * H);
    const double P = Div(peakRate, H);
    out.peakRate = peakRate;
    out.halfTime = H;
    out.reached = IntakePosition::kPattern;

    double tp = 0, ap = 0, Dp = 0;
    const int status = SearchPondStart(H, K, N, S, P, tp, ap, Dp, steps);
    out.pondFlag = status;

    double runoff = 0;
    if (status != kNoCrossing) {
        out.pondStart = tp;
        out.reached = IntakePosition::kOnset;
        // After ponding the soil takes water at capacity along the same power law, shifted in
        // time so that it matches the application rate at the ponding time.
        const double tshift = tp - Pow(Div(ap, K), Div(1, N));
        const auto capacity = [&](double t) { return K * Pow(t - tshift, N); };
        int endStatus = kNotStarted;
        const double te = SearchPondEnd(tp, H, P, capacity, endStatus);
        out.pondEnd = te;
        out.reached = IntakePosition::kEnd;

        const auto infiltrated = [&](double t) { return Div(K * Pow(t - tshift, N + 1), N + 1); };
        const double applied = AppliedDepth(te, H, P, S, EndOfPass::FullEllipse) - Dp;
        runoff = applied - (infiltrated(te) - infiltrated(tp)) - SS;
        if (runoff <= 0)
            runoff = 0;
    } else {
        out.pondStart = 0.0;
        out.pondEnd = 0.0;
        out.reached = IntakePosition::kEnd;
    }

    const double appliedDepth = kPi / 2 * peakRate * H;
    out.pctRunoff = Checked(Div(100 * runoff, appliedDepth));
    out.reached = IntakePosition::kRunoff;
}

CalcOutcome Calc_Results(const DesignRecord& design, Results& res, const Notify& notify) {
    try {
        const EngineInputs in = ReadEngineInputs(design);
        for (double x : {in.L, in.Q0, in.d, in.R})
            Checked(x);
        FieldNumber(design.txtWetDiam); // the floor on the radius would hide an overflow
        ReadGreenAmptFields(design, res);

        FillSurfaceStorage(design, res);

        if (design.intakeFamilyIndex == -1)
            return {CalcStatus::NoFamily, kSelectFamilyMessage};
        if (design.intakeFamilyIndex < -1 || design.intakeFamilyIndex > kCustomizedValuesIndex)
            throw std::out_of_range("Subscript out of range.");
        const bool customized = design.intakeFamilyIndex == kCustomizedValuesIndex;
        res.UserK = customized ? FieldNumber(design.txtUk) : 0.0;
        res.UserN = customized ? FieldNumber(design.txtUN) : 0.0;
        // With customised values the middle slot would otherwise fall back on an empty family.
        if (customized)
            CheckCustomizedValues(Read(res.UserK), Read(res.UserN));
        CheckCaseFlows(in.Q0);

        const double A = kPi * in.L * in.L / 10000;
        Div(2.7777 * A * in.d, in.Q0 + 12.618); // hours at the entered capacity; not kept

        // "Customized Values" has no family beyond the seventh to put in the third slot.
        const int slots = customized ? 2 : 3;
        PatternSteps steps;
        for (int k = 1; k <= 3; ++k) {
            res.HoursPerRev[static_cast<size_t>(k)] = PositionOf(in, k, 1).Tk;
            for (int j = 1; j <= 10; ++j) {
                for (int m = 1; m <= slots; ++m) {
                    PositionInputs pos = PositionOf(in, k, j);
                    pos.family = SlotFamily(in.F, m);
                    CalcPosition(k, j, m, pos, design, res, notify, steps);
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
