#pragma once
// The application and intake-rate chart's content: one description of its series, styles, axes
// and scale, shared by the chart on the results page and the picture on the printed plot, so the
// two always look alike.

#include "chart_data.h"

class QChart;
class QSizeF;

namespace rainfold::render {

// Replaces the chart's series and axes by those of `data`. With `drawn` false only the empty
// axes are set up, as the chart looks before any cell is charted.
void FillRateChart(QChart* chart, const ChartData& data, bool drawn = true);

// Gives a chart that is not in a view (a picture to be taken, already in a scene) its size and
// lets it settle: the first layout tells how many labels fit, and the chart is laid out again
// for them. A chart in a view settles by itself.
void LayOutRateChart(QChart* chart, const QSizeF& size);

} // namespace rainfold::render
