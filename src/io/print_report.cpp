#include "format.h"
#include "printout.h"
#include "printout_layout.h"

#include <array>
#include <string>
#include <utility>
#include <vector>

namespace rainfold {

namespace printout {

void SetFont(DrawingSurface& s, double size, bool bold, bool underline, bool italic) {
    s.SetFontSize(size);
    s.SetFontBold(bold);
    s.SetFontUnderline(underline);
    s.SetFontItalic(italic);
}

void WriteCentred(DrawingSurface& s, double centre, const std::string& text, LineEnd end) {
    s.SetCurrentX(centre - s.TextWidth(text) / 2);
    s.Write(text, end);
}

void WriteAt(DrawingSurface& s, double x, const std::string& text, LineEnd end) {
    s.SetCurrentX(x);
    s.Write(text, end);
}

std::string ModelLine(const PrintInputs& in) {
    if (in.model == InfiltrationModel::IntakeFamily)
        return "Modified Intake Infiltration - " + in.page.lblIntakeFamily;
    return "Green-Ampt Infiltration";
}

void WriteHeader(DrawingSurface& s, const PrintInputs& in) {
    const DesignRecord& d = in.design;
    const double width = s.PageWidth();

    s.SetFontName(kFontName);
    SetFont(s, 8, false, false, false);
    s.SetCurrentX(kLeftMargin);
    s.SetCurrentY(kFirstLine);
    s.Write("Version " + in.version, LineEnd::Continued);
    s.SetFontSize(20);
    WriteCentred(s, width / 2, "Rainfold", LineEnd::Continued);
    s.SetFontSize(8);
    WriteAt(s, width - s.TextWidth(in.printDate) - kLeftMargin, in.printDate, LineEnd::Finished);

    SetFont(s, 14, true, true, false);
    s.SetCurrentX(kLeftMargin);
    s.SetCurrentY(kGeneralHeading);
    s.Write("General Information", LineEnd::Finished);

    SetFont(s, 12, false, false, false);
    WriteAt(s, kLeftMargin, "Producer: " + d.txtDescription, LineEnd::Continued);
    WriteAt(s, width / 2, "Designed by:  " + d.txtDesigner, LineEnd::Continued);
    WriteAt(s, width * kDateColumn, "Date:  " + d.txtDate, LineEnd::Finished);
    WriteAt(s, kLeftMargin, "Location: " + d.txtLegalID, LineEnd::Continued);
    WriteAt(s, width / 2, "Checked by: ____________________   Date: _________", LineEnd::Finished);
    WriteAt(s, kLeftMargin, "County: " + d.txtCounty, LineEnd::Continued);
    s.Write("      State: " + d.txtState, LineEnd::Finished);

    SetFont(s, 14, true, true, false);
    s.Write("", LineEnd::Finished);
    WriteAt(s, kLeftMargin, "System Information", LineEnd::Continued);
    WriteAt(s, width / 2, "Soils Information", LineEnd::Finished);

    SetFont(s, 12, false, false, false);
}

double DrawRule(DrawingSurface& s) {
    const double y = s.CurrentY() + kRuleGap;
    s.SetCurrentY(y);
    s.Line(kLeftMargin, y, s.PageWidth() - kLeftMargin, y);
    return y;
}

} // namespace printout

using namespace printout;

int ShownCapacityCase(const std::string& txtCol) {
    const double column = Val(txtCol);
    if (column == 3)
        return 1;
    if (column == 4)
        return 2;
    if (column == 5)
        return 3;
    return 0;
}

std::string CapacityText(const DesignRecord& design, const std::string& txtCol) {
    // Only the customary unit system (gpm) is ever selected.
    constexpr double kFlowUnit = 0.06309;
    const int capacityCase = ShownCapacityCase(txtCol);
    return PlainNumber(((Val(design.txtGPM) - 200) * 0.06309 + 6.309 * capacityCase) / kFlowUnit);
}

namespace {

constexpr double kTableCentreOffset = 2500;
constexpr double kColumnPitch = 1000;
constexpr double kDataOffset = 150;
constexpr double kVaryingShift = 1000;
constexpr double kSummaryLabelOffset = 500;

bool VariesAlongPivot(int option) {
    return option == kVariableSlopeResidue || option == kUserVariable;
}

// The right items of the second and third system lines. The options are tried in the order
// 0, 1, 2; anything else takes the user-defined variable texts.
std::string StorageLine(const DesignRecord& d) {
    switch (d.surfaceOption) {
    case kConstantSlopeResidue:
        return "Slope = " + d.txtSurfStore + " %";
    case kVariableSlopeResidue:
        return "Slope (%) varies ";
    case kUserConstant:
        return "Surface storage = " + d.txtSurfStore + " in";
    default:
        return "Surface storage varies";
    }
}

std::string ResidueLine(const DesignRecord& d) {
    switch (d.surfaceOption) {
    case kConstantSlopeResidue:
        return "Residue = " + d.txtResidue + " %";
    case kVariableSlopeResidue:
        return "Percent residue varies ";
    case kUserConstant:
        return "Residue storage = " + d.txtResidue + " in";
    default:
        return "Residue storage varies";
    }
}

// One line of cells, each centred on its own x; the last one ends the line.
struct TableCell {
    double centre;
    std::string text;
};

void WriteRow(DrawingSurface& s, const std::vector<TableCell>& cells) {
    for (size_t i = 0; i < cells.size(); ++i)
        WriteCentred(s, cells[i].centre, cells[i].text,
                     i + 1 == cells.size() ? LineEnd::Finished : LineEnd::Continued);
}

} // namespace

void PrintReport(DrawingSurface& s, const PrintInputs& in) {
    const DesignRecord& d = in.design;
    const ResultsPage& page = in.page;
    const double width = s.PageWidth();

    WriteHeader(s, in);
    const std::array<std::string, 4> left = {
        "System Length = " + d.txtSYL + " ft",
        "System Capacity = " + CapacityText(d, in.txtCol) + " gpm",
        "Application Depth = " + d.txtAPPL + " in",
        "Sprinkler Wetted Diameter = " + d.txtWetDiam + " ft",
    };
    const std::array<std::string, 4> right = {ModelLine(in), StorageLine(d), ResidueLine(d), ""};
    for (size_t i = 0; i < left.size(); ++i) {
        WriteAt(s, kLeftMargin, left[i], LineEnd::Continued);
        WriteAt(s, width / 2, right[i], LineEnd::Finished);
    }

    DrawRule(s);

    SetFont(s, 14, true, false, true);
    WriteCentred(s, width / 2, kWeightedAverage + page.txtWARP[1] + "%", LineEnd::Finished);
    s.Write("", LineEnd::Finished);

    // The results table. Under the varying options the two segment values take the place of
    // the wetted diameter (printed above already, and the same on every row) and of one extra
    // column, which pushes the storage and runoff columns 1000 twips to the right.
    SetFont(s, 12, false, false, false);
    const bool varies = VariesAlongPivot(d.surfaceOption);
    const double extra = varies ? kVaryingShift : 0;
    const double c0 = width / 2 - kTableCentreOffset;
    const auto centre = [&](double base, int k) {
        return base + kColumnPitch * k + (k >= 2 ? extra : 0);
    };
    const std::array<std::array<std::string, 3>, 3> segmentHeadings =
        d.surfaceOption == kVariableSlopeResidue
            ? std::array<std::array<std::string, 3>, 3>{{{"", "", ""},
                                                         {"", "Slope", "Residue"},
                                                         {"", "(%)", "(%)"}}}
            : std::array<std::array<std::string, 3>, 3>{
                  {{"", "Surface", "Residue"}, {"", "Storage", "Storage"}, {"", "(in)", "(in)"}}};
    const std::array<std::array<std::string, 3>, 3> fixedHeadings = {{
        {"System", "Wetted", "Surface"},
        {"Length", "Diameter", "Storage"},
        {"(feet)", "(feet)", "(in)"},
    }};
    for (size_t line = 0; line < 3; ++line) {
        std::vector<TableCell> cells;
        cells.push_back({centre(c0, 0), fixedHeadings[line][0]});
        if (varies) {
            cells.push_back({c0 + kColumnPitch, segmentHeadings[line][1]});
            cells.push_back({c0 + extra + kColumnPitch, segmentHeadings[line][2]});
        } else {
            cells.push_back({centre(c0, 1), fixedHeadings[line][1]});
        }
        cells.push_back({centre(c0, 2), fixedHeadings[line][2]});
        for (int k = 3; k <= 5; ++k) {
            if (line == 1)
                cells.push_back({centre(c0, k), page.lblGPM[static_cast<size_t>(k - 3)]});
            else if (line == 2)
                cells.push_back({centre(c0, k), "(gpm)"});
        }
        WriteRow(s, cells);
    }
    s.Write("", LineEnd::Finished);

    const double c = c0 + kDataOffset;
    for (size_t r = 0; r < 10; ++r) {
        const std::array<std::string, 6>& row = page.grid[r];
        std::vector<TableCell> cells;
        cells.push_back({centre(c, 0), row[0]});
        if (varies) {
            cells.push_back({c + kColumnPitch, d.segments[r].col1});
            cells.push_back({c + extra + kColumnPitch, d.segments[r].col2});
        } else {
            cells.push_back({centre(c, 1), row[1]});
        }
        for (int k = 2; k <= 5; ++k)
            cells.push_back({centre(c, k), row[static_cast<size_t>(k)]});
        WriteRow(s, cells);
    }

    s.Write("", LineEnd::Finished);
    s.Write("", LineEnd::Finished);
    const std::array<std::pair<const char*, const std::array<std::string, 3>*>, 4> summary = {{
        {"Weighted Average Percent", &page.txtWARP},
        {"Hours per Revolution", &page.txtHours},
        {"Peak Water Application Rate", &page.txtHPV},
        {"Water Application Time", &page.txtTPV},
    }};
    for (const auto& [label, group] : summary) {
        WriteAt(s, c + extra - kSummaryLabelOffset, label, LineEnd::Continued);
        WriteRow(s, {{centre(c, 3), (*group)[0]},
                     {centre(c, 4), (*group)[1]},
                     {centre(c, 5), (*group)[2]}});
    }
}

} // namespace rainfold
