#pragma once
// The checks a design must pass before it is computed, in the order the window asks them.

#include "design.h"

#include <string>
#include <vector>

namespace rainfold {

enum class CheckKind {
    Error,   // the design cannot be computed; the field must be edited
    Warning, // an excessive value the engineer may accept (OK) or go back to edit (Cancel)
};

struct CheckFailure {
    std::string field; // name of the field that failed, e.g. "txtSYL", "cboIntakeFamily"
    CheckKind kind = CheckKind::Error;
    std::string message; // the whole text of the box

    bool operator==(const CheckFailure& o) const {
        return field == o.field && kind == o.kind && message == o.message;
    }
};

// Every failing check in order, as if each warning were accepted; the list ends at the first
// error, because an error stops the checks. The Green-Ampt inputs are checked after the intake
// family when the design's Green-Ampt switch is on.
std::vector<CheckFailure> CheckDesign(const DesignRecord& design);

} // namespace rainfold
