// The checks a design passes before it is computed: order, limits, error or warning, texts.

#include "checks.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace rainfold {
namespace {

using Field = std::string DesignRecord::*;
const Field SYL = &DesignRecord::txtSYL, GPM = &DesignRecord::txtGPM, APPL = &DesignRecord::txtAPPL,
            DIAM = &DesignRecord::txtWetDiam, STORE = &DesignRecord::txtSurfStore,
            RESIDUE = &DesignRecord::txtResidue, KS = &DesignRecord::txtKS,
            HW = &DesignRecord::txtHW, TS = &DesignRecord::txtThetaS, TI = &DesignRecord::txtThetaI,
            OMEGA = &DesignRecord::txtOmega, UK = &DesignRecord::txtUk;
constexpr int kNone = -1;

struct Case {
    std::vector<std::pair<Field, const char*>> set; // changes to a valid design
    std::vector<CheckFailure> expected;
    int option = kConstantSlopeResidue;
    bool greenAmpt = false;
    int family = 3;
};

CheckFailure Err(const char* field, const char* text) {
    return {field, CheckKind::Error, text};
}
CheckFailure Warn(const char* field, const std::string& text,
                  const char* suffix = " is excessive.  Press OK to proceed or Cancel to edit.") {
    return {field, CheckKind::Warning, text + suffix};
}

void Expect(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        DesignRecord d{"",  "",   "",       "",     "",     "",       "1320",  "900",
                       "1", "60", c.family, "",     "",     c.option, "2",     "30",
                       {},  "10", "110",    "0.45", "0.25", "",       ".0002", c.greenAmpt};
        std::string what = "option " + std::to_string(c.option) + ":";
        for (const auto& [field, text] : c.set) {
            d.*field = text;
            what += std::string(" '") + text + "'";
        }
        const std::vector<CheckFailure> got = CheckDesign(d);
        ASSERT_EQ(got.size(), c.expected.size()) << what;
        for (size_t i = 0; i < got.size(); ++i) {
            EXPECT_EQ(got[i].field, c.expected[i].field) << what;
            EXPECT_EQ(got[i].kind, c.expected[i].kind) << what;
            EXPECT_EQ(got[i].message, c.expected[i].message) << what;
        }
    }
}

TEST(CheckDesign, SystemFieldsAndTheirOrder) {
    const char* length = "Invalid system length.";
    // clang-format off
    Expect({
        {{}, {}},
        {{{SYL, "150"}, {GPM, "3000"}, {APPL, "0.25"}, {DIAM, "150"}}, {}}, // limits pass
        {{{SYL, "149.9"}}, {Err("txtSYL", length)}},
        {{{SYL, "   "}}, {Err("txtSYL", length)}},
        {{{SYL, "abc"}}, {Err("txtSYL", length)}},
        {{{SYL, "-5000"}}, {Err("txtSYL", length)}},
        {{{SYL, "3000.01"}}, {Warn("txtSYL", "System length of  3000.01 feet")}},
        // The warning quotes the text as typed, unit word and all.
        {{{SYL, "3500 ft"}}, {Warn("txtSYL", "System length of  3500 ft feet")}},
        {{{SYL, " 1320abc"}}, {}},
        {{{GPM, "99"}}, {Err("txtGPM", "Invalid system capacity.")}},
        {{{GPM, "3001"}}, {Warn("txtGPM", "System capacity of  3001 gpm")}},
        {{{APPL, "0.2"}}, {Err("txtAPPL", "Invalid application amount.")}},
        {{{APPL, "4"}}, {Warn("txtAPPL", "Application rate of  4 inches")}},
        {{{DIAM, "0.9"}}, {Err("txtWetDiam", "Invalid wetted diameter.")}},
        {{{DIAM, "1"}}, {}},
        {{{DIAM, "151"}}, {Warn("txtWetDiam", "Wetted diameter of  151 feet")}},
        {{}, {Err("cboIntakeFamily", "Please select an Intake Family")}, 0, false, kNone},
        {{{UK, ""}}, {}, 0, false, kCustomizedValuesIndex},
        // Warnings accumulate; the first error ends the list.
        {{{SYL, "4000"}, {GPM, "3500"}, {APPL, ""}, {DIAM, "0"}},
         {Warn("txtSYL", "System length of  4000 feet"), Warn("txtGPM", "System capacity of  3500 gpm"),
          Err("txtAPPL", "Invalid application amount.")}, 0, false, kNone},
        {{{SYL, ""}, {GPM, ""}}, {Err("txtSYL", length)}},
        {{{STORE, "50"}}, {Err("txtSurfStore", "Invalid percent slope.")}, 0, false, kNone},
        {{{KS, ""}}, {Err("cboIntakeFamily", "Please select an Intake Family")}, 0, true, kNone},
    });
    // clang-format on
}

