// Time of the design explorer's work: a 60 x 40 map on every core (weighted average or outer
// end), and each of the two answers, for an intake-family design and for the same design under
// Green-Ampt.

#include "design_file.h"
#include "explore.h"

#include <benchmark/benchmark.h>

#include <optional>
#include <string>

namespace {

std::optional<rainfold::RunoffProbe> Probe(benchmark::State& state, bool greenAmpt) {
    rainfold::DesignRecord design;
    const auto opened = rainfold::OpenDesign(
        std::string(RAINFOLD_EXAMPLES_DIR) + "/spray-1300ft-800gpm.rfd", design);
    if (!opened.ok) {
        state.SkipWithError(opened.message.c_str());
        return std::nullopt;
    }
    design.greenAmpt = greenAmpt;
    std::string message;
    std::optional<rainfold::RunoffProbe> probe = rainfold::RunoffProbe::Make(design, message);
    if (!probe)
        state.SkipWithError(message.c_str());
    return probe;
}

void Map(benchmark::State& state, bool greenAmpt, rainfold::ExploreAxis axis,
         rainfold::ExploreCriterion criterion = rainfold::ExploreCriterion::Average) {
    const auto probe = Probe(state, greenAmpt);
    if (!probe)
        return;
    for (auto _ : state) {
        const rainfold::ExploreMap map =
            rainfold::ComputeExploreMap(*probe, axis, criterion, 60, 40);
        if (map.faults)
            state.SkipWithError(map.firstFault.c_str());
        benchmark::DoNotOptimize(map);
    }
}

// Targets 0 % and 5 %: the search ends at a different place for each.
void SmallestDiameter(benchmark::State& state, bool greenAmpt) {
    const auto probe = Probe(state, greenAmpt);
    if (!probe)
        return;
    for (auto _ : state)
        for (double target : {0.0, 5.0})
            benchmark::DoNotOptimize(rainfold::SmallestWettedDiameter(*probe, 1, target));
    state.SetItemsProcessed(state.iterations() * 2);
}

void LargestDepth(benchmark::State& state, bool greenAmpt) {
    const auto probe = Probe(state, greenAmpt);
    if (!probe)
        return;
    for (auto _ : state)
        for (double target : {0.0, 5.0})
            benchmark::DoNotOptimize(rainfold::LargestDepth(*probe, 40, target));
    state.SetItemsProcessed(state.iterations() * 2);
}

} // namespace

#define RAINFOLD_BENCH_REPEATED(...)                                                               \
    BENCHMARK_CAPTURE(__VA_ARGS__)                                                                 \
        ->Repetitions(9)                                                                           \
        ->ReportAggregatesOnly(true)                                                               \
        ->UseRealTime()                                                                            \
        ->Unit(benchmark::kMillisecond)

RAINFOLD_BENCH_REPEATED(Map, intake_depth, false, rainfold::ExploreAxis::Depth);
RAINFOLD_BENCH_REPEATED(Map, intake_storage, false, rainfold::ExploreAxis::Storage);
RAINFOLD_BENCH_REPEATED(Map, green_ampt_depth, true, rainfold::ExploreAxis::Depth);
RAINFOLD_BENCH_REPEATED(Map, green_ampt_storage, true, rainfold::ExploreAxis::Storage);
RAINFOLD_BENCH_REPEATED(Map, intake_outer_end, false, rainfold::ExploreAxis::Depth,
                        rainfold::ExploreCriterion::OuterEnd);
RAINFOLD_BENCH_REPEATED(Map, green_ampt_outer_end, true, rainfold::ExploreAxis::Depth,
                        rainfold::ExploreCriterion::OuterEnd);
// Each iteration answers twice; the time per answer is half the time shown.
RAINFOLD_BENCH_REPEATED(SmallestDiameter, intake_two_targets, false);
RAINFOLD_BENCH_REPEATED(SmallestDiameter, green_ampt_two_targets, true);
RAINFOLD_BENCH_REPEATED(LargestDepth, intake_two_targets, false);
RAINFOLD_BENCH_REPEATED(LargestDepth, green_ampt_two_targets, true);

BENCHMARK_MAIN();
