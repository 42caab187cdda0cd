#include "ExplorerMapPicture.h"

#include "explorer_map_parts.h"
#include "format.h"
#include "results_page.h"

#include <QBuffer>
#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QLineF>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

#include <algorithm>
#include <cmath>

namespace rainfold::render {

using namespace explorer_parts;

namespace {

// The map's own grid, which need not be evenly spaced: fractional column and row indices (as the
// contour gives them) to pixels, between the pixels of the neighbouring grid values.
struct GridPixels {
    const QRectF& plot;
    const ExploreMap& map;
    double x(double column) const {
        const size_t last = map.xValues.size() - 1;
        const size_t i = std::min(static_cast<size_t>(std::max(column, 0.0)), last - 1);
        const double a = XPixel(plot, map.xValues[i]), b = XPixel(plot, map.xValues[i + 1]);
        return a + (column - static_cast<double>(i)) * (b - a);
    }
    double y(double row) const {
        const size_t last = map.yValues.size() - 1;
        const size_t j = std::min(static_cast<size_t>(std::max(row, 0.0)), last - 1);
        const double a = YPixel(plot, map.axis, map.yValues[j]);
        const double b = YPixel(plot, map.axis, map.yValues[j + 1]);
        return a + (row - static_cast<double>(j)) * (b - a);
    }
};

void DrawCells(QPainter& p, const QRectF& plot, const ExploreMap& map) {
    const GridPixels at{plot, map};
    const double nx = static_cast<double>(map.xValues.size()) - 1;
    const double ny = static_cast<double>(map.yValues.size()) - 1;
    // Each point colours the area nearer to it than to its neighbours.
    const auto edgeX = [&](double c) {
        return c <= 0 ? plot.left() : c >= nx ? plot.right() : at.x(c);
    };
    const auto edgeY = [&](double r) {
        return r <= 0 ? plot.bottom() : r >= ny ? plot.top() : at.y(r);
    };
    p.save();
    p.setRenderHint(QPainter::Antialiasing, false);
    p.setPen(Qt::NoPen);
    for (size_t r = 0; r < map.yValues.size(); ++r)
        for (size_t c = 0; c < map.xValues.size(); ++c) {
            const double ci = static_cast<double>(c), ri = static_cast<double>(r);
            const QRectF cell(QPointF(edgeX(ci - 0.5), edgeY(ri + 0.5)),
                              QPointF(edgeX(ci + 0.5), edgeY(ri - 0.5)));
            p.setBrush(ColourOf(map.runoff[r][c]));
            p.drawRect(cell.adjusted(0, 0, 0.6, 0.6).intersected(plot));
        }
    p.restore();
}

// Draws the contour line of one level and returns its pieces in pixels.
std::vector<QLineF> DrawContour(QPainter& p, const QRectF& plot, const ExploreMap& map,
                                double level, bool bold) {
    const GridPixels at{plot, map};
    std::vector<QLineF> lines;
    for (const ContourSegment& s : Contour(map, level))
        lines.emplace_back(at.x(s.column1), at.y(s.row1), at.x(s.column2), at.y(s.row2));
    p.save();
    p.setPen(bold ? QPen(Qt::black, 3.2, Qt::SolidLine, Qt::RoundCap)
                  : QPen(QColor(0x30, 0x30, 0x30), 1.1, Qt::SolidLine, Qt::RoundCap));
    p.drawLines(lines.data(), static_cast<int>(lines.size()));
    p.restore();
    return lines;
}

// Labels a contour line on the piece nearest the middle of its run along the diameter axis that
// keeps clear of the labels already placed. Returns whether a label was drawn.
bool LabelContour(QPainter& p, const QRectF& plot, std::vector<QLineF> lines, const QString& text,
                  bool bold, std::vector<QRectF>& placed) {
    if (lines.empty())
        return false;
    std::sort(lines.begin(), lines.end(),
              [](const QLineF& a, const QLineF& b) { return a.center().x() < b.center().x(); });
    p.save();
    p.setFont(Font(kLabelFont, bold));
    const QSizeF size = QFontMetricsF(p.font()).size(Qt::TextSingleLine, text) + QSizeF(6, 2);
    const auto boxAt = [&](const QLineF& line) {
        return QRectF(line.center() - QPointF(size.width() / 2, size.height() / 2), size);
    };
    const long n = static_cast<long>(lines.size());
    QRectF box = boxAt(lines[static_cast<size_t>(n / 2)]);
    for (long step = 0; step < 2 * n; ++step) {
        const long k = n / 2 + (step % 2 ? -(step + 1) / 2 : step / 2);
        if (k < 0 || k >= n)
            continue;
        const QRectF candidate = boxAt(lines[static_cast<size_t>(k)]);
        const bool clear = std::none_of(placed.begin(), placed.end(), [&](const QRectF& r) {
            return r.adjusted(-4, -4, 4, 4).intersects(candidate);
        });
        if (clear && plot.contains(candidate)) {
            box = candidate;
            break;
        }
    }
    placed.push_back(box);
    p.setPen(QPen(bold ? Qt::black : QColor(0x60, 0x60, 0x60), bold ? 1.5 : 0.8));
    p.setBrush(Qt::white);
    p.drawRoundedRect(box, 3, 3);
    p.setPen(Qt::black);
    p.drawText(box, Qt::AlignCenter, text);
    p.restore();
    return true;
}

void DrawMap(QPainter& p, const QRectF& plot, const ExplorerMapView& view,
             ExplorerMapDrawn& drawn) {
    const ExploreMap& map = *view.map;
    DrawCells(p, plot, map);
    // The target's line and label first, so that its label takes the best place.
    std::vector<double> levels;
    if (view.targetPct)
        levels.push_back(*view.targetPct);
    for (double level : kContourLevels)
        if (level != view.targetPct)
            levels.push_back(level);
    std::vector<std::vector<QLineF>> lines;
    for (double level : levels)
        lines.push_back(DrawContour(p, plot, map, level, level == view.targetPct));
    // Labels keep clear of the design's mark and its word too.
    std::vector<QRectF> placed;
    if (view.designY)
        placed.emplace_back(ExplorerPointOf(plot, view.axis, view.designDiameter, *view.designY) +
                                QPointF(-8, -22),
                            QSizeF(66, 30));
    for (size_t k = 0; k < levels.size(); ++k) {
        const QString text = Number(levels[k]) + QStringLiteral(" %");
        if (LabelContour(p, plot, lines[k], text, levels[k] == view.targetPct, placed))
            drawn.contourLabels.push_back(text);
    }
}

void DrawMessage(QPainter& p, const QRectF& plot, const QString& message) {
    p.save();
    p.setFont(Font(14, true));
    const QSizeF size = QFontMetricsF(p.font()).size(0, message) + QSizeF(24, 14);
    const QRectF box(plot.center() - QPointF(size.width() / 2, size.height() / 2), size);
    p.setPen(QPen(QColor(0x60, 0x60, 0x60), 1));
    p.setBrush(QColor(255, 255, 255, 235));
    p.drawRoundedRect(box, 4, 4);
    p.setPen(Qt::black);
    p.drawText(box, Qt::AlignCenter, message);
    p.restore();
}

} // namespace

ExplorerMapView MapViewFor(const DesignRecord& design, const RunoffProbe& probe, ExploreAxis axis,
                           ExploreCriterion criterion, std::optional<double> targetPct) {
    ExplorerMapView view;
    view.axis = axis;
    view.criterion = criterion;
    view.targetPct = targetPct;
    const QString flow =
        QString::fromStdString(FormatFixed((ReadEngineInputs(design).Q0 + 2 * 6.309) / 0.06309, 0));
    view.title = criterion == ExploreCriterion::OuterEnd
                     ? QStringLiteral("Percent runoff at the outer end of the pivot at %1 gpm")
                     : QStringLiteral("Weighted average percent runoff at %1 gpm");
    view.title = view.title.arg(flow);
    const std::string soil = ExploreSoilText(design);
    const QString model = QString::fromStdString(soil.substr(0, soil.find(" (")));
    const QString depth = QString::fromStdString(design.txtAPPL).trimmed();
    const QString held = axis == ExploreAxis::Depth
                             ? QStringLiteral("surface storage as designed")
                             : QStringLiteral("%1 in per pass as designed").arg(depth);
    view.subtitle = model + QStringLiteral(", ") + held;
    view.designDiameter = probe.designDiameter();
    view.designY = axis == ExploreAxis::Depth ? std::optional<double>(probe.designDepth())
                                              : probe.uniformStorage();
    const QString diameter = QString::fromStdString(design.txtWetDiam).trimmed();
    view.designText =
        axis == ExploreAxis::Depth || !view.designY
            ? QStringLiteral("%1 ft, %2 in per pass").arg(diameter, depth)
            : QStringLiteral("%1 ft, %2 in of storage").arg(diameter, Number(*view.designY));
    return view;
}

QRectF ExplorerPlotRect(const QRectF& area, const ExplorerMapView& view) {
    return LayoutOf(area, view).plot;
}

QPointF ExplorerPointOf(const QRectF& plot, ExploreAxis axis, double diameterFt, double y) {
    return QPointF(XPixel(plot, diameterFt), YPixel(plot, axis, y));
}

std::optional<QPointF> ExplorerValueAt(const QRectF& plot, ExploreAxis axis, const QPointF& at) {
    if (!plot.contains(at))
        return std::nullopt;
    const double fx = (at.x() - plot.left()) / plot.width();
    const double fy = (plot.bottom() - at.y()) / plot.height();
    return QPointF(kExploreMinDiameter *
                       std::exp(fx * std::log(kExploreMaxDiameter / kExploreMinDiameter)),
                   YLow(axis) + fy * (YHigh(axis) - YLow(axis)));
}

QString ExplorerBandAt(const QRectF& area, const ExplorerMapView& view, const QPointF& at) {
    const Layout layout = LayoutOf(area, view);
    if (at.y() < layout.stripTop || at.y() > layout.plot.top())
        return QString();
    QString names;
    for (const ExplorerBand& band : Bands(layout))
        if (at.x() >= band.bar.left() - 2 && at.x() <= band.bar.right() + 2)
            names += (names.isEmpty() ? QString() : QStringLiteral("\n")) +
                     QString::fromUtf8(band.package->name) +
                     QStringLiteral(": %1 - %2 ft")
                         .arg(Number(band.package->low), Number(band.package->high));
    return names;
}

ExplorerMapDrawn PaintExplorerMap(QPainter& p, const QRectF& area, const ExplorerMapView& view) {
    ExplorerMapDrawn drawn;
    const Layout layout = LayoutOf(area, view);
    const QRectF& plot = layout.plot;
    drawn.plot = plot;
    p.save();
    p.setRenderHint(QPainter::Antialiasing, true);
    p.setRenderHint(QPainter::TextAntialiasing, true);
    p.fillRect(area, Qt::white);
    DrawTitles(p, layout, view);
    drawn.bands = Bands(layout);
    DrawBands(p, layout, drawn.bands);
    if (view.map && !view.map->runoff.empty())
        DrawMap(p, plot, view, drawn);
    else
        p.fillRect(plot, QColor(0xf2, 0xf2, 0xf2));
    if (!view.message.isEmpty())
        DrawMessage(p, plot, view.message);
    DrawAxes(p, layout, view.axis);
    drawn.designNote = DrawDesign(p, plot, view);
    if (view.selected && InRange(view.axis, view.selected->x(), view.selected->y()))
        DrawSelectedMark(p,
                         ExplorerPointOf(plot, view.axis, view.selected->x(), view.selected->y()));
    DrawLegend(p, layout, view);
    DrawTitleBlock(p, layout);
    p.restore();
    return drawn;
}

QSize ExplorerPictureSize(const ExplorerMapView& view, QSize shown) {
    const QRectF area(QPointF(0, 0), QSizeF(shown));
    ExplorerMapView bare = view;
    bare.facts.clear();
    const double added = LayoutOf(area, bare).plot.height() - LayoutOf(area, view).plot.height();
    return shown + QSize(0, static_cast<int>(std::ceil(added)));
}

QImage ExplorerMapImage(const ExplorerMapView& view, QSize size) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    PaintExplorerMap(painter, QRectF(QPointF(0, 0), QSizeF(size)), view);
    return image;
}

bool ExplorerMapFile(const ExplorerMapView& view, QSize size, bool pdf, std::string& bytes) {
    QByteArray file;
    QBuffer buffer(&file);
    buffer.open(QIODevice::WriteOnly);
    if (!pdf) {
        if (!ExplorerMapImage(view, size).save(&buffer, "PNG"))
            return false;
    } else {
        QPdfWriter writer(&buffer);
        writer.setResolution(96);
        writer.setPageSize(QPageSize(QSizeF(size.width() * 72.0 / 96, size.height() * 72.0 / 96),
                                     QPageSize::Point));
        writer.setPageMargins(QMarginsF(0, 0, 0, 0));
        writer.setCreator(QStringLiteral("Rainfold"));
        QPainter painter;
        if (!painter.begin(&writer))
            return false;
        PaintExplorerMap(painter, QRectF(QPointF(0, 0), QSizeF(size)), view);
        if (!painter.end())
            return false;
    }
    bytes.assign(file.constData(), static_cast<size_t>(file.size()));
    return !bytes.empty();
}

} // namespace rainfold::render
