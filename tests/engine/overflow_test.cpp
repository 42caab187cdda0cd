// Numbers near the top of the double range: an overflow anywhere is the fault "Overflow.", and no
// result holds an infinity.

#include "calc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <utility>
#include <vector>

namespace rainfold {
namespace {

using Field = std::string DesignRecord::*;

TEST(CalcResults, NumbersBeyondTheDoubleRangeAreOverflow) {
    // The largest double is about 1.7977e308; 25.4 mm to the inch.
    const struct {
        int option;
        std::vector<std::pair<Field, const char*>> typed; // over a sound design
        const char* segment;                              // column 1 of every segment row
        bool overflows;
    } cases[] = {
        {kUserConstant, {{&DesignRecord::txtSurfStore, "7.1e306"}}, "0", true}, // 1.8034e308 mm
        {kUserConstant,
         {{&DesignRecord::txtSurfStore, "5e306"}, {&DesignRecord::txtResidue, "5e306"}},
         "0",
         true},                               // the sum, 2.54e308 mm
        {kUserVariable, {}, "7.1e306", true}, // a segment row
        {kUserVariable, {}, "1e400", true},   // past the range as typed
        {kVariableSlopeResidue, {}, "1e400", true},
        {kUserVariable, {}, "-7e306", true}, // fits, but 100 times the runoff does not
        // Fields read whatever the model: a number no double holds cannot be read.
        {kConstantSlopeResidue, {{&DesignRecord::txtKS, "1e400"}}, "0", true},
        {kConstantSlopeResidue, {{&DesignRecord::txtOmega, "-1e400"}}, "0", true},
        {kConstantSlopeResidue,
         {{&DesignRecord::txtThetaS, "1e308"}, {&DesignRecord::txtThetaI, "-1e308"}},
         "0",
         true}, // their difference, 2e308
        {kConstantSlopeResidue, {{&DesignRecord::txtWetDiam, "-1e400"}}, "0", true},
        {kConstantSlopeResidue, {{&DesignRecord::txtResidue, "1e400"}}, "0", true},
        {kUserConstant, {{&DesignRecord::txtSurfStore, "7e306"}}, "0", false}, // 1.778e308 mm
    };
    for (const auto& c : cases) {
        DesignRecord d;
        d.txtSYL = "1300";
        d.txtGPM = "800";
        d.txtAPPL = "1";
        d.txtWetDiam = "40";
        d.intakeFamilyIndex = 2;
        d.surfaceOption = c.option;
        d.txtSurfStore = d.txtResidue = "0";
        std::string what = std::to_string(c.option) + " " + c.segment;
        for (const auto& [field, text] : c.typed) {
            d.*field = text;
            what += std::string(" ") + text;
        }
        for (SegmentRow& row : d.segments)
            row = {c.segment, "0"};
        Results r;
        const CalcOutcome out = Calc_Results(d, r);
        EXPECT_EQ(out.status, c.overflows ? CalcStatus::Fault : CalcStatus::Ok) << what;
        EXPECT_EQ(out.message, c.overflows ? "Overflow." : "") << what;
        for (const Cell* cell : {&r.GAKs, &r.GAOmega, &r.GADeltaTheta, &r.SurfStore[1]})
            EXPECT_TRUE(std::isfinite(Read(*cell))) << what;
        if (!c.overflows) {
            EXPECT_DOUBLE_EQ(Read(r.SurfStore[1]), 1.778e308) << what;
        }
    }
}

} // namespace
} // namespace rainfold
