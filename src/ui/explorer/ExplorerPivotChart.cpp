#include "ExplorerPivotChart.h"

#include "format.h"

#include <QChart>
#include <QLegendMarker>
#include <QLineSeries>
#include <QScatterSeries>
#include <QValueAxis>

#include <algorithm>
#include <cmath>

using namespace rainfold;

namespace {

// From 0 to `top`, marked every 1, 2 or 5 times a power of ten, about `marks` times.
void SetScale(QValueAxis* axis, double top, int marks, bool roundUp) {
    const double rough = top / marks;
    const double power = std::pow(10, std::floor(std::log10(rough)));
    double step = power;
    for (double m : {1.0, 2.0, 5.0, 10.0})
        if (m * power >= rough) {
            step = m * power;
            break;
        }
    axis->setRange(0, roundUp ? std::ceil(top / step) * step : top);
    axis->setTickType(QValueAxis::TicksDynamic);
    axis->setTickAnchor(0);
    axis->setTickInterval(step);
    axis->setLabelFormat(step >= 1 ? QStringLiteral("%.0f") : QStringLiteral("%.1f"));
}

} // namespace

ExplorerPivotChart::ExplorerPivotChart(QWidget* parent) : QChartView(parent) {
    setObjectName(QStringLiteral("chtPivot"));
    setRenderHint(QPainter::Antialiasing);
    // Nothing to do with the keyboard here: Tab passes it by.
    setFocusPolicy(Qt::NoFocus);
    viewport()->setFocusPolicy(Qt::NoFocus);
    chart()->legend()->setAlignment(Qt::AlignBottom);
    chart()->setMargins(QMargins(4, 4, 4, 4));
}

void ExplorerPivotChart::setProfile(const PivotProfile& profile, const QString& caption) {
    QChart* c = chart();
    c->removeAllSeries();
    // The chart gives an axis it removes back to its caller.
    for (QAbstractAxis* axis : c->axes()) {
        c->removeAxis(axis);
        delete axis;
    }
    QFont titleFont = font();
    titleFont.setBold(true);
    c->setTitleFont(titleFont);
    if (!profile.ok) {
        c->setTitle(caption + QStringLiteral("<br>") +
                    QString::fromStdString(profile.message).toHtmlEscaped());
        return;
    }
    c->setTitle(caption);

    auto* x = new QValueAxis;
    x->setTitleText(QStringLiteral("Distance from the pivot (ft)"));
    SetScale(x, profile.distanceFt.back(), 5, false);
    auto* y = new QValueAxis;
    double top = 0;
    for (const auto& row : profile.runoff)
        top = std::max(top, *std::max_element(row.begin(), row.end()));
    SetScale(y, std::max(top, 1.0), 5, true);
    c->addAxis(x, Qt::AlignBottom);
    c->addAxis(y, Qt::AlignLeft);

    const QColor colours[] = {QColor(0x2c, 0x7b, 0xb6), Qt::black, QColor(0xd7, 0x19, 0x1c)};
    for (size_t k = 0; k < 3; ++k) {
        auto* line = new QLineSeries;
        line->setName(QString::fromStdString(FormatFixed(profile.flowGpm[k], 0)) +
                      QStringLiteral(" gpm"));
        line->setPen(QPen(colours[k], k == 1 ? 2.4 : 1.6));
        auto* points = new QScatterSeries;
        points->setMarkerSize(6);
        points->setColor(colours[k]);
        points->setBorderColor(colours[k]);
        for (size_t i = 0; i < 10; ++i) {
            line->append(profile.distanceFt[i], profile.runoff[k][i]);
            points->append(profile.distanceFt[i], profile.runoff[k][i]);
        }
        for (QAbstractSeries* series :
             {static_cast<QAbstractSeries*>(line), static_cast<QAbstractSeries*>(points)}) {
            c->addSeries(series);
            series->attachAxis(x);
            series->attachAxis(y);
        }
        c->legend()->markers(points).first()->setVisible(false);
    }
}
