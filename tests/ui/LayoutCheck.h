#pragma once
// What a user would see wrong in any window as it is laid out: a text cut off (a label, button,
// frame title, box, list, table cell or heading narrower or lower than its text), two controls
// over one another, or a control beyond the screen that no scroll area brings into view. Each
// problem is one line naming the control, so a failure says where to look.

#include <QtWidgets>

namespace layout_check {

// The viewport of the scroll area that `w` scrolls in, if any.
inline const QWidget* ScrollViewport(const QWidget* w) {
    for (const QWidget* p = w->parentWidget(); p; p = p->parentWidget())
        if (auto* area = qobject_cast<const QAbstractScrollArea*>(p->parentWidget()))
            if (area->viewport() == p && !qobject_cast<const QAbstractItemView*>(area))
                return p;
    return nullptr;
}

// The part of `w` that can be seen, in the window's coordinates: its rectangle cut by every
// widget around it.
inline QRect Seen(const QWidget* w) {
    const QWidget* window = w->window();
    QRect seen(w->mapTo(window, QPoint(0, 0)), w->size());
    for (const QWidget* p = w->parentWidget(); p && p != window; p = p->parentWidget())
        seen &= QRect(p->mapTo(window, QPoint(0, 0)), p->size());
    return seen;
}

inline QString Name(const QWidget* w) {
    return w->objectName().isEmpty() ? QString::fromLatin1(w->metaObject()->className())
                                     : w->objectName();
}

// Whether `text` in `font` fits `room`, wrapped at word boundaries when `wrap`.
inline bool Fits(const QFont& font, const QString& text, const QRect& room, bool wrap) {
    const QFontMetrics m(font);
    const int flags = Qt::TextShowMnemonic | Qt::TextExpandTabs | (wrap ? Qt::TextWordWrap : 0);
    const QRect need = m.boundingRect(QRect(0, 0, room.width(), 100000), flags, text);
    return need.width() <= room.width() + 1 && need.height() <= room.height() + 1;
}

inline QStringList ClippedTexts(const QWidget* w) {
    QStringList cut;
    const auto check = [&](const QString& text, const QRect& room, bool wrap, const QString& what) {
        if (!text.isEmpty() && !Fits(w->font(), text, room, wrap))
            cut << Name(w) + " cuts " + what + " \"" + text + "\"";
    };
    if (auto* label = qobject_cast<const QLabel*>(w)) {
        if (label->textFormat() != Qt::RichText && !Qt::mightBeRichText(label->text()))
            check(label->text(),
                  label->contentsRect().adjusted(label->margin(), label->margin(), -label->margin(),
                                                 -label->margin()),
                  label->wordWrap(), "its text");
    } else if (auto* button = qobject_cast<const QAbstractButton*>(w)) {
        const auto* tool = qobject_cast<const QToolButton*>(w);
        if (!(tool && tool->toolButtonStyle() == Qt::ToolButtonIconOnly) &&
            (button->width() < button->sizeHint().width() ||
             button->height() < button->sizeHint().height()))
            cut << Name(w) + " cuts its text \"" + button->text() + "\"";
    } else if (auto* box = qobject_cast<const QGroupBox*>(w)) {
        check(box->title(), box->rect().adjusted(8, 0, -8, 0), false, "its title");
    } else if (auto* field = qobject_cast<const QLineEdit*>(w)) {
        const QString text = field->text().isEmpty() ? field->placeholderText() : field->text();
        check(text, field->contentsRect().adjusted(3, 0, -3, 0), false, "its text");
    } else if (auto* list = qobject_cast<const QComboBox*>(w)) {
        QStyleOptionComboBox option;
        option.initFrom(list);
        option.editable = list->isEditable();
        const QRect room = list->style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                         QStyle::SC_ComboBoxEditField, list);
        check(list->currentIndex() < 0 ? list->placeholderText() : list->currentText(), room, false,
              "its text");
    } else if (auto* table = qobject_cast<const QTableView*>(w)) {
        const QAbstractItemModel* model = table->model();
        for (int r = 0; r < model->rowCount(); ++r)
            for (int c = 0; c < model->columnCount(); ++c) {
                const QModelIndex index = model->index(r, c);
                const QRect cell = table->visualRect(index).adjusted(3, 1, -3, -1);
                if (!table->isRowHidden(r) && !table->isColumnHidden(c))
                    check(index.data().toString(), cell, table->wordWrap(),
                          QStringLiteral("cell %1,%2").arg(r).arg(c));
            }
        const QHeaderView* header = table->horizontalHeader();
        if (header->isVisible()) {
            const bool wrap = header->defaultAlignment() & Qt::TextWordWrap;
            for (int c = 0; c < model->columnCount(); ++c)
                check(model->headerData(c, Qt::Horizontal).toString(),
                      QRect(0, 0, header->sectionSize(c) - 8, header->height() - 4), wrap,
                      QStringLiteral("heading %1").arg(c));
        }
    }
    return cut;
}

// The controls a user reads or works, not the containers and scroll machinery around them.
inline bool IsControl(const QWidget* w) {
    if (qobject_cast<const QScrollBar*>(w) || qobject_cast<const QHeaderView*>(w) ||
        qobject_cast<const QMenuBar*>(w) || qobject_cast<const QTabBar*>(w) ||
        w->parentWidget() == nullptr || qobject_cast<const QTabBar*>(w->parentWidget()))
        return false;
    return qobject_cast<const QLabel*>(w) || qobject_cast<const QAbstractButton*>(w) ||
           qobject_cast<const QLineEdit*>(w) || qobject_cast<const QComboBox*>(w) ||
           qobject_cast<const QAbstractItemView*>(w) || qobject_cast<const QGroupBox*>(w) ||
           qobject_cast<const QGraphicsView*>(w) || qobject_cast<const QProgressBar*>(w) ||
           qobject_cast<const QTextEdit*>(w) || qobject_cast<const QTextBrowser*>(w);
}

// `allowed` lists pairs of controls (by name) that are meant to lie over one another.
inline QStringList Problems(QWidget* window, const QRect& screen,
                            const QList<QSet<QString>>& allowed = {}) {
    QStringList problems;
    if (!screen.contains(window->frameGeometry()))
        problems << Name(window) + " lies beyond the screen";
    QList<QWidget*> controls;
    for (QWidget* w : window->findChildren<QWidget*>())
        if (w->isVisibleTo(window) && w->window() == window && IsControl(w))
            controls << w;
    for (QWidget* w : controls) {
        problems << ClippedTexts(w);
        const QRect global(w->mapToGlobal(QPoint(0, 0)), w->size());
        if (!ScrollViewport(w) && !screen.contains(global))
            problems << Name(w) + " lies beyond the screen";
    }
    // Controls scrolling together are compared whole; others as far as each can be seen.
    for (QWidget* a : controls)
        for (QWidget* b : controls) {
            if (a >= b || a->isAncestorOf(b) || b->isAncestorOf(a) ||
                allowed.contains(QSet<QString>{a->objectName(), b->objectName()}))
                continue;
            const bool together = ScrollViewport(a) == ScrollViewport(b);
            const QRect ra = together ? QRect(a->mapTo(window, QPoint(0, 0)), a->size()) : Seen(a);
            const QRect rb = together ? QRect(b->mapTo(window, QPoint(0, 0)), b->size()) : Seen(b);
            if (ra.intersects(rb))
                problems << Name(a) + " over " + Name(b);
        }
    return problems;
}

} // namespace layout_check
