#pragma once
// Every result array of one computation as one JSON object, the layout the README documents.

#include "calc.h"
#include "design.h"
#include "json_text.h"
#include "results.h"

namespace rainfold::cli {

Json ResultsJson(const DesignRecord& design, const Results& results, const CalcOutcome& calc);

} // namespace rainfold::cli
