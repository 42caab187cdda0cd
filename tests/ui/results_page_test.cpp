// The "Results" side of the window: the checks behind the page change, the page of two complete
// designs against tests/data/results_page.py, the family-slot buttons, the chart of a cell.

#include "WindowFixture.h"
#include "results/RateChart.h"
#include "results/ResultsView.h"

#include <QChart>
#include <QComboBox>
#include <QGroupBox>
#include <QPushButton>
#include <QTableWidget>
#include <QToolBar>

#include <iterator>

namespace {

#include "../data/results_page.inc"

// Kept apart from the reference pages: kResultsPages holds design A at slots 1, 2, 3, then G.
enum { kA1, kA2, kA3, kG1 };

} // namespace

class ResultsPageTest : public QObject {
    Q_OBJECT

private slots:
    void init() { f_ = std::make_unique<WindowFixture>(); }
    void checks();
    void completeDesigns();
    void slotButtonsAndRecomputation();
    void cellHighlightAndChart();
    void engineFaultLeavesTheWindowUsable();

private:
    QTabWidget* tabs() const { return f_->get<QTabWidget>("SSTab1"); }
    QTableWidget* grid() const { return f_->get<QTableWidget>("msgResults"); }
    QPushButton* button(const char* name) const { return f_->get<QPushButton>(name); }
    // A control of the results page (the input page has a label named lblIntakeFamily too).
    QString text(const QString& name) const {
        QWidget* page = f_->w->resultsView();
        if (auto* label = page->findChild<QLabel*>(name))
            return label->text();
        return page->findChild<QLineEdit*>(name)->text();
    }
    // Puts a design in, edits fields ("txtSYL=3500 ft"), and turns to "Results".
    void turnToResults(const rainfold::DesignRecord& design, const Texts& edits = {}) {
        f_->put(design);
        for (const QString& edit : edits)
            f_->field(edit.section('=', 0, 0))->setText(edit.section('=', 1));
        tabs()->setCurrentIndex(1);
    }
    // 1 = enabled: File print and plot entries, the four surface-storage options, toolbar
    // buttons 5, 6, 8 and 9.
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
    // txtIC, the caption, then Prev and Next ("-" when hidden).
    Texts navigation() const {
        const auto caption = [](const QPushButton* b) { return b->isHidden() ? "-" : b->text(); };
        return {text("txtIC"), text("lblIntakeFamily"), caption(button("cmdPrev")),
                caption(button("cmdNext"))};
    }
    Texts page() const {
        Texts t{text("lblIntakeFamily")};
        for (const char* name :
             {"lblGPM%1", "txtHours(%1)", "txtHPV(%1)", "txtTPV(%1)", "txtWARP(%1)"})
            for (int k = 0; k < 3; ++k)
                t << text(QString::fromLatin1(name).arg(name[0] == 'l' ? k + 1 : k));
        for (int r = 0; r < 10; ++r)
            for (int c = 0; c < 6; ++c)
                t << grid()->item(r, c)->text();
        return t;
    }
    static Texts expected(const ResultsRefPage& p) {
        Texts t{p.caption};
        for (const auto* a : {&p.lblGPM, &p.txtHours, &p.txtHPV, &p.txtTPV, &p.txtWARP})
            t << (*a)[0] << (*a)[1] << (*a)[2];
        for (const auto& row : p.grid)
            for (const char* cell : row)
                t << cell;
        return t;
    }
    void clickCell(int row, int column) {
        const QRect cell = grid()->visualRect(grid()->model()->index(row, column));
        QTest::mouseClick(grid()->viewport(), Qt::LeftButton, {}, cell.center());
    }
    QString colours(int row, int column) const {
        const QTableWidgetItem* item = grid()->item(row, column);
        if (item->background().style() == Qt::NoBrush && item->foreground().style() == Qt::NoBrush)
            return QStringLiteral("default");
        return item->background().color().name() + ' ' + item->foreground().color().name();
    }

