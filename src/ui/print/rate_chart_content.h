#pragma once
// The application and intake-rate chart's content: one description of its series, styles, axes
// and scale, shared by the chart on the results page and the picture on the printed plot, so the
// two always look alike.

#include "chart_data.h"

class QChart;

namespace rainfold::ui {

// Replaces the chart's series and axes by those of `data`. With `drawn` false only the empty
// axes are set up, as the chart looks before any cell is charted.
void FillRateChart(QChart* chart, const ChartData& data, bool drawn = true);

} // namespace rainfold::ui
