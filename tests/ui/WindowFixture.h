#pragma once
// A shown, active main window, short ways to reach its controls by name, and a sample design.

#include "main/ROAnalysis.h"

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include <memory>

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
};

// "Customized Values", a per-segment option and every text filled, one with a comma.
inline rainfold::DesignRecord SampleDesign() {
    rainfold::DesignRecord d;
    d.txtDescription = "Smith Farms, north pivot";
    d.txtLegalID = "NW 1/4 Sec 12";
    d.txtCounty = "Custer";
    d.txtState = "NE";
    d.txtDesigner = "JD";
    d.txtDate = "5/1/24";
    d.txtSYL = "1300";
    d.txtGPM = "800";
    d.txtAPPL = "1";
    d.txtWetDiam = "40";
    d.intakeFamilyIndex = rainfold::kCustomizedValuesIndex;
    d.txtUk = "20.5";
    d.txtUN = "-0.42";
    d.surfaceOption = rainfold::kVariableSlopeResidue;
    for (int row = 0; row < 10; ++row)
        d.segments[row] = {std::to_string(row + 1), std::to_string(10 * row)};
    d.txtKS = "10";
    d.txtHW = "50";
    d.txtThetaS = "0.45";
    d.txtThetaI = "0.25";
    d.txtRzDepth = "40";
    d.txtOmega = "0.0050";
    return d;
}
