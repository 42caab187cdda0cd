// Number conversions: fixed decimals with halves away from zero, plain number text, the shortest
// text that reads back, and decimal reading; all with a point under any locale.

#include "design.h"
#include "format.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>
#include <string>

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

TEST(ParseDecimal, ReadsWholeDecimalNumbersOnly) {
    const double inf = std::numeric_limits<double>::infinity();
    const struct {
        const char* text;
        bool ok;
        double value;
    } cases[] = {
        // clang-format off
        {"0.45", true, 0.45}, {"-12.5", true, -12.5}, {"+3", true, 3}, {".5", true, 0.5},
        {"5.", true, 5}, {"1e-3", true, 0.001}, {"2.5E+2", true, 250}, {"0800", true, 800},
        {"1e400", true, inf}, {"-1e400", true, -inf}, {"1e-400", true, 0}, {"0e999999", true, 0},
        {"4.9406564584124654e-324", true, 4.9406564584124654e-324}, // the smallest subnormal
        {"0,45", false, 0}, {"1,5", false, 0}, {"1_300", false, 0}, {"1d3", false, 0},
        {"0x10", false, 0}, {"inf", false, 0}, {"nan", false, 0}, {"1e", false, 0},
        {" 1", false, 0}, {"1 ", false, 0}, {"", false, 0}, {"-", false, 0}, {".", false, 0},
        {"1.2.3", false, 0}, {"++1", false, 0},
        // clang-format on
    };
    for (const auto& c : cases) {
        double value = -7;
        EXPECT_EQ(ParseDecimal(c.text, value), c.ok) << c.text;
        EXPECT_EQ(value, c.ok ? c.value : -7) << c.text;
    }
}

TEST(ShortestText, ReadsBackToTheSameDouble) {
    const struct {
        double x;
        const char* expected;
    } cases[] = {
        {7.874, "7.874"},
        {800.0000000000001, "800.0000000000001"},
        {0.1 + 0.2, "0.30000000000000004"},
        {25.4, "25.4"},
        {1e300, "1e+300"},
        {-0.5, "-0.5"},
        {3, "3"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(ShortestText(c.x), c.expected);
        double back = 0;
        ASSERT_TRUE(ParseDecimal(ShortestText(c.x), back));
        EXPECT_EQ(back, c.x);
    }
    EXPECT_EQ(FixedText(2.675, 2), "2.67"); // the binary value, below the half
    EXPECT_EQ(SignificantText(1.0 / 3, 6), "0.333333");
}

// A desktop with a comma as its decimal mark (Qt hands the C library the user's locale at start-up)
// must read, show and save exactly what an English one does.
TEST(NumbersUnderACommaLocale, ReadAndWriteWithAPoint) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    // German, by its POSIX name or by either of its Windows names.
    bool german = false;
    for (const char* name : {"de_DE.UTF-8", "German_Germany.1252", "de-DE"})
        german = german || std::setlocale(LC_ALL, name) != nullptr;
    ASSERT_TRUE(german) << "the de_DE.UTF-8 locale is not installed; tools/setup.sh generates it";
    const double theta = Val("0.45");
    const std::string fixed = FormatFixed(0.3125, 2), plain = PlainNumber(1.5),
                      shortest = ShortestText(0.31), significant = SignificantText(0.125, 17);
    double parsed = 0;
    const bool read = ParseDecimal("2.5", parsed);
    const char mark = *std::localeconv()->decimal_point; // the locale is in force
    std::setlocale(LC_ALL, before.c_str());
    EXPECT_EQ(mark, ',');
    EXPECT_EQ(theta, 0.45);
    EXPECT_EQ(fixed, "0.31");
    EXPECT_EQ(plain, "1.5");
    EXPECT_EQ(shortest, "0.31");
    EXPECT_EQ(significant, "0.125");
    EXPECT_TRUE(read);
    EXPECT_EQ(parsed, 2.5);
}

} // namespace
} // namespace rainfold
