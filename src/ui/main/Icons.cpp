#include "Icons.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QStyle>

namespace rainfold::ui {

namespace {

QPixmap Canvas(int size) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    return pixmap;
}

// A printer: paper fed in at the top, the body, the printed sheet in front.
QIcon DrawnPrinter() {
    QPixmap pixmap = Canvas(32);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(QColor(60, 60, 60), 1.5));
    p.setBrush(Qt::white);
    p.drawRect(QRectF(9, 3, 14, 10));
    p.setBrush(QColor(170, 170, 170));
    p.drawRoundedRect(QRectF(3, 12, 26, 12), 2, 2);
    p.setBrush(Qt::white);
    p.drawRect(QRectF(8, 20, 16, 9));
    p.drawLine(QPointF(11, 24), QPointF(21, 24));
    return QIcon(pixmap);
}

// A small line chart: two curves over a pair of axes.
QIcon DrawnChart() {
    QPixmap pixmap = Canvas(32);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(QColor(40, 40, 40), 1.5));
    p.drawLine(QPointF(4, 3), QPointF(4, 28));
    p.drawLine(QPointF(4, 28), QPointF(29, 28));
    QPainterPath bell;
    bell.moveTo(5, 27);
    bell.cubicTo(10, 2, 18, 2, 27, 27);
    p.setPen(QPen(QColor(20, 90, 200), 2));
    p.drawPath(bell);
    QPainterPath falling;
    falling.moveTo(6, 5);
    falling.cubicTo(9, 20, 16, 22, 28, 23);
    p.setPen(QPen(QColor(200, 60, 30), 2, Qt::DashLine));
    p.drawPath(falling);
    return QIcon(pixmap);
}

} // namespace

QIcon ProgramIcon() {
    QPixmap pixmap = Canvas(64);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    // A field circle under a drop of water.
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(90, 150, 60));
    p.drawEllipse(QRectF(4, 30, 56, 30));
    QPainterPath drop;
    drop.moveTo(32, 4);
    drop.cubicTo(36, 16, 46, 24, 46, 34);
    drop.arcTo(QRectF(18, 20, 28, 28), 0, -180);
    drop.cubicTo(18, 24, 28, 16, 32, 4);
    p.setBrush(QColor(30, 110, 210));
    p.drawPath(drop);
    return QIcon(pixmap);
}

QIcon ToolbarIcon(const QString& imageKey) {
    QStyle* style = QApplication::style();
    if (imageKey == QLatin1String("New"))
        return QIcon::fromTheme(QStringLiteral("document-new"),
                                style->standardIcon(QStyle::SP_FileIcon));
    if (imageKey == QLatin1String("Open"))
        return QIcon::fromTheme(QStringLiteral("document-open"),
                                style->standardIcon(QStyle::SP_DialogOpenButton));
    if (imageKey == QLatin1String("Save"))
        return QIcon::fromTheme(QStringLiteral("document-save"),
                                style->standardIcon(QStyle::SP_DialogSaveButton));
    if (imageKey == QLatin1String("Preview"))
        return QIcon::fromTheme(QStringLiteral("document-print-preview"),
                                style->standardIcon(QStyle::SP_FileDialogContentsView));
    if (imageKey == QLatin1String("Print"))
        return QIcon::fromTheme(QStringLiteral("document-print"), DrawnPrinter());
    if (imageKey == QLatin1String("Drawing"))
        return QIcon::fromTheme(QStringLiteral("office-chart-line"), DrawnChart());
    if (imageKey == QLatin1String("Help"))
        return QIcon::fromTheme(QStringLiteral("help-about"),
                                style->standardIcon(QStyle::SP_MessageBoxQuestion));
    return {};
}

} // namespace rainfold::ui
