// rainfold-cli: the runoff computation of a design file without the window.

#include "compute_command.h"
#ifdef RAINFOLD_CLI_PRINT
#include "print_commands.h"
#endif

#include <iostream>
#include <string>
#include <vector>

namespace {

const char* const kUsage =
    "usage: rainfold-cli compute FILE.rfd [--green-ampt] [--slot N] [--json]\n"
#ifdef RAINFOLD_CLI_PRINT
    "       rainfold-cli report FILE.rfd --pdf OUT.pdf [--green-ampt] [--slot N] [--case C]\n"
    "       rainfold-cli plot FILE.rfd --pdf OUT.pdf [--green-ampt] [--slot N] [--case C]\n"
    "                        [--position P]\n"
#endif
    "\n"
    "  compute   check the design, compute it and print the results page\n"
    "            --green-ampt  use the Green-Ampt model (design files do not store the choice)\n"
    "            --slot N      show family slot N (1, 2 or 3) instead of the one the window opens\n"
    "            --json        print every result array as one JSON object\n"
#ifdef RAINFOLD_CLI_PRINT
    "  report    write the one-page printed report to a PDF file (Letter)\n"
    "  plot      write the one-page printed plot, the chart of one position, to a PDF file\n"
    "            --case C      capacity case shown: 1 (capacity - 100 gpm), 2 (as entered,\n"
    "                          the default) or 3 (capacity + 100 gpm)\n"
    "            --position P  position charted, 1 to 10 counted from the pivot (default 10)\n"
#endif
    "\n"
    "exit codes: 0 computed, 1 file cannot be opened, 2 the design fails a check,\n"
    "            3 the computation stopped on a fault, 64 usage error\n"
#ifdef RAINFOLD_CLI_PRINT
    "            4 the PDF file cannot be written\n"
#endif
    ;

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
#ifdef RAINFOLD_CLI_PRINT
    if (command == "report")
        return rainfold::cli::RunReport(args);
    if (command == "plot")
        return rainfold::cli::RunPlot(args);
#endif
    std::cerr << "rainfold-cli: unknown command '" << command << "'\n" << kUsage;
    return 64;
}
