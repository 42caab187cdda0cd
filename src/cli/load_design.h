#pragma once

#include "design.h"

#include <string>

namespace rainfold::cli {

// An argument that is not one of the command's options: the design file, named once. False with
// the usage error otherwise (an unknown option, a second file).
bool TakeFileArgument(const std::string& argument, std::string& file, std::string& error);

// Opens a design file and runs the window's checks on it: warnings are printed and accepted (as
// if OK were pressed), an error stops. Returns 0 when the design is ready to compute, otherwise
// the exit code (1: the file cannot be opened, 2: the design fails a check).
int LoadCheckedDesign(const std::string& file, bool greenAmpt, DesignRecord& design);

} // namespace rainfold::cli
