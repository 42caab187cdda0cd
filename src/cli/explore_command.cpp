#include "explore_command.h"

#include "explore.h"
#include "file_output.h"
#include "format.h"
#include "json_text.h"
#include "progress_line.h"

#include <cmath>
#include <memory>

namespace rainfold::cli {

namespace {

std::optional<double> Finite(double x) {
    return std::isfinite(x) ? std::optional<double>(x) : std::nullopt;
}

const char* CriterionName(ExploreCriterion criterion) {
    return criterion == ExploreCriterion::OuterEnd ? "outer-end" : "average";
}

// The design as it stands: its weighted average (the results page's middle box) and its outer
// end (the grid's last row at the entered capacity).
struct Current {
    double diameter = 0, depth = 0, average = 0, outerEnd = 0;
};

Json MapJson(const ExploreMap& map, double target, const Current& current,
             const std::optional<double>& minDiameter, const std::optional<double>& maxDepth) {
    Json doc;
    doc["status"] = "ok";
    doc["message"] = "";
    doc["x"] = "wettedDiameter";
    doc["y"] = map.axis == ExploreAxis::Depth ? "depth" : "storage";
    Json xs = Json::array(), ys = Json::array(), runoff = Json::array();
    for (double x : map.xValues)
        xs.push_back(JsonNumber(x));
    for (double y : map.yValues)
        ys.push_back(JsonNumber(y));
    for (const std::vector<double>& row : map.runoff) {
        Json values = Json::array();
        for (double v : row)
            values.push_back(JsonNumber(Finite(v)));
        runoff.push_back(values);
    }
    doc["xValues"] = xs;
    doc["yValues"] = ys;
    doc["runoff"] = runoff;
    doc["target"] = JsonNumber(target);
    doc["criterion"] = CriterionName(map.criterion);
    doc["current"] = {{"wettedDiameter", JsonNumber(current.diameter)},
                      {"depth", JsonNumber(current.depth)},
                      {"runoff", JsonNumber(current.average)},
                      {"outerEnd", JsonNumber(current.outerEnd)}};
    doc["minWettedDiameter"] = JsonNumber(minDiameter);
    doc["maxDepth"] = JsonNumber(maxDepth);
    return doc;
}

} // namespace

int RunExplore(const ExploreOptions& options, const CommandOutput& output,
               const ExplorePicture& picture) {
    const int outputs = output.json + options.csv + !options.png.empty() + !options.pdf.empty();
    if (outputs != 1)
        return output.Usage("give exactly one of --json, --csv, --png OUT or --pdf OUT");

    for (const std::string* picture : {&options.png, &options.pdf})
        if (!picture->empty())
            if (const int refused = RefuseInputAsOutput(
                    output, picture == &options.png ? "--png" : "--pdf", *picture, options.file))
                return refused;
    DesignRecord design;
    if (const int failed = LoadCheckedDesign(output, options.file, options.greenAmpt, design))
        return failed;
    std::string message;
    const std::optional<RunoffProbe> probe = RunoffProbe::Make(design, message);
    if (!probe)
        return output.Fail(kExitFault, message);
    Current current{probe->designDiameter(), probe->designDepth()};
    try {
        current.average = probe->WeightedAverage(current.diameter, current.depth);
        current.outerEnd = probe->OuterEnd(current.diameter, current.depth);
    } catch (const std::exception& e) {
        return output.Fail(kExitFault, e.what());
    }

    const ExploreAxis axis = options.y == "storage" ? ExploreAxis::Storage : ExploreAxis::Depth;
    const ExploreCriterion criterion =
        options.criterion == "outer-end" ? ExploreCriterion::OuterEnd : ExploreCriterion::Average;
    ExploreProgress progress;
    ExploreMap map;
    {
        const int total = options.columns * options.rows;
        const ProgressLine line([&progress, total] {
            const int done = progress.done;
            return "rainfold-cli explore: " + std::to_string(done) + " of " +
                   std::to_string(total) + " points (" + std::to_string(100LL * done / total) +
                   " %)";
        });
        map = ComputeExploreMap(*probe, axis, criterion, options.columns, options.rows, &progress);
    }
    if (map.faults > 0)
        output.Notice(std::to_string(map.faults) + " points have no result: " + map.firstFault);
    if (map.notices > 0)
        output.Notice("The root solver ran out of iterations " + std::to_string(map.notices) +
                      " times; those points carry its last estimate.");

    if (options.csv)
        return output.Write(ExploreMapCsv(map, ExploreFactsOf(design, *probe, criterion)));
    if (output.json) {
        const std::optional<double> minDiameter =
            SmallestWettedDiameter(*probe, current.depth, options.target, criterion);
        const std::optional<double> maxDepth =
            LargestDepth(*probe, current.diameter, options.target, criterion);
        return output.Write(JsonText(MapJson(map, options.target, current, minDiameter, maxDepth)) +
                            "\n");
    }
    if (!picture)
        return output.Usage("this build draws no pictures");
    return picture(options, output, design, *probe, map);
}

void AddExploreCommand(CLI::App& app, int& exitCode, const ExplorePicture& picture) {
    auto options = std::make_shared<ExploreOptions>();
    auto output = std::make_shared<CommandOutput>("explore");
    CLI::App* command = app.add_subcommand(
        output->command(), "the runoff of the entered capacity (weighted over the circle or at the "
                           "outer end) over wetted diameter and depth per pass (or storage), and "
                           "the answers for a runoff target");
    AddDesignFileArgument(*command, options->file);
    AddGreenAmptOption(*command, options->greenAmpt);
    // Read here, with a point, as every number of the program: no "nan", "inf" or "0x10".
    const CLI::Validator percent(
        [options](std::string& text) {
            double value = 0;
            if (!ParseDecimal(text, value) || !(value >= 0 && value <= 100))
                return text + " is not a number from 0 to 100";
            options->target = value;
            return std::string();
        },
        "");
    command->add_option("--target", "runoff target, percent (default 0)")
        ->check(percent)
        ->type_name("T");
    command
        ->add_option("--criterion", options->criterion,
                     "what the target applies to: the weighted average over the circle (default) "
                     "or the outer end of the pivot")
        ->check(CLI::IsMember({"average", "outer-end"}).description(""))
        ->type_name("average|outer-end");
    command
        ->add_option("--y", options->y,
                     "y axis: depth per pass (default) or surface storage on every segment")
        ->check(CLI::IsMember({"depth", "storage"}).description(""))
        ->type_name("depth|storage");
    command->add_option("--columns", options->columns, "wetted diameters, 2 to 1000 (default 60)")
        ->check(WholeNumberIn(2, 1000))
        ->type_name("N");
    command->add_option("--rows", options->rows, "depths or storages, 2 to 1000 (default 40)")
        ->check(WholeNumberIn(2, 1000))
        ->type_name("M");
    AddJsonOption(*command, *output, "print the map and the answers as one JSON object");
    command->add_flag("--csv", options->csv,
                      "print the map as CSV: the design's facts, then a header row of diameters");
    if (picture) {
        command->add_option("--png", options->png, "draw the map as the window does, to a PNG file")
            ->type_name("OUT.png");
        command->add_option("--pdf", options->pdf, "draw the map as the window does, to a PDF file")
            ->type_name("OUT.pdf");
    }
    command->callback([options, output, picture, &exitCode] {
        exitCode = RunExplore(*options, *output, picture);
    });
}

} // namespace rainfold::cli
