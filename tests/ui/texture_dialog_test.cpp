// Tools > "Green-Ampt Soil from Texture...": every class of the source (soil_textures_source.txt)
// shown as published and filling the soil fields in their units as typing would (on "Input
// Data", the variation following a root depth, the reminder when the initial water content is
// now above the saturated one), nothing else; Cancel fills nothing. The dialog is whole at 9 and
// 12 pt on a 1280 x 720 screen.

#include "WindowFixture.h"

#include <cmath>

class TextureDialogTest : public QObject {
    Q_OBJECT

private slots:
    void everyClassFillsItsValues() {
        QFile file(QStringLiteral(RAINFOLD_TEXTURE_SOURCE));
        QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
        const QStringList lines =
            QString::fromUtf8(file.readAll()).split('\n').filter(QRegularExpression("^[^#]"));
        QCOMPARE(lines.size(), 11);
        for (int i = 0; i <= lines.size(); ++i) { // the last round cancels
            const bool cancel = i == lines.size(), wet = i % 2 == 1;
            const QStringList source =
                lines[cancel ? 0 : i].split('|'); // class, eta, theta e, psi, K
            QFont font = QApplication::font();
            font.setPointSizeF(i % 2 ? 12 : 9);
            QApplication::setFont(font);
            WindowFixture f;
            QVERIFY(f.active);
            // Odd classes: a wet field without a root depth, the variation left as typed; even
            // ones: a drier field over 1000 mm of roots, the variation following the porosity.
            rainfold::DesignRecord d = SampleDesign();
            d.txtThetaI = wet ? "0.44" : "0.2", d.txtRzDepth = wet ? "" : "1000";
            d.txtKS = d.txtHW = d.txtThetaS = "9", d.txtOmega = ".0002";
            d.greenAmpt = cancel; // the dialog says when the values wait for the model
            f.put(d);
            auto* tabs = f.get<QTabWidget>("SSTab1");
            tabs->setCurrentIndex(i == 0 ? 1 : 0); // once from "Results"
            QCOMPARE(tabs->currentIndex(), i == 0 ? 1 : 0);
            QStringList shown;
            bool seen = false; // the dialog, worked while shown; the reminder box gets OK
            ModalAnswer answer({}, [&](QWidget* modal) {
                auto* dialog = qobject_cast<QDialog*>(modal);
                seen = modal->objectName() == QLatin1String("frmSoilTexture");
                auto* table = dialog->findChild<QTableWidget*>("tblTextures");
                // At the size it asks for: within 1280 x 720 less a task bar, the whole table
                // without scrolling, every heading and value whole in its column (measured in
                // the heading's font, the wider), every label whole.
                dialog->resize(dialog->sizeHint());
                QApplication::processEvents();
                QVERIFY(dialog->width() <= 1152 && dialog->height() <= 612);
                QVERIFY(table->horizontalScrollBar()->maximum() == 0 &&
                        table->verticalScrollBar()->maximum() == 0);
                const QFontMetrics wide(table->horizontalHeader()->font());
                for (int c = 0; c < table->columnCount(); ++c) {
                    QStringList texts = table->horizontalHeaderItem(c)->text().split('\n');
                    for (int r = 0; r < table->rowCount(); ++r)
                        texts << table->item(r, c)->text();
                    for (const QString& text : texts)
                        QVERIFY2(wide.horizontalAdvance(text) <= table->columnWidth(c),
                                 qPrintable(text));
                }
                for (QLabel* label : dialog->findChildren<QLabel*>())
                    QVERIFY2(label->height() >= label->heightForWidth(label->width()),
                             qPrintable(label->objectName()));
                QCOMPARE(dialog->findChild<QLabel*>("lblModelOff") != nullptr, !cancel);
                QVERIFY(!dialog->findChild<QPushButton*>("cmdFill")->isEnabled());
                table->selectRow(cancel ? 0 : i);
                for (int c = 0; c < 5; ++c)
                    shown << table->item(cancel ? 0 : i, c)->text();
                dialog->findChild<QPushButton*>(cancel ? "cmdCancel" : "cmdFill")->click();
            });
            f.trigger(QStringLiteral("mnuToolsGreenAmptSoil"));
            QVERIFY(seen);
            QCOMPARE(shown, source);
            // The values in the fields' units, worked out here from the source's cm and cm/h,
            // typed as a person would: no trailing zeros, no binary noise.
            const double eta = source[1].toDouble();
            const std::pair<const char*, double> filled[] = {{"txtKS", 10 * source[4].toDouble()},
                                                             {"txtHW", 10 * source[3].toDouble()},
                                                             {"txtThetaS", eta}};
            const QRegularExpression typed(R"(^\d+(\.\d{0,3}[1-9])?$)");
            for (const auto& [field, value] : filled) {
                const QString text = f.field(field)->text();
                const bool right = std::fabs(text.toDouble() - value) <= 1e-12 * value;
                QVERIFY2(cancel ? text == "9" : right && typed.match(text).hasMatch(),
                         qPrintable(source[0] + ": " + field + " " + text));
            }
            const rainfold::DesignRecord after = f.w->design();
            QCOMPARE(after.txtThetaI, d.txtThetaI);
            QCOMPARE(after.txtRzDepth, d.txtRzDepth);
            QCOMPARE(QString::fromStdString(after.txtOmega),
                     wet || cancel ? QStringLiteral(".0002")
                                   : QString::number((eta - 0.2) / 1000, 'f', 4));
            QCOMPARE(answer.lines(),
                     !cancel && eta < (wet ? 0.44 : 0.2)
                         ? Texts{"Rainfold|-|0|The initital water content must be less than the "
                                 "saturated water content."}
                         : Texts{});
            QCOMPARE(tabs->currentIndex(), 0);
            QCOMPARE(f.action("mnuOptionsGreenAmpt")->isChecked(), cancel);
        }
    }
};

QTEST_MAIN(TextureDialogTest)
#include "texture_dialog_test.moc"
