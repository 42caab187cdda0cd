#include "RateChart.h"

#include "rate_chart_content.h"

#include <QApplication>
#include <QChart>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPainter>

RateChart::RateChart(QWidget* parent) : QChartView(new QChart, parent) {
    setObjectName(QStringLiteral("MSChart1"));
    setRenderHint(QPainter::Antialiasing);
    rainfold::ui::FillRateChart(chart(), rainfold::ChartData{}, false);
}

void RateChart::setData(const rainfold::ChartData& data) {
    // A fresh chart each time: axes taken off a live chart leave their labels behind.
    QChart* previous = chart();
    auto* next = new QChart;
    rainfold::ui::FillRateChart(next, data, true);
    setChart(next);
    delete previous;
    hasData_ = true;
    data_ = data;
}

QImage RateChart::picture(QSize size) {
    QImage image(size, QImage::Format_ARGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    render(&painter, QRectF(QPointF(0, 0), QSizeF(size)));
    return image;
}

void RateChart::copyToClipboard() {
    QApplication::clipboard()->setImage(picture(size()));
}

void RateChart::contextMenuEvent(QContextMenuEvent* event) {
    QMenu menu(this);
    menu.addAction(QStringLiteral("Copy Chart"), this, &RateChart::copyToClipboard);
    menu.exec(event->globalPos());
}
