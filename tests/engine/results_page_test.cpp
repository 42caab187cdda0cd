// The results page built from a hand-made results record.

#include "fault.h"
#include "results_page.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

namespace rainfold {
namespace {

DesignRecord Design() {
    DesignRecord d;
    d.txtSYL = "1320", d.txtGPM = "900", d.txtAPPL = "1", d.txtWetDiam = "60";
    d.intakeFamilyIndex = 3; // "1.0 Intake Family"
    return d;
}

// Slot 2 carries the values under test; slots 1 and 3 hold 77 everywhere to show up if read.
Results Record() {
    Results r;
    const double hours[] = {0, 30.04, 25.45, 24.96};
    const double peak[] = {0, 50.8, 63.5, 76.2};     // 2, 2.5, 3 in/hr
    const double half[] = {0, 0.1249, 0.127, 0.145}; // rounded to 0.12, 0.13, 0.15, then doubled
    for (int c = 1; c <= 3; ++c) {
        r.HoursPerRev[c] = hours[c];
        for (int i = 1; i <= 10; ++i) {
            for (int s = 1; s <= 3; ++s) {
                r.PeakRate.at(c, i, s) = s == 2 ? peak[c] : 77;
                r.HalfTime.at(c, i, s) = s == 2 ? half[c] : 77;
                r.PctRunoff.at(c, i, s) = 77;
            }
            r.PctRunoff.at(c, i, 2) = c == 1   ? 12.34
                                      : c == 2 ? (i % 2 ? 20 : 99)
                                               : (i == 9 ? 100 : 0);
        }
    }
    for (int i = 1; i <= 10; ++i)
        r.SurfStore[i] = i * 2.54;
    return r;
}

TEST(ResultsPage, IntakeFamilyPage) {
    DesignRecord d = Design();
    d.txtWetDiam = "0.5"; // shown as typed: the 1.1 ft floor of the computation is not applied
    const ResultsPage p = BuildResultsPage(d, Record(), 2);
    EXPECT_EQ(p.fault, "");
    EXPECT_EQ(p.lblGPM, (std::array<std::string, 3>{"800", "900", "1000"}));
    EXPECT_EQ(p.txtHours, (std::array<std::string, 3>{"30.0", "25.5", "25.0"}));
    EXPECT_EQ(p.txtHPV, (std::array<std::string, 3>{"2.0", "2.5", "3.0"}));
    // Two decimals first, then doubled: 0.1249 -> 0.12 -> 0.24, 0.127 -> 0.13 -> 0.26.
    EXPECT_EQ(p.txtTPV, (std::array<std::string, 3>{"0.24", "0.26", "0.3"}));
    EXPECT_EQ(p.lblIntakeFamily, "1.0 NRCS Intake Family");
    for (int i = 0; i < 10; ++i) {
        const std::string feet = std::to_string(132 * (i + 1));
        const std::string store = i == 9 ? "1" : "0." + std::to_string(i + 1);
        const std::string second = i % 2 == 0 ? "20.0" : "99.0";
        const std::string third = i == 8 ? "100.0" : "0.0";
        EXPECT_EQ(p.grid[i],
                  (std::array<std::string, 6>{feet, "0.5", store, "12.3", second, third}))
            << "row " << i;
    }
    // Outer annulus 0.36 of the area: 100 at position 9 alone averages 36.
    EXPECT_EQ(p.txtWARP, (std::array<std::string, 3>{"12.3", "20.0", "36.0"}));
    EXPECT_FALSE(p.WeightedRunoff[0].has_value());
    EXPECT_NEAR(Read(p.WeightedRunoff[1]), 12.34, 1e-12);
    EXPECT_NEAR(Read(p.WeightedRunoff[3]), 36, 1e-12);

    d.txtSYL = "0"; // stops at the weighted average
    const ResultsPage stopped = BuildResultsPage(d, Record(), 2);
    EXPECT_NE(stopped.fault, "");
    EXPECT_EQ(stopped.lblGPM[1], "900");   // written before the fault, kept
    EXPECT_EQ(stopped.grid[9][3], "12.3"); // the grid comes before the averages
    EXPECT_EQ(stopped.txtWARP[0], "");
}

// A batch row asks for the page without its grid: everything else is the whole page's, the fault
// of a zero length included.
TEST(ResultsPage, WithoutTheGridTheRestIsTheWholePage) {
    for (const char* length : {"1320", "0"}) {
        DesignRecord d = Design();
        d.txtSYL = length;
        const ResultsPage all = BuildResultsPage(d, Record(), 2);
        const ResultsPage part = BuildResultsPage(d, Record(), 2, PageParts::WithoutGrid);
        const auto summary = [](const ResultsPage& p) {
            return std::tie(p.lblGPM, p.txtHours, p.txtHPV, p.txtTPV, p.lblIntakeFamily, p.txtWARP,
                            p.WeightedRunoff, p.fault);
        };
        EXPECT_TRUE(summary(part) == summary(all)) << length;
        EXPECT_EQ(part.grid, decltype(part.grid){}) << length;
    }
}

TEST(ResultsPage, GreenAmptPageReadsElementOneWhateverTheSlot) {
    DesignRecord d = Design();
    d.greenAmpt = true;
    Results r = Record();
    for (int c = 1; c <= 3; ++c)
        for (int i = 1; i <= 10; ++i) {
            r.PeakRate.at(c, i, 3) = r.PeakRate.at(c, i, 2);
            r.HalfTime.at(c, i, 3) = r.HalfTime.at(c, i, 2);
            r.GAVarPctRunoff.at(c, i, 1) = 5.55 * c; // shown in the grid
            r.GAPctRunoff.at(c, i, 1) = 2.0 * c;     // used for the weighted average
        }
    for (int slot : {1, 3}) {
        const ResultsPage p = BuildResultsPage(d, r, slot);
        EXPECT_EQ(p.lblIntakeFamily, "Green and Ampt Infiltration");
        EXPECT_EQ(p.grid[4][3], "5.6");
        EXPECT_EQ(p.grid[4][4], "11.1");
        EXPECT_EQ(p.grid[4][5], "16.7"); // 16.65 on 15 digits, away from zero
        EXPECT_EQ(p.txtWARP, (std::array<std::string, 3>{"2.0", "4.0", "6.0"}));
    }
}

// Annuli of equal width: area shares 0.04, 0.12, 0.20, 0.28, 0.36 from the centre out; the even
// positions are not read.
TEST(WeightedAverage, AnnulusWeights) {
    const struct {
        int position;
        double average;
    } cases[] = {{1, 4}, {3, 12}, {5, 20}, {7, 28}, {9, 36}, {2, 0}, {10, 0}};
    SlotArray runoff;
    GreenArray green;
    for (const auto& c : cases) {
        for (int i = 1; i <= 10; ++i)
            runoff.at(2, i, 3) = green.at(2, i, 1) = i == c.position ? 100 : i % 2 ? 0 : 13.0 * i;
        EXPECT_NEAR(Read(WeightedAverage(runoff, 402.336, 2, 3)), c.average, 1e-11) << c.position;
        EXPECT_NEAR(Read(WeightedAverage(green, 402.336, 2)), c.average, 1e-11) << c.position;
    }
    SlotArray gap; // position 7 not computed
    for (int i = 1; i <= 10; ++i)
        if (i != 7)
            gap.at(3, i, 2) = 17.5;
    EXPECT_FALSE(WeightedAverage(gap, 123.4, 3, 2).has_value());
    EXPECT_THROW(WeightedAverage(green, 0.0, 2), EngineFault); // no length
}

TEST(ResultsPage, FamilyCaptionPerSlot) {
    const struct {
        int listIndex, slot;
        const char* family;
    } cases[] = {{0, 1, "0.1"}, {0, 2, "0.3"}, {0, 3, "0.5"}, {3, 1, "0.5"}, {3, 2, "1.0"},
                 {3, 3, "1.5"}, {6, 1, "1.5"}, {6, 3, "3.0"}, {7, 1, "3.0"}, {7, 2, ""}};
    for (const auto& c : cases) {
        DesignRecord d = Design();
        d.intakeFamilyIndex = c.listIndex;
        EXPECT_EQ(BuildResultsPage(d, Record(), c.slot).lblIntakeFamily,
                  *c.family ? std::string(c.family) + " NRCS Intake Family" : "Customized Values")
            << c.listIndex << "/" << c.slot;
    }
}

} // namespace
} // namespace rainfold
