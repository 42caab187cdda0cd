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
constexpr Font k8{8, false, false, false};
constexpr Font k12{12, false, false, false};
constexpr Font k14Heading{14, true, true, false};
constexpr Font k14Result{14, true, false, true};

struct Item {
    std::string text;
    double x, y;
    Font font;
    bool finished;
};

double Width(const std::string& text, double size) {
    return static_cast<double>(text.size()) * size * 10; // the tests use ASCII texts only
}

Item Centred(const std::string& text, double centre, double y, Font f, bool finished) {
    return {text, centre - Width(text, f.size) / 2, y, f, finished};
}

PrintInputs Sample() {
    PrintInputs in;
    DesignRecord& d = in.design;
    d.txtDescription = "Example Farms";
    d.txtLegalID = "NE 1/4 Sec. 12";
    d.txtCounty = "Custer";
    d.txtState = "NE";
    d.txtDesigner = "A. Engineer";
    d.txtDate = "11/22/2026";
    d.txtSYL = "1300";
    d.txtGPM = "800";
    d.txtAPPL = "1.0";
    d.txtWetDiam = "40";
    d.intakeFamilyIndex = 2;
    d.surfaceOption = kConstantSlopeResidue;
    d.txtSurfStore = "2";
    d.txtResidue = "20";
    // Each cell names its own flat index, so a cell taken from the wrong place shows.
    for (int r = 0; r < 10; ++r) {
        d.segments[static_cast<size_t>(r)] = {"s" + std::to_string(r * 3 + 4),
                                              "s" + std::to_string(r * 3 + 5)};
        for (int k = 0; k < 6; ++k)
            in.page.grid[static_cast<size_t>(r)][static_cast<size_t>(k)] =
                "g" + std::to_string(r * 6 + k);
    }
    in.page.lblGPM = {"700", "800", "900"};
    in.page.lblIntakeFamily = "0.5 NRCS Intake Family";
    in.page.txtWARP = {"1.1", "2.2", "3.3"};
    in.page.txtHours = {"h0", "h1", "h2"};
    in.page.txtHPV = {"p0", "p1", "p2"};
    in.page.txtTPV = {"t0", "t1", "t2"};
    in.model = InfiltrationModel::IntakeFamily;
    in.txtCol = "4";
    in.shownRow = 4;
    in.txtHP = "3.8";
    in.txtTS = "0.09";
    in.txtTP = "0.17";
    in.percentRunoff = "3.7";
    in.SurfStore[5] = 7.874; // mm: 0.31 in
    in.version = "1.0.0";
    in.printDate = "11/23/2026";
    in.chart.width = 6800;
    in.chart.height = 5000;
    return in;
}

// The version, title and date line and the two information blocks, down to the headings of the
// system and soils lines; both pages start with them.
std::vector<Item> HeaderItems() {
    return {
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
}

std::vector<Item> Texts(const RecordingSurface& s) {
    std::vector<Item> items;
    for (const SurfaceOp& op : s.ops()) {
        if (op.kind != SurfaceOp::Text)
            continue;
        EXPECT_EQ(op.font.name, "Times New Roman") << op.text;
        items.push_back({op.text,
                         op.x,
                         op.y,
                         {op.font.size, op.font.bold, op.font.underline, op.font.italic},
                         op.end == LineEnd::Finished});
    }
    return items;
}

void ExpectItems(const std::vector<Item>& actual, const std::vector<Item>& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i) {
        const Item& a = actual[i];
        const Item& e = expected[i];
        SCOPED_TRACE("item " + std::to_string(i) + " \"" + e.text + "\"");
        EXPECT_EQ(a.text, e.text);
        EXPECT_DOUBLE_EQ(a.x, e.x);
        EXPECT_DOUBLE_EQ(a.y, e.y);
        EXPECT_EQ(a.font.size, e.font.size);
        EXPECT_EQ(a.font.bold, e.font.bold);
        EXPECT_EQ(a.font.underline, e.font.underline);
        EXPECT_EQ(a.font.italic, e.font.italic);
        EXPECT_EQ(a.finished, e.finished);
    }
}

