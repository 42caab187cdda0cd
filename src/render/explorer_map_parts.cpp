#include "explorer_map_parts.h"

#include "format.h"

#include <QFontMetricsF>
#include <QLineF>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace rainfold::render::explorer_parts {

namespace {

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
const QColor kBandColour(0x4a, 0x6f, 0x99);

// The strip above the plot: two rows of bars, and the labels standing above both.
constexpr double kBarHeight = 6, kRowStep = 9, kBarsBelow = 10, kLabelsAbove = 8;
constexpr double kOuterMargin = 6, kGap = 8;

// The key's texts, for its width.
const char* const kKeyTexts[] = {"none",         "no result", "1, 2, 5 ... 30 %",
                                 "target 100 %", "design",    "selected"};

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

// The title block's items, "key: value", wrapped into lines no wider than `width`.
QStringList FooterLines(const ExploreFacts& facts, double width) {
    const QFontMetricsF fm(Font(kLabelFont));
    const QString separator = QStringLiteral("     ");
    QStringList lines;
    for (const auto& [key, value] : facts) {
        if (value.empty())
            continue;
        const QString item =
            QString::fromStdString(key) + QStringLiteral(": ") + QString::fromStdString(value);
        if (!lines.isEmpty() && fm.horizontalAdvance(lines.back() + separator + item) <= width)
            lines.back() += separator + item;
        else
            lines.push_back(fm.elidedText(item, Qt::ElideRight, width));
    }
    return lines;
}

} // namespace

QFont Font(double pixels, bool bold) {
    QFont font;
    font.setPixelSize(static_cast<int>(std::lround(pixels)));
    font.setBold(bold);
    return font;
}

QString Number(double x) {
    return QString::fromStdString(SignificantText(x, 6));
}

double YLow(ExploreAxis axis) {
    return axis == ExploreAxis::Depth ? kExploreMinDepth : kExploreMinStorage;
}
double YHigh(ExploreAxis axis) {
    return axis == ExploreAxis::Depth ? kExploreMaxDepth : kExploreMaxStorage;
}

double XPixel(const QRectF& plot, double diameter) {
    const double d = std::max(diameter, 1e-6); // a diameter of 0 lies far to the left
    return plot.left() + plot.width() * std::log(d / kExploreMinDiameter) /
                             std::log(kExploreMaxDiameter / kExploreMinDiameter);
}

double YPixel(const QRectF& plot, ExploreAxis axis, double y) {
    return plot.bottom() - plot.height() * (y - YLow(axis)) / (YHigh(axis) - YLow(axis));
}

bool InRange(ExploreAxis axis, double diameter, double y) {
    return diameter >= kExploreMinDiameter && diameter <= kExploreMaxDiameter && y >= YLow(axis) &&
           y <= YHigh(axis);
}

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

Layout LayoutOf(const QRectF& area, const ExplorerMapView& view) {
    const QFontMetricsF title(Font(kTitleFont, true)), subtitle(Font(kSubtitleFont)),
        label(Font(kLabelFont)), band(Font(kBandFont)), axisTitle(Font(kAxisTitleFont, true));
    Layout out;
    out.area = area;
    out.subtitleBottom = area.top() + kOuterMargin + title.height() + subtitle.height();
    out.stripTop = out.subtitleBottom + 4;
    double longestBand = 0;
    for (const SprinklerPackage& p : kSprinklerPackages)
        longestBand = std::max(longestBand, band.horizontalAdvance(QString::fromUtf8(p.label)));
    const double top =
        out.stripTop + longestBand + kLabelsAbove + kRowStep + kBarHeight + kBarsBelow;

    const double yLabels = label.horizontalAdvance(QStringLiteral("0.00"));
    const double left = kOuterMargin + axisTitle.height() + kGap + yLabels + 9;
    double key =
        QFontMetricsF(Font(kAxisTitleFont, true)).horizontalAdvance(QStringLiteral("Runoff (%)"));
    for (const char* text : kKeyTexts)
        key = std::max(key, 26 + label.horizontalAdvance(QString::fromUtf8(text)));
    const double right = 18 + key + kGap;

    out.footer = view.facts.empty() ? QStringList()
                                    : FooterLines(view.facts, area.width() - 2 * kOuterMargin - 16);
    const double footer =
        out.footer.isEmpty() ? 0 : out.footer.size() * label.lineSpacing() + 12 + kOuterMargin;
    const double bottom = 8 + label.height() + 6 + axisTitle.height() + kOuterMargin + footer;
    out.plot = QRectF(area.left() + left, top, std::max(10.0, area.width() - left - right),
                      std::max(10.0, area.bottom() - top - bottom));
    out.legendLeft = out.plot.right() + 18;
    out.footerTop = area.bottom() - footer + 4;
    return out;
}

