#pragma once

#include <CLI/CLI.hpp>

namespace rainfold::cli {

// rainfold-cli report FILE.rfd --pdf OUT.pdf [--green-ampt] [--slot N] [--case C]
void AddReportCommand(CLI::App& app, int& exitCode);

// rainfold-cli plot FILE.rfd --pdf OUT.pdf [--green-ampt] [--slot N] [--case C] [--position P]
void AddPlotCommand(CLI::App& app, int& exitCode);

} // namespace rainfold::cli
