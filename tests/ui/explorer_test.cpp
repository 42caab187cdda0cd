// Tools > "Design Explorer...": kept closed by a failed check of the page change, then a map
// computed away from the window, a second request replacing the first, and an answer taken back
// with "Use" that the results page then confirms.

#include "DesignExplorer.h"
#include "WindowFixture.h"

#include "calc.h"
#include "design_file.h"
#include "results_page.h"

#include <QComboBox>
#include <QPushButton>
#include <QSignalSpy>

// The weighted average runoff of the middle case on the results page of a design; -1 if none.
static double PageAverage(const rainfold::DesignRecord& d) {
    rainfold::Results r;
    const bool ok = rainfold::Calc_Results(d, r).ok();
    return ok ? *rainfold::BuildResultsPage(d, r, 2).WeightedRunoff[2] : -1;
}

class ExplorerTest : public QObject {
    Q_OBJECT

private slots:
    void closedByAFailedCheckThenMapAndUse() {
        WindowFixture f;
        rainfold::DesignRecord d;
        QVERIFY(rainfold::OpenDesign(RAINFOLD_EXAMPLES_DIR "/spray-1300ft-800gpm.rfd", d).ok);
        f.w->setDesign(d);
        f.field("txtSYL")->clear();
        {
            ModalAnswer answer;
            f.trigger("mnuToolsDesignExplorer");
            QCOMPARE(answer.lines(), Texts{"Error|!|0|Invalid system length."});
            QCOMPARE(f.w->focusWidget(), f.field("txtSYL")); // the focus child of the window
            QVERIFY(!f.w->findChild<DesignExplorer*>());
        }
        f.field("txtSYL")->setText(QString::fromStdString(d.txtSYL));
        f.trigger("mnuToolsDesignExplorer");
        auto* explorer = f.w->findChild<DesignExplorer*>();
        QVERIFY(explorer && explorer->isVisible() && !explorer->isModal());
        QCOMPARE(explorer->windowTitle(), QStringLiteral("Design Explorer"));
        QCOMPARE(explorer->findChild<QLineEdit*>("txtTarget")->text(), QStringLiteral("0.0"));

        // A second request while the first runs: the map that arrives is the second one's.
        QSignalSpy finished(explorer, &DesignExplorer::mapFinished);
        explorer->findChild<QComboBox*>("cboYAxis")->setCurrentIndex(1);
        QVERIFY(finished.wait(20000));
        QCOMPARE(finished.size(), 1);
        const rainfold::ExploreMap* map = explorer->map();
        QVERIFY(map);
        QCOMPARE(map->axis, rainfold::ExploreAxis::Storage);
        QVERIFY(map->xValues.size() >= 60 && map->yValues.size() >= 40);
        // A corner of the map against the results page of that design.
        QCOMPARE(map->runoff.back().back(),
                 PageAverage(rainfold::DesignAt(d, rainfold::ExploreAxis::Storage, 150,
                                                map->yValues.back())));

        // The smallest diameter for no runoff at the design's 1 in per pass, taken back.
        const QString answer = explorer->findChild<QLabel*>("lblDiameterAnswer")->text();
        const QString prefix =
            QStringLiteral("Smallest wetted diameter for the target at 1.00 in per pass: ");
        QVERIFY2(answer.startsWith(prefix), qPrintable(answer));
        const QString diameter = answer.mid(prefix.size()).section(QLatin1Char(' '), 0, 0);
        f.get<QTabWidget>("SSTab1")->setCurrentIndex(1);
        explorer->findChild<QPushButton*>("cmdUseDiameter")->click();
        QCOMPARE(f.get<QTabWidget>("SSTab1")->currentIndex(), 0);
        rainfold::DesignRecord at = f.w->design();
        // Then the largest depth per pass at that diameter, taken back into its own field.
        const QString depth = explorer->findChild<QLabel*>("lblDepthAnswer")->text();
        QVERIFY2(depth.startsWith("Largest depth per pass"), qPrintable(depth));
        explorer->findChild<QPushButton*>("cmdUseDepth")->click();
        QCOMPARE(Texts({f.field("txtWetDiam")->text(), f.field("txtAPPL")->text()}),
                 Texts({diameter, depth.section(' ', -2, -2)}));

        // The results page agrees: no runoff at that diameter, some at 0.1 ft less.
        QCOMPARE(PageAverage(at), 0.0);
        at.txtWetDiam = QString::number(diameter.toDouble() - 0.1, 'f', 1).toStdString();
        QVERIFY(PageAverage(at) > 0);
    }
};

QTEST_MAIN(ExplorerTest)
#include "explorer_test.moc"
