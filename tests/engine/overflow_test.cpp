// Numbers near the top of the double range: an overflow anywhere is the fault "Overflow.", and no
// result holds an infinity.

#include "calc.h"

#include <gtest/gtest.h>

#include <cmath>

namespace rainfold {
namespace {

TEST(CalcResults, StorageBeyondTheDoubleRangeIsOverflow) {
    // The largest double is about 1.7977e308; 25.4 mm to the inch.
    const struct {
        int option;
        const char *surface, *residue, *segment;
        bool overflows;
    } cases[] = {
        {kUserConstant, "7.1e306", "0", "0", true},   // 1.8034e308 mm
        {kUserConstant, "5e306", "5e306", "0", true}, // the sum, 2.54e308 mm
        {kUserVariable, "0", "0", "7.1e306", true},   // a segment row
        {kUserVariable, "0", "0", "1e400", true},     // past the range as typed
        {kUserConstant, "7e306", "0", "0", false},    // 1.778e308 mm still fits
        {kUserVariable, "0", "0", "-7e306", true},    // fits, but 100 times the runoff does not
    };
    for (const auto& c : cases) {
        DesignRecord d;
        d.txtSYL = "1300";
        d.txtGPM = "800";
        d.txtAPPL = "1";
        d.txtWetDiam = "40";
        d.intakeFamilyIndex = 2;
        d.surfaceOption = c.option;
        d.txtSurfStore = c.surface;
        d.txtResidue = c.residue;
        for (SegmentRow& row : d.segments)
            row = {c.segment, "0"};
        Results r;
        const CalcOutcome out = Calc_Results(d, r);
        const std::string what = std::string(c.surface) + " " + c.residue + " " + c.segment;
        EXPECT_EQ(out.status, c.overflows ? CalcStatus::Fault : CalcStatus::Ok) << what;
        EXPECT_EQ(out.message, c.overflows ? "Overflow." : "") << what;
        for (const Cell& store : r.SurfStore)
            EXPECT_TRUE(std::isfinite(Read(store))) << what;
        if (!c.overflows) {
            EXPECT_DOUBLE_EQ(Read(r.SurfStore[1]), 1.778e308) << what;
        }
    }
}

} // namespace
} // namespace rainfold
