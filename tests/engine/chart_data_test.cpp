// The rate chart of a results cell against values worked out independently by
// tests/data/results_page.py, and the steps of its Y scale.

#include "calc.h"
#include "chart_data.h"

#include <gtest/gtest.h>

#include <string>

namespace rainfold {
namespace {

#include "../data/results_page.inc"

TEST(ChartScale, StepsOfTheYAxis) {
    // Worked by hand from the three rounding rules, each tested on the M the one before left.
    const struct {
        double peak; // mm/h
        double maximum;
        int divisions;
    } cases[] = {
        {0, 1, 2},           // 0 in/hr: M = 1
        {50.8, 3, 6},        // 2 in/hr
        {241.3, 10, 20},     // 9.5 in/hr: M = 10 keeps half-inch steps
        {266.7, 12, 6},      // 10.5: M = 11, evened to 12
        {279.4, 12, 6},      // 11
        {1028.7, 44, 11},    // 40.5: M = 41, evened to 42, then to a multiple of 4
        {1143, 48, 12},      // 45: M = 46, 46, then 48
        {2600, 110, 11},     // 102.4: M = 103, 104, 104, then 110
        {25400, 1010, 101},  // 1000 in/hr: M = 1001, 1002, 1004, then 1010
        {254000, 10010, -1}, // 10,000 in/hr: 1001 divisions, more than a chart can draw
    };
    for (const auto& c : cases) {
        double maximum = -1;
        int divisions = -1;
        ChartScale(c.peak, maximum, divisions);
        EXPECT_EQ(maximum, c.maximum) << c.peak;
        EXPECT_EQ(divisions, c.divisions) << c.peak;
    }
}

// Every cell of the table: both models, with and without storage, with and without runoff; the
// cells of its row outside the runoff columns draw nothing.
TEST(BuildChart, AgreesWithTheIndependentRecomputation) {
    for (const ResultsRefChart& ref : kResultsCharts) {
        const DesignRecord design = kResultsDesigns[ref.design];
        const std::string cell = std::string(kResultsDesigns[ref.design].greenAmpt ? "G" : "F") +
                                 " row " + std::to_string(ref.row) + " column " +
                                 std::to_string(ref.column);
        SCOPED_TRACE(cell);
        Results results;
        ASSERT_TRUE(Calc_Results(design, results).ok());
        for (int column : {0, 1, 2}) { // the row's cells outside the runoff columns
            const ChartOutcome none = BuildChart(design, results, {column, ref.row, ref.slot});
            EXPECT_TRUE(!none.drawn && none.fault.empty()) << column;
        }
        const ChartOutcome out = BuildChart(design, results, {ref.column, ref.row, ref.slot});
        ASSERT_TRUE(out.drawn);
        ASSERT_EQ(out.fault, "");
        const ChartData& d = out.data;
        EXPECT_EQ(d.txtHP, ref.txtHP);
        EXPECT_EQ(d.txtTS, ref.txtTS);
        EXPECT_EQ(d.txtTP, ref.txtTP);

        // Four decimals of the chart plus what two ways of solving may differ by.
        const double tol = design.greenAmpt ? 1e-4 : 6e-5;
        ASSERT_EQ(d.application.size(), size_t(kChartPoints));
        ASSERT_EQ(d.intake.size(), size_t(kChartPoints));
        for (int k = 0; k < kChartPoints; ++k) {
            EXPECT_NEAR(d.application[k].t, ref.t[k], 6e-5) << k;
            EXPECT_EQ(d.intake[k].t, d.application[k].t) << k;
            EXPECT_NEAR(d.application[k].rate, ref.application[k], 6e-5) << k;
            EXPECT_NEAR(d.intake[k].rate, ref.intake[k], tol) << k;
        }
        // The first instant takes in without limit: 1000 mm/h, shown in in/hr.
        EXPECT_EQ(d.intake[0].rate, 39.3701);
        EXPECT_EQ(d.application[kChartPoints - 1].rate, 0.0); // the pass ends dry at 2T

        ASSERT_EQ(d.pondingMarker.size(), 2u);
        for (const ChartPoint& p : d.pondingMarker)
            EXPECT_NEAR(p.t, ref.markerT, 1e-4);
        EXPECT_EQ(d.pondingMarker[0].rate, 0.0);
        EXPECT_NEAR(d.pondingMarker[1].rate, ref.markerRate, tol);

        ASSERT_EQ(d.storageMarker.size(), ref.storage ? 2u : 0u);
        if (ref.storage) {
            for (const ChartPoint& p : d.storageMarker)
                EXPECT_NEAR(p.t, ref.storageT, 1e-4);
            EXPECT_NEAR(d.storageMarker[0].rate, ref.storageIntake, 2e-4);
            EXPECT_NEAR(d.storageMarker[1].rate, ref.storageApplication, 2e-4);
        }
        EXPECT_EQ(d.yMaximum, ref.yMaximum);
        EXPECT_EQ(d.yDivisions, ref.yDivisions);
    }
}

} // namespace
} // namespace rainfold
