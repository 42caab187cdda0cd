#include "chart_picture.h"

#include "format.h"
#include "rate_chart_rules.h"

#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QPen>
#include <QPolygonF>

#include <algorithm>

namespace rainfold::render {

namespace {

constexpr double kScreenDpi = 96;   // the chart is laid out as on screen ...
constexpr double kPixelRatio = 3;   // ... and rendered three times finer for paper
constexpr int kDotsPerMetre = 3780; // 96 dpi, whatever the screen: the page must not depend on it

constexpr double kLabelPoints = 9;
constexpr double kEdge = 10;    // picture edge to an axis title
constexpr double kTitleGap = 4; // axis title to its labels
constexpr double kTickGap = 2;  // label to its tick
constexpr double kTick = 4;     // tick marks stand outside the plot area

const QColor kGridColour(0xe2, 0xe2, 0xe2);
const QColor kAxisColour(0xd6, 0xd6, 0xd6);
const QColor kLabelColour(0x40, 0x40, 0x44);
constexpr double kCurveWidth = 2;

QFont ChartFont(double points) {
    QFont font(QStringLiteral("Sans Serif"));
    font.setStyleHint(QFont::SansSerif);
    font.setPointSizeF(points);
    return font;
}

// Measures as the picture's own image will: at 96 dpi, not at the screen's.
QFontMetricsF Metrics(const QFont& font) {
    static const QImage device = [] {
        QImage image(1, 1, QImage::Format_RGB32);
        image.setDotsPerMeterX(kDotsPerMetre);
        image.setDotsPerMeterY(kDotsPerMetre);
        return image;
    }();
    return QFontMetricsF(font, &device);
}

QString Text(const std::string& s) {
    return QString::fromStdString(s);
}

} // namespace

ChartLayout LayOutChartPicture(const ChartData& data, bool drawn, const QSizeF& size) {
    ChartLayout l;
    l.size = size;
    const RateScale scale = ChartRateScale(data, drawn);
    l.maximum = scale.maximum;
    l.divisions = scale.divisions;
    l.minorSteps = scale.minorSteps;
    l.timeEnd = ChartTimeEnd(data, drawn);

    const QFontMetricsF labels = Metrics(ChartFont(kLabelPoints));
    const QFontMetricsF titles = Metrics(ChartFont(kTitlePoints));
    const double line = labels.height();
    const auto width = [&](const std::string& s) { return labels.horizontalAdvance(Text(s)); };

    // Down the picture: half a label above the top tick, then below the plot the ticks, the
    // time labels and the title.
    const double top = kEdge + line / 2;
    const double bottom =
        size.height() - kEdge - titles.height() - kTitleGap - line - kTickGap - kTick;
    const int every = RateLabelEvery(l.divisions, bottom - top, line);
    l.rateTicks = RateLabelValues(scale, every);
    double widestRate = 0;
    for (double v : l.rateTicks)
        widestRate = std::max(widestRate, width(RateLabelText(v)));
    // Across: the title and the rate labels left of the plot, half the last time label right of
    // it, whichever number of steps it turns out to be.
    const double left = kEdge + titles.height() + kTitleGap + widestRate + kTickGap + kTick;
    double lastHalf = 0;
    for (int steps = 1; steps <= kMostTimeSteps; ++steps)
        lastHalf =
            std::max(lastHalf, width(FixedText(l.timeEnd, TimeDecimals(l.timeEnd, steps))) / 2);
    l.plot = QRectF(QPointF(left, top), QPointF(size.width() - kEdge - lastHalf, bottom));
    const QRectF& plot = l.plot;

    const TimeScale time = FitTimeScale(l.timeEnd, plot.width(), width);
    l.timeSteps = time.steps;
    for (int i = 0; i <= time.steps; ++i) {
        const QString s = Text(TimeLabelText(l.timeEnd, time, i));
        const double w = labels.horizontalAdvance(s);
        const double x = plot.left() + plot.width() * i / time.steps;
        l.texts.push_back(
            {ChartText::TimeLabel, s, {x - w / 2, bottom + kTick + kTickGap, w, line}});
    }
    for (double v : l.rateTicks) {
        const QString s = Text(RateLabelText(v));
        const double w = labels.horizontalAdvance(s);
        const double y = bottom - v / l.maximum * plot.height();
        l.texts.push_back(
            {ChartText::RateLabel, s, {left - kTick - kTickGap - w, y - line / 2, w, line}});
    }
    const QString timeTitle = QString::fromLatin1(kTimeTitle);
    const double timeWidth = titles.horizontalAdvance(timeTitle);
    l.texts.push_back({ChartText::Title,
                       timeTitle,
                       {plot.center().x() - timeWidth / 2, size.height() - kEdge - titles.height(),
                        timeWidth, titles.height()}});
    const QString rateTitle = QString::fromLatin1(kRateTitle);
    const double rateWidth = titles.horizontalAdvance(rateTitle);
    l.texts.push_back({ChartText::Title,
                       rateTitle,
                       {kEdge, plot.center().y() - rateWidth / 2, titles.height(), rateWidth}});

    if (!drawn)
        return l;
    // Every line in pixels, the named curves first, then the markers.
    const auto toPixels = [&](const std::vector<ChartPoint>& points) {
        LabelCurve c;
        for (const ChartPoint& p : points)
            c.points.push_back({plot.left() + p.t / l.timeEnd * plot.width(),
                                bottom - p.rate / l.maximum * plot.height()});
        return c;
    };
    for (const auto* points :
         {&data.intake, &data.application, &data.pondingMarker, &data.storageMarker})
        l.lines.push_back(toPixels(*points));
    std::vector<NameSize> sizes;
    for (const char* name : kCurveNames)
        sizes.push_back({labels.horizontalAdvance(QString::fromLatin1(name)), line});
    const std::vector<LabelPlace> places =
        PlaceCurveNames(l.lines, sizes, {plot.left(), plot.top(), plot.right(), plot.bottom()});
    for (size_t i = 0; i < places.size(); ++i)
        if (places[i].visible) {
            const LabelBox& b = places[i].box;
            l.texts.push_back({ChartText::CurveName,
                               QString::fromLatin1(kCurveNames[i]),
                               {b.left, b.top, b.right - b.left, b.bottom - b.top}});
        }
    return l;
}

namespace {

void PaintChart(QPainter& painter, const ChartLayout& l) {
    const QRectF& plot = l.plot;
    painter.fillRect(QRectF(QPointF(0, 0), l.size), Qt::white);
    const auto rateY = [&](double fraction) { return plot.bottom() - fraction * plot.height(); };

    // The grid: a dashed line at every minor step, a solid one at every division and time tick.
    painter.setPen(QPen(kGridColour, 1, Qt::DashLine));
    const int minor = l.divisions * l.minorSteps;
    for (int j = 1; j < minor; ++j)
        if (j % l.minorSteps != 0)
            painter.drawLine(QLineF(plot.left(), rateY(double(j) / minor), plot.right(),
                                    rateY(double(j) / minor)));
    painter.setPen(QPen(kGridColour, 1));
    for (int d = 1; d <= l.divisions; ++d)
        painter.drawLine(QLineF(plot.left(), rateY(double(d) / l.divisions), plot.right(),
                                rateY(double(d) / l.divisions)));
    for (int i = 1; i < l.timeSteps; ++i) { // the plot's right edge stays open
        const double x = plot.left() + plot.width() * i / l.timeSteps;
        painter.drawLine(QLineF(x, plot.top(), x, plot.bottom()));
    }

    // The axes along the left and the bottom, with a tick at every label.
    painter.setPen(QPen(kAxisColour, 1));
    painter.drawLine(QLineF(plot.topLeft(), plot.bottomLeft()));
    painter.drawLine(QLineF(plot.bottomLeft(), plot.bottomRight()));
    for (double v : l.rateTicks)
        painter.drawLine(
            QLineF(plot.left() - kTick, rateY(v / l.maximum), plot.left(), rateY(v / l.maximum)));
    for (int i = 0; i <= l.timeSteps; ++i) {
        const double x = plot.left() + plot.width() * i / l.timeSteps;
        painter.drawLine(QLineF(x, plot.bottom(), x, plot.bottom() + kTick));
    }

    // Every curve and marker is a dashed black line, cut off at the plot area's edge.
    painter.save();
    painter.setClipRect(plot);
    QPen curve(Qt::black);
    curve.setStyle(Qt::DashLine);
    curve.setWidthF(kCurveWidth);
    painter.setPen(curve);
    for (const LabelCurve& line : l.lines) {
        QPolygonF polygon;
        for (const LabelPoint& p : line.points)
            polygon << QPointF(p.x, p.y);
        painter.drawPolyline(polygon);
    }
    painter.restore();

    for (const ChartText& t : l.texts) {
        const bool title = t.kind == ChartText::Title;
        const QFont font = ChartFont(title ? kTitlePoints : kLabelPoints);
        const double ascent = Metrics(font).ascent();
        painter.setFont(font);
        if (t.kind == ChartText::CurveName) {
            // The name on a patch of white, over the grid and the curves.
            painter.fillRect(t.box, Qt::white);
            painter.setPen(Qt::black);
        } else {
            painter.setPen(kLabelColour);
        }
        if (title && t.box.height() > t.box.width()) { // the rate axis's title reads upwards
            painter.save();
            painter.translate(t.box.left(), t.box.bottom());
            painter.rotate(-90);
            painter.drawText(QPointF(0, ascent), t.text);
            painter.restore();
        } else {
            painter.drawText(QPointF(t.box.left(), t.box.top() + ascent), t.text);
        }
    }
}

} // namespace

Picture ChartPicture(const ChartData& data, bool drawn, double widthTwips, double heightTwips) {
    const QSizeF logical(widthTwips * kScreenDpi / 1440, heightTwips * kScreenDpi / 1440);
    const ChartLayout layout = LayOutChartPicture(data, drawn, logical);

    QImage image((logical * kPixelRatio).toSize(), QImage::Format_RGB32);
    image.setDotsPerMeterX(kDotsPerMetre);
    image.setDotsPerMeterY(kDotsPerMetre);
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setRenderHint(QPainter::TextAntialiasing);
        painter.scale(kPixelRatio, kPixelRatio);
        PaintChart(painter, layout);
    }
    return MakePicture(image, widthTwips, heightTwips);
}

} // namespace rainfold::render
