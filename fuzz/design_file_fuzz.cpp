// libFuzzer target: any bytes, up to just past the size limit of a design file, given to the
// design-file reader both as bytes and as a file on disk read by path. Besides the sanitizers'
// own checks it aborts when
// - reading the file by path and reading its bytes disagree (outcome, message or design), or a
//   file over the limit is not refused;
// - a refused file changed the design or gave a message that does not name the file;
// - a design that was read does not write and read back to the same design and the same bytes.

#include "design_file.h"
#include "fuzz_files.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

void Require(bool condition) {
    if (!condition)
        std::abort();
}

rainfold::DesignRecord Untouched() {
    rainfold::DesignRecord d;
    d.txtDescription = "untouched";
    d.intakeFamilyIndex = 3;
    d.surfaceOption = rainfold::kUserVariable;
    d.greenAmpt = true;
    return d;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace rainfold;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const DesignRecord before = Untouched();

    const std::string& path = FuzzFile(".rfd");
    Require(WriteFuzzFile(path, bytes));
    DesignRecord fromDisk = before;
    const FileOutcome onDisk = OpenDesign(path, fromDisk);
    ::unlink(path.c_str());
    if (size > kDesignFileLimit) {
        Require(!onDisk.ok && onDisk.message == "Could not open " + path + ": File too large.");
        Require(fromDisk == before);
        return 0;
    }

    DesignRecord d = before;
    const FileOutcome read = ParseDesign(bytes, path, d);
    Require(onDisk.ok == read.ok && onDisk.message == read.message && fromDisk == d);
    if (!read.ok) {
        Require(d == before);
        Require(read.message.rfind("Could not open " + path + ": ", 0) == 0);
        return 0;
    }
    Require(d.greenAmpt); // not in the file: kept
    Require(d.intakeFamilyIndex >= -1 && d.intakeFamilyIndex <= kCustomizedValuesIndex);
    Require(d.surfaceOption >= 0 && d.surfaceOption <= 3);

    std::string written;
    // An unquoted item may hold a double quote, which no file can store: refused, never garbled.
    if (!SerializeDesign(d, written).ok)
        return 0;
    DesignRecord again = before;
    Require(ParseDesign(written, "fuzz.rfd", again).ok);
    // Both reads started from the same design, so even the fields the file does not carry agree.
    Require(again == d);
    std::string rewritten;
    Require(SerializeDesign(again, rewritten).ok && rewritten == written);
    return 0;
}
