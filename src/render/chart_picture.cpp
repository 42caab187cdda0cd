#include "chart_picture.h"

#include "rate_chart_content.h"

#include <QChart>
#include <QGraphicsScene>
#include <QPainter>

namespace rainfold::render {

namespace {

constexpr double kScreenDpi = 96; // the chart is laid out as on screen ...
constexpr double kPixelRatio = 3; // ... and rendered three times finer for paper

} // namespace

Picture ChartPicture(const ChartData& data, bool drawn, double widthTwips, double heightTwips) {
    const QSizeF logical(widthTwips * kScreenDpi / 1440, heightTwips * kScreenDpi / 1440);

    QChart chart;
    FillRateChart(&chart, data, drawn);

    QGraphicsScene scene;
    scene.addItem(&chart);
    LayOutRateChart(&chart, logical);

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

} // namespace rainfold::render
