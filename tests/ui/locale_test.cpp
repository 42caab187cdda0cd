// A German desktop, whose decimal mark is a comma and whose numbers group thousands with a point,
// sees what an English one sees: the results page with its chart and the printed report and
// plot pixel for pixel, a saved design file byte for byte. Only the status bar's date follows
// the desktop. The locale is switched inside the program, both where the C library and where Qt
// read it.

#include "ResultsPageFixture.h"
#include "dialogs/frmPreview.h"
#include "printout.h"

#include <clocale>

namespace {

struct Shown {
    Texts page, location;
    QImage pages[3]; // the results page, the report's preview, the plot's preview
    QByteArray file;
    QString date;
};

} // namespace

class LocaleTest : public QObject, ResultsPage {
    Q_OBJECT

    // The Green-Ampt design of the reference pages: contents below 1, storage in inches, a
    // length over a thousand feet, the chart of the cell the page change makes current.
    void showIn(const char* locale, const QLocale& qtLocale, Shown& shown) {
        QVERIFY(std::setlocale(LC_ALL, locale));
        QLocale::setDefault(qtLocale);
        f_ = std::make_unique<WindowFixture>();
        ModalAnswer none;
        turnToResults(kResultsDesigns[2]);
        QApplication::processEvents();
        shown.page = page();
        shown.location = location();
        shown.pages[0] = f_->get("SSTab1")->grab().toImage();
        const rainfold::PrintInputs in = f_->w->printInputs();
        for (const bool plot : {false, true}) {
            frmPreview preview;
            preview.Open(nullptr, "Preview", [&](rainfold::DrawingSurface& s) {
                plot ? rainfold::PrintPlot(s, in) : rainfold::PrintReport(s, in);
            });
            shown.pages[plot ? 2 : 1] = preview.picture().toImage();
        }
        QTemporaryDir dir;
        const QString file = dir.filePath("design.rfd");
        f_->w->setFileDialog([&](QWidget*, const FileDialogRequest&) { return file; });
        f_->trigger("mnuFileSave");
        shown.file = ReadAll(file);
        shown.date = f_->get<QLabel>("sbStatusBarDate")->text();
        QVERIFY(none.boxes.empty());
    }

private slots:
    void sameEverywhereButTheDate() {
        Shown english, german;
        showIn("de_DE.UTF-8", QLocale(QLocale::German, QLocale::Germany), german);
        showIn("C", QLocale::c(), english);
        QLocale::setDefault(QLocale::c());
        if (QTest::currentTestFailed())
            return;

        const ResultsRefChart& chart = kResultsCharts[3];
        for (const Shown* shown : {&english, &german}) {
            QCOMPARE(shown->page, expected(kResultsPages[kG1]));
            QCOMPARE(shown->location, Texts({"4", chart.txtHP, chart.txtTS, chart.txtTP}));
        }
        for (int k = 0; k < 3; ++k)
            QVERIFY2(german.pages[k] == english.pages[k], qPrintable(QString::number(k)));
        // The numbers as typed, with their points.
        QVERIFY(english.file.contains("\"1300\",\"800\",\"1\",\"40\"\r\n"));
        QVERIFY(english.file.contains("\"10\",\"110\",\"0.45\",\"0.25\",\"1000\",\"0.0002\""));
        QCOMPARE(german.file, english.file);
        QVERIFY(german.date != english.date);
    }
};

QTEST_MAIN(LocaleTest)
#include "locale_test.moc"
