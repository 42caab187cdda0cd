// Every window as users have it: application fonts of 9 to 12 points, in the desktop's own
// family and in DejaVu Sans, on a 1280 x 720 screen (1920 x 1080 at 150 %, or 1366 x 768 less a
// panel), at the size the window opens with and at its least size. No text is cut off, no
// control lies over another, nothing lies beyond the screen but what its page scrolls; each
// capacity heading and value box of the results page stands in its own column of the table; a
// maximised window gives its room to the results table and the chart.

#include "DesignExplorer.h"
#include "LayoutCheck.h"
#include "ResultsPageFixture.h"
#include "dialogs/frmAbout.h"
#include "dialogs/frmPreview.h"
#include "printout.h"

class WindowLayoutTest : public QObject, ResultsPage {
    Q_OBJECT

    QRect screen_; // the screen's free area less a title bar
    QFont original_;

    // Each size in the desktop's family, and in DejaVu Sans where that is another.
    QList<QFont> fonts() const {
        QList<QFont> fonts;
        for (const QString& family : {original_.family(), QStringLiteral("DejaVu Sans")})
            for (int points : {9, 10, 11, 12})
                if (fonts.size() < 4 ||
                    QFontInfo(QFont(family)).family() != QFontInfo(original_).family())
                    fonts << QFont(family, points);
        return fonts;
    }
    // A main window in `font` at the top left of the screen, at its least size if asked.
    void open(const QFont& font, bool least) {
        QApplication::setFont(font);
        f_ = std::make_unique<WindowFixture>();
        f_->w->move(screen_.topLeft());
        if (least)
            f_->w->resize(1, 1);
        QVERIFY(f_->active);
    }
    // Each capacity's heading, unit, boxes and average in that capacity's column of the table.
    QStringList offColumn() const {
        QStringList off;
        for (int k = 0; k < 3; ++k) {
            const QPoint origin(grid()->columnViewportPosition(3 + k), 0);
            const int left = grid()->viewport()->mapToGlobal(origin).x();
            for (const char* name : {"lblGPM%2", "lblGPMUnit%2", "txtHours(%1)", "txtHPV(%1)",
                                     "txtTPV(%1)", "txtWARP(%1)"}) {
                const QWidget* w = f_->w->resultsView()->findChild<QWidget*>(
                    QString(name)
                        .replace("%1", QString::number(k))
                        .replace("%2", QString::number(k + 1)));
                const int centre = w->mapToGlobal(w->rect().center()).x();
                if (centre <= left || centre >= left + grid()->columnWidth(3 + k))
                    off << w->objectName() + " off its column";
            }
        }
        return off;
    }

    // The print and plot previews of the results shown, as they open, and the About box.
    template <class Check> void checkPreviewsAndAbout(const Check& check) {
        const rainfold::PrintInputs in = f_->w->printInputs();
        for (const bool plot : {false, true}) {
            frmPreview preview(f_->w.get());
            preview.Open(f_->w.get(), "Preview", [&](rainfold::DrawingSurface& s) {
                plot ? rainfold::PrintPlot(s, in) : rainfold::PrintReport(s, in);
            });
            preview.fitToScreen();
            preview.show();
            preview.move(preview.x(), screen_.top()); // below its title bar
            // The whole page can be scrolled into view.
            QCOMPARE(preview.findChild<QScrollArea*>()->widget()->size(), preview.picture().size());
            check(&preview);
        }
        frmAbout about(f_->w.get());
        about.show();
        about.move(screen_.topLeft());
        check(&about);
    }

private slots:
    void initTestCase() {
        original_ = QApplication::font();
        const QRect free = QGuiApplication::primaryScreen()->availableGeometry();
        QCOMPARE(free.size(), QSize(1280, 720));
        screen_ = free.adjusted(0, 30, 0, 0);
    }
    void cleanup() { QApplication::setFont(original_); }

