#pragma once
// The application and intake-rate chart on the results page, as Qt Charts content: its series,
// styles, axes and scale. The scale and label decisions are the printed plot's too
// (rate_chart_rules.h), so the chart shown and the chart printed choose alike.

#include "chart_data.h"

class QChart;
class QSizeF;

namespace rainfold::ui {

// Replaces the chart's series and axes by those of `data`. With `drawn` false only the empty
// axes are set up, as the chart looks before any cell is charted.
void FillRateChart(QChart* chart, const ChartData& data, bool drawn = true);

// Gives a chart that is not in a view (already in a scene) its size and lets it settle: the first
// layout tells how many labels fit, and the chart is laid out again for them. A chart in a view
// settles by itself.
void LayOutRateChart(QChart* chart, const QSizeF& size);

} // namespace rainfold::ui
