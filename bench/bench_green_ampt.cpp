// Time of one whole design with the Green-Ampt model on: the intake-family runoff of the three
// slots plus both Green-Ampt computations at every capacity case and position.

#include "calc.h"

#include <benchmark/benchmark.h>

#include <string>

namespace {

rainfold::DesignRecord GreenAmptDesign(const std::string& wettedDiameter, const std::string& Ks) {
    rainfold::DesignRecord design;
    design.txtSYL = "1300";
    design.txtGPM = "800";
    design.txtAPPL = "1";
    design.txtWetDiam = wettedDiameter;
    design.intakeFamilyIndex = 3; // "1.0"
    design.surfaceOption = rainfold::kConstantSlopeResidue;
    design.txtSurfStore = "2";
    design.txtResidue = "20";
    design.txtKS = Ks;
    design.txtHW = "110";
    design.txtThetaS = "0.45";
    design.txtThetaI = "0.25";
    design.txtRzDepth = "1000";
    design.txtOmega = "0.0002";
    design.greenAmpt = true;
    return design;
}

void ComputeGreenAmpt(benchmark::State& state, const rainfold::DesignRecord& design) {
    int notices = 0;
    const rainfold::Notify notify = [&](const std::string&) { ++notices; };
    for (auto _ : state) {
        rainfold::Results results;
        const auto outcome = rainfold::Calc_Results(design, results, notify);
        if (!outcome.ok()) {
            state.SkipWithError(outcome.message.c_str());
            return;
        }
        benchmark::DoNotOptimize(results);
    }
    if (notices != 0)
        state.SkipWithError("the root solver ran out of iterations");
}

} // namespace

// A spray package (60 ft) and a LEPA-like one (15 ft) that ponds at every position.
BENCHMARK_CAPTURE(ComputeGreenAmpt, spray_60ft, GreenAmptDesign("60", "10"))
    ->Repetitions(15)
    ->ReportAggregatesOnly(true)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(ComputeGreenAmpt, lepa_15ft, GreenAmptDesign("15", "10"))
    ->Repetitions(15)
    ->ReportAggregatesOnly(true)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(ComputeGreenAmpt, tight_soil, GreenAmptDesign("60", "2"))
    ->Repetitions(15)
    ->ReportAggregatesOnly(true)
    ->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
