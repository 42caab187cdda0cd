#pragma once
// The design explorer's engine: the percent runoff of the entered capacity, weighted over the
// circle or at the outer end of the pivot, over many wetted diameters and depths per pass (or
// surface storages), each value the very number the results page shows for that design, and the
// two answers an engineer asks of it.

#include "calc.h"
#include "design.h"
#include "green_ampt_soil.h"

#include <array>
#include <atomic>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace rainfold {

// What the map's y axis varies.
enum class ExploreAxis {
    Depth,   // depth per pass, in
    Storage, // surface storage on every segment, in
};

// Which runoff a target applies to.
enum class ExploreCriterion {
    Average,  // the weighted average over the circle: the results page's middle box
    OuterEnd, // the outer end of the pivot, where the rate is highest: the grid's last row
};

// The ranges explored: the limits of the wetted-diameter and application-amount checks, and a
// storage up to an inch.
inline constexpr double kExploreMinDiameter = 1; // ft
inline constexpr double kExploreMaxDiameter = 150;
inline constexpr double kExploreMinDepth = 0.25; // in
inline constexpr double kExploreMaxDepth = 3;
inline constexpr double kExploreMinStorage = 0; // in
inline constexpr double kExploreMaxStorage = 1;

// Steps of the answers: a wetted diameter to 0.1 ft, a depth to 0.01 in.
inline constexpr double kDiameterStep = 0.1;
inline constexpr double kDepthStep = 0.01;

// The design with the wetted diameter, the depth and (optionally) the storage left open. Reads
// everything else once, the way the computation reads it.
class RunoffProbe {
public:
    // Empty, with the computation's own message, where the computation would stop before any
    // position: no family selected, "Customized Values" with K or N of 0, a capacity less 100 gpm
    // not above 0, Green-Ampt inputs that leave the model undefined, a length that is no number.
    static std::optional<RunoffProbe> Make(const DesignRecord& design, std::string& message);

    // Weighted-average percent runoff of capacity case 2 in the family slot the results page
    // opens on (the Green-Ampt average with the model on) for a wetted diameter (ft) and a depth
    // per pass (in), with `storageIn` on every segment when given and the design's own storage
    // otherwise. Bit for bit the page's number. Throws EngineFault.
    double WeightedAverage(double diameterFt, double depthIn,
                           std::optional<double> storageIn = std::nullopt,
                           const Notify& notify = {}) const;
    // The percent runoff the results grid shows in its last row for the entered capacity (the
    // varying water content's with the Green-Ampt model on), computed for that one position.
    // Bit for bit the grid's number. Throws EngineFault.
    double OuterEnd(double diameterFt, double depthIn,
                    std::optional<double> storageIn = std::nullopt,
                    const Notify& notify = {}) const;
    // One of the two, as the criterion says.
    double Runoff(ExploreCriterion criterion, double diameterFt, double depthIn,
                  std::optional<double> storageIn = std::nullopt, const Notify& notify = {}) const;

    double designDiameter() const { return designDiameter_; } // ft, as typed
    double designDepth() const { return designDepth_; }       // in, as typed
    // The design's storage (in) when every segment holds the same, empty otherwise.
    std::optional<double> uniformStorage() const;
    // The storage of segment 1..10, in.
    double segmentStorage(int segment) const;
    bool greenAmpt() const { return green_; }

private:
    // The pattern and the intake-family computation of capacity case 2 at one position.
    PositionInputs positionAt(double diameterFt, double depthIn, int position) const;
    double storageAt(int position, std::optional<double> storageIn) const;

    EngineInputs base_;
    double K_ = 0, N_ = 0;
    int slot_ = 2;
    bool green_ = false;
    GreenAmptSoil soil_;
    std::array<double, 11> storage_{}; // mm, segments 1..10
    double designDiameter_ = 0, designDepth_ = 0;
};

// The middle "Weighted Average Percent Runoff" of the results page for this design, computed for
// that box alone. Not ok where the probe cannot be made or a fault stops the computation.
struct ExploreValue {
    bool ok = false;
    double value = 0;
    std::string message;
};
ExploreValue FastWeightedAverage(const DesignRecord& design, const Notify& notify = {});

// The map: runoff[row][column] at (xValues[column], yValues[row]); NaN where a fault stopped the
// computation of that point.
struct ExploreMap {
    ExploreAxis axis = ExploreAxis::Depth;
    ExploreCriterion criterion = ExploreCriterion::Average;
    std::vector<double> xValues; // wetted diameter, ft (ExploreXValues)
    std::vector<double> yValues; // depth or storage, in (ExploreYValues)
    std::vector<std::vector<double>> runoff;
    int faults = 0;
    std::string firstFault;
    int notices = 0; // iteration-limit notices of the root solver
    bool cancelled = false;
};

