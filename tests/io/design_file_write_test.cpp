// Saving a design by path: the target named (through any symbolic link) gets the new bytes with
// its permission bits, or is refused and stays byte for byte; no temporary file stays behind.

#include "unprivileged.h"

#include "design_file.h"

#include <gtest/gtest.h>

#include <cstring>
#include <dirent.h>
#include <fstream>
#include <functional>
#include <iterator>
#include <sys/stat.h>
#include <unistd.h>

namespace rainfold {
namespace {

// "Smith’s Farms – north" in Windows-1252: the apostrophe and the dash are one byte each.
const std::string kNewBytes =
    "\"Smith\x92s Farms \x96 north\"\r\n\"\"\r\n\"\",\"\"\r\n\"\",\"\"\r\n\"\",\"\",\"\",\"\"\r\n"
    "2\r\n0\r\n\"\",\"\"\r\n\"\",\"\",\"\",\"\",\"\",\"\"\r\n";
const std::string kOldBytes = "old design\r\n";

DesignRecord NewDesign(const std::string& description) {
    DesignRecord d;
    d.txtDescription = description;
    d.intakeFamilyIndex = 2;
    d.surfaceOption = kConstantSlopeResidue;
    return d;
}

std::string Put(const std::string& path, mode_t mode) {
    std::ofstream(path, std::ios::binary) << kOldBytes;
    ::chmod(path.c_str(), mode);
    return path;
}

// The kind, permission bits and contents ("new", "old" or "other") of the file at a path.
std::string Describe(const std::string& path) {
    struct stat st {};
    if (::lstat(path.c_str(), &st) != 0)
        return "missing";
    char mode[8];
    std::snprintf(mode, sizeof mode, "%04o", static_cast<unsigned>(st.st_mode & 07777));
    if (S_ISLNK(st.st_mode))
        return "link";
    if (!S_ISREG(st.st_mode))
        return "special";
    std::ifstream in(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(in), {}};
    return std::string(mode) + (bytes == kNewBytes   ? " new"
                                : bytes == kOldBytes ? " old"
                                                     : " other");
}

// Names of temporary files left in a folder.
std::string Leftovers(const std::string& dir) {
    std::string found;
    if (DIR* d = ::opendir(dir.c_str())) {
        while (const dirent* e = ::readdir(d))
            if (std::strncmp(e->d_name, ".rfd-", 5) == 0)
                found += std::string(" left ") + e->d_name;
        ::closedir(d);
    }
    return found;
}

std::string System(int code) {
    return std::string(std::strerror(code)) + ".";
}

TEST(SaveDesignByPath, WritesTheTargetOrLeavesItAsItWas) {
    if (!testing::Unprivileged())
        GTEST_SKIP() << "running as root with no user \"nobody\" to write as: root may write a "
                        "read-only file";
    const testing::SharedFolder folder;
    ASSERT_FALSE(folder.path.empty());
    using Make = std::function<std::string(const std::string& dir)>;
    const std::string typed = "Smith\u2019s Farms \u2013 north";
    const struct {
        const char* name;
        Make make;               // prepares a fresh folder, returns the path saved to
        std::string checked;     // the file then looked at, in that folder
        std::string description; // of the design saved
        std::string said;        // after "Could not save <path>: "; empty when saved
        std::string then;        // what the checked file is afterwards
    } cases[] = {
        {"new file", [](auto& d) { return d + "/new.rfd"; }, "new.rfd", typed, "", "0640 new"},
        {"private file stays private", [](auto& d) { return Put(d + "/a.rfd", 0600); }, "a.rfd",
         typed, "", "0600 new"},
        {"shared file stays shared", [](auto& d) { return Put(d + "/a.rfd", 0666); }, "a.rfd",
         typed, "", "0666 new"},
        {"read-only file", [](auto& d) { return Put(d + "/a.rfd", 0444); }, "a.rfd", typed,
         System(EACCES), "0444 old"},
        {"read-only folder",
         [](auto& d) {
             Put(d + "/a.rfd", 0644);
             ::chmod(d.c_str(), 0555);
             return d + "/a.rfd";
         },
         "a.rfd", typed, System(EACCES), "0644 old"},
        {"symbolic link to a file in another folder",
         [](auto& d) {
             ::mkdir((d + "/real").c_str(), 0755);
             Put(d + "/real/a.rfd", 0640);
             (void)!::symlink("real/a.rfd", (d + "/link.rfd").c_str());
             return d + "/link.rfd";
         },
         "real/a.rfd", typed, "", "0640 new"},
        {"symbolic link still a link",
         [](auto& d) {
             Put(d + "/a.rfd", 0644);
             (void)!::symlink("a.rfd", (d + "/link.rfd").c_str());
             return d + "/link.rfd";
         },
         "link.rfd", typed, "", "link"},
        {"symbolic link to a file not yet there",
         [](auto& d) {
             (void)!::symlink("made.rfd", (d + "/link.rfd").c_str());
             return d + "/link.rfd";
         },
         "made.rfd", typed, "", "0640 new"},
        {"symbolic link loop",
         [](auto& d) {
             (void)!::symlink("b", (d + "/a").c_str());
             (void)!::symlink("a", (d + "/b").c_str());
             return d + "/a";
         },
         "a", typed, System(ELOOP), "link"},
        {"254-byte name", [](auto& d) { return Put(d + "/" + std::string(254, 'n'), 0644); },
         std::string(254, 'n'), typed, "", "0644 new"},
        {"pipe",
         [](auto& d) {
             ::mkfifo((d + "/p").c_str(), 0644);
             return d + "/p";
         },
         "p", typed, "Not a regular file.", "special"},
        {"character outside the code page", [](auto& d) { return Put(d + "/a.rfd", 0644); },
         "a.rfd", "Smith \u2192 north",
         "the Producer contains the character \"\u2192\", which a design file cannot hold.",
         "0644 old"},
    };
    int row = 0;
    for (const auto& c : cases) {
        const std::string dir = folder.path + "/" + std::to_string(row++);
        const std::string got = testing::RunUnprivileged([&] {
            ::umask(027);
            if (::mkdir(dir.c_str(), 0755) != 0)
                return std::string("no folder");
            const std::string path = c.make(dir);
            const FileOutcome out = SaveDesign(path, NewDesign(c.description));
            ::chmod(dir.c_str(), 0755); // so that the folder can be removed
            const std::string prefix = "Could not save " + path + ": ";
            const std::string said = out.ok ? ""
                                     : out.message.rfind(prefix, 0) == 0
                                         ? out.message.substr(prefix.size())
                                         : out.message;
            return said + " | " + Describe(dir + "/" + c.checked) + Leftovers(dir) +
                   Leftovers(dir + "/real");
        });
        EXPECT_EQ(got, c.said + " | " + c.then) << c.name;
    }
}

} // namespace
} // namespace rainfold
