// The "Input Data" page as the user sees it at the window's minimum size, with every optional
// control shown: segment labels whole, a storage panel or the cell editor covering no control,
// the editor in the table's font and the table's hover hint.

#include "WindowFixture.h"

class InputLayoutTest : public QObject {
    Q_OBJECT

private slots:
    void nothingCovered() {
        const struct {
            const char *length, *option;
            int column;                // the segment column edited; 0: the focus goes to `field`
            const char *field, *panel; // the storage panel shown, if any
        } cases[] = {
            {"1287", "mnuOptionsSR1", 2, "", ""},
            {"1287", "mnuOptionsSR3", 1, "", "frmSurfStore"},
            {"2999.9", "mnuOptionsSR1", 1, "", ""},
            {"2999.9", "mnuOptionsSR3", 2, "", "frmResidueStore"},
            {"1287", "mnuOptionsSR2", 0, "txtSurfStore", "frmSurfStore"},
            {"1287", "mnuOptionsSR2", 0, "txtResidue", "frmResidueStore"},
        };
        for (const auto& c : cases) {
            WindowFixture f;
            QVERIFY(f.active);
            f.w->resize(1, 1); // held at the minimum size
            // Every optional control shown: the K and N frame, the Green-Ampt frame and its marker.
            f.get<QComboBox>("cboIntakeFamily")->setCurrentIndex(rainfold::kCustomizedValuesIndex);
            f.trigger("mnuOptionsGreenAmpt");
            f.field("txtSYL")->setText(c.length);
            f.trigger(c.option);
            auto* table = f.get<QTableWidget>("msgSurfStore");
            QLineEdit* editor = f.field("txtEdit");
            if (c.column > 0) {
                table->setCurrentCell(5, c.column);
                f.focus("msgSurfStore");
                QTest::keyClick(table, Qt::Key_X);
                QVERIFY(!editor->isHidden());
                QCOMPARE(editor->fontInfo().pointSizeF(), table->fontInfo().pointSizeF());
            } else {
                f.focus(c.field);
            }
            QApplication::processEvents();
            if (*c.panel)
                QVERIFY(!f.get(c.panel)->isHidden());

            // Whole segment labels: each cell as wide as its text asks.
            if (!table->isHidden()) {
                QStyleOptionViewItem cell;
                cell.initFrom(table);
                cell.widget = table;
                cell.font = table->font();
                for (int row = 1; row <= 10; ++row) {
                    const QModelIndex index = table->model()->index(row, 0);
                    QVERIFY2(table->itemDelegate()->sizeHint(cell, index).width() <=
                                 table->columnWidth(0),
                             qPrintable(index.data().toString()));
                }
                // The table's hover hint, over a label and over a value.
                for (const QTableWidgetItem* item : {table->item(10, 0), table->item(1, 2)}) {
                    QToolTip::hideText();
                    const QPoint at = table->visualItemRect(item).center();
                    QHelpEvent hover(QEvent::ToolTip, at, table->viewport()->mapToGlobal(at));
                    QApplication::sendEvent(table->viewport(), &hover);
                    QCOMPARE(QToolTip::text(),
                             QStringLiteral(
                                 "Enter the surface storage parameters for slope and residue."));
                }
            }

            // No two controls of the page overlap, and all stand inside it. The residue label stays
            // behind the table (it is not hidden with the slope label), and the editor lies on its
            // cell.
            QWidget* page = table->parentWidget();
            QList<QWidget*> shown;
            for (QWidget* w : page->findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
                if (w->isVisibleTo(page))
                    shown << w;
            for (QWidget* a : shown) {
                QVERIFY2(page->rect().contains(a->geometry()), qPrintable(a->objectName()));
                for (QWidget* b : shown) {
                    const QSet<QString> pair{a->objectName(), b->objectName()};
                    if (a >= b || pair == QSet<QString>{"lblResidue", "msgSurfStore"} ||
                        pair == QSet<QString>{"txtEdit", "msgSurfStore"})
                        continue;
                    QVERIFY2(!a->geometry().intersects(b->geometry()),
                             qPrintable(a->objectName() + " over " + b->objectName()));
                }
            }
        }
    }
};

QTEST_MAIN(InputLayoutTest)
#include "input_layout_test.moc"
