// The input page: start-up state, labels and hints, menus and toolbar, File > New, the
// surface-storage options with their panels and segment labels, and the infiltration inputs.

#include "ModalAnswer.h"
#include "WindowFixture.h"

#include <QComboBox>
#include <QGroupBox>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QToolBar>

class InputPageTest : public QObject {
    Q_OBJECT

private slots:
    void labelsAndHints_data();
    void labelsAndHints();
    void startUpState();
    void menusAndToolbar();
    void notices_data();
    void notices();
    void aboutFromMenuAndToolbar();
    void fileNewKeepsInfiltrationInputs();
    void surfaceOptions_data();
    void surfaceOptions();
    void segmentLabels_data();
    void segmentLabels();
    void storagePanels_data();
    void storagePanels();
    void familyListAndGreenAmptFrames();
    void waterContentWarning_data();
    void waterContentWarning();
    void omega_data();
    void omega();
};

void InputPageTest::labelsAndHints_data() {
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("hint");
    QTest::addColumn<QString>("start"); // the text at start-up
    // clang-format off
    QTest::newRow("txtDescription") << "Producer" << "Enter the name of the producer or project." << "";
    QTest::newRow("txtLegalID") << "Location" << "Enter legal description for the field." << "";
    QTest::newRow("txtCounty") << "County" << "Enter County name." << "";
    QTest::newRow("txtState") << "State" << "Enter state name or initials." << "";
    QTest::newRow("txtDesigner") << "Designed By" << "Enter designers name or initials." << "";
    QTest::newRow("txtDate") << "Date" << "Enter date designed." << "";
    QTest::newRow("txtSYL") << "System Wetted Length (ft)" << "Enter length of the Center Pivot in feet." << "";
    QTest::newRow("txtGPM") << "System Capacity (GPM)        (w/o end gun)"
        << "Enter the capacity of the system in gallons per minute, without the end gun operating." << "";
    QTest::newRow("txtAPPL") << "Application Amount (in)" << "Enter the depth of application in inches." << "";
    QTest::newRow("txtWetDiam") << "Wetted Diameter (ft)" << "Enter the wetted diameter of the nozzles in feet." << "";
    QTest::newRow("cboIntakeFamily") << "Intake Family" << "Select the intake family from the dropdown list."
        << "NRCS Intake Family";
    QTest::newRow("txtSurfStore") << "Slope (%)" << "Enter surface storage parameter relative to slope." << "";
    QTest::newRow("txtResidue") << "Residue (%)" << "Enter surface storage parameter relative to residue." << "";
    QTest::newRow("txtSysArea") << "acres" << "" << "";
    QTest::newRow("txtUk") << "K Value" << "" << "6.3246";
    QTest::newRow("txtUN") << "N Value" << "" << "-0.615";
    QTest::newRow("txtKS") << "Saturated Hydraulic Conductivity" << "" << "";
    QTest::newRow("txtHW") << "Wetting Front Suction Head" << "" << "";
    QTest::newRow("txtThetaS") << "Saturated Water Content" << "" << "";
    QTest::newRow("txtThetaI") << "Initial Water Content" << "" << "0.25";
    QTest::newRow("txtOmega") << "Linear Variation of Water Content" << "" << ".0002";
    QTest::newRow("txtRzDepth") << "Depth of the Root Zone" << "" << "";
    // clang-format on
}

void InputPageTest::labelsAndHints() {
    QFETCH(QString, label);
    QFETCH(QString, hint);
    QFETCH(QString, start);
    WindowFixture f;
    QWidget* control = f.get(QTest::currentDataTag());
    QVERIFY(control && f.labelOf(control));
    QCOMPARE(f.labelOf(control)->text(), label);
    QCOMPARE(control->toolTip(), hint);
    if (auto* list = qobject_cast<QComboBox*>(control)) // nothing selected, the prompt shown
        QCOMPARE(list->currentIndex() == -1 ? list->placeholderText() : list->currentText(), start);
    else
        QCOMPARE(static_cast<QLineEdit*>(control)->text(), start);
}

