#include "rate_chart_rules.h"

#include "format.h"

#include <algorithm>
#include <cmath>

namespace rainfold::render {

RateScale ChartRateScale(const ChartData& data, bool drawn) {
    RateScale scale;
    if (drawn && data.yMaximum > 0)
        scale.maximum = data.yMaximum;
    if (drawn && data.yDivisions > 0)
        scale.divisions = data.yDivisions;
    scale.minorSteps = std::max(1, data.yMinorDivisions);
    return scale;
}

double ChartTimeEnd(const ChartData& data, bool drawn) {
    double tEnd = 0;
    if (drawn)
        for (const ChartPoint& p : data.application)
            tEnd = std::max(tEnd, p.t);
    return tEnd > 0 ? tEnd : 1;
}

int RateLabelEvery(int divisions, double plotHeight, double lineHeight) {
    for (int base = 1;; base *= 10)
        for (int k : {1, 2, 4, 5}) {
            if (k == 4 && base > 1)
                continue; // 40, 400: 50 reads better
            const int every = k * base;
            const int labels = divisions / every + 1;
            if (every >= divisions || plotHeight / labels - 2 * kLabelPadding >= lineHeight)
                return every;
        }
}

std::vector<double> RateLabelValues(const RateScale& scale, int every) {
    std::vector<double> values;
    const double step = scale.maximum / scale.divisions * every;
    for (int i = 0; i * every <= scale.divisions; ++i)
        values.push_back(i * step);
    return values;
}

std::string RateLabelText(double value) {
    return SignificantText(value, 6);
}

int TimeDecimals(double tEnd, int steps) {
    const double step = tEnd / steps;
    for (int decimals = 0; decimals < 8; ++decimals) {
        const double unit = std::pow(10.0, -decimals);
        bool close = true;
        for (int i = 0; i <= steps && close; ++i)
            close = std::fabs(std::round(i * step / unit) * unit - i * step) <= step / 10;
        if (close)
            return decimals;
    }
    return 8;
}

TimeScale FitTimeScale(double tEnd, double plotWidth, const TextWidth& width) {
    for (int steps = kMostTimeSteps; steps > 1; --steps) {
        const int decimals = TimeDecimals(tEnd, steps);
        // Each of the steps + 1 labels has its share of the width, less the padding either side.
        if (plotWidth / (steps + 1) - 2 * kLabelPadding >= width(FixedText(tEnd, decimals)))
            return {steps, decimals};
    }
    return {1, TimeDecimals(tEnd, 1)};
}

std::string TimeLabelText(double tEnd, const TimeScale& scale, int i) {
    return FixedText(tEnd / scale.steps * i, scale.decimals);
}

std::vector<LabelPlace> PlaceCurveNames(const std::vector<LabelCurve>& curves,
                                        const std::vector<NameSize>& sizes, const LabelBox& area) {
    std::vector<LabelPlace> places;
    std::vector<LabelBox> taken;
    for (size_t i = 0; i < sizes.size(); ++i) {
        const LabelPreference preference = i == 1 ? LabelPreference::Middle : LabelPreference::Late;
        places.push_back(
            PlaceCurveLabel(curves, i, sizes[i].width, sizes[i].height, area, taken, preference));
        if (places.back().visible)
            taken.push_back(places.back().box);
    }
    return places;
}

} // namespace rainfold::render
