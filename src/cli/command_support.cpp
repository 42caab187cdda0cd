#include "command_support.h"

#include "calc.h"
#include "checks.h"
#include "design_file.h"
#include "json_text.h"
#include "results_page.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <new>
#include <sstream>

namespace rainfold::cli {

namespace {

std::string ErrorObject(const std::string& message) {
    Json error;
    error["status"] = "error";
    error["message"] = message;
    return JsonText(error) + "\n";
}

// Writes to standard output through stdio, whose buffer std::cout shares; false when any of it
// was not delivered.
bool PutStdout(const std::string& text) {
    errno = 0;
    const size_t written = std::fwrite(text.data(), 1, text.size(), stdout);
    return written == text.size() && std::fflush(stdout) == 0;
}

// The design a script pipes in: bounded like a file, so a stream that never ends is refused at
// the first byte past the limit instead of filling the memory.
FileOutcome OpenStandardInput(DesignRecord& design) {
    const std::string name = "standard input";
    std::string bytes;
    char buffer[65536];
    while (bytes.size() <= kDesignFileLimit) {
        const size_t n = std::fread(buffer, 1, sizeof buffer, stdin);
        bytes.append(buffer, n);
        if (n < sizeof buffer) {
            if (std::ferror(stdin))
                return {false, "Could not open " + name + ": " + std::strerror(errno) + "."};
            break;
        }
    }
    if (bytes.size() > kDesignFileLimit)
        return {false, "Could not open " + name + ": " + std::strerror(EFBIG) + "."};
    return ParseDesign(bytes, name, design);
}

} // namespace

int CommandOutput::Fail(int code, const std::string& message, const std::string& prefix) const {
    std::cerr << prefix << message << std::endl;
    if (json)
        Write(ErrorObject(message));
    return code;
}

int CommandOutput::Usage(const std::string& message) const {
    return Fail(kExitUsage, message, "rainfold-cli " + command_ + ": ");
}

void CommandOutput::Warn(const std::string& message) const {
    std::cerr << "Warning: " << message << std::endl;
}

void CommandOutput::Notice(const std::string& message) const {
    std::cerr << message << std::endl;
}

int CommandOutput::Write(const std::string& text) const {
    if (PutStdout(text))
        return kExitOk;
    const int error = errno;
    std::cerr << "rainfold-cli" << (command_.empty() ? "" : " ") << command_
              << ": cannot write the output"
              << (error ? std::string(": ") + std::strerror(error) : std::string()) << std::endl;
    return kExitOutput;
}

void AddGreenAmptOption(CLI::App& command, bool& greenAmpt) {
    command.add_flag("--green-ampt", greenAmpt,
                     "use the Green-Ampt model (design files do not store the choice)");
}

CLI::Validator WholeNumberIn(int low, int high) {
    const auto check = [low, high](std::string& text) -> std::string {
        if (text.empty() || !std::all_of(text.begin(), text.end(),
                                         [](unsigned char c) { return c >= '0' && c <= '9'; }))
            return text + " is not a whole number";
        long long value = 0;
        for (char c : text)
            value = std::min(10 * value + (c - '0'), 1LL << 40);
        if (value < low || value > high)
            return "Value " + text + " not in range " + std::to_string(low) + " to " +
                   std::to_string(high);
        return "";
    };
    return CLI::Validator(check, "", "");
}

void AddModelOptions(CLI::App& command, ModelOptions& options) {
    AddGreenAmptOption(command, options.greenAmpt);
    command
        .add_option("--slot", options.slot,
                    "family slot shown, 1 to 3 (default: the one the window opens on)")
        ->check(WholeNumberIn(1, 3))
        ->type_name("N");
}

void AddJsonOption(CLI::App& command, CommandOutput& output, const std::string& description) {
    command.add_flag("--json", output.json, description);
}

void AddDesignFileArgument(CLI::App& command, std::string& file) {
    command.add_option("FILE.rfd", file, "the design file, or - to read it from standard input")
        ->required()
        ->type_name("");
}

int LoadCheckedDesign(const CommandOutput& output, const std::string& file, bool greenAmpt,
                      DesignRecord& design) {
    FileOutcome opened;
    try {
        opened = file == "-" ? OpenStandardInput(design) : OpenDesign(file, design);
    } catch (const std::exception& e) { // a path the reader did not foresee is still a file error
        opened = {false, "Could not open " + file + ": " + e.what()};
    }
    if (!opened.ok)
        return output.Fail(kExitFile, opened.message, "");
    design.greenAmpt = greenAmpt; // design files do not hold the model choice
    for (const CheckFailure& f : CheckDesign(design)) {
        if (f.kind == CheckKind::Warning)
            output.Warn(f.message);
        else
            return output.Fail(kExitCheck, f.message);
    }
    return kExitOk;
}

int ShownSlot(const CommandOutput& output, const ModelOptions& options, const DesignRecord& design,
              int& slot) {
    slot = options.slot ? options.slot : InitialSlot(design.intakeFamilyIndex);
    // Green-Ampt results exist for one slot only and are shown whatever the slot.
    if (!design.greenAmpt && SlotFamilyName(design.intakeFamilyIndex, slot).empty())
        return output.Usage("family slot " + std::to_string(slot) + " is not computed under \"" +
                            SlotFamilyName(design.intakeFamilyIndex, 2) + "\"");
    return kExitOk;
}

int ComputeShownSlot(const CommandOutput& output, const std::string& file,
                     const ModelOptions& options, DesignRecord& design, Results& results,
                     int& slot) {
    if (const int failed = LoadCheckedDesign(output, file, options.greenAmpt, design))
        return failed;
    if (const int unusable = ShownSlot(output, options, design, slot))
        return unusable;
    const CalcOutcome calc =
        Calc_Results(design, results, [&](const std::string& m) { output.Notice(m); });
    return calc.ok() ? kExitOk : output.Fail(kExitFault, calc.message);
}

int RunCommandLine(CLI::App& app, int argc, char** argv, const int& exitCode) {
    if (argc < 2) {
        std::cerr << app.help() << std::flush;
        return kExitUsage;
    }
    // A first word that names no command gets a plainer message than the parser's.
    if (argv[1][0] != '-') {
        bool known = false;
        for (const CLI::App* sub : app.get_subcommands([](CLI::App*) { return true; }))
            known = known || sub->get_name() == argv[1];
        if (!known) {
            std::cerr << "rainfold-cli: unknown command '" << argv[1] << "'\n"
                      << "Run 'rainfold-cli --help' for the commands." << std::endl;
            return kExitUsage;
        }
    }
    // The output of the command chosen, for an error that strikes before or outside its run. Its
    // --json flag may not have been reached by then: look for it on the line.
    const auto chosenOutput = [&] {
        const std::vector<CLI::App*> chosen = app.get_subcommands();
        CommandOutput output(chosen.empty() ? std::string() : chosen.front()->get_name());
        if (!chosen.empty() && chosen.front()->get_option_no_throw("--json"))
            for (int i = 2; i < argc && std::strcmp(argv[i], "--") != 0; ++i)
                output.json = output.json || std::strcmp(argv[i], "--json") == 0;
        return output;
    };
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        if (e.get_exit_code() == 0) { // --help, --version
            std::ostringstream text, ignored;
            app.exit(e, text, ignored);
            return CommandOutput("").Write(text.str());
        }
        const CommandOutput output = chosenOutput();
        if (output.command().empty()) {
            std::cerr << "rainfold-cli: " << e.what() << "\n"
                      << "Run 'rainfold-cli --help' for the commands." << std::endl;
            return kExitUsage;
        }
        output.Usage(e.what());
        std::cerr << "Run 'rainfold-cli " << output.command() << " --help' for its options."
                  << std::endl;
        return kExitUsage;
    } catch (const std::bad_alloc&) {
        return chosenOutput().Fail(kExitResource, "out of memory", "rainfold-cli: ");
    } catch (const std::exception& e) {
        // Nothing a command does should throw this far; if it does, it fails loudly, not as 0.
        return chosenOutput().Fail(kExitFault, e.what(), "rainfold-cli: ");
    }
    return exitCode;
}

} // namespace rainfold::cli