void InputPageTest::startUpState() {
    WindowFixture f;
    QCOMPARE(f.w->windowTitle(), QStringLiteral("Potential Runoff Analysis"));
    auto* tabs = f.get<QTabWidget>("SSTab1");
    QCOMPARE(Texts({tabs->tabText(0), tabs->tabText(1)}), Texts({"Input Data", "Results"}));
    QCOMPARE(tabs->count(), 2);
    QCOMPARE(tabs->currentIndex(), 0);
    auto* list = f.get<QComboBox>("cboIntakeFamily");
    Texts entries;
    for (int i = 0; i < list->count(); ++i)
        entries << list->itemText(i);
    QCOMPARE(entries, Texts({"0.1 Intake Family", "0.3 Intake Family", "0.5 Intake Family",
                             "1.0 Intake Family", "1.5 Intake Family", "2.0 Intake Family",
                             "3.0 Intake Family", "Customized Values"}));
    QCOMPARE(f.get<QLabel>("sbStatusBarText")->text(), QStringLiteral("Status"));
    QVERIFY(!f.get<QLabel>("sbStatusBarTime")->text().isEmpty());
    QVERIFY(f.get<QTableWidget>("msgSurfStore")->isHidden());
}

void InputPageTest::menusAndToolbar() {
    WindowFixture f;
    Texts menus;
    for (const QAction* top : f.w->menuBar()->actions()) {
        QString entries = top->text() + ':';
        for (const QAction* a : top->menu()->actions())
            entries += a->isSeparator()
                           ? QStringLiteral(" -")
                           : ' ' + a->objectName() + '=' + a->text() +
                                 (a->isChecked() ? "(x)" : "") + (a->isEnabled() ? "" : "(off)");
        menus << entries;
    }
    // Printing and plotting are off until results are shown.
    QCOMPARE(menus, Texts({"&File: mnuFileNew=&New mnuFileOpen=&Open... mnuFileClose=&Close(off) - "
                           "mnuFileSave=&Save - mnuFilePrintPreview=Print Pre&view(off) "
                           "mnuFilePrint=&Print...(off) mnuFilePlotPreview=Plot Preview(off) "
                           "mnuFilePlot=P&lot...(off) - mnuFileExit=E&xit",
                           "&View: mnuViewToolbar=&Toolbar(x) mnuViewStatusBar=Status &Bar(x) -",
                           "&Options: mnuOptionsSR0=Constant % Slope/Residue(x) "
                           "mnuOptionsSR1=Variable % Slope/Residue "
                           "mnuOptionsSR2=User Defined (Constant) "
                           "mnuOptionsSR3=User Defined (Variable) - mnuOptionsGreenAmpt=Green-Ampt",
                           "&Tools: mnuToolsDesignExplorer=Design &Explorer...",
                           "&Help: mnuHelpContents=&Contents "
                           "mnuHelpSearchForHelpOn=&Search For Help On... - mnuHelpAbout=&About"}));

    auto* bar = f.get<QToolBar>("tbToolBar");
    auto buttons = [bar] {
        QString seen;
        for (const QAction* a : bar->actions())
            seen += a->isSeparator() ? QStringLiteral("- ")
                                     : a->data().toString() + '|' + a->toolTip() + '|' +
                                           a->property("imageKey").toString() +
                                           (a->isEnabled() ? " " : "(off) ");
        return seen.trimmed();
    };
    QCOMPARE(buttons(), QStringLiteral("New|New|New Open|Open|Open Save|Save|Save - "
                                       "Preview|Preview Print|Preview(off) "
                                       "Print|Print Results|Print(off) - "
                                       "Plot Preview|Preview Plot|Preview(off) "
                                       "Drawing|Plot with Chart|Drawing(off) - Help|Help|Help"));
    f.w->setOutputsEnabled(true);
    QVERIFY(!buttons().contains("(off)"));

    // The View entries turn their bar off and on again.
    for (const auto& [entry, widget] : {std::pair<QString, QWidget*>{"mnuViewToolbar", bar},
                                        {"mnuViewStatusBar", f.get<QStatusBar>("sbStatusBar")}}) {
        f.trigger(entry);
        QVERIFY(widget->isHidden() && !f.action(entry)->isChecked());
        f.trigger(entry);
        QVERIFY(!widget->isHidden() && f.action(entry)->isChecked());
    }
}

void InputPageTest::notices_data() {
    QTest::addColumn<QString>("handler");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("icon");
    const QString noHelp =
        "Unable to display Help Contents. There is no Help associated with this project.";
    // clang-format off
    QTest::newRow("contents") << "mnuHelpContents_Click" << noHelp << int(QMessageBox::Information);
    QTest::newRow("search") << "mnuHelpSearchForHelpOn_Click" << noHelp << int(QMessageBox::Information);
    QTest::newRow("close stub") << "mnuFileClose_Click" << "Add 'mnuFileClose_Click' code." << int(QMessageBox::NoIcon);
    // clang-format on
}

