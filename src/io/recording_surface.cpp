#include "recording_surface.h"

namespace rainfold {

double RecordingSurface::WidthOf(const std::string& text, double points) {
    size_t characters = 0;
    for (const char ch : text) {
        // Continuation bytes of a UTF-8 sequence do not start a character.
        if ((static_cast<unsigned char>(ch) & 0xC0) != 0x80)
            ++characters;
    }
    return static_cast<double>(characters) * points * 10;
}

void RecordingSurface::Write(const std::string& text, LineEnd end) {
    SurfaceOp op;
    op.kind = SurfaceOp::Text;
    op.x = x_;
    op.y = y_;
    op.text = text;
    op.end = end;
    op.font = font_;
    ops_.push_back(op);
    if (end == LineEnd::Finished) {
        x_ = 0;
        y_ += LineHeight(font_.size);
    } else {
        x_ += WidthOf(text, font_.size);
    }
}

void RecordingSurface::Line(double x1, double y1, double x2, double y2) {
    SurfaceOp op;
    op.kind = SurfaceOp::Line;
    op.x = x1;
    op.y = y1;
    op.x2 = x2;
    op.y2 = y2;
    op.font = font_;
    ops_.push_back(op);
}

void RecordingSurface::PaintPicture(const rainfold::Picture& picture, double x, double y) {
    SurfaceOp op;
    op.kind = SurfaceOp::Picture;
    op.x = x;
    op.y = y;
    op.picture = picture;
    op.font = font_;
    ops_.push_back(op);
}

} // namespace rainfold
