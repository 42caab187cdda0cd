#pragma once
// What every rainfold-cli command shares: reporting an error (in text, and as one JSON object for
// a command run with --json), writing standard output with its failures caught, the model and
// family-slot options, and opening and checking a design file. main.cpp shows how a command
// uses them.

#include "design.h"
#include "exit_codes.h"
#include "results.h"

#include <CLI/CLI.hpp>

#include <string>

namespace rainfold::cli {

// How one command talks to its caller. Human messages go to standard error; with --json every
// failure also prints one object {"status": "error", "message": ...} on standard output, so a
// script reads one format whatever happens.
class CommandOutput {
public:
    explicit CommandOutput(std::string command) : command_(std::move(command)) {}

    bool json = false; // bind the command's --json flag here, where it has one

    // Prints `prefix` + `message` on standard error (and the JSON error object), returns `code`.
    int Fail(int code, const std::string& message, const std::string& prefix = "Error: ") const;
    // A usage error found after parsing (exit 64), worded like the parser's own.
    int Usage(const std::string& message) const;
    // An excessive value accepted, or a notice of the computation: standard error only.
    void Warn(const std::string& message) const;
    void Notice(const std::string& message) const;

    // Writes `text` to standard output and flushes it. kExitOk, or kExitOutput after saying on
    // standard error why the output was lost (a full disk, /dev/full, a closed pipe).
    int Write(const std::string& text) const;

    const std::string& command() const { return command_; }

private:
    std::string command_;
};

// --green-ampt and --slot, for the commands that show one family slot.
struct ModelOptions {
    bool greenAmpt = false;
    int slot = 0; // 0: the slot the window opens on
};
void AddGreenAmptOption(CLI::App& command, bool& greenAmpt);
void AddModelOptions(CLI::App& command, ModelOptions& options);

// Checks a whole-number option: "abc is not a whole number", "Value 0 not in range 1 to 3".
CLI::Validator WholeNumberIn(int low, int high);

// --json, bound to the command's output.
void AddJsonOption(CLI::App& command, CommandOutput& output, const std::string& description);

// The design file argument: one, required; "-" reads the design from standard input.
void AddDesignFileArgument(CLI::App& command, std::string& file);

// Opens a design file (standard input for "-", bounded like a file) and runs the window's checks
// on it: warnings are printed and accepted (as if OK were pressed), an error stops. kExitOk when
// the design is ready to compute, otherwise the exit code after the message (kExitFile: cannot be
// opened or malformed, kExitCheck: a check).
int LoadCheckedDesign(const CommandOutput& output, const std::string& file, bool greenAmpt,
                      DesignRecord& design);

// The family slot a command shows: the one asked for, or the one the window opens on. A slot
// the computation leaves out (slot 3 under "Customized Values") is a usage error: kExitUsage
// after the message, kExitOk when `slot` is set.
int ShownSlot(const CommandOutput& output, const ModelOptions& options, const DesignRecord& design,
              int& slot);

// What a command that shows one slot does first: opens and checks the design, picks the slot and
// computes the design, notices going to standard error. Returns 0, or the exit code of what it
// has already reported.
int ComputeShownSlot(const CommandOutput& output, const std::string& file,
                     const ModelOptions& options, DesignRecord& design, Results& results,
                     int& slot);

// Parses the command line, which runs the chosen command; returns the process's exit code: the
// one the command left in `exitCode`, 0 for --help and --version, kExitUsage for a command line
// the parser refuses, kExitResource when memory ran out.
int RunCommandLine(CLI::App& app, int argc, char** argv, const int& exitCode);

} // namespace rainfold::cli
