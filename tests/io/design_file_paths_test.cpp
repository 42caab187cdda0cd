// Opening and saving a design by path, whatever the path names. Opening answers at once with the
// file's design or with "Could not open <file>: <reason>" and a refusal changes nothing; saving
// gives the target (through any symbolic link) the new bytes with its permission bits, or is
// refused and leaves it byte for byte, and no temporary file stays behind.

#include "design_file.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

namespace rainfold {
namespace {

// Each case gets a fresh folder in one removed with all it holds. Root may read or write a mode
// 000 or read-only file, which would hide what a user sees: as root, CTest runs these cases as
// "nobody" (tests/CMakeLists.txt).
class DesignFileByPath : public ::testing::Test {
protected:
    void SetUp() override {
        if (::geteuid() == 0)
            GTEST_SKIP() << "running as root: these cases need an unprivileged user, which CTest "
                            "gives them through setpriv when there is a user \"nobody\"";
        std::string pattern =
            (std::filesystem::temp_directory_path() / "rainfold-io-XXXXXX").string();
        ASSERT_TRUE(::mkdtemp(pattern.data()));
        root_ = pattern;
        mask_ = ::umask(027);
    }
    void TearDown() override {
        ::umask(mask_);
        std::error_code ignored;
        std::filesystem::remove_all(root_, ignored);
    }
    // Prepares a fresh folder by `steps` ("file NAME MODE" holding `bytes`, "link NAME TARGET",
    // "fifo NAME", "dir NAME", "chmod NAME MODE") and runs `piece` on it.
    template <class Piece>
    std::string InFreshFolder(const std::string& steps, const std::string& bytes, Piece piece) {
        const std::string dir = root_ + "/" + std::to_string(cases_++);
        if (::mkdir(dir.c_str(), 0755) != 0)
            return "no folder";
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
        const std::string said = piece(dir);
        ::chmod(dir.c_str(), 0755); // so that the folder can be removed
        return said;
    }

private:
    std::string root_;
    mode_t mask_ = 0;
    int cases_ = 0;
};

std::string System(int code) {
    return std::string(std::strerror(code)) + ".";
}

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

TEST_F(DesignFileByPath, OpenAnswersEveryKindOfPath) {
    const std::string opened = "opened Smith Farms|NE|1300|800|1.0|40|2|0|20|0.0002";
    const std::string families = "\r\n2\r\n0\r\n"; // records 6 and 8
    const struct {
        const char* name;
        std::string bytes;    // of the file a.rfd, unless `steps` says otherwise
        std::string expected; // "opened" and the fields that show the reading rules, or the reason
        std::string path = "a.rfd";
        std::string steps = "file a.rfd 644";
    } cases[] = {
        {"sound file", kGood, opened},
        {"missing", "", System(ENOENT), "missing.rfd", ""},
        {"folder", "", System(EISDIR), ".", ""},
        {"pipe with no writer", "", "Not a regular file.", "p", "fifo p"},
        {"endless device", "", "Not a regular file.", "/dev/zero", ""},
        {"memory of the process", "", System(EIO), "/proc/self/mem", ""},
        {"one byte over 1 MiB", std::string(kDesignFileLimit + 1, ','), System(EFBIG)},
        {"1 MiB with blanks after the last record",
         kGood + std::string(kDesignFileLimit - kGood.size(), ' '), opened},
        {"unreadable", kGood, System(EACCES), "a.rfd", "file a.rfd 0"},
        {"symbolic link loop", "", System(ELOOP), "a", "link a b link b a"},
        {"symbolic link to a sound file", kGood, opened, "link.rfd",
         "file real.rfd 644 link link.rfd real.rfd"},
        {"no CR LF after the last record", kGood.substr(0, kGood.size() - 2), opened},
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
        const std::string got = InFreshFolder(c.steps, c.bytes, [&](const std::string& dir) {
            const std::string path = c.path[0] == '/' ? c.path : dir + "/" + c.path;
            DesignRecord before;
            before.txtDescription = "untouched";
            before.surfaceOption = kUserVariable;
            DesignRecord d = before;
            const FileOutcome out = OpenDesign(path, d);
            if (out.ok)
                return "opened " + d.txtDescription + "|" + d.txtState + "|" + d.txtSYL + "|" +
                       d.txtGPM + "|" + d.txtAPPL + "|" + d.txtWetDiam + "|" +
                       std::to_string(d.intakeFamilyIndex) + "|" + std::to_string(d.surfaceOption) +
                       "|" + d.txtResidue + "|" + d.txtOmega;
            const std::string said = After(out.message, "Could not open " + path + ": ");
            return d == before ? said : said + " (and the design changed)";
        });
        EXPECT_EQ(got, c.expected) << c.name;
    }
}

// "Müller’s Farms – 5° north" in Windows-1252: every letter and sign is one byte.
const std::string kNewBytes = "\"M\xFCller\x92s Farms \x96 5\xB0 "
                              "north\"\r\n\"\"\r\n\"\",\"\"\r\n\"\",\"\"\r\n\"\",\"\",\"\",\"\"\r\n"
                              "2\r\n0\r\n\"\",\"\"\r\n\"\",\"\",\"\",\"\",\"\",\"\"\r\n";
const std::string kOldBytes = "old design\r\n";
const std::string kTyped = "M\u00FCller\u2019s Farms \u2013 5\u00B0 north";

// The kind, permission bits and contents ("new", "old" or "other") of the file at a path.
std::string Describe(const std::filesystem::path& path) {
    const std::filesystem::file_status st = std::filesystem::symlink_status(path);
    if (!std::filesystem::is_regular_file(st))
        return std::filesystem::is_symlink(st) ? "link" : exists(st) ? "special" : "missing";
    char mode[8];
    std::snprintf(mode, sizeof mode, "%04o", static_cast<unsigned>(st.permissions()));
    std::ifstream in(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(in), {}};
    return mode + std::string(bytes == kNewBytes ? " new" : bytes == kOldBytes ? " old" : " other");
}

// Names of temporary files left in a folder and the folders in it.
std::string Leftovers(const std::string& dir) {
    std::string found;
    for (const auto& e : std::filesystem::recursive_directory_iterator(dir))
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
        {"read-only folder", System(EACCES), "0644 old", "a.rfd", "file a.rfd 644 chmod . 555"},
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
        const std::string got = InFreshFolder(c.steps, kOldBytes, [&](const std::string& dir) {
            const std::string path = dir + "/" + c.path;
            DesignRecord d;
            d.txtDescription = c.description;
            d.intakeFamilyIndex = 2;
            d.surfaceOption = kConstantSlopeResidue;
            const FileOutcome out = SaveDesign(path, d);
            return (out.ok ? "" : After(out.message, "Could not save " + path + ": ")) + " | " +
                   Describe(dir + "/" + (c.checked.empty() ? c.path : c.checked)) + Leftovers(dir);
        });
        EXPECT_EQ(got, c.said + " | " + c.then) << c.name;
    }
}

} // namespace
} // namespace rainfold
