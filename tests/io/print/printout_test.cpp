// The printed report and plot, drawn on a recording surface and checked item by item. Every
// expected position is worked out here from the page's rules and the recording surface's measures
// (text width = characters x size x 10 twips, line height = size x 24 twips) on a page 12,240
// twips wide, so that half the page is 6,120.

#include "printout.h"
#include "recording_surface.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace rainfold {
namespace {

constexpr double kHalf = 6120;

struct Font {
    double size;
    bool bold, underline, italic;
};
constexpr Font k8{8, false, false, false}, k12{12, false, false, false},
    k14Heading{14, true, true, false}, k14Result{14, true, false, true};

struct Item {
    std::string text;
    double x, y;
    Font font;
    bool finished;
};
using Items = std::vector<Item>;

// A line of 12-point items; `centred` items are centred on the x given. The last ends the line.
void Line(Items& e, double y, const std::vector<std::pair<std::string, double>>& cells,
          bool centred = true) {
    for (size_t i = 0; i < cells.size(); ++i) {
        const auto& [text, x] = cells[i];
        e.push_back({text, centred ? x - text.size() * 60.0 : x, y, k12, i + 1 == cells.size()});
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

// The version, title and date line, the two information blocks and the system and soils lines
// with their left items; both pages start with them.
Items Header(const std::vector<std::string>& right) {
    Items e = {
        {"Version 1.0.0", 720, 720, k8, false},
        {"Rainfold", kHalf - 800, 720, {20, false, false, false}, false},
        {"11/23/2026", 12240 - 800 - 720, 720, k8, true},
        {"General Information", 720, 1440, k14Heading, true},
        {"Producer: Example Farms", 720, 1776, k12, false},
        {"Designed by:  A. Engineer", kHalf, 1776, k12, false},
        {"Date:  11/22/2026", 12240 * 0.81, 1776, k12, true},
        {"Location: NE 1/4 Sec. 12", 720, 2064, k12, false},
        {"Checked by: ____________________   Date: _________", kHalf, 2064, k12, true},
        {"County: Custer", 720, 2352, k12, false},
        {"      State: NE", 720 + 14 * 120, 2352, k12, true},
        {"", 0, 2640, k14Heading, true},
        {"System Information", 720, 2976, k14Heading, false},
        {"Soils Information", kHalf, 2976, k14Heading, true},
    };
    const char* left[] = {"System Length = 1300 ft", "System Capacity = 800 gpm",
                          "Application Depth = 1.0 in", "Sprinkler Wetted Diameter = 40 ft"};
    for (int i = 0; i < 4; ++i)
        Line(e, 3312 + 288 * i, {{left[i], 720}, {right[i], kHalf}}, false);
    return e;
}

Items Texts(const RecordingSurface& s) {
    Items items;
    for (const SurfaceOp& op : s.ops())
        if (op.kind == SurfaceOp::Text) {
            EXPECT_EQ(op.font.name, "Times New Roman") << op.text;
            items.push_back({op.text,
                             op.x,
                             op.y,
                             {op.font.size, op.font.bold, op.font.underline, op.font.italic},
                             op.end == LineEnd::Finished});
        }
    return items;
}

void ExpectItems(const Items& actual, const Items& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i) {
        const Item &a = actual[i], &e = expected[i];
        SCOPED_TRACE("item " + std::to_string(i) + " \"" + e.text + "\"");
        EXPECT_EQ(a.text, e.text);
        EXPECT_DOUBLE_EQ(a.x, e.x);
        EXPECT_DOUBLE_EQ(a.y, e.y);
        EXPECT_EQ(std::vector<double>({a.font.size, 1. * a.font.bold, 1. * a.font.underline,
                                       1. * a.font.italic, 1. * a.finished}),
                  std::vector<double>({e.font.size, 1. * e.font.bold, 1. * e.font.underline,
                                       1. * e.font.italic, 1. * e.finished}));
    }
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

bool Has(const Items& items, const std::string& text) {
    for (const Item& i : items)
        if (i.text == text)
            return true;
    return false;
}

// The whole report for each storage option and model. Under the varying options the segment
// values replace the wetted diameter and the storage and capacity columns move 1000 right.
TEST(PrintReport, EveryLineWhereThePageRulesPutIt) {
    const std::string family = "Modified Intake Infiltration - 0.5 NRCS Intake Family";
    using Headings = std::vector<std::vector<std::string>>; // of the segment columns
    const struct {
        InfiltrationModel model;
        int option;
        std::string modelLine, storageLine, residueLine;
        Headings segment;
    } cases[] = {
        // clang-format off
        {InfiltrationModel::IntakeFamily, kConstantSlopeResidue, family, "Slope = 2 %", "Residue = 20 %", {}},
        {InfiltrationModel::GreenAmpt, kVariableSlopeResidue, "Green-Ampt Infiltration", "Slope (%) varies ",
         "Percent residue varies ", {{"", ""}, {"Slope", "Residue"}, {"(%)", "(%)"}}},
        {InfiltrationModel::IntakeFamily, kUserConstant, family, "Surface storage = 2 in", "Residue storage = 20 in", {}},
        {InfiltrationModel::GreenAmpt, kUserVariable, "Green-Ampt Infiltration", "Surface storage varies",
         "Residue storage varies", {{"Surface", "Residue"}, {"Storage", "Storage"}, {"(in)", "(in)"}}},
        // No option ticked reads as the last one in the soils lines, as a constant in the table.
        {InfiltrationModel::IntakeFamily, kNoOptionTicked, family, "Surface storage varies", "Residue storage varies", {}},
        // clang-format on
    };
    for (const auto& c : cases) {
        SCOPED_TRACE("option " + std::to_string(c.option));
        PrintInputs in = Sample();
        in.model = c.model;
        in.design.surfaceOption = c.option;
        RecordingSurface s;
        PrintReport(s, in);

        Items e = Header({c.modelLine, c.storageLine, c.residueLine, ""});
        // The rule 500 below the last system line; the result line starts on the rule's y.
        double y = 4464 + 500;
        e.push_back(
            {"Weighted Average Percent Runoff  =  2.2%", kHalf - 40 * 70, y, k14Result, true});
        e.push_back({"", 0, y + 336, k14Result, true});
        y += 2 * 336;
        // Headings centred on 3620 + 1000 k, data 150 further right.
        const bool varies = !c.segment.empty();
        const Headings segment = varies ? c.segment : Headings(3);
        const double shift = varies ? 1000 : 0;
        const auto columns = [&](double base, std::vector<std::string> texts,
                                 const std::vector<std::string>& segment) {
            std::vector<std::pair<std::string, double>> cells;
            for (size_t k = 0; k < texts.size(); ++k)
                cells.push_back({texts[k], base + 1000 * k + (k >= 2 ? shift : 0)});
            if (varies) {
                cells[1] = {segment[0], base + 1000};
                cells.insert(cells.begin() + 2, {segment[1], base + 2000});
            }
            return cells;
        };
        Line(e, y, columns(3620, {"System", "Wetted", "Surface"}, segment[0]));
        Line(e, y + 288,
             columns(3620, {"Length", "Diameter", "Storage", "700", "800", "900"}, segment[1]));
        Line(e, y + 576,
             columns(3620, {"(feet)", "(feet)", "(in)", "(gpm)", "(gpm)", "(gpm)"}, segment[2]));
        e.push_back({"", 0, y + 864, k12, true});
        y += 4 * 288;
        for (int r = 0; r < 10; ++r, y += 288) {
            std::vector<std::string> row,
                segment = {"s" + std::to_string(r * 3 + 4), "s" + std::to_string(r * 3 + 5)};
            for (int k = 0; k < 6; ++k)
                row.push_back("g" + std::to_string(r * 6 + k));
            Line(e, y, columns(3770, row, segment));
        }
        e.push_back({"", 0, y, k12, true});
        e.push_back({"", 0, y + 288, k12, true});
        y += 2 * 288;
        const std::pair<std::string, std::vector<std::string>> summary[] = {
            {"Weighted Average Percent", {"1.1", "2.2", "3.3"}},
            {"Hours per Revolution", {"h0", "h1", "h2"}},
            {"Peak Water Application Rate", {"p0", "p1", "p2"}},
            {"Water Application Time", {"t0", "t1", "t2"}},
        };
        for (const auto& [label, members] : summary) {
            e.push_back({label, 3770 + shift - 500, y, k12, false});
            Line(e, y,
                 {{members[0], 6770 + shift},
                  {members[1], 7770 + shift},
                  {members[2], 8770 + shift}});
            y += 288;
        }
        ExpectItems(Texts(s), e);
        // One line and nothing else drawn: the rule from margin to margin.
        EXPECT_EQ(Drawn(s), (std::vector<std::vector<double>>{
                                {double(SurfaceOp::Line), 720, 4464 + 500, 12240 - 720}}));
    }
}

TEST(PrintReport, CapacityLineIsTheShownCaseFlowBackInGpm) {
    const struct {
        std::string gpm, txtCol, expected;
    } cases[] = {
        {"900", "3", "800"},
        {"900", "5", "1000"},
        // No runoff column shown: no case is added, leaving the capacity less 200 gpm.
        {"900", "", "700"},
        {"900", "6", "700"},
        {"1255.5", "4", "1255.5"},
        {"900 gpm", "5", "1000"},
    };
    for (const auto& c : cases) {
        PrintInputs in = Sample();
        in.design.txtGPM = c.gpm;
        in.txtCol = c.txtCol;
        RecordingSurface s;
        PrintReport(s, in);
        EXPECT_TRUE(Has(Texts(s), "System Capacity = " + c.expected + " gpm"))
            << c.gpm << " / " << c.txtCol;
    }
}

TEST(PrintReport, AlwaysTenRowsAndFieldsPrintAsTyped) {
    PrintInputs in = Sample();
    in.page = ResultsPage{};                         // nothing computed: every cell empty
    in.design.txtDescription = std::string(60, 'P'); // runs into the designer: nothing clipped
    RecordingSurface s;
    PrintReport(s, in);
    const Items items = Texts(s);
    EXPECT_TRUE(Has(items, "Producer: " + std::string(60, 'P')));
    // The same places as with a full table: the rows are written whether or not they hold text.
    const double firstData = 4964 + 2 * 336 + 4 * 288;
    size_t emptyAtTableCentres = 0;
    for (const Item& i : items) {
        emptyAtTableCentres += i.text.empty() && i.y >= firstData && i.y < firstData + 10 * 288;
        if (i.text == "Weighted Average Percent") {
            EXPECT_DOUBLE_EQ(i.y, firstData + 12 * 288);
        }
    }
    EXPECT_EQ(emptyAtTableCentres, 60u);
}

TEST(PrintPlot, EveryLineWhereThePageRulesPutIt) {
    const PrintInputs in = Sample();
    RecordingSurface s;
    PrintPlot(s, in);
    Items e = Header({"Modified Intake Infiltration - 0.5 NRCS Intake Family",
                      "Surface Storage = 0.31 in", "", ""});
    const double rule = 4464 + 500, y = rule + 500;
    e.push_back({"Weighted Average Percent Runoff  =  2.2%", kHalf - 40 * 70, y, k14Result, true});
    // Row 4 is the fifth position: 1300 ft x 5 x 0.1.
    Line(e, y + 336, {{"Distance from Pivot = 650 ft", 720}}, false);
    Line(e, y + 336 + 288, {{"  at 800 gpm", 1440}}, false);
    Line(e, y + 336 + 2 * 288, {{" ", 0}}, false);
    const double top = y + 336 + 3 * 288, below = top + 5000;
    const char* lines[] = {"Percent Runoff = 3.7%", "Peak Application Rate = 3.8 in/hr",
                           "Time to Saturation = 0.09 hr", "Time to Peak Application = 0.17 hr"};
    for (int i = 0; i < 4; ++i)
        Line(e, below + 288 * i, {{lines[i], 720}}, false);
    ExpectItems(Texts(s), e);
    EXPECT_EQ(Drawn(s), (std::vector<std::vector<double>>{
                            {double(SurfaceOp::Line), 720, rule, 11520},
                            {double(SurfaceOp::Picture), 12240 - 6800 - 1080, top, 6800}}));
}

TEST(PrintPlot, TitleLinesFollowTheShownCell) {
    const struct {
        std::string syl;
        int row;
        std::string txtCol, distance, flow, storage;
    } cases[] = {
        // 1320 x 0.3048 x 3 x 0.1 / 0.3048 falls a little above 396: shown to 15 digits.
        {"1320", 2, "3", "396", "700", "0"},
        {"1300", 9, "5", "1300", "900", "0"},
        {"1300", 4, "", "650", "", "0.31"},
        {"1255", 0, "4", "125.5", "800", "0"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.distance);
        PrintInputs in = Sample();
        in.design.txtSYL = c.syl;
        in.shownRow = c.row;
        in.txtCol = c.txtCol;
        RecordingSurface s;
        PrintPlot(s, in);
        const Items items = Texts(s);
        EXPECT_TRUE(Has(items, "Distance from Pivot = " + c.distance + " ft"));
        EXPECT_TRUE(Has(items, "  at " + c.flow + " gpm"));
        EXPECT_TRUE(Has(items, "Surface Storage = " + c.storage + " in"));
    }
}

} // namespace
} // namespace rainfold
