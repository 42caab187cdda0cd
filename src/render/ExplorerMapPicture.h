#pragma once
// The explorer's map as a picture: colour classes with no runoff set apart, labelled contour lines,
// the target's line boldest, the sprinkler-package bands along the wetted-diameter axis, the
// design and the selected point. The window, its saved pictures and rainfold-cli all draw it here.

#include "design.h"
#include "explore.h"

#include <QPointF>
#include <QRectF>
#include <QSize>
#include <QString>

#include <optional>
#include <string>

class QImage;
class QPainter;

namespace rainfold::render {

struct ExplorerMapView {
    ExploreAxis axis = ExploreAxis::Depth;
    const ExploreMap* map = nullptr; // none yet: axes, bands and legend around `message`
    QString message;                 // shown over the plot area, e.g. while computing
    QString title;                   // "Weighted average percent runoff at 800 gpm"
    QString subtitle;                // model or family, and what is held as designed
    double targetPct = 0;
    double designDiameter = 0;       // ft
    std::optional<double> designY;   // in; empty: the design is a line at its diameter
    std::optional<QPointF> selected; // (wetted diameter ft, y in)
};

// Title, subtitle and the design's place, for a design and its probe.
ExplorerMapView MapViewFor(const DesignRecord& design, const RunoffProbe& probe, ExploreAxis axis,
                           double targetPct);

// The contour levels labelled on every map, percent.
inline constexpr double kContourLevels[] = {1, 2, 5, 10, 20, 30};

// Draws the whole picture into `area`, whose size sets the layout (pixels of about 1/96 in).
void PaintExplorerMap(QPainter& painter, const QRectF& area, const ExplorerMapView& view);

// Where the map's plot lies inside `area`, and how a point of the plot and a (diameter, y) pair
// correspond.
QRectF ExplorerPlotRect(const QRectF& area);
QPointF ExplorerPointOf(const QRectF& plot, ExploreAxis axis, double diameterFt, double y);
// Diameter (ft) and y (in) under a point of the plot; empty outside it.
std::optional<QPointF> ExplorerValueAt(const QRectF& plot, ExploreAxis axis, const QPointF& at);

// The package whose band of the strip above the plot lies under a point, for a tool tip.
QString ExplorerBandAt(const QRectF& area, const QPointF& at);

// The picture as an image of `size` pixels.
QImage ExplorerMapImage(const ExplorerMapView& view, QSize size);
// The bytes of the picture's file, drawn in memory so that nothing reaches a file until the whole
// picture exists: a PNG image of `size` pixels, or a one-page PDF of the same size at 96 dpi.
// False when it cannot be drawn.
bool ExplorerMapFile(const ExplorerMapView& view, QSize size, bool pdf, std::string& bytes);

// The default size of the picture, pixels.
inline constexpr int kExplorerPictureWidth = 1000;
inline constexpr int kExplorerPictureHeight = 700;

} // namespace rainfold::render
