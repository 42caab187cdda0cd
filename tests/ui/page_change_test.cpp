// What the results page shows always belongs to the design and model in use: the page change and
// the model toggled on "Results", the cell made current and the keyboard there, what is printed,
// Open and New over results, the same page on a German desktop, and an edit still open in the
// segment table. Expected pages and charts come from tests/data/results_page.py.

#include "ResultsPageFixture.h"
#include "dialogs/frmPreview.h"

#include "design_file.h"
#include "printout.h"
#include "recording_surface.h"

#include <QFile>
#include <QTemporaryDir>

#include <clocale>

class PageChangeTest : public QObject, ResultsPage {
    Q_OBJECT

private slots:
    void init() { f_ = std::make_unique<WindowFixture>(); }

    void resultsFollowTheModel() {
        // Design A (an intake family) or G, its model ticked or not on "Results" after the first
        // page change showed the other model.
        for (const bool green : {false, true})
            for (const bool toggle : {false, true}) {
                init();
                rainfold::DesignRecord d = kResultsDesigns[green ? 2 : 0];
                d.greenAmpt = green != toggle;
                ModalAnswer none;
                turnToResults(d);
                if (toggle)
                    f_->trigger("mnuOptionsGreenAmpt");
                QVERIFY(none.boxes.empty());
                QCOMPARE(tabs()->currentIndex(), 1);
                // A family opens on its second slot; Green-Ampt has one slot and no buttons.
                QCOMPARE(navigation(), green ? Texts({"1", "Green and Ampt Infiltration", "-", "-"})
                                             : Texts({"2", "1.0 NRCS Intake Family", "0.5 Intake",
                                                      "1.5 Intake"}));
                const ResultsRefPage& p = kResultsPages[green ? kG1 : kA2];
                QCOMPARE(page(), expected(p));
                // The cell made current: row 10, column 4, with its chart's "Location" numbers.
                const ResultsRefChart& r = kResultsCharts[green ? 3 : 0];
                QCOMPARE(QPoint(grid()->currentColumn(), grid()->currentRow()), QPoint(4, 9));
                QCOMPARE(colours(9, 4), QStringLiteral("#0000ff #c0c0c0"));
                QCOMPARE(location(), Texts({"4", r.txtHP, r.txtTS, r.txtTP}));
                // The keyboard starts on that cell.
                QCOMPARE(QApplication::focusWidget(), grid());

                // The report and the plot name that case: capacity as entered, distance, runoff.
                const rainfold::PrintInputs in = f_->w->printInputs();
                const auto written = [&in](auto print) {
                    rainfold::RecordingSurface surface;
                    print(surface, in);
                    Texts texts;
                    for (const rainfold::SurfaceOp& op : surface.ops())
                        if (op.kind == rainfold::SurfaceOp::Text)
                            texts << QString::fromStdString(op.text);
                    return texts;
                };
                const QString capacity = "System Capacity = " + QString(d.txtGPM.c_str()) + " gpm";
                QVERIFY(written(rainfold::PrintReport).contains(capacity));
                const Texts plotted = written(rainfold::PrintPlot);
                for (const QString& line :
                     {capacity, "  at " + QString(d.txtGPM.c_str()) + " gpm",
                      "Distance from Pivot = " + QString(d.txtSYL.c_str()) + " ft",
                      "Percent Runoff = " + QString(p.grid[9][4]) + "%"})
                    QVERIFY2(plotted.contains(line), qPrintable(line));
            }
    }

