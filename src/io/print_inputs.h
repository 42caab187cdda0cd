#pragma once
// Everything the printed report and plot read from the window, gathered in one place. The window
// and the command-line program fill it; the two drawing routines only read it.

#include "design.h"
#include "drawing_surface.h"
#include "results.h"
#include "results_page.h"

#include <array>
#include <string>

namespace rainfold {

enum class InfiltrationModel {
    IntakeFamily, // the model switch offers "Green-Ampt": the intake families are in use
    GreenAmpt,
};

struct PrintInputs {
    DesignRecord design; // every input field, the surface-storage option among them
    ResultsPage page;    // every text of the results page
    InfiltrationModel model = InfiltrationModel::IntakeFamily;

    // The results-table column of the cell the chart shows, as the window keeps it: "3", "4" or
    // "5" for capacity cases 1, 2, 3; anything else names no case.
    std::string txtCol;
    int shownRow = -1; // results-table row of that cell, 0..9; -1 before any chart

    // The chart's "Location" texts and the percent runoff of the shown cell.
    std::string txtHP;
    std::string txtTS;
    std::string txtTP;
    std::string percentRunoff;

    std::array<Cell, 11> SurfStore{}; // surface storage of positions 1..10, mm

    std::string version;   // "major.minor.revision"
    std::string printDate; // today, in the system's short date form
    Picture chart;         // the chart as the window shows it; empty before any chart
};

} // namespace rainfold