const Item* Find(const std::vector<Item>& items, const std::string& text) {
    for (const Item& i : items)
        if (i.text == text)
            return &i;
    return nullptr;
}

TEST(PrintReport, DrawsEveryLineOfTheSampleWhereThePageRulesPutIt) {
    const PrintInputs in = Sample();
    RecordingSurface s;
    PrintReport(s, in);

    std::vector<Item> e = HeaderItems();
    const std::vector<std::pair<std::string, std::string>> systemLines = {
        {"System Length = 1300 ft", "Modified Intake Infiltration - 0.5 NRCS Intake Family"},
        {"System Capacity = 800 gpm", "Slope = 2 %"},
        {"Application Depth = 1.0 in", "Residue = 20 %"},
        {"Sprinkler Wetted Diameter = 40 ft", ""},
    };
    double y = 3312;
    for (const auto& [left, right] : systemLines) {
        e.push_back({left, 720, y, k12, false});
        e.push_back({right, kHalf, y, k12, true});
        y += 288;
    }
    // The rule 500 below the last system line; the result line starts on the rule's y.
    y += 500;
    e.push_back(Centred("Weighted Average Percent Runoff  =  2.2%", kHalf, y, k14Result, true));
    e.push_back({"", 0, y + 336, k14Result, true});
    y += 2 * 336;

    // Headings centred on 3620 + 1000 k.
    e.push_back(Centred("System", 3620, y, k12, false));
    e.push_back(Centred("Wetted", 4620, y, k12, false));
    e.push_back(Centred("Surface", 5620, y, k12, true));
    y += 288;
    e.push_back(Centred("Length", 3620, y, k12, false));
    e.push_back(Centred("Diameter", 4620, y, k12, false));
    e.push_back(Centred("Storage", 5620, y, k12, false));
    e.push_back(Centred("700", 6620, y, k12, false));
    e.push_back(Centred("800", 7620, y, k12, false));
    e.push_back(Centred("900", 8620, y, k12, true));
    y += 288;
    e.push_back(Centred("(feet)", 3620, y, k12, false));
    e.push_back(Centred("(feet)", 4620, y, k12, false));
    e.push_back(Centred("(in)", 5620, y, k12, false));
    e.push_back(Centred("(gpm)", 6620, y, k12, false));
    e.push_back(Centred("(gpm)", 7620, y, k12, false));
    e.push_back(Centred("(gpm)", 8620, y, k12, true));
    y += 288;
    e.push_back({"", 0, y, k12, true});
    y += 288;
    // Data centred 150 to the right of the headings: 3770 + 1000 k.
    for (int r = 0; r < 10; ++r, y += 288)
        for (int k = 0; k < 6; ++k)
            e.push_back(Centred("g" + std::to_string(r * 6 + k), 3770 + 1000 * k, y, k12, k == 5));
    e.push_back({"", 0, y, k12, true});
    e.push_back({"", 0, y + 288, k12, true});
    y += 2 * 288;
    const std::vector<std::pair<std::string, std::vector<std::string>>> summary = {
        {"Weighted Average Percent", {"1.1", "2.2", "3.3"}},
        {"Hours per Revolution", {"h0", "h1", "h2"}},
        {"Peak Water Application Rate", {"p0", "p1", "p2"}},
        {"Water Application Time", {"t0", "t1", "t2"}},
    };
    for (const auto& [label, members] : summary) {
        e.push_back({label, 3770 - 500, y, k12, false});
        e.push_back(Centred(members[0], 6770, y, k12, false));
        e.push_back(Centred(members[1], 7770, y, k12, false));
        e.push_back(Centred(members[2], 8770, y, k12, true));
        y += 288;
    }
    ExpectItems(Texts(s), e);

    // One line and nothing else drawn: the rule from margin to margin, 500 below the system lines.
    std::vector<SurfaceOp> lines;
    for (const SurfaceOp& op : s.ops())
        if (op.kind != SurfaceOp::Text)
            lines.push_back(op);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].kind, SurfaceOp::Line);
    EXPECT_DOUBLE_EQ(lines[0].x, 720);
    EXPECT_DOUBLE_EQ(lines[0].x2, 12240 - 720);
    EXPECT_DOUBLE_EQ(lines[0].y, 4464 + 500);
    EXPECT_DOUBLE_EQ(lines[0].y2, 4464 + 500);
}

