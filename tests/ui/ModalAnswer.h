#pragma once
// Answers the modal boxes a command opens, from inside the command's own event loop, and keeps
// what each box showed.

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QString>
#include <QTimer>

#include <functional>
#include <vector>

struct SeenBox {
    QString title;
    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons;
};

class ModalAnswer {
public:
    // Presses `answer` on every message box that comes up while this object lives. Any other
    // modal window is handed to `other`, which must close it.
    explicit ModalAnswer(QMessageBox::StandardButton answer = QMessageBox::Ok,
                         std::function<void(QWidget*)> other = {})
        : answer_(answer), other_(std::move(other)) {
        timer_.setInterval(10);
        QObject::connect(&timer_, &QTimer::timeout, [this] { poll(); });
        timer_.start();
    }

    const std::vector<SeenBox>& boxes() const { return boxes_; }
    int others() const { return others_; }

private:
    void poll() {
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal || modal == last_)
            return;
        last_ = modal;
        if (auto* box = qobject_cast<QMessageBox*>(modal)) {
            boxes_.push_back(
                {box->windowTitle(), box->text(), box->icon(), box->standardButtons()});
            box->button(answer_)->click();
        } else if (other_) {
            ++others_;
            other_(modal);
        }
    }

    QMessageBox::StandardButton answer_;
    std::function<void(QWidget*)> other_;
    QTimer timer_;
    QPointer<QWidget> last_;
    std::vector<SeenBox> boxes_;
    int others_ = 0;
};
