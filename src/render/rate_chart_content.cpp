#include "rate_chart_content.h"

#include "curve_labels.h"
#include "format.h"

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

namespace rainfold::render {

namespace {

constexpr int kTimeSteps = 5;              // time ticks at 0, 1/5, ... of the pass
constexpr double kLabelPadding = 5;        // the chart's space above and below an axis label
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

// Fewest decimals with which every time label lies within a tenth of a step of its tick, so no
// two labels read the same however short the pass.
int TimeDecimals(double tEnd, int steps) {
    const double step = tEnd / steps;
    for (int decimals = 0; decimals < 8; ++decimals) {
        const double unit = std::pow(10.0, -decimals);
        bool close = true;
        for (int i = 0; i <= steps && close; ++i)
            close = std::fabs(std::round(i * step / unit) * unit - i * step) <= step / 10;
        if (close)
            return decimals;
    }
    return 8;
}

// Labels every `every` divisions of the rate scale: the smallest of 1, 2, 4, 5, 10, 20, 25, 50,
// ... divisions at which a label has the room of a line of text. The grid keeps every division.
int RateLabelEvery(int divisions, double plotHeight, double lineHeight) {
    for (int base = 1;; base *= 10)
        for (int k : {1, 2, 4, 5}) {
            const int every = k * base;
            if (k == 4 && base > 1)
                continue; // 40, 400: 50 reads better
            const int labels = divisions / every + 1;
            if (every >= divisions || plotHeight / labels - 2 * kLabelPadding >= lineHeight)
                return every;
        }
}

int TimeTicks(double plotWidth, double widestLabel) {
    int steps = kTimeSteps;
    while (steps > 1 && plotWidth / (steps + 1) - 2 * kLabelPadding < widestLabel)
        --steps;
    return steps;
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
        const int divisions = drawn_ && data_.yDivisions > 0 ? data_.yDivisions : 2;
        const double maximum = drawn_ && data_.yMaximum > 0 ? data_.yMaximum : 1;
        const int every = RateLabelEvery(divisions, plot.height(), metrics.height());
        const double interval = maximum / divisions * every;
        if (rateLabels_->tickInterval() != interval)
            rateLabels_->setTickInterval(interval);

        const double tEnd = time_->max();
        QString widest;
        for (int steps = kTimeSteps; steps >= 1; --steps) {
            widest = QString::fromStdString(FixedText(tEnd, TimeDecimals(tEnd, steps)));
            if (TimeTicks(plot.width(), metrics.horizontalAdvance(widest)) >= steps) {
                if (time_->tickCount() != steps + 1)
                    time_->setTickCount(steps + 1);
                const QString format = QStringLiteral("%.%1f").arg(TimeDecimals(tEnd, steps));
                if (time_->labelFormat() != format)
                    time_->setLabelFormat(format);
                break;
            }
        }
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
        const LabelBox area{plot.left(), plot.top(), plot.right(), plot.bottom()};
        std::vector<LabelBox> taken;
        for (size_t i = 0; i < names_.size(); ++i) {
            const QRectF size = names_[i]->rect();
            // The application rate is named near its peak, the intake rate late in the pass,
            // where it has drawn away from the steep start.
            const LabelPlace place =
                PlaceCurveLabel(curves, i, size.width(), size.height(), area, taken,
                                i == 1 ? LabelPreference::Middle : LabelPreference::Late);
            names_[i]->setVisible(place.visible);
            if (place.visible) {
                names_[i]->setPos(place.box.left, place.box.top);
                taken.push_back(place.box);
            }
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

    const double maximum = drawn && data.yMaximum > 0 ? data.yMaximum : 1;
    const int divisions = drawn && data.yDivisions > 0 ? data.yDivisions : 2;

    auto* x = new QValueAxis(chart);
    x->setTitleText(QStringLiteral("Time (hr)"));
    // The rate scale in two parts: the grid at every division with its five minor steps, and
    // the labels, as many as have room, on the left.
    auto* grid = new QValueAxis(chart);
    grid->setRange(0, maximum);
    grid->setTickCount(divisions + 1);
    grid->setMinorTickCount(std::max(0, data.yMinorDivisions - 1));
    grid->setMinorGridLineVisible(true);
    grid->setLabelsVisible(false);
    grid->setLineVisible(false);
    auto* y = new QValueAxis(chart);
    y->setTitleText(QStringLiteral("Application & Intake Rate (in/hr)"));
    y->setLabelFormat(QStringLiteral("%g"));
    y->setTickType(QValueAxis::TicksDynamic);
    y->setTickAnchor(0);
    y->setTickInterval(maximum / divisions);
    y->setGridLineVisible(false);
    y->setMinorGridLineVisible(false);
    QFont titleFont = x->titleFont();
    titleFont.setPointSize(9);
    x->setTitleFont(titleFont);
    y->setTitleFont(titleFont);
    chart->addAxis(x, Qt::AlignBottom);
    chart->addAxis(grid, Qt::AlignRight);
    chart->addAxis(y, Qt::AlignLeft);

    std::array<QLineSeries*, 2> curves{};
    double tEnd = 0;
    if (drawn) {
        curves[0] = AddSeries(chart, data.intake, QStringLiteral("Intake Rate"));
        curves[1] = AddSeries(chart, data.application, QStringLiteral("Application Rate"));
        AddSeries(chart, data.pondingMarker, QStringLiteral("Ponding"));
        if (!data.storageMarker.empty())
            AddSeries(chart, data.storageMarker, QStringLiteral("Storage Filled"));
        for (const ChartPoint& p : data.application)
            tEnd = std::max(tEnd, p.t);
    }
    for (QAbstractSeries* s : chart->series()) {
        s->attachAxis(x);
        s->attachAxis(y);
    }
    x->setRange(0, tEnd > 0 ? tEnd : 1);
    x->setTickCount(kTimeSteps + 1);
    x->setLabelFormat(QStringLiteral("%.%1f").arg(TimeDecimals(tEnd > 0 ? tEnd : 1, kTimeSteps)));
    y->setRange(0, maximum);
    new ChartLayout(chart, data, drawn, x, y, curves);
}

void LayOutRateChart(QChart* chart, const QSizeF& size) {
    chart->setGeometry(QRectF(QPointF(0, 0), size));
    for (int pass = 0; pass < 3; ++pass) {
        QCoreApplication::sendPostedEvents();
        chart->layout()->activate();
    }
}

} // namespace rainfold::render
