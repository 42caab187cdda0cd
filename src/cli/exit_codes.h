#pragma once
// The exit codes of rainfold-cli, the same for every command (the README lists them).

namespace rainfold::cli {

enum ExitCode : int {
    kExitOk = 0,         // the work asked for is done
    kExitFile = 1,       // a design file cannot be opened or is malformed
    kExitCheck = 2,      // the design fails a check
    kExitFault = 3,      // the computation stopped on a fault
    kExitOutput = 4,     // an output (a PDF file, standard output) cannot be written
    kExitSomeFailed = 5, // batch: some designs did not compute; their rows say why
    kExitResource = 6,   // the system ran short of memory, open files or threads
    kExitUsage = 64,     // the command line itself is wrong
};

} // namespace rainfold::cli
