// Writes a picture of the results page for a design file:
//     rainfold_screenshot DESIGN.rfd OUTPUT.png [--green-ampt] [--cell ROW COLUMN]
//                         [--size WIDTH HEIGHT] [--plot PLOT.pdf]
// The window opens the design, turns to "Results" (accepting any warning) and charts the cell,
// at the window's own default size unless a size is given. --plot also writes the printed plot
// that File > Plot would print, as a PDF file.

#include "ROAnalysis.h"
#include "ResultsView.h"

#include "design_file.h"
#include "printing.h"
#include "printout.h"

#include <QAction>
#include <QApplication>
#include <QMessageBox>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>

#include <cstdio>
#include <string>

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr,
                     "usage: %s DESIGN.rfd OUTPUT.png [--green-ampt] [--cell ROW COL]"
                     " [--size W H] [--plot PLOT.pdf]\n",
                     argv[0]);
        return 64;
    }
    QApplication app(argc, argv);
    bool green = false;
    int row = 9, column = 4;
    QSize size;
    QString plot;
    for (int i = 3; i < argc; ++i) {
        const std::string a = argv[i];
        if (a == "--green-ampt")
            green = true;
        else if (a == "--cell" && i + 2 < argc) {
            row = std::stoi(argv[++i]);
            column = std::stoi(argv[++i]);
        } else if (a == "--size" && i + 2 < argc) {
            const int width = std::stoi(argv[++i]);
            size = QSize(width, std::stoi(argv[++i]));
        } else if (a == "--plot" && i + 1 < argc) {
            plot = QString::fromLocal8Bit(argv[++i]);
        }
    }

    rainfold::DesignRecord design;
    const auto opened = rainfold::OpenDesign(argv[1], design);
    if (!opened.ok) {
        std::fprintf(stderr, "%s\n", opened.message.c_str());
        return 1;
    }
    ROAnalysis window;
    window.setDesign(design);
    if (green)
        window.findChild<QAction*>(QStringLiteral("mnuOptionsGreenAmpt"))->trigger();
    if (size.isValid())
        window.resize(size);
    window.show();

    // Accept every box the page change raises.
    QTimer answer;
    QObject::connect(&answer, &QTimer::timeout, [] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
            box->accept();
    });
    answer.start(20);
    window.findChild<QTabWidget*>(QStringLiteral("SSTab1"))->setCurrentIndex(1);
    window.resultsView()->grid()->setCurrentCell(row, column);
    app.processEvents();
    const bool saved = window.grab().save(QString::fromLocal8Bit(argv[2]));
    const bool plotted =
        plot.isEmpty() || rainfold::ui::WritePdf(plot, [&](rainfold::DrawingSurface& s) {
            rainfold::PrintPlot(s, window.printInputs());
        });
    return saved && plotted ? 0 : 1;
}
