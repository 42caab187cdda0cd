#pragma once

#include "command_support.h"

#include <CLI/CLI.hpp>

#include <string>

namespace rainfold::cli {

struct ChartOptions {
    std::string file;
    ModelOptions model;
    int capacity = 2;  // capacity case: 1 less 100 gpm, 2 as entered, 3 plus 100 gpm
    int position = 10; // position charted, 1..10 counted from the pivot
};

// The chart of one cell as the results page draws it: its curves, markers and scale, as text or,
// with --json on `output`, as one JSON object. Returns the exit code.
int RunChart(const ChartOptions& options, const CommandOutput& output);

// rainfold-cli chart FILE.rfd [--case C] [--position P] [--slot S] [--green-ampt] [--json]
void AddChartCommand(CLI::App& app, int& exitCode);

} // namespace rainfold::cli
