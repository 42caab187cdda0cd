#pragma once

#include <string>
#include <vector>

namespace rainfold::cli {

// rainfold-cli report FILE.rfd --pdf OUT.pdf [--green-ampt] [--slot N] [--case C]
int RunReport(const std::vector<std::string>& args);

// rainfold-cli plot FILE.rfd --pdf OUT.pdf [--green-ampt] [--slot N] [--case C] [--position P]
int RunPlot(const std::vector<std::string>& args);

} // namespace rainfold::cli