    // Open (a file that opens) and New on "Results" turn to "Input Data" first. Afterwards, from
    // either page, nothing prints, plots, charts or recomputes the old design or the new one
    // before it is checked: not the menus (nor their handlers called directly), the toolbar, the
    // slot buttons nor the table.
    void resultsNeverOutliveTheirDesign() {
        QTemporaryDir dir;
        const QString file = dir.filePath("other.rfd");
        QVERIFY(rainfold::SaveDesign(QFile::encodeName(file).toStdString(), kResultsDesigns[3]).ok);
        const Texts attempts = {"mnuFilePrintPreview",
                                "mnuFilePrint",
                                "mnuFilePlotPreview",
                                "mnuFilePlot",
                                "cmdPrev",
                                "cmdNext",
                                "Preview",
                                "Print",
                                "Plot Preview",
                                "Drawing",
                                "cell"};
        // Customised K and N, user-defined storage per segment and Green-Ampt ticked; all that
        // New keeps is K, N, the Green-Ampt inputs and the tick.
        rainfold::DesignRecord shownDesign = SampleDesign(), renewed = SampleDesign();
        shownDesign.surfaceOption = rainfold::kUserVariable;
        shownDesign.greenAmpt = renewed.greenAmpt = true;
        for (std::string* s :
             {&renewed.txtDescription, &renewed.txtLegalID, &renewed.txtCounty, &renewed.txtState,
              &renewed.txtDesigner, &renewed.txtDate, &renewed.txtSYL, &renewed.txtGPM,
              &renewed.txtAPPL, &renewed.txtWetDiam, &renewed.txtSurfStore, &renewed.txtResidue})
            s->clear();
        renewed.intakeFamilyIndex = -1;
        renewed.surfaceOption = rainfold::kConstantSlopeResidue;
        renewed.segments = {};
        for (const char* command : {"mnuFileOpen", "mnuFileNew"})
            for (const bool onResults : {true, false}) {
                init();
                int windows = 0; // previews and print dialogs
                ModalAnswer answer({}, [&windows](QWidget* modal) { ++windows, modal->close(); });
                turnToResults(shownDesign, {"txtSurfStore=0.3"});
                QCOMPARE(tabs()->currentIndex(), 1);
                tabs()->setCurrentIndex(onResults ? 1 : 0);
                f_->w->setFileDialog([&](QWidget*, const FileDialogRequest&) { return file; });
                f_->trigger(command);
                if (command[7] == 'N')
                    QVERIFY(f_->w->design() == renewed);
                else
                    QCOMPARE(f_->field("txtWetDiam")->text(), QStringLiteral("6"));
                QVERIFY(f_->get<QTableWidget>("msgSurfStore")->isHidden()); // constant options
                const Texts shown = page() << location() << navigation();
                for (const QString& attempt : attempts) {
                    if (attempt.startsWith("mnu"))
                        f_->trigger(attempt);
                    if (attempt.startsWith("mnu") || attempt.startsWith("cmd"))
                        QMetaObject::invokeMethod(f_->w.get(), qPrintable(attempt + "_Click"));
                    else if (attempt != "cell")
                        f_->w->tbToolBar_ButtonClick(attempt);
                    else
                        QTest::mouseClick(
                            grid()->viewport(), Qt::LeftButton, {},
                            grid()->visualRect(grid()->model()->index(2, 3)).center());
                    QApplication::processEvents();
                    QCOMPARE(
                        Texts({QString::number(windows), QString::number(tabs()->currentIndex())}),
                        Texts({"0", "0"}));
                }
                QCOMPARE(page() << location() << navigation(), shown);
                QVERIFY(answer.boxes.empty());
            }
    }

