#pragma once

#include "command_support.h"
#include "design.h"
#include "explore.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <string>

namespace rainfold::cli {

// What `rainfold-cli explore` is asked for.
struct ExploreOptions {
    std::string file;
    bool greenAmpt = false;
    double target = 0;                 // runoff target, percent
    std::string y = "depth";           // "depth" or "storage"
    std::string criterion = "average"; // what the target applies to: "average" or "outer-end"
    int columns = 60;
    int rows = 40;
    std::string png; // picture of the map, when named
    std::string pdf;
    bool csv = false; // the grid as CSV on standard output
    // output.json: the map and the answers as one JSON object on standard output
};

// Draws the map to the PNG or PDF file of `options` and returns the exit code. The drawing half of
// rainfold-cli provides one; without it the command offers no --png or --pdf.
using ExplorePicture =
    std::function<int(const ExploreOptions& options, const CommandOutput& output,
                      const DesignRecord& design, const RunoffProbe& probe, const ExploreMap& map)>;

// Checks the design as the window does, computes the map and the answers and writes the one
// output asked for; returns the exit code.
int RunExplore(const ExploreOptions& options, const CommandOutput& output,
               const ExplorePicture& picture);

// rainfold-cli explore FILE.rfd [--green-ampt] [--target T] [--criterion average|outer-end]
//     [--y depth|storage] [--columns N] [--rows M] (--json | --csv | --png OUT | --pdf OUT)
void AddExploreCommand(CLI::App& app, int& exitCode, const ExplorePicture& picture = {});

} // namespace rainfold::cli
