#include "QPainterSurface.h"

#include <QFontMetricsF>
#include <QPaintDevice>
#include <QPainter>
#include <QPen>

#include <algorithm>

namespace rainfold::render {

namespace {

constexpr double kRuleWidth = 10; // twips: a hairline that still shows on paper

QString ToQString(const std::string& text) {
    return QString::fromStdString(text);
}

} // namespace

Picture MakePicture(const QImage& image, double widthTwips, double heightTwips) {
    Picture picture;
    if (!image.isNull())
        picture.data = std::make_shared<ImagePicture>(image);
    picture.width = widthTwips;
    picture.height = heightTwips;
    return picture;
}

QPainterSurface::QPainterSurface(QPainter& painter, double pageWidth)
    : painter_(painter), pageWidth_(pageWidth), dpiX_(painter.device()->logicalDpiX()),
      dpiY_(painter.device()->logicalDpiY()) {
    // Letters one by one, as a printer's font prints them: no ligatures, which would also turn
    // "fi" into one character for anyone copying text out of a PDF.
    font_.setStyleStrategy(QFont::PreferNoShaping);
}

void QPainterSurface::SetFontName(const std::string& name) {
    font_.setFamily(ToQString(name));
}

void QPainterSurface::SetFontSize(double points) {
    font_.setPointSizeF(points);
}

void QPainterSurface::SetFontBold(bool on) {
    font_.setBold(on);
}

void QPainterSurface::SetFontItalic(bool on) {
    font_.setItalic(on);
}

void QPainterSurface::SetFontUnderline(bool on) {
    font_.setUnderline(on);
}

double QPainterSurface::TextWidth(const std::string& text) const {
    const QFontMetricsF metrics(font_, painter_.device());
    return metrics.horizontalAdvance(ToQString(text)) * 1440 / dpiX_;
}

void QPainterSurface::Write(const std::string& text, LineEnd end) {
    const QFontMetricsF metrics(font_, painter_.device());
    const QString q = ToQString(text);
    if (!q.isEmpty()) {
        painter_.setFont(font_);
        painter_.setPen(Qt::black);
        painter_.drawText(QPointF(ToPixelsX(x_), ToPixelsY(y_) + metrics.ascent()), q);
    }
    if (end == LineEnd::Finished) {
        x_ = 0;
        y_ += metrics.height() * 1440 / dpiY_;
    } else {
        x_ += metrics.horizontalAdvance(q) * 1440 / dpiX_;
    }
}

void QPainterSurface::Line(double x1, double y1, double x2, double y2) {
    QPen pen(Qt::black);
    pen.setWidthF(std::max(1.0, ToPixelsY(kRuleWidth)));
    painter_.setPen(pen);
    painter_.drawLine(QPointF(ToPixelsX(x1), ToPixelsY(y1)), QPointF(ToPixelsX(x2), ToPixelsY(y2)));
}

void QPainterSurface::PaintPicture(const Picture& picture, double x, double y) {
    const auto* image = dynamic_cast<const ImagePicture*>(picture.data.get());
    if (!image || image->image().isNull())
        return;
    const QRectF target(ToPixelsX(x), ToPixelsY(y), ToPixelsX(picture.width),
                        ToPixelsY(picture.height));
    painter_.save();
    painter_.setRenderHint(QPainter::SmoothPixmapTransform);
    painter_.drawImage(target, image->image());
    painter_.restore();
}

} // namespace rainfold::render
