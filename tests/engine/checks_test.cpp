// The checks a design passes before it is computed: order, limits, error or warning, texts.

#include "checks.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace rainfold {
namespace {

DesignRecord Valid() {
    DesignRecord d;
    d.txtSYL = "1320";
    d.txtGPM = "900";
    d.txtAPPL = "1";
    d.txtWetDiam = "60";
    d.intakeFamilyIndex = 3;
    d.surfaceOption = kConstantSlopeResidue;
    d.txtSurfStore = "2";
    d.txtResidue = "30";
    d.txtKS = "10";
    d.txtHW = "110";
    d.txtThetaS = "0.45";
    d.txtThetaI = "0.25";
    d.txtOmega = ".0002";
    return d;
}

CheckFailure Err(const char* field, const char* text) {
    return {field, CheckKind::Error, text};
}
CheckFailure Warn(const char* field, const std::string& text) {
    return {field, CheckKind::Warning, text};
}

const char* const kEdit = " is excessive.  Press OK to proceed or Cancel to edit.";

struct Case {
    const char* what;
    std::function<void(DesignRecord&)> edit;
    std::vector<CheckFailure> expected;
};

void Expect(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        DesignRecord d = Valid();
        c.edit(d);
        const std::vector<CheckFailure> got = CheckDesign(d);
        ASSERT_EQ(got.size(), c.expected.size()) << c.what;
        for (size_t i = 0; i < got.size(); ++i) {
            EXPECT_EQ(got[i].field, c.expected[i].field) << c.what;
            EXPECT_EQ(got[i].kind, c.expected[i].kind) << c.what;
            EXPECT_EQ(got[i].message, c.expected[i].message) << c.what;
        }
    }
}

TEST(CheckDesign, SystemFields) {
    const std::string syl = std::string(" feet") + kEdit;
    Expect({
        {"valid design", [](DesignRecord&) {}, {}},
        {"limits pass",
         [](DesignRecord& d) {
             d.txtSYL = "150";
             d.txtGPM = "3000";
             d.txtAPPL = "0.25";
             d.txtWetDiam = "150";
         },
         {}},
        {"length 149.9",
         [](DesignRecord& d) { d.txtSYL = "149.9"; },
         {Err("txtSYL", "Invalid system length.")}},
        {"length blank",
         [](DesignRecord& d) { d.txtSYL = "   "; },
         {Err("txtSYL", "Invalid system length.")}},
        {"length letters",
         [](DesignRecord& d) { d.txtSYL = "abc"; },
         {Err("txtSYL", "Invalid system length.")}},
        {"length negative",
         [](DesignRecord& d) { d.txtSYL = "-5000"; },
         {Err("txtSYL", "Invalid system length.")}},
        {"length 3000.01",
         [](DesignRecord& d) { d.txtSYL = "3000.01"; },
         {Warn("txtSYL", "System length of  3000.01" + syl)}},
        {"warning quotes the text",
         [](DesignRecord& d) { d.txtSYL = "3500 ft"; },
         {Warn("txtSYL", "System length of  3500 ft" + syl)}},
        {"leading number read", [](DesignRecord& d) { d.txtSYL = " 1320abc"; }, {}},
        {"capacity 99",
         [](DesignRecord& d) { d.txtGPM = "99"; },
         {Err("txtGPM", "Invalid system capacity.")}},
        {"capacity 3001",
         [](DesignRecord& d) { d.txtGPM = "3001"; },
         {Warn("txtGPM", std::string("System capacity of  3001 gpm") + kEdit)}},
        {"application 0.2",
         [](DesignRecord& d) { d.txtAPPL = "0.2"; },
         {Err("txtAPPL", "Invalid application amount.")}},
        {"application 4",
         [](DesignRecord& d) { d.txtAPPL = "4"; },
         {Warn("txtAPPL", std::string("Application rate of  4 inches") + kEdit)}},
        {"diameter 0.9",
         [](DesignRecord& d) { d.txtWetDiam = "0.9"; },
         {Err("txtWetDiam", "Invalid wetted diameter.")}},
        {"diameter 1", [](DesignRecord& d) { d.txtWetDiam = "1"; }, {}},
        {"diameter 151",
         [](DesignRecord& d) { d.txtWetDiam = "151"; },
         {Warn("txtWetDiam", std::string("Wetted diameter of  151 feet") + kEdit)}},
        {"no family",
         [](DesignRecord& d) { d.intakeFamilyIndex = -1; },
         {Err("cboIntakeFamily", "Please select an Intake Family")}},
        {"customised family needs no K/N check",
         [](DesignRecord& d) {
             d.intakeFamilyIndex = 7;
             d.txtUk = "";
         },
         {}},
    });
}