    std::unique_ptr<WindowFixture> f_;
};

void ResultsPageTest::checks() {
    const QString excessive = " is excessive.  Press OK to proceed or Cancel to edit.";
    const QString length = "Warning|i|1|System length of  3500 ft feet" + excessive;
    const struct {
        int design; // A, or G with the Green-Ampt model on
        Texts edits;
        QString answers; // O for OK, C for Cancel
        Texts boxes;
        QString focus; // empty: the results are shown
    } cases[] = {
        // clang-format off
        {0, {"txtSYL=3500 ft"}, "C", {length}, "txtSYL"}, // warning cancelled
        // an accepted warning goes on to the next check
        {0, {"txtSYL=3500 ft", "txtGPM=", "txtAPPL=4"}, "O", {length, "Error|!|0|Invalid system capacity."}, "txtGPM"},
        {2, {"txtKS=0"}, "", {"Error|!|0|Invalid saturated hydraulic conductivity."}, "txtKS"},
        {0, {"txtKS=0", "txtOmega=x"}, "", {}, ""}, // Green-Ampt inputs unchecked with the model off
        {2, {"txtKS=0", "family"}, "", {"Error|!|0|Please select an Intake Family"}, "cboIntakeFamily"},
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
        ModalAnswer replies(c.answers);
        turnToResults(design, edits);
        QCOMPARE(replies.lines(), c.boxes);
        if (c.focus.isEmpty()) {
            QCOMPARE(tabs()->currentIndex(), 1);
            QCOMPARE(outputsAndOptions(), QStringLiteral("111100001111"));
            tabs()->setCurrentIndex(0); // back to the input side
        } else {
            // The window's focus child: the control that has the focus while it is active.
            QVERIFY(f_->w->focusWidget());
            QCOMPARE(f_->w->focusWidget()->objectName(), c.focus);
        }
        QCOMPARE(tabs()->currentIndex(), 0);
        QCOMPARE(outputsAndOptions(), QStringLiteral("000011110000"));
    }
}

void ResultsPageTest::completeDesigns() {
    // The first family opens on slot 1; Green-Ampt shows its own results whatever the slot.
    for (const auto& [design, shown] : {std::pair{0, kA2}, std::pair{2, kG1}}) {
        init();
        ModalAnswer answer;
        turnToResults(kResultsDesigns[design]);
        QVERIFY(answer.boxes.empty());
        QCOMPARE(text("txtIC"), QString::number(kResultsPages[shown].slot));
        QCOMPARE(page(), expected(kResultsPages[shown]));
    }
}

void ResultsPageTest::slotButtonsAndRecomputation() {
    const struct {
        int design, listIndex;
        Texts shown; // as navigation() reads them
    } cases[] = {
        {0, 0, {"1", "0.1 NRCS Intake Family", "-", "0.3 Intake"}},
        {0, 6, {"3", "3.0 NRCS Intake Family", "2.0 Intake", "-"}},
        {2, 3, {"2", "Green and Ampt Infiltration", "-", "-"}},
    };
    for (const auto& c : cases) {
        init();
        rainfold::DesignRecord design = kResultsDesigns[c.design];
        design.intakeFamilyIndex = c.listIndex;
        ModalAnswer answer;
        turnToResults(design);
        QVERIFY(answer.boxes.empty());
        QCOMPARE(navigation(), c.shown);
    }

    init();
    ModalAnswer answer;
    turnToResults(kResultsDesigns[0]);
    QCOMPARE(navigation(), Texts({"2", "1.0 NRCS Intake Family", "0.5 Intake", "1.5 Intake"}));
    const auto cell = [this] {
        return Texts{QString::number(grid()->currentColumn()), text("txtCol")};
    };
    QTest::mouseClick(button("cmdNext"), Qt::LeftButton);
    QCOMPARE(navigation(), Texts({"3", "1.5 NRCS Intake Family", "1.0 Intake", "-"}));
    QCOMPARE(page(), expected(kResultsPages[kA3]));
    QCOMPARE(cell(), Texts({"4", "4"}));
    QCOMPARE(colours(grid()->currentRow(), 4), QStringLiteral("#0000ff #c0c0c0"));
    QTest::mouseClick(button("cmdPrev"), Qt::LeftButton);
    QTest::mouseClick(button("cmdPrev"), Qt::LeftButton);
    QCOMPARE(navigation(), Texts({"1", "0.5 NRCS Intake Family", "-", "1.0 Intake"}));
    QCOMPARE(page(), expected(kResultsPages[kA1]));
    QCOMPARE(cell(), Texts({"4", "4"}));

    // At the end of the list the slot stays, yet the design is computed again as it now stands.
    f_->field("txtGPM")->setText("1000");
    f_->w->cmdPrev_Click();
    QCOMPARE(Texts({text("txtIC"), text("lblGPM1"), text("lblGPM2"), text("lblGPM3")}),
             Texts({"1", "900", "1000", "1100"}));
    QVERIFY(answer.boxes.empty());
}

