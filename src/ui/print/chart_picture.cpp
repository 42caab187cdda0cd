#include "chart_picture.h"

#include <QChart>
#include <QGraphicsScene>
#include <QLineSeries>
#include <QPainter>
#include <QPen>
#include <QValueAxis>

#include <algorithm>
#include <cmath>

namespace rainfold::ui {

namespace {

constexpr double kScreenDpi = 96; // the chart is laid out as on screen ...
constexpr double kPixelRatio = 3; // ... and rendered three times finer for paper

QLineSeries* Series(const std::vector<ChartPoint>& points, const QPen& pen) {
    auto* series = new QLineSeries;
    for (const ChartPoint& p : points)
        series->append(p.t, p.rate);
    series->setPen(pen);
    return series;
}

} // namespace

Picture ChartPicture(const ChartData& data, bool drawn, double widthTwips, double heightTwips) {
    const QSizeF logical(widthTwips * kScreenDpi / 1440, heightTwips * kScreenDpi / 1440);

    QChart chart;
    chart.setBackgroundRoundness(0);
    chart.legend()->hide();
    chart.setMargins(QMargins(4, 4, 4, 4));

    auto* x = new QValueAxis;
    x->setTitleText(QStringLiteral("Time (hr)"));
    x->setLabelFormat(QStringLiteral("%.2f"));
    auto* y = new QValueAxis;
    y->setTitleText(QStringLiteral("Application & Intake Rate (in/hr)"));
    y->setLabelFormat(QStringLiteral("%.1f"));
    chart.addAxis(x, Qt::AlignBottom);
    chart.addAxis(y, Qt::AlignLeft);

    double tEnd = 0;
    if (drawn) {
        QPen solid(Qt::black);
        solid.setWidthF(1.5);
        QPen dashed(Qt::black);
        dashed.setWidthF(1.5);
        dashed.setStyle(Qt::DashLine);
        QPen marker(Qt::black);
        marker.setWidthF(1);
        marker.setStyle(Qt::DotLine);
        for (QLineSeries* s :
             {Series(data.application, solid), Series(data.intake, dashed),
              Series(data.pondingMarker, marker), Series(data.storageMarker, marker)}) {
            chart.addSeries(s);
            s->attachAxis(x);
            s->attachAxis(y);
        }
        for (const ChartPoint& p : data.application)
            tEnd = std::max(tEnd, p.t);
    }
    x->setRange(0, tEnd > 0 ? tEnd : 1);
    const double yMax = drawn && data.yMaximum > 0 ? data.yMaximum : 1;
    const int divisions = drawn && data.yDivisions > 0 ? data.yDivisions : 2;
    y->setRange(0, yMax);
    y->setTickCount(divisions + 1);
    y->setMinorTickCount(std::max(0, data.yMinorDivisions - 1));

    QGraphicsScene scene;
    scene.addItem(&chart);
    chart.setGeometry(QRectF(QPointF(0, 0), logical));

    QImage image((logical * kPixelRatio).toSize(), QImage::Format_RGB32);
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setRenderHint(QPainter::TextAntialiasing);
        scene.render(&painter, QRectF(QPointF(0, 0), logical * kPixelRatio),
                     QRectF(QPointF(0, 0), logical));
    }
    scene.removeItem(&chart);
    return MakePicture(image, widthTwips, heightTwips);
}

} // namespace rainfold::ui