TEST(CheckDesign, OrderWarningsAccumulateErrorEndsTheList) {
    Expect({
        {"warnings then an error",
         [](DesignRecord& d) {
             d.txtSYL = "4000";
             d.txtGPM = "3500";
             d.txtAPPL = "";
             d.txtWetDiam = "0";
             d.intakeFamilyIndex = -1;
         },
         {Warn("txtSYL", std::string("System length of  4000 feet") + kEdit),
          Warn("txtGPM", std::string("System capacity of  3500 gpm") + kEdit),
          Err("txtAPPL", "Invalid application amount.")}},
        {"first error only",
         [](DesignRecord& d) {
             d.txtSYL = "";
             d.txtGPM = "";
         },
         {Err("txtSYL", "Invalid system length.")}},
        {"storage before family",
         [](DesignRecord& d) {
             d.txtSurfStore = "50";
             d.intakeFamilyIndex = -1;
         },
         {Err("txtSurfStore", "Invalid percent slope.")}},
        {"family before Green-Ampt",
         [](DesignRecord& d) {
             d.greenAmpt = true;
             d.txtKS = "";
             d.intakeFamilyIndex = -1;
         },
         {Err("cboIntakeFamily", "Please select an Intake Family")}},
    });
}

TEST(CheckDesign, SurfaceStorageByOption) {
    Expect({
        // "Constant % Slope/Residue": out of range is an error both ways.
        {"slope 0.1", [](DesignRecord& d) { d.txtSurfStore = "0.1"; }, {}},
        {"slope 0.05",
         [](DesignRecord& d) { d.txtSurfStore = "0.05"; },
         {Err("txtSurfStore", "Invalid percent slope.")}},
        {"slope 45",
         [](DesignRecord& d) { d.txtSurfStore = "45"; },
         {Err("txtSurfStore", "Invalid percent slope.")}},
        {"slope blank",
         [](DesignRecord& d) { d.txtSurfStore = ""; },
         {Err("txtSurfStore", "Invalid percent slope.")}},
        {"residue 100", [](DesignRecord& d) { d.txtResidue = "100"; }, {}},
        {"residue 101",
         [](DesignRecord& d) { d.txtResidue = "101"; },
         {Err("txtResidue", "Invalid percent residue.")}},
        {"residue -1",
         [](DesignRecord& d) { d.txtResidue = "-1"; },
         {Err("txtResidue", "Invalid percent residue.")}},
        // Letters read 0, which is not below the low limit 0: only blank text fails.
        {"residue letters", [](DesignRecord& d) { d.txtResidue = "none"; }, {}},
        {"residue blank",
         [](DesignRecord& d) { d.txtResidue = " "; },
         {Err("txtResidue", "Invalid percent residue.")}},
        // "User Defined (Constant)": warnings above the limit, "percent slope" for both fields.
        {"storage 0.5 / 0.4",
         [](DesignRecord& d) {
             d.surfaceOption = kUserConstant;
             d.txtSurfStore = "0.5";
             d.txtResidue = "0.4";
         },
         {}},
        {"storage 0",
         [](DesignRecord& d) {
             d.surfaceOption = kUserConstant;
             d.txtSurfStore = "0";
             d.txtResidue = "0";
         },
         {}},
        {"storage 0.6",
         [](DesignRecord& d) {
             d.surfaceOption = kUserConstant;
             d.txtSurfStore = "0.6";
             d.txtResidue = "0";
         },
         {Warn("txtSurfStore",
               "Storage of 0.6 inches is excessive.  Press OK to proceed or Cancel to edit.")}},
        {"storage blank",
         [](DesignRecord& d) {
             d.surfaceOption = kUserConstant;
             d.txtSurfStore = "";
         },
         {Err("txtSurfStore", "Invalid percent slope.")}},
        {"residue storage -0.1",
         [](DesignRecord& d) {
             d.surfaceOption = kUserConstant;
             d.txtSurfStore = "0";
             d.txtResidue = "-0.1";
         },
         {Err("txtResidue", "Invalid percent slope.")}},
        {"residue storage 0.45",
         [](DesignRecord& d) {
             d.surfaceOption = kUserConstant;
             d.txtSurfStore = "0";
             d.txtResidue = "0.45";
         },
         {Warn("txtResidue",
               "Residue storage of 0.45 inches is excessive.  Press OK to proceed ")}},
        // Variable options: the two fields are not checked at all.
        {"variable slope/residue",
         [](DesignRecord& d) {
             d.surfaceOption = kVariableSlopeResidue;
             d.txtSurfStore = "";
             d.txtResidue = "500";
         },
         {}},
        {"variable storage",
         [](DesignRecord& d) {
             d.surfaceOption = kUserVariable;
             d.txtSurfStore = "-3";
             d.txtResidue = "";
         },
         {}},
    });
}

