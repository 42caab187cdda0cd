// Tools > "Design Explorer...": kept closed by a failed check of the page change; a map computed
// away from the window, a second request replacing the first; "Use" under both criteria and both
// axes, after which the results page shows a runoff at or under the target; the keyboard, the
// access keys, the refused targets, a layout that keeps still, the saved files; and the picture's
// package bands and contour levels against the reference panel and the guide.

#include "DesignExplorer.h"
#include "ExplorerMapPicture.h"
#include "ExplorerMapWidget.h"
#include "WindowFixture.h"

#include "../engine/page_average.h"
#include "design_file.h"
#include "format.h"

#include <QComboBox>
#include <QGroupBox>
#include <QImage>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>

#include <cmath>

using namespace rainfold;

namespace {

DesignRecord Spray() {
    DesignRecord d;
    OpenDesign(RAINFOLD_EXAMPLES_DIR "/spray-1300ft-800gpm.rfd", d);
    return d;
}

// The runoff the results page gives a design by a criterion, to the last digit; -1 on a fault.
double PageRunoff(const DesignRecord& d, bool outerEnd) {
    return (outerEnd ? PageOuterEnd(d) : PageAverage(d)).value_or(-1);
}

DesignExplorer* OpenExplorer(WindowFixture& f, const DesignRecord& d) {
    f.put(d);
    f.trigger("mnuToolsDesignExplorer");
    return f.w->findChild<DesignExplorer*>();
}

double Number(const QString& text) {
    double value = -1;
    ParseDecimal(text.trimmed().toStdString(), value);
    return value;
}

} // namespace

class ExplorerTest : public QObject {
    Q_OBJECT

private slots:
    void closedByAFailedCheckThenMapsReplacedInTurn() {
        WindowFixture f;
        DesignRecord d = Spray();
        d.txtSYL.clear();
        {
            ModalAnswer answer;
            QVERIFY(!OpenExplorer(f, d));
            QCOMPARE(answer.lines(), Texts{"Error|!|0|Invalid system length."});
            QCOMPARE(f.w->focusWidget(), f.field("txtSYL")); // the focus child of the window
        }
        DesignExplorer* explorer = OpenExplorer(f, Spray());
        QVERIFY(explorer && explorer->isVisible() && !explorer->isModal());
        QCOMPARE(explorer->windowTitle(), QStringLiteral("Design Explorer"));
        QCOMPARE(explorer->findChild<QLineEdit*>("txtTarget")->text(), QStringLiteral("0.0"));
        // A second request while the first runs: the map that arrives is the second one's.
        QSignalSpy finished(explorer, &DesignExplorer::mapFinished);
        explorer->findChild<QComboBox*>("cboYAxis")->setCurrentIndex(1);
        QVERIFY(finished.wait(20000));
        QCOMPARE(finished.size(), 1);
        const ExploreMap* map = explorer->map();
        QVERIFY(map && map->axis == ExploreAxis::Storage && map->xValues.size() == 60);
        // A corner of the map against the results page of that design.
        QCOMPARE(map->runoff.back().back(),
                 PageRunoff(DesignAt(Spray(), ExploreAxis::Storage, 150, 1), false));
    }

