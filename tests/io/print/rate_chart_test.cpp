// The rate chart as drawn, at the sizes it is shown and printed: every axis label reads in
// full, no two time labels read the same, and each curve is named beside itself where it shows.

#include "chart_data.h"
#include "rate_chart_content.h"

#include <QChart>
#include <QGraphicsScene>
#include <QGraphicsSimpleTextItem>
#include <QGraphicsTextItem>
#include <QValueAxis>

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <set>

namespace rainfold::ui {
namespace {

// A pass of 2T hours peaking at `peak` in/hr, against an intake rate of k t^-0.5 in/hr.
ChartData Pass(double peak, double T, double k) {
    ChartData d;
    for (int i = 0; i <= 100; ++i) {
        const double t = i * 2 * T / 100;
        d.application.push_back({t, peak * std::sqrt(std::fmax(0, 2 * T * t - t * t)) / T});
        d.intake.push_back({t, i == 0 ? 39.3701 : k / std::sqrt(t)});
    }
    d.pondingMarker = {{T / 2, 0}, {T / 2, peak * 0.866}};
    ChartScale(peak * 25.4, d.yMaximum, d.yDivisions);
    return d;
}

struct Drawn {
    QRectF plot;
    QStringList texts;                  // every text the chart shows
    QStringList timeLabels, rateLabels; // the axis labels, left to right, bottom to top
    std::map<QString, QRectF> names;    // curve names shown, where
};

Drawn Draw(const ChartData& data, QSizeF size) {
    QGraphicsScene scene;
    auto* chart = new QChart;
    scene.addItem(chart);
    FillRateChart(chart, data, true);
    LayOutRateChart(chart, size);
    Drawn out;
    out.plot = chart->plotArea();
    std::map<double, QString> times, rates;
    for (QGraphicsItem* item : scene.items()) {
        if (!item->isVisible())
            continue;
        const QRectF at = item->sceneBoundingRect();
        if (auto* text = dynamic_cast<QGraphicsTextItem*>(item)) {
            const QString s = text->toPlainText();
            if (s.isEmpty())
                continue; // an axis without a title
            out.texts << s;
            if (at.top() >= out.plot.bottom() && !s.contains('('))
                times[at.center().x()] = s;
            else if (at.right() <= out.plot.left() && !s.contains('('))
                rates[-at.center().y()] = s;
        } else if (auto* simple = dynamic_cast<QGraphicsSimpleTextItem*>(item)) {
            out.texts << simple->text();
            out.names[simple->text()] = at;
        }
    }
    for (const auto& [x, s] : times)
        out.timeLabels << s;
    for (const auto& [y, s] : rates)
        out.rateLabels << s;
    return out;
}

TEST(RateChart, LabelsReadInFullAtEverySizeTheChartIsShownAndPrinted) {
    const struct {
        double peak, T, k; // in/hr, h, in/hr at 1 h
        bool intakeShows;
    } passes[] = {
        {2, 0.17, 0.5, true},      // 3 in/hr, 6 divisions
        {8.4, 0.075, 0.6, true},   // 9 in/hr, 18 divisions
        {9.3, 0.075, 0.6, true},   // 10 in/hr, 20 divisions
        {45, 0.0036, 0.6, true},   // 48 in/hr, 12 divisions, a pass of 0.0072 h
        {176, 0.00115, 0.6, true}, // 180 in/hr, 18 divisions, a pass of 0.0023 h
        {2.9, 1.6, 40, false},     // an intake wholly above the scale, a pass of 3.2 h
    };
    // The chart's smallest size on the results page, its size in the window at the window's
    // default size, and the printed plot's picture (6,800 by 5,100 twips at 96 dpi).
    const QSizeF sizes[] = {{360, 300}, {370, 480}, {453.3, 340}};
    for (const auto& p : passes)
        for (const QSizeF& size : sizes) {
            SCOPED_TRACE(testing::Message() << "peak " << p.peak << " in/hr, pass " << 2 * p.T
                                            << " h, " << size.width() << " x " << size.height());
            const ChartData data = Pass(p.peak, p.T, p.k);
            const Drawn d = Draw(data, size);
            for (const QString& s : d.texts)
                EXPECT_FALSE(s.contains(QChar(0x2026))) << s.toStdString();

            // Labels from 0 up, on the scale's steps, thinned if need be but at least three.
            ASSERT_GE(d.rateLabels.size(), 3);
            EXPECT_EQ(d.rateLabels.front(), "0");
            const double step = data.yMaximum / data.yDivisions;
            for (const QString& s : d.rateLabels) {
                const double divisions = s.toDouble() / step;
                EXPECT_NEAR(divisions, std::round(divisions), 1e-9) << s.toStdString();
            }

            ASSERT_GE(d.timeLabels.size(), 3);
            EXPECT_EQ(std::set<QString>(d.timeLabels.begin(), d.timeLabels.end()).size(),
                      size_t(d.timeLabels.size()))
                << d.timeLabels.join(' ').toStdString();
            EXPECT_NEAR(d.timeLabels.back().toDouble(), 2 * p.T, 2 * p.T / 50);

            EXPECT_EQ(d.names.count("Application Rate"), 1u);
            EXPECT_EQ(d.names.count("Intake Rate"), p.intakeShows ? 1u : 0u);
            for (const auto& [name, box] : d.names)
                EXPECT_TRUE(d.plot.contains(box)) << name.toStdString();
        }
}

} // namespace
} // namespace rainfold::ui
