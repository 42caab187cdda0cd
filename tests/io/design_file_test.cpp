// Design files: the exact bytes written, what a file carries back (on random designs), the reading
// rules, and opening and saving by path, whatever the path names. Opening answers with the file's
// design or with "Could not open <file>: <reason>" and a refusal changes nothing; saving gives the
// target (through any symbolic link) the new bytes with its permission bits, or is refused and
// leaves it byte for byte, and no temporary file stays behind. These run on Windows too, but for
// the cases that need POSIX permissions, links and pipes.

#include "design_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <string>
#ifndef _WIN32
#include <sys/stat.h>
#include <unistd.h>
#endif

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

std::string Slurp(const fs::path& p) {
    std::ifstream in(p, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

TEST(SerializeDesign, ExactBytesPerConditionalRecordAndRefusals) {
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
    DesignRecord d = Sample();
    std::string bytes;
    for (const auto& c : cases) {
        d.intakeFamilyIndex = c.family;
        d.surfaceOption = c.option;
        EXPECT_TRUE(SerializeDesign(d, bytes).ok);
        EXPECT_EQ(bytes, kHead + c.middle + kGreenAmpt) << c.family << "/" << c.option;
    }
    // What a file cannot hold: a double quote, an arrow, line breaks.
    for (const char* bad : {"Hall \"north\"", "1 \xE2\x86\x92 2", "Hall\nnorth", "Hall\r"}) {
        d.txtCounty = bad;
        EXPECT_FALSE(SerializeDesign(d, bytes).ok) << bad;
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
        std::string bytes;
        ASSERT_TRUE(out.ok && SerializeDesign(d, bytes).ok) << out.message;
        EXPECT_EQ(bytes, Slurp(entry.path())) << entry.path();
    }
    EXPECT_GE(count, 1);
}

// Up to 12 characters: printable ASCII but the double quote, with commas and blanks more often,
// and Latin-1 letters and signs from the no-break space on (as UTF-8); one text in eight is empty.
std::string Text(std::mt19937& rng) {
    const auto between = [&rng](int lo, int hi) {
        return std::uniform_int_distribution<int>(lo, hi)(rng);
    };
    std::string s;
    for (int n = between(0, 7) ? between(1, 12) : 0; n > 0; --n) {
        const int kind = between(0, 9);
        int c = kind < 2 ? " ,"[kind] : kind == 2 ? between(0xA0, 0xFF) : between(0x20, 0x7E);
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

// Ten thousand through the bytes of a file, every hundredth also cut short and through the file
// itself.
TEST(DesignRoundTrip, TenThousandRandomDesigns) {
    const fs::path file = fs::temp_directory_path() /
                          ("rainfold-roundtrip-" + std::to_string(std::random_device()()) + ".rfd");
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
            // Cut anywhere before its last line end, the file is refused and changes nothing.
            for (size_t n = 0; n + 2 < bytes.size(); ++n) {
                got = before;
                const FileOutcome cut = ParseDesign(bytes.substr(0, n), "design.rfd", got);
                EXPECT_EQ(cut.message.rfind("Could not open design.rfd: ", 0), 0u) << n;
                EXPECT_TRUE(!cut.ok && got == before) << "design " << i << " cut at " << n;
            }
            ASSERT_TRUE(SaveDesign(file.string(), saved).ok) << "design " << i;
            got = before;
            open = OpenDesign(file.string(), got);
        }
        const bool back = open.ok && got == Expected(saved, before);
        failures += !back;
        EXPECT_TRUE(back) << "design " << i << " (" << open.message << "); its file:\n" << bytes;
    }
    fs::remove(file);
}

#ifndef _WIN32
// Each case gets a fresh folder in one removed with all it holds. Root may read or write a mode
// 000 or read-only file, which would hide what a user sees: as root, CTest runs these cases as
// "nobody" (tests/CMakeLists.txt).
class DesignFileByPath : public ::testing::Test {
protected:
    void SetUp() override {
        if (::geteuid() == 0)
            GTEST_SKIP() << "running as root: these cases need an unprivileged user, which CTest "
                            "gives them through setpriv when there is a user \"nobody\"";
        std::string pattern = (fs::temp_directory_path() / "rainfold-io-XXXXXX").string();
        ASSERT_TRUE(::mkdtemp(pattern.data()));
        root_ = pattern;
        mask_ = ::umask(027);
    }
    void TearDown() override {
        if (root_.empty()) // skipped
            return;
        ::umask(mask_);
        for (const auto& e : fs::directory_iterator(root_)) // a read-only folder, to be emptied
            fs::permissions(e.path(), fs::perms::owner_all);
        fs::remove_all(root_);
    }
    // A fresh folder prepared by `steps` ("file NAME MODE" holding `bytes`, "link NAME TARGET",
    // "fifo NAME", "dir NAME", "chmod NAME MODE").
    std::string Folder(const std::string& steps, const std::string& bytes) {
        const std::string dir = root_ + "/" + std::to_string(cases_++);
        EXPECT_EQ(::mkdir(dir.c_str(), 0755), 0);
        std::istringstream in(steps);
        for (std::string verb, name, more; in >> verb >> name;) {
            const std::string at = dir + "/" + name;
            if (verb == "file")
                std::ofstream(at, std::ios::binary) << bytes;
            if ((verb == "file" || verb == "chmod") && in >> more)
                ::chmod(at.c_str(), static_cast<mode_t>(std::stoi(more, nullptr, 8)));
            else if (verb == "link" && in >> more)
                (void)!::symlink(more.c_str(), at.c_str());
            else if (verb == "fifo")
                ::mkfifo(at.c_str(), 0644);
            else if (verb == "dir")
                ::mkdir(at.c_str(), 0755);
        }
        return dir;
    }

private:
    std::string root_;
    mode_t mask_ = 0;
    int cases_ = 0;
};

#endif

// What a message says after "Could not <verb> <path>: ".
std::string After(const std::string& message, const std::string& prefix) {
    return message.rfind(prefix, 0) == 0 ? message.substr(prefix.size()) : message;
}

std::string Replace(std::string bytes, const std::string& from, const std::string& to) {
    return bytes.replace(bytes.find(from), from.size(), to);
}

const std::string kGood =
    "\"Smith Farms\"\r\n\"NW 1/4\"\r\n\"Custer\",\"NE\"\r\n\"JD\",\"5/1/24\"\r\n"
    "\"1300\",\"800\",\"1.0\",\"40\"\r\n2\r\n0\r\n\"2\",\"20\"\r\n"
    "\"10\",\"110\",\"0.45\",\"0.25\",\"1000\",\"0.0002\"\r\n";

// What a design shows of the reading rules, or the reason it was refused ("" when it changed).
std::string Opened(const FileOutcome& out, const DesignRecord& d, const DesignRecord& before,
                   const std::string& prefix) {
    if (out.ok)
        return "opened " + d.txtDescription + "|" + d.txtState + "|" + d.txtSYL + "|" + d.txtGPM +
               "|" + d.txtAPPL + "|" + d.txtWetDiam + "|" + std::to_string(d.intakeFamilyIndex) +
               "|" + std::to_string(d.surfaceOption) + "|" + d.txtResidue + "|" + d.txtOmega;
    return After(out.message, prefix) + (d == before ? "" : " (and the design changed)");
}

DesignRecord Untouched() {
    DesignRecord before;
    before.txtDescription = "untouched";
    before.surfaceOption = kUserVariable;
    return before;
}

const std::string kOpened = "opened Smith Farms|NE|1300|800|1.0|40|2|0|20|0.0002";

// The reading rules, on a file's bytes: they need no file and no particular user.
TEST(DesignFileBytes, ReadingRulesAndRefusals) {
    const std::string families = "\r\n2\r\n0\r\n"; // records 6 and 8
    const struct {
        const char* name;
        std::string bytes;
        std::string expected; // "opened" and the fields that show the reading rules, or the reason
    } cases[] = {
        {"sound file", kGood, kOpened},
        {"no CR LF after the last record", kGood.substr(0, kGood.size() - 2), kOpened},
        {"cut after a comma of the last record", kGood.substr(0, kGood.size() - 10),
         "the file ends inside record 10."},
        {"blanks before items, an empty record 8 read as option 0",
         Replace(Replace(Replace(kGood, "\"Custer\",\"NE\"", " \"Custer\",  \"NE\""), families,
                         "\r\n 5\r\n\r\n"),
                 "\"Smith", "  \"Smith"),
         "opened Smith Farms|NE|1300|800|1.0|40|5|0|20|0.0002"},
        {"unquoted items",
         Replace(Replace(Replace(kGood, "\"1300\",\"800\",\"1.0\",\"40\"", "1300,0800,1.50,+40"),
                         "\"Smith Farms\"", " Smith 7 "),
                 "\"0.0002\"", "2E-4"),
         "opened Smith 7|NE|1300|800|1.5|40|2|0|20|0.0002"},
        {"numbers beyond a double keep their text",
         Replace(kGood, "\"1300\",\"800\"", "1e400,-1E999"),
         "opened Smith Farms|NE|1e400|-1E999|1.0|40|2|0|20|0.0002"},
        {"Windows-1252 bytes",
         Replace(kGood, "Smith Farms", "Smith\x92s Farms \x96 north \x80\x81\xE9"),
         "opened Smith\u2019s Farms \u2013 north "
         "\u20AC\u0081\u00E9|NE|1300|800|1.0|40|2|0|20|0.0002"},
        // Items do not run on into the next line: a short record is an error naming it.
        {"record of one item", Replace(kGood, "\"Custer\",\"NE\"", "\"Custer\""),
         "record 3 has 1 item, 2 expected."},
        {"family above 7", Replace(kGood, families, "\r\n8\r\n0\r\n"),
         "record 6 has intake-family index 8, -1 to 7 expected."},
        {"family below -1", Replace(kGood, families, "\r\n-2\r\n0\r\n"),
         "record 6 has intake-family index -2, -1 to 7 expected."},
        {"option above 3", Replace(kGood, families, "\r\n2\r\n4\r\n"),
         "record 8 has surface-storage option 4, 0 to 3 expected."},
        {"option below 0", Replace(kGood, families, "\r\n2\r\n-1\r\n"),
         "record 8 has surface-storage option -1, 0 to 3 expected."},
    };
    for (const auto& c : cases) {
        const DesignRecord before = Untouched();
        DesignRecord d = before;
        const FileOutcome out = ParseDesign(c.bytes, "a.rfd", d);
        EXPECT_EQ(Opened(out, d, before, "Could not open a.rfd: "), c.expected) << c.name;
    }
}

#ifndef _WIN32
std::string System(int code) {
    return std::string(std::strerror(code)) + ".";
}

TEST_F(DesignFileByPath, OpenAnswersEveryKindOfPath) {
    const struct {
        const char* name;
        std::string bytes;    // of the file a.rfd, unless `steps` says otherwise
        std::string expected; // "opened" and the fields that show the reading rules, or the reason
        std::string path = "a.rfd";
        std::string steps = "file a.rfd 644";
    } cases[] = {
        {"sound file", kGood, kOpened},
        {"missing", "", System(ENOENT), "missing.rfd", ""},
        {"folder", "", System(EISDIR), ".", ""},
        {"pipe with no writer", "", "Not a regular file.", "p", "fifo p"},
        {"endless device", "", "Not a regular file.", "/dev/zero", ""},
        {"memory of the process", "", System(EIO), "/proc/self/mem", ""},
        {"one byte over 1 MiB", std::string(kDesignFileLimit + 1, ','), System(EFBIG)},
        {"1 MiB with blanks after the last record",
         kGood + std::string(kDesignFileLimit - kGood.size(), ' '), kOpened},
        {"unreadable", kGood, System(EACCES), "a.rfd", "file a.rfd 0"},
        {"symbolic link loop", "", System(ELOOP), "a", "link a b link b a"},
        {"symbolic link to a sound file", kGood, kOpened, "link.rfd",
         "file real.rfd 644 link link.rfd real.rfd"},
    };
    for (const auto& c : cases) {
        const std::string dir = Folder(c.steps, c.bytes);
        const std::string path = c.path[0] == '/' ? c.path : dir + "/" + c.path;
        const DesignRecord before = Untouched();
        DesignRecord d = before;
        const FileOutcome out = OpenDesign(path, d);
        EXPECT_EQ(Opened(out, d, before, "Could not open " + path + ": "), c.expected) << c.name;
    }
}

// "Müller’s Farms – 5° north" in Windows-1252: every letter and sign is one byte.
const std::string kNewBytes = "\"M\xFCller\x92s Farms \x96 5\xB0 "
                              "north\"\r\n\"\"\r\n\"\",\"\"\r\n\"\",\"\"\r\n\"\",\"\",\"\",\"\"\r\n"
                              "2\r\n0\r\n\"\",\"\"\r\n\"\",\"\",\"\",\"\",\"\",\"\"\r\n";
const std::string kOldBytes = "old design\r\n";
const std::string kTyped = "M\u00FCller\u2019s Farms \u2013 5\u00B0 north";

// The kind, permission bits and contents ("new", "old" or "other") of the file at a path.
std::string Describe(const fs::path& path) {
    const fs::file_status st = fs::symlink_status(path);
    if (!fs::is_regular_file(st))
        return fs::is_symlink(st) ? "link" : exists(st) ? "special" : "missing";
    char mode[8];
    std::snprintf(mode, sizeof mode, "%04o", static_cast<unsigned>(st.permissions()));
    const std::string bytes = Slurp(path);
    return mode + std::string(bytes == kNewBytes ? " new" : bytes == kOldBytes ? " old" : " other");
}

// Names of temporary files left in a folder and the folders in it.
std::string Leftovers(const std::string& dir) {
    std::string found;
    for (const auto& e : fs::recursive_directory_iterator(dir))
        if (e.path().filename().string().rfind(".rfd-", 0) == 0)
            found += " left " + e.path().filename().string();
    return found;
}

TEST_F(DesignFileByPath, SaveWritesTheTargetOrLeavesItAsItWas) {
    const std::string n254(254, 'n');
    const struct {
        const char* name;
        std::string said; // after "Could not save <path>: "; empty when saved
        std::string then; // what the checked file is afterwards
        std::string path; // saved to, in a fresh folder prepared by `steps` (old bytes)
        std::string steps;
        std::string checked = ""; // the file then looked at, if not `path`
        std::string description = kTyped;
    } cases[] = {
        {"new file", "", "0640 new", "new.rfd", ""},
        {"private file stays private", "", "0600 new", "a.rfd", "file a.rfd 600"},
        {"shared file stays shared", "", "0666 new", "a.rfd", "file a.rfd 666"},
        {"read-only file", System(EACCES), "0444 old", "a.rfd", "file a.rfd 444"},
        {"read-only folder", "the folder <dir> takes no new file: " + System(EACCES), "0644 old",
         "a.rfd", "file a.rfd 644 chmod . 555"},
        {"symbolic link to a file in another folder", "", "0640 new", "link.rfd",
         "dir real file real/a.rfd 640 link link.rfd real/a.rfd", "real/a.rfd"},
        {"symbolic link still a link", "", "link", "link.rfd",
         "file a.rfd 644 link link.rfd a.rfd"},
        {"symbolic link to a file not yet there", "", "0640 new", "link.rfd",
         "link link.rfd made.rfd", "made.rfd"},
        {"symbolic link loop", System(ELOOP), "link", "a", "link a b link b a"},
        {"254-byte name", "", "0644 new", n254, "file " + n254 + " 644"},
        {"pipe", "Not a regular file.", "special", "p", "fifo p"},
        {"character outside the code page",
         "the Producer contains the character \"\u2192\", which a design file cannot hold.",
         "0644 old", "a.rfd", "file a.rfd 644", "", "Smith \u2192 north"},
    };
    for (const auto& c : cases) {
        const std::string dir = Folder(c.steps, kOldBytes), path = dir + "/" + c.path;
        DesignRecord d;
        d.txtDescription = c.description;
        d.intakeFamilyIndex = 2;
        d.surfaceOption = kConstantSlopeResidue;
        const FileOutcome out = SaveDesign(path, d);
        std::string said = c.said; // "<dir>" stands for the case's folder
        if (said.find("<dir>") != std::string::npos)
            said = Replace(said, "<dir>", dir);
        const std::string got =
            (out.ok ? "" : After(out.message, "Could not save " + path + ": ")) + " | " +
            Describe(dir + "/" + (c.checked.empty() ? c.path : c.checked)) + Leftovers(dir);
        EXPECT_EQ(got, said + " | " + c.then) << c.name;
    }
}
#endif

} // namespace
} // namespace rainfold
