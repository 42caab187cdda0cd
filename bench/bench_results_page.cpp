// Time of the results side of the window, drawn on Qt's offscreen platform: the page change to
// "Results" (checks, computation, page filled, window repainted) and the chart of a clicked cell
// (chart built and repainted), each the median of 50 runs, for an intake-family and a Green-Ampt
// design.

#include "ROAnalysis.h"
#include "RateChart.h"
#include "ResultsView.h"

#include <QAction>
#include <QApplication>
#include <QTabWidget>
#include <QTableWidget>

#include <benchmark/benchmark.h>

#include <map>
#include <memory>

namespace {

rainfold::DesignRecord Design(bool greenAmpt) {
    rainfold::DesignRecord d;
    d.txtSYL = greenAmpt ? "1300" : "1320";
    d.txtGPM = greenAmpt ? "800" : "900";
    d.txtAPPL = "1";
    d.txtWetDiam = greenAmpt ? "40" : "30";
    d.intakeFamilyIndex = greenAmpt ? 0 : 3;
    d.surfaceOption = greenAmpt ? rainfold::kUserConstant : rainfold::kConstantSlopeResidue;
    d.txtSurfStore = greenAmpt ? "0.2" : "4";
    d.txtResidue = greenAmpt ? "0.05" : "15";
    d.txtKS = "10";
    d.txtHW = "110";
    d.txtThetaS = "0.45";
    d.txtThetaI = "0.25";
    d.txtRzDepth = "1000";
    d.txtOmega = "0.0002";
    return d;
}

// One shown window per model, kept over the repetitions.
ROAnalysis& Window(bool greenAmpt) {
    static std::map<bool, std::unique_ptr<ROAnalysis>> windows;
    auto& w = windows[greenAmpt];
    if (!w) {
        w = std::make_unique<ROAnalysis>();
        w->setDesign(Design(greenAmpt));
        if (greenAmpt)
            w->findChild<QAction*>(QStringLiteral("mnuOptionsGreenAmpt"))->trigger();
        w->resize(1250, 760);
        w->show();
        QApplication::processEvents();
    }
    return *w;
}

QTabWidget* Tabs(ROAnalysis& w) {
    return w.findChild<QTabWidget*>(QStringLiteral("SSTab1"));
}

void PageChange(benchmark::State& state, bool greenAmpt) {
    ROAnalysis& w = Window(greenAmpt);
    for (auto _ : state) {
        state.PauseTiming();
        Tabs(w)->setCurrentIndex(0);
        QApplication::processEvents();
        state.ResumeTiming();
        Tabs(w)->setCurrentIndex(1);
        w.repaint();
    }
    if (Tabs(w)->currentIndex() != 1)
        state.SkipWithError("the design did not reach the results page");
}

void ChartClick(benchmark::State& state, bool greenAmpt) {
    ROAnalysis& w = Window(greenAmpt);
    if (Tabs(w)->currentIndex() != 1)
        Tabs(w)->setCurrentIndex(1);
    QTableWidget* grid = w.resultsView()->grid();
    static int column = 3; // kept over the repetitions, so every run enters a new cell
    for (auto _ : state) {
        column = column == 5 ? 3 : column + 1;
        grid->setCurrentCell(9, column);
        w.resultsView()->chart()->repaint();
    }
}

constexpr int kRuns = 50;

} // namespace

BENCHMARK_CAPTURE(PageChange, intake_family, false)
    ->Iterations(1)
    ->Repetitions(kRuns)
    ->ReportAggregatesOnly(true)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(PageChange, green_ampt, true)
    ->Iterations(1)
    ->Repetitions(kRuns)
    ->ReportAggregatesOnly(true)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ChartClick, intake_family, false)
    ->Iterations(1)
    ->Repetitions(kRuns)
    ->ReportAggregatesOnly(true)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ChartClick, green_ampt, true)
    ->Iterations(1)
    ->Repetitions(kRuns)
    ->ReportAggregatesOnly(true)
    ->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