TEST(CheckDesign, GreenAmptInputsOnlyWhenSwitchedOn) {
    auto ga = [](std::function<void(DesignRecord&)> f) {
        return [f](DesignRecord& d) {
            d.greenAmpt = true;
            f(d);
        };
    };
    Expect({
        {"switch off: blank inputs pass",
         [](DesignRecord& d) {
             d.txtKS = "";
             d.txtHW = "";
             d.txtThetaS = "";
             d.txtThetaI = "";
             d.txtOmega = "x";
         },
         {}},
        {"switch on: valid", ga([](DesignRecord&) {}), {}},
        {"Ks 0",
         ga([](DesignRecord& d) { d.txtKS = "0"; }),
         {Err("txtKS", "Invalid saturated hydraulic conductivity.")}},
        {"Ks blank",
         ga([](DesignRecord& d) { d.txtKS = ""; }),
         {Err("txtKS", "Invalid saturated hydraulic conductivity.")}},
        {"Hw -1",
         ga([](DesignRecord& d) { d.txtHW = "-1"; }),
         {Err("txtHW", "Invalid wetting front suction head.")}},
        {"theta s 0",
         ga([](DesignRecord& d) {
             d.txtThetaS = "0";
             d.txtThetaI = "0";
         }),
         {Err("txtThetaS", "Invalid saturated water content.")}},
        {"theta s 1", ga([](DesignRecord& d) { d.txtThetaS = "1"; }), {}},
        {"theta s 1.01",
         ga([](DesignRecord& d) { d.txtThetaS = "1.01"; }),
         {Err("txtThetaS", "Invalid saturated water content.")}},
        {"theta i 0", ga([](DesignRecord& d) { d.txtThetaI = "0"; }), {}},
        {"theta i = theta s",
         ga([](DesignRecord& d) { d.txtThetaI = "0.45"; }),
         {Err("txtThetaI", "Invalid initial water content.")}},
        {"theta i negative",
         ga([](DesignRecord& d) { d.txtThetaI = "-0.1"; }),
         {Err("txtThetaI", "Invalid initial water content.")}},
        {"omega negative", ga([](DesignRecord& d) { d.txtOmega = "-0.001"; }), {}},
        {"omega letters",
         ga([](DesignRecord& d) { d.txtOmega = "abc"; }),
         {Err("txtOmega", "Invalid linear variation of water content.")}},
        {"first Green-Ampt error only",
         ga([](DesignRecord& d) {
             d.txtKS = "";
             d.txtHW = "";
         }),
         {Err("txtKS", "Invalid saturated hydraulic conductivity.")}},
    });
}

} // namespace
} // namespace rainfold
