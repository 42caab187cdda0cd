#include "explore_command.h"

#include "explore.h"
#include "file_output.h"
#include "json_text.h"

#include <cmath>
#include <memory>

namespace rainfold::cli {

namespace {

std::optional<double> Finite(double x) {
    return std::isfinite(x) ? std::optional<double>(x) : std::nullopt;
}

Json MapJson(const ExploreMap& map, double target, double diameter, double depth, double current,
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
    doc["current"] = {{"wettedDiameter", JsonNumber(diameter)},
                      {"depth", JsonNumber(depth)},
                      {"runoff", JsonNumber(current)}};
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
    double current = 0;
    try {
        current = probe->WeightedAverage(probe->designDiameter(), probe->designDepth());
    } catch (const std::exception& e) {
        return output.Fail(kExitFault, e.what());
    }

    const ExploreAxis axis = options.y == "storage" ? ExploreAxis::Storage : ExploreAxis::Depth;
    const ExploreMap map = ComputeExploreMap(*probe, axis, options.columns, options.rows);
    if (map.faults > 0)
        output.Notice(std::to_string(map.faults) + " points have no result: " + map.firstFault);
    if (map.notices > 0)
        output.Notice("The root solver ran out of iterations " + std::to_string(map.notices) +
                      " times; those points carry its last estimate.");

    if (options.csv)
        return output.Write(ExploreMapCsv(map));
    if (output.json) {
        const std::optional<double> minDiameter =
            SmallestWettedDiameter(*probe, probe->designDepth(), options.target);
        const std::optional<double> maxDepth =
            LargestDepth(*probe, probe->designDiameter(), options.target);
        return output.Write(
            JsonText(MapJson(map, options.target, probe->designDiameter(), probe->designDepth(),
                             current, minDiameter, maxDepth)) +
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
        output->command(), "the weighted-average runoff of the entered capacity over wetted "
                           "diameter and depth per pass (or storage), and the answers for a "
                           "runoff target");
    AddDesignFileArgument(*command, options->file);
    AddGreenAmptOption(*command, options->greenAmpt);
    command->add_option("--target", options->target, "runoff target, percent (default 0)")
        ->check(CLI::Range(0.0, 100.0).description(""))
        ->type_name("T");
    command
        ->add_option("--y", options->y,
                     "y axis: depth per pass (default) or surface storage on every segment")
        ->check(CLI::IsMember({"depth", "storage"}).description(""))
        ->type_name("depth|storage");
    command->add_option("--columns", options->columns, "wetted diameters, 2 to 1000 (default 60)")
        ->check(CLI::Range(2, 1000).description(""))
        ->type_name("N");
    command->add_option("--rows", options->rows, "depths or storages, 2 to 1000 (default 40)")
        ->check(CLI::Range(2, 1000).description(""))
        ->type_name("M");
    AddJsonOption(*command, *output, "print the map and the answers as one JSON object");
    command->add_flag("--csv", options->csv, "print the map as CSV: a header row of diameters");
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
