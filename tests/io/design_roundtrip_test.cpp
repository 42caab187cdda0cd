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

class RandomDesigns {
public:
    explicit RandomDesigns(unsigned seed) : rng_(seed) {}

    int Between(int low, int high) { return std::uniform_int_distribution<int>(low, high)(rng_); }

    // Up to 12 characters: printable ASCII but the double quote, with commas and blanks more
    // often, and Latin-1 letters (as UTF-8); one text in eight is empty.
    std::string Text() {
        std::string s;
        if (Between(0, 7) == 0)
            return s;
        for (int n = Between(1, 12); n > 0; --n) {
            const int kind = Between(0, 9);
            if (kind == 0) {
                s += ',';
            } else if (kind == 1) {
                s += ' ';
            } else if (kind == 2) {
                int code = Between(0xC0, 0xFF);
                if (code == 0xD7 || code == 0xF7) // the multiplication and division signs
                    code = 0xE9;
                s += static_cast<char>(0xC0 | (code >> 6));
                s += static_cast<char>(0x80 | (code & 0x3F));
            } else {
                char c = static_cast<char>(Between(0x20, 0x7E));
                s += c == '"' ? '\'' : c;
            }
        }
        return s;
    }

    DesignRecord Design() {
        DesignRecord d;
        for (std::string* field :
             {&d.txtDescription, &d.txtLegalID, &d.txtCounty,    &d.txtState,   &d.txtDesigner,
              &d.txtDate,        &d.txtSYL,     &d.txtGPM,       &d.txtAPPL,    &d.txtWetDiam,
              &d.txtUk,          &d.txtUN,      &d.txtSurfStore, &d.txtResidue, &d.txtKS,
              &d.txtHW,          &d.txtThetaS,  &d.txtThetaI,    &d.txtRzDepth, &d.txtOmega})
            *field = Text();
        for (SegmentRow& row : d.segments)
            row = {Text(), Text()};
        d.intakeFamilyIndex = Between(-1, 7);
        d.surfaceOption = Between(0, 3);
        d.greenAmpt = Between(0, 1) == 1;
        return d;
    }

private:
    std::mt19937 rng_;
};

bool Variable(int option) {
    return option == kVariableSlopeResidue || option == kUserVariable;
}

// What opening `saved` over `before` must give: the stored fields from `saved`, the rest from
// `before`.
DesignRecord Expected(const DesignRecord& saved, const DesignRecord& before) {
    DesignRecord e = saved;
    e.greenAmpt = before.greenAmpt;
    if (saved.intakeFamilyIndex != kCustomizedValuesIndex) {
        e.txtUk = before.txtUk;
        e.txtUN = before.txtUN;
    }
    if (Variable(saved.surfaceOption)) {
        e.txtSurfStore = before.txtSurfStore;
        e.txtResidue = before.txtResidue;
    } else {
        e.segments = before.segments;
    }
    return e;
}

TEST(DesignRoundTrip, TenThousandRandomDesigns) {
    const fs::path file =
        fs::temp_directory_path() / ("rainfold-roundtrip-" + std::to_string(::getpid()) + ".rfd");
    RandomDesigns random(20240501);
    int failures = 0;
    for (int i = 0; i < 10000 && failures < 5; ++i) {
        const DesignRecord saved = random.Design();
        const DesignRecord before = random.Design();
        const FileOutcome save = SaveDesign(file.string(), saved);
        ASSERT_TRUE(save.ok) << "design " << i << ": " << save.message;

        std::string bytes;
        ASSERT_TRUE(SerializeDesign(saved, bytes).ok);
        // One line per record: 1 to 6, 7 only for "Customized Values", 8, 9 or ten rows, 10.
        const long lines = 6 + (saved.intakeFamilyIndex == kCustomizedValuesIndex) + 1 +
                           (Variable(saved.surfaceOption) ? 10 : 1) + 1;
        EXPECT_EQ(std::count(bytes.begin(), bytes.end(), '\n'), lines) << "design " << i;

        DesignRecord got = before;
        const FileOutcome open = OpenDesign(file.string(), got);
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
