#pragma once
// A drawing surface that draws nothing and remembers every write, line and picture together with
// the font in force and the position, so that a page can be checked item by item.
//
// Its measures are simple and exact, so that positions can be worked out by hand:
//   text width  = number of characters (UTF-8 code points) x font size x 10 twips
//                 (every character half an em wide, whatever the font, bold or italic);
//   line height = font size x 24 twips (1.2 em).

#include "drawing_surface.h"

#include <string>
#include <vector>

namespace rainfold {

struct SurfaceOp {
    enum Kind { Text, Line, Picture };
    Kind kind = Text;
    double x = 0, y = 0; // the current position before a write; a line's start; a picture's corner
    double x2 = 0, y2 = 0;            // a line's end
    std::string text;                 // Text
    LineEnd end = LineEnd::Continued; // Text
    SurfaceFont font;                 // the font in force
    rainfold::Picture picture;        // Picture
};

class RecordingSurface : public DrawingSurface {
public:
    explicit RecordingSurface(double pageWidth = 12240) : pageWidth_(pageWidth) {}

    static double WidthOf(const std::string& text, double points);
    static double LineHeight(double points) { return points * 24; }

    void SetFontName(const std::string& name) override { font_.name = name; }
    void SetFontSize(double points) override { font_.size = points; }
    void SetFontBold(bool on) override { font_.bold = on; }
    void SetFontItalic(bool on) override { font_.italic = on; }
    void SetFontUnderline(bool on) override { font_.underline = on; }

    double CurrentX() const override { return x_; }
    double CurrentY() const override { return y_; }
    void SetCurrentX(double x) override { x_ = x; }
    void SetCurrentY(double y) override { y_ = y; }

    double PageWidth() const override { return pageWidth_; }
    double TextWidth(const std::string& text) const override { return WidthOf(text, font_.size); }

    void Write(const std::string& text, LineEnd end) override;
    void Line(double x1, double y1, double x2, double y2) override;
    void PaintPicture(const rainfold::Picture& picture, double x, double y) override;

    const std::vector<SurfaceOp>& ops() const { return ops_; }
    const SurfaceFont& font() const { return font_; }

private:
    double pageWidth_;
    double x_ = 0, y_ = 0;
    SurfaceFont font_;
    std::vector<SurfaceOp> ops_;
};

} // namespace rainfold
