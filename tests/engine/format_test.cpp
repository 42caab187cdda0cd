// Display conversions: fixed decimals with halves away from zero, and plain number text.

#include "format.h"

#include <gtest/gtest.h>

namespace rainfold {
namespace {

TEST(FormatFixed, RoundsHalvesAwayFromZeroOnFifteenDigits) {
    const struct {
        double x;
        int decimals;
        const char* expected;
    } cases[] = {
        // clang-format off
        {0, 1, "0.0"}, {12.34, 1, "12.3"},
        {12.35, 1, "12.4"}, // 12.3499999999999996 in binary, 12.35 to 15 digits
        {0.15, 1, "0.2"},   // 0.1499999999999999944
        {2.675, 2, "2.68"}, // 2.67499999999999982
        {0.125, 2, "0.13"}, {-0.125, 2, "-0.13"}, // an exact half: away from zero, not to even
        {2.5, 0, "3"}, {3.5, 0, "4"}, {-2.5, 0, "-3"}, {899.9999999, 0, "900"},
        {999.95, 1, "1000.0"}, {0.9996, 2, "1.00"}, {1.23456, 4, "1.2346"}, {7, 4, "7.0000"},
        {0.006, 2, "0.01"}, // the rounding digit is the first significant one
        {0.004, 2, "0.00"},
        {0.0006, 2, "0.00"}, // every significant digit below the rounding digit
        {1e-20, 2, "0.00"}, {123456789.125, 2, "123456789.13"},
        // clang-format on
    };
    for (const auto& c : cases)
        EXPECT_EQ(FormatFixed(c.x, c.decimals), c.expected) << c.x << " to " << c.decimals;
}

TEST(PlainNumber, FifteenSignificantDigits) {
    const struct {
        double x;
        const char* expected;
    } cases[] = {
        // clang-format off
        {0, "0"}, {132, "132"}, {-2.5, "-2.5"},
        {0.1 + 0.2, "0.3"},          // 0.30000000000000004
        {396.00000000000006, "396"}, // 3 * 0.1 * (1320 * 0.3048) / 0.3048
        {9.999999999999998, "10"},   // carries into a new digit
        {1.0 / 3, "0.333333333333333"}, {2.0 / 3, "0.666666666666667"},
        {999999999999999, "999999999999999"}, {1e15, "1E+15"},
        {123456789012345678.0, "1.23456789012346E+17"}, {1e-5, "1E-05"}, {2.5e-7, "2.5E-07"},
        // clang-format on
    };
    for (const auto& c : cases)
        EXPECT_EQ(PlainNumber(c.x), c.expected) << c.expected;
}

} // namespace
} // namespace rainfold