    // A German desktop (a decimal comma, a point between thousands) sees what an English one
    // sees: the results page with its chart, the printed report and plot pixel for pixel, a saved
    // design file byte for byte; only the status bar's date follows the desktop. The locale is
    // switched inside the program, where the C library and where Qt read it.
    void sameOnAGermanDesktop() {
        struct Shown {
            Texts page;
            QImage pages[3]; // the results page, the report's and the plot's preview
            QByteArray file;
            QString date;
        } shown[2];
        QTemporaryDir dir;
        for (const bool german : {true, false}) {
            Shown& seen = shown[german];
            QVERIFY(std::setlocale(LC_ALL, german ? "de_DE.UTF-8" : "C"));
            QLocale::setDefault(german ? QLocale(QLocale::German, QLocale::Germany) : QLocale::c());
            init();
            ModalAnswer none;
            turnToResults(kResultsDesigns[2]); // contents below 1, inches, 1300 ft
            seen.page = page() << location();
            seen.pages[0] = tabs()->grab().toImage();
            const rainfold::PrintInputs in = f_->w->printInputs();
            for (const bool plot : {false, true}) {
                frmPreview preview;
                preview.Open(nullptr, "", [&](rainfold::DrawingSurface& s) {
                    plot ? rainfold::PrintPlot(s, in) : rainfold::PrintReport(s, in);
                });
                seen.pages[1 + plot] = preview.picture().toImage();
            }
            f_->w->setFileDialog(
                [&](QWidget*, const FileDialogRequest&) { return dir.filePath("de"); });
            f_->trigger("mnuFileSave");
            seen.file = ReadAll(dir.filePath("de"));
            seen.date = f_->get<QLabel>("sbStatusBarDate")->text();
            QVERIFY(none.boxes.empty());
        }
        QLocale::setDefault(QLocale::c());
        const ResultsRefChart& chart = kResultsCharts[3];
        QCOMPARE(shown[1].page, expected(kResultsPages[kG1])
                                    << "4" << chart.txtHP << chart.txtTS << chart.txtTP);
        QCOMPARE(shown[0].page, shown[1].page);
        for (int k = 0; k < 3; ++k)
            QVERIFY2(shown[0].pages[k] == shown[1].pages[k], qPrintable(QString::number(k)));
        // The numbers as typed, with their points.
        QVERIFY(shown[1].file.contains("\"1300\",\"800\",\"1\",\"40\"\r\n"));
        QVERIFY(shown[1].file.contains("\"10\",\"110\",\"0.45\",\"0.25\",\"1000\",\"0.0002\""));
        QCOMPARE(shown[0].file, shown[1].file);
        QVERIFY(shown[0].date != shown[1].date);
    }

    void openEditIsCommitted() {
        for (const bool save : {true, false}) { // File > Save, else the page change
            init();
            // Design A with slope and residue per segment; row 3's slope is still empty.
            rainfold::DesignRecord d = kResultsDesigns[0];
            d.surfaceOption = rainfold::kVariableSlopeResidue;
            for (auto& segment : d.segments)
                segment = {"4", "15"};
            d.segments[2].col1 = "";
            f_->w->setDesign(d);
            auto* table = f_->get<QTableWidget>("msgSurfStore");
            table->setCurrentCell(3, 1);
            f_->focus("msgSurfStore");
            QTest::keyClick(table, Qt::Key_3); // opens the editor only
            QTest::keyClicks(f_->field("txtEdit"), "3.3");
            QVERIFY(!f_->field("txtEdit")->isHidden());

            ModalAnswer none;
            QTemporaryDir dir;
            const QString file = dir.filePath("edited.rfd");
            f_->w->setFileDialog([&](QWidget*, const FileDialogRequest&) { return file; });
            if (save)
                f_->trigger("mnuFileSave");
            else
                tabs()->setCurrentIndex(1);
            QVERIFY(none.boxes.empty());
            QVERIFY(f_->field("txtEdit")->isHidden());
            QCOMPARE(table->item(3, 1)->text(), QStringLiteral("3.3"));
            if (save) {
                QFile saved(file);
                QVERIFY(saved.open(QIODevice::ReadOnly));
                QVERIFY(saved.readAll().contains("\r\n\"3.3\",\"15\"\r\n"));
            } else { // 3.3 %, not an empty slope
                QCOMPARE(grid()->item(2, 2)->text(), QStringLiteral("0.11"));
            }
        }
    }
};

QTEST_MAIN(PageChangeTest)
#include "page_change_test.moc"
