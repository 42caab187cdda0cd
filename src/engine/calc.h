#pragma once
// The runoff computation: from a design to the results record.

#include "design.h"
#include "results.h"

#include <functional>
#include <string>

namespace rainfold {

// Receives the notices the computation raises while it carries on (the root solver's
// iteration-limit message). The window shows them in a box, the command line prints them.
using Notify = std::function<void(const std::string& message)>;

enum class CalcStatus {
    Ok,       // every reachable result written
    NoFamily, // no intake family selected; nothing computed
    Fault,    // an arithmetic fault stopped the computation; results written so far stay
};

struct CalcOutcome {
    CalcStatus status = CalcStatus::Ok;
    std::string message; // empty when Ok
    bool ok() const { return status == CalcStatus::Ok; }
};

inline constexpr const char* kSelectFamilyMessage = "Please select an Intake Family";

// Runs the whole design: three capacity cases, ten positions, three family slots, and the
// Green-Ampt model for the middle slot when the design's Green-Ampt switch is on.
CalcOutcome Calc_Results(const DesignRecord& design, Results& results, const Notify& notify = {});

// The design in engine units, read the way the computation reads it.
struct EngineInputs {
    double L = 0;  // system length, m
    double Q0 = 0; // capacity less 200 gpm, L/s
    double d = 0;  // gross application depth, mm
    double R = 0;  // wetted radius, m (never below 0.55 ft)
    int F = 0;     // family number, list index + 1
};
EngineInputs ReadEngineInputs(const DesignRecord& design);

// Family number used by a slot for the chosen family F (1..8).
int SlotFamily(int F, int slot);

// The wetted radius (m) of a wetted diameter in feet, never below 0.55 ft, and a depth in inches
// in millimetres: the conversions the computation makes when it reads the design.
double WettedRadius(double wettedDiameterFt);
double DepthMm(double depthIn);

// Where and how one position is watered: everything the per-position routine needs besides its
// indices.
struct PositionInputs {
    int family = 0;
    double r = 0;  // radius of the position, m
    double Qk = 0; // flow of the capacity case, L/s
    double R = 0;  // wetted radius, m
    double L = 0;  // system length, m
    double Tk = 0; // hours per revolution of the case
};

// Capacity case k (1..3) at position j (1..10), with the family left at 0.
PositionInputs PositionOf(const EngineInputs& in, int k, int j);

// The surface storage of the ten segments under the design's ticked option, as the computation
// fills it (mm); nothing is written when no option is ticked.
void FillSurfaceStorage(const DesignRecord& design, Results& results);

// A field's number as the computation reads it: one beyond the range of a double is the fault
// "Overflow." (EngineFault), not an infinity carried into the results.
double FieldNumber(const std::string& text);

// The Green-Ampt fields into the results record, as the computation reads them.
void ReadGreenAmptFields(const DesignRecord& design, Results& results);

// Refuses a design whose capacity less 100 gpm is not above 0 gpm (EngineFault).
void CheckCaseFlows(double Q0);

// Refuses typed K and N that give no usable intake curve (EngineFault).
void CheckCustomizedValues(double K, double N);

// What the intake-family computation finds at one position, stage by stage: a fault part-way
// leaves `reached` at the last stage completed, so that what was found before it can be kept.
struct IntakePosition {
    enum Stage { kNone, kPattern, kOnset, kEnd, kRunoff };
    Stage reached = kNone;
    double peakRate = 0;  // mm/h
    double halfTime = 0;  // h
    int pondFlag = 0;     // final status of the onset search
    double pondStart = 0; // h
    double pondEnd = 0;   // h
    double pctRunoff = 0;
};

class PatternSteps;

// The elliptical pattern, the two ponding searches and the runoff of one position for a soil of
// intake K t^N and a surface storage SS (mm). Throws EngineFault. `steps`, when given, carries
// what the onset search worked out of the pattern from one family slot of the position to the
// next.
void ComputeIntakePosition(const PositionInputs& in, double K, double N, double SS,
                           IntakePosition& out, PatternSteps* steps = nullptr);

} // namespace rainfold
