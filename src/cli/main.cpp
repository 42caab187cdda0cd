// rainfold-cli: the runoff computation of a design file without the window.

#include "compute_command.h"

#include <iostream>
#include <string>
#include <vector>

namespace {

const char* const kUsage =
    "usage: rainfold-cli compute FILE.rfd [--green-ampt] [--slot N] [--json]\n"
    "\n"
    "  compute   check the design, compute it and print the results page\n"
    "            --green-ampt  use the Green-Ampt model (design files do not store the choice)\n"
    "            --slot N      show family slot N (1, 2 or 3) instead of the one the window opens\n"
    "            --json        print every result array as one JSON object\n"
    "\n"
    "exit codes: 0 computed, 1 file cannot be opened, 2 the design fails a check,\n"
    "            3 the computation stopped on a fault, 64 usage error\n";

} // namespace

int main(int argc, char** argv) {
    std::vector<std::string> args(argv + 1, argv + argc);
    if (args.empty() || args[0] == "--help" || args[0] == "-h") {
        std::cout << kUsage;
        return args.empty() ? 64 : 0;
    }
    const std::string command = args[0];
    args.erase(args.begin());
    if (command == "compute")
        return rainfold::cli::RunCompute(args);
    std::cerr << "rainfold-cli: unknown command '" << command << "'\n" << kUsage;
    return 64;
}
