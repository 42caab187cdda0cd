#pragma once
// What the results page shows for one family slot: capacity headings, per-case summaries, the
// ten-row table and the weighted averages, all as display texts. The window, the printed report
// and the command-line program all show this one page.

#include "design.h"
#include "results.h"

#include <array>
#include <optional>
#include <string>

namespace rainfold {

// Weighted-average percent runoff of one capacity case over the circle: five annuli of equal
// width weighted by area, each represented by the runoff at its middle position (1, 3, 5, 7, 9).
// L is the system length in metres. Empty when one of the five positions is empty.
// Throws EngineFault for a system length of 0.
std::optional<double> WeightedAverage(const SlotArray& runoff, double L, int capacityCase,
                                      int slot);
std::optional<double> WeightedAverage(const GreenArray& runoff, double L, int capacityCase);

struct ResultsPage {
    std::array<std::string, 3> lblGPM;   // case flows, gpm
    std::array<std::string, 3> txtHours; // hours per revolution
    std::array<std::string, 3> txtHPV;   // peak application rate at the outer end, in/hr
    std::array<std::string, 3> txtTPV;   // application time at the outer end, hr
    std::string lblIntakeFamily;         // model or family caption
    std::array<std::array<std::string, 6>, 10> grid; // msgResults rows 0..9, columns 0..5
    std::array<std::string, 3> txtWARP;              // weighted averages, "0.0"
    std::array<Cell, 4> WeightedRunoff{};            // element c: weighted average of case c
    std::string fault; // non-empty when a fault stopped the page part-way
};

// How much of the page to build: a batch row reads the summaries around the grid and never the
// grid's sixty texts.
enum class PageParts { All, WithoutGrid };

// Builds the page for family slot `slot` (1..3) from the design and the results record. With the
// Green-Ampt switch on the page shows the Green-Ampt results, element 1, whatever the slot.
ResultsPage BuildResultsPage(const DesignRecord& design, const Results& results, int slot,
                             PageParts parts = PageParts::All);

// The family slot the results page opens on: the chosen family in the middle, except at the ends
// of the family list ("0.1" opens on slot 1, "3.0" on slot 3).
int InitialSlot(int listIndex);

// Name of the family in a slot for the chosen list entry: "1.0", ..., or "Customized Values" for
// the typed K and N; empty where no family exists.
std::string SlotFamilyName(int listIndex, int slot);

} // namespace rainfold
