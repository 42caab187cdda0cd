// What the results page shows always belongs to the design and model in use: the page change and
// the model toggled on "Results", the cell made current, what is printed, and an edit still open
// in the segment table. Expected pages and charts come from tests/data/results_page.py.

#include "ResultsPageFixture.h"

#include "printout.h"
#include "recording_surface.h"

#include <QFile>
#include <QTemporaryDir>

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
