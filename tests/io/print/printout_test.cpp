// The printed report and plot, drawn on a recording surface and checked item by item. Every
// expected position is worked out here from the page's rules and the recording surface's measures
// (text width = characters x size x 10 twips, line height = size x 24 twips) on a page 12,240
// twips wide, so that half the page is 6,120.

#include "printout.h"
#include "recording_surface.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <string>
#include <vector>

namespace rainfold {
namespace {

constexpr double kHalf = 6120;

// Fonts as size/bold underline italic.
const std::string k8 = "8/000", k12 = "12/000", k14Heading = "14/110", k14Result = "14/101";

// An item written: its text, place, font and whether it ends the line (" |").
std::string Item(const std::string& text, double x, double y, const std::string& font,
                 bool finished) {
    char at[64];
    std::snprintf(at, sizeof at, " @ %.10g,%.10g ", x, y);
    return text + at + font + (finished ? " |" : "");
}
using Items = std::vector<std::string>;

// A line of 12-point items; `centred` items are centred on the x given. The last ends the line.
void Line(Items& e, double y, const std::vector<std::pair<std::string, double>>& cells,
          bool centred = true) {
    for (size_t i = 0; i < cells.size(); ++i) {
        const auto& [text, x] = cells[i];
        e.push_back(
            Item(text, centred ? x - text.size() * 60.0 : x, y, k12, i + 1 == cells.size()));
    }
}

PrintInputs Sample() {
    PrintInputs in;
    DesignRecord& d = in.design;
    d.txtDescription = "Example Farms", d.txtLegalID = "NE 1/4 Sec. 12", d.txtCounty = "Custer";
    d.txtState = "NE", d.txtDesigner = "A. Engineer", d.txtDate = "11/22/2026";
    d.txtSYL = "1300", d.txtGPM = "800", d.txtAPPL = "1.0", d.txtWetDiam = "40";
    d.intakeFamilyIndex = 2, d.txtSurfStore = "2", d.txtResidue = "20";
    // Each cell names its own flat index, so a cell taken from the wrong place shows.
    for (int r = 0; r < 10; ++r) {
        in.design.segments[r] = {"s" + std::to_string(r * 3 + 4), "s" + std::to_string(r * 3 + 5)};
        for (int k = 0; k < 6; ++k)
            in.page.grid[r][k] = "g" + std::to_string(r * 6 + k);
    }
    in.page.lblGPM = {"700", "800", "900"};
    in.page.lblIntakeFamily = "0.5 NRCS Intake Family";
    in.page.txtWARP = {"1.1", "2.2", "3.3"};
    in.page.txtHours = {"h0", "h1", "h2"};
    in.page.txtHPV = {"p0", "p1", "p2"};
    in.page.txtTPV = {"t0", "t1", "t2"};
    in.txtCol = "4", in.shownRow = 4;
    in.txtHP = "3.8", in.txtTS = "0.09", in.txtTP = "0.17", in.percentRunoff = "3.7";
    in.SurfStore[5] = 7.874; // mm: 0.31 in
    in.version = "1.0.0", in.printDate = "11/23/2026";
    in.chart.width = 6800, in.chart.height = 5000;
    return in;
}

// The version, title and date line, the two information blocks, the system and soils lines with
// their left items and the centred 14-point result line 500 below the rule; both pages have them.
Items Header(const PrintInputs& in, const std::string& capacity,
             const std::vector<std::string>& right, double resultY) {
    Items e = {
        Item("Version 1.0.0", 720, 720, k8, false),
        Item("Rainfold", kHalf - 800, 720, "20/000", false),
        Item("11/23/2026", 12240 - 800 - 720, 720, k8, true),
        Item("General Information", 720, 1440, k14Heading, true),
        Item("Producer: " + in.design.txtDescription, 720, 1776, k12, false),
        Item("Designed by:  A. Engineer", kHalf, 1776, k12, false),
        Item("Date:  11/22/2026", 12240 * 0.81, 1776, k12, true),
        Item("Location: NE 1/4 Sec. 12", 720, 2064, k12, false),
        Item("Checked by: ____________________   Date: _________", kHalf, 2064, k12, true),
        Item("County: Custer", 720, 2352, k12, false),
        Item("      State: NE", 720 + 14 * 120, 2352, k12, true),
        Item("", 0, 2640, k14Heading, true),
        Item("System Information", 720, 2976, k14Heading, false),
        Item("Soils Information", kHalf, 2976, k14Heading, true),
    };
    const std::string left[] = {"System Length = " + in.design.txtSYL + " ft",
                                "System Capacity = " + capacity + " gpm",
                                "Application Depth = 1.0 in", "Sprinkler Wetted Diameter = 40 ft"};
    for (int i = 0; i < 4; ++i)
        Line(e, 3312 + 288 * i, {{left[i], 720}, {right[i], kHalf}}, false);
    const std::string result = "Weighted Average Percent Runoff  =  " + in.page.txtWARP[1] + "%";
    e.push_back(Item(result, kHalf - result.size() * 70, resultY, k14Result, true));
    return e;
}

Items Texts(const RecordingSurface& s) {
    Items items;
    for (const SurfaceOp& op : s.ops())
        if (op.kind == SurfaceOp::Text) {
            EXPECT_EQ(op.font.name, "Times New Roman") << op.text;
            char font[32];
            std::snprintf(font, sizeof font, "%g/%d%d%d", op.font.size, op.font.bold,
                          op.font.underline, op.font.italic);
            items.push_back(Item(op.text, op.x, op.y, font, op.end == LineEnd::Finished));
        }
    return items;
}

// Non-text operations: kind, x, y, x2 (a line's end) and a picture's width.
std::vector<std::vector<double>> Drawn(const RecordingSurface& s) {
    std::vector<std::vector<double>> drawn;
    for (const SurfaceOp& op : s.ops())
        if (op.kind != SurfaceOp::Text)
            drawn.push_back({double(op.kind), op.x, op.y,
                             op.kind == SurfaceOp::Line ? op.x2 : op.picture.width});
    return drawn;
}

// The whole report for each storage option and model. Under the varying options the segment
// values replace the wetted diameter and the storage and capacity columns move 1000 right. The
// capacity printed is the shown case's flow: the capacity less 200 gpm, plus 100 gpm per case
// (runoff columns 3 to 5 are cases 1 to 3, any other column none).
TEST(PrintReport, EveryLineWhereThePageRulesPutIt) {
    const std::string family = "Modified Intake Infiltration - 0.5 NRCS Intake Family";
    using Headings = std::vector<std::vector<std::string>>; // of the segment columns
    const struct {
        InfiltrationModel model;
        int option;
        std::string gpm, txtCol, capacity, modelLine, storageLine, residueLine;
        Headings segment;
        bool blank = false; // nothing computed, and a producer that runs into the designer
    } cases[] = {
        // clang-format off
        {InfiltrationModel::IntakeFamily, kConstantSlopeResidue, "900", "3", "800", family, "Slope = 2 %", "Residue = 20 %", {}},
        {InfiltrationModel::GreenAmpt, kVariableSlopeResidue, "900", "5", "1000", "Green-Ampt Infiltration",
         "Slope (%) varies ", "Percent residue varies ", {{"", ""}, {"Slope", "Residue"}, {"(%)", "(%)"}}},
        {InfiltrationModel::IntakeFamily, kUserConstant, "900", "", "700", family, "Surface storage = 2 in", "Residue storage = 20 in", {}},
        {InfiltrationModel::GreenAmpt, kUserVariable, "900", "6", "700", "Green-Ampt Infiltration", "Surface storage varies",
         "Residue storage varies", {{"Surface", "Residue"}, {"Storage", "Storage"}, {"(in)", "(in)"}}},
        // No option ticked reads as the last one in the soils lines, as a constant in the table.
        {InfiltrationModel::IntakeFamily, kNoOptionTicked, "1255.5", "4", "1255.5", family, "Surface storage varies", "Residue storage varies", {}},
        // Every row is written, empty or not, and the fields print as typed: nothing clipped.
        {InfiltrationModel::GreenAmpt, kConstantSlopeResidue, "900 gpm", "5", "1000", "Green-Ampt Infiltration", "Slope = 2 %",
         "Residue = 20 %", {}, true},
        // clang-format on
    };
    for (const auto& c : cases) {
        SCOPED_TRACE("option " + std::to_string(c.option) + (c.blank ? ", blank" : ""));
        PrintInputs in = Sample();
        in.model = c.model;
        in.design.surfaceOption = c.option;
        in.design.txtGPM = c.gpm, in.txtCol = c.txtCol;
        if (c.blank)
            in.page = ResultsPage{}, in.design.txtDescription = std::string(60, 'P');
        RecordingSurface s;
        PrintReport(s, in);

        // The rule 500 below the last system line; the result line starts on the rule's y.
        double y = 4464 + 500;
        Items e = Header(in, c.capacity, {c.modelLine, c.storageLine, c.residueLine, ""}, y);
        e.push_back(Item("", 0, y + 336, k14Result, true));
        y += 2 * 336;
        // Columns 1000 apart, headings centred from 3620 and data 150 further right; under the
        // varying options the two segment columns take the diameter's place.
        const bool varies = !c.segment.empty();
        const Headings segment = varies ? c.segment : Headings(3);
        const auto row = [&](double y, double base, std::vector<std::string> texts,
                             const std::vector<std::string>& segment) {
            if (varies)
                texts[1] = segment[0], texts.insert(texts.begin() + 2, segment[1]);
            std::vector<std::pair<std::string, double>> cells;
            for (size_t k = 0; k < texts.size(); ++k)
                cells.push_back({texts[k], base + 1000.0 * k});
            Line(e, y, cells);
        };
        const auto& gpm = in.page.lblGPM;
        row(y, 3620, {"System", "Wetted", "Surface"}, segment[0]);
        row(y + 288, 3620, {"Length", "Diameter", "Storage", gpm[0], gpm[1], gpm[2]}, segment[1]);
        row(y + 576, 3620, {"(feet)", "(feet)", "(in)", "(gpm)", "(gpm)", "(gpm)"}, segment[2]);
        e.push_back(Item("", 0, y + 864, k12, true));
        y += 4 * 288;
        for (int r = 0; r < 10; ++r, y += 288)
            row(y, 3770, {in.page.grid[r].begin(), in.page.grid[r].end()},
                {"s" + std::to_string(r * 3 + 4), "s" + std::to_string(r * 3 + 5)});
        e.push_back(Item("", 0, y, k12, true));
        e.push_back(Item("", 0, y + 288, k12, true));
        y += 2 * 288;
        const std::pair<std::string, std::array<std::string, 3>> summary[] = {
            {"Weighted Average Percent", in.page.txtWARP},
            {"Hours per Revolution", in.page.txtHours},
            {"Peak Water Application Rate", in.page.txtHPV},
            {"Water Application Time", in.page.txtTPV},
        };
        const double shift = varies ? 1000 : 0;
        for (const auto& [label, members] : summary) {
            e.push_back(Item(label, 3770 + shift - 500, y, k12, false));
            Line(e, y,
                 {{members[0], 6770 + shift},
                  {members[1], 7770 + shift},
                  {members[2], 8770 + shift}});
            y += 288;
        }
        EXPECT_EQ(Texts(s), e);
        // One line and nothing else drawn: the rule from margin to margin.
        EXPECT_EQ(Drawn(s), (std::vector<std::vector<double>>{
                                {double(SurfaceOp::Line), 720, 4464 + 500, 12240 - 720}}));
    }
}

// The titles name the shown row's distance and storage and the shown column's flow.
TEST(PrintPlot, EveryLineWhereThePageRulesPutIt) {
    const struct {
        std::string syl, gpm;
        int row;
        std::string txtCol, capacity, distance, flow, storage;
    } cases[] = {
        // Row 4 is the fifth position: 1300 ft x 5 x 0.1.
        {"1300", "800", 4, "4", "800", "650", "800", "0.31"},
        // 1320 x 0.3048 x 3 x 0.1 / 0.3048 falls a little above 396: shown to 15 digits.
        {"1320", "900", 2, "3", "800", "396", "700", "0"},
        {"1300", "900", 9, "5", "1000", "1300", "900", "0"},
        {"1300", "900", 4, "", "700", "650", "", "0.31"},
        {"1255", "1255.5", 0, "4", "1255.5", "125.5", "800", "0"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.distance);
        PrintInputs in = Sample();
        in.design.txtSYL = c.syl, in.design.txtGPM = c.gpm;
        in.shownRow = c.row, in.txtCol = c.txtCol;
        RecordingSurface s;
        PrintPlot(s, in);
        const double rule = 4464 + 500, y = rule + 500;
        Items e = Header(in, c.capacity,
                         {"Modified Intake Infiltration - 0.5 NRCS Intake Family",
                          "Surface Storage = " + c.storage + " in", "", ""},
                         y);
        Line(e, y + 336, {{"Distance from Pivot = " + c.distance + " ft", 720}}, false);
        Line(e, y + 336 + 288, {{"  at " + c.flow + " gpm", 1440}}, false);
        Line(e, y + 336 + 2 * 288, {{" ", 0}}, false);
        const double top = y + 336 + 3 * 288, below = top + 5000;
        const char* lines[] = {"Percent Runoff = 3.7%", "Peak Application Rate = 3.8 in/hr",
                               "Time to Saturation = 0.09 hr",
                               "Time to Peak Application = 0.17 hr"};
        for (int i = 0; i < 4; ++i)
            Line(e, below + 288 * i, {{lines[i], 720}}, false);
        EXPECT_EQ(Texts(s), e);
        EXPECT_EQ(Drawn(s), (std::vector<std::vector<double>>{
                                {double(SurfaceOp::Line), 720, rule, 11520},
                                {double(SurfaceOp::Picture), 12240 - 6800 - 1080, top, 6800}}));
    }
}

} // namespace
} // namespace rainfold
