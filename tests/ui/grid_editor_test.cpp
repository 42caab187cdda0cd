// The floating editor of the segment table: which keys open it, which cell it writes, where the
// current cell goes, and the storage panels while a column is edited.

#include "WindowFixture.h"

#include <QGroupBox>
#include <QTableWidget>

namespace {

struct Grid {
    WindowFixture& f;
    QTableWidget* table = f.get<QTableWidget>("msgSurfStore");
    QLineEdit* editor = f.field("txtEdit");

    QString cell(int row, int column) const { return table->item(row, column)->text(); }
    QPoint centre(int row, int column) const {
        return table->visualItemRect(table->item(row, column)).center();
    }
    // Selects a cell and gives the table the focus, as a click on it would.
    void select(int row, int column) {
        table->setCurrentCell(row, column);
        f.focus(table);
    }
};

} // namespace

class GridEditorTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void typedKeyOnlyOpensTheEditor();
    void leavingTheEditor_data();
    void leavingTheEditor();
    void segmentColumnIsNeverEdited();
    void doubleClickOpensTheEditor();
    void leavingTheCellWritesThatCell();
    void constantOptionDropsTheEdit();
    void panelsWhileEditing_data();
    void panelsWhileEditing();

private:
    std::unique_ptr<WindowFixture> f_;
};

void GridEditorTest::init() {
    f_ = std::make_unique<WindowFixture>();
    QVERIFY(f_->active());
    f_->action("mnuOptionsSR3")->trigger();
    auto* table = f_->get<QTableWidget>("msgSurfStore");
    for (int row = 1; row <= 10; ++row) {
        table->item(row, 1)->setText(QStringLiteral("0.%1").arg(row));
        table->item(row, 2)->setText(QStringLiteral("0.0%1").arg(row));
    }
}

void GridEditorTest::typedKeyOnlyOpensTheEditor() {
    Grid g{*f_};
    g.select(3, 1);
    QTest::keyClick(g.table, Qt::Key_5);
    QVERIFY(!g.editor->isHidden());
    QCOMPARE(g.editor->text(), QStringLiteral("0.3")); // the 5 is not typed
    QCOMPARE(g.editor->cursorPosition(), 3);
    QCOMPARE(QApplication::focusWidget(), g.editor);
    // Laid exactly over the cell.
    const QRect cell = g.table->visualItemRect(g.table->item(3, 1));
    QCOMPARE(g.editor->mapToGlobal(QPoint(0, 0)), g.table->viewport()->mapToGlobal(cell.topLeft()));
    QCOMPARE(g.editor->size(), cell.size());
    QCOMPARE(g.cell(3, 1), QStringLiteral("0.3"));
}

void GridEditorTest::leavingTheEditor_data() {
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("rowAfter");
    QTest::addColumn<QString>("textAfter"); // of the edited cell
    QTest::newRow("Enter") << 4 << int(Qt::Key_Return) << 4 << "0.49";
    QTest::newRow("keypad Enter") << 4 << int(Qt::Key_Enter) << 4 << "0.49";
    QTest::newRow("Escape") << 4 << int(Qt::Key_Escape) << 4 << "0.4";
    QTest::newRow("Up") << 5 << int(Qt::Key_Up) << 4 << "0.59";
    QTest::newRow("Down") << 5 << int(Qt::Key_Down) << 6 << "0.59";
    QTest::newRow("Up in row 1") << 1 << int(Qt::Key_Up) << 1 << "0.19";
    QTest::newRow("Down in row 10") << 10 << int(Qt::Key_Down) << 10 << "0.109";
}

void GridEditorTest::leavingTheEditor() {
    QFETCH(int, row);
    QFETCH(int, key);
    QFETCH(int, rowAfter);
    QFETCH(QString, textAfter);
    Grid g{*f_};
    g.select(row, 1);
    QTest::keyClick(g.table, Qt::Key_X);
    QTest::keyClick(g.editor, Qt::Key_9);
    QTest::keyClick(g.editor, Qt::Key(key));
    QVERIFY(g.editor->isHidden());
    QCOMPARE(QApplication::focusWidget(), g.table);
    QCOMPARE(g.table->currentRow(), rowAfter);
    QCOMPARE(g.table->currentColumn(), 1);
    QCOMPARE(g.cell(row, 1), textAfter);
    if (rowAfter != row) // the neighbour is only made current, not written
        QCOMPARE(g.cell(rowAfter, 1), QStringLiteral("0.%1").arg(rowAfter));
    QCOMPARE(g.cell(row, 2), QStringLiteral("0.0%1").arg(row));
}

