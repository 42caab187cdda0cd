// Writes a picture of the window for a design file:
//     rainfold_screenshot DESIGN.rfd OUTPUT.png [--green-ampt] [--cell ROW COLUMN] [--input]
//                         [--size WIDTH HEIGHT] [--focus CONTROL] [--edit ROW COLUMN]
//                         [--plot PLOT.pdf] [--explorer] [--preview report|plot]
//                         [--font-size PT] [--font FAMILY]
// By default the window opens the design, turns to "Results" (accepting any warning) and, with
// --cell, charts that cell. --input stays on "Input Data"; --focus puts the focus into a control
// there and --edit opens the cell editor over a segment cell, so the reference panels can be seen.
// --size 0 0 takes the window's minimum size, --size default the size it opens with. --plot also
// writes the printed plot that File > Plot would print, as a PDF file. --help-window contents|index
// GUIDE [--search TEXT] takes the picture of the help window opened on the guide in GUIDE instead.
// --explorer opens Tools > "Design Explorer..." instead and pictures that window at the size it
// opens with (or the --size given, 0 0 its minimum), once its map is drawn. --preview report|plot
// pictures the print or plot preview window as it opens over the results. --font-size PT sets the
// application font's size in points and --font FAMILY its family, as a desktop's settings would.

#include "DesignExplorer.h"
#include "ROAnalysis.h"
#include "ResultsView.h"
#include "dialogs/frmPreview.h"
#include "help/HelpWindow.h"

#include "design_file.h"
#include "printing.h"
#include "printout.h"

#include <QAction>
#include <QApplication>
#include <QEventLoop>
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
                     "[--size W H] [--focus CONTROL] [--edit ROW COL] [--plot PLOT.pdf] "
                     "[--help-window contents|index GUIDE [--search TEXT]] [--explorer] "
                     "[--preview report|plot] [--font-size PT] [--font FAMILY]\n",
                     argv[0]);
        return 64;
    }
    QApplication app(argc, argv);
    bool green = false, input = false, ownSize = false, explorer = false, sized = false;
    int row = -1, column = -1, editRow = -1, editColumn = -1;
    QSize size(1250, 760);
    QString focus, plot, helpEntry, search, preview;
    for (int i = 3; i < argc; ++i) {
        const std::string a = argv[i];
        if (a == "--green-ampt") {
            green = true;
        } else if (a == "--explorer") {
            explorer = true;
        } else if (a == "--input") {
            input = true;
        } else if (a == "--cell" && i + 2 < argc) {
            row = std::stoi(argv[++i]);
            column = std::stoi(argv[++i]);
        } else if (a == "--edit" && i + 2 < argc) {
            editRow = std::stoi(argv[++i]);
            editColumn = std::stoi(argv[++i]);
        } else if (a == "--size" && i + 1 < argc && std::string(argv[i + 1]) == "default") {
            ownSize = true;
            ++i;
        } else if (a == "--size" && i + 2 < argc) {
            size = QSize(std::stoi(argv[i + 1]), std::stoi(argv[i + 2]));
            sized = true;
            i += 2;
        } else if (a == "--focus" && i + 1 < argc) {
            focus = QString::fromLocal8Bit(argv[++i]);
        } else if (a == "--plot" && i + 1 < argc) {
            plot = QString::fromLocal8Bit(argv[++i]);
        } else if (a == "--help-window" && i + 2 < argc) {
            helpEntry = QString::fromLocal8Bit(argv[++i]);
            rainfold::ui::SetGuideFolder(QString::fromLocal8Bit(argv[++i]));
        } else if (a == "--search" && i + 1 < argc) {
            search = QString::fromLocal8Bit(argv[++i]);
        } else if (a == "--preview" && i + 1 < argc) {
            preview = QString::fromLocal8Bit(argv[++i]);
        } else if (a == "--font-size" && i + 1 < argc) {
            QFont font = QApplication::font();
            font.setPointSize(std::stoi(argv[++i]));
            QApplication::setFont(font);
        } else if (a == "--font" && i + 1 < argc) {
            QFont font = QApplication::font();
            font.setFamily(QString::fromLocal8Bit(argv[++i]));
            QApplication::setFont(font);
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
    if (!ownSize)
        window.resize(size); // the minimum size holds against anything smaller
    window.show();
    window.activateWindow();
    app.processEvents();

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
        if (sized)
            tool->resize(size.expandedTo(tool->minimumSizeHint()));
        QEventLoop wait;
        QObject::connect(tool, &DesignExplorer::mapFinished, &wait, &QEventLoop::quit);
        if (tool->computing())
            wait.exec();
        app.processEvents();
        return tool->grab().save(QString::fromLocal8Bit(argv[2])) ? 0 : 1;
    }
    if (input) {
        if (!focus.isEmpty())
            if (auto* control = window.findChild<QWidget*>(focus))
                control->setFocus(Qt::OtherFocusReason);
        app.processEvents();
        if (editRow >= 0) {
            auto* grid = window.findChild<QTableWidget*>(QStringLiteral("msgSurfStore"));
            grid->setCurrentCell(editRow, editColumn);
            window.MSFlexGridEdit(grid, window.findChild<QLineEdit*>(QStringLiteral("txtEdit")), 0);
        }
    } else {
        window.findChild<QTabWidget*>(QStringLiteral("SSTab1"))->setCurrentIndex(1);
        if (row >= 0) // else the cell the page change leaves current
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
    if (!preview.isEmpty()) {
        // The preview is modal: its picture is taken from inside its own event loop.
        bool grabbed = false;
        QTimer::singleShot(300, [&] {
            if (auto* modal = qobject_cast<frmPreview*>(QApplication::activeModalWidget())) {
                std::fprintf(stderr, "preview %dx%d\n", modal->width(), modal->height());
                grabbed = modal->grab().save(QString::fromLocal8Bit(argv[2]));
                modal->close();
            }
        });
        if (preview == QLatin1String("plot"))
            window.mnuFilePlotPreview_Click();
        else
            window.mnuFilePrintPreview_Click();
        return grabbed ? 0 : 1;
    }
    std::fprintf(stderr, "window %dx%d\n", window.width(), window.height());
    const bool saved = shown->grab().save(QString::fromLocal8Bit(argv[2]));
    const bool plotted =
        plot.isEmpty() || rainfold::ui::WritePdf(plot, [&](rainfold::DrawingSurface& s) {
            rainfold::PrintPlot(s, window.printInputs());
        });
    return saved && plotted ? 0 : 1;
}
