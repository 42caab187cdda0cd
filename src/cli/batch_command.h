#pragma once

#include <CLI/CLI.hpp>

namespace rainfold::cli {

// rainfold-cli batch INPUT... [--green-ampt] [--csv | --json] [--jobs N]: many designs in one
// process, one row each, in the order of the inputs.
void AddBatchCommand(CLI::App& app, int& exitCode);

} // namespace rainfold::cli
