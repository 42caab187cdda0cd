// Tools > "Design Explorer...": opened after the page change's checks, a map computed away from
// the window, a second request replacing the first, and an answer taken back with "Use" that the
// results page then confirms.

#include "DesignExplorer.h"
#include "WindowFixture.h"

#include "calc.h"
#include "design_file.h"
#include "results_page.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>

#include <cmath>

class ExplorerTest : public QObject {
    Q_OBJECT

private slots:
    void failedCheckKeepsItClosed();
    void mapAndUse();
};

void ExplorerTest::failedCheckKeepsItClosed() {
    WindowFixture f;
    rainfold::DesignRecord d;
    rainfold::OpenDesign(RAINFOLD_EXAMPLES_DIR "/spray-1300ft-800gpm.rfd", d);
    d.txtSYL = "";
    f.w->setDesign(d);
    ModalAnswer answer;
    f.trigger("mnuToolsDesignExplorer");
    QCOMPARE(answer.boxes.size(), size_t(1));
    QCOMPARE(answer.boxes[0].title, QStringLiteral("Error"));
    QCOMPARE(answer.boxes[0].text, QStringLiteral("Invalid system length."));
    QCOMPARE(f.w->focusWidget(), f.field("txtSYL")); // the focus child of the window
    QVERIFY(!f.w->findChild<DesignExplorer*>());
}

void ExplorerTest::mapAndUse() {
    WindowFixture f;
    rainfold::DesignRecord d;
    QVERIFY(rainfold::OpenDesign(RAINFOLD_EXAMPLES_DIR "/spray-1300ft-800gpm.rfd", d).ok);
    f.w->setDesign(d);
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
    rainfold::DesignRecord corner =
        rainfold::DesignAt(d, rainfold::ExploreAxis::Storage, 150, map->yValues.back());
    rainfold::Results results;
    QVERIFY(rainfold::Calc_Results(corner, results).ok());
    QCOMPARE(map->runoff.back().back(),
             *rainfold::BuildResultsPage(corner, results, 2).WeightedRunoff[2]);

    // The smallest diameter for no runoff at the design's 1 in per pass, taken back.
    const QString answer = explorer->findChild<QLabel*>("lblDiameterAnswer")->text();
    const QString prefix =
        QStringLiteral("Smallest wetted diameter for the target at 1.00 in per pass: ");
    QVERIFY2(answer.startsWith(prefix), qPrintable(answer));
    const QString diameter = answer.mid(prefix.size()).section(QLatin1Char(' '), 0, 0);
    f.get<QTabWidget>("SSTab1")->setCurrentIndex(1);
    explorer->findChild<QPushButton*>("cmdUseDiameter")->click();
    QCOMPARE(f.field("txtWetDiam")->text(), diameter);
    QCOMPARE(f.get<QTabWidget>("SSTab1")->currentIndex(), 0);

    // The results page agrees: no runoff at that diameter, some at 0.1 ft less.
    const auto pageAverage = [&](const QString& wetted) {
        rainfold::DesignRecord at = f.w->design();
        at.txtWetDiam = wetted.toStdString();
        rainfold::Results r;
        rainfold::Calc_Results(at, r);
        return *rainfold::BuildResultsPage(at, r, 2).WeightedRunoff[2];
    };
    QCOMPARE(pageAverage(diameter), 0.0);
    QVERIFY(pageAverage(QString::number(diameter.toDouble() - 0.1, 'f', 1)) > 0);
}

QTEST_MAIN(ExplorerTest)
#include "explorer_test.moc"
