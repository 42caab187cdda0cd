#pragma once
// A shown, active main window and short ways to reach its controls by name.

#include "main/ROAnalysis.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include <memory>

class WindowFixture {
public:
    WindowFixture() : window_(std::make_unique<ROAnalysis>()) {
        window_->show();
        window_->activateWindow();
        active_ = QTest::qWaitForWindowActive(window_.get());
    }

    ROAnalysis& window() { return *window_; }
    bool active() const { return active_; }

    template <class T = QWidget> T* get(const char* name) const {
        return window_->findChild<T*>(QString::fromLatin1(name));
    }
    QLineEdit* field(const char* name) const { return get<QLineEdit>(name); }
    QAction* action(const char* name) const { return get<QAction>(name); }

    // The label standing beside a control.
    QLabel* labelOf(const QWidget* control) const {
        for (QLabel* label : window_->findChildren<QLabel*>())
            if (label->buddy() == control)
                return label;
        return nullptr;
    }

    // Puts the focus into a control as a click or Tab would, and lets the focus events run.
    void focus(QWidget* control) {
        control->setFocus(Qt::OtherFocusReason);
        QApplication::processEvents();
    }

private:
    std::unique_ptr<ROAnalysis> window_;
    bool active_ = false;
};
