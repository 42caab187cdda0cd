// The elliptical application pattern and the slope/residue storage tables.

#include "pattern.h"
#include "storage.h"

#include <gtest/gtest.h>

#include <cmath>
#include <utility>

namespace rainfold {
namespace {

constexpr double kH = 0.4;   // half time, h
constexpr double kP = 100.0; // rate slope, mm/h per h: a peak rate of 40 mm/h
const double kS = (kPi / 2) * (kH * kH);

TEST(ArcSin, KnownAngles) {
    EXPECT_DOUBLE_EQ(ArcSin(0.0), 0.0);
    EXPECT_DOUBLE_EQ(ArcSin(0.5), kPi / 6);
    EXPECT_DOUBLE_EQ(ArcSin(-0.5), -kPi / 6);
    EXPECT_NEAR(ArcSin(std::sqrt(3.0) / 2), kPi / 3, 1e-15);
    EXPECT_NEAR(ArcSin(0.999999), std::asin(0.999999), 1e-9);
}

TEST(ApplicationRate, EllipseShape) {
    struct Case {
        double t, expected;
    };
    const Case cases[] = {
        {0.0, 0.0},                                 // first wetting
        {kH / 2, kP * kH * std::sqrt(3.0) / 2},     // sqrt(H^2 - H^2 / 4)
        {kH, kP * kH},                              // peak: the peak rate 40 mm/h
        {3 * kH / 2, kP * kH * std::sqrt(3.0) / 2}, // symmetric about the peak
        {2 * kH, 0.0},                              // end of the pass
        {2.5 * kH, 0.0},                            // after the pass
    };
    for (const Case& c : cases)
        EXPECT_NEAR(ApplicationRate(c.t, kH, kP), c.expected, 1e-12) << "t = " << c.t;
}

TEST(AppliedDepth, InsideThePassAndAfterIt) {
    const double full = kPi / 2 * kP * kH * kH; // (Pi / 2) * PeakRate * H
    // Truncated, the arcsine term becomes H^2 at the end: P H^2 (Pi/4 + 1/2), about 0.818 of the
    // area; the full ellipse's becomes H^2 Pi / 2.
    const double truncated = kP * kH * kH * (kPi / 4 + 0.5);
    EXPECT_NEAR(truncated / full, 0.818, 5e-4);
    for (EndOfPass rule : {EndOfPass::Truncated, EndOfPass::FullEllipse}) {
        // Half the pattern's area has fallen by the peak.
        EXPECT_NEAR(AppliedDepth(kH, kH, kP, kS, rule), full / 2, 1e-12);
        // At H / 2: 0.5 P (S - (H/2)(H sqrt(3)/2) - H^2 Pi/6) = 0.5 P H^2 (Pi/3 - sqrt(3)/4).
        EXPECT_NEAR(AppliedDepth(kH / 2, kH, kP, kS, rule),
                    0.5 * kP * kH * kH * (kPi / 3 - std::sqrt(3.0) / 4), 1e-12);
        // The ellipse is symmetric: D(t) + D(2H - t) is the whole area.
        for (double t : {0.01, 0.1, 0.3, 0.55, 0.79})
            EXPECT_NEAR(AppliedDepth(t, kH, kP, kS, rule) +
                            AppliedDepth(2 * kH - t, kH, kP, kS, rule),
                        full, 1e-11)
                << "t = " << t;
        // Just before the end it approaches the whole area under both rules.
        EXPECT_NEAR(AppliedDepth(2 * kH * (1 - 1e-12), kH, kP, kS, rule), full, 1e-4);
        for (double t : {2 * kH, 2.2 * kH, 5 * kH})
            EXPECT_NEAR(AppliedDepth(t, kH, kP, kS, rule),
                        rule == EndOfPass::Truncated ? truncated : full, 1e-12);
    }
}

TEST(SurfaceStorage, SlopeAndResidueBands) {
    const std::pair<double, double> slope[] = {{-2, 0.5},     {0, 0.5},  {1, 0.5},
                                               {1.0001, 0.3}, {3, 0.3},  {3.01, 0.1},
                                               {5, 0.1},      {5.01, 0}, {40, 0}};
    const std::pair<double, double> residue[] = {
        {0, 0},       {10, 0},    {10.01, 0.01}, {20, 0.01}, {20.5, 0.03}, {30, 0.03},
        {30.5, 0.07}, {40, 0.07}, {41, 0.12},    {50, 0.12}, {55, 0.18},   {60, 0.18},
        {60.1, 0.24}, {70, 0.24}, {70.5, 0.35},  {100, 0.35}};
    for (const auto& [percent, inches] : slope)
        EXPECT_EQ(SlopeStorage(percent), inches) << "slope " << percent;
    for (const auto& [percent, inches] : residue)
        EXPECT_EQ(ResidueStorage(percent), inches) << "residue " << percent;
}

} // namespace
} // namespace rainfold
