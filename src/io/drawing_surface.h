#pragma once
// A page that the report and the plot draw on: the printer, a PDF file, the preview window or a
// recording for tests. Every length is in twips (1,440 to the inch), the origin is the top left of
// the page and y grows downwards. The surface keeps a current position and a current font.

#include <memory>
#include <string>

namespace rainfold {

// What a picture really is belongs to the surface that paints it (an image on the Qt side); the
// drawing routines only hand it on and read its size.
class PictureData {
public:
    virtual ~PictureData() = default;
};

struct Picture {
    std::shared_ptr<const PictureData> data; // null: nothing to paint
    double width = 0;                        // twips
    double height = 0;                       // twips
};

struct SurfaceFont {
    std::string name;
    double size = 0; // points
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool operator==(const SurfaceFont& o) const {
        return name == o.name && size == o.size && bold == o.bold && italic == o.italic &&
               underline == o.underline;
    }
};

// How a write leaves the current position.
enum class LineEnd {
    Continued, // just right of the text, on the same line
    Finished,  // x = 0, one line height (of the current font) lower
};

class DrawingSurface {
public:
    virtual ~DrawingSurface() = default;

    virtual void SetFontName(const std::string& name) = 0;
    virtual void SetFontSize(double points) = 0;
    virtual void SetFontBold(bool on) = 0;
    virtual void SetFontItalic(bool on) = 0;
    virtual void SetFontUnderline(bool on) = 0;

    virtual double CurrentX() const = 0;
    virtual double CurrentY() const = 0;
    virtual void SetCurrentX(double x) = 0;
    virtual void SetCurrentY(double y) = 0;

    virtual double PageWidth() const = 0;
    // Width of a text in the current font.
    virtual double TextWidth(const std::string& text) const = 0;

    // Draws the text with its top left at the current position.
    virtual void Write(const std::string& text, LineEnd end) = 0;
    virtual void Line(double x1, double y1, double x2, double y2) = 0;
    // Paints the picture at its own size with its top left at (x, y); the position stays.
    virtual void PaintPicture(const Picture& picture, double x, double y) = 0;
};

} // namespace rainfold
