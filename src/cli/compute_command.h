#pragma once

#include <string>
#include <vector>

namespace rainfold::cli {

// rainfold-cli compute FILE.rfd [--green-ampt] [--slot N] [--json]; returns the exit code.
int RunCompute(const std::vector<std::string>& args);

} // namespace rainfold::cli
