#include "ColumnAlignedRows.h"

#include <QEvent>
#include <QHeaderView>
#include <QTableView>

#include <algorithm>

namespace {

constexpr int kSpacing = 3; // between rows, and between a caption and the first column's box

// A box of a fixed width keeps it; anything else asks for its text's width.
int WidthOf(const QWidget* w) {
    return w->maximumWidth() < QWIDGETSIZE_MAX ? w->maximumWidth() : w->sizeHint().width();
}

} // namespace

ColumnAlignedRows::ColumnAlignedRows(QTableView* grid, QWidget* parent)
    : QWidget(parent), grid_(grid) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    // The columns move with the table's size and with every section the header resizes.
    grid_->installEventFilter(this);
    grid_->viewport()->installEventFilter(this);
    connect(grid_->horizontalHeader(), &QHeaderView::sectionResized, this, [this] { place(); });
    connect(grid_->horizontalHeader(), &QHeaderView::geometriesChanged, this, [this] { place(); });
}

void ColumnAlignedRows::addRow(QWidget* caption, const std::vector<QWidget*>& cells,
                               int firstColumn) {
    if (caption)
        caption->setParent(this);
    for (QWidget* cell : cells)
        cell->setParent(this);
    rows_.push_back({caption, cells, firstColumn});
    updateGeometry();
    place();
}

int ColumnAlignedRows::rowHeight(const Row& row) const {
    int height = row.caption ? row.caption->sizeHint().height() : 0;
    for (const QWidget* cell : row.cells)
        height = std::max(height, cell->sizeHint().height());
    return height;
}

QSize ColumnAlignedRows::sizeHint() const {
    int height = 0;
    for (const Row& row : rows_)
        height += rowHeight(row);
    if (!rows_.empty())
        height += kSpacing * static_cast<int>(rows_.size() - 1);
    return {captionWidth() + 3 * cellWidth(), height};
}

QSize ColumnAlignedRows::minimumSizeHint() const {
    return {0, sizeHint().height()};
}

int ColumnAlignedRows::captionWidth() const {
    int width = 0;
    for (const Row& row : rows_)
        if (row.caption)
            width = std::max(width, row.caption->sizeHint().width() + kSpacing);
    return width;
}

int ColumnAlignedRows::cellWidth() const {
    int width = 0;
    for (const Row& row : rows_)
        for (const QWidget* cell : row.cells)
            width = std::max(width, WidthOf(cell));
    return width;
}

void ColumnAlignedRows::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    place();
}

bool ColumnAlignedRows::event(QEvent* event) {
    if (event->type() == QEvent::LayoutRequest)
        place();
    return QWidget::event(event);
}

bool ColumnAlignedRows::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize || event->type() == QEvent::Move ||
        event->type() == QEvent::LayoutRequest)
        place();
    return QWidget::eventFilter(watched, event);
}

void ColumnAlignedRows::place() {
    // A column's left edge and width in this widget's coordinates.
    QWidget* top = window();
    const auto column = [&](int c) {
        const QPoint left =
            grid_->viewport()->mapTo(top, QPoint(grid_->columnViewportPosition(c), 0));
        return std::pair<int, int>{mapFrom(top, left).x(), grid_->columnWidth(c)};
    };
    int y = 0;
    for (const Row& row : rows_) {
        const int height = rowHeight(row);
        if (row.caption) {
            const int left = column(0).first;
            const int right = column(row.firstColumn).first - kSpacing;
            row.caption->setGeometry(left, y, std::max(0, right - left), height);
        }
        for (size_t k = 0; k < row.cells.size(); ++k) {
            const auto [x, width] = column(row.firstColumn + static_cast<int>(k));
            QWidget* cell = row.cells[k];
            // A box keeps its own width; a label takes the column's, its text centred in it.
            const bool fixed = cell->maximumWidth() < QWIDGETSIZE_MAX;
            const int w = fixed ? std::min(WidthOf(cell), width) : width;
            const int h = cell->sizeHint().height();
            cell->setGeometry(x + (width - w) / 2, y + (height - h) / 2, w, h);
        }
        y += height + kSpacing;
    }
}
