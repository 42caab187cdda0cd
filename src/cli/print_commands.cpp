#include "print_commands.h"
#include "load_design.h"

#include "calc.h"
#include "chart_data.h"
#include "chart_picture.h"
#include "checks.h"
#include "design_file.h"
#include "printing.h"
#include "printout.h"
#include "results_page.h"

#include <QApplication>
#include <QString>

#include <cstdlib>
#include <iostream>
#include <memory>

namespace rainfold::cli {

namespace {

enum class Page { Report, Plot };

struct PrintOptions {
    std::string file;
    std::string pdf;
    bool greenAmpt = false;
    int slot = 0;      // 0: the slot the window opens on
    int capacity = 2;  // capacity case shown: 1 less 100 gpm, 2 as entered, 3 plus 100 gpm
    int position = 10; // position charted, 1..10 (the outer end unless asked)
};

bool ReadWhole(const std::string& text, int low, int high, int& value) {
    char* end = nullptr;
    const long v = std::strtol(text.c_str(), &end, 10);
    if (text.empty() || *end != '\0' || v < low || v > high)
        return false;
    value = static_cast<int>(v);
    return true;
}

bool ParseOptions(Page page, const std::vector<std::string>& args, PrintOptions& o,
                  std::string& error) {
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        const bool hasValue = i + 1 < args.size();
        if (a == "--green-ampt") {
            o.greenAmpt = true;
        } else if (a == "--pdf") {
            if (!hasValue) {
                error = "--pdf takes a file name";
                return false;
            }
            o.pdf = args[++i];
        } else if (a == "--slot") {
            if (!hasValue || !ReadWhole(args[i + 1], 1, 3, o.slot)) {
                error = "--slot takes 1, 2 or 3";
                return false;
            }
            ++i;
        } else if (a == "--case") {
            if (!hasValue || !ReadWhole(args[i + 1], 1, 3, o.capacity)) {
                error = "--case takes 1, 2 or 3";
                return false;
            }
            ++i;
        } else if (a == "--position" && page == Page::Plot) {
            if (!hasValue || !ReadWhole(args[i + 1], 1, 10, o.position)) {
                error = "--position takes a whole number from 1 to 10";
                return false;
            }
            ++i;
        } else if (!TakeFileArgument(a, o.file, error)) {
            return false;
        }
    }
    if (o.file.empty()) {
        error = "no design file named";
        return false;
    }
    if (o.pdf.empty()) {
        error = "no PDF file named (--pdf OUT.pdf)";
        return false;
    }
    return true;
}

// The printed pages need a GUI application for fonts and the chart; no window is ever shown.
std::unique_ptr<QApplication> StartApplication() {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "rainfold-cli";
    static char* argv[] = {name, nullptr};
    return std::make_unique<QApplication>(argc, argv);
}

int Run(Page kind, const std::vector<std::string>& args) {
    const char* command = kind == Page::Report ? "report" : "plot";
    PrintOptions options;
    std::string usageError;
    if (!ParseOptions(kind, args, options, usageError)) {
        std::cerr << "rainfold-cli " << command << ": " << usageError << '\n';
        return 64;
    }

    DesignRecord design;
    if (const int failed = LoadCheckedDesign(options.file, options.greenAmpt, design))
        return failed;

    Results results;
    const Notify notify = [](const std::string& m) { std::cerr << m << '\n'; };
    const CalcOutcome calc = Calc_Results(design, results, notify);
    if (!calc.ok()) {
        std::cerr << "Error: " << calc.message << '\n';
        return 3;
    }
    const int slot = options.slot ? options.slot : InitialSlot(design.intakeFamilyIndex);

    PrintInputs in;
    in.design = design;
    in.page = BuildResultsPage(design, results, slot);
    if (!in.page.fault.empty()) {
        std::cerr << "Error: " << in.page.fault << '\n';
        return 3;
    }
    in.model = design.greenAmpt ? InfiltrationModel::GreenAmpt : InfiltrationModel::IntakeFamily;
    const int column = options.capacity + 2;
    in.txtCol = std::to_string(column);
    in.shownRow = options.position - 1;
    in.SurfStore = results.SurfStore;

    const auto app = StartApplication();
    in.version = ui::VersionText().toStdString();
    in.printDate = ui::ShortDateToday().toStdString();

    if (kind == Page::Plot) {
        const ChartOutcome chart =
            BuildChart(design, results, ChartRequest{column, in.shownRow, slot}, notify);
        if (!chart.fault.empty()) {
            std::cerr << "Error: " << chart.fault << '\n';
            return 3;
        }
        in.txtHP = chart.data.txtHP;
        in.txtTS = chart.data.txtTS;
        in.txtTP = chart.data.txtTP;
        in.percentRunoff =
            in.page.grid[static_cast<size_t>(in.shownRow)][static_cast<size_t>(column)];
        in.chart = ui::ChartPicture(chart.data, chart.drawn);
    }

    const bool written = ui::WritePdf(QString::fromStdString(options.pdf), [&](DrawingSurface& s) {
        if (kind == Page::Report)
            PrintReport(s, in);
        else
            PrintPlot(s, in);
    });
    if (!written) {
        std::cerr << "rainfold-cli " << command << ": cannot write " << options.pdf << '\n';
        return 4;
    }
    return 0;
}

} // namespace

int RunReport(const std::vector<std::string>& args) {
    return Run(Page::Report, args);
}

int RunPlot(const std::vector<std::string>& args) {
    return Run(Page::Plot, args);
}

} // namespace rainfold::cli
