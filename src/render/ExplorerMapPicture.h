#pragma once
// The explorer's map as a picture: colour classes with no runoff set apart, labelled contour lines,
// the target's line boldest, the sprinkler-package bands along the wetted-diameter axis, the
// design (or an arrow to where it lies off the map) and the selected point, and on saved pictures
// a title block with the job and the design. The window, its saved pictures and rainfold-cli all
// draw it here.

#include "design.h"
#include "explore.h"

#include <QPointF>
#include <QRectF>
#include <QSize>
#include <QString>
#include <QStringList>

#include <optional>
#include <string>
#include <vector>

class QImage;
class QPainter;

namespace rainfold::render {

struct ExplorerMapView {
    ExploreAxis axis = ExploreAxis::Depth;
    ExploreCriterion criterion = ExploreCriterion::Average;
    const ExploreMap* map = nullptr; // none yet: axes, bands and legend around `message`
    QString message;                 // shown over the plot area, e.g. while computing
    QString title;                   // "Weighted average percent runoff at 800 gpm"
    QString subtitle;                // model or family, and what is held as designed
    std::optional<double> targetPct; // none: no target line and no "target" in the key
    double designDiameter = 0;       // ft
    std::optional<double> designY;   // in; empty: the design is a line at its diameter
    QString designText;              // "40 ft, 4 in per pass": names a design off the map
    std::optional<QPointF> selected; // (wetted diameter ft, y in)
    ExploreFacts facts;              // the title block of a saved picture; none on screen
};

// Title, subtitle and the design's place, for a design and its probe.
ExplorerMapView MapViewFor(const DesignRecord& design, const RunoffProbe& probe, ExploreAxis axis,
                           ExploreCriterion criterion, std::optional<double> targetPct);

// The contour levels labelled on every map, percent.
inline constexpr double kContourLevels[] = {1, 2, 5, 10, 20, 30};

// A sprinkler package's band above the plot, and where its label stands.
struct ExplorerBand {
    const SprinklerPackage* package;
    QRectF bar;        // over the package's range of wetted diameters
    QPointF labelFoot; // the label reads upwards from here
};

// What a painting drew where a reader looks for it: the labels of the contour lines, in the
// order they were placed, and the bands.
struct ExplorerMapDrawn {
    std::vector<QString> contourLabels;
    std::vector<ExplorerBand> bands;
    QRectF plot;
    QString designNote; // beside the arrow to a design off the map
};

// Draws the whole picture into `area`, whose size sets the layout (pixels of about 1/96 in).
ExplorerMapDrawn PaintExplorerMap(QPainter& painter, const QRectF& area,
                                  const ExplorerMapView& view);

// Where the map's plot lies inside `area`, and how a point of the plot and a (diameter, y) pair
// correspond.
QRectF ExplorerPlotRect(const QRectF& area, const ExplorerMapView& view);
QPointF ExplorerPointOf(const QRectF& plot, ExploreAxis axis, double diameterFt, double y);
// Diameter (ft) and y (in) under a point of the plot; empty outside it.
std::optional<QPointF> ExplorerValueAt(const QRectF& plot, ExploreAxis axis, const QPointF& at);

// The packages whose bands of the strip above the plot lie under a point, for a tool tip.
QString ExplorerBandAt(const QRectF& area, const ExplorerMapView& view, const QPointF& at);

// The picture as an image of `size` pixels.
QImage ExplorerMapImage(const ExplorerMapView& view, QSize size);
// The bytes of the picture's file, drawn in memory so that nothing reaches a file until the whole
// picture exists: a PNG image of `size` pixels, or a one-page PDF of the same size at 96 dpi.
// False when it cannot be drawn.
bool ExplorerMapFile(const ExplorerMapView& view, QSize size, bool pdf, std::string& bytes);

// The size of a saved picture whose map is as large as `shown`: the title block of the view's
// facts goes below it.
QSize ExplorerPictureSize(const ExplorerMapView& view, QSize shown);

// The default size of the picture, pixels.
inline constexpr int kExplorerPictureWidth = 1000;
inline constexpr int kExplorerPictureHeight = 700;

} // namespace rainfold::render
