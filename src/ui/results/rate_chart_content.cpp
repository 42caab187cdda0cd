#include "rate_chart_content.h"

#include "rate_chart_rules.h"

#include <QChart>
#include <QCoreApplication>
#include <QFontMetricsF>
#include <QGraphicsLayout>
#include <QGraphicsRectItem>
#include <QGraphicsSimpleTextItem>
#include <QLineSeries>
#include <QPen>
#include <QValueAxis>

#include <algorithm>
#include <array>
#include <cmath>

namespace rainfold::ui {

using namespace rainfold::render;

namespace {

constexpr int kCurveLabelTag = 0x52464c42; // marks the curve names among the chart's items
const QString kCurveLabel = QStringLiteral("curveLabel");
constexpr double kCurveLabelZ = 100; // above the series
const QString kLayoutName = QStringLiteral("rateChartLayout");

QLineSeries* AddSeries(QChart* chart, const std::vector<ChartPoint>& points, const QString& name) {
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
    return series;
}

QString LabelFormat(int decimals) {
    return QStringLiteral("%.%1f").arg(decimals);
}

// Lays out what depends on the size of the plot area: how many rate and time labels fit, and
// where the curve names go.
class ChartLayout : public QObject {
public:
    ChartLayout(QChart* chart, const ChartData& data, bool drawn, QValueAxis* time,
                QValueAxis* rateLabels, const std::array<QLineSeries*, 2>& curves)
        : QObject(chart), chart_(chart), data_(data), drawn_(drawn), time_(time),
          rateLabels_(rateLabels), curves_(curves) {
        setObjectName(kLayoutName);
        for (QLineSeries* s : curves_) {
            if (!s)
                continue;
            // The name on a patch of white, over the grid and the curves.
            auto* patch = new QGraphicsRectItem(chart);
            patch->setData(kCurveLabelTag, kCurveLabel);
            patch->setBrush(Qt::white);
            patch->setPen(Qt::NoPen);
            patch->setZValue(kCurveLabelZ);
            patch->setVisible(false);
            auto* text = new QGraphicsSimpleTextItem(s->name(), patch);
            text->setFont(time->labelsFont());
            text->setBrush(Qt::black);
            patch->setRect(text->boundingRect());
            names_.push_back(patch);
        }
        connect(chart, &QChart::plotAreaChanged, this, &ChartLayout::update);
    }

    void update(const QRectF& plot) {
        if (plot.isEmpty())
            return;
        const QFontMetricsF metrics(time_->labelsFont());
        const RateScale scale = ChartRateScale(data_, drawn_);
        const int every = RateLabelEvery(scale.divisions, plot.height(), metrics.height());
        const double interval = scale.maximum / scale.divisions * every;
        if (rateLabels_->tickInterval() != interval)
            rateLabels_->setTickInterval(interval);

        const TimeScale time =
            FitTimeScale(time_->max(), plot.width(), [&](const std::string& text) {
                return metrics.horizontalAdvance(QString::fromStdString(text));
            });
        if (time_->tickCount() != time.steps + 1)
            time_->setTickCount(time.steps + 1);
        if (time_->labelFormat() != LabelFormat(time.decimals))
            time_->setLabelFormat(LabelFormat(time.decimals));
        placeNames(plot);
    }

private:
    void placeNames(const QRectF& plot) {
        if (names_.empty())
            return;
        std::vector<LabelCurve> curves;
        for (QAbstractSeries* s : chart_->series()) {
            auto* line = static_cast<QLineSeries*>(s);
            LabelCurve c;
            for (const QPointF& p : line->points()) {
                const QPointF at = chart_->mapToPosition(p, line);
                c.points.push_back({at.x(), at.y()});
            }
            curves.push_back(std::move(c));
        }
        std::vector<NameSize> sizes;
        for (const QGraphicsRectItem* name : names_)
            sizes.push_back({name->rect().width(), name->rect().height()});
        const std::vector<LabelPlace> places =
            PlaceCurveNames(curves, sizes, {plot.left(), plot.top(), plot.right(), plot.bottom()});
        for (size_t i = 0; i < names_.size(); ++i) {
            names_[i]->setVisible(places[i].visible);
            if (places[i].visible)
                names_[i]->setPos(places[i].box.left, places[i].box.top);
        }
    }

