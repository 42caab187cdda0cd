#pragma once
// One design of a batch run: its computation and its row of output, as CSV or as a JSON line.

#include "batch_inputs.h"

#include <array>
#include <optional>
#include <string>

namespace rainfold::cli {

// A quantity for the three capacity cases (capacity less 100 gpm, as entered, plus 100 gpm):
// the number, and its text as the results page shows it. Empty where not computed.
struct CaseValues {
    std::array<std::optional<double>, 3> value;
    std::array<std::string, 3> text;
};

enum BatchQuantity {
    kCapacityGpm,
    kHoursPerRevolution,
    kPeakRateInHr,      // at the outer end
    kApplicationTimeHr, // at the outer end
    kWeightedRunoffPct,
    kMaxRunoffPct,  // largest of the ten positions
    kFirstRunoffFt, // innermost position with runoff above 0
    kBatchQuantities,
};

struct BatchRow {
    std::string name;
    std::string status; // "ok", "check", "fault" or "file"
    std::string message;
    std::string family; // caption of the slot shown
    std::array<CaseValues, kBatchQuantities> cases;
    bool ok() const { return status == "ok"; }
};

// Opens or takes the design, checks it (an excessive value is accepted and noted in the
// message), computes it and reads the slot the results page opens on.
BatchRow EvaluateBatchItem(const BatchItem& item, bool greenAmpt);

std::string BatchCsvHeader();
std::string BatchCsvLine(const BatchRow& row);
std::string BatchJsonLine(const BatchRow& row);

} // namespace rainfold::cli