void ResultsPageTest::cellHighlightAndChart() {
    for (const ResultsRefChart& ref : kResultsCharts) {
        init();
        ModalAnswer answer;
        turnToResults(kResultsDesigns[ref.design]);
        auto* view = f_->get<RateChart>("MSChart1");
        const auto location = [this] {
            return Texts{text("txtCol"), text("txtHP"), text("txtTS"), text("txtTP")};
        };
        clickCell(ref.row, ref.column);
        QCOMPARE(colours(ref.row, ref.column), QStringLiteral("#0000ff #c0c0c0"));
        QCOMPARE(location(), Texts({QString::number(ref.column), ref.txtHP, ref.txtTS, ref.txtTP}));
        QVERIFY(!f_->get<QGroupBox>("frmLocation")->isHidden());
        // Both curves and the ponding marker; the storage marker is one series more.
        QCOMPARE(view->chart()->series().size(), ref.storage ? 4 : 3);

        // A cell of the first three columns: not highlighted, nothing redrawn, the column noted.
        QChart* drawn = view->chart();
        const int row = ref.row == 0 ? 1 : 0;
        clickCell(row, 2);
        QCOMPARE(colours(ref.row, ref.column), QStringLiteral("default"));
        QCOMPARE(colours(row, 2), QStringLiteral("default"));
        QCOMPARE(location(), Texts({"2", ref.txtHP, ref.txtTS, ref.txtTP}));
        QCOMPARE(view->chart(), drawn);
        QVERIFY(answer.boxes.empty());
    }
}

void ResultsPageTest::engineFaultLeavesTheWindowUsable() {
    rainfold::DesignRecord design = kResultsDesigns[0];
    design.intakeFamilyIndex = rainfold::kCustomizedValuesIndex;
    {
        ModalAnswer replies;
        turnToResults(design, {"txtUk=0", "txtUN=-0.4"});
        QCOMPARE(replies.lines(), Texts{"Error|!|1|K and N must not be 0 for Customized Values."});
    }
    QCOMPARE(tabs()->currentIndex(), 0);
    QCOMPARE(outputsAndOptions(), QStringLiteral("000011110000"));

    // Corrected, the same window computes; slot 1 of customised values is the seventh family.
    f_->field("txtUk")->setText("20");
    ModalAnswer answer;
    tabs()->setCurrentIndex(1);
    QCOMPARE(tabs()->currentIndex(), 1);
    QCOMPARE(navigation(), Texts({"2", "Customized Values", "3.0 Intake", "-"}));
    QTest::mouseClick(button("cmdPrev"), Qt::LeftButton);
    QCOMPARE(navigation(), Texts({"1", "3.0 NRCS Intake Family", "-", "Customized Values"}));
    QVERIFY(answer.boxes.empty());
}

QTEST_MAIN(ResultsPageTest)
#include "results_page_test.moc"
