// Random designs saved and opened again come back as they were, in every field the file holds,
// and opening leaves the fields it does not hold as they stood.

#include "design_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <string>
#include <unistd.h>

namespace rainfold {
namespace {

namespace fs = std::filesystem;

// Up to 12 characters: printable ASCII but the double quote, with commas and blanks more often,
// and Latin-1 letters and signs (as UTF-8); one text in eight is empty.
std::string Text(std::mt19937& rng) {
    const auto between = [&rng](int lo, int hi) {
        return std::uniform_int_distribution<int>(lo, hi)(rng);
    };
    std::string s;
    for (int n = between(0, 7) ? between(1, 12) : 0; n > 0; --n) {
        const int kind = between(0, 9), code = between(0xB0, 0xFF);
        if (kind < 2) {
            s += kind ? ' ' : ',';
        } else if (kind == 2) { // not the multiplication and division signs
            const int letter = code == 0xD7 || code == 0xF7 ? 0xE9 : code;
            s += {static_cast<char>(0xC0 | (letter >> 6)),
                  static_cast<char>(0x80 | (letter & 0x3F))};
        } else {
            const char c = static_cast<char>(between(0x20, 0x7E));
            s += c == '"' ? '\'' : c;
        }
    }
    return s;
}

DesignRecord RandomDesign(std::mt19937& rng) {
    DesignRecord d;
    for (std::string* field :
         {&d.txtDescription, &d.txtLegalID, &d.txtCounty,    &d.txtState,   &d.txtDesigner,
          &d.txtDate,        &d.txtSYL,     &d.txtGPM,       &d.txtAPPL,    &d.txtWetDiam,
          &d.txtUk,          &d.txtUN,      &d.txtSurfStore, &d.txtResidue, &d.txtKS,
          &d.txtHW,          &d.txtThetaS,  &d.txtThetaI,    &d.txtRzDepth, &d.txtOmega})
        *field = Text(rng);
    for (SegmentRow& row : d.segments)
        row = {Text(rng), Text(rng)};
    d.intakeFamilyIndex = std::uniform_int_distribution<int>(-1, 7)(rng);
    d.surfaceOption = std::uniform_int_distribution<int>(0, 3)(rng);
    d.greenAmpt = rng() % 2;
    return d;
}

bool Variable(int option) {
    return option == kVariableSlopeResidue || option == kUserVariable;
}

// What opening `saved` over `before` must give: the stored fields from `saved`, the rest from
// `before`.
DesignRecord Expected(const DesignRecord& saved, const DesignRecord& before) {
    DesignRecord e = saved;
    e.greenAmpt = before.greenAmpt;
    if (saved.intakeFamilyIndex != kCustomizedValuesIndex)
        e.txtUk = before.txtUk, e.txtUN = before.txtUN;
    if (Variable(saved.surfaceOption))
        e.txtSurfStore = before.txtSurfStore, e.txtResidue = before.txtResidue;
    else
        e.segments = before.segments;
    return e;
}

// Ten thousand through the bytes of a file, every hundredth through the file itself.
TEST(DesignRoundTrip, TenThousandRandomDesigns) {
    const fs::path file =
        fs::temp_directory_path() / ("rainfold-roundtrip-" + std::to_string(::getpid()) + ".rfd");
    std::mt19937 rng(20240501);
    int failures = 0;
    for (int i = 0; i < 10000 && failures < 5; ++i) {
        const DesignRecord saved = RandomDesign(rng), before = RandomDesign(rng);
        std::string bytes;
        ASSERT_TRUE(SerializeDesign(saved, bytes).ok) << "design " << i;
        // One line per record: 1 to 6, 7 only for "Customized Values", 8, 9 or ten rows, 10.
        const long lines = 6 + (saved.intakeFamilyIndex == kCustomizedValuesIndex) + 1 +
                           (Variable(saved.surfaceOption) ? 10 : 1) + 1;
        EXPECT_EQ(std::count(bytes.begin(), bytes.end(), '\n'), lines) << "design " << i;

        DesignRecord got = before;
        FileOutcome open = ParseDesign(bytes, file.string(), got);
        if (i % 100 == 0) {
            ASSERT_TRUE(SaveDesign(file.string(), saved).ok) << "design " << i;
            got = before;
            open = OpenDesign(file.string(), got);
        }
        if (!open.ok || got != Expected(saved, before)) {
            ++failures;
            ADD_FAILURE() << "design " << i << " does not come back (" << open.message
                          << "); its file:\n"
                          << bytes;
        }
    }
    fs::remove(file);
}

} // namespace
} // namespace rainfold
