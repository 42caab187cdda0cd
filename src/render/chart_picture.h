#pragma once
// A picture of the application and intake-rate chart for the printed plot, drawn from the chart's
// data without a window.

#include "QPainterSurface.h"
#include "chart_data.h"

namespace rainfold::render {

// The chart picture's size on the page, twips: as wide as the plot allows for it, 4 by 3.
inline constexpr double kChartPictureWidth = 6800;
inline constexpr double kChartPictureHeight = 5100;

// Renders the chart (curves, markers, axis titles, the manual Y scale) at the given size. With
// `drawn` false the axes are drawn without curves, as the chart looks before any cell is charted.
// Needs a QApplication.
Picture ChartPicture(const ChartData& data, bool drawn, double widthTwips = kChartPictureWidth,
                     double heightTwips = kChartPictureHeight);

} // namespace rainfold::render
