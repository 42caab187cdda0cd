#include "ExplorerMapWidget.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

using namespace rainfold;

ExplorerMapWidget::ExplorerMapWidget(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("mapView"));
    setMouseTracking(true);
    setMinimumSize(560, 420);
    setCursor(Qt::CrossCursor);
}

void ExplorerMapWidget::setView(const render::ExplorerMapView& view) {
    view_ = view;
    update();
}

QPointF ExplorerMapWidget::pixelOf(double diameterFt, double y) const {
    return render::ExplorerPointOf(render::ExplorerPlotRect(QRectF(rect())), view_.axis, diameterFt,
                                   y);
}

void ExplorerMapWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    render::PaintExplorerMap(painter, QRectF(rect()), view_);
}

void ExplorerMapWidget::mouseMoveEvent(QMouseEvent* event) {
    const auto value = render::ExplorerValueAt(render::ExplorerPlotRect(QRectF(rect())), view_.axis,
                                               event->position());
    if (value)
        emit pointHovered(*value);
    else
        emit hoverLeft();
}

void ExplorerMapWidget::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    if (const auto value = render::ExplorerValueAt(render::ExplorerPlotRect(QRectF(rect())),
                                                   view_.axis, event->position()))
        emit pointClicked(*value);
}

void ExplorerMapWidget::leaveEvent(QEvent*) {
    emit hoverLeft();
}

bool ExplorerMapWidget::event(QEvent* event) {
    // The package bands name their package in full in a tool tip.
    if (event->type() == QEvent::ToolTip) {
        auto* help = static_cast<QHelpEvent*>(event);
        const QString names = render::ExplorerBandAt(QRectF(rect()), help->pos());
        if (names.isEmpty())
            QToolTip::hideText();
        else
            QToolTip::showText(help->globalPos(), names, this);
        return true;
    }
    return QWidget::event(event);
}
