#pragma once
// A window turned to its "Results" page, that page read back control by control, and the pages
// tests/data/results_page.py works out for its reference designs.

#include "WindowFixture.h"
#include "results/ResultsView.h"

#include <QPushButton>
#include <QTableWidget>

namespace {
#include "../data/results_page.inc"

// kResultsPages holds design A at slots 1, 2 and 3, then design G at slot 1.
enum { kA1, kA2, kA3, kG1 };
} // namespace

struct ResultsPage {
    std::unique_ptr<WindowFixture> f_;

    QTabWidget* tabs() const { return f_->get<QTabWidget>("SSTab1"); }
    QTableWidget* grid() const { return f_->w->resultsView()->grid(); }
    QPushButton* button(const char* name) const { return f_->get<QPushButton>(name); }
    // A control of the results page (the input page has a label named lblIntakeFamily too).
    QString text(const QString& name) const {
        QWidget* page = f_->w->resultsView();
        if (auto* label = page->findChild<QLabel*>(name))
            return label->text();
        return page->findChild<QLineEdit*>(name)->text();
    }
    // Puts a design and its model in, edits fields ("txtSYL=3500 ft"), and turns to "Results".
    void turnToResults(const rainfold::DesignRecord& design, const Texts& edits = {}) {
        f_->put(design);
        for (const QString& edit : edits)
            f_->field(edit.section('=', 0, 0))->setText(edit.section('=', 1));
        tabs()->setCurrentIndex(1);
    }
    // txtIC, the caption, then Prev and Next ("-" when hidden).
    Texts navigation() const {
        const auto caption = [](const QPushButton* b) { return b->isHidden() ? "-" : b->text(); };
        return {text("txtIC"), text("lblIntakeFamily"), caption(button("cmdPrev")),
                caption(button("cmdNext"))};
    }
    // The caption, the three cases' capacities, hours, HPV, TPV and WARP, then the grid.
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
    // txtCol and the "Location" numbers of the chart.
    Texts location() const { return {text("txtCol"), text("txtHP"), text("txtTS"), text("txtTP")}; }
    QString colours(int row, int column) const {
        const QTableWidgetItem* item = grid()->item(row, column);
        if (item->background().style() == Qt::NoBrush && item->foreground().style() == Qt::NoBrush)
            return QStringLiteral("default");
        return item->background().color().name() + ' ' + item->foreground().color().name();
    }
};
