// Time of the results side of the window, drawn on Qt's offscreen platform: the page change to
// "Results" (checks, computation, page filled, window repainted) and the chart of a clicked cell
// (chart built and repainted), each the median of 50 runs, for an intake-family and a Green-Ampt
// design.

#include "RateChart.h"
#include "ResultsView.h"
#include "ui/WindowFixture.h"

#include <QTableWidget>

#include <benchmark/benchmark.h>

#include <map>

namespace {

#include "data/results_page.inc" // designs 0 (an intake family) and 2 (Green-Ampt)

// One shown window per model, kept over the repetitions.
ROAnalysis& Window(bool greenAmpt) {
    static std::map<bool, std::unique_ptr<WindowFixture>> windows;
    auto& f = windows[greenAmpt];
    if (!f) {
        f = std::make_unique<WindowFixture>();
        f->put(kResultsDesigns[greenAmpt ? 2 : 0]);
        f->w->resize(1250, 760);
        QApplication::processEvents();
    }
    return *f->w;
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