void DrawTitles(QPainter& p, const Layout& layout, const ExplorerMapView& view) {
    const QRectF& area = layout.area;
    const QFontMetricsF title(Font(kTitleFont, true)), subtitle(Font(kSubtitleFont));
    const double width = area.width() - 2 * kOuterMargin - 6;
    p.save();
    p.setPen(Qt::black);
    p.setFont(Font(kTitleFont, true));
    const double x = area.left() + kOuterMargin + 6;
    double y = area.top() + kOuterMargin;
    p.drawText(QPointF(x, y + title.ascent()), title.elidedText(view.title, Qt::ElideRight, width));
    y += title.height();
    p.setFont(Font(kSubtitleFont));
    p.drawText(QPointF(x, y + subtitle.ascent()),
               subtitle.elidedText(view.subtitle, Qt::ElideRight, width));
    p.restore();
}

std::vector<ExplorerBand> Bands(const Layout& layout) {
    const QRectF& plot = layout.plot;
    const QFontMetricsF fm(Font(kBandFont));
    std::vector<ExplorerBand> bands;
    double lastHigh[2] = {-1, -1};
    int row = 0;
    for (const SprinklerPackage& p : kSprinklerPackages) {
        row = p.low <= lastHigh[row] ? 1 - row : row;
        lastHigh[row] = p.high;
        const double x1 = XPixel(plot, p.low), x2 = XPixel(plot, p.high);
        const double y = plot.top() - kBarsBelow - row * kRowStep;
        bands.push_back({&p, QRectF(x1, y - kBarHeight, x2 - x1, kBarHeight), QPointF()});
    }
    // Labels a line's height apart at least, in the order of their bars, inside the plot's width.
    std::vector<ExplorerBand*> order;
    for (ExplorerBand& b : bands)
        order.push_back(&b);
    std::sort(order.begin(), order.end(), [](const ExplorerBand* a, const ExplorerBand* b) {
        return a->bar.center().x() < b->bar.center().x();
    });
    const double gap = fm.height() + 1;
    const double foot = plot.top() - kBarsBelow - kRowStep - kBarHeight - kLabelsAbove / 2;
    std::vector<double> xs;
    for (const ExplorerBand* b : order)
        xs.push_back(std::max(b->bar.center().x(), xs.empty() ? plot.left() : xs.back() + gap));
    for (size_t i = xs.size(); i-- > 0;)
        xs[i] = std::min(xs[i], i + 1 < xs.size() ? xs[i + 1] - gap : plot.right());
    for (size_t i = 0; i < order.size(); ++i)
        order[i]->labelFoot = QPointF(xs[i], foot);
    return bands;
}

void DrawBands(QPainter& p, const Layout& layout, const std::vector<ExplorerBand>& bands) {
    const QRectF& plot = layout.plot;
    p.save();
    p.setFont(Font(kBandFont));
    const QFontMetricsF fm(p.font());
    for (const ExplorerBand& band : bands) {
        p.setPen(Qt::NoPen);
        p.setBrush(kBandColour);
        p.drawRect(band.bar);
        p.setPen(QPen(kBandColour, 1, Qt::DotLine));
        for (double x : {band.bar.left(), band.bar.right()})
            p.drawLine(QPointF(x, band.bar.bottom()), QPointF(x, plot.top()));
        // Upright labels fit the narrow bands of the logarithmic axis; a label moved aside from
        // a crowded bar is joined to it.
        p.setPen(QPen(kBandColour, 0.8));
        p.drawLine(band.labelFoot, QPointF(band.bar.center().x(), band.bar.top()));
        p.setPen(Qt::black);
        p.save();
        p.translate(band.labelFoot.x() + fm.ascent() / 2 - 1, band.labelFoot.y() - 2);
        p.rotate(-90);
        p.drawText(QPointF(0, 0), QString::fromUtf8(band.package->label));
        p.restore();
    }
    p.restore();
}

