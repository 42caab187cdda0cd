#pragma once
// Writing an output file so that a failure never leaves a damaged file behind.

#include <string>

namespace rainfold::cli {

// Writes `bytes` to the file `path`. A regular file (or a new one) is written beside its target
// under a short temporary name and renamed over it only once every byte is on disk, so a full
// disk leaves any old file as it was; its permission bits and owner are kept, and a symbolic link
// has the file it points to replaced. A device or pipe (/dev/stdout, /dev/full) is written
// directly. Returns an empty text on success, else the system's reason.
std::string WriteFileReplacing(const std::string& path, const std::string& bytes);

} // namespace rainfold::cli
