#pragma once
// The results page's number the explorer must reproduce to the last bit.

#include "calc.h"
#include "results_page.h"

#include <cstring>
#include <optional>

namespace rainfold {

// The middle weighted average of the results page after a full computation; empty on a fault.
inline std::optional<double> PageAverage(const DesignRecord& d) {
    Results r;
    if (!Calc_Results(d, r).ok())
        return std::nullopt;
    const ResultsPage page = BuildResultsPage(d, r, InitialSlot(d.intakeFamilyIndex));
    return page.fault.empty() ? page.WeightedRunoff[2] : std::nullopt;
}

// The runoff the grid shows in its last row for the entered capacity; empty on a fault.
inline std::optional<double> PageOuterEnd(const DesignRecord& d) {
    Results r;
    if (!Calc_Results(d, r).ok())
        return std::nullopt;
    return d.greenAmpt ? r.GAVarPctRunoff.get(2, 10, 1)
                       : r.PctRunoff.get(2, 10, InitialSlot(d.intakeFamilyIndex));
}

inline bool SameBits(double a, double b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

} // namespace rainfold
