#include "frmPreview.h"

#include "QPainterSurface.h"

#include <QAction>
#include <QGuiApplication>
#include <QMenuBar>
#include <QPaintEvent>
#include <QPainter>
#include <QPrintDialog>
#include <QScreen>
#include <QScrollArea>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace rainfold::ui {

// The window's drawing area: keeps what was drawn and shows it again whenever uncovered.
class PreviewCanvas : public QWidget {
public:
    explicit PreviewCanvas(QWidget* parent) : QWidget(parent) {
        setObjectName(QStringLiteral("picPreview"));
        setAttribute(Qt::WA_OpaquePaintEvent);
    }

    void Reset(const QSize& size) {
        picture_ = QPixmap(size);
        picture_.fill(Qt::white);
        setFixedSize(size);
        update();
    }
    QPixmap& picture() { return picture_; }

protected:
    void paintEvent(QPaintEvent* event) override {
        QPainter painter(this);
        painter.fillRect(event->rect(), Qt::white);
        painter.drawPixmap(0, 0, picture_);
    }

private:
    QPixmap picture_;
};

} // namespace rainfold::ui

using rainfold::render::QPainterSurface;
using rainfold::ui::PreviewCanvas;

namespace {

bool ShowPrintDialog(QPrinter& printer, QWidget* parent) {
    QPrintDialog dialog(&printer, parent);
    return dialog.exec() == QDialog::Accepted;
}

} // namespace

frmPreview::frmPreview(QWidget* parent) : QDialog(parent), chooser_(ShowPrintDialog) {
    setObjectName(QStringLiteral("frmPreview"));
    setAttribute(Qt::WA_DeleteOnClose, false);
    setModal(true);

    menu_ = new QMenuBar(this);
    QAction* print = menu_->addAction(QStringLiteral("Print"));
    print->setObjectName(QStringLiteral("MnuPrint"));
    QAction* exit = menu_->addAction(QStringLiteral("Exit"));
    exit->setObjectName(QStringLiteral("mnuExit"));
    connect(print, &QAction::triggered, this, &frmPreview::MnuPrint_Click);
    connect(exit, &QAction::triggered, this, &frmPreview::mnuExit_Click);

    // The page scrolls where the window is smaller than the page.
    auto* scroll = new QScrollArea(this);
    scroll->setObjectName(QStringLiteral("scrPreview"));
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setBackgroundRole(QPalette::Dark);
    canvas_ = new PreviewCanvas(scroll);
    scroll->setWidget(canvas_);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->setMenuBar(menu_);
    layout->addWidget(scroll);
}

int frmPreview::TwipsToPixelsX(double twips) const {
    return static_cast<int>(std::lround(twips * logicalDpiX() / 1440));
}

int frmPreview::TwipsToPixelsY(double twips) const {
    return static_cast<int>(std::lround(twips * logicalDpiY() / 1440));
}

const QPixmap& frmPreview::picture() const {
    return canvas_->picture();
}

QPixmap frmPreview::PrintedPicture() const {
    const QRect printed(0, 0, TwipsToPixelsX(kPrintWidth), TwipsToPixelsY(kPrintHeight));
    return canvas_->picture().copy(printed.intersected(canvas_->picture().rect()));
}

void frmPreview::Open(QWidget* mainWindow, const QString& caption, const Drawing& draw) {
    const int width = TwipsToPixelsX(kPreviewWidth);
    resize(width, TwipsToPixelsY(kPreviewHeight));

    // A fresh, white page of its own for every preview.
    canvas_->Reset(QSize(width, TwipsToPixelsY(kPreviewHeight)));

    // Top of the screen, centred across the main window.
    QPoint place(0, 0);
    if (mainWindow) {
        const QRect main = mainWindow->frameGeometry();
        place.setX(main.x() + static_cast<int>(std::lround((main.width() - width) / 2.0)));
        if (const QScreen* screen = mainWindow->screen())
            place.setY(screen->availableGeometry().top());
    }
    move(place);

    setWindowTitle(caption);

    QPainter painter(&canvas_->picture());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    QPainterSurface surface(painter, kPreviewWidth);
    draw(surface);
    painter.end();
    canvas_->update();
}

void frmPreview::fitToScreen() {
    const QScreen* screen = this->screen();
    if (!screen)
        return;
    // Room for the title bar and the frame that the desktop adds around the window.
    const QRect area = screen->availableGeometry();
    const QSize room =
        area.size() - QSize(2 * fontMetrics().averageCharWidth(), 3 * fontMetrics().height());
    QSize fitted = size().boundedTo(room);
    // A page cut short in height scrolls up and down; its scroll bar takes room beside the page,
    // not from it.
    if (fitted.height() < height())
        fitted.setWidth(std::min(
            room.width(), fitted.width() + style()->pixelMetric(QStyle::PM_ScrollBarExtent)));
    resize(fitted);
    const int x = std::clamp(this->x(), area.left(), std::max(area.left(), area.right() - width()));
    move(x, std::max(y(), area.top()));
}

void frmPreview::Preview(QWidget* mainWindow, const QString& caption, const Drawing& draw) {
    frmPreview window(mainWindow);
    window.Open(mainWindow, caption, draw);
    window.fitToScreen();
    window.exec();
}

void frmPreview::MnuPrint_Click() {
    try {
        if (!chooser_ || !chooser_(printer_, this))
            return; // cancelled: the preview stays open
        resize(TwipsToPixelsX(kPrintWidth), TwipsToPixelsY(kPrintHeight));

        // The window's picture at its own, screen resolution, at its size on paper.
        const QPixmap printed = PrintedPicture();
        QPainter painter;
        if (!painter.begin(&printer_))
            return; // a printer failure ends the command silently; the window stays open
        const double scaleX = printer_.logicalDpiX() / static_cast<double>(logicalDpiX());
        const double scaleY = printer_.logicalDpiY() / static_cast<double>(logicalDpiY());
        painter.drawPixmap(QRectF(0, 0, printed.width() * scaleX, printed.height() * scaleY),
                           printed, QRectF(printed.rect()));
        if (!painter.end())
            return;
    } catch (...) {
        return; // a printer failure ends the command silently; the window stays open
    }
    close();
}

void frmPreview::mnuExit_Click() {
    close();
}
