#pragma once
// The explorer's map on screen: the shared picture, with the point under the pointer reported as
// it moves, the point clicked reported for selection, and the keyboard's arrows and Enter.

#include "ExplorerMapPicture.h"

#include <QPointF>
#include <QWidget>

class ExplorerMapWidget : public QWidget {
    Q_OBJECT

public:
    explicit ExplorerMapWidget(QWidget* parent = nullptr);

    // What to draw; the map the view points at must outlive the next setView.
    void setView(const rainfold::render::ExplorerMapView& view);
    const rainfold::render::ExplorerMapView& view() const { return view_; }

    // Where (diameter ft, y in) lies on the widget, and the reverse.
    QPointF pixelOf(double diameterFt, double y) const;

signals:
    void pointHovered(QPointF value); // wetted diameter ft, y in
    void hoverLeft();
    void pointClicked(QPointF value);
    void stepRequested(int columns, int rows); // an arrow key: one grid step
    void enterPressed();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool event(QEvent* event) override;

private:
    QRectF plot() const;

    rainfold::render::ExplorerMapView view_;
};
