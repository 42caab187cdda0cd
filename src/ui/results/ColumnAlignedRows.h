#pragma once
// Rows of controls that stand over (or under) the columns of a table: each row may carry a
// caption over the first columns and one control centred in each of the following columns.
// The places follow the table's columns as they are sized, so a value box always stands in the
// column its number belongs to, whatever the font and the window's width.

#include <QWidget>

#include <vector>

class QTableView;

class ColumnAlignedRows : public QWidget {
public:
    ColumnAlignedRows(QTableView* grid, QWidget* parent);

    // Adds a row: `caption` (may be null) over the columns before `firstColumn`, then `cells`
    // in the columns from `firstColumn` on. The widgets become children of this one.
    void addRow(QWidget* caption, const std::vector<QWidget*>& cells, int firstColumn);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    // The least width the table's columns before `firstColumn` need for the captions, and the
    // least width any column needs for its control.
    int captionWidth() const;
    int cellWidth() const;

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Row {
        QWidget* caption;
        std::vector<QWidget*> cells;
        int firstColumn;
    };
    int rowHeight(const Row& row) const;
    void place();

    QTableView* grid_;
    std::vector<Row> rows_;
};
