// Designs that pass the input checks but that the computation cannot give a meaning to: each is
// reported as a fault with its own message, never computed into nonsense.

#include "calc.h"

#include <gtest/gtest.h>

#include <string>

namespace rainfold {
namespace {

TEST(DegenerateDesigns, AreFaultsWithAMessage) {
    const std::string flow = "The system capacity less 100 gpm must be above 0 gpm.";
    const std::string zero = "K and N must not be 0 for Customized Values.";
    const std::string range = "K must be above 0 and N above -1 for Customized Values.";
    const struct {
        const char *gpm, *k, *n;
        std::string fault; // empty: computes
    } cases[] = {
        {"100", "", "", flow},   // the first case flows 0 gpm, up to rounding
        {"100.4", "", "", flow}, // 0.4 gpm, headed "0 (gpm)"
        {"101", "", "", ""},     // 1 gpm
        {"800", "0", "-0.4", zero},   {"800", "-20", "-0.4", range},
        {"800", "20", "-1", range}, // no finite cumulative intake
        {"800", "20", "-1.5", range}, {"800", "20", "-0.99", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.gpm << " gpm, K " << c.k << ", N " << c.n);
        DesignRecord d;
        d.txtSYL = "1320", d.txtGPM = c.gpm, d.txtAPPL = "1", d.txtWetDiam = "60";
        d.intakeFamilyIndex = *c.k ? kCustomizedValuesIndex : 3;
        d.txtUk = c.k, d.txtUN = c.n;
        d.surfaceOption = kUserConstant, d.txtSurfStore = "0", d.txtResidue = "0";
        Results r;
        const CalcOutcome out = Calc_Results(d, r);
        EXPECT_EQ(out.message, c.fault);
        EXPECT_EQ(out.status, c.fault.empty() ? CalcStatus::Ok : CalcStatus::Fault);
        if (out.ok())
            for (int m = 1; m <= 2; ++m) {
                const double pct = Read(r.PctRunoff.at(1, 10, m));
                EXPECT_TRUE(pct >= 0 && pct <= 100) << pct;
            }
    }
}

} // namespace
} // namespace rainfold
