#include "compute_command.h"
#include "load_design.h"

#include "calc.h"
#include "checks.h"
#include "design_file.h"
#include "json_writer.h"
#include "results_page.h"

#include <cstdio>
#include <iostream>
#include <sstream>

namespace rainfold::cli {

namespace {

struct ComputeOptions {
    std::string file;
    bool greenAmpt = false;
    bool json = false;
    int slot = 0; // 0: the slot the window opens on
};

bool ParseOptions(const std::vector<std::string>& args, ComputeOptions& o, std::string& error) {
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--green-ampt") {
            o.greenAmpt = true;
        } else if (a == "--json") {
            o.json = true;
        } else if (a == "--slot") {
            if (i + 1 >= args.size() ||
                (args[i + 1] != "1" && args[i + 1] != "2" && args[i + 1] != "3")) {
                error = "--slot takes 1, 2 or 3";
                return false;
            }
            o.slot = std::stoi(args[++i]);
        } else if (!TakeFileArgument(a, o.file, error)) {
            return false;
        }
    }
    if (o.file.empty()) {
        error = "no design file named";
        return false;
    }
    return true;
}

std::string Pad(const std::string& text, size_t width, bool right = true) {
    if (text.size() >= width)
        return text;
    const std::string fill(width - text.size(), ' ');
    return right ? fill + text : text + fill;
}

void PrintPage(const ResultsPage& page, std::ostream& out) {
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
}

template <class Array> void SlotArrayJson(JsonWriter& j, const std::string& key, const Array& a) {
    j.BeginArray(key);
    for (int c = 1; c <= 3; ++c) {
        j.BeginArray();
        for (int p = 1; p <= 10; ++p) {
            j.BeginArray();
            for (int s = 1; s <= 3; ++s)
                j.Number(a.get(c, p, s));
            j.EndArray();
        }
        j.EndArray();
    }
    j.EndArray();
}

void GreenArrayJson(JsonWriter& j, const std::string& key, const GreenArray& a) {
    j.BeginArray(key);
    for (int c = 1; c <= 3; ++c) {
        j.BeginArray();
        for (int p = 1; p <= 10; ++p)
            j.Number(a.get(c, p, 1));
        j.EndArray();
    }
    j.EndArray();
}

// The weighted average of one case, or empty when its positions were never computed or the
// average cannot be formed.
template <class F> std::optional<double> Guarded(const F& average) {
    try {
        return average();
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

std::string ResultsJson(const DesignRecord& design, const Results& res, const CalcOutcome& calc) {
    const double L = ReadEngineInputs(design).L;
    JsonWriter j;
    j.BeginObject();
    j.Key("status");
    j.String(calc.ok() ? "ok" : "error");
    j.Key("message");
    j.String(calc.message);
    j.BeginArray("HoursPerRev");
    for (int c = 1; c <= 3; ++c)
        j.Number(res.HoursPerRev[static_cast<size_t>(c)]);
    j.EndArray();
    j.BeginArray("SurfStore");
    for (size_t p = 1; p <= 10; ++p)
        j.Number(res.SurfStore[p]);
    j.EndArray();
    SlotArrayJson(j, "PeakRate", res.PeakRate);
    SlotArrayJson(j, "HalfTime", res.HalfTime);
    SlotArrayJson(j, "PondFlag", res.PondFlag);
    SlotArrayJson(j, "PondStart", res.PondStart);
    SlotArrayJson(j, "PondEnd", res.PondEnd);
    SlotArrayJson(j, "PctRunoff", res.PctRunoff);
    j.BeginArray("WeightedRunoff");
    for (int s = 1; s <= 3; ++s) {
        j.BeginArray();
        for (int c = 1; c <= 3; ++c)
            j.Number(Guarded([&] { return WeightedAverage(res.PctRunoff, L, c, s); }));
        j.EndArray();
    }
    j.EndArray();
    if (design.greenAmpt) {
        GreenArrayJson(j, "GATs", res.GATs);
        GreenArrayJson(j, "GAPctRunoff", res.GAPctRunoff);
        GreenArrayJson(j, "GAVarTs", res.GAVarTs);
        GreenArrayJson(j, "GAVarFTf", res.GAVarFTf);
        GreenArrayJson(j, "GAVarPctRunoff", res.GAVarPctRunoff);
        j.BeginArray("GAWeightedRunoff");
        for (int c = 1; c <= 3; ++c)
            j.Number(Guarded([&] { return WeightedAverage(res.GAPctRunoff, L, c); }));
        j.EndArray();
    }
    j.EndObject();
    return j.str();
}

} // namespace

int RunCompute(const std::vector<std::string>& args) {
    ComputeOptions options;
    std::string usageError;
    if (!ParseOptions(args, options, usageError)) {
        std::cerr << "rainfold-cli compute: " << usageError << '\n';
        return 64;
    }

    DesignRecord design;
    if (const int failed = LoadCheckedDesign(options.file, options.greenAmpt, design))
        return failed;

    Results results;
    const CalcOutcome calc =
        Calc_Results(design, results, [](const std::string& m) { std::cerr << m << '\n'; });
    if (options.json) {
        std::cout << ResultsJson(design, results, calc);
        return calc.ok() ? 0 : 3;
    }
    if (!calc.ok()) {
        std::cerr << "Error: " << calc.message << '\n';
        return 3;
    }
    const int slot = options.slot ? options.slot : InitialSlot(design.intakeFamilyIndex);
    const ResultsPage page = BuildResultsPage(design, results, slot);
    PrintPage(page, std::cout);
    if (!page.fault.empty()) {
        std::cerr << "Error: " << page.fault << '\n';
        return 3;
    }
    return 0;
}

} // namespace rainfold::cli
