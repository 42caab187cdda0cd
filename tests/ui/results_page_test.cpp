// The "Results" side of the window: the checks behind the page change, the family-slot buttons and
// where they leave the focus, the texts of every slot and model, the chart of a cell and the
// keyboard in the table, an engine fault the window survives. What the page shows always belongs
// to the design and model in use: the model toggled on "Results", what is printed, Open and New
// over results, the same page on a German desktop, and an edit still open in the segment table.
// Expected pages and charts come from tests/data/results_page.py.

#include "ResultsPageFixture.h"
#include "dialogs/frmPreview.h"
#include "results/RateChart.h"

#include "design_file.h"
#include "printout.h"
#include "recording_surface.h"

#include <QAbstractAxis>
#include <QChart>
#include <QGroupBox>
#include <QTemporaryDir>
#include <QToolBar>

#include <clocale>

class ResultsPageTest : public QObject, ResultsPage {
    Q_OBJECT

    // 1 = enabled: File print and plot entries, the four surface-storage options, toolbar buttons
    // 5, 6, 8 and 9.
    QString outputsAndOptions() const {
        QString s;
        for (const char* name :
             {"mnuFilePrintPreview", "mnuFilePrint", "mnuFilePlotPreview", "mnuFilePlot",
              "mnuOptionsSR0", "mnuOptionsSR1", "mnuOptionsSR2", "mnuOptionsSR3"})
            s += f_->action(name)->isEnabled() ? '1' : '0';
        const QList<QAction*> bar = f_->get<QToolBar>("tbToolBar")->actions();
        for (int b : {5, 6, 8, 9})
            s += bar.at(b - 1)->isEnabled() ? '1' : '0';
        return s;
    }
    // What the page shows for a line of results_page_texts.txt, after its state, in the same
    // form: boxes by name and labels by text, in reading order.
    QString describe(const Texts& key) const {
        const QWidget* page = f_->w->resultsView();
        const auto at = [](const QWidget* w) { return QRect(w->mapToGlobal(QPoint()), w->size()); };
        const auto frame = [](const QWidget* w) {
            while (w && !qobject_cast<const QGroupBox*>(w))
                w = w->parentWidget();
            return w;
        };
        const auto name = [](const QWidget* w) {
            auto* label = qobject_cast<const QLabel*>(w);
            return label ? label->text() : w->objectName();
        };
        // The boxes and labels for which `inside` holds, left to right or top to bottom.
        const auto find = [&](auto inside, bool across) {
            QList<const QWidget*> found;
            for (const QWidget* w : page->findChildren<QWidget*>())
                if (w->isVisibleTo(page) &&
                    (qobject_cast<const QLabel*>(w) || qobject_cast<const QLineEdit*>(w)) &&
                    inside(w))
                    found << w;
            std::sort(found.begin(), found.end(), [&](auto* a, auto* b) {
                return across ? at(a).x() < at(b).x() : at(a).y() < at(b).y();
            });
            return found;
        };
        Texts seen = key.mid(0, key[0] == "row" ? 2 : 1);
        QList<const QWidget*> shown;
        if (key[0] == "row") { // in the caption's frame, level with it and to its right
            for (const QWidget* c : find([&](const QWidget* w) { return name(w) == key[1]; }, true))
                shown << find(
                    [&](const QWidget* w) {
                        return frame(w) == frame(c) && at(w).left() > at(c).right() &&
                               at(w).center().y() > at(c).top() &&
                               at(w).center().y() < at(c).bottom();
                    },
                    true);
        } else if (key[0] == "frames") {
            for (const QGroupBox* box : page->findChildren<QGroupBox*>())
                seen << box->title();
        } else if (key[0] == "headings") {
            for (int c = 0; c < 6; ++c)
                seen << grid()->horizontalHeaderItem(c)->text();
        } else if (key[0] == "navigation") {
            seen << navigation();
        } else if (key[0] == "axes") {
            for (const Qt::Orientation o : {Qt::Horizontal, Qt::Vertical})
                for (const QAbstractAxis* axis : f_->get<RateChart>("MSChart1")->chart()->axes(o))
                    if (!axis->titleText().isEmpty())
                        seen << axis->titleText();
        }
        for (const QWidget* w : shown)
            seen << name(w);
        return seen.join('|');
    }

