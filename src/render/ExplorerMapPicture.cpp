#include "ExplorerMapPicture.h"

#include "format.h"
#include "results_page.h"

#include <QBuffer>
#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QLineF>
#include <QPageSize>
#include <QPainter>
#include <QPainterPath>
#include <QPdfWriter>

#include <algorithm>
#include <cmath>
#include <vector>

namespace rainfold::render {

namespace {

// Margins around the plot, pixels: axis labels to the left and below, the legend to the right,
// the titles and the package strip above.
constexpr double kLeft = 74, kRight = 156, kBottom = 52, kTitles = 50, kStrip = 84;

struct ColourClass {
    double upTo; // percent; the class holds runoff above the previous class's limit up to this
    QColor colour;
    const char* label;
};
// No runoff stands apart in a cool colour; runoff climbs through warm colours.
const QColor kNoRunoff(0xcf, 0xe8, 0xf5);
const ColourClass kClasses[] = {
    {1, QColor(0xff, 0xff, 0xb2), "0 \u2013 1"},     {2, QColor(0xfe, 0xd9, 0x76), "1 \u2013 2"},
    {5, QColor(0xfe, 0xb2, 0x4c), "2 \u2013 5"},     {10, QColor(0xfd, 0x8d, 0x3c), "5 \u2013 10"},
    {20, QColor(0xfc, 0x4e, 0x2a), "10 \u2013 20"},  {30, QColor(0xe3, 0x1a, 0x1c), "20 \u2013 30"},
    {HUGE_VAL, QColor(0xb1, 0x00, 0x26), "over 30"},
};
const QColor kNoResult(0xa0, 0xa0, 0xa0);
const QColor kSelectedColour(0x00, 0x50, 0xc8);

QColor ColourOf(double runoff) {
    if (std::isnan(runoff))
        return kNoResult;
    if (runoff <= 0)
        return kNoRunoff;
    for (const ColourClass& c : kClasses)
        if (runoff <= c.upTo)
            return c.colour;
    return kClasses[std::size(kClasses) - 1].colour;
}

QFont Font(double pixels, bool bold = false) {
    QFont font;
    font.setPixelSize(static_cast<int>(std::lround(pixels)));
    font.setBold(bold);
    return font;
}

double YLow(ExploreAxis axis) {
    return axis == ExploreAxis::Depth ? kExploreMinDepth : kExploreMinStorage;
}
double YHigh(ExploreAxis axis) {
    return axis == ExploreAxis::Depth ? kExploreMaxDepth : kExploreMaxStorage;
}

double XPixel(const QRectF& plot, double diameter) {
    return plot.left() + plot.width() * std::log(diameter / kExploreMinDiameter) /
                             std::log(kExploreMaxDiameter / kExploreMinDiameter);
}

QString Number(double x) {
    return QString::fromStdString(SignificantText(x, 6));
}

// Text with a white halo, readable over any colour of the map.
void HaloText(QPainter& p, const QPointF& at, const QString& text) {
    QPainterPath path;
    path.addText(at, p.font(), text);
    p.save();
    p.setPen(QPen(Qt::white, 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(Qt::NoBrush);
    p.drawPath(path);
    p.setPen(Qt::NoPen);
    p.setBrush(Qt::black);
    p.drawPath(path);
    p.restore();
}

void DrawCells(QPainter& p, const QRectF& plot, const ExploreMap& map) {
    const size_t nx = map.xValues.size(), ny = map.yValues.size();
    const auto px = [&](double column) {
        return std::clamp(plot.left() + plot.width() * column / static_cast<double>(nx - 1),
                          plot.left(), plot.right());
    };
    const auto py = [&](double row) {
        return std::clamp(plot.bottom() - plot.height() * row / static_cast<double>(ny - 1),
                          plot.top(), plot.bottom());
    };
    p.save();
    p.setRenderHint(QPainter::Antialiasing, false);
    p.setPen(Qt::NoPen);
    // Each point colours the area nearer to it than to its neighbours.
    for (size_t r = 0; r < ny; ++r)
        for (size_t c = 0; c < nx; ++c) {
            const double ci = static_cast<double>(c), ri = static_cast<double>(r);
            const QRectF cell(QPointF(px(ci - 0.5), py(ri + 0.5)),
                              QPointF(px(ci + 0.5), py(ri - 0.5)));
            p.setBrush(ColourOf(map.runoff[r][c]));
            p.drawRect(cell.adjusted(0, 0, 0.6, 0.6).intersected(plot));
        }
    p.restore();
}

// Draws the contour line of one level and returns its pieces in pixels.
std::vector<QLineF> DrawContour(QPainter& p, const QRectF& plot, const ExploreMap& map,
                                double level, bool bold) {
    const double nx = static_cast<double>(map.xValues.size() - 1);
    const double ny = static_cast<double>(map.yValues.size() - 1);
    const auto at = [&](double column, double row) {
        return QPointF(plot.left() + plot.width() * column / nx,
                       plot.bottom() - plot.height() * row / ny);
    };
    std::vector<QLineF> lines;
    for (const ContourSegment& s : Contour(map, level))
        lines.emplace_back(at(s.column1, s.row1), at(s.column2, s.row2));
    p.save();
    p.setPen(bold ? QPen(Qt::black, 3.2, Qt::SolidLine, Qt::RoundCap)
                  : QPen(QColor(0x30, 0x30, 0x30), 1.1, Qt::SolidLine, Qt::RoundCap));
    p.drawLines(lines.data(), static_cast<int>(lines.size()));
    p.restore();
    return lines;
}

// Labels a contour line on the piece nearest the middle of its run along the diameter axis that
// keeps clear of the labels already placed.
void LabelContour(QPainter& p, const QRectF& plot, std::vector<QLineF> lines, double level,
                  bool bold, std::vector<QRectF>& placed) {
    if (lines.empty())
        return;
    std::sort(lines.begin(), lines.end(),
              [](const QLineF& a, const QLineF& b) { return a.center().x() < b.center().x(); });
    p.save();
    p.setFont(Font(11, bold));
    const QString text = Number(level) + QStringLiteral(" %");
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
}

void DrawAxes(QPainter& p, const QRectF& plot, ExploreAxis axis) {
    p.save();
    p.setPen(QPen(Qt::black, 1));
    p.setBrush(Qt::NoBrush);
    p.drawRect(plot);
    p.setFont(Font(11));
    const QFontMetricsF fm(p.font());
    for (double major : {1, 2, 5, 10, 20, 50, 100, 150}) {
        const double x = XPixel(plot, major);
        p.drawLine(QPointF(x, plot.bottom()), QPointF(x, plot.bottom() + 6));
        const QString label = Number(major);
        p.drawText(QPointF(x - fm.horizontalAdvance(label) / 2, plot.bottom() + 8 + fm.ascent()),
                   label);
    }
    for (double minor : {3, 4, 6, 7, 8, 9, 30, 40, 60, 70, 80, 90}) {
        const double x = XPixel(plot, minor);
        p.drawLine(QPointF(x, plot.bottom()), QPointF(x, plot.bottom() + 3));
    }
    const double lo = YLow(axis), hi = YHigh(axis);
    const double step = axis == ExploreAxis::Depth ? 0.25 : 0.1;
    for (int k = 0; lo + k * step <= hi + 1e-9; ++k) {
        const double value = lo + k * step;
        const double y = plot.bottom() - plot.height() * (value - lo) / (hi - lo);
        p.drawLine(QPointF(plot.left() - 6, y), QPointF(plot.left(), y));
        const QString label =
            QString::fromStdString(FixedText(value, axis == ExploreAxis::Depth ? 2 : 1));
        p.drawText(QPointF(plot.left() - 9 - fm.horizontalAdvance(label), y + fm.ascent() / 2 - 1),
                   label);
    }
    p.setFont(Font(12, true));
    const QString xTitle = QStringLiteral("Wetted diameter (ft)");
    p.drawText(QRectF(plot.left(), plot.bottom() + 26, plot.width(), 20), Qt::AlignCenter, xTitle);
    const QString yTitle = axis == ExploreAxis::Depth
                               ? QStringLiteral("Depth per pass (in)")
                               : QStringLiteral("Surface storage on every segment (in)");
    p.translate(plot.left() - 58, plot.center().y());
    p.rotate(-90);
    p.drawText(QRectF(-plot.height() / 2, -10, plot.height(), 20), Qt::AlignCenter, yTitle);
    p.restore();
}

// Bands of the reference panel's wetted diameters; overlapping or touching ranges take turns
// between two rows.
struct Band {
    const SprinklerPackage* package;
    QRectF bar;
};
std::vector<Band> Bands(const QRectF& plot) {
    std::vector<Band> bands;
    double lastHigh[2] = {-1, -1};
    int row = 0;
    for (const SprinklerPackage& p : kSprinklerPackages) {
        row = p.low <= lastHigh[row] ? 1 - row : row;
        lastHigh[row] = p.high;
        const double x1 = XPixel(plot, p.low), x2 = XPixel(plot, p.high);
        const double y = plot.top() - 10 - row * 9;
        bands.push_back({&p, QRectF(x1, y - 6, x2 - x1, 6)});
    }
    return bands;
}

void DrawBands(QPainter& p, const QRectF& plot) {
    p.save();
    p.setFont(Font(10.5));
    const QFontMetricsF fm(p.font());
    for (const Band& band : Bands(plot)) {
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0x4a, 0x6f, 0x99));
        p.drawRect(band.bar);
        p.setPen(QPen(QColor(0x4a, 0x6f, 0x99), 1, Qt::DotLine));
        p.drawLine(QPointF(band.bar.left(), band.bar.bottom()),
                   QPointF(band.bar.left(), plot.top()));
        p.drawLine(QPointF(band.bar.right(), band.bar.bottom()),
                   QPointF(band.bar.right(), plot.top()));
        // Upright labels fit the narrow bands of the logarithmic axis.
        p.setPen(Qt::black);
        p.save();
        p.translate(band.bar.center().x() + fm.ascent() / 2 - 1, band.bar.top() - 3);
        p.rotate(-90);
        p.drawText(QPointF(0, 0), QString::fromUtf8(band.package->label));
        p.restore();
    }
    p.restore();
}

void DrawDesignMark(QPainter& p, const QPointF& c) {
    p.save();
    p.setPen(QPen(Qt::black, 2));
    p.setBrush(Qt::white);
    p.drawEllipse(c, 6.5, 6.5);
    p.setPen(QPen(Qt::black, 1.5));
    p.drawLine(c - QPointF(4, 0), c + QPointF(4, 0));
    p.drawLine(c - QPointF(0, 4), c + QPointF(0, 4));
    p.restore();
}

void DrawSelectedMark(QPainter& p, const QPointF& c) {
    p.save();
    p.setPen(QPen(Qt::white, 4.5));
    p.setBrush(Qt::NoBrush);
    const QPointF diamond[] = {c + QPointF(0, -8), c + QPointF(8, 0), c + QPointF(0, 8),
                               c + QPointF(-8, 0)};
    p.drawPolygon(diamond, 4);
    p.setPen(QPen(kSelectedColour, 2.2));
    p.drawPolygon(diamond, 4);
    p.restore();
}

void DrawLegend(QPainter& p, const QRectF& plot, const ExplorerMapView& view) {
    p.save();
    double x = plot.right() + 18, y = plot.top();
    p.setFont(Font(12, true));
    p.setPen(Qt::black);
    p.drawText(QPointF(x, y + 10), QStringLiteral("Runoff (%)"));
    y += 22;
    p.setFont(Font(11));
    const auto swatch = [&](const QColor& colour, const QString& label) {
        p.setPen(QPen(QColor(0x50, 0x50, 0x50), 0.8));
        p.setBrush(colour);
        p.drawRect(QRectF(x, y, 18, 14));
        p.setPen(Qt::black);
        p.drawText(QPointF(x + 26, y + 11), label);
        y += 18;
    };
    swatch(kNoRunoff, QStringLiteral("none"));
    y += 8; // no runoff stands apart from any runoff at all
    for (const ColourClass& c : kClasses)
        swatch(c.colour, QString::fromUtf8(c.label));
    if (view.map && view.map->faults > 0)
        swatch(kNoResult, QStringLiteral("no result"));

    y += 14;
    const auto key = [&](const auto& draw, const QString& label) {
        draw(QPointF(x + 9, y + 7));
        p.setPen(Qt::black);
        p.setBrush(Qt::NoBrush);
        p.drawText(QPointF(x + 26, y + 11), label);
        y += 20;
    };
    key(
        [&](QPointF c) {
            p.setPen(QPen(QColor(0x30, 0x30, 0x30), 1.1));
            p.drawLine(c - QPointF(9, 0), c + QPointF(9, 0));
        },
        QStringLiteral("1, 2, 5 ... 30 %"));
    key(
        [&](QPointF c) {
            p.setPen(QPen(Qt::black, 3.2));
            p.drawLine(c - QPointF(9, 0), c + QPointF(9, 0));
        },
        QStringLiteral("target ") + Number(view.targetPct) + QStringLiteral(" %"));
    key([&](QPointF c) { DrawDesignMark(p, c); }, QStringLiteral("design"));
    if (view.selected)
        key([&](QPointF c) { DrawSelectedMark(p, c); }, QStringLiteral("selected"));
    p.restore();
}

} // namespace

ExplorerMapView MapViewFor(const DesignRecord& design, const RunoffProbe& probe, ExploreAxis axis,
                           double targetPct) {
    ExplorerMapView view;
    view.axis = axis;
    view.targetPct = targetPct;
    const double flow = (ReadEngineInputs(design).Q0 + 2 * 6.309) / 0.06309;
    view.title = QStringLiteral("Weighted average percent runoff at %1 gpm")
                     .arg(QString::fromStdString(FormatFixed(flow, 0)));
    QString model;
    if (design.greenAmpt) {
        model = QStringLiteral("Green and Ampt Infiltration");
    } else {
        const std::string name =
            SlotFamilyName(design.intakeFamilyIndex, InitialSlot(design.intakeFamilyIndex));
        model = QString::fromStdString(name == "Customized Values" ? name
                                                                   : name + " NRCS Intake Family");
    }
    const QString held = axis == ExploreAxis::Depth
                             ? QStringLiteral("surface storage as designed")
                             : QStringLiteral("%1 in per pass as designed")
                                   .arg(QString::fromStdString(design.txtAPPL).trimmed());
    view.subtitle = model + QStringLiteral(", ") + held;
    view.designDiameter = probe.designDiameter();
    view.designY = axis == ExploreAxis::Depth ? std::optional<double>(probe.designDepth())
                                              : probe.uniformStorage();
    return view;
}

QRectF ExplorerPlotRect(const QRectF& area) {
    return QRectF(area.left() + kLeft, area.top() + kTitles + kStrip,
                  std::max(10.0, area.width() - kLeft - kRight),
                  std::max(10.0, area.height() - kTitles - kStrip - kBottom));
}

QPointF ExplorerPointOf(const QRectF& plot, ExploreAxis axis, double diameterFt, double y) {
    return QPointF(XPixel(plot, diameterFt),
                   plot.bottom() - plot.height() * (y - YLow(axis)) / (YHigh(axis) - YLow(axis)));
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

QString ExplorerBandAt(const QRectF& area, const QPointF& at) {
    const QRectF plot = ExplorerPlotRect(area);
    if (at.y() < plot.top() - kStrip || at.y() > plot.top())
        return QString();
    QString names;
    for (const Band& band : Bands(plot))
        if (at.x() >= band.bar.left() - 2 && at.x() <= band.bar.right() + 2)
            names += (names.isEmpty() ? QString() : QStringLiteral("\n")) +
                     QString::fromUtf8(band.package->name) +
                     QStringLiteral(": %1 - %2 ft").arg(band.package->low).arg(band.package->high);
    return names;
}

void PaintExplorerMap(QPainter& p, const QRectF& area, const ExplorerMapView& view) {
    p.save();
    p.setRenderHint(QPainter::Antialiasing, true);
    p.setRenderHint(QPainter::TextAntialiasing, true);
    p.fillRect(area, Qt::white);
    const QRectF plot = ExplorerPlotRect(area);

    p.setPen(Qt::black);
    p.setFont(Font(16, true));
    p.drawText(QRectF(area.left() + 12, area.top() + 6, area.width() - 24, 22),
               Qt::AlignLeft | Qt::AlignVCenter, view.title);
    p.setFont(Font(12));
    p.drawText(QRectF(area.left() + 12, area.top() + 28, area.width() - 24, 18),
               Qt::AlignLeft | Qt::AlignVCenter, view.subtitle);

    DrawBands(p, plot);
    if (view.map && !view.map->runoff.empty()) {
        DrawCells(p, plot, *view.map);
        // The target's line and label first, so that its label takes the best place.
        std::vector<double> levels = {view.targetPct};
        for (double level : kContourLevels)
            if (level != view.targetPct)
                levels.push_back(level);
        std::vector<std::vector<QLineF>> lines;
        for (double level : levels)
            lines.push_back(DrawContour(p, plot, *view.map, level, level == view.targetPct));
        // Labels keep clear of the design's mark and its word too.
        std::vector<QRectF> placed;
        if (view.designY)
            placed.emplace_back(
                ExplorerPointOf(plot, view.axis, view.designDiameter, *view.designY) +
                    QPointF(-8, -22),
                QSizeF(66, 30));
        for (size_t k = 0; k < levels.size(); ++k)
            LabelContour(p, plot, lines[k], levels[k], k == 0, placed);
    } else {
        p.fillRect(plot, QColor(0xf2, 0xf2, 0xf2));
    }
    if (!view.message.isEmpty()) {
        p.setFont(Font(14, true));
        const QSizeF size = QFontMetricsF(p.font()).size(0, view.message) + QSizeF(24, 14);
        const QRectF box(plot.center() - QPointF(size.width() / 2, size.height() / 2), size);
        p.setPen(QPen(QColor(0x60, 0x60, 0x60), 1));
        p.setBrush(QColor(255, 255, 255, 235));
        p.drawRoundedRect(box, 4, 4);
        p.setPen(Qt::black);
        p.drawText(box, Qt::AlignCenter, view.message);
    }
    DrawAxes(p, plot, view.axis);

    const auto inRange = [&](double d, double y) {
        return d >= kExploreMinDiameter && d <= kExploreMaxDiameter && y >= YLow(view.axis) &&
               y <= YHigh(view.axis);
    };
    p.setFont(Font(11, true));
    if (view.designY && inRange(view.designDiameter, *view.designY)) {
        const QPointF c = ExplorerPointOf(plot, view.axis, view.designDiameter, *view.designY);
        DrawDesignMark(p, c);
        HaloText(p, c + QPointF(10, -8), QStringLiteral("design"));
    } else if (!view.designY && inRange(view.designDiameter, YLow(view.axis))) {
        // Storage that differs along the pivot has no single place on the storage axis.
        const double x = XPixel(plot, view.designDiameter);
        p.setPen(QPen(Qt::black, 1.5, Qt::DashLine));
        p.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
        HaloText(p, QPointF(x + 5, plot.top() + 16), QStringLiteral("design"));
    }
    if (view.selected && inRange(view.selected->x(), view.selected->y()))
        DrawSelectedMark(p,
                         ExplorerPointOf(plot, view.axis, view.selected->x(), view.selected->y()));
    DrawLegend(p, plot, view);
    p.restore();
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
