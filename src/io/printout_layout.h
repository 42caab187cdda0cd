#pragma once
// What the report and the plot share: the page's fixed measures and the title and information
// blocks at the top of both pages.

#include "drawing_surface.h"
#include "print_inputs.h"

#include <string>

namespace rainfold::printout {

inline constexpr const char* kFontName = "Times New Roman";
inline constexpr double kLeftMargin = 720; // also the right margin of the print date
inline constexpr double kFirstLine = 720;
inline constexpr double kGeneralHeading = 1440;
inline constexpr double kDateColumn = 0.81; // of the page width
inline constexpr double kRuleGap = 500;
inline constexpr const char* kWeightedAverage = "Weighted Average Percent Runoff  =  ";

// The font of the next writes, whole.
void SetFont(DrawingSurface& s, double size, bool bold, bool underline, bool italic);

// Writes `text` centred on x = centre.
void WriteCentred(DrawingSurface& s, double centre, const std::string& text, LineEnd end);

// Writes `text` starting at x.
void WriteAt(DrawingSurface& s, double x, const std::string& text, LineEnd end);

// The version, title and date line, "General Information" and the "System Information" and
// "Soils Information" headings. Leaves the surface at 12 pt, plain, at the start of the first
// system line.
void WriteHeader(DrawingSurface& s, const PrintInputs& in);

// The right item of the first system line: which infiltration model the results come from.
std::string ModelLine(const PrintInputs& in);

// The horizontal rule across the page, 500 twips below the current y; returns the rule's y.
double DrawRule(DrawingSurface& s);

} // namespace rainfold::printout