void DrawAxes(QPainter& p, const Layout& layout, ExploreAxis axis) {
    const QRectF& plot = layout.plot;
    p.save();
    p.setPen(QPen(Qt::black, 1));
    p.setBrush(Qt::NoBrush);
    p.drawRect(plot);
    p.setFont(Font(kLabelFont));
    const QFontMetricsF fm(p.font());
    // A label that would come within a few pixels of the one before it is left out; the last,
    // 150, is always shown.
    std::vector<std::pair<QRectF, QString>> labels;
    for (double major : {1, 2, 5, 10, 20, 50, 100, 150}) {
        const double x = XPixel(plot, major);
        p.drawLine(QPointF(x, plot.bottom()), QPointF(x, plot.bottom() + 6));
        const QString text = Number(major);
        const double w = fm.horizontalAdvance(text);
        const QRectF box(x - w / 2, plot.bottom() + 8, w, fm.height());
        while (!labels.empty() && labels.back().first.right() + 6 > box.left() && major == 150)
            labels.pop_back();
        if (labels.empty() || labels.back().first.right() + 6 <= box.left())
            labels.emplace_back(box, text);
    }
    for (const auto& [box, text] : labels)
        p.drawText(QPointF(box.left(), box.top() + fm.ascent()), text);
    for (double minor : {3, 4, 6, 7, 8, 9, 30, 40, 60, 70, 80, 90}) {
        const double x = XPixel(plot, minor);
        p.drawLine(QPointF(x, plot.bottom()), QPointF(x, plot.bottom() + 3));
    }
    const double lo = YLow(axis), hi = YHigh(axis);
    const double step = axis == ExploreAxis::Depth ? 0.25 : 0.1;
    const int count = static_cast<int>(std::lround((hi - lo) / step));
    // Every label where the plot is tall enough, every other one where it is not.
    const int every = plot.height() / count >= fm.height() ? 1 : 2;
    for (int k = 0; k <= count; ++k) {
        const double value = lo + k * step;
        const double y = YPixel(plot, axis, value);
        p.drawLine(QPointF(plot.left() - (k % every ? 3 : 6), y), QPointF(plot.left(), y));
        if (k % every)
            continue;
        const QString label =
            QString::fromStdString(FixedText(value, axis == ExploreAxis::Depth ? 2 : 1));
        p.drawText(QPointF(plot.left() - 9 - fm.horizontalAdvance(label), y + fm.ascent() / 2 - 1),
                   label);
    }
    p.setFont(Font(kAxisTitleFont, true));
    const QFontMetricsF title(p.font());
    p.drawText(
        QRectF(plot.left(), plot.bottom() + 8 + fm.height() + 4, plot.width(), title.height()),
        Qt::AlignCenter, QStringLiteral("Wetted diameter (ft)"));
    const QString yTitle = axis == ExploreAxis::Depth
                               ? QStringLiteral("Depth per pass (in)")
                               : QStringLiteral("Surface storage on every segment (in)");
    p.translate(layout.area.left() + kOuterMargin + title.height() / 2, plot.center().y());
    p.rotate(-90);
    p.drawText(
        QRectF(-plot.height() / 2 - 40, -title.height() / 2, plot.height() + 80, title.height()),
        Qt::AlignCenter, title.elidedText(yTitle, Qt::ElideRight, plot.height() + 80));
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

QString DrawDesign(QPainter& p, const QRectF& plot, const ExplorerMapView& view) {
    p.save();
    p.setFont(Font(kLabelFont, true));
    const double x = XPixel(plot, view.designDiameter);
    QPointF at(x, plot.center().y());
    if (view.designY) {
        at = ExplorerPointOf(plot, view.axis, view.designDiameter, *view.designY);
        if (InRange(view.axis, view.designDiameter, *view.designY)) {
            DrawDesignMark(p, at);
            HaloText(p, at + QPointF(10, -8), QStringLiteral("design"));
            p.restore();
            return QString();
        }
    } else if (x >= plot.left() && x <= plot.right()) {
        // Storage that differs along the pivot has no single place on the storage axis.
        p.setPen(QPen(Qt::black, 1.5, Qt::DashLine));
        p.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
        HaloText(p, QPointF(x + 5, plot.top() + 16), QStringLiteral("design"));
        p.restore();
        return QString();
    }
    // Off the map: an arrow at the edge pointing where the design lies, and what it is.
    const QPointF tip(std::clamp(at.x(), plot.left() + 2, plot.right() - 2),
                      std::clamp(at.y(), plot.top() + 2, plot.bottom() - 2));
    QLineF towards(tip, at);
    towards.setLength(1);
    const QPointF unit = towards.p2() - towards.p1();
    const QPointF tail = tip - unit * 30;
    p.setPen(QPen(Qt::black, 2.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.drawLine(tail, tip);
    const QPointF side(-unit.y(), unit.x());
    const QPointF head[] = {tip, tip - unit * 9 + side * 5, tip - unit * 9 - side * 5};
    p.setBrush(Qt::black);
    p.drawPolygon(head, 3);
    const QString text = QStringLiteral("design off the map: ") + view.designText;
    const QFontMetricsF fm(p.font());
    const QSizeF size(fm.horizontalAdvance(text), fm.height());
    QPointF corner = tail - unit * (size.width() / 2 + 8) * std::fabs(unit.x()) -
                     unit * (size.height() / 2 + 6) * std::fabs(unit.y()) -
                     QPointF(size.width() / 2, size.height() / 2);
    corner.setX(std::clamp(corner.x(), plot.left() + 4, plot.right() - size.width() - 4));
    corner.setY(std::clamp(corner.y(), plot.top() + 4, plot.bottom() - size.height() - 4));
    HaloText(p, corner + QPointF(0, fm.ascent()), text);
    p.restore();
    return text;
}

void DrawLegend(QPainter& p, const Layout& layout, const ExplorerMapView& view) {
    const double x = layout.legendLeft;
    double y = layout.plot.top();
    const int rows = static_cast<int>(std::size(kClasses)) + 5;
    // Rows of 18 px, closer where the picture is short.
    const double room = layout.area.bottom() - y - 4 - 22 - 22;
    const double step = std::clamp(room / rows, 14.0, 18.0);
    p.save();
    p.setFont(Font(kAxisTitleFont, true));
    p.setPen(Qt::black);
    p.drawText(QPointF(x, y + 10), QStringLiteral("Runoff (%)"));
    y += 22;
    p.setFont(Font(kLabelFont));
    const auto swatch = [&](const QColor& colour, const QString& label) {
        p.setPen(QPen(QColor(0x50, 0x50, 0x50), 0.8));
        p.setBrush(colour);
        p.drawRect(QRectF(x, y, 18, step - 4));
        p.setPen(Qt::black);
        p.drawText(QPointF(x + 26, y + step - 7), label);
        y += step;
    };
    swatch(kNoRunoff, QStringLiteral("none"));
    y += step / 2; // no runoff stands apart from any runoff at all
    for (const ColourClass& c : kClasses)
        swatch(c.colour, QString::fromUtf8(c.label));
    if (view.map && view.map->faults > 0)
        swatch(kNoResult, QStringLiteral("no result"));

    y += step / 2;
    const auto key = [&](const auto& draw, const QString& label) {
        draw(QPointF(x + 9, y + step / 2 - 2));
        p.setPen(Qt::black);
        p.setBrush(Qt::NoBrush);
        p.drawText(QPointF(x + 26, y + step - 7), label);
        y += step + 2;
    };
    key(
        [&](QPointF c) {
            p.setPen(QPen(QColor(0x30, 0x30, 0x30), 1.1));
            p.drawLine(c - QPointF(9, 0), c + QPointF(9, 0));
        },
        QStringLiteral("1, 2, 5 ... 30 %"));
    if (view.targetPct)
        key(
            [&](QPointF c) {
                p.setPen(QPen(Qt::black, 3.2));
                p.drawLine(c - QPointF(9, 0), c + QPointF(9, 0));
            },
            QStringLiteral("target ") + Number(*view.targetPct) + QStringLiteral(" %"));
    key([&](QPointF c) { DrawDesignMark(p, c); }, QStringLiteral("design"));
    if (view.selected)
        key([&](QPointF c) { DrawSelectedMark(p, c); }, QStringLiteral("selected"));
    p.restore();
}

void DrawTitleBlock(QPainter& p, const Layout& layout) {
    if (layout.footer.isEmpty())
        return;
    const QFontMetricsF fm(Font(kLabelFont));
    const QRectF frame(layout.area.left() + kOuterMargin, layout.footerTop,
                       layout.area.width() - 2 * kOuterMargin,
                       layout.area.bottom() - kOuterMargin - layout.footerTop);
    p.save();
    p.setPen(QPen(QColor(0x60, 0x60, 0x60), 1));
    p.setBrush(QColor(0xf7, 0xf7, 0xf7));
    p.drawRect(frame);
    p.setPen(Qt::black);
    p.setFont(Font(kLabelFont));
    double y = frame.top() + 6 + fm.ascent();
    for (const QString& line : layout.footer) {
        p.drawText(QPointF(frame.left() + 8, y), line);
        y += fm.lineSpacing();
    }
    p.restore();
}

} // namespace rainfold::render::explorer_parts
