#pragma once
// The one-page printed report and the one-page printed plot. Each is one routine that draws on
// whatever surface it is given: printer, PDF file, preview window or a recording.

#include "drawing_surface.h"
#include "print_inputs.h"

#include <string>

namespace rainfold {

void PrintReport(DrawingSurface& surface, const PrintInputs& inputs);
void PrintPlot(DrawingSurface& surface, const PrintInputs& inputs);

// The capacity case that the results-table column in txtCol stands for: 3 -> 1, 4 -> 2, 5 -> 3,
// anything else 0.
int ShownCapacityCase(const std::string& txtCol);

// The "System Capacity" value: the shown case's flow, taken back from litres per second to gpm.
std::string CapacityText(const DesignRecord& design, const std::string& txtCol);

} // namespace rainfold
