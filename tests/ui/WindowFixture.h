#pragma once
// A shown, active main window, short ways to reach its controls by name, a sample design, and
// the answers to the modal windows a command opens, and whole-file reads and writes. The
// results-page benchmark shares it.

#include "main/ROAnalysis.h"

#include <QtTest>
#include <QtWidgets>

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

using Texts = QStringList;

struct WindowFixture {
    std::unique_ptr<ROAnalysis> w = std::make_unique<ROAnalysis>();
    bool active = [this] {
        w->show();
        w->activateWindow();
        return QTest::qWaitForWindowActive(w.get());
    }();

    template <class T = QWidget> T* get(const QString& name) const {
        return w->findChild<T*>(name);
    }
    QLineEdit* field(const QString& name) const { return get<QLineEdit>(name); }
    QAction* action(const QString& name) const { return get<QAction>(name); }
    void trigger(const QString& name) const { action(name)->trigger(); }
    // Puts the focus into a control as a click would, and lets the focus events run.
    void focus(const QString& name) const {
        get(name)->setFocus(Qt::OtherFocusReason);
        QApplication::processEvents();
    }
    QLabel* labelOf(const QWidget* control) const {
        for (QLabel* label : w->findChildren<QLabel*>())
            if (label->buddy() == control)
                return label;
        return nullptr;
    }
    // A design with its model: the Green-Ampt tick is not part of what setDesign puts in.
    void put(const rainfold::DesignRecord& d) const {
        w->setDesign(d);
        if (action("mnuOptionsGreenAmpt")->isChecked() != d.greenAmpt)
            trigger("mnuOptionsGreenAmpt");
    }
};

// "Customized Values", a per-segment option and every text filled, one with a comma.
inline rainfold::DesignRecord SampleDesign() {
    rainfold::DesignRecord d;
    d.txtDescription = "Smith Farms, north pivot", d.txtLegalID = "NW 1/4 Sec 12";
    d.txtCounty = "Custer", d.txtState = "NE", d.txtDesigner = "JD", d.txtDate = "5/1/24";
    d.txtSYL = "1300", d.txtGPM = "800", d.txtAPPL = "1", d.txtWetDiam = "40";
    d.intakeFamilyIndex = rainfold::kCustomizedValuesIndex, d.txtUk = "20.5", d.txtUN = "-0.42";
    d.surfaceOption = rainfold::kVariableSlopeResidue;
    d.txtKS = "10", d.txtHW = "50", d.txtThetaS = "0.45", d.txtThetaI = "0.25";
    d.txtRzDepth = "40", d.txtOmega = "0.0050";
    for (int row = 0; row < 10; ++row)
        d.segments[row] = {std::to_string(row + 1), std::to_string(10 * row)};
    return d;
}

struct SeenBox {
    QString title, text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons;
    int page = -1; // the window's page under the box
    // "title|icon|page|text", the icon as "!" (warning), "i" (information), "-" (none) or "?".
    QString line() const {
        const QChar mark = QStringLiteral("-i!??").at(std::clamp(int(icon), 0, 4));
        return QStringLiteral("%1|%2|%3|%4").arg(title, mark, QString::number(page), text);
    }
};

// Answers the modal windows a command opens, from inside the command's own event loop: each
// message box in turn gets Cancel for a "C" in `answers` (OK where it has no Cancel) and OK
// otherwise (also once the answers run out); any other modal window goes to `other`, which
// closes it.
class ModalAnswer {
public:
    explicit ModalAnswer(QString answers = {}, std::function<void(QWidget*)> other = {})
        : answers_(std::move(answers)), other_(std::move(other)) {
        QObject::connect(&timer_, &QTimer::timeout, [this] { poll(); });
        timer_.start(10);
    }
    std::vector<SeenBox> boxes;
    Texts lines() const {
        Texts t;
        for (const SeenBox& box : boxes)
            t << box.line();
        return t;
    }

private:
    void poll() {
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal || modal == last_)
            return;
        last_ = modal;
        if (auto* box = qobject_cast<QMessageBox*>(modal)) {
            const QWidget* parent = box->parentWidget();
            const auto* tabs = parent ? parent->findChild<QTabWidget*>("SSTab1") : nullptr;
            boxes.push_back({box->windowTitle(), box->text(), box->icon(), box->standardButtons(),
                             tabs ? tabs->currentIndex() : -1});
            const bool cancel = answers_.startsWith('C');
            answers_.remove(0, 1);
            QAbstractButton* cancelButton = box->button(QMessageBox::Cancel);
            (cancel && cancelButton ? cancelButton : box->button(QMessageBox::Ok))->click();
        } else if (other_) {
            other_(modal);
        }
    }
    QString answers_;
    std::function<void(QWidget*)> other_;
    QTimer timer_;
    QPointer<QWidget> last_;
};

inline QByteArray ReadAll(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Writes the bytes whole, making the folders on the way.
inline bool WriteFile(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}
