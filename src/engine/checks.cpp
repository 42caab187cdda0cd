#include "checks.h"

namespace rainfold {

namespace {

struct RangeCheck {
    const char* field;
    double low;
    double high;
    const char* error;
    const char* warningPrefix; // nullptr: a value above the high limit is an error too
    const char* warningSuffix;
};

constexpr RangeCheck kSystemLength{"txtSYL",
                                   150,
                                   3000,
                                   "Invalid system length.",
                                   "System length of  ",
                                   " feet is excessive.  Press OK to proceed or Cancel to edit."};
constexpr RangeCheck kCapacity{"txtGPM",
                               100,
                               3000,
                               "Invalid system capacity.",
                               "System capacity of  ",
                               " gpm is excessive.  Press OK to proceed or Cancel to edit."};
constexpr RangeCheck kApplication{"txtAPPL",
                                  0.25,
                                  3,
                                  "Invalid application amount.",
                                  "Application rate of  ",
                                  " inches is excessive.  Press OK to proceed or Cancel to edit."};
constexpr RangeCheck kWettedDiameter{"txtWetDiam",
                                     1,
                                     150,
                                     "Invalid wetted diameter.",
                                     "Wetted diameter of  ",
                                     " feet is excessive.  Press OK to proceed or Cancel to edit."};
constexpr RangeCheck kPercentSlope{"txtSurfStore",           0.1,     40,
                                   "Invalid percent slope.", nullptr, nullptr};
constexpr RangeCheck kSurfaceStorage{
    "txtSurfStore",
    0,
    0.5,
    "Invalid percent slope.",
    "Storage of ",
    " inches is excessive.  Press OK to proceed or Cancel to edit."};
constexpr RangeCheck kPercentResidue{"txtResidue", 0,      100, "Invalid percent residue.",
                                     nullptr,      nullptr};
constexpr RangeCheck kResidueStorage{"txtResidue",
                                     0,
                                     0.4,
                                     "Invalid percent slope.",
                                     "Residue storage of ",
                                     " inches is excessive.  Press OK to proceed "};

// Adds the check's failure, if any; returns false when it is an error (the checks stop there).
bool Apply(const RangeCheck& check, const std::string& text, std::vector<CheckFailure>& out) {
    const double value = Val(text);
    if (!IsBlank(text) && value >= check.low && value <= check.high)
        return true;
    if (value > check.high && check.warningPrefix) {
        out.push_back({check.field, CheckKind::Warning,
                       std::string(check.warningPrefix) + text + check.warningSuffix});
        return true;
    }
    out.push_back({check.field, CheckKind::Error, check.error});
    return false;
}

bool Require(bool good, const char* field, const char* message, std::vector<CheckFailure>& out) {
    if (!good)
        out.push_back({field, CheckKind::Error, message});
    return good;
}

void CheckGreenAmpt(const DesignRecord& d, std::vector<CheckFailure>& out) {
    const auto present = [](const std::string& t) { return !IsBlank(t); };
    const double ks = Val(d.txtKS), hw = Val(d.txtHW);
    const double thetaS = Val(d.txtThetaS), thetaI = Val(d.txtThetaI);
    Require(present(d.txtKS) && ks > 0, "txtKS", "Invalid saturated hydraulic conductivity.",
            out) &&
        Require(present(d.txtHW) && hw > 0, "txtHW", "Invalid wetting front suction head.", out) &&
        Require(present(d.txtThetaS) && thetaS > 0 && thetaS <= 1, "txtThetaS",
                "Invalid saturated water content.", out) &&
        Require(present(d.txtThetaI) && thetaI >= 0 && thetaI < thetaS, "txtThetaI",
                "Invalid initial water content.", out) &&
        Require(IsNumeric(d.txtOmega), "txtOmega", "Invalid linear variation of water content.",
                out);
}

} // namespace

std::vector<CheckFailure> CheckDesign(const DesignRecord& d) {
    std::vector<CheckFailure> out;
    const bool passed = Apply(kSystemLength, d.txtSYL, out) && Apply(kCapacity, d.txtGPM, out) &&
                        Apply(kApplication, d.txtAPPL, out) &&
                        Apply(kWettedDiameter, d.txtWetDiam, out);
    if (!passed)
        return out;
    if (d.surfaceOption == kConstantSlopeResidue) {
        if (!Apply(kPercentSlope, d.txtSurfStore, out) ||
            !Apply(kPercentResidue, d.txtResidue, out))
            return out;
    } else if (d.surfaceOption == kUserConstant) {
        if (!Apply(kSurfaceStorage, d.txtSurfStore, out) ||
            !Apply(kResidueStorage, d.txtResidue, out))
            return out;
    }
    if (!Require(d.intakeFamilyIndex != -1, "cboIntakeFamily", "Please select an Intake Family",
                 out))
        return out;
    if (d.greenAmpt)
        CheckGreenAmpt(d, out);
    return out;
}

} // namespace rainfold
