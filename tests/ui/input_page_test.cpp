// The input page: start-up state, labels and hints, menus and toolbar, notices, File > New, the
// surface-storage options with their panels and segment labels, and the infiltration inputs.

#include "WindowFixture.h"

#include <QComboBox>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QTableWidget>
#include <QToolBar>

class InputPageTest : public QObject {
    Q_OBJECT

private slots:
    void startUp();
    void notices();
    void fileNewKeepsInfiltrationInputs();
    void surfaceOptions();
    void segmentLabels();
    void storagePanels();
    void familyListAndGreenAmptFrames();
    void waterContentWarning();
    void omega();
};

void InputPageTest::startUp() {
    WindowFixture f;
    const struct {
        const char *control, *label, *hint, *start; // start: the text at start-up
    } controls[] = {
        // clang-format off
        {"txtDescription", "Producer", "Enter the name of the producer or project.", ""},
        {"txtLegalID", "Location", "Enter legal description for the field.", ""},
        {"txtCounty", "County", "Enter County name.", ""},
        {"txtState", "State", "Enter state name or initials.", ""},
        {"txtDesigner", "Designed By", "Enter designers name or initials.", ""},
        {"txtDate", "Date", "Enter date designed.", ""},
        {"txtSYL", "System Wetted Length (ft)", "Enter length of the Center Pivot in feet.", ""},
        {"txtGPM", "System Capacity (GPM)        (w/o end gun)",
         "Enter the capacity of the system in gallons per minute, without the end gun operating.", ""},
        {"txtAPPL", "Application Amount (in)", "Enter the depth of application in inches.", ""},
        {"txtWetDiam", "Wetted Diameter (ft)", "Enter the wetted diameter of the nozzles in feet.", ""},
        {"cboIntakeFamily", "Intake Family", "Select the intake family from the dropdown list.",
         "NRCS Intake Family"},
        {"txtSurfStore", "Slope (%)", "Enter surface storage parameter relative to slope.", ""},
        {"txtResidue", "Residue (%)", "Enter surface storage parameter relative to residue.", ""},
        {"txtSysArea", "acres", "", ""},
        {"txtUk", "K Value", "", "6.3246"},
        {"txtUN", "N Value", "", "-0.615"},
        {"txtKS", "Saturated Hydraulic Conductivity", "", ""},
        {"txtHW", "Wetting Front Suction Head", "", ""},
        {"txtThetaS", "Saturated Water Content", "", ""},
        {"txtThetaI", "Initial Water Content", "", "0.25"},
        {"txtOmega", "Linear Variation of Water Content", "", ".0002"},
        {"txtRzDepth", "Depth of the Root Zone", "", ""},
        // clang-format on
    };
    for (const auto& c : controls) {
        QWidget* control = f.get(c.control);
        QVERIFY2(control && f.labelOf(control), c.control);
        const auto* list = qobject_cast<QComboBox*>(control); // nothing selected, the prompt shown
        const QString start = !list ? static_cast<QLineEdit*>(control)->text()
                              : list->currentIndex() == -1 ? list->placeholderText()
                                                           : list->currentText();
        QCOMPARE(Texts({f.labelOf(control)->text(), control->toolTip(), start}),
                 Texts({c.label, c.hint, c.start}));
    }

    QCOMPARE(f.w->windowTitle(), QStringLiteral("Potential Runoff Analysis"));
    auto* tabs = f.get<QTabWidget>("SSTab1");
    QCOMPARE(Texts({tabs->tabText(0), tabs->tabText(1), QString::number(tabs->count()),
                    QString::number(tabs->currentIndex())}),
             Texts({"Input Data", "Results", "2", "0"}));
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

void InputPageTest::notices() {
    WindowFixture f;
    const QString noHelp =
        "Unable to display Help Contents. There is no Help associated with this project.";
    Texts opened; // About, from the menu and from the toolbar
    ModalAnswer answer({}, [&opened](QWidget* modal) {
        opened << modal->objectName() + '/' + modal->parentWidget()->objectName();
        modal->close();
    });
    for (const char* handler :
         {"mnuHelpContents_Click", "mnuHelpSearchForHelpOn_Click", "mnuFileClose_Click"})
        QVERIFY(QMetaObject::invokeMethod(f.w.get(), handler));
    f.trigger("mnuHelpAbout");
    f.w->tbToolBar_ButtonClick("Help");
    QCOMPARE(answer.lines(), Texts({"Rainfold|i|0|" + noHelp, "Rainfold|i|0|" + noHelp,
                                    "Rainfold|-|0|Add 'mnuFileClose_Click' code."}));
    for (const SeenBox& box : answer.boxes)
        QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
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

void InputPageTest::surfaceOptions() {
    const struct {
        int before, option;
        QString slopeLabel;   // empty: hidden
        QString residueLabel; // never hidden, only relabelled
        Texts headings;       // empty: the table is hidden, the fields shown
        int columnWidth, tableWidth;
    } cases[] = {
        // Twips at 12 to a pixel: 960 -> 80, 2978 -> 248, 1310 -> 109, 3670 -> 306.
        {3, 0, "Slope (%)", "Residue (%)", {}, 0, 0},
        {2, 1, "", "Residue Storage", {"Segment", "% Slope", "% Residue"}, 80, 248},
        {0, 2, "Surface Storage", "Residue Storage", {}, 0, 0},
        {0, 3, "", "Residue (%)", {"Segment", "Surface Storage", "Residue Storage"}, 109, 306},
    };
    for (const auto& c : cases) {
        WindowFixture f;
        auto sr = [](int k) { return QStringLiteral("mnuOptionsSR%1").arg(k); };
        f.trigger(sr(c.before));
        f.trigger(sr(c.option));
        f.trigger(sr(c.option)); // choosing the ticked option again keeps it ticked
        for (int k = 0; k < 4; ++k)
            QCOMPARE(f.action(sr(k))->isChecked(), k == c.option);

        auto* slope = f.get<QLabel>("lblSurfStore");
        QCOMPARE(slope->isHidden() ? QString() : slope->text(), c.slopeLabel);
        QVERIFY(!f.get("lblResidue")->isHidden());
        QCOMPARE(f.get<QLabel>("lblResidue")->text(), c.residueLabel);
        QCOMPARE(f.field("txtSurfStore")->isHidden(), !c.headings.isEmpty());
        QCOMPARE(f.field("txtResidue")->isHidden(), !c.headings.isEmpty());
        auto* grid = f.get<QTableWidget>("msgSurfStore");
        QCOMPARE(grid->isHidden(), c.headings.isEmpty());
        if (!c.headings.isEmpty()) {
            QCOMPARE(Texts({grid->item(0, 0)->text(), grid->item(0, 1)->text(),
                            grid->item(0, 2)->text()}),
                     c.headings);
            QCOMPARE(QList<int>({grid->columnWidth(1), grid->columnWidth(2), grid->width()}),
                     QList<int>({c.columnWidth, c.columnWidth, c.tableWidth}));
        }
    }
}

void InputPageTest::segmentLabels() {
    WindowFixture f;
    QVERIFY(f.active);
    auto* grid = f.get<QTableWidget>("msgSurfStore");
    f.trigger("mnuOptionsSR1");
    grid->item(5, 1)->setText("2.5");
    const std::pair<const char*, Texts> cases[] = {
        // the length, then rows 1, 2, 5 and 10
        {"1300", {"0 - 130", "130 - 260", "520 - 650", "1170 - 1300"}},
        {"1255", {"0 - 125.5", "125.5 - 251", "502 - 627.5", "1129.5 - 1255"}},
        {"", {"0 - 0", "0 - 0", "0 - 0", "0 - 0"}},
        {"1000 ft", {"0 - 100", "100 - 200", "400 - 500", "900 - 1000"}},
    };
    for (const auto& [length, labels] : cases) {
        f.focus("txtSYL");
        f.field("txtSYL")->setText(length);
        f.focus("txtGPM"); // leaving the length relabels the rows
        QCOMPARE(Texts({grid->item(1, 0)->text(), grid->item(2, 0)->text(),
                        grid->item(5, 0)->text(), grid->item(10, 0)->text()}),
                 labels);
    }
    f.trigger("mnuOptionsSR3"); // renaming the columns keeps the numbers
    QCOMPARE(grid->item(5, 1)->text(), QStringLiteral("2.5"));
}

void InputPageTest::storagePanels() {
    const Texts wet = {"frmWetDiam"};
    const struct {
        const char *option, *field;
        Texts inside, after; // panels shown while the field has the focus, and once it has left
    } cases[] = {
        {"mnuOptionsSR0", "txtSurfStore", wet, wet},
        {"mnuOptionsSR0", "txtResidue", wet, wet},
        {"mnuOptionsSR2", "txtSurfStore", {"frmSurfStore", "frmWetDiam"}, wet},
        {"mnuOptionsSR2", "txtResidue", {"frmResidueStore", "frmWetDiam"}, wet},
        {"mnuOptionsSR2", "txtWetDiam", wet, {}},
    };
    for (const auto& c : cases) {
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
        f.trigger(c.option);
        f.focus(c.field);
        QCOMPARE(shown(), c.inside);
        if (QByteArray(c.field) == "txtResidue") { // beside the field, level with the table's top
            QVERIFY(f.get("frmResidueStore")->x() > f.get("txtResidue")->geometry().right());
            QCOMPARE(f.get("frmResidueStore")->y(), f.get("msgSurfStore")->y());
        }
        f.focus("txtDate");
        QCOMPARE(shown(), c.after);
        f.focus(c.field); // the wetted-diameter panel does not come back
        QCOMPARE(shown().contains("frmWetDiam"), QByteArray(c.field) != "txtWetDiam");
    }
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

void InputPageTest::waterContentWarning() {
    const struct {
        const char *saturated, *typed;
        int warnings;
    } cases[] = {
        {"", "0.3", 1}, // "0" and "0." read 0, not above an empty saturated content; "0.3" does
        {"0.3", "0.3", 0},
        {"0.1", "0.25", 2}, // each keystroke above
    };
    for (const auto& c : cases) {
        WindowFixture f;
        QVERIFY(f.active);
        f.trigger("mnuOptionsGreenAmpt"); // the water contents sit in the Green-Ampt frame
        f.field("txtThetaS")->setText(c.saturated);
        f.field("txtThetaI")->clear();
        f.focus("txtThetaI");
        ModalAnswer answer;
        QTest::keyClicks(f.field("txtThetaI"), c.typed);
        QCOMPARE(f.field("txtThetaI")->text(), QString(c.typed));
        QCOMPARE(int(answer.boxes.size()), c.warnings);
        for (const SeenBox& box : answer.boxes) // a plain box with the default title
            QCOMPARE(box.line(), QStringLiteral("Rainfold|-|0|The initital water content must be "
                                                "less than the saturated water content."));
        QApplication::processEvents();
        QCOMPARE(f.w->focusWidget(), f.field("txtThetaI"));
    }
}

void InputPageTest::omega() {
    WindowFixture f;
    QVERIFY(f.active);
    f.trigger("mnuOptionsGreenAmpt");
    const struct {
        const char *saturated, *initial, *depth, *left, *omega;
    } cases[] = {
        // (0.45 - 0.25) / 40 = 0.005; (0.5 - 0.1) / 4 = 0.1; (0.3 - 0.1) / 3 = 0.0666...
        {"0.45", "0.25", "40", "txtRzDepth", "0.0050"},
        {"0.5", "0.1", "4", "txtThetaS", "0.1000"},
        {"0.3", "0.1", "3", "txtThetaI", "0.0667"},
        {"0.45", "0.25", "deep", "txtRzDepth", "typed"},
    };
    for (const auto& c : cases) {
        f.focus("txtKS");
        f.field("txtThetaS")->setText(c.saturated);
        f.field("txtThetaI")->setText(c.initial);
        f.field("txtRzDepth")->setText(c.depth);
        f.field("txtOmega")->setText("typed");
        f.focus(c.left);
        QCOMPARE(f.field("txtOmega")->text(), QStringLiteral("typed")); // entering changes nothing
        f.focus("txtKS");
        QCOMPARE(f.field("txtOmega")->text(), QString(c.omega));
    }
}

QTEST_MAIN(InputPageTest)
#include "input_page_test.moc"
