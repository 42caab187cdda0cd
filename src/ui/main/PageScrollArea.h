#pragma once
// A scroll area around a whole page: the page fills it and grows with it, and scrolls where the
// window is smaller than the page needs. Unlike a plain scroll area it asks for the page's own
// size, so that a window opens as large as its pages want when the screen has the room.

#include <QScrollArea>
#include <QScrollBar>

namespace rainfold::ui {

class PageScrollArea : public QScrollArea {
public:
    explicit PageScrollArea(QWidget* parent = nullptr) : QScrollArea(parent) {
        setFrameShape(QFrame::NoFrame);
        setWidgetResizable(true);
    }

    QSize sizeHint() const override {
        if (!widget())
            return QScrollArea::sizeHint();
        const int frame = 2 * frameWidth();
        return widget()->sizeHint() + QSize(frame, frame);
    }
};

} // namespace rainfold::ui
