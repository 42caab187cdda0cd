#pragma once
// The preview window: the printed report or plot on screen at page size, with "Print" (prints
// the window's own picture) and "Exit". A new window for every preview, so each starts empty.

#include "drawing_surface.h"

#include <QDialog>
#include <QPixmap>
#include <QPrinter>

#include <functional>

class QMenuBar;

namespace rainfold::ui {
class PreviewCanvas;
}

class frmPreview : public QDialog {
    Q_OBJECT

public:
    using Drawing = std::function<void(rainfold::DrawingSurface&)>;

    // Height while previewing, and the size the window takes to be printed, twips.
    static constexpr int kPreviewHeight = 15840;
    static constexpr int kPrintWidth = 12240;
    static constexpr int kPrintHeight = 13960;
    // The window is one page wide.
    static constexpr int kPreviewWidth = 12240;

    explicit frmPreview(QWidget* parent = nullptr);

    // Opens a preview over `mainWindow`: sizes and places the window, draws the page with `draw`
    // on the window's own surface and shows it modally until it is closed.
    static void Preview(QWidget* mainWindow, const QString& caption, const Drawing& draw);

    // The steps of opening up to the drawing, without showing the window.
    void Open(QWidget* mainWindow, const QString& caption, const Drawing& draw);
    // Shrinks the window to the screen's free area where the page is larger; the page then
    // scrolls inside it.
    void fitToScreen();

    // What the window has drawn, and the part of it that "Print" puts on paper.
    const QPixmap& picture() const;
    QPixmap PrintedPicture() const;

    // Replaces the print dialog, so the command can run without a person.
    using PrinterChooser = std::function<bool(QPrinter& printer, QWidget* parent)>;
    void setPrinterChooser(PrinterChooser chooser) { chooser_ = std::move(chooser); }

    int TwipsToPixelsX(double twips) const;
    int TwipsToPixelsY(double twips) const;

public slots:
    void MnuPrint_Click();
    void mnuExit_Click();

private:
    QMenuBar* menu_ = nullptr;
    rainfold::ui::PreviewCanvas* canvas_ = nullptr;
    QPrinter printer_{QPrinter::HighResolution};
    PrinterChooser chooser_;
};
