#pragma once
// The commands and outputs drawn through the render layer (Qt GUI): the printed report and plot
// and the explorer's map picture. The Qt-free build of rainfold-cli leaves them out.

#include "explore_command.h"

#include <CLI/CLI.hpp>

namespace rainfold::cli {

// rainfold-cli report FILE.rfd --pdf OUT.pdf [--green-ampt] [--slot N] [--case C]
void AddReportCommand(CLI::App& app, int& exitCode);

// rainfold-cli plot FILE.rfd --pdf OUT.pdf [--green-ampt] [--slot N] [--case C] [--position P]
void AddPlotCommand(CLI::App& app, int& exitCode);

// rainfold-cli explore ... --png OUT | --pdf OUT: the map as the window draws it.
int WriteExplorePicture(const ExploreOptions& options, const CommandOutput& output,
                        const DesignRecord& design, const RunoffProbe& probe,
                        const ExploreMap& map);

} // namespace rainfold::cli