// The grid: wetted diameters evenly spaced on a logarithmic scale from 1 to 150 ft, and depths or
// storages evenly spaced, the ends exact. Each value is rounded to as few significant digits (or
// decimals) as keep it within a tenth of a step of its place, so that the grid reads as short
// numbers (three digits for 60 columns) and its texts are exactly the values computed.
std::vector<double> ExploreXValues(int columns);
std::vector<double> ExploreYValues(ExploreAxis axis, int rows);

// Shared with the thread that asked for the map: set `cancel` to stop it early; `done` counts the
// points computed.
struct ExploreProgress {
    std::atomic<bool> cancel{false};
    std::atomic<int> done{0};
};

// Computes every point on `threads` threads (0: one per core). Columns and rows at least 2.
ExploreMap ComputeExploreMap(const RunoffProbe& probe, ExploreAxis axis, ExploreCriterion criterion,
                             int columns, int rows, ExploreProgress* progress = nullptr,
                             int threads = 0);

// The smallest wetted diameter (a multiple of 0.1 ft from 1 to 150) whose runoff at `depthIn`
// meets the target (at most `targetPct`) while 0.1 ft less does not; empty when 150 ft does not
// meet it. The design's own storage.
std::optional<double>
SmallestWettedDiameter(const RunoffProbe& probe, double depthIn, double targetPct,
                       ExploreCriterion criterion = ExploreCriterion::Average);
// The largest depth per pass (a multiple of 0.01 in from 0.25 to 3) that meets the target with
// `diameterFt` while 0.01 in more does not; empty when 0.25 in does not meet it.
std::optional<double> LargestDepth(const RunoffProbe& probe, double diameterFt, double targetPct,
                                   ExploreCriterion criterion = ExploreCriterion::Average);

// The packages of the "Wetted Diameter" reference panel that have a range of diameters.
struct SprinklerPackage {
    const char* name;  // as the panel names it
    const char* label; // short, for the map
    double low, high;  // ft
};
extern const std::array<SprinklerPackage, 9> kSprinklerPackages;

// The package class of a wetted diameter: the packages whose range holds it ("Medium Pressure
// Impact or High Pressure Impact (Variable Spacing)"), or where it falls between them.
std::string PackageClass(double diameterFt);

// The shortest text that reads back as exactly x.
std::string ExactText(double x);

// The design at one point of the map: the wetted diameter and the depth (or, on the storage
// axis, a storage typed in for the whole field) written into its fields as text.
DesignRecord DesignAt(const DesignRecord& design, ExploreAxis axis, double diameterFt, double y);

// Percent runoff along the pivot for the three capacities of one design, as its results table
// shows it (the slot the page opens on; the Green-Ampt table with the model on).
struct PivotProfile {
    bool ok = false;
    std::string message;
    std::array<double, 3> flowGpm{};
    std::array<double, 10> distanceFt{};
    std::array<std::array<double, 10>, 3> runoff{}; // [case][position]
};
PivotProfile ComputePivotProfile(const DesignRecord& design, const Notify& notify = {});

// One piece of a contour line, in grid coordinates: column and row indices, fractional between
// the grid's points.
struct ContourSegment {
    double column1, row1, column2, row2;
};
// The line where the map's runoff crosses `levelPct`, square by square. At level 0 the line runs
// halfway between a point without runoff and one with, as no runoff in between rises to any
// fraction of the neighbour's. Squares with a faulted corner are left out.
std::vector<ContourSegment> Contour(const ExploreMap& map, double levelPct);

// The soil the map is computed for, as the results page names it, with its parameters.
std::string ExploreSoilText(const DesignRecord& design);

// The job and the design a map belongs to, as (key, value) pairs in the order a title block
// shows them: producer, location, designer, date, length, capacity, depth, wetted diameter,
// soil, surface storage, and which runoff the map holds.
using ExploreFacts = std::vector<std::pair<std::string, std::string>>;
ExploreFacts ExploreFactsOf(const DesignRecord& design, const RunoffProbe& probe,
                            ExploreCriterion criterion);

// The map as comma-separated values: the facts as "key,value" rows, an empty row, a header row
// of wetted diameters, then one row per y value starting with it; an empty field where a fault
// stopped the point.
std::string ExploreMapCsv(const ExploreMap& map, const ExploreFacts& facts);

} // namespace rainfold
