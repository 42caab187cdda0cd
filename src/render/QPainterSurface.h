#pragma once
// The drawing surface over a QPainter: a printer, a PDF file or the preview window's pixmap.
// Twips become device pixels at the device's own resolution, so a page looks the same on each.

#include "drawing_surface.h"

#include <QFont>
#include <QImage>

class QPainter;

namespace rainfold::render {

// The picture the Qt side paints: an image shown at the picture's size in twips.
class ImagePicture : public PictureData {
public:
    explicit ImagePicture(QImage image) : image_(std::move(image)) {}
    const QImage& image() const { return image_; }

private:
    QImage image_;
};

// Wraps an image as a picture of the given size in twips.
Picture MakePicture(const QImage& image, double widthTwips, double heightTwips);

class QPainterSurface : public DrawingSurface {
public:
    // `pageWidth` in twips; the painter must be active on its device for the surface's life.
    QPainterSurface(QPainter& painter, double pageWidth);

    void SetFontName(const std::string& name) override;
    void SetFontSize(double points) override;
    void SetFontBold(bool on) override;
    void SetFontItalic(bool on) override;
    void SetFontUnderline(bool on) override;

    double CurrentX() const override { return x_; }
    double CurrentY() const override { return y_; }
    void SetCurrentX(double x) override { x_ = x; }
    void SetCurrentY(double y) override { y_ = y; }

    double PageWidth() const override { return pageWidth_; }
    double TextWidth(const std::string& text) const override;

    void Write(const std::string& text, LineEnd end) override;
    void Line(double x1, double y1, double x2, double y2) override;
    void PaintPicture(const Picture& picture, double x, double y) override;

    // Twips to device pixels, across and down.
    double ToPixelsX(double twips) const { return twips * dpiX_ / 1440; }
    double ToPixelsY(double twips) const { return twips * dpiY_ / 1440; }

private:
    QPainter& painter_;
    double pageWidth_;
    double dpiX_;
    double dpiY_;
    QFont font_;
    double x_ = 0;
    double y_ = 0;
};

} // namespace rainfold::render
