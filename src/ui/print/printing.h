#pragma once
// The printed report and plot on their way out: to a printer chosen in the print dialog, to a
// PDF file, or into the preview window.

#include "page_output.h"
#include "print_inputs.h"

class QPrinter;
class QWidget;

namespace rainfold::ui {

using render::SurfaceDrawing;

// Runs `draw` on the printer's page and ends the document. False when the printer cannot be
// started (nothing is drawn then).
bool DrawOnPrinter(QPrinter& printer, const SurfaceDrawing& draw);

// Writes one Letter page to a PDF file. False when the file cannot be written.
bool WritePdf(const QString& fileName, const SurfaceDrawing& draw);

// File > Print... and File > Plot...: the print dialog, then the page on the chosen printer.
// A cancelled dialog or a printer failure ends the command silently.
void PrintReportToPrinter(QWidget* parent, const PrintInputs& inputs);
void PrintPlotToPrinter(QWidget* parent, const PrintInputs& inputs);

// File > Print Preview and File > Plot Preview.
void PreviewReport(QWidget* mainWindow, const PrintInputs& inputs);
void PreviewPlot(QWidget* mainWindow, const PrintInputs& inputs);

} // namespace rainfold::ui
