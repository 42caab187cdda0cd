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

} // namespace rainfold
