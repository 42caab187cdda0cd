// Opening a design by path: whatever the path names, the reader answers at once with the file's
// design or with "Could not open <file>: <reason>", and a refused file changes nothing.

#include "unprivileged.h"

#include "design_file.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <sys/stat.h>
#include <unistd.h>

namespace rainfold {
namespace {

const std::string kGood =
    "\"Smith Farms\"\r\n\"NW 1/4\"\r\n\"Custer\",\"NE\"\r\n\"JD\",\"5/1/24\"\r\n"
    "\"1300\",\"800\",\"1.0\",\"40\"\r\n2\r\n0\r\n\"2\",\"20\"\r\n"
    "\"10\",\"110\",\"0.45\",\"0.25\",\"1000\",\"0.0002\"\r\n";

std::string Replace(std::string bytes, const std::string& from, const std::string& to) {
    return bytes.replace(bytes.find(from), from.size(), to);
}

std::string Write(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
}

// What opening `path` gave: "opened" and the fields that show the reading rules, or the reason
// after "Could not open <path>: ", with a note when a refusal changed the design.
std::string Opened(const std::string& path) {
    DesignRecord before;
    before.txtDescription = "untouched";
    DesignRecord d = before;
    const FileOutcome out = OpenDesign(path, d);
    if (out.ok)
        return "opened " + d.txtDescription + "|" + d.txtSYL + "|" + d.txtGPM + "|" + d.txtAPPL +
               "|" + d.txtWetDiam + "|" + d.txtOmega;
    const std::string prefix = "Could not open " + path + ": ";
    std::string said =
        out.message.rfind(prefix, 0) == 0 ? out.message.substr(prefix.size()) : out.message;
    return d == before ? said : said + " (and the design changed)";
}

std::string System(int code) {
    return std::string(std::strerror(code)) + ".";
}

TEST(OpenDesignByPath, AnswersEveryKindOfPath) {
    if (!testing::Unprivileged())
        GTEST_SKIP() << "running as root with no user \"nobody\" to read as: a mode 000 file "
                        "would read";
    const testing::SharedFolder folder;
    ASSERT_FALSE(folder.path.empty());
    using Make = std::function<std::string(const std::string& dir)>;
    const std::string opened = "opened Smith Farms|1300|800|1.0|40|0.0002";
    const struct {
        const char* name;
        Make make; // prepares the path in a fresh folder and returns it
        std::string expected;
    } cases[] = {
        {"sound file", [](auto& d) { return Write(d + "/a.rfd", kGood); }, opened},
        {"missing", [](auto& d) { return d + "/missing.rfd"; }, System(ENOENT)},
        {"folder", [](auto& d) { return d; }, System(EISDIR)},
        {"pipe with no writer",
         [](auto& d) { return ::mkfifo((d + "/p").c_str(), 0644) == 0 ? d + "/p" : "no fifo"; },
         "Not a regular file."},
        {"endless device", [](auto&) { return "/dev/zero"; }, "Not a regular file."},
        {"memory of the process", [](auto&) { return "/proc/self/mem"; }, System(EIO)},
        {"one byte over 1 MiB",
         [](auto& d) { return Write(d + "/big.rfd", std::string(kDesignFileLimit + 1, ',')); },
         System(EFBIG)},
        {"1 MiB with blanks after the last record",
         [](auto& d) {
             return Write(d + "/full.rfd",
                          kGood + std::string(kDesignFileLimit - kGood.size(), ' '));
         },
         opened},
        {"unreadable",
         [](auto& d) {
             Write(d + "/locked.rfd", kGood);
             ::chmod((d + "/locked.rfd").c_str(), 0);
             return d + "/locked.rfd";
         },
         System(EACCES)},
        {"symbolic link loop",
         [](auto& d) {
             (void)!::symlink("b", (d + "/a").c_str());
             (void)!::symlink("a", (d + "/b").c_str());
             return d + "/a";
         },
         System(ELOOP)},
        {"symbolic link to a sound file",
         [](auto& d) {
             Write(d + "/real.rfd", kGood);
             (void)!::symlink("real.rfd", (d + "/link.rfd").c_str());
             return d + "/link.rfd";
         },
         opened},
        {"no CR LF after the last record",
         [](auto& d) { return Write(d + "/a.rfd", kGood.substr(0, kGood.size() - 2)); }, opened},
        {"cut after a comma of the last record",
         [](auto& d) { return Write(d + "/a.rfd", kGood.substr(0, kGood.size() - 10)); },
         "the file ends inside record 10."},
        {"unquoted items",
         [](auto& d) {
             std::string bytes =
                 Replace(kGood, "\"1300\",\"800\",\"1.0\",\"40\"", "1300,0800,1.50,+40");
             bytes = Replace(bytes, "\"Smith Farms\"", " Smith 7 ");
             return Write(d + "/a.rfd", Replace(bytes, "\"0.0002\"", "2E-4"));
         },
         "opened Smith 7|1300|800|1.5|40|0.0002"},
        {"numbers beyond a double keep their text",
         [](auto& d) {
             return Write(d + "/a.rfd", Replace(kGood, "\"1300\",\"800\"", "1e400,-1E999"));
         },
         "opened Smith Farms|1e400|-1E999|1.0|40|0.0002"},
        {"Windows-1252 bytes",
         [](auto& d) {
             return Write(d + "/a.rfd", Replace(kGood, "Smith Farms",
                                                "Smith\x92s Farms \x96 north \x80\x81\xE9"));
         },
         "opened Smith\u2019s Farms \u2013 north \u20AC\u0081\u00E9|1300|800|1.0|40|0.0002"},
        {"record of one item",
         [](auto& d) {
             return Write(d + "/a.rfd", Replace(kGood, "\"Custer\",\"NE\"", "\"Custer\""));
         },
         "record 3 has 1 item, 2 expected."},
    };
    int row = 0;
    for (const auto& c : cases) {
        const std::string dir = folder.path + "/" + std::to_string(row++);
        const std::string got = testing::RunUnprivileged([&] {
            if (::mkdir(dir.c_str(), 0755) != 0)
                return std::string("no folder");
            return Opened(c.make(dir));
        });
        EXPECT_EQ(got, c.expected) << c.name;
    }
}

} // namespace
} // namespace rainfold
