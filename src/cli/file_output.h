#pragma once
// The files rainfold-cli writes: never the design file it reads, and never a damaged file.

#include "command_support.h"

#include <string>

namespace rainfold::cli {

// kExitOk, or kExitUsage after saying so when `output` (given as `option`) names the same file
// as the design file `input`: writing it would destroy the design.
int RefuseInputAsOutput(const CommandOutput& output, const std::string& option,
                        const std::string& path, const std::string& input);

// Writes `bytes` to the file `path` through the safe save (a device or pipe written directly).
// kExitOk, or kExitOutput after "cannot write PATH: <the system's reason>".
int WriteOutputFile(const CommandOutput& output, const std::string& path, const std::string& bytes);

} // namespace rainfold::cli