    void clickCell(int row, int column) {
        const QRect cell = grid()->visualRect(grid()->model()->index(row, column));
        QTest::mouseClick(grid()->viewport(), Qt::LeftButton, {}, cell.center());
    }

private slots:
    void init() { f_ = std::make_unique<WindowFixture>(); }

    // The checks of the page change, and an engine fault: no results, and a window still usable.
    void checksAndFaults() {
        const QString excessive = " is excessive.  Press OK to proceed or Cancel to edit.";
        const QString length = "Warning|i|1|System length of  3500 ft feet" + excessive;
        const struct {
            int design; // A, or G with the Green-Ampt model on
            Texts edits;
            QString answers; // O for OK, C for Cancel
            Texts boxes;
            QString focus; // empty: the results are shown; "*": anywhere
        } cases[] = {
            // clang-format off
            {0, {"txtSYL=3500 ft"}, "C", {length}, "txtSYL"}, // warning cancelled
            // an accepted warning goes on to the next check
            {0, {"txtSYL=3500 ft", "txtGPM=", "txtAPPL=4"}, "O", {length, "Error|!|0|Invalid system capacity."}, "txtGPM"},
            {2, {"txtKS=0"}, "", {"Error|!|0|Invalid saturated hydraulic conductivity."}, "txtKS"},
            {0, {"txtKS=0", "txtOmega=x"}, "", {}, ""}, // Green-Ampt inputs unchecked with the model off
            {2, {"txtKS=0", "family"}, "", {"Error|!|0|Please select an Intake Family"}, "cboIntakeFamily"},
            // the results of G with the model off shown, then the model ticked there
            {2, {"txtKS=0", "toggle"}, "", {"Error|!|0|Invalid saturated hydraulic conductivity."}, "txtKS"},
            {0, {"custom", "txtUk=0", "txtUN=-0.4"}, "", {"Error|!|1|K and N must not be 0 for Customized Values."}, "*"},
            // clang-format on
        };
        for (const auto& c : cases) {
            init();
            // As if the results of an earlier design were shown.
            f_->w->setOutputsEnabled(true);
            f_->w->setSurfaceOptionsEnabled(false);
            rainfold::DesignRecord design = kResultsDesigns[c.design];
            Texts edits = c.edits;
            if (edits.removeAll("family"))
                design.intakeFamilyIndex = -1;
            if (edits.removeAll("custom"))
                design.intakeFamilyIndex = rainfold::kCustomizedValuesIndex;
            const bool toggle = edits.removeAll("toggle");
            design.greenAmpt = design.greenAmpt && !toggle;
            ModalAnswer replies(c.answers);
            turnToResults(design, edits);
            if (toggle)
                f_->trigger("mnuOptionsGreenAmpt");
            QCOMPARE(replies.lines(), c.boxes);
            if (c.focus.isEmpty()) {
                QCOMPARE(tabs()->currentIndex(), 1);
                QCOMPARE(outputsAndOptions(), QStringLiteral("111100001111"));
                tabs()->setCurrentIndex(0); // back to the input side
            } else if (c.focus != "*") {
                // The window's focus child: the control that has the focus while it is active.
                QVERIFY(f_->w->focusWidget());
                QCOMPARE(f_->w->focusWidget()->objectName(), c.focus);
            }
            QCOMPARE(tabs()->currentIndex(), 0);
            QCOMPARE(outputsAndOptions(), QStringLiteral("000011110000"));
        }

        // Corrected, the window of the engine fault computes; slot 1 of customised values is the
        // seventh family.
        f_->field("txtUk")->setText("20");
        ModalAnswer answer;
        tabs()->setCurrentIndex(1);
        QCOMPARE(tabs()->currentIndex(), 1);
        QCOMPARE(navigation(), Texts({"2", "Customized Values", "3.0 Intake", "-"}));
        QTest::mouseClick(button("cmdPrev"), Qt::LeftButton);
        QCOMPARE(navigation(), Texts({"1", "3.0 NRCS Intake Family", "-", "Customized Values"}));
        QVERIFY(answer.boxes.empty());
    }

