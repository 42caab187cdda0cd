#pragma once
// What a user would see wrong in any window as it is laid out: a text cut off (a label, button,
// frame, box, list, table cell or heading smaller than its text asks), two controls side by side
// over one another, or a control beyond the screen that no scroll area brings into view. Each
// problem is one line naming the control, so a failure says where to look.

#include <QtWidgets>

namespace layout_check {

inline QString Name(const QWidget* w) {
    return w->objectName().isEmpty() ? w->metaObject()->className() : w->objectName();
}

inline QStringList ClippedTexts(const QWidget* w) {
    QStringList cut;
    // A label, frame or list needs its least size, a button the size it asks for, a wrapped
    // label the height of its lines at its width.
    auto* label = qobject_cast<const QLabel*>(w);
    auto* tool = qobject_cast<const QToolButton*>(w);
    const QSize need =
        qobject_cast<const QAbstractButton*>(w) ? w->sizeHint() : w->minimumSizeHint();
    if (!qobject_cast<const QAbstractScrollArea*>(w) &&
        !(tool && tool->toolButtonStyle() == Qt::ToolButtonIconOnly) &&
        (w->width() < need.width() || w->height() < need.height() ||
         (label && label->wordWrap() && w->height() < label->heightForWidth(w->width()))))
        cut << Name(w) + " is smaller than its text asks";
    // Texts that no least size covers: a box's, a table's cells and headings.
    const auto check = [&](const QString& text, const QRect& room, bool wrap, const QString& what) {
        const int flags = Qt::TextShowMnemonic | (wrap ? Qt::TextWordWrap : 0);
        const QRect need =
            w->fontMetrics().boundingRect(QRect(0, 0, room.width(), 100000), flags, text);
        if (!text.isEmpty() &&
            (need.width() > room.width() + 1 || need.height() > room.height() + 1))
            cut << Name(w) + " cuts " + what + " \"" + text + "\"";
    };
    if (auto* field = qobject_cast<const QLineEdit*>(w))
        check(field->text().isEmpty() ? field->placeholderText() : field->text(),
              field->contentsRect().adjusted(3, 0, -3, 0), false, "its text");
    if (auto* table = qobject_cast<const QTableView*>(w)) {
        const QAbstractItemModel* model = table->model();
        const QHeaderView* header = table->horizontalHeader();
        for (int c = 0; c < model->columnCount(); ++c) {
            for (int r = 0; r < model->rowCount(); ++r)
                check(model->index(r, c).data().toString(),
                      table->visualRect(model->index(r, c)).adjusted(3, 1, -3, -1),
                      table->wordWrap(), QStringLiteral("cell %1,%2").arg(r).arg(c));
            if (header->isVisible())
                check(model->headerData(c, Qt::Horizontal).toString(),
                      QRect(0, 0, header->sectionSize(c) - 8, header->height() - 4),
                      header->defaultAlignment() & Qt::TextWordWrap,
                      QStringLiteral("heading %1").arg(c));
        }
    }
    return cut;
}

// Whether `w` scrolls inside a page's scroll area (not a table's own).
inline bool Scrolls(const QWidget* w) {
    for (const QWidget* p = w->parentWidget(); p; p = p->parentWidget())
        if (auto* area = qobject_cast<const QAbstractScrollArea*>(p->parentWidget()))
            if (area->viewport() == p && !qobject_cast<const QAbstractItemView*>(area))
                return true;
    return false;
}

// The controls a user reads or works, not the bars, headers and scroll machinery around them.
inline bool IsControl(const QWidget* w) {
    if (qobject_cast<const QScrollBar*>(w) || qobject_cast<const QHeaderView*>(w) ||
        qobject_cast<const QTabBar*>(w) || qobject_cast<const QTabBar*>(w->parentWidget()))
        return false;
    return qobject_cast<const QLabel*>(w) || qobject_cast<const QAbstractButton*>(w) ||
           qobject_cast<const QLineEdit*>(w) || qobject_cast<const QComboBox*>(w) ||
           qobject_cast<const QAbstractScrollArea*>(w) || qobject_cast<const QGroupBox*>(w);
}

// `allowed` lists pairs of controls (by name) that are meant to lie over one another.
inline QStringList Problems(QWidget* window, const QRect& screen,
                            const QList<QSet<QString>>& allowed = {}) {
    QStringList problems;
    QList<QWidget*> controls{window};
    for (QWidget* w : window->findChildren<QWidget*>())
        if (w->isVisibleTo(window) && w->window() == window && IsControl(w))
            controls << w;
    for (const QWidget* a : controls) {
        problems << ClippedTexts(a);
        if (!Scrolls(a) && !screen.contains(QRect(a->mapToGlobal(QPoint()), a->size())))
            problems << Name(a) + " lies beyond the screen";
        for (const QWidget* b : controls)
            if (a < b && a->parentWidget() == b->parentWidget() &&
                a->geometry().intersects(b->geometry()) &&
                !allowed.contains(QSet<QString>{a->objectName(), b->objectName()}))
                problems << Name(a) + " over " + Name(b);
    }
    return problems;
}

} // namespace layout_check
