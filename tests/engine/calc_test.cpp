// The runoff computation from a design to the results record.

#include "calc.h"
#include "pattern.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>

namespace rainfold {
namespace {

struct RefRow {
    int design, c, j, m;
    double hours, store, peak, half;
    int flag;
    double start, end, pct;
};
#include "reference_runoff.inc"

// A design that ponds and runs off at most positions (reference design 0).
DesignRecord Base(int listIndex = 3) {
    DesignRecord d = kRefDesigns[0];
    d.intakeFamilyIndex = listIndex;
    return d;
}

Results Compute(const DesignRecord& d, CalcStatus expected = CalcStatus::Ok) {
    Results r;
    const CalcOutcome out = Calc_Results(d, r);
    EXPECT_EQ(out.status, expected) << out.message;
    return r;
}

TEST(CalcResults, MatchesIndependentRecomputation) {
    for (int n = 0; n < static_cast<int>(std::size(kRefDesigns)); ++n) {
        const Results r = Compute(kRefDesigns[n]);
        for (const RefRow& row : kRefRows) {
            if (row.design != n)
                continue;
            SCOPED_TRACE(testing::Message() << "design " << n << " case " << row.c << " position "
                                            << row.j << " slot " << row.m);
            const std::pair<Cell, double> cells[] = {
                {r.HoursPerRev[row.c], row.hours},
                {r.SurfStore[row.j], row.store},
                {r.PeakRate.at(row.c, row.j, row.m), row.peak},
                {r.HalfTime.at(row.c, row.j, row.m), row.half},
                {r.PondFlag.at(row.c, row.j, row.m), row.flag},
                {r.PondStart.at(row.c, row.j, row.m), row.start},
                {r.PondEnd.at(row.c, row.j, row.m), row.end},
                {r.PctRunoff.at(row.c, row.j, row.m), row.pct}};
            const char* names[] = {"hours", "store", "peak", "half", "flag", "start", "end", "pct"};
            for (size_t i = 0; i < std::size(cells); ++i) {
                ASSERT_TRUE(cells[i].first.has_value()) << names[i];
                EXPECT_NEAR(*cells[i].first, cells[i].second, 1e-9 * std::fabs(cells[i].second))
                    << names[i];
            }
        }
    }
}

TEST(ReadEngineInputs, UnitConversions) {
    const struct {
        const char *syl, *gpm, *appl, *wet;
        int index;
        EngineInputs expected;
    } cases[] = {
        {"1320", "900", "1", "60", 3, {402.336, 44.163, 25.4, 9.144, 4}},
        {"1000", "200", "2.5", "1.0", 0, {304.8, 0, 63.5, 0.16764, 1}},    // raised to 1.1 ft
        {"1000", "200", "2.5", "1.09", 7, {304.8, 0, 63.5, 0.16764, 8}},   // raised to 1.1 ft
        {"1000", "100", "0", "1.12", -1, {304.8, -6.309, 0, 0.170688, 0}}, // 0.56 ft kept
        {"", "abc", "1in", " 40 ft", 6, {0, -12.618, 25.4, 6.096, 7}},
    };
    for (const auto& c : cases) {
        DesignRecord d;
        d.txtSYL = c.syl, d.txtGPM = c.gpm, d.txtAPPL = c.appl, d.txtWetDiam = c.wet;
        d.intakeFamilyIndex = c.index;
        const EngineInputs e = ReadEngineInputs(d);
        for (double EngineInputs::*x :
             {&EngineInputs::L, &EngineInputs::Q0, &EngineInputs::d, &EngineInputs::R})
            EXPECT_NEAR(e.*x, c.expected.*x, 1e-12)
                << c.syl << " " << c.gpm << " " << c.appl << " " << c.wet;
        EXPECT_EQ(e.F, c.expected.F) << c.index;
    }
}

// Same family in two runs: every result of the two slots agrees.
void ExpectSameSlot(const Results& a, int slotA, const Results& b, int slotB, const char* what) {
    for (int c = 1; c <= 3; ++c)
        for (int j = 1; j <= 10; ++j)
            for (const SlotArray Results::*arr :
                 {&Results::PondFlag, &Results::PondStart, &Results::PondEnd, &Results::PctRunoff})
                EXPECT_EQ((a.*arr).at(c, j, slotA), (b.*arr).at(c, j, slotB)) << what;
}

// Which family each slot runs is in the reference rows, for every entry of the list; "Customized
// Values" records the typed K and N (ignored for a listed family) and leaves slot 3 uncomputed.
TEST(CalcResults, TypedKAndN) {
    for (int index : {3, kCustomizedValuesIndex}) {
        DesignRecord d = Base(index);
        d.txtUk = "34.163", d.txtUN = "-0.345";
        const Results r = Compute(d);
        const bool custom = index == kCustomizedValuesIndex;
        EXPECT_EQ(Read(r.UserK), custom ? 34.163 : 0);
        EXPECT_EQ(Read(r.UserN), custom ? -0.345 : 0);
        for (int c = 1; c <= 3; ++c)
            for (int j = 1; j <= 10; ++j)
                for (const Cell& cell : {r.PctRunoff.at(c, j, 3), r.PeakRate.at(c, j, 3)})
                    EXPECT_EQ(cell.has_value(), !custom);
    }
}

// A second run keeps the slots it does not reach; a refused run keeps them all (the refusals
// themselves: refused_design_test.cpp).
TEST(CalcResults, SecondRunKeepsWhatItDoesNotReach) {
    Results r = Compute(Base(3));
    const Results first = r;
    for (const auto& [index, k] : {std::pair{-1, "20"}, {kCustomizedValuesIndex, "0"}}) {
        DesignRecord refused = Base(index);
        refused.txtUk = k, refused.txtUN = "-0.4";
        EXPECT_FALSE(Calc_Results(refused, r).ok());
        ExpectSameSlot(r, 2, first, 2, "refused");
    }
    DesignRecord custom = Base(kCustomizedValuesIndex);
    custom.txtUk = "20", custom.txtUN = "-0.4";
    ASSERT_TRUE(Calc_Results(custom, r).ok());
    ExpectSameSlot(r, 3, first, 3, "slot 3 kept from the first run");
    ExpectSameSlot(r, 1, Compute(Base(6)), 3, "slot 1 overwritten with family 7");
    EXPECT_NE(r.PondStart.at(2, 10, 2), first.PondStart.at(2, 10, 2));
}

} // namespace
} // namespace rainfold
