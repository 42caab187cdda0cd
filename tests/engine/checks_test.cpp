// The checks a design passes before it is computed: order, blanks, letters, error or warning,
// texts. The cases are in check_cases.txt, which describes its lines; every limit at, just inside
// and just past it is driven through rainfold-cli by check_limits_test.py.

#include "checks.h"

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

TEST(CheckDesign, Cases) {
    // clang-format off
    const std::map<std::string, std::string D::*> fields = {
        {"txtSYL", &D::txtSYL}, {"txtGPM", &D::txtGPM}, {"txtAPPL", &D::txtAPPL},
        {"txtWetDiam", &D::txtWetDiam}, {"txtSurfStore", &D::txtSurfStore},
        {"txtResidue", &D::txtResidue}, {"txtKS", &D::txtKS}, {"txtHW", &D::txtHW},
        {"txtThetaS", &D::txtThetaS}, {"txtThetaI", &D::txtThetaI}, {"txtOmega", &D::txtOmega},
        {"txtUk", &D::txtUk}};
    // clang-format on
    std::ifstream file(RAINFOLD_CHECK_CASES);
    ASSERT_TRUE(file) << RAINFOLD_CHECK_CASES;
    int cases = 0;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#')
            continue;
        D d;
        d.txtSYL = "1320", d.txtGPM = "900", d.txtAPPL = "1", d.txtWetDiam = "60";
        d.intakeFamilyIndex = 3, d.txtSurfStore = "2", d.txtResidue = "30";
        d.txtKS = "10", d.txtHW = "110", d.txtThetaS = "0.45", d.txtThetaI = "0.25";
        d.txtOmega = ".0002";
        std::vector<CheckFailure> expected;
        std::istringstream words(line);
        for (std::string word, field, text; words >> word;) {
            if (word == "option" || word == "family") {
                words >> (word == "option" ? d.surfaceOption : d.intakeFamilyIndex);
            } else if (word == "green-ampt") {
                d.greenAmpt = true;
            } else if (words >> field >> std::quoted(text) && word == "set") {
                d.*fields.at(field) = text;
            } else {
                ASSERT_TRUE(word == "error" || word == "warn") << line;
                const char* suffix = " is excessive.  Press OK to proceed or Cancel to edit.";
                expected.push_back({field, word == "error" ? CheckKind::Error : CheckKind::Warning,
                                    word == "warn" ? text + suffix : text});
            }
        }
        ++cases;
        const std::vector<CheckFailure> got = CheckDesign(d);
        ASSERT_EQ(got.size(), expected.size()) << line;
        for (size_t i = 0; i < got.size(); ++i) {
            EXPECT_EQ(got[i].field, expected[i].field) << line;
            EXPECT_EQ(got[i].kind, expected[i].kind) << line;
            EXPECT_EQ(got[i].message, expected[i].message) << line;
        }
    }
    EXPECT_EQ(cases, 23); // the file read whole
}

} // namespace
} // namespace rainfold
