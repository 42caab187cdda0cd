// Tools > "Green-Ampt Soil from Texture...": every class of the source fills the soil fields with
// its values in the fields' units, as typing would (the page turned to "Input Data", the
// variation recomputed from a root depth, the reminder when the initial water content is now
// above the saturated one), and nothing else; the dialog shows the source's own values, and fits
// a small screen with a large font.

#include "WindowFixture.h"

#include <cmath>

namespace {

struct SourceRow {
    QString name;
    QStringList values; // porosity, effective porosity, psi (cm), K (cm/h), as printed
};

QList<SourceRow> ReadSource() {
    QList<SourceRow> rows;
    QFile file(QStringLiteral(RAINFOLD_TEXTURE_SOURCE));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return rows;
    for (const QString& line : QString::fromUtf8(file.readAll()).split('\n')) {
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        QStringList cells = line.split('|');
        const QString name = cells.takeFirst();
        rows.push_back({name, cells});
    }
    return rows;
}

// Opens the dialog from the menu and lets `act` work it while it is shown.
void WorkDialog(WindowFixture& f, const std::function<void(QDialog*)>& act) {
    bool seen = false;
    ModalAnswer answer({}, [&](QWidget* modal) {
        if (auto* dialog = qobject_cast<QDialog*>(modal);
            dialog && dialog->objectName() == QLatin1String("frmSoilTexture")) {
            seen = true;
            act(dialog);
        }
    });
    f.trigger(QStringLiteral("mnuToolsGreenAmptSoil"));
    QVERIFY(seen);
}

} // namespace

class TextureDialogTest : public QObject {
    Q_OBJECT

private slots:
    void everyClassFillsItsValues() {
        const QList<SourceRow> source = ReadSource();
        QCOMPARE(source.size(), 11);
        for (int i = 0; i < source.size(); ++i) {
            const SourceRow& s = source[i];
            WindowFixture f;
            QVERIFY(f.active);
            rainfold::DesignRecord d = SampleDesign();
            // Odd classes: a wet field without a root depth (the variation stays as typed);
            // even ones: a drier field with a root depth of 1000 mm (the variation follows).
            const bool wet = i % 2 == 1;
            d.txtThetaI = wet ? "0.44" : "0.2";
            d.txtRzDepth = wet ? "" : "1000";
            d.txtOmega = ".0002";
            d.txtKS = d.txtHW = d.txtThetaS = "9";
            f.put(d);
            if (i == 0) { // from the results page: the fill turns to "Input Data" first
                f.get<QTabWidget>("SSTab1")->setCurrentIndex(1);
                QCOMPARE(f.get<QTabWidget>("SSTab1")->currentIndex(), 1);
            }

            QStringList shown;
            ModalAnswer reminders;
            WorkDialog(f, [&](QDialog* dialog) {
                auto* table = dialog->findChild<QTableWidget*>("tblTextures");
                auto* fill = dialog->findChild<QPushButton*>("cmdFill");
                QVERIFY(!fill->isEnabled()); // nothing chosen yet
                for (int c = 0; c < 5; ++c)
                    shown << table->item(i, c)->text();
                // The model is off: the dialog says the values wait for it.
                QVERIFY(dialog->findChild<QLabel*>("lblModelOff"));
                table->selectRow(i);
                fill->click();
            });
            QCOMPARE(shown, QStringList{s.name} + s.values);

            // The fields in their units, worked out here from the source's cm and cm/h.
            const double K = s.values[3].toDouble(), psi = s.values[2].toDouble();
            const double porosity = s.values[0].toDouble();
            const struct {
                const char* field;
                double value;
            } filled[] = {{"txtKS", 10 * K}, {"txtHW", 10 * psi}, {"txtThetaS", porosity}};
            for (const auto& x : filled) {
                const QString text = f.field(x.field)->text();
                QVERIFY2(std::fabs(text.toDouble() - x.value) <= 1e-12 * x.value,
                         qPrintable(s.name + ": " + x.field + " " + text));
                // Typed as a person would: no trailing zeros, no binary noise.
                QVERIFY2(QRegularExpression(R"(^\d+(\.\d{0,3}[1-9])?$)").match(text).hasMatch(),
                         qPrintable(s.name + ": " + x.field + " " + text));
            }
            // The fields of the day stay; the variation follows only a root depth.
            QCOMPARE(f.field("txtThetaI")->text(), QString::fromStdString(d.txtThetaI));
            QCOMPARE(f.field("txtRzDepth")->text(), QString::fromStdString(d.txtRzDepth));
            const QString omega =
                wet ? QStringLiteral(".0002") : QString::number((porosity - 0.2) / 1000, 'f', 4);
            QCOMPARE(f.field("txtOmega")->text(), omega);
            // The reminder exactly when the initial water content is now above the saturated.
            const Texts expected =
                porosity < (wet ? 0.44 : 0.2)
                    ? Texts{"Rainfold|-|0|The initital water content must be less than the "
                            "saturated water content."}
                    : Texts{};
            QCOMPARE(reminders.lines(), expected);
            QCOMPARE(f.get<QTabWidget>("SSTab1")->currentIndex(), 0);
            QVERIFY(!f.action("mnuOptionsGreenAmpt")->isChecked());
        }
    }

