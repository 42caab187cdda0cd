#pragma once
// Design files (.rfd): ten records of comma-separated items, texts in double quotes, one record
// a line ending in CR LF, in the Windows-1252 code page. The file holds the inputs only.

#include "design.h"

#include <cstddef>
#include <string>

namespace rainfold {

// No design file comes near this size (one is under 1 KB); a larger file is refused unread.
inline constexpr std::size_t kDesignFileLimit = std::size_t(1) << 20;

struct FileOutcome {
    bool ok = true;
    std::string message; // names the file and, for a malformed file, the record
};

// Reads and checks the whole file. Only when every record is sound is `design` replaced; the
// Green-Ampt switch, which the file does not hold, is left as it was. Anything but a regular
// file of at most kDesignFileLimit bytes is refused without being read to its end.
FileOutcome OpenDesign(const std::string& fileName, DesignRecord& design);

// Writes through a temporary file beside the target, renamed over it once every record is
// written, so a failure leaves any old file as it was. A symbolic link is written through to its
// file, the target's permission bits are kept and a target the user may not write is refused.
// Refuses a design with a text that the format cannot hold (a double quote, or a character
// outside Windows-1252).
FileOutcome SaveDesign(const std::string& fileName, const DesignRecord& design);

// The file's bytes for a design (what SaveDesign writes), or the refusal message.
FileOutcome SerializeDesign(const DesignRecord& design, std::string& bytes);
// Reads a design from a file's bytes; `fileName` only names the file in messages.
FileOutcome ParseDesign(const std::string& bytes, const std::string& fileName,
                        DesignRecord& design);

} // namespace rainfold
