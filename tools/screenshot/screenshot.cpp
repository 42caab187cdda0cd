// Writes a picture of the results page for a design file:
//     rainfold_screenshot DESIGN.rfd OUTPUT.png [--green-ampt] [--cell ROW COLUMN] [--input]
//                         [--size WIDTH HEIGHT] [--help-window contents|index GUIDE [--search
//                         TEXT]]
// The window opens the design, turns to "Results" (accepting any warning) and charts the cell;
// with --input it stays on "Input Data". With --help-window the picture is of the help window
// opened on the guide in GUIDE, at its contents or at its index with TEXT typed into the search.

#include "ROAnalysis.h"
#include "ResultsView.h"
#include "help/HelpWindow.h"

#include "design_file.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QTabWidget>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

#include <cstdio>
#include <string>

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr,
                     "usage: %s DESIGN.rfd OUTPUT.png [--green-ampt] [--cell ROW COL] [--input] "
                     "[--size W H]\n",
                     argv[0]);
        return 64;
    }
    QApplication app(argc, argv);
    bool green = false;
    bool inputPage = false;
    int row = 9, column = 4;
    int width = 1250, height = 760;
    QString helpEntry, search;
    for (int i = 3; i < argc; ++i) {
        const std::string a = argv[i];
        if (a == "--green-ampt")
            green = true;
        else if (a == "--cell" && i + 2 < argc) {
            row = std::stoi(argv[++i]);
            column = std::stoi(argv[++i]);
        } else if (a == "--size" && i + 2 < argc) {
            width = std::stoi(argv[++i]);
            height = std::stoi(argv[++i]);
        } else if (a == "--input") {
            inputPage = true;
        } else if (a == "--help-window" && i + 2 < argc) {
            helpEntry = QString::fromLocal8Bit(argv[++i]);
            rainfold::ui::SetGuideFolder(QString::fromLocal8Bit(argv[++i]));
        } else if (a == "--search" && i + 1 < argc) {
            search = QString::fromLocal8Bit(argv[++i]);
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
    window.resize(width, height);
    window.show();

    // Accept every box the page change raises.
    QTimer answer;
    QObject::connect(&answer, &QTimer::timeout, [] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
            box->accept();
    });
    answer.start(20);
    if (!inputPage) {
        window.findChild<QTabWidget*>(QStringLiteral("SSTab1"))->setCurrentIndex(1);
        window.resultsView()->grid()->setCurrentCell(row, column);
    }
    app.processEvents();
    QWidget* shown = &window;
    if (!helpEntry.isEmpty()) {
        window
            .findChild<QAction*>(helpEntry == QLatin1String("index")
                                     ? QStringLiteral("mnuHelpSearchForHelpOn")
                                     : QStringLiteral("mnuHelpContents"))
            ->trigger();
        auto* help = window.findChild<rainfold::ui::HelpWindow*>();
        if (!help) {
            std::fprintf(stderr, "no help window: is there a guide in the folder given?\n");
            return 1;
        }
        if (!search.isEmpty()) {
            QTest::keyClicks(help->searchField(), search);
            QTest::keyClick(help->searchField(), Qt::Key_Return);
        }
        QTest::qWait(300);
        shown = help;
    }
    const bool saved = shown->grab().save(QString::fromLocal8Bit(argv[2]));
    return saved ? 0 : 1;
}