    // Every caption, unit, heading and button text for each slot and both models, in one pass
    // over results_page_texts.txt, each state reached as the user does. With the pages compared
    // whole against the reference and each heading's place over its column (the layout test),
    // the column under a capacity's heading holds that capacity's runoff. A slot button computes
    // the page again, makes column 4 current and keeps the focus on a button: the other one when
    // it hides itself.
    void slotsAndModels() {
        const Texts lines = QString::fromUtf8(ReadAll(RAINFOLD_RESULTS_TEXTS)).split('\n');
        const struct {
            QString state;
            int design, family;         // the design's own list entry when -2
            QList<const char*> buttons; // pressed to reach the state from the one before
            const char* focus;
            int page;
        } states[] = {{"A2", 0, -2, {}, nullptr, kA2},
                      {"A3", 0, -2, {"cmdNext"}, "cmdPrev", kA3},
                      {"A1", 0, -2, {"cmdPrev", "cmdPrev"}, "cmdNext", kA1},
                      {"F7", 0, 6, {}, nullptr, -1},
                      {"G", 2, -2, {}, nullptr, kG1},
                      {"G4", 2, 3, {}, nullptr, -1},
                      {"F1", 0, 0, {}, nullptr, -1}};
        ModalAnswer none;
        int checked = 0;
        for (const auto& s : states) {
            rainfold::DesignRecord design = kResultsDesigns[s.design];
            design.intakeFamilyIndex = s.family == -2 ? design.intakeFamilyIndex : s.family;
            if (s.buttons.isEmpty()) {
                init();
                turnToResults(design);
            }
            for (const char* name : s.buttons)
                QTest::mouseClick(button(name), Qt::LeftButton);
            for (const QString& line : lines)
                if (line.startsWith(s.state + '|') || line.startsWith("*|")) {
                    QCOMPARE(describe(line.split('|').mid(1)), line.section('|', 1));
                    ++checked;
                }
            if (s.page >= 0)
                QCOMPARE(page(), expected(kResultsPages[s.page]));
            if (s.focus)
                QCOMPARE(Texts({f_->w->focusWidget()->objectName(),
                                QString::number(grid()->currentColumn()), text("txtCol"),
                                colours(grid()->currentRow(), 4)}),
                         Texts({s.focus, "4", "4", "#0000ff #c0c0c0"}));
        }
        QVERIFY(checked > 60);
        // At the end of the list the slot stays, yet the design is computed again as it stands.
        f_->field("txtGPM")->setText("1000");
        f_->w->cmdPrev_Click();
        QCOMPARE(Texts({text("txtIC"), text("lblGPM1"), text("lblGPM2"), text("lblGPM3")}),
                 Texts({"1", "900", "1000", "1100"}));
        QVERIFY(none.boxes.empty());
    }

    void cellHighlightAndChart() {
        for (const ResultsRefChart& ref : kResultsCharts) {
            init();
            ModalAnswer answer;
            turnToResults(kResultsDesigns[ref.design]);
            auto* view = f_->get<RateChart>("MSChart1");
            clickCell(ref.row, ref.column);
            QCOMPARE(colours(ref.row, ref.column), QStringLiteral("#0000ff #c0c0c0"));
            QCOMPARE(location(),
                     Texts({QString::number(ref.column), ref.txtHP, ref.txtTS, ref.txtTP}));
            QVERIFY(!f_->get<QGroupBox>("frmLocation")->isHidden());
            // Both curves and the ponding marker; the storage marker is one series more.
            QCOMPARE(view->chart()->series().size(), ref.storage ? 4 : 3);
            // As in a spreadsheet: the arrows move the highlighted, charted cell (not past the
            // edge), Tab leaves the table for the next control and Shift+Tab comes back.
            for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Down, Qt::Key_Right})
                QTest::keyClick(grid(), key);
            const QPoint moved(std::min(ref.column + 2, 5), std::min(ref.row + 1, 9));
            QCOMPARE(QPoint(grid()->currentColumn(), grid()->currentRow()), moved);
            QCOMPARE(colours(moved.y(), moved.x()) + text("txtCol"),
                     "#0000ff #c0c0c0" + QString::number(moved.x()));
            QTest::keyClick(grid(), Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget()->objectName(), QStringLiteral("txtWARP(0)"));
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
            QCOMPARE(QApplication::focusWidget(), grid());

