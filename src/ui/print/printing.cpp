#include "printing.h"

#include "QPainterSurface.h"
#include "dialogs/frmPreview.h"
#include "printout.h"

#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>

namespace rainfold::ui {

namespace {

void PrintWithDialog(QWidget* parent, const SurfaceDrawing& draw) {
    try {
        QPrinter printer(QPrinter::HighResolution);
        QPrintDialog dialog(&printer, parent);
        if (dialog.exec() != QDialog::Accepted)
            return;
        DrawOnPrinter(printer, draw);
    } catch (...) {
        // Printer commands end silently on any failure.
    }
}

} // namespace

bool DrawOnPrinter(QPrinter& printer, const SurfaceDrawing& draw) {
    QPainter painter;
    if (!painter.begin(&printer))
        return false;
    const double twipsPerPixel = 1440.0 / printer.logicalDpiX();
    render::QPainterSurface surface(painter, printer.width() * twipsPerPixel);
    draw(surface);
    return painter.end();
}

bool WritePdf(const QString& fileName, const SurfaceDrawing& draw) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(fileName);
    printer.setPageSize(QPageSize(QPageSize::Letter));
    printer.setPageOrientation(QPageLayout::Portrait);
    // The page's own margins are the layout's; the whole sheet is the drawing surface.
    printer.setFullPage(true);
    printer.setCreator(QStringLiteral("Rainfold ") + render::VersionText());
    return DrawOnPrinter(printer, draw);
}

void PrintReportToPrinter(QWidget* parent, const PrintInputs& inputs) {
    PrintWithDialog(parent, [&](DrawingSurface& s) { PrintReport(s, inputs); });
}

void PrintPlotToPrinter(QWidget* parent, const PrintInputs& inputs) {
    PrintWithDialog(parent, [&](DrawingSurface& s) { PrintPlot(s, inputs); });
}

void PreviewReport(QWidget* mainWindow, const PrintInputs& inputs) {
    frmPreview::Preview(mainWindow, QStringLiteral("Print Preview"),
                        [&](DrawingSurface& s) { PrintReport(s, inputs); });
}

void PreviewPlot(QWidget* mainWindow, const PrintInputs& inputs) {
    frmPreview::Preview(mainWindow, QStringLiteral("Plot Preview"),
                        [&](DrawingSurface& s) { PrintPlot(s, inputs); });
}

} // namespace rainfold::ui
