// Designs the computation cannot give a meaning to (most pass the input checks), and numbers near
// the top of the double range: each is a fault with its own message ("Overflow." for any overflow),
// never computed into nonsense, an infinity or a NaN, and what stops the computation before any
// position stops the explorer's probe with the same message.

#include "calc.h"
#include "explore.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace rainfold {
namespace {

using D = DesignRecord;
using Typed = std::vector<std::pair<std::string D::*, const char*>>;

TEST(RefusedDesigns, AreFaultsWithTheirMessage) {
    const std::string flow = "The system capacity less 100 gpm must be above 0 gpm.";
    const std::string zero = "K and N must not be 0 for Customized Values.";
    const std::string range = "K must be above 0 and N above -1 for Customized Values.";
    const std::string over = "Overflow.";
    const std::string ks = "Invalid saturated hydraulic conductivity.";
    const int custom = kCustomizedValuesIndex;
    // The largest double is about 1.7977e308; 25.4 mm to the inch.
    const struct {
        int option;
        Typed typed;         // over a sound design
        const char* segment; // column 1 of every segment row
        std::string fault;   // empty: computes
        int family = 2;
        bool greenAmpt = false;
        bool atAPosition = false; // met past the probe's reading, at a position
    } cases[] = {
        // No length: 0 / 0 in the peak rate, met at the first position; blank reads as 0.
        {kUserConstant, {{&D::txtSYL, "0"}}, "0", over, 2, false, true},
        {kUserConstant, {{&D::txtSYL, ""}}, "0", over, 2, false, true},
        {kUserConstant, {{&D::txtGPM, "50"}}, "0", flow},
        {kUserConstant, {{&D::txtGPM, "100"}}, "0", flow},   // 0 gpm, up to rounding
        {kUserConstant, {{&D::txtGPM, "100.4"}}, "0", flow}, // 0.4 gpm, headed "0 (gpm)"
        {kUserConstant, {{&D::txtGPM, "101"}}, "0", ""},     // 1 gpm
        {kUserConstant, {}, "0", kSelectFamilyMessage, -1},
        {kUserConstant, {{&D::txtUk, "0"}, {&D::txtUN, "-0.4"}}, "0", zero, custom},
        {kUserConstant, {{&D::txtUk, "20"}, {&D::txtUN, "0"}}, "0", zero, custom},
        {kUserConstant, {{&D::txtUk, "-20"}, {&D::txtUN, "-0.4"}}, "0", range, custom},
        // An N of -1 or less has no finite cumulative intake.
        {kUserConstant, {{&D::txtUk, "20"}, {&D::txtUN, "-1"}}, "0", range, custom},
        {kUserConstant, {{&D::txtUk, "20"}, {&D::txtUN, "-1.5"}}, "0", range, custom},
        {kUserConstant, {{&D::txtUk, "20"}, {&D::txtUN, "-0.99"}}, "0", "", custom},
        {kUserConstant, {{&D::txtKS, "0"}}, "0", ks, 2, true},
        {kUserConstant, {{&D::txtSurfStore, "7.1e306"}}, "0", over}, // 1.8034e308 mm
        {kUserConstant, {{&D::txtSurfStore, "5e306"}, {&D::txtResidue, "5e306"}}, "0", over},
        {kUserVariable, {}, "7.1e306", over}, // a segment row
        {kUserVariable, {}, "1e400", over},   // past the range as typed
        {kVariableSlopeResidue, {}, "1e400", over},
        {kUserVariable, {}, "-7e306", over, 2, false, true}, // 100 times the runoff overflows
        // Fields read whatever the model: a number no double holds cannot be read.
        {kConstantSlopeResidue, {{&D::txtKS, "1e400"}}, "0", over},
        {kConstantSlopeResidue, {{&D::txtOmega, "-1e400"}}, "0", over},
        {kConstantSlopeResidue, {{&D::txtThetaS, "1e308"}, {&D::txtThetaI, "-1e308"}}, "0", over},
        {kConstantSlopeResidue, {{&D::txtWetDiam, "-1e400"}}, "0", over},
        {kConstantSlopeResidue, {{&D::txtResidue, "1e400"}}, "0", over},
        {kUserConstant, {{&D::txtSurfStore, "7e306"}}, "0", ""}, // 1.778e308 mm
    };
    for (const auto& c : cases) {
        D d;
        d.txtSYL = "1300", d.txtGPM = "800", d.txtAPPL = "1", d.txtWetDiam = "40";
        d.intakeFamilyIndex = c.family, d.surfaceOption = c.option, d.greenAmpt = c.greenAmpt;
        d.txtSurfStore = d.txtResidue = "0";
        d.txtKS = "10", d.txtHW = "110", d.txtThetaS = "0.45", d.txtThetaI = "0.25";
        d.txtOmega = "0.0002";
        std::string what = std::to_string(c.option) + " " + c.segment;
        for (const auto& [field, text] : c.typed)
            d.*field = text, what += std::string(" ") + text;
        for (SegmentRow& row : d.segments)
            row = {c.segment, "0"};
        SCOPED_TRACE(what);
        Results r;
        const CalcOutcome out = Calc_Results(d, r);
        EXPECT_EQ(out.message, c.fault);
        EXPECT_EQ(out.status, c.fault.empty() ? CalcStatus::Ok
                              : c.family < 0  ? CalcStatus::NoFamily
                                              : CalcStatus::Fault);
        for (const Cell* cell : {&r.GAKs, &r.GAOmega, &r.GADeltaTheta, &r.SurfStore[1]})
            EXPECT_TRUE(std::isfinite(Read(*cell)));
        for (int k = 1; k <= 3 * 10 * 3; ++k)
            for (const SlotArray* a :
                 {&r.PeakRate, &r.HalfTime, &r.PondStart, &r.PondEnd, &r.PctRunoff})
                EXPECT_TRUE(std::isfinite(Read(a->at(1 + k % 3, 1 + k / 3 % 10, 1 + k / 30 % 3))));
        std::string refused;
        EXPECT_EQ(!RunoffProbe::Make(d, refused), !c.fault.empty() && !c.atAPosition);
        EXPECT_EQ(refused, c.atAPosition ? "" : c.fault);
        if (!out.ok())
            continue;
        for (int m = 1; m <= 2; ++m) {
            const double pct = Read(r.PctRunoff.at(1, 10, m));
            EXPECT_TRUE(pct >= 0 && pct <= 100) << pct;
        }
        if (c.option == kUserConstant) {
            EXPECT_DOUBLE_EQ(Read(r.SurfStore[1]),
                             25.4 * (std::stod(d.txtSurfStore) + std::stod(d.txtResidue)));
        }
    }
}

} // namespace
} // namespace rainfold
