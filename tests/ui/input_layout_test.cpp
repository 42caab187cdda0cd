// The "Input Data" page as the user sees it at the window's minimum size, with every optional
// control shown: segment labels whole, a storage panel or the cell editor covering no control,
// the editor in the table's font and the table's hover hint.

#include "WindowFixture.h"

#include <QComboBox>
#include <QHelpEvent>
#include <QTableWidget>
#include <QToolTip>

class InputLayoutTest : public QObject {
    Q_OBJECT

private slots:
    void nothingCovered_data();
    void nothingCovered();
};

void InputLayoutTest::nothingCovered_data() {
    QTest::addColumn<QString>("length");
    QTest::addColumn<QString>("option");
    QTest::addColumn<int>("column"); // the segment column edited; 0: the focus goes to `field`
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("panel"); // the storage panel shown, if any
    // clang-format off
    QTest::newRow("1287 ft, %") << "1287" << "mnuOptionsSR1" << 2 << "" << "";
    QTest::newRow("1287 ft, storage, surface") << "1287" << "mnuOptionsSR3" << 1 << "" << "frmSurfStore";
    QTest::newRow("2999.9 ft, %") << "2999.9" << "mnuOptionsSR1" << 1 << "" << "";
    QTest::newRow("2999.9 ft, storage, residue") << "2999.9" << "mnuOptionsSR3" << 2 << "" << "frmResidueStore";
    QTest::newRow("constant storage, surface") << "1287" << "mnuOptionsSR2" << 0 << "txtSurfStore" << "frmSurfStore";
    QTest::newRow("constant storage, residue") << "1287" << "mnuOptionsSR2" << 0 << "txtResidue" << "frmResidueStore";
    // clang-format on
}

void InputLayoutTest::nothingCovered() {
    QFETCH(QString, length);
    QFETCH(QString, option);
    QFETCH(int, column);
    QFETCH(QString, field);
    QFETCH(QString, panel);
    WindowFixture f;
    QVERIFY(f.active);
    f.w->resize(1, 1); // held at the minimum size
    // Every optional control shown: the K and N frame, the Green-Ampt frame and its marker.
    f.get<QComboBox>("cboIntakeFamily")->setCurrentIndex(rainfold::kCustomizedValuesIndex);
    f.trigger("mnuOptionsGreenAmpt");
    f.field("txtSYL")->setText(length);
    f.trigger(option);
    auto* table = f.get<QTableWidget>("msgSurfStore");
    QLineEdit* editor = f.field("txtEdit");
    if (column > 0) {
        table->setCurrentCell(5, column);
        f.focus("msgSurfStore");
        QTest::keyClick(table, Qt::Key_X);
        QVERIFY(!editor->isHidden());
        QCOMPARE(editor->fontInfo().pointSizeF(), table->fontInfo().pointSizeF());
    } else {
        f.focus(field);
    }
    QApplication::processEvents();
    if (!panel.isEmpty())
        QVERIFY(!f.get(panel)->isHidden());

    // Whole segment labels: each cell as wide as its text asks.
    if (!table->isHidden()) {
        QStyleOptionViewItem cell;
        cell.initFrom(table);
        cell.widget = table;
        cell.font = table->font();
        for (int row = 1; row <= 10; ++row) {
            const QModelIndex index = table->model()->index(row, 0);
            QVERIFY2(table->itemDelegate()->sizeHint(cell, index).width() <= table->columnWidth(0),
                     qPrintable(index.data().toString()));
        }
    }

    // No two controls of the page overlap, and all stand inside it. The residue label stays
    // behind the table (it is not hidden with the slope label), and the editor lies on its cell.
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

    // The table's hover hint, over a label and over a value.
    if (!table->isHidden()) {
        for (const QPoint cell : {QPoint(10, 0), QPoint(1, 2)}) {
            QToolTip::hideText();
            const QPoint at = table->visualItemRect(table->item(cell.x(), cell.y())).center();
            QHelpEvent hover(QEvent::ToolTip, at, table->viewport()->mapToGlobal(at));
            QApplication::sendEvent(table->viewport(), &hover);
            QCOMPARE(QToolTip::text(),
                     QStringLiteral("Enter the surface storage parameters for slope and residue."));
        }
    }
}

QTEST_MAIN(InputLayoutTest)
#include "input_layout_test.moc"
