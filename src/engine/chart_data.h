#pragma once
// What the application and intake-rate chart shows for one cell of the results table: the
// 101-point curves of one pass, the markers, the Y scale and the "Location" numbers. The window
// only draws these; the printed plot draws the same chart.

#include "calc.h"
#include "design.h"
#include "results.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace rainfold {

inline constexpr int kChartPoints = 101;
inline constexpr double kUnlimitedRate = 1000; // mm/h: the intake rate at the first instant

struct ChartPoint {
    double t = 0;    // h
    double rate = 0; // in/hr, to four decimals
};

struct ChartData {
    // The "Location" frame.
    std::string txtHP; // peak application rate, in/hr
    std::string txtTS; // time to saturation, h
    std::string txtTP; // time to peak application, h

    std::vector<ChartPoint> intake;                // the soil's intake rate
    std::vector<ChartPoint> application;           // the sprinkler's application rate
    std::array<double, kChartPoints> basicRates{}; // K * t^N of the intake family, mm/h
    std::vector<ChartPoint> pondingMarker; // two points: 0 and the application rate at ponding
    std::vector<ChartPoint> storageMarker; // two points, or none without storage or runoff

    double yMaximum = 0; // in/hr
    int yDivisions = 0;  // major divisions
    int yMinorDivisions = 5;
};

struct ChartRequest {
    int column = 0; // grid column: 3, 4, 5 are capacity cases 1, 2, 3
    int row = 0;    // grid row 0..9: position 1..10
    int slot = 2;   // family slot, 1..3
};

struct ChartOutcome {
    bool drawn = false; // false: the cell is not a runoff cell, or a fault stopped the chart
    std::string fault;  // non-empty when a fault stopped the chart
    ChartData data;
};

inline constexpr int kMaxChartDivisions = 1000;

// The Y scale: maximum whole in/hr above the peak and its major divisions; divisions -1 when the
// peak is too large for a drawable scale (more than kMaxChartDivisions divisions).
void ChartScale(double peakRateMmPerHour, double& maximum, int& divisions);

// Builds the chart of one results cell from the design and the results record. A cell of the
// first three columns or holding a negative number draws nothing.
ChartOutcome BuildChart(const DesignRecord& design, const Results& results,
                        const ChartRequest& request, const Notify& notify = {});

} // namespace rainfold
