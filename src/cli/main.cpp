// rainfold-cli: the runoff computation of design files without the window.
//
// Adding a command: write it in a file of its own, foo_command.cpp with foo_command.h declaring
//     void AddFooCommand(CLI::App& app, int& exitCode);
// which creates the subcommand (app.add_subcommand), binds its options to a struct held by a
// shared_ptr that the callback captures, and sets exitCode from the callback. The pieces every
// command shares are in command_support.h:
//   - CommandOutput: Fail(code, message) for an error (text on standard error, and one
//     {"status": "error", "message": ...} object on standard output when --json is on),
//     Usage(message) for a usage error found after parsing, Warn and Notice, and Write(text)
//     for standard output, which returns kExitOutput when the text could not be delivered;
//   - AddDesignFileArgument, AddGreenAmptOption, AddModelOptions (--green-ampt, --slot) and
//     AddJsonOption, so that the same option reads and is checked the same everywhere;
//   - LoadCheckedDesign (open + the window's checks, warnings accepted) and ShownSlot;
//   - exit_codes.h for the codes, json_text.h for JSON in the documented number layout.
// Then register it below and add its source to CMakeLists.txt: to the Qt-free core when it needs
// only the engine and io, beside print_commands.cpp when it draws through the render layer.
// Parsing, --help, --version and every usage error are handled once, in RunCommandLine.

#include "batch_command.h"
#include "chart_command.h"
#include "command_support.h"
#include "compute_command.h"
#include "explore_command.h"
#include "file_access.h"
#ifdef RAINFOLD_CLI_PRINT
#include "print_commands.h"

#include <QString>
#include <QtGlobal>
#endif

#include <cstdio>
#include <string>
#include <vector>

int main(int argc, char** argv) {
    using namespace rainfold::cli;
    CLI::App app("Rainfold: potential runoff of a center-pivot design, without the window.",
                 "rainfold-cli");
    app.set_version_flag("--version", "rainfold-cli " RAINFOLD_VERSION,
                         "print the program's name and version");
    app.require_subcommand(1);
    // Options are written --name on every system: "/data/pivot.rfd" is a file name on Windows too
    // (under Wine, or a path given with forward slashes), not an option.
    app.allow_windows_style_options(false);
    app.fallthrough(); // --version after a command's name still works
    app.footer("Exit codes: 0 done, 1 a design file cannot be opened, 2 the design fails a check,\n"
               "3 the computation stopped on a fault, 4 an output cannot be written,\n"
               "5 batch: some designs did not compute, 6 the system ran short of memory,\n"
               "open files or threads, 64 usage error.\n");

    int exitCode = kExitOk;
    AddComputeCommand(app, exitCode);
    AddChartCommand(app, exitCode);
#ifdef RAINFOLD_CLI_PRINT
    AddExploreCommand(app, exitCode, WriteExplorePicture);
    AddReportCommand(app, exitCode);
    AddPlotCommand(app, exitCode);
#else
    AddExploreCommand(app, exitCode);
#endif
    AddBatchCommand(app, exitCode);

    // A closed pipe or a full disk is an output that cannot be written (exit 4), not the end of
    // the process; file names are UTF-8 on every system.
    rainfold::PrepareStandardStreams();
#ifdef RAINFOLD_CLI_PRINT
    // What a command says is said once, in its own words: Qt's own notices (a missing runtime
    // folder of the offscreen platform, a font substituted) are not for the user of a command.
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
        if (type == QtCriticalMsg || type == QtFatalMsg)
            std::fprintf(stderr, "%s\n", text.toLocal8Bit().constData());
    });
#endif
    std::vector<std::string> arguments = rainfold::ProgramArguments(argc, argv);
    std::vector<char*> pointers;
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    return RunCommandLine(app, static_cast<int>(arguments.size()), pointers.data(), exitCode);
}