    void cancelChangesNothing() {
        WindowFixture f;
        QVERIFY(f.active);
        f.put(SampleDesign());
        f.trigger("mnuOptionsGreenAmpt");
        const rainfold::DesignRecord before = f.w->design();
        WorkDialog(f, [](QDialog* dialog) {
            QVERIFY(!dialog->findChild<QLabel*>("lblModelOff")); // the model is on
            dialog->findChild<QTableWidget*>("tblTextures")->selectRow(3);
            dialog->findChild<QPushButton*>("cmdCancel")->click();
        });
        const rainfold::DesignRecord after = f.w->design();
        QCOMPARE(after.txtKS, before.txtKS);
        QCOMPARE(after.txtHW, before.txtHW);
        QCOMPARE(after.txtThetaS, before.txtThetaS);
        QCOMPARE(after.txtOmega, before.txtOmega);
    }

    // At 9 and 12 pt the whole dialog fits a 1280 x 720 screen (with room for a task bar) and,
    // at the size it asks for, shows the whole table without scrolling, every heading and value
    // whole in its column and every label whole.
    void fitsSmallScreensAndLargeFonts() {
        for (const qreal points : {9.0, 12.0}) {
            QFont font = QApplication::font();
            font.setPointSizeF(points);
            QApplication::setFont(font);
            WindowFixture f;
            QVERIFY(f.active);
            WorkDialog(f, [&](QDialog* dialog) {
                const QString at = QString::number(points) + " pt";
                const QSize wanted = dialog->sizeHint();
                QVERIFY2(wanted.width() <= 1152 && wanted.height() <= 612, qPrintable(at));
                dialog->resize(wanted);
                QApplication::processEvents();
                auto* table = dialog->findChild<QTableWidget*>("tblTextures");
                QVERIFY2(table->horizontalScrollBar()->maximum() == 0 &&
                             table->verticalScrollBar()->maximum() == 0,
                         qPrintable(at));
                const QFontMetrics header(table->horizontalHeader()->font());
                const QFontMetrics cells(table->font());
                for (int c = 0; c < table->columnCount(); ++c) {
                    int widest = 0;
                    for (const QString& line : table->horizontalHeaderItem(c)->text().split('\n'))
                        widest = std::max(widest, header.horizontalAdvance(line));
                    for (int r = 0; r < table->rowCount(); ++r)
                        widest =
                            std::max(widest, cells.horizontalAdvance(table->item(r, c)->text()));
                    QVERIFY2(widest <= table->columnWidth(c),
                             qPrintable(at + ": " + table->horizontalHeaderItem(c)->text()));
                }
                for (QLabel* label : dialog->findChildren<QLabel*>())
                    QVERIFY2(label->height() >= label->heightForWidth(label->width()),
                             qPrintable(at + ": " + label->objectName()));
                dialog->findChild<QPushButton*>("cmdCancel")->click();
            });
        }
    }
};

QTEST_MAIN(TextureDialogTest)
#include "texture_dialog_test.moc"
