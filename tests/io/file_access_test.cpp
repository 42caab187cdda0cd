// The file layer where a user's paths lead, on every system the program runs on (these run as
// Windows programs too): names with letters beyond ASCII, paths over 260 characters, a read-only
// file, a file held open, temporary files a killed save left behind, two names for one file, and
// reading piece by piece up to a limit.

#include "file_access.h"
#include "file_chunks.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#ifndef _WIN32
#include <unistd.h>
#endif

namespace rainfold {
namespace {

namespace fs = std::filesystem;

// A fresh folder, removed with all it holds.
struct Scratch {
    const fs::path dir =
        fs::temp_directory_path() / ("rainfold-paths-" + std::to_string(std::random_device()()));
    Scratch() { fs::create_directories(dir); }
    ~Scratch() {
        std::error_code ec;
        for (const auto& e : fs::recursive_directory_iterator(dir, ec))
            fs::permissions(e.path(), fs::perms::owner_all, fs::perm_options::add, ec);
        fs::remove_all(dir, ec);
    }
    // A UTF-8 path in the folder.
    std::string At(const std::string& name) const { return (dir / fs::u8path(name)).u8string(); }
    std::string Names() const {
        std::string names;
        for (const auto& e : fs::directory_iterator(dir))
            names += (names.empty() ? "" : " ") + e.path().filename().u8string();
        return names;
    }
};

std::string Slurp(const std::string& path) {
    std::string bytes;
    return ReadSmallFile(path, 1 << 20, bytes).empty() ? bytes : "(unreadable)";
}

// Root may write a read-only file on POSIX systems; the read-only attribute of Windows binds all.
bool ReadOnlyBindsThisUser() {
#ifdef _WIN32
    return true;
#else
    return ::geteuid() != 0;
#endif
}

TEST(FilePaths, SaveWhereverTheNameLeads) {
    const std::string longName(240, 'L'); // with the folder's path, well over 260 characters
    const struct {
        const char* name;
        std::string file;
        bool readOnly = false;
        bool heldOpen = false;
    } cases[] = {
        {"letters beyond ASCII", "M\u00FCller\u2019s Feld \u2013 Nord \u00E9t\u00E9.rfd"},
        {"path over 260 characters", longName + ".rfd"},
        {"read-only file", "old.rfd", true},
        {"file held open", "held.rfd", false, true},
    };
    for (const auto& c : cases) {
        Scratch folder;
        const std::string path = folder.At(c.file);
        ASSERT_EQ(SaveFile(path, "old\r\n"), "") << c.name;
        if (c.readOnly)
            fs::permissions(fs::u8path(path),
                            fs::perms::owner_write | fs::perms::group_write |
                                fs::perms::others_write,
                            fs::perm_options::remove);
        std::ifstream held;
        if (c.heldOpen)
            held.open(fs::u8path(path), std::ios::binary);
        const std::string said = SaveFile(path, "new\r\n");
        const std::string now = Slurp(path);
        if (c.readOnly && ReadOnlyBindsThisUser()) {
            EXPECT_EQ(said, std::strerror(EACCES)) << c.name;
            EXPECT_EQ(now, "old\r\n") << c.name;
        } else if (c.heldOpen && !said.empty()) {
            // Windows may refuse to replace a file another program has open: then it stays whole.
            EXPECT_EQ(now, "old\r\n") << c.name << ": " << said;
        } else {
            EXPECT_EQ(said, "") << c.name;
            EXPECT_EQ(now, "new\r\n") << c.name;
        }
        held.close();
        // One file under exactly its name, as the system lists it, and nothing beside it.
        EXPECT_EQ(folder.Names(), c.file) << c.name;
    }
}

TEST(FilePaths, StaleTemporaryFilesGoOnTheNextSaveThere) {
    Scratch folder;
    const auto made = [&](const std::string& name, int hoursAgo) {
        std::ofstream(folder.dir / name) << "left by a killed save";
        fs::last_write_time(folder.dir / name,
                            fs::file_time_type::clock::now() - std::chrono::hours(hoursAgo));
    };
    made(".rfd-Ab12Cd", 25); // ours, a day old: removed
    made(".rfd-Xy34Zw", 23); // ours, but another save may still be writing it
    made(".rfd-short", 25);  // not our pattern
    made("notes.rfd-Ab12Cd", 25);
    ASSERT_EQ(SaveFile(folder.At("design.rfd"), "x"), "");
    for (const char* name : {".rfd-Xy34Zw", ".rfd-short", "notes.rfd-Ab12Cd", "design.rfd"})
        EXPECT_TRUE(fs::exists(folder.dir / name)) << name;
    EXPECT_FALSE(fs::exists(folder.dir / ".rfd-Ab12Cd"));
}

TEST(FilePaths, SameFileThroughEveryName) {
    Scratch folder;
    const std::string design = folder.At("d.rfd"), other = folder.At("e.rfd");
    ASSERT_EQ(SaveFile(design, "d"), "");
    ASSERT_EQ(SaveFile(other, "d"), ""); // the same bytes are not the same file
    std::error_code ec;
    fs::create_hard_link(fs::u8path(design), folder.dir / "hard.rfd", ec);
    const bool hard = !ec;
    fs::create_symlink(fs::u8path(design), folder.dir / "soft.rfd", ec);
    const bool soft = !ec; // Windows grants links to few users
    const struct {
        std::string path;
        bool same;
        bool made = true;
    } cases[] = {
        {design, true},
        {(folder.dir / "." / "d.rfd").u8string(), true},
        {folder.At("hard.rfd"), true, hard},
        {folder.At("soft.rfd"), true, soft},
        {other, false},
        {folder.At("missing.rfd"), false},
        {folder.dir.u8string(), false},
    };
    for (const auto& c : cases) {
        if (c.made) {
            EXPECT_EQ(SameFile(c.path, design), c.same) << c.path;
        }
    }
}

// Piece by piece, the pieces make the file exactly, up to the limit and not one byte past it.
TEST(FileChunks, PiecesUpToTheLimit) {
    Scratch folder;
    constexpr std::size_t kLimit = 1000;
    std::string content;
    for (std::size_t i = 0; i <= kLimit; ++i)
        content += static_cast<char>('a' + i % 26);
    const std::string tooLarge = std::strerror(EFBIG);
    const struct {
        std::size_t size, piece;
        std::string opened, error; // the reasons of Open and, after the pieces, of error()
    } cases[] = {
        {0, 7, "", ""},         {1, 1, "", ""},          {kLimit, 7, "", ""},
        {kLimit, 1000, "", ""}, {kLimit, 65536, "", ""}, {kLimit + 1, 7, tooLarge, tooLarge},
    };
    for (const auto& c : cases) {
        const std::string path = folder.At("f" + std::to_string(c.size));
        ASSERT_EQ(SaveFile(path, content.substr(0, c.size)), "");
        FileChunks chunks;
        EXPECT_EQ(chunks.Open(path, kLimit), c.opened) << c.size;
        std::string read;
        int pieces = 0;
        while (chunks.Next(read, c.piece))
            ++pieces;
        EXPECT_EQ(chunks.error(), c.error) << c.size;
        if (c.opened.empty()) {
            EXPECT_EQ(read, content.substr(0, c.size)) << c.size << " by " << c.piece;
            EXPECT_EQ(std::size_t(pieces), (c.size + c.piece - 1) / c.piece) << c.size;
        }
        std::string whole;
        EXPECT_EQ(ReadSmallFile(path, kLimit, whole), c.opened) << c.size;
    }
    // A file that grows past the limit after it was opened.
    const std::string path = folder.At("growing");
    ASSERT_EQ(SaveFile(path, "small"), "");
    FileChunks chunks;
    ASSERT_EQ(chunks.Open(path, kLimit), "");
    std::ofstream(fs::u8path(path), std::ios::binary | std::ios::app) << content;
    std::string read;
    while (chunks.Next(read, 64)) {
    }
    EXPECT_EQ(chunks.error(), tooLarge);
    EXPECT_LE(read.size(), kLimit);
    // A folder and a missing file, in the words of the whole-file read.
    EXPECT_EQ(FileChunks().Open(folder.dir.u8string(), kLimit), std::strerror(EISDIR));
    EXPECT_EQ(FileChunks().Open(folder.At("missing"), kLimit), std::strerror(ENOENT));
}

} // namespace
} // namespace rainfold
