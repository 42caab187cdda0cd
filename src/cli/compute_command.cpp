#include "compute_command.h"

#include "command_support.h"
#include "json_text.h"
#include "results_json.h"

#include "calc.h"
#include "results_page.h"

#include <iostream>
#include <memory>
#include <sstream>

namespace rainfold::cli {

namespace {

struct ComputeOptions {
    std::string file;
    ModelOptions model;
};

std::string Pad(const std::string& text, size_t width, bool right = true) {
    if (text.size() >= width)
        return text;
    const std::string fill(width - text.size(), ' ');
    return right ? fill + text : text + fill;
}

std::string PageText(const ResultsPage& page) {
    std::ostringstream out;
    const auto row = [&](const std::string& label, const std::array<std::string, 3>& v) {
        out << Pad(label, 38, false) << Pad(v[0], 10) << Pad(v[1], 10) << Pad(v[2], 10) << '\n';
    };
    out << "Percent Potential Runoff: " << page.lblIntakeFamily << "\n\n";
    row("", page.lblGPM);
    row("", {"(gpm)", "(gpm)", "(gpm)"});
    row("Hours per Revolution", page.txtHours);
    row("Peak Water Application Rate (in/hr)", page.txtHPV);
    row("Water Application Time (hr)", page.txtTPV);
    out << '\n';
    out << Pad("System Length", 18) << Pad("Wetted Diameter", 18) << Pad("Surface Storage", 18)
        << Pad(page.lblGPM[0], 10) << Pad(page.lblGPM[1], 10) << Pad(page.lblGPM[2], 10) << '\n';
    out << Pad("(feet)", 18) << Pad("(feet)", 18) << Pad("(in)", 18) << Pad("(gpm)", 10)
        << Pad("(gpm)", 10) << Pad("(gpm)", 10) << '\n';
    for (const auto& r : page.grid)
        out << Pad(r[0], 18) << Pad(r[1], 18) << Pad(r[2], 18) << Pad(r[3], 10) << Pad(r[4], 10)
            << Pad(r[5], 10) << '\n';
    out << '\n';
    row("Weighted Average Percent Runoff", page.txtWARP);
    return out.str();
}

int RunCompute(const ComputeOptions& options, const CommandOutput& output) {
    DesignRecord design;
    if (const int failed = LoadCheckedDesign(output, options.file, options.model.greenAmpt, design))
        return failed;
    int slot = 0; // the JSON holds every slot, but a slot asked for must still be one there is
    if (!output.json || options.model.slot != 0)
        if (const int unusable = ShownSlot(output, options.model, design, slot))
            return unusable;

    Results results;
    const CalcOutcome calc =
        Calc_Results(design, results, [&](const std::string& m) { output.Notice(m); });
    if (output.json) {
        // A fault still prints the arrays written before it, under "status": "error".
        if (!calc.ok())
            std::cerr << "Error: " << calc.message << std::endl;
        if (const int lost = output.Write(JsonText(ResultsJson(design, results, calc)) + "\n"))
            return lost;
        return calc.ok() ? kExitOk : kExitFault;
    }
    if (!calc.ok())
        return output.Fail(kExitFault, calc.message);
    const ResultsPage page = BuildResultsPage(design, results, slot);
    if (const int lost = output.Write(PageText(page)))
        return lost;
    if (!page.fault.empty())
        return output.Fail(kExitFault, page.fault);
    return kExitOk;
}

} // namespace

void AddComputeCommand(CLI::App& app, int& exitCode) {
    auto options = std::make_shared<ComputeOptions>();
    auto output = std::make_shared<CommandOutput>("compute");
    CLI::App* command =
        app.add_subcommand("compute", "check the design, compute it and print the results page");
    AddDesignFileArgument(*command, options->file);
    AddModelOptions(*command, options->model);
    AddJsonOption(*command, *output, "print every result array as one JSON object");
    command->callback([options, output, &exitCode] { exitCode = RunCompute(*options, *output); });
}

} // namespace rainfold::cli
