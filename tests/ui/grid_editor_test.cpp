// The floating editor of the segment table: which keys open it, which cell it writes, where the
// current cell goes, and the storage panel gone with it. Which panel stands beside an edited
// column is checked with the layout of every window.

#include "WindowFixture.h"

#include <QTableWidget>

class GridEditorTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        f_ = std::make_unique<WindowFixture>();
        QVERIFY(f_->active);
        f_->trigger("mnuOptionsSR3");
        grid_ = f_->get<QTableWidget>("msgSurfStore");
        editor_ = f_->field("txtEdit");
        for (int row = 1; row <= 10; ++row) {
            grid_->item(row, 1)->setText(QStringLiteral("0.%1").arg(row));
            grid_->item(row, 2)->setText(QStringLiteral("0.0%1").arg(row));
        }
    }

    void typedKeyOnlyOpensTheEditor() {
        grid_->setCurrentCell(3, 1);
        f_->focus("msgSurfStore");
        QTest::keyClick(grid_, Qt::Key_5);
        QVERIFY(!editor_->isHidden());
        QCOMPARE(editor_->text(), QStringLiteral("0.3")); // the 5 is not typed
        QCOMPARE(editor_->cursorPosition(), 3);
        QCOMPARE(QApplication::focusWidget(), editor_);
        const QRect rect = grid_->visualItemRect(grid_->item(3, 1)); // laid exactly over the cell
        QCOMPARE(editor_->mapToGlobal(QPoint(0, 0)),
                 grid_->viewport()->mapToGlobal(rect.topLeft()));
        QCOMPARE(editor_->size(), rect.size());
        QCOMPARE(cell(3, 1), QStringLiteral("0.3"));

        // A double click opens it as well.
        QTest::keyClick(editor_, Qt::Key_Escape);
        QTest::mouseClick(grid_->viewport(), Qt::LeftButton, {}, centre(6, 2));
        QTest::mouseDClick(grid_->viewport(), Qt::LeftButton, {}, centre(6, 2));
        QVERIFY(!editor_->isHidden());
        QCOMPARE(editor_->text(), QStringLiteral("0.06"));
    }

    void leavingTheEditor() {
        const struct {
            int row, key, rowAfter;
            const char* textAfter; // of the edited cell, after typing 9 in the editor
        } cases[] = {
            {4, Qt::Key_Return, 4, "0.49"},  {4, Qt::Key_Enter, 4, "0.49"},
            {4, Qt::Key_Escape, 4, "0.4"},   {5, Qt::Key_Up, 4, "0.59"},
            {5, Qt::Key_Down, 6, "0.59"},    {1, Qt::Key_Up, 1, "0.19"}, // Up in row 1
            {10, Qt::Key_Down, 10, "0.109"},                             // Down in row 10
        };
        for (const auto& c : cases) {
            init();
            openOn(c.row, 1);
            QTest::keyClick(editor_, Qt::Key_9);
            QTest::keyClick(editor_, Qt::Key(c.key));
            QVERIFY(editor_->isHidden() && f_->get("frmSurfStore")->isHidden());
            QCOMPARE(QApplication::focusWidget(), grid_);
            QCOMPARE(QPoint(grid_->currentRow(), grid_->currentColumn()), QPoint(c.rowAfter, 1));
            QCOMPARE(cell(c.row, 1), QString(c.textAfter));
            if (c.rowAfter != c.row)
                QCOMPARE(cell(c.rowAfter, 1), QStringLiteral("0.%1").arg(c.rowAfter));
            QCOMPARE(cell(c.row, 2), QStringLiteral("0.0%1").arg(c.row));
        }
    }

    void segmentColumnIsNeverEdited() {
        grid_->setCurrentCell(4, 2);
        QTest::mouseClick(grid_->viewport(), Qt::LeftButton, {}, centre(6, 0));
        QTest::mouseClick(grid_->viewport(), Qt::LeftButton, {}, centre(0, 1));
        grid_->setCurrentCell(6, 0);
        QCOMPARE(grid_->currentRow(), 4);
        QCOMPARE(grid_->currentColumn(), 2);
        const QString label = cell(6, 0);
        QTest::keyClick(grid_, Qt::Key_7);
        QTest::keyClick(editor_, Qt::Key_Return);
        QCOMPARE(cell(6, 0), label);
    }

    void cellLeftByMouseOrCodeGetsTheText() {
        openOn(2, 1);
        editor_->setText("1.5");
        QTest::mouseClick(grid_->viewport(), Qt::LeftButton, {}, centre(7, 2));
        QVERIFY(editor_->isHidden());
        QCOMPARE(cell(2, 1), QStringLiteral("1.5"));
        QCOMPARE(cell(7, 2), QStringLiteral("0.07"));

        openOn(3, 2);
        editor_->setText("2.5");
        grid_->setCurrentCell(9, 1);
        QCOMPARE(cell(3, 2), QStringLiteral("2.5"));
        QCOMPARE(cell(9, 1), QStringLiteral("0.9"));

        // A constant option hides the table and drops an open edit.
        openOn(2, 1);
        editor_->setText("7");
        f_->trigger("mnuOptionsSR2");
        QVERIFY(editor_->isHidden());
        QCOMPARE(cell(2, 1), QStringLiteral("1.5"));
    }

private:
    // Cell (row, column) holds "0.<row>" in column 1 and "0.0<row>" in column 2.
    QString cell(int row, int column) const { return grid_->item(row, column)->text(); }
    QPoint centre(int row, int column) const {
        return grid_->visualItemRect(grid_->item(row, column)).center();
    }
    void openOn(int row, int column) {
        grid_->setCurrentCell(row, column);
        f_->focus("msgSurfStore");
        QTest::keyClick(grid_, Qt::Key_X);
    }

    std::unique_ptr<WindowFixture> f_;
    QTableWidget* grid_ = nullptr;
    QLineEdit* editor_ = nullptr;
};

QTEST_MAIN(GridEditorTest)
#include "grid_editor_test.moc"