void GridEditorTest::segmentColumnIsNeverEdited() {
    Grid g{*f_};
    g.select(4, 2);
    QTest::mouseClick(g.table->viewport(), Qt::LeftButton, {}, g.centre(6, 0));
    QCOMPARE(g.table->currentRow(), 4);
    QCOMPARE(g.table->currentColumn(), 2);
    QTest::mouseClick(g.table->viewport(), Qt::LeftButton, {}, g.centre(0, 1));
    QCOMPARE(g.table->currentRow(), 4);

    // Not from code either, so a key never edits a segment label.
    const QString label = g.cell(6, 0);
    g.table->setCurrentCell(6, 0);
    QCOMPARE(g.table->currentColumn(), 2);
    QTest::keyClick(g.table, Qt::Key_7);
    QTest::keyClick(g.editor, Qt::Key_Return);
    QCOMPARE(g.cell(6, 0), label);
    QCOMPARE(g.cell(4, 2), QStringLiteral("0.04"));
}

void GridEditorTest::doubleClickOpensTheEditor() {
    Grid g{*f_};
    QTest::mouseClick(g.table->viewport(), Qt::LeftButton, {}, g.centre(6, 2));
    QTest::mouseDClick(g.table->viewport(), Qt::LeftButton, {}, g.centre(6, 2));
    QVERIFY(!g.editor->isHidden());
    QCOMPARE(g.editor->text(), QStringLiteral("0.06"));
    QTest::keyClicks(g.editor, "5");
    QTest::keyClick(g.editor, Qt::Key_Return);
    QCOMPARE(g.cell(6, 2), QStringLiteral("0.065"));
}

void GridEditorTest::leavingTheCellWritesThatCell() {
    Grid g{*f_};
    g.select(2, 1);
    QTest::keyClick(g.table, Qt::Key_A);
    g.editor->setText("1.5");
    QTest::mouseClick(g.table->viewport(), Qt::LeftButton, {}, g.centre(7, 2));
    QVERIFY(g.editor->isHidden());
    QCOMPARE(g.cell(2, 1), QStringLiteral("1.5"));
    QCOMPARE(g.cell(7, 2), QStringLiteral("0.07"));
    QCOMPARE(g.table->currentRow(), 7);
    QCOMPARE(g.table->currentColumn(), 2);

    // The same when the cell changes from code while the editor is open.
    g.select(3, 2);
    QTest::keyClick(g.table, Qt::Key_A);
    g.editor->setText("2.5");
    g.table->setCurrentCell(9, 1);
    QCOMPARE(g.cell(3, 2), QStringLiteral("2.5"));
    QCOMPARE(g.cell(9, 1), QStringLiteral("0.9"));
}

void GridEditorTest::constantOptionDropsTheEdit() {
    Grid g{*f_};
    g.select(2, 1);
    QTest::keyClick(g.table, Qt::Key_A);
    g.editor->setText("7");
    f_->action("mnuOptionsSR2")->trigger();
    QVERIFY(g.editor->isHidden());
    QVERIFY(g.table->isHidden());
    QCOMPARE(g.cell(2, 1), QStringLiteral("0.2"));
}

void GridEditorTest::panelsWhileEditing_data() {
    QTest::addColumn<QString>("option");
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("panel"); // empty: none
    QTest::newRow("user variable, surface") << "mnuOptionsSR3" << 1 << "frmSurfStore";
    QTest::newRow("user variable, residue") << "mnuOptionsSR3" << 2 << "frmResidueStore";
    QTest::newRow("% variable, slope") << "mnuOptionsSR1" << 1 << "";
    QTest::newRow("% variable, residue") << "mnuOptionsSR1" << 2 << "";
}

void GridEditorTest::panelsWhileEditing() {
    QFETCH(QString, option);
    QFETCH(int, column);
    QFETCH(QString, panel);
    Grid g{*f_};
    auto* surface = f_->get<QGroupBox>("frmSurfStore");
    auto* residue = f_->get<QGroupBox>("frmResidueStore");
    residue->move(0, 0);
    f_->action(option.toLatin1().constData())->trigger();
    g.select(5, column);
    QTest::keyClick(g.table, Qt::Key_A);
    QCOMPARE(!surface->isHidden(), panel == "frmSurfStore");
    QCOMPARE(!residue->isHidden(), panel == "frmResidueStore");
    QCOMPARE(residue->pos(), QPoint(370, 380)); // left 4440, top 4560 twips at 12 to a pixel
    QTest::keyClick(g.editor, Qt::Key_Return);
    QVERIFY(surface->isHidden());
    QVERIFY(residue->isHidden());
}

QTEST_MAIN(GridEditorTest)
#include "grid_editor_test.moc"