    QChart* chart_;
    ChartData data_;
    bool drawn_;
    QValueAxis* time_;
    QValueAxis* rateLabels_;
    std::array<QLineSeries*, 2> curves_;
    std::vector<QGraphicsRectItem*> names_;
};

} // namespace

void FillRateChart(QChart* chart, const ChartData& data, bool drawn) {
    chart->removeAllSeries();
    for (QAbstractAxis* axis : chart->axes()) {
        chart->removeAxis(axis);
        delete axis; // a removed axis is the caller's to delete
    }
    for (QGraphicsItem* item : chart->childItems())
        if (item->data(kCurveLabelTag).toString() == kCurveLabel)
            delete item;
    for (QObject* layout : chart->findChildren<QObject*>(kLayoutName, Qt::FindDirectChildrenOnly))
        delete layout;
    chart->setBackgroundRoundness(0);
    chart->setMargins(QMargins(4, 4, 4, 4));
    // Both curves share one pen; each is named beside itself instead of in a legend.
    chart->legend()->setVisible(false);

    const RateScale scale = ChartRateScale(data, drawn);

    auto* x = new QValueAxis(chart);
    x->setTitleText(QString::fromLatin1(kTimeTitle));
    // The rate scale in two parts: the grid at every division with its five minor steps, and
    // the labels, as many as have room, on the left.
    auto* grid = new QValueAxis(chart);
    grid->setRange(0, scale.maximum);
    grid->setTickCount(scale.divisions + 1);
    grid->setMinorTickCount(scale.minorSteps - 1);
    grid->setMinorGridLineVisible(true);
    grid->setLabelsVisible(false);
    grid->setLineVisible(false);
    auto* y = new QValueAxis(chart);
    y->setTitleText(QString::fromLatin1(kRateTitle));
    y->setLabelFormat(QStringLiteral("%g"));
    y->setTickType(QValueAxis::TicksDynamic);
    y->setTickAnchor(0);
    y->setTickInterval(scale.maximum / scale.divisions);
    y->setGridLineVisible(false);
    y->setMinorGridLineVisible(false);
    QFont titleFont = x->titleFont();
    titleFont.setPointSizeF(kTitlePoints);
    x->setTitleFont(titleFont);
    y->setTitleFont(titleFont);
    chart->addAxis(x, Qt::AlignBottom);
    chart->addAxis(grid, Qt::AlignRight);
    chart->addAxis(y, Qt::AlignLeft);

    std::array<QLineSeries*, 2> curves{};
    if (drawn) {
        curves[0] = AddSeries(chart, data.intake, QString::fromLatin1(kCurveNames[0]));
        curves[1] = AddSeries(chart, data.application, QString::fromLatin1(kCurveNames[1]));
        AddSeries(chart, data.pondingMarker, QStringLiteral("Ponding"));
        if (!data.storageMarker.empty())
            AddSeries(chart, data.storageMarker, QStringLiteral("Storage Filled"));
    }
    for (QAbstractSeries* s : chart->series()) {
        s->attachAxis(x);
        s->attachAxis(y);
    }
    const double tEnd = ChartTimeEnd(data, drawn);
    x->setRange(0, tEnd);
    x->setTickCount(kMostTimeSteps + 1);
    x->setLabelFormat(LabelFormat(TimeDecimals(tEnd, kMostTimeSteps)));
    y->setRange(0, scale.maximum);
    new ChartLayout(chart, data, drawn, x, y, curves);
}

void LayOutRateChart(QChart* chart, const QSizeF& size) {
    chart->setGeometry(QRectF(QPointF(0, 0), size));
    for (int pass = 0; pass < 3; ++pass) {
        QCoreApplication::sendPostedEvents();
        chart->layout()->activate();
    }
}

} // namespace rainfold::ui
