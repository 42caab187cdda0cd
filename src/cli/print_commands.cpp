#include "print_commands.h"
#include "command_support.h"
#include "file_output.h"

#include "ExplorerMapPicture.h"
#include "QPainterSurface.h"
#include "calc.h"
#include "chart_data.h"
#include "chart_picture.h"
#include "page_output.h"
#include "printout.h"
#include "results_page.h"

#include <QGuiApplication>
#include <QImage>
#include <QString>

#include <memory>

namespace rainfold::cli {

namespace {

enum class Page { Report, Plot };

struct PrintOptions {
    std::string file;
    std::string pdf;
    ModelOptions model;
    int capacity = 2;  // capacity case shown: 1 less 100 gpm, 2 as entered, 3 plus 100 gpm
    int position = 10; // position charted, 1..10 (the outer end unless asked)
};

// The pictures and pages need a GUI application for their fonts; no window is ever shown, so no
// display is needed either.
std::unique_ptr<QGuiApplication> StartApplication() {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "rainfold-cli";
    static char* argv[] = {name, nullptr};
    return std::make_unique<QGuiApplication>(argc, argv);
}

int Run(Page kind, const PrintOptions& options, const CommandOutput& output) {
    if (const int refused = RefuseInputAsOutput(output, "--pdf", options.pdf, options.file))
        return refused;
    DesignRecord design;
    Results results;
    int slot = 0;
    if (const int stopped =
            ComputeShownSlot(output, options.file, options.model, design, results, slot))
        return stopped;
    const Notify notify = [&](const std::string& m) { output.Notice(m); };

    PrintInputs in;
    in.design = design;
    in.page = BuildResultsPage(design, results, slot);
    if (!in.page.fault.empty())
        return output.Fail(kExitFault, in.page.fault);
    in.model = design.greenAmpt ? InfiltrationModel::GreenAmpt : InfiltrationModel::IntakeFamily;
    const int column = options.capacity + 2;
    in.txtCol = std::to_string(column);
    in.shownRow = options.position - 1;
    in.SurfStore = results.SurfStore;

    const auto app = StartApplication();
    in.version = render::VersionText().toStdString();
    in.printDate = render::ShortDateToday().toStdString();

    if (kind == Page::Plot) {
        const ChartOutcome chart =
            BuildChart(design, results, ChartRequest{column, in.shownRow, slot}, notify);
        if (!chart.fault.empty())
            return output.Fail(kExitFault, chart.fault);
        in.txtHP = chart.data.txtHP;
        in.txtTS = chart.data.txtTS;
        in.txtTP = chart.data.txtTP;
        in.percentRunoff =
            in.page.grid[static_cast<size_t>(in.shownRow)][static_cast<size_t>(column)];
        in.chart = render::ChartPicture(chart.data, chart.drawn);
    }

    std::string pdf;
    const bool drawn = render::RenderPdfPage(
        [&](DrawingSurface& s) {
            if (kind == Page::Report)
                PrintReport(s, in);
            else
                PrintPlot(s, in);
        },
        pdf);
    if (!drawn)
        return output.Fail(kExitOutput,
                           "cannot write " + options.pdf + ": the page cannot be drawn",
                           "rainfold-cli " + output.command() + ": ");
    return WriteOutputFile(output, options.pdf, pdf);
}

void AddPrintCommand(CLI::App& app, int& exitCode, Page kind) {
    const bool plot = kind == Page::Plot;
    auto options = std::make_shared<PrintOptions>();
    auto output = std::make_shared<CommandOutput>(plot ? "plot" : "report");
    CLI::App* command = app.add_subcommand(
        output->command(),
        plot ? "write the one-page printed plot, the chart of one position, to a PDF file"
             : "write the one-page printed report to a PDF file (Letter)");
    AddDesignFileArgument(*command, options->file);
    command->add_option("--pdf", options->pdf, "the PDF file written")
        ->required()
        ->type_name("OUT.pdf");
    AddModelOptions(*command, options->model);
    command
        ->add_option("--case", options->capacity,
                     "capacity case shown: 1 (capacity - 100 gpm), 2 (as entered, the default) "
                     "or 3 (capacity + 100 gpm)")
        ->check(WholeNumberIn(1, 3))
        ->type_name("C");
    if (plot)
        command
            ->add_option("--position", options->position,
                         "position charted, 1 to 10 counted from the pivot (default 10)")
            ->check(WholeNumberIn(1, 10))
            ->type_name("P");
    command->callback(
        [options, output, kind, &exitCode] { exitCode = Run(kind, *options, *output); });
}

} // namespace

int WriteExplorePicture(const ExploreOptions& options, const CommandOutput& output,
                        const DesignRecord& design, const RunoffProbe& probe,
                        const ExploreMap& map) {
    const auto app = StartApplication();
    render::ExplorerMapView view =
        render::MapViewFor(design, probe, map.axis, map.criterion, options.target);
    view.map = &map;
    view.facts = ExploreFactsOf(design, probe, map.criterion);
    // The window's picture at the size it has by default, with the title block of a saved picture.
    const QSize size(render::kExplorerPictureWidth, render::kExplorerPictureHeight);
    const bool pdf = !options.pdf.empty();
    const std::string& file = pdf ? options.pdf : options.png;
    std::string bytes;
    if (!render::ExplorerMapFile(view, size, pdf, bytes))
        return output.Fail(kExitOutput, "cannot write " + file + ": the picture cannot be drawn",
                           "rainfold-cli " + output.command() + ": ");
    return WriteOutputFile(output, file, bytes);
}

void AddReportCommand(CLI::App& app, int& exitCode) {
    AddPrintCommand(app, exitCode, Page::Report);
}

void AddPlotCommand(CLI::App& app, int& exitCode) {
    AddPrintCommand(app, exitCode, Page::Plot);
}

} // namespace rainfold::cli
