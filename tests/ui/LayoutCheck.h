#pragma once
// What a user would see wrong in any window as it is laid out: a text cut off (a label, button,
// frame title, box, list, table cell or heading narrower or lower than its text), two controls
// over one another, or a control beyond the screen that no scroll area brings into view. Each
// problem is one line naming the control, so a failure says where to look.

#include <QtWidgets>

namespace layout_check {

// The viewport of the page scroll area that `w` lies in, if any (not a table's own).
inline const QWidget* ScrollViewport(const QWidget* w) {
    for (const QWidget* p = w->parentWidget(); p; p = p->parentWidget())
        if (auto* area = qobject_cast<const QAbstractScrollArea*>(p->parentWidget()))
            if (area->viewport() == p && !qobject_cast<const QAbstractItemView*>(area))
                return p;
    return nullptr;
}

// The rectangle of `w` in its window, whole or cut to what the widgets around it let be seen.
inline QRect Place(const QWidget* w, bool seen) {
    QRect place(w->mapTo(w->window(), QPoint(0, 0)), w->size());
    for (const QWidget* p = w->parentWidget(); seen && p && p != w->window(); p = p->parentWidget())
        place &= QRect(p->mapTo(w->window(), QPoint(0, 0)), p->size());
    return place;
}

inline QString Name(const QWidget* w) {
    return w->objectName().isEmpty() ? w->metaObject()->className() : w->objectName();
}

inline QStringList ClippedTexts(const QWidget* w) {
    QStringList cut;
    // Whether `text` fits `room`, wrapped at word boundaries when `wrap`.
    const auto check = [&](const QString& text, const QRect& room, bool wrap, const QString& what) {
        const int flags = Qt::TextShowMnemonic | (wrap ? Qt::TextWordWrap : 0);
        const QRect need =
            w->fontMetrics().boundingRect(QRect(0, 0, room.width(), 100000), flags, text);
        if (!text.isEmpty() &&
            (need.width() > room.width() + 1 || need.height() > room.height() + 1))
            cut << Name(w) + " cuts " + what + " \"" + text + "\"";
    };
    // A label, a frame's title and a list's entry need their least size; a button the size its
    // text asks for; a wrapped label the height of its lines at its width.
    auto* label = qobject_cast<const QLabel*>(w);
    const QSize need =
        qobject_cast<const QAbstractButton*>(w) ? w->sizeHint() : w->minimumSizeHint();
    const auto* tool = qobject_cast<const QToolButton*>(w);
    if (!qobject_cast<const QAbstractScrollArea*>(w) &&
        !(tool && tool->toolButtonStyle() == Qt::ToolButtonIconOnly) &&
        (w->width() < need.width() || w->height() < need.height() ||
         (label && label->wordWrap() && w->height() < label->heightForWidth(w->width()))))
        cut << Name(w) + " is smaller than its text asks";
    if (auto* field = qobject_cast<const QLineEdit*>(w)) {
        check(field->text().isEmpty() ? field->placeholderText() : field->text(),
              field->contentsRect().adjusted(3, 0, -3, 0), false, "its text");
    } else if (auto* table = qobject_cast<const QTableView*>(w)) {
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
    QList<QWidget*> controls;
    for (QWidget* w : window->findChildren<QWidget*>())
        if (w->isVisibleTo(window) && w->window() == window && IsControl(w))
            controls << w;
    for (const QWidget* w : controls + QList<QWidget*>{window}) {
        problems << ClippedTexts(w);
        if (!ScrollViewport(w) && !screen.contains(QRect(w->mapToGlobal(QPoint()), w->size())))
            problems << Name(w) + " lies beyond the screen";
    }
    // Controls scrolling together are compared whole; others as far as each can be seen.
    for (QWidget* a : controls)
        for (QWidget* b : controls) {
            const bool apart = ScrollViewport(a) != ScrollViewport(b);
            if (a < b && !a->isAncestorOf(b) && !b->isAncestorOf(a) &&
                !allowed.contains(QSet<QString>{a->objectName(), b->objectName()}) &&
                Place(a, apart).intersects(Place(b, apart)))
                problems << Name(a) + " over " + Name(b);
        }
    return problems;
}

} // namespace layout_check
