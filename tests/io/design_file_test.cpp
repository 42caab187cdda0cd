// Design files: the exact bytes written, what a file carries back (on random designs), and that a
// file cut short changes nothing. Opening and saving by path, the reading rules and the refusals
// with their reasons are in design_file_paths_test.cpp.

#include "design_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <unistd.h>

namespace rainfold {

namespace {

namespace fs = std::filesystem;

DesignRecord Sample() {
    // clang-format off
    DesignRecord d{"Example Farms, north pivot", "", "Custer", "NE", "A. Engineer", "11/22/2026",
                   "1300", "800", "1.0", " 40 ft", 2, "6.3246", "-0.615", kConstantSlopeResidue,
                   "2", "20", {}, "10", "110", "0.45", "0.25", "1000", ".0002", false};
    // clang-format on
    for (int i = 0; i < 10; ++i)
        d.segments[i] = {std::to_string(i), "r" + std::to_string(i)};
    return d;
}

const std::string kHead = "\"Example Farms, north pivot\"\r\n"
                          "\"\"\r\n"
                          "\"Custer\",\"NE\"\r\n"
                          "\"A. Engineer\",\"11/22/2026\"\r\n"
                          "\"1300\",\"800\",\"1.0\",\" 40 ft\"\r\n";
const std::string kGreenAmpt = "\"10\",\"110\",\"0.45\",\"0.25\",\"1000\",\".0002\"\r\n";

std::string Serialize(const DesignRecord& d) {
    std::string bytes;
    const FileOutcome out = SerializeDesign(d, bytes);
    EXPECT_TRUE(out.ok) << out.message;
    return bytes;
}

std::string Slurp(const fs::path& p) {
    std::ifstream in(p, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

TEST(SerializeDesign, ExactBytesPerConditionalRecord) {
    std::string rows;
    for (int i = 0; i < 10; ++i)
        rows += "\"" + std::to_string(i) + "\",\"r" + std::to_string(i) + "\"\r\n";
    const struct {
        int family, option;
        std::string middle; // records 6 to 9
    } cases[] = {
        {2, kConstantSlopeResidue, "2\r\n0\r\n\"2\",\"20\"\r\n"},
        {-1, kUserConstant, "-1\r\n2\r\n\"2\",\"20\"\r\n"},
        {7, kVariableSlopeResidue, "7\r\n\"6.3246\",\"-0.615\"\r\n1\r\n" + rows},
        {0, kUserVariable, "0\r\n3\r\n" + rows},
        // No option ticked: an empty record 8, and record 9 as for option 0.
        {6, kConstantSlopeResidue, "6\r\n0\r\n\"2\",\"20\"\r\n"},
        {1, kNoOptionTicked, "1\r\n\r\n\"2\",\"20\"\r\n"},
    };
    for (const auto& c : cases) {
        DesignRecord d = Sample();
        d.intakeFamilyIndex = c.family;
        d.surfaceOption = c.option;
        EXPECT_EQ(Serialize(d), kHead + c.middle + kGreenAmpt) << c.family << "/" << c.option;
    }
}

TEST(SerializeDesign, RefusesWhatAFileCannotHold) {
    DesignRecord d = Sample();
    std::string bytes;
    // a double quote, an arrow, line breaks
    for (const char* bad : {"Hall \"north\"", "1 \xE2\x86\x92 2", "Hall\nnorth", "Hall\r"}) {
        d.txtCounty = bad;
        EXPECT_FALSE(SerializeDesign(d, bytes).ok) << bad;
    }
}

TEST(ParseDesign, FileCutShortChangesNothing) {
    const std::string good = Serialize(Sample());
    DesignRecord before;
    before.txtDescription = "untouched";
    // Anywhere before its last line end.
    for (size_t n = 0; n + 2 < good.size(); ++n) {
        DesignRecord d = before;
        const FileOutcome out = ParseDesign(good.substr(0, n), "design.rfd", d);
        EXPECT_FALSE(out.ok) << n;
        EXPECT_EQ(out.message.rfind("Could not open design.rfd: ", 0), 0u) << n;
        EXPECT_TRUE(d == before) << n;
    }
}

TEST(DesignFile, EveryExampleOpensAndIsWrittenBackUnchanged) {
    int count = 0;
    for (const auto& entry : fs::directory_iterator(RAINFOLD_EXAMPLES_DIR)) {
        if (entry.path().extension() != ".rfd")
            continue;
        ++count;
        DesignRecord d;
        const FileOutcome out = OpenDesign(entry.path().string(), d);
        ASSERT_TRUE(out.ok) << out.message;
        EXPECT_EQ(Serialize(d), Slurp(entry.path())) << entry.path();
    }
    EXPECT_GE(count, 1);
}

// Up to 12 characters: printable ASCII but the double quote, with commas and blanks more often,
// and Latin-1 letters and signs (as UTF-8); one text in eight is empty.
std::string Text(std::mt19937& rng) {
    const auto between = [&rng](int lo, int hi) {
        return std::uniform_int_distribution<int>(lo, hi)(rng);
    };
    std::string s;
    for (int n = between(0, 7) ? between(1, 12) : 0; n > 0; --n) {
        const int kind = between(0, 9);
        int c = kind < 2 ? " ,"[kind] : kind == 2 ? between(0xB0, 0xFF) : between(0x20, 0x7E);
        if (c == '"' || c == 0xD7 || c == 0xF7) // nor the multiplication and division signs
            c = c == '"' ? '\'' : 0xE9;
        if (c < 0x80)
            s += static_cast<char>(c);
        else
            s += {static_cast<char>(0xC0 | (c >> 6)), static_cast<char>(0x80 | (c & 0x3F))};
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
