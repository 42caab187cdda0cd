// What the results page shows always belongs to the design and model in use: the page change and
// the model toggled on the "Results" page, the cell made current, what is printed, an edit still
// open in the segment table, and where the focus goes when a family-slot button hides itself.
// Expected pages and charts come from tests/data/results_page.py.

#include "WindowFixture.h"
#include "results/ResultsView.h"

#include "printout.h"
#include "recording_surface.h"

#include <QFile>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QTemporaryDir>

namespace {

#include "../data/results_page.inc"

enum { kA2 = 1, kG1 = 3 };         // kResultsPages: design A at slot 2, G at slot 1
enum { kChartA = 0, kChartG = 3 }; // kResultsCharts: row 10, column 4 of A and of G

Texts Written(const rainfold::RecordingSurface& surface) {
    Texts texts;
    for (const rainfold::SurfaceOp& op : surface.ops())
        if (op.kind == rainfold::SurfaceOp::Text)
            texts << QString::fromStdString(op.text);
    return texts;
}

// The results grid of a window, row by row.
Texts GridTexts(const ROAnalysis& w) {
    Texts t;
    for (int r = 0; r < 10; ++r)
        for (int c = 0; c < 6; ++c)
            t << w.resultsView()->grid()->item(r, c)->text();
    return t;
}

} // namespace

class PageChangeTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        f_ = std::make_unique<WindowFixture>();
        QVERIFY(f_->active);
    }
    void resultsFollowTheModel_data();
    void resultsFollowTheModel();
    void openEditIsCommitted_data();
    void openEditIsCommitted();
    void focusStaysOnTheSlotButtons_data();
    void focusStaysOnTheSlotButtons();

private:
    QTabWidget* tabs() const { return f_->get<QTabWidget>("SSTab1"); }
    QString text(const QString& name) const {
        QWidget* page = f_->w->resultsView();
        if (auto* label = page->findChild<QLabel*>(name))
            return label->text();
        return page->findChild<QLineEdit*>(name)->text();
    }
    void turnToResults(rainfold::DesignRecord design, const Texts& edits = {}) {
        const bool green = design.greenAmpt;
        f_->w->setDesign(design);
        for (const QString& edit : edits)
            f_->field(edit.section('=', 0, 0))->setText(edit.section('=', 1));
        if (green)
            f_->trigger("mnuOptionsGreenAmpt");
        tabs()->setCurrentIndex(1);
    }
    // txtIC, the caption, then Prev and Next ("-" when hidden).
    Texts navigation() const {
        const auto caption = [](const QPushButton* b) { return b->isHidden() ? "-" : b->text(); };
        return {text("txtIC"), text("lblIntakeFamily"), caption(f_->get<QPushButton>("cmdPrev")),
                caption(f_->get<QPushButton>("cmdNext"))};
    }
    // The current cell, txtCol, its colours and the "Location" numbers of the chart.
    Texts shownCell() const {
        const QTableWidget* grid = f_->w->resultsView()->grid();
        const QTableWidgetItem* item = grid->item(grid->currentRow(), grid->currentColumn());
        return {QStringLiteral("%1,%2").arg(grid->currentRow()).arg(grid->currentColumn()),
                text("txtCol"),
                item->background().color().name() + ' ' + item->foreground().color().name(),
                text("txtHP"),
                text("txtTS"),
                text("txtTP")};
    }

    std::unique_ptr<WindowFixture> f_;
};

void PageChangeTest::resultsFollowTheModel_data() {
    QTest::addColumn<int>("design");
    QTest::addColumn<bool>("greenFirst"); // the model in use when the page is first shown
    QTest::addColumn<bool>("toggle");     // the model then toggled on the "Results" page
    QTest::addColumn<Texts>("edits");     // made on the input page before the first page change
    QTest::addColumn<int>("page");        // -1: a failed check, back on "Input Data"
    QTest::addColumn<int>("chart");
    QTest::addColumn<Texts>("buttons");
    const Texts green{"1", "Green and Ampt Infiltration", "-", "-"};
    const Texts family{"2", "1.0 NRCS Intake Family", "0.5 Intake", "1.5 Intake"};
    // clang-format off
    QTest::newRow("intake family") << 0 << false << false << Texts{} << int(kA2) << int(kChartA) << family;
    QTest::newRow("Green-Ampt") << 2 << true << false << Texts{} << int(kG1) << int(kChartG) << green;
    QTest::newRow("ticked") << 2 << false << true << Texts{} << int(kG1) << int(kChartG) << green;
    QTest::newRow("unticked") << 0 << true << true << Texts{} << int(kA2) << int(kChartA) << family;
    QTest::newRow("ticked, a Green-Ampt input fails its check")
        << 2 << false << true << Texts{"txtKS=0"} << -1 << -1 << Texts{};
    // clang-format on
}