    // Target 2 % at 18 ft and 0.85 in (the design: 40 ft, 1 in): each answer names its point,
    // "Use" writes it whole and returns to "Input Data", and the results page then shows a runoff
    // at or under the target by the criterion, while one step less generous does not meet it.
    void useWritesTheWholePointUnderEitherCriterionAndAxis() {
        for (int outerEnd : {0, 1})
            for (int storageAxis : {0, 1})
                for (int depthAnswer : {0, 1}) {
                    const QString label = QStringLiteral("criterion %1 axis %2 answer %3")
                                              .arg(outerEnd)
                                              .arg(storageAxis)
                                              .arg(depthAnswer);
                    WindowFixture f;
                    DesignExplorer* explorer = OpenExplorer(f, Spray());
                    QVERIFY(explorer);
                    explorer->findChild<QLineEdit*>("txtTarget")->setText("2");
                    explorer->findChild<QComboBox*>("cboCriterion")->setCurrentIndex(outerEnd);
                    explorer->findChild<QComboBox*>("cboYAxis")->setCurrentIndex(storageAxis);
                    auto* map = explorer->findChild<ExplorerMapWidget*>("mapView");
                    QTest::mouseClick(map, Qt::LeftButton, {},
                                      map->pixelOf(18, storageAxis ? 0.5 : 0.85).toPoint());
                    const QString answer =
                        explorer
                            ->findChild<QLabel*>(depthAnswer ? "lblDepthAnswer"
                                                             : "lblDiameterAnswer")
                            ->text();
                    // "... at 0.85 in per pass: 25.1 ft ..." or "... with 18.0 ft: 0.72 in ...".
                    const QRegularExpressionMatch named =
                        QRegularExpression(depthAnswer ? "with ([0-9.]+) ft: ([0-9.]+) in"
                                                       : "at ([0-9.]+) in per pass: ([0-9.]+) ft")
                            .match(answer);
                    QVERIFY2(named.hasMatch(), qPrintable(label + ": " + answer));
                    QVERIFY2(answer.contains(QRegularExpression(
                                 "[0-9.]+ % over the circle, [0-9.]+ % at the outer end")),
                             qPrintable(answer));
                    const double diameter = Number(named.captured(depthAnswer ? 1 : 2));
                    const double depth = Number(named.captured(depthAnswer ? 2 : 1));
                    if (storageAxis && !depthAnswer)
                        QCOMPARE(depth, 1.0); // the design's own: storage is not a design field
                    f.get<QTabWidget>("SSTab1")->setCurrentIndex(1);
                    explorer
                        ->findChild<QPushButton*>(depthAnswer ? "cmdUseDepth" : "cmdUseDiameter")
                        ->click();
                    QCOMPARE(f.get<QTabWidget>("SSTab1")->currentIndex(), 0);
                    const DesignRecord used = f.w->design();
                    QCOMPARE(Val(used.txtWetDiam), diameter);
                    QCOMPARE(Val(used.txtAPPL), depth);

                    f.get<QTabWidget>("SSTab1")->setCurrentIndex(1);
                    const QString shown =
                        outerEnd ? f.get<QTableWidget>("msgResults")->item(9, 4)->text()
                                 : f.field("txtWARP(1)")->text();
                    QVERIFY2(Number(shown) >= 0 && Number(shown) <= 2, qPrintable(label + shown));
                    QVERIFY(PageRunoff(used, outerEnd) <= 2);
                    DesignRecord tighter = used;
                    (depthAnswer ? tighter.txtAPPL : tighter.txtWetDiam) =
                        depthAnswer ? FixedText(depth + 0.01, 2) : FixedText(diameter - 0.1, 1);
                    QVERIFY2(PageRunoff(tighter, outerEnd) > 2, qPrintable(label));
                }
    }