            // A cell of the first three columns: not highlighted, nothing redrawn, the column
            // noted.
            QChart* drawn = view->chart();
            const Texts numbers = location().mid(1);
            const int row = moved.y() == 0 ? 1 : 0;
            clickCell(row, 2);
            QCOMPARE(colours(moved.y(), moved.x()), QStringLiteral("default"));
            QCOMPARE(colours(row, 2), QStringLiteral("default"));
            QCOMPARE(location(), Texts{"2"} << numbers);
            QCOMPARE(view->chart(), drawn);
            QVERIFY(answer.boxes.empty());
        }
    }
    // Design A (an intake family) or G, its model ticked or not on "Results" after the first page
    // change showed the other model. G is shown again on a German desktop (a decimal comma, a
    // point between thousands, the locale switched where the C library and where Qt read it): the
    // results page with its chart and the printed report and plot are the same pixel for pixel,
    // a saved design file byte for byte; only the status bar's date follows the desktop.
    void resultsFollowTheModel() {
        struct Shown {
            QImage pages[3]; // the results page, the report's and the plot's preview
            QByteArray file;
            QString date;
        } shown[2];
        QTemporaryDir dir;
        for (const auto& [green, toggle, german] : {std::tuple{false, false, false},
                                                    {false, true, false},
                                                    {true, true, false},
                                                    {true, false, true},
                                                    {true, false, false}}) {
            QVERIFY(std::setlocale(LC_ALL, german ? "de_DE.UTF-8" : "C"));
            QLocale::setDefault(german ? QLocale(QLocale::German, QLocale::Germany) : QLocale::c());
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
            QCOMPARE(navigation(),
                     green ? Texts({"1", "Green and Ampt Infiltration", "-", "-"})
                           : Texts({"2", "1.0 NRCS Intake Family", "0.5 Intake", "1.5 Intake"}));
            const ResultsRefPage& p = kResultsPages[green ? kG1 : kA2];
            QCOMPARE(page(), expected(p));
            // The cell made current: row 10, column 4, with its chart's "Location" numbers; the
            // keyboard starts there.
            const ResultsRefChart& r = kResultsCharts[green ? 3 : 0];
            QCOMPARE(QPoint(grid()->currentColumn(), grid()->currentRow()), QPoint(4, 9));
            QCOMPARE(colours(9, 4), QStringLiteral("#0000ff #c0c0c0"));
            QCOMPARE(location(), Texts({"4", r.txtHP, r.txtTS, r.txtTP}));
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
            if (!green || toggle)
                continue;
            Shown& seen = shown[german];
            seen.pages[0] = tabs()->grab().toImage();
            for (const bool plot : {false, true}) {
                frmPreview preview;
                preview.Open(nullptr, "", [&](rainfold::DrawingSurface& s) {
                    plot ? rainfold::PrintPlot(s, in) : rainfold::PrintReport(s, in);
                });
                seen.pages[1 + plot] = preview.picture().toImage();
            }
            f_->w->setFileDialog(
                [&](QWidget*, const FileDialogRequest&) { return dir.filePath("g"); });
            f_->trigger("mnuFileSave");
            seen.file = ReadAll(dir.filePath("g"));
            seen.date = f_->get<QLabel>("sbStatusBarDate")->text();
        }
        for (int k = 0; k < 3; ++k)
            QVERIFY2(shown[0].pages[k] == shown[1].pages[k], qPrintable(QString::number(k)));
        // The numbers as typed, with their points.
        QVERIFY(shown[0].file.contains("\"1300\",\"800\",\"1\",\"40\"\r\n"));
        QVERIFY(shown[0].file.contains("\"10\",\"110\",\"0.45\",\"0.25\",\"1000\",\"0.0002\""));
        QCOMPARE(shown[0].file, shown[1].file);
        QVERIFY(shown[0].date != shown[1].date);
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
        rainfold::DesignRecord shownDesign = SampleDesign(), renewed;
        shownDesign.surfaceOption = rainfold::kUserVariable;
        shownDesign.greenAmpt = renewed.greenAmpt = true;
        const rainfold::DesignRecord& s = shownDesign;
        renewed.txtUk = s.txtUk, renewed.txtUN = s.txtUN, renewed.txtKS = s.txtKS;
        renewed.txtHW = s.txtHW, renewed.txtThetaS = s.txtThetaS, renewed.txtThetaI = s.txtThetaI;
        renewed.txtRzDepth = s.txtRzDepth, renewed.txtOmega = s.txtOmega;
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
                        clickCell(2, 3);
                    QApplication::processEvents();
                    QCOMPARE(QString::number(windows) + QString::number(tabs()->currentIndex()) +
                                 outputsAndOptions(),
                             QStringLiteral("00000011110000"));
                }
                QCOMPARE(page() << location() << navigation(), shown);
                QVERIFY(answer.boxes.empty());
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

QTEST_MAIN(ResultsPageTest)
#include "results_page_test.moc"
