// Writes a picture of the results page for a design file:
//     rainfold_screenshot DESIGN.rfd OUTPUT.png [--green-ampt] [--cell ROW COLUMN] [--explorer]
// The window opens the design, turns to "Results" (accepting any warning) and charts the cell.
// With --explorer it opens Tools > "Design Explorer..." instead and pictures that window at its
// own size once the map is drawn.

#include "DesignExplorer.h"
#include "ROAnalysis.h"
#include "ResultsView.h"

#include "design_file.h"

#include <QAction>
#include <QApplication>
#include <QEventLoop>
#include <QMessageBox>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>

#include <cstdio>
#include <string>

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: %s DESIGN.rfd OUTPUT.png [--green-ampt] [--cell ROW COL]\n",
                     argv[0]);
        return 64;
    }
    QApplication app(argc, argv);
    bool green = false, explorer = false;
    int row = 9, column = 4;
    for (int i = 3; i < argc; ++i) {
        const std::string a = argv[i];
        if (a == "--green-ampt")
            green = true;
        else if (a == "--explorer")
            explorer = true;
        else if (a == "--cell" && i + 2 < argc) {
            row = std::stoi(argv[++i]);
            column = std::stoi(argv[++i]);
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
    window.resize(1250, 760);
    window.show();

    // Accept every box the page change raises.
    QTimer answer;
    QObject::connect(&answer, &QTimer::timeout, [] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
            box->accept();
    });
    answer.start(20);
    if (explorer) {
        window.findChild<QAction*>(QStringLiteral("mnuToolsDesignExplorer"))->trigger();
        auto* tool = window.findChild<DesignExplorer*>();
        if (!tool)
            return 1;
        QEventLoop wait;
        QObject::connect(tool, &DesignExplorer::mapFinished, &wait, &QEventLoop::quit);
        if (tool->computing())
            wait.exec();
        app.processEvents();
        return tool->grab().save(QString::fromLocal8Bit(argv[2])) ? 0 : 1;
    }
    window.findChild<QTabWidget*>(QStringLiteral("SSTab1"))->setCurrentIndex(1);
    window.resultsView()->grid()->setCurrentCell(row, column);
    app.processEvents();
    const bool saved = window.grab().save(QString::fromLocal8Bit(argv[2]));
    return saved ? 0 : 1;
}