TEST(PrintReport, VaryingStoragePutsTheSegmentValuesInAndShiftsTheRightColumns) {
    struct Case {
        int option;
        std::vector<std::string> line1, line2, line3; // headings at 3620 + 1000 k, k = 1, 2
    };
    const std::vector<Case> cases = {
        {kVariableSlopeResidue, {"", ""}, {"Slope", "Residue"}, {"(%)", "(%)"}},
        {kUserVariable, {"Surface", "Residue"}, {"Storage", "Storage"}, {"(in)", "(in)"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE("option " + std::to_string(c.option));
        PrintInputs in = Sample();
        in.design.surfaceOption = c.option;
        RecordingSurface s;
        PrintReport(s, in);
        const std::vector<Item> items = Texts(s);

        // Seven columns: length, the two segment values, then storage and the three capacities
        // 1000 further right than without them.
        const size_t firstHeading = HeaderItems().size() + 8 + 2;
        const std::vector<std::vector<std::string>> headings = {
            {"System", c.line1[0], c.line1[1], "Surface"},
            {"Length", c.line2[0], c.line2[1], "Storage", "700", "800", "900"},
            {"(feet)", c.line3[0], c.line3[1], "(in)", "(gpm)", "(gpm)", "(gpm)"},
        };
        const double headingY0 = items[firstHeading].y;
        size_t i = firstHeading;
        for (size_t line = 0; line < 3; ++line) {
            for (size_t k = 0; k < headings[line].size(); ++k, ++i) {
                ASSERT_LT(i, items.size());
                EXPECT_EQ(items[i].text, headings[line][k]);
                EXPECT_DOUBLE_EQ(items[i].x + Width(items[i].text, 12) / 2, 3620 + 1000.0 * k);
                EXPECT_DOUBLE_EQ(items[i].y, headingY0 + 288.0 * line);
                EXPECT_EQ(items[i].finished, k + 1 == headings[line].size());
            }
        }
        ++i; // the empty line
        for (int r = 0; r < 10; ++r) {
            const std::vector<std::string> row = {
                "g" + std::to_string(r * 6),     "s" + std::to_string(r * 3 + 4),
                "s" + std::to_string(r * 3 + 5), "g" + std::to_string(r * 6 + 2),
                "g" + std::to_string(r * 6 + 3), "g" + std::to_string(r * 6 + 4),
                "g" + std::to_string(r * 6 + 5)};
            for (size_t k = 0; k < row.size(); ++k, ++i) {
                ASSERT_LT(i, items.size());
                EXPECT_EQ(items[i].text, row[k]);
                EXPECT_DOUBLE_EQ(items[i].x + Width(row[k], 12) / 2, 3770 + 1000.0 * k);
                EXPECT_DOUBLE_EQ(items[i].y, headingY0 + 288.0 * (4 + r));
            }
        }
        // The wetted diameter (the same on every row, and in the system lines) gives way.
        EXPECT_EQ(Find(items, "g1"), nullptr);
        const Item* label = Find(items, "Hours per Revolution");
        ASSERT_NE(label, nullptr);
        EXPECT_DOUBLE_EQ(label->x, 3770 + 1000 - 500);
        const Item* member = Find(items, "h2");
        ASSERT_NE(member, nullptr);
        EXPECT_DOUBLE_EQ(member->x + Width("h2", 12) / 2, 3770 + 6000);
    }
}

TEST(PrintReport, SoilsLinesFollowTheModelAndTheStorageOption) {
    struct Case {
        InfiltrationModel model;
        int option;
        std::string model_line, storage_line, residue_line;
    };
    const std::vector<Case> cases = {
        {InfiltrationModel::IntakeFamily, kConstantSlopeResidue,
         "Modified Intake Infiltration - 0.5 NRCS Intake Family", "Slope = 2 %", "Residue = 20 %"},
        {InfiltrationModel::GreenAmpt, kVariableSlopeResidue, "Green-Ampt Infiltration",
         "Slope (%) varies ", "Percent residue varies "},
        {InfiltrationModel::IntakeFamily, kUserConstant,
         "Modified Intake Infiltration - 0.5 NRCS Intake Family", "Surface storage = 2 in",
         "Residue storage = 20 in"},
        {InfiltrationModel::GreenAmpt, kUserVariable, "Green-Ampt Infiltration",
         "Surface storage varies", "Residue storage varies"},
        // No option ticked reads as the last one.
        {InfiltrationModel::IntakeFamily, kNoOptionTicked,
         "Modified Intake Infiltration - 0.5 NRCS Intake Family", "Surface storage varies",
         "Residue storage varies"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE("option " + std::to_string(c.option));
        PrintInputs in = Sample();
        in.model = c.model;
        in.design.surfaceOption = c.option;
        RecordingSurface s;
        PrintReport(s, in);
        const std::vector<Item> items = Texts(s);
        const size_t first = HeaderItems().size();
        ASSERT_GT(items.size(), first + 8);
        EXPECT_EQ(items[first + 1].text, c.model_line);
        EXPECT_EQ(items[first + 3].text, c.storage_line);
        EXPECT_EQ(items[first + 5].text, c.residue_line);
        EXPECT_EQ(items[first + 7].text, "");
        for (size_t k = 1; k < 8; k += 2)
            EXPECT_DOUBLE_EQ(items[first + k].x, kHalf);
    }
}

TEST(PrintReport, CapacityLineIsTheShownCaseFlowBackInGpm) {
    struct Case {
        std::string gpm, txtCol, expected;
    };
    const std::vector<Case> cases = {
        {"900", "3", "System Capacity = 800 gpm"},
        {"900", "4", "System Capacity = 900 gpm"},
        {"900", "5", "System Capacity = 1000 gpm"},
        // No runoff column shown: no case is added, leaving the capacity less 200 gpm.
        {"900", "", "System Capacity = 700 gpm"},
        {"900", "6", "System Capacity = 700 gpm"},
        {"1255.5", "4", "System Capacity = 1255.5 gpm"},
        {"900 gpm", "5", "System Capacity = 1000 gpm"},
    };
    for (const Case& c : cases) {
        PrintInputs in = Sample();
        in.design.txtGPM = c.gpm;
        in.txtCol = c.txtCol;
        RecordingSurface s;
        PrintReport(s, in);
        EXPECT_NE(Find(Texts(s), c.expected), nullptr) << c.gpm << " / " << c.txtCol;
    }
}

TEST(PrintReport, AlwaysTenRowsAndFieldsPrintAsTyped) {
    PrintInputs in = Sample();
    in.page = ResultsPage{};                         // nothing computed: every cell empty
    in.design.txtDescription = std::string(60, 'P'); // runs into the designer: nothing clipped
    RecordingSurface s;
    PrintReport(s, in);
    const std::vector<Item> items = Texts(s);
    EXPECT_NE(Find(items, "Producer: " + std::string(60, 'P')), nullptr);
    const Item* label = Find(items, "Weighted Average Percent");
    ASSERT_NE(label, nullptr);
    // The same place as with a full table: the rows are written whether or not they hold text.
    const double firstData = 4964 + 2 * 336 + 4 * 288;
    EXPECT_DOUBLE_EQ(label->y, firstData + 12 * 288);
    size_t emptyAtTableCentres = 0;
    for (const Item& i : items)
        if (i.text.empty() && i.y >= firstData && i.y < firstData + 10 * 288)
            ++emptyAtTableCentres;
    EXPECT_EQ(emptyAtTableCentres, 60u);
}

TEST(PrintPlot, DrawsEveryLineOfTheSampleWhereThePageRulesPutIt) {
    const PrintInputs in = Sample();
    RecordingSurface s;
    PrintPlot(s, in);

    std::vector<Item> e = HeaderItems();
    const std::vector<std::pair<std::string, std::string>> systemLines = {
        {"System Length = 1300 ft", "Modified Intake Infiltration - 0.5 NRCS Intake Family"},
        {"System Capacity = 800 gpm", "Surface Storage = 0.31 in"},
        {"Application Depth = 1.0 in", ""},
        {"Sprinkler Wetted Diameter = 40 ft", ""},
    };
    double y = 3312;
    for (const auto& [left, right] : systemLines) {
        e.push_back({left, 720, y, k12, false});
        e.push_back({right, kHalf, y, k12, true});
        y += 288;
    }
    const double rule = y + 500;
    y = rule + 500;
    e.push_back(Centred("Weighted Average Percent Runoff  =  2.2%", kHalf, y, k14Result, true));
    y += 336;
    // Row 4 is the fifth position: 1300 ft x 5 x 0.1.
    e.push_back({"Distance from Pivot = 650 ft", 720, y, k12, true});
    e.push_back({"  at 800 gpm", 1440, y + 288, k12, true});
    e.push_back({" ", 0, y + 2 * 288, k12, true});
    const double top = y + 3 * 288;
    const double below = top + 5000;
    e.push_back({"Percent Runoff = 3.7%", 720, below, k12, true});
    e.push_back({"Peak Application Rate = 3.8 in/hr", 720, below + 288, k12, true});
    e.push_back({"Time to Saturation = 0.09 hr", 720, below + 2 * 288, k12, true});
    e.push_back({"Time to Peak Application = 0.17 hr", 720, below + 3 * 288, k12, true});
    ExpectItems(Texts(s), e);

    std::vector<SurfaceOp> drawn;
    for (const SurfaceOp& op : s.ops())
        if (op.kind != SurfaceOp::Text)
            drawn.push_back(op);
    ASSERT_EQ(drawn.size(), 2u);
    EXPECT_EQ(drawn[0].kind, SurfaceOp::Line);
    EXPECT_DOUBLE_EQ(drawn[0].y, rule);
    EXPECT_DOUBLE_EQ(drawn[0].x2, 11520);
    EXPECT_EQ(drawn[1].kind, SurfaceOp::Picture);
    EXPECT_DOUBLE_EQ(drawn[1].x, 12240 - 6800 - 1080);
    EXPECT_DOUBLE_EQ(drawn[1].y, top);
    EXPECT_DOUBLE_EQ(drawn[1].picture.width, 6800);
}

TEST(PrintPlot, TitleLinesFollowTheShownCell) {
    struct Case {
        std::string syl;
        int row;
        std::string txtCol;
        std::string distance, flow, storage;
    };
    const std::vector<Case> cases = {
        // 1320 x 0.3048 x 3 x 0.1 / 0.3048 falls a little above 396: shown to 15 digits.
        {"1320", 2, "3", "Distance from Pivot = 396 ft", "  at 700 gpm", "Surface Storage = 0 in"},
        {"1300", 9, "5", "Distance from Pivot = 1300 ft", "  at 900 gpm", "Surface Storage = 0 in"},
        {"1300", 4, "", "Distance from Pivot = 650 ft", "  at  gpm", "Surface Storage = 0.31 in"},
        {"1255", 0, "4", "Distance from Pivot = 125.5 ft", "  at 800 gpm",
         "Surface Storage = 0 in"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.distance);
        PrintInputs in = Sample();
        in.design.txtSYL = c.syl;
        in.shownRow = c.row;
        in.txtCol = c.txtCol;
        RecordingSurface s;
        PrintPlot(s, in);
        const std::vector<Item> items = Texts(s);
        EXPECT_NE(Find(items, c.distance), nullptr);
        EXPECT_NE(Find(items, c.flow), nullptr);
        EXPECT_NE(Find(items, c.storage), nullptr);
    }
}

} // namespace
} // namespace rainfold
