#pragma once
// Answers the modal windows a command opens, from inside the command's own event loop, and keeps
// what each message box showed.

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <vector>

struct SeenBox {
    QString title, text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons;
};

class ModalAnswer {
public:
    // Presses OK on every message box; any other modal window goes to `other`, which closes it.
    explicit ModalAnswer(std::function<void(QWidget*)> other = {}) : other_(std::move(other)) {
        QObject::connect(&timer_, &QTimer::timeout, [this] { poll(); });
        timer_.start(10);
    }
    std::vector<SeenBox> boxes;

private:
    void poll() {
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal || modal == last_)
            return;
        last_ = modal;
        if (auto* box = qobject_cast<QMessageBox*>(modal)) {
            boxes.push_back({box->windowTitle(), box->text(), box->icon(), box->standardButtons()});
            box->button(QMessageBox::Ok)->click();
        } else if (other_) {
            other_(modal);
        }
    }
    std::function<void(QWidget*)> other_;
    QTimer timer_;
    QPointer<QWidget> last_;
};
