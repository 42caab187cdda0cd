#pragma once
// A picture of the application and intake-rate chart for the printed plot, drawn from the chart's
// data with a QPainter: the look and the label decisions of the chart on the results page.

#include "QPainterSurface.h"
#include "chart_data.h"
#include "curve_labels.h"

#include <QRectF>
#include <QSizeF>
#include <QString>

#include <vector>

namespace rainfold::render {

// The chart picture's size on the page, twips: as wide as the plot allows for it, 4 by 3.
inline constexpr double kChartPictureWidth = 6800;
inline constexpr double kChartPictureHeight = 5100;

// One text of the picture and the box it is written in, in the chart's own pixels (96 a inch,
// y down). The rate axis's title is written upwards: its box is the turned text's.
struct ChartText {
    enum Kind { TimeLabel, RateLabel, Title, CurveName };
    Kind kind = TimeLabel;
    QString text;
    QRectF box;
};

// Everything the picture draws, placed for one size.
struct ChartLayout {
    QSizeF size;
    QRectF plot; // the plot area, where the curves are drawn and clipped
    double maximum = 1;
    int divisions = 2;
    int minorSteps = 5;
    double timeEnd = 1;
    int timeSteps = 5;
    std::vector<double> rateTicks; // labelled rate values
    std::vector<ChartText> texts;
    std::vector<LabelCurve> lines; // the curves, then the markers
};

// Lays the chart out at `size` pixels. With `drawn` false only the axes are laid out, as the
// chart looks before any cell is charted.
ChartLayout LayOutChartPicture(const ChartData& data, bool drawn, const QSizeF& size);

// Renders the chart (curves, markers, axis titles, the manual Y scale) at the given size.
// Needs a QGuiApplication for the fonts.
Picture ChartPicture(const ChartData& data, bool drawn, double widthTwips = kChartPictureWidth,
                     double heightTwips = kChartPictureHeight);

} // namespace rainfold::render