    // The map takes the focus and its arrows move the selection one grid step; every control
    // has an access key of its own; a target that is not a decimal number from 0 to 100 draws no
    // target line; the answers, the pointer's line and the chart keep their places.
    void keyboardAccessKeysTargetsAndAStillLayout() {
        WindowFixture f;
        DesignExplorer* explorer = OpenExplorer(f, Spray());
        QSignalSpy finished(explorer, &DesignExplorer::mapFinished);
        QVERIFY(finished.wait(20000));
        auto* map = explorer->findChild<ExplorerMapWidget*>("mapView");
        QVERIFY(map->focusPolicy() & Qt::TabFocus);
        const std::vector<double>& xs = explorer->map()->xValues;
        const double next = *std::upper_bound(xs.begin(), xs.end(), 40.0);
        QTest::keyClick(map, Qt::Key_Right);
        QVERIFY2(explorer->findChild<QLabel*>("lblSelected")
                     ->text()
                     .startsWith(QStringLiteral("Selected: %1 ft, 1.00 in per pass")
                                     .arg(QString::fromStdString(FixedText(next, 1)))),
                 qPrintable(explorer->findChild<QLabel*>("lblSelected")->text()));

        QString keys;
        for (QWidget* control : explorer->findChildren<QWidget*>()) {
            if (!(control->focusPolicy() & Qt::TabFocus) || !control->isVisibleTo(explorer) ||
                control->inherits("QScrollArea") || control->inherits("QScrollBar") ||
                !control->isEnabled())
                continue;
            auto* button = qobject_cast<QAbstractButton*>(control);
            const QLabel* label = nullptr;
            for (const QLabel* l : explorer->findChildren<QLabel*>())
                label = l->buddy() == control ? l : label;
            const QString text = button ? button->text() : label ? label->text() : QString();
            const qsizetype amp = text.indexOf('&');
            QVERIFY2(amp >= 0, control->metaObject()->className());
            keys += text.at(amp + 1).toLower();
        }
        for (const QChar key : keys)
            QVERIFY2(keys.count(key) == 1, qPrintable(keys));

        auto* answers = explorer->findChild<QGroupBox*>("fraAnswers");
        auto* chart = explorer->findChild<QWidget*>("chtPivot");
        const QRect answersAt = answers->geometry(), chartAt = chart->geometry();
        for (const char* text : {"nan", "0x10", "5%", "0,5", "101", "", "100", "0"}) {
            explorer->findChild<QLineEdit*>("txtTarget")->setText(text);
            QApplication::processEvents();
            const bool valid = QByteArray(text) == "100" || QByteArray(text) == "0";
            QCOMPARE(map->view().targetPct.has_value(), valid);
            QCOMPARE(explorer->findChild<QLabel*>("lblDiameterAnswer")->text() ==
                         QStringLiteral("Type a runoff target from 0 to 100 %."),
                     !valid);
            QCOMPARE(answers->geometry(), answersAt);
        }
        // The longest texts, the storage axis's, fit the room the answers keep.
        explorer->findChild<QComboBox*>("cboYAxis")->setCurrentIndex(1);
        QCOMPARE(answers->geometry(), answersAt);
        for (const char* name : {"lblDiameterAnswer", "lblDepthAnswer"}) {
            const QLabel* label = explorer->findChild<QLabel*>(name);
            QVERIFY2(label->heightForWidth(label->width()) <= label->height(), name);
        }
        const QPointF over = map->pixelOf(20, 0.5);
        QMouseEvent move(QEvent::MouseMove, over, map->mapToGlobal(over), Qt::NoButton,
                         Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(map, &move);
        QVERIFY2(explorer->findChild<QLabel*>("lblPointer")->text().endsWith("% at the outer end"),
                 qPrintable(explorer->findChild<QLabel*>("lblPointer")->text()));
        QCOMPARE(chart->geometry(), chartAt);
    }

    // Names typed without an extension get the file type's; the CSV starts with the design's
    // facts; the saved picture keeps the map as large as shown and adds the title block.
    void savedFilesGetTheirExtensionAndTheDesignsFacts() {
        WindowFixture f;
        DesignExplorer* explorer = OpenExplorer(f, Spray());
        QSignalSpy finished(explorer, &DesignExplorer::mapFinished);
        QVERIFY(finished.wait(20000));
        QTemporaryDir folder;
        explorer->setSaveDialog([&](QWidget*, const QString&) { return folder.filePath("map"); });
        for (const char* button : {"cmdSavePng", "cmdSavePdf", "cmdSaveCsv"})
            explorer->findChild<QPushButton*>(button)->click();
        QVERIFY(!QFileInfo::exists(folder.filePath("map")));
        QVERIFY(ReadAll(folder.filePath("map.pdf")).startsWith("%PDF-"));
        QVERIFY(ReadAll(folder.filePath("map.csv")).startsWith("Producer,Example Farms"));
        const QImage png(folder.filePath("map.png"));
        const QSize shown = explorer->findChild<QWidget*>("mapView")->size();
        QCOMPARE(png.width(), shown.width());
        QVERIFY(png.height() > shown.height());
    }

    // The picture at the map's least size: each package's bar spans its panel range on the
    // logarithmic axis, a tool tip at each end names it; the labels keep apart from each other
    // and from the subtitle; the contour labels are the guide's levels, the target's first.
    void bandsAndContourLevelsOfThePicture() {
        const QString guide = QString::fromUtf8(ReadAll(RAINFOLD_GUIDE_DIR "/explorer.html"));
        const QRegularExpressionMatch listed =
            QRegularExpression("Contour lines are labelled at ([0-9, and]+) %").match(guide);
        QVERIFY(listed.hasMatch());
        QStringList levels = listed.captured(1).split(QRegularExpression(",? and |, "));
        ExploreMap map;
        map.xValues = {1, 150};
        map.yValues = {0.25, 3};
        map.runoff = {{0, 0}, {40, 0}}; // every level crosses the square once
        render::ExplorerMapView view;
        view.map = &map;
        view.targetPct = 3;
        view.designDiameter = 40, view.designY = 1;
        const QSize least = ExplorerMapWidget().minimumSize();
        QImage image(least, QImage::Format_ARGB32);
        QPainter painter(&image);
        const render::ExplorerMapDrawn drawn =
            render::PaintExplorerMap(painter, QRectF(image.rect()), view);
        QStringList labels;
        for (const QString& label : drawn.contourLabels)
            labels << label.chopped(2);
        levels.prepend(QStringLiteral("3"));
        QCOMPARE(labels, levels);
        QCOMPARE(drawn.designNote, QString()); // on the map: its mark, no arrow
        view.designY = 4, view.designText = QStringLiteral("40 ft, 4 in per pass");
        QCOMPARE(render::PaintExplorerMap(painter, QRectF(image.rect()), view).designNote,
                 QStringLiteral("design off the map: 40 ft, 4 in per pass"));

        const QRectF plot = drawn.plot;
        const auto x = [&](double ft) {
            return plot.left() + plot.width() * std::log(ft) / std::log(150.0);
        };
        const std::map<QString, std::pair<double, double>> panel = {
            {"High Pressure Impact (Variable Spacing)", {80, 110}},
            {"Medium Pressure Impact", {70, 90}},
            {"Low Pressure Impact", {60, 70}},
            {"Low Pressure w/Rotators", {50, 60}},
            {"Low Pressure Spray on Pipeline", {30, 40}},
            {"Low Pressure Spray on Drop Tube", {20, 30}},
            {"Low Pressure Spray (180 Degrees)", {16, 20}},
            {"Ultra Low Pressure (LEPA Spray Mode)", {12, 18}},
            {"Ultra Low Pressure (LEPA Bubble Mode)", {1, 2}}};
        QCOMPARE(drawn.bands.size(), panel.size());
        const auto pixels = [](int size, bool bold) {
            QFont font;
            font.setPixelSize(size);
            font.setBold(bold);
            return QFontMetricsF(font);
        };
        const QFontMetricsF band = pixels(11, false); // 10.5 px, rounded
        const double titles = 6 + pixels(16, true).height() + pixels(12, false).height();
        for (const render::ExplorerBand& b : drawn.bands) {
            const auto [low, high] = panel.at(QString::fromUtf8(b.package->name));
            QVERIFY(std::fabs(b.bar.left() - x(low)) < 0.01 &&
                    std::fabs(b.bar.right() - x(high)) < 0.01);
            for (double edge : {b.bar.left(), b.bar.right()})
                QVERIFY(render::ExplorerBandAt(QRectF(image.rect()), view,
                                               QPointF(edge, b.bar.center().y()))
                            .contains(QString::fromUtf8(b.package->name)));
            const double top =
                b.labelFoot.y() - band.horizontalAdvance(QString::fromUtf8(b.package->label));
            QVERIFY2(top > titles, b.package->label);
            // Bars at one height neither overlap nor touch: each range reads on its own.
            for (const render::ExplorerBand& other : drawn.bands)
                QVERIFY2(&other == &b ||
                             (std::fabs(other.labelFoot.x() - b.labelFoot.x()) >= band.height() &&
                              (other.bar.top() != b.bar.top() || other.bar.left() > b.bar.right() ||
                               other.bar.right() < b.bar.left())),
                         b.package->label);
        }
    }
};

QTEST_MAIN(ExplorerTest)
#include "explorer_test.moc"