void InputPageTest::notices() {
    QFETCH(QString, handler);
    QFETCH(QString, text);
    QFETCH(int, icon);
    WindowFixture f;
    ModalAnswer answer;
    QVERIFY(QMetaObject::invokeMethod(f.w.get(), handler.toLatin1().constData()));
    QCOMPARE(answer.boxes.size(), size_t(1));
    QCOMPARE(answer.boxes[0].text, text);
    QCOMPARE(int(answer.boxes[0].icon), icon);
    QCOMPARE(answer.boxes[0].title, QStringLiteral("Rainfold"));
    QCOMPARE(answer.boxes[0].buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
}

void InputPageTest::aboutFromMenuAndToolbar() {
    WindowFixture f;
    Texts opened;
    ModalAnswer answer([&opened](QWidget* modal) {
        opened << modal->objectName() + '/' + modal->parentWidget()->objectName();
        modal->close();
    });
    f.trigger("mnuHelpAbout");
    f.w->tbToolBar_ButtonClick("Help");
    QCOMPARE(opened, Texts({"frmAbout/ROAnalysis", "frmAbout/ROAnalysis"}));
}

void InputPageTest::fileNewKeepsInfiltrationInputs() {
    WindowFixture f;
    rainfold::DesignRecord expected = SampleDesign();
    expected.surfaceOption = rainfold::kUserVariable;
    f.w->setDesign(expected);
    f.field("txtSurfStore")->setText("0.3");
    f.trigger("mnuOptionsGreenAmpt");

    f.trigger("mnuFileNew");
    for (std::string* s :
         {&expected.txtDescription, &expected.txtLegalID, &expected.txtCounty, &expected.txtState,
          &expected.txtDesigner, &expected.txtDate, &expected.txtSYL, &expected.txtGPM,
          &expected.txtAPPL, &expected.txtWetDiam, &expected.txtSurfStore, &expected.txtResidue})
        s->clear();
    expected.intakeFamilyIndex = -1;
    expected.surfaceOption = rainfold::kConstantSlopeResidue;
    expected.segments = {};
    expected.greenAmpt = true;
    QVERIFY(f.w->design() == expected);
    QVERIFY(f.get<QTableWidget>("msgSurfStore")->isHidden());
}

void InputPageTest::surfaceOptions_data() {
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("option");
    QTest::addColumn<QString>("slopeLabel");   // empty: hidden
    QTest::addColumn<QString>("residueLabel"); // never hidden, only relabelled
    QTest::addColumn<Texts>("headings");       // empty: the table is hidden, the fields shown
    QTest::addColumn<int>("columnWidth");
    QTest::addColumn<int>("tableWidth");
    // Twips at 12 to a pixel: 960 -> 80, 2978 -> 248, 1310 -> 109, 3670 -> 306.
    // clang-format off
    QTest::newRow("SR0") << 3 << 0 << "Slope (%)" << "Residue (%)" << Texts() << 0 << 0;
    QTest::newRow("SR1 after SR2") << 2 << 1 << "" << "Residue Storage"
        << Texts({"Segment", "% Slope", "% Residue"}) << 80 << 248;
    QTest::newRow("SR2") << 0 << 2 << "Surface Storage" << "Residue Storage" << Texts() << 0 << 0;
    QTest::newRow("SR3 after SR0") << 0 << 3 << "" << "Residue (%)"
        << Texts({"Segment", "Surface Storage", "Residue Storage"}) << 109 << 306;
    // clang-format on
}

void InputPageTest::surfaceOptions() {
    QFETCH(int, before);
    QFETCH(int, option);
    QFETCH(QString, slopeLabel);
    QFETCH(QString, residueLabel);
    QFETCH(Texts, headings);
    QFETCH(int, columnWidth);
    QFETCH(int, tableWidth);
    WindowFixture f;
    auto sr = [](int k) { return QStringLiteral("mnuOptionsSR%1").arg(k); };
    f.trigger(sr(before));
    f.trigger(sr(option));
    f.trigger(sr(option)); // choosing the ticked option again keeps it ticked
    for (int k = 0; k < 4; ++k)
        QCOMPARE(f.action(sr(k))->isChecked(), k == option);

    auto* slope = f.get<QLabel>("lblSurfStore");
    QCOMPARE(slope->isHidden() ? QString() : slope->text(), slopeLabel);
    QVERIFY(!f.get("lblResidue")->isHidden());
    QCOMPARE(f.get<QLabel>("lblResidue")->text(), residueLabel);
    QCOMPARE(f.field("txtSurfStore")->isHidden(), !headings.isEmpty());
    QCOMPARE(f.field("txtResidue")->isHidden(), !headings.isEmpty());
    auto* grid = f.get<QTableWidget>("msgSurfStore");
    QCOMPARE(grid->isHidden(), headings.isEmpty());
    if (!headings.isEmpty()) {
        QCOMPARE(
            Texts({grid->item(0, 0)->text(), grid->item(0, 1)->text(), grid->item(0, 2)->text()}),
            headings);
        QCOMPARE(grid->columnWidth(1), columnWidth);
        QCOMPARE(grid->columnWidth(2), columnWidth);
        QCOMPARE(grid->width(), tableWidth);
    }
}

void InputPageTest::segmentLabels_data() {
    QTest::addColumn<QString>("length");
    QTest::addColumn<Texts>("labels"); // rows 1, 2, 5 and 10
    // clang-format off
    QTest::newRow("1300") << "1300" << Texts({"0 - 130", "130 - 260", "520 - 650", "1170 - 1300"});
    QTest::newRow("1255") << "1255" << Texts({"0 - 125.5", "125.5 - 251", "502 - 627.5", "1129.5 - 1255"});
    QTest::newRow("blank") << "" << Texts({"0 - 0", "0 - 0", "0 - 0", "0 - 0"});
    QTest::newRow("unit typed") << "1000 ft" << Texts({"0 - 100", "100 - 200", "400 - 500", "900 - 1000"});
    // clang-format on
}

void InputPageTest::segmentLabels() {
    QFETCH(QString, length);
    QFETCH(Texts, labels);
    WindowFixture f;
    QVERIFY(f.active);
    auto* grid = f.get<QTableWidget>("msgSurfStore");
    f.trigger("mnuOptionsSR1");
    grid->item(5, 1)->setText("2.5");
    f.focus("txtSYL");
    f.field("txtSYL")->setText(length);
    f.focus("txtGPM"); // leaving the length relabels the rows
    QCOMPARE(Texts({grid->item(1, 0)->text(), grid->item(2, 0)->text(), grid->item(5, 0)->text(),
                    grid->item(10, 0)->text()}),
             labels);
    f.trigger("mnuOptionsSR3"); // renaming the columns keeps the numbers
    QCOMPARE(grid->item(5, 1)->text(), QStringLiteral("2.5"));
}

void InputPageTest::storagePanels_data() {
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("field");
    QTest::addColumn<Texts>("inside"); // panels shown while the field has the focus
    QTest::addColumn<Texts>("after");  // and once it has left it
    const Texts wet = {"frmWetDiam"};
    // clang-format off
    QTest::newRow("constant %, slope") << "mnuOptionsSR0" << "txtSurfStore" << wet << wet;
    QTest::newRow("constant %, residue") << "mnuOptionsSR0" << "txtResidue" << wet << wet;
    QTest::newRow("user constant, slope") << "mnuOptionsSR2" << "txtSurfStore" << Texts({"frmSurfStore", "frmWetDiam"}) << wet;
    QTest::newRow("user constant, residue") << "mnuOptionsSR2" << "txtResidue" << Texts({"frmResidueStore", "frmWetDiam"}) << wet;
    QTest::newRow("wetted diameter") << "mnuOptionsSR2" << "txtWetDiam" << wet << Texts();
    // clang-format on
}

void InputPageTest::storagePanels() {
    QFETCH(QString, option);
    QFETCH(QString, field);
    QFETCH(Texts, inside);
    QFETCH(Texts, after);
    WindowFixture f;
    QVERIFY(f.active);
    auto shown = [&f] {
        Texts names;
        for (const char* name : {"frmSurfStore", "frmResidueStore", "frmWetDiam"})
            if (!f.get(name)->isHidden())
                names << name;
        return names;
    };
    f.get("frmResidueStore")->move(0, 0);
    f.trigger(option);
    f.focus(field);
    QCOMPARE(shown(), inside);
    if (field == "txtResidue") { // moved beside the field, level with the table's top
        QVERIFY(f.get("frmResidueStore")->x() > f.get("txtResidue")->geometry().right());
        QCOMPARE(f.get("frmResidueStore")->y(), f.get("msgSurfStore")->y());
    }
    f.focus("txtDate");
    QCOMPARE(shown(), after);
    f.focus(field); // the wetted-diameter panel does not come back
    QCOMPARE(shown().contains("frmWetDiam"), field != "txtWetDiam");
}

void InputPageTest::familyListAndGreenAmptFrames() {
    WindowFixture f;
    auto* list = f.get<QComboBox>("cboIntakeFamily");
    QWidget* kn = f.get("frmUNUK");
    QVERIFY(kn->isHidden());
    f.field("txtUk")->setText("22.5");
    list->setCurrentIndex(7);
    QVERIFY(!kn->isHidden());
    list->setCurrentIndex(3);
    QVERIFY(kn->isHidden());
    QCOMPARE(f.field("txtUk")->text(), QStringLiteral("22.5"));

    QWidget* frame = f.get("frmGA");
    QWidget* marker = f.get("cmdInfModel");
    QVERIFY(frame->isHidden() && !frame->isEnabled() && marker->isHidden());
    f.trigger("mnuOptionsGreenAmpt");
    QVERIFY(f.action("mnuOptionsGreenAmpt")->isChecked() && f.w->design().greenAmpt);
    QVERIFY(!frame->isHidden() && frame->isEnabled() && !marker->isHidden());
    f.trigger("mnuOptionsGreenAmpt");
    QVERIFY(!f.action("mnuOptionsGreenAmpt")->isChecked());
    QVERIFY(frame->isHidden() && !frame->isEnabledTo(f.w.get()) && marker->isHidden());
    // Each part turns over from where it stands, not from the tick.
    marker->show();
    f.trigger("mnuOptionsGreenAmpt");
    QVERIFY(marker->isHidden() && !frame->isHidden());
}

void InputPageTest::waterContentWarning_data() {
    QTest::addColumn<QString>("saturated");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("warnings");
    // "0" and "0." read 0, not above an empty saturated content; "0.3" does.
    QTest::newRow("empty saturated, 0.3") << ""
                                          << "0.3" << 1;
    QTest::newRow("equal passes") << "0.3"
                                  << "0.3" << 0;
    QTest::newRow("each keystroke above") << "0.1"
                                          << "0.25" << 2;
}

void InputPageTest::waterContentWarning() {
    QFETCH(QString, saturated);
    QFETCH(QString, typed);
    QFETCH(int, warnings);
    WindowFixture f;
    QVERIFY(f.active);
    f.trigger("mnuOptionsGreenAmpt"); // the water contents sit in the Green-Ampt frame
    f.field("txtThetaS")->setText(saturated);
    f.field("txtThetaI")->clear();
    f.focus("txtThetaI");
    ModalAnswer answer;
    QTest::keyClicks(f.field("txtThetaI"), typed);
    QCOMPARE(f.field("txtThetaI")->text(), typed);
    QCOMPARE(int(answer.boxes.size()), warnings);
    for (const SeenBox& box : answer.boxes) // a plain box with the default title
        QCOMPARE(box.title + '|' + box.text + '|' + QString::number(box.icon),
                 QStringLiteral("Rainfold|The initital water content must be less than the "
                                "saturated water content.|0"));
    QApplication::processEvents();
    QCOMPARE(f.w->focusWidget(), f.field("txtThetaI"));
}

void InputPageTest::omega_data() {
    QTest::addColumn<QString>("saturated");
    QTest::addColumn<QString>("initial");
    QTest::addColumn<QString>("depth");
    QTest::addColumn<QString>("left");
    QTest::addColumn<QString>("omega");
    // (0.45 - 0.25) / 40 = 0.005; (0.5 - 0.1) / 4 = 0.1; (0.3 - 0.1) / 3 = 0.0666...
    // clang-format off
    QTest::newRow("leaving the depth") << "0.45" << "0.25" << "40" << "txtRzDepth" << "0.0050";
    QTest::newRow("leaving saturated") << "0.5" << "0.1" << "4" << "txtThetaS" << "0.1000";
    QTest::newRow("leaving initial") << "0.3" << "0.1" << "3" << "txtThetaI" << "0.0667";
    QTest::newRow("depth of letters") << "0.45" << "0.25" << "deep" << "txtRzDepth" << "typed";
    // clang-format on
}

void InputPageTest::omega() {
    QFETCH(QString, saturated);
    QFETCH(QString, initial);
    QFETCH(QString, depth);
    QFETCH(QString, left);
    QFETCH(QString, omega);
    WindowFixture f;
    QVERIFY(f.active);
    f.trigger("mnuOptionsGreenAmpt");
    f.field("txtThetaS")->setText(saturated);
    f.field("txtThetaI")->setText(initial);
    f.field("txtRzDepth")->setText(depth);
    f.field("txtOmega")->setText("typed");
    f.focus(left);
    QCOMPARE(f.field("txtOmega")->text(), QStringLiteral("typed")); // entering changes nothing
    f.focus("txtKS");
    QCOMPARE(f.field("txtOmega")->text(), omega);
}

QTEST_MAIN(InputPageTest)
#include "input_page_test.moc"
