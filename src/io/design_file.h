#pragma once
// Design files (.rfd): ten records of comma-separated items, texts in double quotes, one record
// a line ending in CR LF, in the single-byte Latin-1 code page. The file holds the inputs only.

#include "design.h"

#include <string>

namespace rainfold {

struct FileOutcome {
    bool ok = true;
    std::string message; // names the file and, for a malformed file, the record
};

// Reads and checks the whole file. Only when every record is sound is `design` replaced; the
// Green-Ampt switch, which the file does not hold, is left as it was.
FileOutcome OpenDesign(const std::string& fileName, DesignRecord& design);

// Writes through a temporary file beside the target, renamed over it once every record is
// written, so a failure leaves any old file as it was. Refuses a design with a text that the
// format cannot hold (a double quote, or a character outside Latin-1).
FileOutcome SaveDesign(const std::string& fileName, const DesignRecord& design);

// The file's bytes for a design (what SaveDesign writes), or the refusal message.
FileOutcome SerializeDesign(const DesignRecord& design, std::string& bytes);
// Reads a design from a file's bytes; `fileName` only names the file in messages.
FileOutcome ParseDesign(const std::string& bytes, const std::string& fileName,
                        DesignRecord& design);

} // namespace rainfold
