// The checks a design passes before it is computed: order, limits, error or warning, texts. The
// cases are in check_cases.txt and the limits in check_limits.txt, which describe their lines.

#include "checks.h"
#include "format.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iomanip>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace rainfold {
namespace {

using D = DesignRecord;

// clang-format off
const std::map<std::string, std::string D::*> kFields = {
    {"txtSYL", &D::txtSYL}, {"txtGPM", &D::txtGPM}, {"txtAPPL", &D::txtAPPL},
    {"txtWetDiam", &D::txtWetDiam}, {"txtSurfStore", &D::txtSurfStore},
    {"txtResidue", &D::txtResidue}, {"txtKS", &D::txtKS}, {"txtHW", &D::txtHW},
    {"txtThetaS", &D::txtThetaS}, {"txtThetaI", &D::txtThetaI}, {"txtOmega", &D::txtOmega},
    {"txtUk", &D::txtUk}};
// clang-format on

// The sound design both files start from.
D SoundDesign() {
    D d;
    d.txtSYL = "1320", d.txtGPM = "900", d.txtAPPL = "1", d.txtWetDiam = "60";
    d.intakeFamilyIndex = 3, d.txtSurfStore = "2", d.txtResidue = "30";
    d.txtKS = "10", d.txtHW = "110", d.txtThetaS = "0.45", d.txtThetaI = "0.25";
    d.txtOmega = ".0002";
    return d;
}

void ExpectFailures(const D& d, const std::vector<CheckFailure>& expected, const std::string& why) {
    const std::vector<CheckFailure> got = CheckDesign(d);
    ASSERT_EQ(got.size(), expected.size()) << why;
    for (size_t i = 0; i < got.size(); ++i) {
        EXPECT_EQ(got[i].field, expected[i].field) << why;
        EXPECT_EQ(got[i].kind, expected[i].kind) << why;
        EXPECT_EQ(got[i].message, expected[i].message) << why;
    }
}

TEST(CheckDesign, Cases) {
    std::ifstream file(RAINFOLD_CHECK_CASES);
    ASSERT_TRUE(file) << RAINFOLD_CHECK_CASES;
    int cases = 0;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#')
            continue;
        D d = SoundDesign();
        std::vector<CheckFailure> expected;
        std::istringstream words(line);
        for (std::string word, field, text; words >> word;) {
            if (word == "option" || word == "family") {
                words >> (word == "option" ? d.surfaceOption : d.intakeFamilyIndex);
            } else if (word == "green-ampt") {
                d.greenAmpt = true;
            } else if (words >> field >> std::quoted(text) && word == "set") {
                d.*kFields.at(field) = text;
            } else {
                ASSERT_TRUE(word == "error" || word == "warn") << line;
                const char* suffix = " is excessive.  Press OK to proceed or Cancel to edit.";
                expected.push_back({field, word == "error" ? CheckKind::Error : CheckKind::Warning,
                                    word == "warn" ? text + suffix : text});
            }
        }
        ++cases;
        ExpectFailures(d, expected, line);
    }
    EXPECT_EQ(cases, 23); // the file read whole
}

// Each limit typed at the limit, a millionth inside it and a millionth past it: a limit moved,
// or a comparison that lets the limit itself through when it should not, fails here.
TEST(CheckDesign, EveryLimitAtJustInsideAndJustPast) {
    std::ifstream file(RAINFOLD_CHECK_LIMITS);
    ASSERT_TRUE(file) << RAINFOLD_CHECK_LIMITS;
    int limits = 0;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#')
            continue;
        std::istringstream in(line);
        std::string field, when, low, high, above, label, error, prefix, suffix;
        in >> field >> when >> low >> high >> above >> std::quoted(label) >> std::quoted(error) >>
            std::quoted(prefix) >> std::quoted(suffix);
        ++limits;
        D base = SoundDesign();
        base.txtThetaI = "0"; // leaves the saturated water content free to go down to its limit
        base.greenAmpt = when == "green-ampt";
        if (when == "option2")
            base.surfaceOption = kUserConstant, base.txtSurfStore = "0.2", base.txtResidue = "0.1";
        const auto number = [&](const std::string& text) {
            return text == "txtThetaS" ? 0.45 : Val(text);
        };
        const double step = 1e-6, lo = number(low.substr(1));
        std::vector<std::pair<double, std::string>> probes = {
            {lo, low[0] == '[' ? "none" : "error"}, {lo + step, "none"}, {lo - step, "error"}};
        if (high == "-") {
            probes.push_back({1e6, "none"});
        } else {
            const double hi = number(high.substr(0, high.size() - 1));
            probes.push_back({hi, high.back() == ']' ? "none" : above});
            probes.push_back({hi - step, "none"});
            probes.push_back({hi + step, above});
        }
        for (const auto& [value, outcome] : probes) {
            D d = base;
            const std::string text = FixedText(value, 6);
            d.*kFields.at(field) = text;
            std::vector<CheckFailure> expected;
            if (outcome == "error")
                expected.push_back({field, CheckKind::Error, error});
            else if (outcome == "warning")
                expected.push_back({field, CheckKind::Warning, prefix + text + suffix});
            ExpectFailures(d, expected, line + " typed as " + text);
        }
    }
    EXPECT_EQ(limits, 12); // the file read whole
}

} // namespace
} // namespace rainfold