TEST(CheckDesign, SurfaceStorageByOption) {
    const char* slope = "Invalid percent slope.";
    const char* residue = "Invalid percent residue.";
    const int user = kUserConstant;
    // clang-format off
    Expect({
        // Percent slope and residue: out of range is an error both ways.
        {{{STORE, "0.1"}}, {}},
        {{{STORE, "0.05"}}, {Err("txtSurfStore", slope)}},
        {{{STORE, "45"}}, {Err("txtSurfStore", slope)}},
        {{{STORE, ""}}, {Err("txtSurfStore", slope)}},
        {{{RESIDUE, "100"}}, {}},
        {{{RESIDUE, "101"}}, {Err("txtResidue", residue)}},
        {{{RESIDUE, "-1"}}, {Err("txtResidue", residue)}},
        {{{RESIDUE, " "}}, {Err("txtResidue", residue)}},
        // Letters read 0, which is not below the low limit 0: only blank text fails.
        {{{RESIDUE, "none"}}, {}},
        // Storage amounts: warnings above the limit, "percent slope" for both fields.
        {{{STORE, "0.5"}, {RESIDUE, "0.4"}}, {}, user},
        {{{STORE, "0"}, {RESIDUE, "0"}}, {}, user},
        {{{STORE, "0.6"}, {RESIDUE, "0"}}, {Warn("txtSurfStore", "Storage of 0.6 inches")}, user},
        {{{STORE, ""}}, {Err("txtSurfStore", slope)}, user},
        {{{STORE, "0"}, {RESIDUE, "-0.1"}}, {Err("txtResidue", slope)}, user},
        {{{STORE, "0"}, {RESIDUE, "0.45"}},
         {Warn("txtResidue", "Residue storage of 0.45 inches is excessive.  Press OK to proceed ", "")}, user},
        // Per-segment options: the two fields are not checked at all.
        {{{STORE, ""}, {RESIDUE, "500"}}, {}, kVariableSlopeResidue},
        {{{STORE, "-3"}, {RESIDUE, ""}}, {}, kUserVariable},
    });
    // clang-format on
}

TEST(CheckDesign, GreenAmptInputsOnlyWhenSwitchedOn) {
    const bool on = true;
    const char* ks = "Invalid saturated hydraulic conductivity.";
    const char* thetaS = "Invalid saturated water content.";
    const char* thetaI = "Invalid initial water content.";
    // clang-format off
    Expect({
        {{{KS, ""}, {HW, ""}, {TS, ""}, {TI, ""}, {OMEGA, "x"}}, {}}, // switch off
        {{}, {}, 0, on},
        {{{KS, "0"}}, {Err("txtKS", ks)}, 0, on},
        {{{KS, ""}, {HW, ""}}, {Err("txtKS", ks)}, 0, on},
        {{{HW, "-1"}}, {Err("txtHW", "Invalid wetting front suction head.")}, 0, on},
        {{{TS, "0"}, {TI, "0"}}, {Err("txtThetaS", thetaS)}, 0, on},
        {{{TS, "1"}}, {}, 0, on},
        {{{TS, "1.01"}}, {Err("txtThetaS", thetaS)}, 0, on},
        {{{TI, "0"}}, {}, 0, on},
        {{{TI, "0.45"}}, {Err("txtThetaI", thetaI)}, 0, on},
        {{{TI, "-0.1"}}, {Err("txtThetaI", thetaI)}, 0, on},
        {{{OMEGA, "-0.001"}}, {}, 0, on},
        {{{OMEGA, "abc"}}, {Err("txtOmega", "Invalid linear variation of water content.")}, 0, on},
    });
    // clang-format on
}

} // namespace
} // namespace rainfold
