// The explorer's numbers against the full computation on the example designs: its weighted
// average is the results page's to the last bit (random designs: property_test.cpp), its map is
// made of those numbers, and its answers are the ones a scan of every step finds.

#include "design_file.h"
#include "explore.h"
#include "page_average.h"

#include <gtest/gtest.h>

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
    if (IsBlank(d.txtKS)) // a design file made for the intake families
        d.txtKS = "10", d.txtHW = "110";
    return d;
}

// Each answer against a scan of every step of its range; a soil that runs off at every point
// (about 0.5 mm/h taken in, no storage) meets a target of 0 nowhere.
TEST(Explore, AnswersAreTheScansAnswers) {
    const struct {
        const char* file;
        bool greenAmpt;
        double target;
        bool hardSoil = false;
    } cases[] = {
        {"spray-1300ft-800gpm.rfd", false, 0.0}, {"spray-1300ft-800gpm.rfd", false, 2.5},
        {"lepa-1320ft-900gpm.rfd", false, 10.0}, {"customized-variable-storage.rfd", false, 1},
        {"spray-1300ft-800gpm.rfd", true, 5.0},  {"spray-1300ft-800gpm.rfd", false, 0, true},
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
        std::optional<double> smallest, largest;
        for (int tenths = 10; tenths <= 1500 && !smallest; ++tenths)
            if (probe->WeightedAverage(tenths / 10.0, probe->designDepth()) <= c.target)
                smallest = tenths / 10.0;
        for (int hundredths = 300; hundredths >= 25 && !largest; --hundredths)
            if (probe->WeightedAverage(probe->designDiameter(), hundredths / 100.0) <= c.target)
                largest = hundredths / 100.0;
        SCOPED_TRACE(testing::Message() << c.file << " " << c.target);
        EXPECT_EQ(!smallest && !largest, c.hardSoil);
        EXPECT_EQ(SmallestWettedDiameter(*probe, probe->designDepth(), c.target), smallest);
        EXPECT_EQ(LargestDepth(*probe, probe->designDiameter(), c.target), largest);
    }
}

// The map is the probe's numbers at its grid, and its CSV holds them with a header row.
TEST(Explore, MapAndCsv) {
    const DesignRecord d = Example("spray-1300ft-800gpm.rfd", false);
    std::string why;
    const std::optional<RunoffProbe> probe = RunoffProbe::Make(d, why);
    ASSERT_TRUE(probe);
    for (ExploreAxis axis : {ExploreAxis::Depth, ExploreAxis::Storage}) {
        const ExploreMap map = ComputeExploreMap(*probe, axis, 5, 3, nullptr, 2);
        // Evenly spaced on a logarithmic scale, from 1 to 150 ft exactly.
        ASSERT_EQ(map.xValues.size(), 5u);
        EXPECT_EQ(map.xValues.front(), 1);
        EXPECT_EQ(map.xValues.back(), 150);
        for (size_t i = 1; i < 5; ++i)
            EXPECT_NEAR(map.xValues[i] / map.xValues[i - 1], std::pow(150, 0.25), 1e-12);
        const bool depth = axis == ExploreAxis::Depth;
        ASSERT_EQ(map.yValues,
                  (depth ? std::vector<double>{0.25, 1.625, 3} : std::vector<double>{0, 0.5, 1}));
        std::istringstream csv(ExploreMapCsv(map));
        std::string line, field;
        std::getline(csv, line);
        EXPECT_EQ(line.substr(0, line.find(',')),
                  depth ? "Depth per pass (in) \\ Wetted diameter (ft)"
                        : "Storage (in) \\ Wetted diameter (ft)");
        for (size_t row = 0; row < 3; ++row) {
            ASSERT_TRUE(std::getline(csv, line));
            std::istringstream fields(line);
            std::getline(fields, field, ',');
            EXPECT_EQ(std::stod(field), map.yValues[row]);
            for (size_t column = 0; column < 5; ++column) {
                ASSERT_TRUE(std::getline(fields, field, ','));
                const DesignRecord at = DesignAt(d, axis, map.xValues[column], map.yValues[row]);
                EXPECT_EQ(std::stod(field), map.runoff[row][column]);
                EXPECT_TRUE(SameBits(map.runoff[row][column], *PageAverage(at)));
            }
            EXPECT_FALSE(std::getline(fields, field, ','));
        }
        EXPECT_FALSE(std::getline(csv, line));
    }
    ExploreProgress cancelled;
    cancelled.cancel = true;
    EXPECT_TRUE(ComputeExploreMap(*probe, ExploreAxis::Depth, 5, 3, &cancelled).cancelled);
    EXPECT_EQ(cancelled.done, 0);
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

// The ranges of the "Wetted Diameter" reference panel.
TEST(Explore, PackageClass) {
    const std::pair<double, const char*> cases[] = {
        {1.5, "Ultra Low Pressure (LEPA Bubble Mode)"},
        {17, "Ultra Low Pressure (LEPA Spray Mode) or Low Pressure Spray (180 Degrees)"},
        {45, "between Low Pressure Spray on Pipeline and Low Pressure w/Rotators"},
        {60, "Low Pressure w/Rotators or Low Pressure Impact"},
        {85, "Medium Pressure Impact or High Pressure Impact (Variable Spacing)"},
        {150, "larger than High Pressure Impact (Variable Spacing)"},
    };
    for (const auto& [diameter, name] : cases)
        EXPECT_EQ(PackageClass(diameter), name) << diameter;
}

} // namespace
} // namespace rainfold
