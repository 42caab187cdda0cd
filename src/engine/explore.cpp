#include "explore.h"

#include "fault.h"
#include "format.h"
#include "green_ampt.h"
#include "intake.h"
#include "results_page.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <mutex>
#include <stdexcept>
#include <thread>

namespace rainfold {

namespace {

constexpr int kCapacityAsEntered = 2;
constexpr int kAveragedPositions[] = {1, 3, 5, 7, 9};
constexpr int kOuterEnd = 10;
constexpr double kMmPerInch = 25.4;

// Runs f, turning the faults the computation can raise into a message.
template <class F> bool Guard(F&& f, std::string& message) {
    try {
        f();
        return true;
    } catch (const EngineFault& e) {
        message = e.what();
    } catch (const std::out_of_range&) {
        message = "Subscript out of range.";
    }
    return false;
}

// True when the point's runoff is at most the target; a point whose computation faults does not
// meet it.
template <class Runoff> bool Meets(const Runoff& runoff, double targetPct) {
    try {
        return runoff() <= targetPct;
    } catch (const EngineFault&) {
        return false;
    } catch (const std::out_of_range&) {
        return false;
    }
}

} // namespace

std::optional<RunoffProbe> RunoffProbe::Make(const DesignRecord& design, std::string& message) {
    RunoffProbe probe;
    const bool made = Guard(
        [&] {
            probe.base_ = ReadEngineInputs(design);
            for (double x : {probe.base_.L, probe.base_.Q0, probe.base_.d, probe.base_.R})
                Checked(x);
            probe.designDiameter_ = Val(design.txtWetDiam);
            probe.designDepth_ = Val(design.txtAPPL);
            Results read;
            FieldNumber(design.txtWetDiam); // the floor on the radius would hide an overflow
            ReadGreenAmptFields(design, read);
            FillSurfaceStorage(design, read);
            for (size_t i = 1; i <= 10; ++i)
                probe.storage_[i] = Read(read.SurfStore[i]);

            if (design.intakeFamilyIndex == -1)
                throw EngineFault(kSelectFamilyMessage);
            if (design.intakeFamilyIndex < -1 || design.intakeFamilyIndex > kCustomizedValuesIndex)
                throw std::out_of_range("Subscript out of range.");
            const bool customized = design.intakeFamilyIndex == kCustomizedValuesIndex;
            const double userK = customized ? FieldNumber(design.txtUk) : 0.0;
            const double userN = customized ? FieldNumber(design.txtUN) : 0.0;
            if (customized)
                CheckCustomizedValues(userK, userN);
            CheckCaseFlows(probe.base_.Q0);

            // The Green-Ampt average is built on the middle slot's pattern.
            probe.green_ = design.greenAmpt;
            probe.slot_ = probe.green_ ? 2 : InitialSlot(design.intakeFamilyIndex);
            const int family = SlotFamily(probe.base_.F, probe.slot_);
            probe.K_ = kIntakeK.at(static_cast<size_t>(family));
            probe.N_ = kIntakeN.at(static_cast<size_t>(family));
            if (probe.slot_ == 2 && userK != 0 && userN != 0) {
                probe.K_ = userK;
                probe.N_ = userN;
            }
            if (probe.green_)
                probe.soil_ = GreenAmptSoilOf(read);
        },
        message);
    if (!made)
        return std::nullopt;
    return probe;
}

PositionInputs RunoffProbe::positionAt(double diameterFt, double depthIn, int position) const {
    EngineInputs in = base_;
    in.R = Checked(WettedRadius(diameterFt));
    in.d = Checked(DepthMm(depthIn));
    return PositionOf(in, kCapacityAsEntered, position);
}

double RunoffProbe::storageAt(int position, std::optional<double> storageIn) const {
    return storageIn ? DepthMm(*storageIn) : storage_[static_cast<size_t>(position)];
}

double RunoffProbe::WeightedAverage(double diameterFt, double depthIn,
                                    std::optional<double> storageIn, const Notify& notify) const {
    // Only the five middle positions enter the average; the arrays keep the page's arithmetic.
    SlotArray intake;
    GreenArray green;
    for (int p : kAveragedPositions) {
        const double SS = storageAt(p, storageIn);
        IntakePosition found;
        ComputeIntakePosition(positionAt(diameterFt, depthIn, p), K_, N_, SS, found);
        if (green_)
            green.at(kCapacityAsEntered, p, 1) =
                GreenAmpt(GreenAmptModel::Constant, soil_, found.peakRate, found.halfTime, SS,
                          notify, false)
                    .pctRunoff;
        else
            intake.at(kCapacityAsEntered, p, slot_) = found.pctRunoff;
    }
    const std::optional<double> average =
        green_ ? rainfold::WeightedAverage(green, base_.L, kCapacityAsEntered)
               : rainfold::WeightedAverage(intake, base_.L, kCapacityAsEntered, slot_);
    return average.value_or(0.0); // every averaged position is written above
}

double RunoffProbe::OuterEnd(double diameterFt, double depthIn, std::optional<double> storageIn,
                             const Notify& notify) const {
    const double SS = storageAt(kOuterEnd, storageIn);
    IntakePosition found;
    ComputeIntakePosition(positionAt(diameterFt, depthIn, kOuterEnd), K_, N_, SS, found);
    if (!green_)
        return found.pctRunoff;
    // The grid shows the varying water content's runoff, the average the constant one's.
    return GreenAmpt(GreenAmptModel::Varying, soil_, found.peakRate, found.halfTime, SS, notify,
                     false)
        .pctRunoff;
}

double RunoffProbe::Runoff(ExploreCriterion criterion, double diameterFt, double depthIn,
                           std::optional<double> storageIn, const Notify& notify) const {
    return criterion == ExploreCriterion::OuterEnd
               ? OuterEnd(diameterFt, depthIn, storageIn, notify)
               : WeightedAverage(diameterFt, depthIn, storageIn, notify);
}

double RunoffProbe::segmentStorage(int segment) const {
    return storage_.at(static_cast<size_t>(segment)) / kMmPerInch;
}

std::optional<double> RunoffProbe::uniformStorage() const {
    for (size_t i = 2; i <= 10; ++i)
        if (storage_[i] != storage_[1])
            return std::nullopt;
    return storage_[1] / kMmPerInch;
}

ExploreValue FastWeightedAverage(const DesignRecord& design, const Notify& notify) {
    ExploreValue out;
    const std::optional<RunoffProbe> probe = RunoffProbe::Make(design, out.message);
    if (!probe)
        return out;
    out.ok = Guard(
        [&] {
            out.value = probe->WeightedAverage(probe->designDiameter(), probe->designDepth(),
                                               std::nullopt, notify);
        },
        out.message);
    return out;
}

ExploreMap ComputeExploreMap(const RunoffProbe& probe, ExploreAxis axis, ExploreCriterion criterion,
                             int columns, int rows, ExploreProgress* progress, int threads) {
    ExploreMap map;
    map.axis = axis;
    map.criterion = criterion;
    map.xValues = ExploreXValues(columns);
    map.yValues = ExploreYValues(axis, rows);
    const int nx = static_cast<int>(map.xValues.size());
    const int ny = static_cast<int>(map.yValues.size());
    map.runoff.assign(static_cast<size_t>(ny),
                      std::vector<double>(static_cast<size_t>(nx), std::nan("")));

    std::atomic<int> next{0};
    std::atomic<int> notices{0};
    std::mutex faultMutex;
    const Notify notify = [&notices](const std::string&) { ++notices; };
    const auto work = [&] {
        for (;;) {
            if (progress && progress->cancel.load(std::memory_order_relaxed))
                return;
            const int k = next++;
            if (k >= nx * ny)
                return;
            const size_t row = static_cast<size_t>(k / nx), column = static_cast<size_t>(k % nx);
            const double x = map.xValues[column], y = map.yValues[row];
            std::string fault;
            const bool ok = Guard(
                [&] {
                    map.runoff[row][column] =
                        axis == ExploreAxis::Depth
                            ? probe.Runoff(criterion, x, y, std::nullopt, notify)
                            : probe.Runoff(criterion, x, probe.designDepth(), y, notify);
                },
                fault);
            if (!ok) {
                const std::lock_guard<std::mutex> lock(faultMutex);
                if (map.faults++ == 0)
                    map.firstFault = fault;
            }
            if (progress)
                ++progress->done;
        }
    };

    int count = threads > 0 ? threads : static_cast<int>(std::thread::hardware_concurrency());
    count = std::clamp(count, 1, nx * ny);
    std::vector<std::thread> pool;
    for (int t = 1; t < count; ++t)
        pool.emplace_back(work);
    work();
    for (std::thread& t : pool)
        t.join();
    map.notices = notices;
    map.cancelled = progress && progress->cancel;
    return map;
}

std::optional<double> SmallestWettedDiameter(const RunoffProbe& probe, double depthIn,
                                             double targetPct, ExploreCriterion criterion) {
    // Steps of 0.1 ft as tenths, so that every diameter tried is the one its text reads as.
    const auto meets = [&](int tenths) {
        return Meets([&] { return probe.Runoff(criterion, tenths / 10.0, depthIn); }, targetPct);
    };
    int fails = static_cast<int>(kExploreMinDiameter * 10),
        passes = static_cast<int>(kExploreMaxDiameter * 10);
    if (!meets(passes))
        return std::nullopt;
    if (meets(fails))
        return fails / 10.0;
    // A larger wetted diameter spreads the same depth over a longer, gentler pass.
    while (passes - fails > 1) {
        const int mid = fails + (passes - fails) / 2;
        (meets(mid) ? passes : fails) = mid;
    }
    return passes / 10.0;
}

std::optional<double> LargestDepth(const RunoffProbe& probe, double diameterFt, double targetPct,
                                   ExploreCriterion criterion) {
    const auto meets = [&](int hundredths) {
        return Meets([&] { return probe.Runoff(criterion, diameterFt, hundredths / 100.0); },
                     targetPct);
    };
    int passes = static_cast<int>(kExploreMinDepth * 100),
        fails = static_cast<int>(kExploreMaxDepth * 100);
    if (!meets(passes))
        return std::nullopt;
    if (meets(fails))
        return fails / 100.0;
    // More depth at the same peak rate means a longer pass over soil that takes in less and less.
    while (fails - passes > 1) {
        const int mid = passes + (fails - passes) / 2;
        (meets(mid) ? passes : fails) = mid;
    }
    return passes / 100.0;
}

DesignRecord DesignAt(const DesignRecord& design, ExploreAxis axis, double diameterFt, double y) {
    DesignRecord point = design;
    point.txtWetDiam = ExactText(diameterFt);
    if (axis == ExploreAxis::Depth) {
        point.txtAPPL = ExactText(y);
    } else {
        point.surfaceOption = kUserConstant;
        point.txtSurfStore = ExactText(y);
        point.txtResidue = "0";
    }
    return point;
}

PivotProfile ComputePivotProfile(const DesignRecord& design, const Notify& notify) {
    PivotProfile out;
    Results results;
    const CalcOutcome outcome = Calc_Results(design, results, notify);
    if (!outcome.ok()) {
        out.message = outcome.message;
        return out;
    }
    const EngineInputs in = ReadEngineInputs(design);
    const int slot = InitialSlot(design.intakeFamilyIndex);
    for (int c = 1; c <= 3; ++c) {
        const size_t ci = static_cast<size_t>(c - 1);
        out.flowGpm[ci] = (in.Q0 + c * 6.309) / 0.06309;
        for (int i = 1; i <= 10; ++i) {
            const Cell value = design.greenAmpt ? results.GAVarPctRunoff.get(c, i, 1)
                                                : results.PctRunoff.get(c, i, slot);
            out.runoff[ci][static_cast<size_t>(i - 1)] = Read(value);
        }
    }
    for (int i = 1; i <= 10; ++i)
        out.distanceFt[static_cast<size_t>(i - 1)] = i * 0.1 * in.L / 0.3048;
    out.ok = true;
    return out;
}

} // namespace rainfold
