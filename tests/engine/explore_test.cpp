// The explorer's numbers against the full computation on the example designs: its weighted
// average is the results page's to the last bit and its outer end the grid's last row (random
// designs: property_test.cpp), its map is made of those numbers, and its answers are the ones a
// scan of every step finds, for either criterion.

#include "csv_text.h"
#include "design_file.h"
#include "explore.h"
#include "format.h"
#include "page_average.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace rainfold {
namespace {

DesignRecord Example(const char* name, bool greenAmpt) {
    DesignRecord d;
    OpenDesign(std::string(RAINFOLD_EXAMPLES_DIR) + "/" + name, d);
    d.greenAmpt = greenAmpt;
    return d;
}

// Each answer against a scan of every step of its range, under both criteria; a soil that runs
// off at every point (about 0.5 mm/h taken in, no storage) meets a target of 0 nowhere.
TEST(Explore, AnswersAreTheScansAnswers) {
    const struct {
        const char* file;
        bool greenAmpt;
        double target;
        bool hardSoil = false;
    } cases[] = {
        {"spray-1300ft-800gpm.rfd", false, 0.0},     {"spray-1300ft-800gpm.rfd", false, 2.5},
        {"lepa-1320ft-900gpm.rfd", false, 10.0},     {"customized-variable-storage.rfd", false, 1},
        {"spray-1300ft-800gpm.rfd", true, 5.0},      {"lepa-1320ft-900gpm.rfd", true, 2.0},
        {"spray-1300ft-800gpm.rfd", false, 0, true},
    };
    for (const auto& c : cases) {
        DesignRecord d = Example(c.file, c.greenAmpt);
        if (c.hardSoil) {
            d.intakeFamilyIndex = kCustomizedValuesIndex, d.txtUk = "0.5", d.txtUN = "-0.1";
            d.surfaceOption = kUserConstant, d.txtSurfStore = "0", d.txtResidue = "0";
        }
        std::string why;
        const std::optional<RunoffProbe> probe = RunoffProbe::Make(d, why);
        ASSERT_TRUE(probe) << why;
        EXPECT_TRUE(SameBits(FastWeightedAverage(d).value, *PageAverage(d))) << c.file;
        EXPECT_TRUE(SameBits(probe->OuterEnd(probe->designDiameter(), probe->designDepth()),
                             *PageOuterEnd(d)))
            << c.file;
        for (ExploreCriterion criterion : {ExploreCriterion::Average, ExploreCriterion::OuterEnd}) {
            const auto runoff = [&](double D, double depth) {
                return probe->Runoff(criterion, D, depth);
            };
            std::optional<double> smallest, largest;
            for (int tenths = 10; tenths <= 1500 && !smallest; ++tenths)
                if (runoff(tenths / 10.0, probe->designDepth()) <= c.target)
                    smallest = tenths / 10.0;
            for (int hundredths = 300; hundredths >= 25 && !largest; --hundredths)
                if (runoff(probe->designDiameter(), hundredths / 100.0) <= c.target)
                    largest = hundredths / 100.0;
            SCOPED_TRACE(testing::Message() << c.file << " " << c.target << " criterion "
                                            << static_cast<int>(criterion));
            EXPECT_EQ(!smallest && !largest, c.hardSoil);
            EXPECT_EQ(SmallestWettedDiameter(*probe, probe->designDepth(), c.target, criterion),
                      smallest);
            EXPECT_EQ(LargestDepth(*probe, probe->designDiameter(), c.target, criterion), largest);
        }
    }
}

// The grid's values worked out by hand: 150^(i/4) = 1, 3.4996, 12.247, 42.86, 150 keep two
// digits (one would move 3.5 to 3, more than a tenth of the step ln(150)/4 away); the middle
// depth 1.625 keeps one decimal. The map is the probe's numbers at that grid, and its CSV holds
// the design's facts, then the grid, exactly as computed.
TEST(Explore, MapAndCsv) {
    DesignRecord d = Example("spray-1300ft-800gpm.rfd", false);
    d.txtDescription = "=HYPERLINK(\"x\"), north";
    std::string why;
    const std::optional<RunoffProbe> probe = RunoffProbe::Make(d, why);
    ASSERT_TRUE(probe);
    for (ExploreAxis axis : {ExploreAxis::Depth, ExploreAxis::Storage}) {
        const bool depth = axis == ExploreAxis::Depth;
        const ExploreCriterion criterion =
            depth ? ExploreCriterion::Average : ExploreCriterion::OuterEnd;
        const ExploreMap map = ComputeExploreMap(*probe, axis, criterion, 5, 3, nullptr, 2);
        ASSERT_EQ(map.xValues, (std::vector<double>{1, 3.5, 12, 43, 150}));
        ASSERT_EQ(map.yValues,
                  (depth ? std::vector<double>{0.25, 1.6, 3} : std::vector<double>{0, 0.5, 1}));
        std::istringstream csv(ExploreMapCsv(map, ExploreFactsOf(d, *probe, criterion)));
        std::string line, field;
        const std::vector<std::string> facts = {
            "Producer," + CsvField(d.txtDescription),
            "Location,\"NE 1/4 Sec. 12, T10N, R5W, Custer, NE\"",
            "Designer,A. Engineer",
            "Date,11/22/2026",
            "System length (ft),1300",
            "System capacity (gpm),800",
            "Depth per pass (in),1.0",
            "Wetted diameter (ft),40",
            "Soil,0.5 NRCS Intake Family",
            "Surface storage (in),0.31", // 2 % slope 0.3 in, 20 % residue 0.01 in
            depth ? "Runoff (%),weighted average over the circle at 800 gpm"
                  : "Runoff (%),at the outer end of the pivot at 800 gpm",
            "",
        };
        for (const std::string& expected : facts) {
            ASSERT_TRUE(std::getline(csv, line));
            EXPECT_EQ(line, expected + "\r");
        }
        EXPECT_EQ(facts[0], "Producer,\"'=HYPERLINK(\"\"x\"\"), north\"");
        std::getline(csv, line);
        EXPECT_EQ(line, (depth ? "Depth per pass (in)" : "Storage (in)") +
                            std::string(" \\ Wetted diameter (ft),1,3.5,12,43,150\r"));
        for (size_t row = 0; row < 3; ++row) {
            ASSERT_TRUE(std::getline(csv, line));
            std::istringstream fields(line);
            std::getline(fields, field, ',');
            EXPECT_EQ(std::stod(field), map.yValues[row]);
            for (size_t column = 0; column < 5; ++column) {
                ASSERT_TRUE(std::getline(fields, field, ','));
                const DesignRecord at = DesignAt(d, axis, map.xValues[column], map.yValues[row]);
                EXPECT_EQ(std::stod(field), map.runoff[row][column]);
                const std::optional<double> page = depth ? PageAverage(at) : PageOuterEnd(at);
                EXPECT_TRUE(SameBits(map.runoff[row][column], *page));
            }
            EXPECT_FALSE(std::getline(fields, field, ','));
        }
        EXPECT_FALSE(std::getline(csv, line));
    }
    ExploreProgress cancelled;
    cancelled.cancel = true;
    EXPECT_TRUE(
        ComputeExploreMap(*probe, ExploreAxis::Depth, ExploreCriterion::Average, 5, 3, &cancelled)
            .cancelled);
    EXPECT_EQ(cancelled.done, 0);
}

// The default grid: three significant digits for 60 columns, two would move a column more than
// a tenth of a step; two decimals for 40 depths, three for 40 storages (a step of 1/39 in).
TEST(Explore, GridReadsAsShortNumbers) {
    const auto digits = [](double x) { // significant digits of the shortest text
        std::string text = ExactText(x);
        text.erase(std::remove(text.begin(), text.end(), '.'), text.end());
        text.erase(0, text.find_first_not_of('0'));
        return static_cast<int>(text.find_last_not_of('0') + 1);
    };
    const std::vector<double> x = ExploreXValues(60);
    const double step = std::log(150.0) / 59;
    int most = 0;
    bool twoWouldDo = true;
    for (size_t i = 0; i < x.size(); ++i) {
        const double exact = std::exp(step * static_cast<double>(i));
        EXPECT_LE(std::fabs(std::log(x[i] / exact)), step / 10) << i;
        most = std::max(most, digits(x[i]));
        const double two = std::stod(SignificantText(exact, 2));
        twoWouldDo = twoWouldDo && std::fabs(std::log(two / exact)) <= step / 10;
    }
    EXPECT_EQ(most, 3);
    EXPECT_FALSE(twoWouldDo);
    EXPECT_EQ(x.front(), 1);
    EXPECT_EQ(x.back(), 150);
    for (const auto& [axis, decimals] :
         {std::pair(ExploreAxis::Depth, 2), std::pair(ExploreAxis::Storage, 3)}) {
        const std::vector<double> y = ExploreYValues(axis, 40);
        const double lo = y.front(), dy = (y.back() - lo) / 39;
        for (size_t j = 0; j < y.size(); ++j) {
            EXPECT_LE(std::fabs(y[j] - (lo + dy * static_cast<double>(j))), dy / 10) << j;
            EXPECT_EQ(std::stod(FixedText(y[j], decimals)), y[j]) << j;
        }
    }
}

// Contour pieces of one square, worked by hand: corners (0,0) and (0,1) without runoff, (1,0) and
// (1,1) with 2 %; a saddle decided by its centre; a faulted corner leaves the square out.
TEST(Explore, ContourOfOneSquare) {
    const double nan = std::nan("");
    const struct {
        std::vector<std::vector<double>> runoff; // [row][column]
        double level;
        std::vector<ContourSegment> expected;
    } cases[] = {
        {{{0, 2}, {0, 2}}, 1, {{0.5, 0, 0.5, 1}}},
        {{{0, 2}, {0, 2}}, 0.5, {{0.25, 0, 0.25, 1}}},
        {{{0, 2}, {0, 2}}, 0, {{0.5, 0, 0.5, 1}}}, // halfway, not at the dry corner
        {{{0, 2}, {0, 2}}, 2, {}},
        // Saddle: the centre (mean 1.5) is above 1, like the corners (0,0) and (1,1), so the
        // pieces cut off the two dry corners (1,0) and (0,1).
        {{{3, 0}, {0, 3}}, 1, {{2.0 / 3, 0, 1, 1.0 / 3}, {1.0 / 3, 1, 0, 2.0 / 3}}},
        {{{0, 2}, {nan, 2}}, 1, {}},
    };
    for (const auto& c : cases) {
        ExploreMap map;
        map.xValues = {1, 150};
        map.yValues = {0.25, 3};
        map.runoff = c.runoff;
        const std::vector<ContourSegment> got = Contour(map, c.level);
        ASSERT_EQ(got.size(), c.expected.size()) << c.level;
        for (size_t k = 0; k < got.size(); ++k)
            for (double ContourSegment::*end : {&ContourSegment::column1, &ContourSegment::row1,
                                                &ContourSegment::column2, &ContourSegment::row2})
                EXPECT_NEAR(got[k].*end, c.expected[k].*end, 1e-12) << c.level;
    }
}

// The "Wetted Diameter" reference panel's ranges as the input page shows them: each edge belongs
// to its package, 0.1 ft past it does not (the class then names a neighbour or the gap).
TEST(Explore, PackageClassAtEveryEdgeOfThePanel) {
    const std::pair<const char*, const char*> panel[] = {
        {"High Pressure Impact (Variable Spacing)", "80 - 110 ft"},
        {"Medium Pressure Impact", "70 - 90 ft"},
        {"Low Pressure Impact", "60 - 70 ft"},
        {"Low Pressure w/Rotators", "50 - 60 ft"},
        {"Low Pressure Spray on Pipeline", "30 - 40 ft"},
        {"Low Pressure Spray on Drop Tube", "20 - 30 ft"},
        {"Low Pressure Spray (180 Degrees)", "16 - 20 ft"},
        {"Ultra Low Pressure (LEPA Spray Mode)", "12 - 18 ft"},
        {"Ultra Low Pressure (LEPA Bubble Mode)", "1 - 2 ft"},
    };
    const auto names = [](double D, const std::string& name) {
        const std::string c = PackageClass(D);
        // "between A and B" and "larger than A" name packages the diameter is not in.
        return c.rfind("between", 0) != 0 && c.rfind("larger", 0) != 0 &&
               c.rfind("smaller", 0) != 0 && c.find(name) != std::string::npos;
    };
    for (const auto& [name, range] : panel) {
        const double low = std::stod(range),
                     high = std::stod(std::string(range).substr(std::string(range).find('-') + 1));
        SCOPED_TRACE(name);
        EXPECT_TRUE(names(low, name));
        EXPECT_TRUE(names(high, name));
        EXPECT_FALSE(names(low - 0.1, name));
        EXPECT_FALSE(names(high + 0.1, name));
    }
    EXPECT_EQ(PackageClass(17),
              "Ultra Low Pressure (LEPA Spray Mode) or Low Pressure Spray (180 Degrees)");
    EXPECT_EQ(PackageClass(45),
              "between Low Pressure Spray on Pipeline and Low Pressure w/Rotators");
    EXPECT_EQ(PackageClass(150), "larger than High Pressure Impact (Variable Spacing)");
}

} // namespace
} // namespace rainfold
