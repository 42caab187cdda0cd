#pragma once

#include <CLI/CLI.hpp>

namespace rainfold::cli {

// rainfold-cli compute FILE.rfd [--green-ampt] [--slot N] [--json]: the results page of a design,
// or every result array as JSON.
void AddComputeCommand(CLI::App& app, int& exitCode);

} // namespace rainfold::cli
