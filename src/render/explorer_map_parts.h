#pragma once
// The pieces of the explorer's map picture around the map itself: the layout worked out from the
// fonts' metrics, the scales, the colours, the titles, the package strip, the axes, the design's
// mark, the key and the title block.

#include "ExplorerMapPicture.h"

#include <QColor>
#include <QFont>
#include <QPainter>
#include <QRectF>
#include <QStringList>

#include <vector>

namespace rainfold::render::explorer_parts {

// Font sizes, pixels.
inline constexpr double kTitleFont = 16, kSubtitleFont = 12, kLabelFont = 11, kBandFont = 10.5,
                        kAxisTitleFont = 12;

QFont Font(double pixels, bool bold = false);
QString Number(double x); // up to six significant digits

double YLow(ExploreAxis axis);
double YHigh(ExploreAxis axis);
double XPixel(const QRectF& plot, double diameter);
double YPixel(const QRectF& plot, ExploreAxis axis, double y);
bool InRange(ExploreAxis axis, double diameter, double y);

QColor ColourOf(double runoff);

// Where everything goes for an area and what is drawn in it.
struct Layout {
    QRectF area;
    double subtitleBottom = 0;
    double stripTop = 0; // the package labels and bands, above the plot
    QRectF plot;
    double legendLeft = 0;
    QStringList footer; // the title block's lines, under the axis title
    double footerTop = 0;
};
Layout LayoutOf(const QRectF& area, const ExplorerMapView& view);

void DrawTitles(QPainter& p, const Layout& layout, const ExplorerMapView& view);
// The packages' bars in two rows (overlapping or touching ranges take turns) and their labels,
// upright and spread apart where the bars crowd, each joined to its bar.
std::vector<ExplorerBand> Bands(const Layout& layout);
void DrawBands(QPainter& p, const Layout& layout, const std::vector<ExplorerBand>& bands);
void DrawAxes(QPainter& p, const Layout& layout, ExploreAxis axis);
// The design's mark where it lies on the map, a dashed line at its diameter when its storage
// has no single place, or an arrow at the edge towards a design off the map; returns the note
// beside the arrow.
QString DrawDesign(QPainter& p, const QRectF& plot, const ExplorerMapView& view);
void DrawDesignMark(QPainter& p, const QPointF& centre);
void DrawSelectedMark(QPainter& p, const QPointF& centre);
void DrawLegend(QPainter& p, const Layout& layout, const ExplorerMapView& view);
void DrawTitleBlock(QPainter& p, const Layout& layout);

} // namespace rainfold::render::explorer_parts
