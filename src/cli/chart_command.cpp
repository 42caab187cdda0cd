#include "chart_command.h"

#include "json_text.h"

#include "calc.h"
#include "chart_data.h"
#include "format.h"

#include <memory>
#include <sstream>
#include <vector>

namespace rainfold::cli {

namespace {

// Chart values are held to four decimals, as the chart's table holds them.
std::string Fixed4(double x) {
    return FormatFixed(x, 4);
}

// The four-decimal value as a number: 0.0123, not the binary neighbour of the unrounded value.
Json Held(double x) {
    double value = 0;
    return ParseDecimal(Fixed4(x), value) ? Json(value) : Json(nullptr);
}

Json Points(const std::vector<ChartPoint>& points) {
    Json out = Json::array();
    for (const ChartPoint& p : points)
        out.push_back(Json::array({Held(p.t), Held(p.rate)}));
    return out;
}

template <class Get> Json Column(const std::vector<ChartPoint>& points, Get get) {
    Json out = Json::array();
    for (const ChartPoint& p : points)
        out.push_back(Held(get(p)));
    return out;
}

// A marker of zero height at the first instant marks nothing: the position never ponds.
bool Marks(const std::vector<ChartPoint>& marker) {
    for (const ChartPoint& p : marker)
        if (p.t != 0 || p.rate != 0)
            return true;
    return false;
}

std::string ChartJson(const ChartData& d) {
    const auto time = [](const ChartPoint& p) { return p.t; };
    const auto rate = [](const ChartPoint& p) { return p.rate; };
    Json doc;
    doc["status"] = "ok";
    doc["message"] = "";
    doc["time"] = Column(d.application, time);
    doc["application"] = Column(d.application, rate);
    doc["intake"] = Column(d.intake, rate);
    doc["ponding"] = Marks(d.pondingMarker) ? Points(d.pondingMarker) : Json(nullptr);
    doc["storage"] = d.storageMarker.empty() ? Json(nullptr) : Points(d.storageMarker);
    doc["yMaximum"] = d.yMaximum;
    doc["yDivisions"] = d.yDivisions;
    doc["txtHP"] = d.txtHP;
    doc["txtTS"] = d.txtTS;
    doc["txtTP"] = d.txtTP;
    return JsonText(doc) + "\n";
}

std::string ChartText(const ChartData& d) {
    std::ostringstream out;
    out << "Peak Application Rate = " << d.txtHP << " in/hr\n"
        << "Time to Saturation = " << d.txtTS << " hr\n"
        << "Time to Peak Application = " << d.txtTP << " hr\n"
        << "Rate scale: 0 to " << PlainNumber(d.yMaximum) << " in/hr in " << d.yDivisions
        << " divisions\n";
    const auto marker = [&](const char* name, const std::vector<ChartPoint>& m) {
        if (Marks(m))
            out << name << ": " << Fixed4(m[0].t) << " hr, " << Fixed4(m[0].rate) << " to "
                << Fixed4(m[1].rate) << " in/hr\n";
    };
    marker("Ponding", d.pondingMarker);
    marker("Storage filled", d.storageMarker);
    out << "\n  Time (hr)  Application (in/hr)  Intake (in/hr)\n";
    for (size_t i = 0; i < d.application.size(); ++i) {
        const std::string cells[] = {Fixed4(d.application[i].t), Fixed4(d.application[i].rate),
                                     Fixed4(d.intake[i].rate)};
        const size_t widths[] = {11, 21, 16};
        for (int c = 0; c < 3; ++c)
            out << std::string(widths[c] > cells[c].size() ? widths[c] - cells[c].size() : 0, ' ')
                << cells[c];
        out << '\n';
    }
    return out.str();
}

} // namespace

int RunChart(const ChartOptions& options, const CommandOutput& output) {
    DesignRecord design;
    Results results;
    int slot = 0;
    if (const int stopped =
            ComputeShownSlot(output, options.file, options.model, design, results, slot))
        return stopped;
    const Notify notify = [&](const std::string& m) { output.Notice(m); };
    const ChartOutcome chart = BuildChart(
        design, results, ChartRequest{options.capacity + 2, options.position - 1, slot}, notify);
    if (!chart.fault.empty())
        return output.Fail(kExitFault, chart.fault);
    return output.Write(output.json ? ChartJson(chart.data) : ChartText(chart.data));
}

void AddChartCommand(CLI::App& app, int& exitCode) {
    auto options = std::make_shared<ChartOptions>();
    auto output = std::make_shared<CommandOutput>("chart");
    CLI::App* command = app.add_subcommand(
        "chart", "print the rate chart of one position as the results page draws it");
    AddDesignFileArgument(*command, options->file);
    command
        ->add_option("--case", options->capacity,
                     "capacity case charted: 1 (capacity - 100 gpm), 2 (as entered, the default) "
                     "or 3 (capacity + 100 gpm)")
        ->check(WholeNumberIn(1, 3))
        ->type_name("C");
    command
        ->add_option("--position", options->position,
                     "position charted, 1 to 10 counted from the pivot (default 10)")
        ->check(WholeNumberIn(1, 10))
        ->type_name("P");
    AddModelOptions(*command, options->model);
    AddJsonOption(*command, *output,
                  "print the curves, markers and scale as one JSON object (rates in in/hr, "
                  "times in hours, four decimals)");
    command->callback([options, output, &exitCode] { exitCode = RunChart(*options, *output); });
}

} // namespace rainfold::cli
