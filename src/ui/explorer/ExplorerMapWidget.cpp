#include "ExplorerMapWidget.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

using namespace rainfold;

ExplorerMapWidget::ExplorerMapWidget(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("mapView"));
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    // The picture is drawn in pixels: the least size that keeps its key, strip and labels apart.
    setMinimumSize(560, 420);
    setCursor(Qt::CrossCursor);
}

void ExplorerMapWidget::setView(const render::ExplorerMapView& view) {
    view_ = view;
    update();
}

QRectF ExplorerMapWidget::plot() const {
    return render::ExplorerPlotRect(QRectF(rect()), view_);
}

QPointF ExplorerMapWidget::pixelOf(double diameterFt, double y) const {
    return render::ExplorerPointOf(plot(), view_.axis, diameterFt, y);
}

void ExplorerMapWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    render::PaintExplorerMap(painter, QRectF(rect()), view_);
    if (hasFocus()) { // where the arrow keys act
        painter.setPen(QPen(palette().highlight().color(), 2, Qt::DashLine));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(plot().adjusted(-3, -3, 3, 3));
    }
}

void ExplorerMapWidget::mouseMoveEvent(QMouseEvent* event) {
    const auto value = render::ExplorerValueAt(plot(), view_.axis, event->position());
    if (value)
        emit pointHovered(*value);
    else
        emit hoverLeft();
}

void ExplorerMapWidget::mousePressEvent(QMouseEvent* event) {
    setFocus(Qt::MouseFocusReason);
    if (event->button() != Qt::LeftButton)
        return;
    if (const auto value = render::ExplorerValueAt(plot(), view_.axis, event->position()))
        emit pointClicked(*value);
}

void ExplorerMapWidget::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Left:
        emit stepRequested(-1, 0);
        break;
    case Qt::Key_Right:
        emit stepRequested(1, 0);
        break;
    case Qt::Key_Up:
        emit stepRequested(0, 1);
        break;
    case Qt::Key_Down:
        emit stepRequested(0, -1);
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        emit enterPressed();
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

void ExplorerMapWidget::leaveEvent(QEvent*) {
    emit hoverLeft();
}

void ExplorerMapWidget::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    update();
}

void ExplorerMapWidget::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    update();
}

bool ExplorerMapWidget::event(QEvent* event) {
    // The package bands name their package in full in a tool tip.
    if (event->type() == QEvent::ToolTip) {
        auto* help = static_cast<QHelpEvent*>(event);
        const QString names = render::ExplorerBandAt(QRectF(rect()), view_, help->pos());
        if (names.isEmpty())
            QToolTip::hideText();
        else
            QToolTip::showText(help->globalPos(), names, this);
        return true;
    }
    return QWidget::event(event);
}
