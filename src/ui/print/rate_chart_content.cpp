#include "rate_chart_content.h"

#include <QChart>
#include <QLegendMarker>
#include <QLineSeries>
#include <QPen>
#include <QValueAxis>

#include <algorithm>

namespace rainfold::ui {

namespace {

QLineSeries* AddSeries(QChart* chart, const std::vector<ChartPoint>& points, const QString& name,
                       bool inLegend) {
    auto* series = new QLineSeries(chart);
    series->setName(name);
    for (const ChartPoint& p : points)
        series->append(p.t, p.rate);
    // Every curve and marker is a dashed black line.
    QPen pen(Qt::black);
    pen.setStyle(Qt::DashLine);
    pen.setWidthF(2);
    series->setPen(pen);
    chart->addSeries(series);
    if (!inLegend)
        for (QLegendMarker* marker : chart->legend()->markers(series))
            marker->setVisible(false);
    return series;
}

} // namespace

void FillRateChart(QChart* chart, const ChartData& data, bool drawn) {
    chart->removeAllSeries();
    for (QAbstractAxis* axis : chart->axes()) {
        chart->removeAxis(axis);
        delete axis; // a removed axis is the caller's to delete
    }
    chart->setBackgroundRoundness(0);
    chart->setMargins(QMargins(4, 4, 4, 4));
    chart->legend()->setVisible(drawn);
    chart->legend()->setAlignment(Qt::AlignBottom);

    auto* x = new QValueAxis(chart);
    x->setTitleText(QStringLiteral("Time (hr)"));
    x->setLabelFormat(QStringLiteral("%.2f"));
    auto* y = new QValueAxis(chart);
    y->setTitleText(QStringLiteral("Application & Intake Rate (in/hr)"));
    y->setLabelFormat(QStringLiteral("%g"));
    y->setMinorGridLineVisible(true);
    QFont titleFont = x->titleFont();
    titleFont.setPointSize(9);
    x->setTitleFont(titleFont);
    y->setTitleFont(titleFont);
    chart->addAxis(x, Qt::AlignBottom);
    chart->addAxis(y, Qt::AlignLeft);

    QList<QLineSeries*> series;
    double tEnd = 0;
    if (drawn) {
        series << AddSeries(chart, data.intake, QStringLiteral("Intake Rate"), true);
        series << AddSeries(chart, data.application, QStringLiteral("Application Rate"), true);
        series << AddSeries(chart, data.pondingMarker, QStringLiteral("Ponding"), false);
        if (!data.storageMarker.empty())
            series << AddSeries(chart, data.storageMarker, QStringLiteral("Storage Filled"), false);
        for (const ChartPoint& p : data.application)
            tEnd = std::max(tEnd, p.t);
    }
    for (QLineSeries* s : series) {
        s->attachAxis(x);
        s->attachAxis(y);
    }
    x->setRange(0, tEnd > 0 ? tEnd : 1);
    x->setTickCount(6);
    y->setRange(0, drawn && data.yMaximum > 0 ? data.yMaximum : 1);
    y->setTickCount((drawn && data.yDivisions > 0 ? data.yDivisions : 2) + 1);
    y->setMinorTickCount(std::max(0, data.yMinorDivisions - 1));
}

} // namespace rainfold::ui
