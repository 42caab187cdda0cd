// Time of one whole design: the runoff computation plus the weighted averages of the page.

#include "calc.h"
#include "design_file.h"
#include "results_page.h"

#include <benchmark/benchmark.h>

#include <string>

namespace {

void ComputeExample(benchmark::State& state, const std::string& name) {
    rainfold::DesignRecord design;
    const auto opened =
        rainfold::OpenDesign(std::string(RAINFOLD_EXAMPLES_DIR) + "/" + name, design);
    if (!opened.ok) {
        state.SkipWithError(opened.message.c_str());
        return;
    }
    const double L = rainfold::ReadEngineInputs(design).L;
    for (auto _ : state) {
        rainfold::Results results;
        const auto outcome = rainfold::Calc_Results(design, results);
        double sum = 0;
        for (int c = 1; c <= 3; ++c)
            sum += rainfold::WeightedAverage(results.PctRunoff, L, c, 2).value_or(0);
        benchmark::DoNotOptimize(outcome);
        benchmark::DoNotOptimize(sum);
    }
}

} // namespace

BENCHMARK_CAPTURE(ComputeExample, spray_800gpm, std::string("spray-1300ft-800gpm.rfd"))
    ->Repetitions(15)
    ->ReportAggregatesOnly(true)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(ComputeExample, lepa, std::string("lepa-1320ft-900gpm.rfd"))
    ->Repetitions(15)
    ->ReportAggregatesOnly(true)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(ComputeExample, customized, std::string("customized-variable-storage.rfd"))
    ->Repetitions(15)
    ->ReportAggregatesOnly(true)
    ->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
