// Design files: the exact bytes written, the reading rules, and that a bad file changes nothing.
// A failed save keeping the old file is checked through the window (file_commands_test.cpp, with
// the messages); what a file carries back is checked on random designs in
// design_roundtrip_test.cpp.

#include "design_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <string>
#include <unistd.h>

namespace rainfold {

// Readable failures: a design shows as the file it would make.
void PrintTo(const DesignRecord& d, std::ostream* os) {
    std::string bytes;
    SerializeDesign(d, bytes);
    *os << bytes;
}

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

class DesignFileDir : public ::testing::Test {
protected:
    void SetUp() override {
        dir = fs::temp_directory_path() / ("rainfold-io-" + std::to_string(::getpid()));
        fs::remove_all(dir);
        fs::create_directories(dir);
    }
    void TearDown() override { fs::remove_all(dir); }
    fs::path dir;
};

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

TEST(SerializeDesign, Latin1AndRefusals) {
    DesignRecord d = Sample();
    d.txtDescription = "M\xC3\xBCller, 5\xC2\xB0";                     // "Müller, 5°" in UTF-8
    EXPECT_EQ(Serialize(d).substr(0, 14), "\"M\xFCller, 5\xB0\"\r\n"); // one byte each
    std::string bytes;
    // a double quote, an arrow, line breaks
    for (const char* bad : {"Hall \"north\"", "1 \xE2\x86\x92 2", "Hall\nnorth", "Hall\r"}) {
        d.txtCounty = bad;
        EXPECT_FALSE(SerializeDesign(d, bytes).ok) << bad;
    }
}

TEST(ParseDesign, ReadingRules) {
    // Blanks before items are skipped; an empty record 8 reads as option 0.
    const std::string spaced = "  \"P\"\r\n\"L\"\r\n \"C\",  \"S\"\r\n\"D\",\"1/1\"\r\n"
                               "\"1\",\"2\",\"3\",\"4\"\r\n 5\r\n\r\n\"0.5\",\"7\"\r\n" +
                               kGreenAmpt;
    DesignRecord d;
    d.surfaceOption = kUserVariable;
    ASSERT_TRUE(ParseDesign(spaced, "design.rfd", d).ok);
    EXPECT_EQ(d.txtDescription, "P");
    EXPECT_EQ(d.txtState, "S");
    EXPECT_EQ(d.intakeFamilyIndex, 5);
    EXPECT_EQ(d.surfaceOption, kConstantSlopeResidue);
    EXPECT_EQ(d.txtResidue, "7");
    EXPECT_EQ(d.txtOmega, ".0002");
}

TEST(ParseDesign, MalformedFileChangesNothing) {
    const std::string good = Serialize(Sample()); // records 6 and 8 read "2" and "0"
    auto with = [&](const std::string& from, const std::string& to) {
        std::string bytes = good;
        return bytes.replace(bytes.find(from), from.size(), to);
    };
    DesignRecord before;
    before.txtDescription = "untouched";
    auto expectRefused = [&](const std::string& bytes, const std::string& says) {
        DesignRecord d = before;
        const FileOutcome out = ParseDesign(bytes, "design.rfd", d);
        const std::string what =
            says + " / ..." + bytes.substr(bytes.size() - std::min<size_t>(12, bytes.size()));
        EXPECT_FALSE(out.ok) << what;
        EXPECT_NE(out.message.find(says), std::string::npos) << what << ": " << out.message;
        EXPECT_EQ(d, before) << what;
    };
    // Items do not run on into the next line: a short record is an error naming it.
    expectRefused(with(",\"1.0\"", "\r\n\"1.0\""),
                  "Could not open design.rfd: record 5 has 2 items, 4 expected.");
    for (const char* family : {"8", "-2"})
        expectRefused(with("\r\n2\r\n0\r\n", std::string("\r\n") + family + "\r\n0\r\n"),
                      "record 6");
    for (const char* option : {"4", "-1"})
        expectRefused(with("\r\n2\r\n0\r\n", std::string("\r\n2\r\n") + option + "\r\n"),
                      "record 8");
    // A file that ends early, anywhere before its last line end.
    for (size_t n = 0; n + 2 < good.size(); ++n)
        expectRefused(good.substr(0, n), "design.rfd");
}

TEST_F(DesignFileDir, SaveWritesTheBytesAndOpenReadsThemBack) {
    const fs::path file = dir / "pivot.rfd";
    ASSERT_TRUE(SaveDesign(file.string(), Sample()).ok);
    EXPECT_EQ(Slurp(file), Serialize(Sample()));
    DesignRecord d;
    ASSERT_TRUE(OpenDesign(file.string(), d).ok);
    EXPECT_EQ(d.txtWetDiam, " 40 ft");
    EXPECT_EQ(fs::directory_iterator(dir)->path(), file); // no temporary file left behind

    DesignRecord untouched = Sample();
    const FileOutcome missing = OpenDesign((dir / "missing.rfd").string(), untouched);
    EXPECT_FALSE(missing.ok);
    EXPECT_NE(missing.message.find("missing.rfd"), std::string::npos);
    EXPECT_EQ(untouched, Sample());
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

} // namespace
} // namespace rainfold
