#pragma once
// The rate chart's decisions, made once for the chart on the results page and for the printed
// plot's picture so that the two cannot drift apart: the scale, how many labels have room and
// with how many decimals, what each is called and where the curve names go. Plain arithmetic on
// sizes in the chart's own pixels; the drawing is each side's own.

#include "chart_data.h"
#include "curve_labels.h"

#include <array>
#include <functional>
#include <string>
#include <vector>

namespace rainfold::render {

inline constexpr int kMostTimeSteps = 5;   // time ticks at 0, 1/5, ... of the pass at most
inline constexpr double kLabelPadding = 5; // room kept either side of an axis label
inline constexpr double kTitlePoints = 9;  // the axis titles' size

inline constexpr const char* kTimeTitle = "Time (hr)";
inline constexpr const char* kRateTitle = "Application & Intake Rate (in/hr)";

// The two curves named beside themselves, in the order they are named; both share one pen, so
// the names stand in for a legend.
inline constexpr std::array<const char*, 2> kCurveNames = {"Intake Rate", "Application Rate"};

// The rate scale as drawn: before a cell is charted, 0 to 1 in/hr in two divisions.
struct RateScale {
    double maximum = 1; // in/hr
    int divisions = 2;  // grid lines at every one
    int minorSteps = 5; // dashed grid lines between two divisions, counting the step itself
};
RateScale ChartRateScale(const ChartData& data, bool drawn);

// The end of the time scale: the end of the pass, or 1 h before a cell is charted.
double ChartTimeEnd(const ChartData& data, bool drawn);

// Every how many divisions a rate label stands: the smallest of 1, 2, 4, 5, 10, 20, 25, 50, ...
// at which each label has the room of a line of text. The grid keeps every division.
int RateLabelEvery(int divisions, double plotHeight, double lineHeight);

// The rate labels from 0 up: every `every` divisions, as far as the scale goes.
std::vector<double> RateLabelValues(const RateScale& scale, int every);

// A rate label as the scale writes it ("0", "2.5", "12").
std::string RateLabelText(double value);

// Fewest decimals with which every time label lies within a tenth of a step of its tick, so no
// two labels read the same however short the pass.
int TimeDecimals(double tEnd, int steps);

struct TimeScale {
    int steps = kMostTimeSteps; // labelled ticks after 0
    int decimals = 0;
};
using TextWidth = std::function<double(const std::string&)>;

// The most time steps, up to five, whose labels (written with the decimals that step needs) each
// have the room of their widest text across a plot `plotWidth` wide; at least one.
TimeScale FitTimeScale(double tEnd, double plotWidth, const TextWidth& width);

// The label of time tick `i` of `scale` ("0.00", "0.07", ...).
std::string TimeLabelText(double tEnd, const TimeScale& scale, int i);

struct NameSize {
    double width = 0;
    double height = 0;
};

// Where the curve names go: kCurveNames[i], sizes[i] across and down, beside curves[i] inside
// `area` (the plot area). `curves` holds every line of the chart, the named ones first, so that
// no name covers a marker either. The application rate is named near its peak, the intake rate
// late in the pass, where it has drawn away from the steep start; each name keeps clear of the
// names placed before it.
std::vector<LabelPlace> PlaceCurveNames(const std::vector<LabelCurve>& curves,
                                        const std::vector<NameSize>& sizes, const LabelBox& area);

} // namespace rainfold::render