void PageChangeTest::resultsFollowTheModel() {
    QFETCH(int, design);
    QFETCH(bool, greenFirst);
    QFETCH(bool, toggle);
    QFETCH(Texts, edits);
    QFETCH(int, page);
    QFETCH(int, chart);
    QFETCH(Texts, buttons);
    rainfold::DesignRecord d = kResultsDesigns[design];
    d.greenAmpt = greenFirst;
    {
        ModalAnswer none;
        turnToResults(d, edits);
        QCOMPARE(tabs()->currentIndex(), 1);
        QVERIFY(none.boxes.empty());
    }
    ModalAnswer answer;
    if (toggle)
        f_->trigger("mnuOptionsGreenAmpt");
    if (page < 0) {
        QCOMPARE(answer.boxes.size(), size_t(1));
        QCOMPARE(answer.boxes[0].title + '|' + answer.boxes[0].text,
                 QStringLiteral("Error|Invalid saturated hydraulic conductivity."));
        QCOMPARE(tabs()->currentIndex(), 0);
        QCOMPARE(f_->w->focusWidget()->objectName(), QStringLiteral("txtKS"));
        QVERIFY(!f_->action("mnuFilePrint")->isEnabled());
        return;
    }
    QVERIFY(answer.boxes.empty());
    QCOMPARE(tabs()->currentIndex(), 1);
    QCOMPARE(navigation(), buttons);
    Texts expected;
    for (const auto& row : kResultsPages[page].grid)
        for (const char* cell : row)
            expected << cell;
    QCOMPARE(GridTexts(*f_->w), expected);
    const ResultsRefChart& c = kResultsCharts[chart];
    QCOMPARE(shownCell(),
             (Texts{QStringLiteral("%1,%2").arg(c.row).arg(c.column), QString::number(c.column),
                    "#0000ff #c0c0c0", c.txtHP, c.txtTS, c.txtTP}));

    // The report and the plot name that case: its capacity as entered, distance and runoff.
    const rainfold::PrintInputs in = f_->w->printInputs();
    rainfold::RecordingSurface report, plot;
    rainfold::PrintReport(report, in);
    rainfold::PrintPlot(plot, in);
    const QString gpm = QString::fromStdString(kResultsDesigns[design].txtGPM);
    QVERIFY(Written(report).contains("System Capacity = " + gpm + " gpm"));
    const Texts plotted = Written(plot);
    QVERIFY(plotted.contains("System Capacity = " + gpm + " gpm"));
    QVERIFY(plotted.contains("  at " + gpm + " gpm"));
    QVERIFY(plotted.contains(QStringLiteral("Distance from Pivot = %1 ft")
                                 .arg(QString::fromStdString(kResultsDesigns[design].txtSYL))));
    QVERIFY(plotted.contains(
        QStringLiteral("Percent Runoff = %1%").arg(kResultsPages[page].grid[9][4])));
}

void PageChangeTest::openEditIsCommitted_data() {
    QTest::addColumn<bool>("save"); // File > Save, else the page change
    QTest::newRow("save") << true;
    QTest::newRow("page change") << false;
}

void PageChangeTest::openEditIsCommitted() {
    QFETCH(bool, save);
    // Design A with its slope and residue given per segment; row 3's slope is still empty.
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
    if (save) {
        QTemporaryDir dir;
        const QString file = dir.filePath("edited.rfd");
        f_->w->setFileDialog([&](QWidget*, const FileDialogRequest&) { return file; });
        f_->trigger("mnuFileSave");
        QFile saved(file);
        QVERIFY(saved.open(QIODevice::ReadOnly));
        QVERIFY(saved.readAll().contains("\r\n\"3.3\",\"15\"\r\n"));
    } else {
        tabs()->setCurrentIndex(1);
        // The same design with 3.3 typed straight into the cell gives the page to expect.
        d.segments[2].col1 = "3.3";
        WindowFixture typed;
        typed.w->setDesign(d);
        typed.get<QTabWidget>("SSTab1")->setCurrentIndex(1);
        const Texts expected = GridTexts(*typed.w);
        QCOMPARE(GridTexts(*f_->w), expected);
        QCOMPARE(expected.at(2 * 6 + 2), QStringLiteral("0.11")); // 3.3 %, not an empty slope
    }
    QVERIFY(none.boxes.empty());
    QVERIFY(f_->field("txtEdit")->isHidden());
    QCOMPARE(table->item(3, 1)->text(), QStringLiteral("3.3"));
}

void PageChangeTest::focusStaysOnTheSlotButtons_data() {
    QTest::addColumn<QString>("clicks"); // N: Next, P: Prev, from slot 2
    QTest::addColumn<QString>("focus");
    QTest::newRow("Next reaches the last slot") << "N"
                                                << "cmdPrev";
    QTest::newRow("Prev reaches the first slot") << "P"
                                                 << "cmdNext";
    QTest::newRow("a button still shown keeps it") << "NP"
                                                   << "cmdPrev";
}

void PageChangeTest::focusStaysOnTheSlotButtons() {
    QFETCH(QString, clicks);
    QFETCH(QString, focus);
    ModalAnswer none;
    turnToResults(kResultsDesigns[0]);
    for (const QChar c : clicks)
        QTest::mouseClick(f_->get<QPushButton>(c == 'N' ? "cmdNext" : "cmdPrev"), Qt::LeftButton);
    QCOMPARE(f_->w->focusWidget()->objectName(), focus);
    QVERIFY(none.boxes.empty());
}

QTEST_MAIN(PageChangeTest)
#include "page_change_test.moc"