    void everyWindow() {
        // The input page with every optional control shown (K and N, Green-Ampt and its
        // marker) and a storage panel or the cell editor open; the results page of an intake
        // family (design 0) and of Green-Ampt (2), then their previews and the About box; the
        // Design Explorer.
        const struct {
            const char *option, *focus; // a field, or the segment column edited
            const char *length, *panel;
        } scenes[] = {{"mnuOptionsSR1", "2", "1287", nullptr},
                      {"mnuOptionsSR1", "1", "1287", nullptr},
                      {"mnuOptionsSR3", "1", "2999.9", "frmSurfStore"},
                      {"mnuOptionsSR3", "2", "2999.9", "frmResidueStore"},
                      {"mnuOptionsSR0", "txtResidue", "1287", nullptr},
                      {"mnuOptionsSR2", "txtSurfStore", "1287", "frmSurfStore"},
                      {"mnuOptionsSR2", "txtResidue", "1287", "frmResidueStore"},
                      {"results", "0", "", nullptr},
                      {"results", "2", "", nullptr},
                      {"explorer", "0", "", nullptr}};
        // The residue label stays behind the table; the editor lies on its cell.
        const QList<QSet<QString>> meant = {{"lblResidue", "msgSurfStore"},
                                            {"txtEdit", "msgSurfStore"}};
        for (const QFont& font : fonts())
            for (const bool least : {false, true})
                for (const auto& c : scenes) {
                    const QString option = c.option;
                    const QString context = QStringLiteral("%1 %2 pt%3, %4 %5")
                                                .arg(font.family())
                                                .arg(font.pointSize())
                                                .arg(least ? " least" : "", c.option, c.focus);
                    const auto check = [&](QWidget* window, QStringList problems = {}) {
                        QApplication::processEvents();
                        problems << layout_check::Problems(window, screen_, meant);
                        QVERIFY2(problems.isEmpty(),
                                 qPrintable(context + ": " + problems.join("; ")));
                    };
                    open(font, least);
                    ModalAnswer none;
                    if (option == "explorer") {
                        f_->put(kResultsDesigns[0]);
                        f_->trigger("mnuToolsDesignExplorer");
                        auto* explorer = f_->w->findChild<DesignExplorer*>();
                        explorer->move(screen_.topLeft());
                        QTRY_VERIFY_WITH_TIMEOUT(!explorer->computing(), 20000);
                        check(explorer);
                    } else if (option == "results") {
                        turnToResults(kResultsDesigns[QString(c.focus).toInt()]);
                        QCOMPARE(tabs()->currentIndex(), 1);
                        check(f_->w.get(), offColumn());
                        if (!least && !QTest::currentTestFailed())
                            checkPreviewsAndAbout(check);
                    } else {
                        f_->get<QComboBox>("cboIntakeFamily")
                            ->setCurrentIndex(rainfold::kCustomizedValuesIndex);
                        f_->trigger("mnuOptionsGreenAmpt");
                        f_->field("txtSYL")->setText(c.length);
                        f_->trigger(c.option);
                        auto* table = f_->get<QTableWidget>("msgSurfStore");
                        if (c.focus[0] == 't') {
                            f_->focus(c.focus);
                        } else {
                            table->setCurrentCell(5, QString(c.focus).toInt());
                            f_->focus("msgSurfStore");
                            QTest::keyClick(table, Qt::Key_X);
                            QCOMPARE(f_->field("txtEdit")->fontInfo().pointSizeF(),
                                     table->fontInfo().pointSizeF());
                        }
                        // Only the panel of the column or field, and only under a user-defined
                        // option.
                        for (const char* panel : {"frmSurfStore", "frmResidueStore"})
                            QCOMPARE(f_->get(panel)->isHidden(),
                                     !c.panel || strcmp(c.panel, panel));
                        check(f_->w.get());
                    }
                    if (QTest::currentTestFailed())
                        return;
                }
        // Maximised, the table reaches down to the averages under it and the chart to the page's
        // right edge: nothing is left floating in a corner.
        open(original_, false);
        turnToResults(kResultsDesigns[0]);
        f_->w->showMaximized();
        QTRY_VERIFY(f_->w->width() > 1200 && f_->w->height() > 650);
        const QWidget* page = f_->w->resultsView();
        const QWidget* chart = f_->get("MSChart1");
        QVERIFY(grid()->mapTo(page, QPoint(0, grid()->height())).y() > page->height() - 80);
        QVERIFY(chart->mapTo(page, QPoint(chart->width(), 0)).x() > page->width() - 30);
    }
};

QTEST_MAIN(WindowLayoutTest)
#include "window_layout_test.moc"
