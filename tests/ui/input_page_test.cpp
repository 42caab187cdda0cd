// The input page: start-up state, labels and hints, menus, toolbar, status bar, File > New, the
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

namespace {

QStringList MenuEntries(const QMenu* menu) {
    QStringList entries;
    for (const QAction* a : menu->actions())
        entries << (a->isSeparator() ? QStringLiteral("-")
                                     : a->objectName() + QLatin1Char('=') + a->text());
    return entries;
}

QStringList ColumnTexts(const QTableWidget* grid, int column) {
    QStringList texts;
    for (int row = 0; row < grid->rowCount(); ++row)
        texts << grid->item(row, column)->text();
    return texts;
}

} // namespace

class InputPageTest : public QObject {
    Q_OBJECT

private slots:
    void fieldLabelsAndHints_data();
    void fieldLabelsAndHints();
    void startUpState();
    void menus();
    void toolbar();
    void viewTogglesAndStatusBar();
    void helpEntries_data();
    void helpEntries();
    void aboutFromMenuAndToolbar();
    void closeStub();
    void fileNewKeepsInfiltrationInputs();
    void txtModeDisablesEveryInput();
    void surfaceOptions_data();
    void surfaceOptions();
    void segmentLabels_data();
    void segmentLabels();
    void storagePanelsFollowFocus_data();
    void storagePanelsFollowFocus();
    void wettedDiameterPanelHidesForGood();
    void customizedValuesFrame();
    void greenAmptToggle();
    void waterContentWarning_data();
    void waterContentWarning();
    void omegaFromWaterContents_data();
    void omegaFromWaterContents();
};

void InputPageTest::fieldLabelsAndHints_data() {
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("hint");
    QTest::newRow("txtDescription") << "Producer"
                                    << "Enter the name of the producer or project.";
    QTest::newRow("txtLegalID") << "Location"
                                << "Enter legal description for the field.";
    QTest::newRow("txtCounty") << "County"
                               << "Enter County name.";
    QTest::newRow("txtState") << "State"
                              << "Enter state name or initials.";
    QTest::newRow("txtDesigner") << "Designed By"
                                 << "Enter designers name or initials.";
    QTest::newRow("txtDate") << "Date"
                             << "Enter date designed.";
    QTest::newRow("txtSYL") << "System Wetted Length (ft)"
                            << "Enter length of the Center Pivot in feet.";
    QTest::newRow("txtGPM") << "System Capacity (GPM)        (w/o end gun)"
                            << "Enter the capacity of the system in gallons per minute, without "
                               "the end gun operating.";
    QTest::newRow("txtAPPL") << "Application Amount (in)"
                             << "Enter the depth of application in inches.";
    QTest::newRow("txtWetDiam") << "Wetted Diameter (ft)"
                                << "Enter the wetted diameter of the nozzles in feet.";
    QTest::newRow("cboIntakeFamily") << "Intake Family"
                                     << "Select the intake family from the dropdown list.";
    QTest::newRow("txtSurfStore") << "Slope (%)"
                                  << "Enter surface storage parameter relative to slope.";
    QTest::newRow("txtResidue") << "Residue (%)"
                                << "Enter surface storage parameter relative to residue.";
    QTest::newRow("txtSysArea") << "acres"
                                << "";
    QTest::newRow("txtUk") << "K Value"
                           << "";
    QTest::newRow("txtUN") << "N Value"
                           << "";
    QTest::newRow("txtKS") << "Saturated Hydraulic Conductivity"
                           << "";
    QTest::newRow("txtHW") << "Wetting Front Suction Head"
                           << "";
    QTest::newRow("txtThetaS") << "Saturated Water Content"
                               << "";
    QTest::newRow("txtThetaI") << "Initial Water Content"
                               << "";
    QTest::newRow("txtOmega") << "Linear Variation of Water Content"
                              << "";
    QTest::newRow("txtRzDepth") << "Depth of the Root Zone"
                                << "";
}

void InputPageTest::fieldLabelsAndHints() {
    QFETCH(QString, label);
    QFETCH(QString, hint);
    WindowFixture f;
    QWidget* control = f.get(QTest::currentDataTag());
    QVERIFY(control);
    QLabel* beside = f.labelOf(control);
    QVERIFY(beside);
    QCOMPARE(beside->text(), label);
    QCOMPARE(control->toolTip(), hint);
}

void InputPageTest::startUpState() {
    WindowFixture f;
    QCOMPARE(f.window().windowTitle(), QStringLiteral("Potential Runoff Analysis"));
    auto* tabs = f.get<QTabWidget>("SSTab1");
    QCOMPARE(tabs->count(), 2);
    QCOMPARE(tabs->tabText(0), QStringLiteral("Input Data"));
    QCOMPARE(tabs->tabText(1), QStringLiteral("Results"));
    QCOMPARE(tabs->currentIndex(), 0);

    const std::pair<const char*, const char*> texts[] = {
        {"txtDescription", ""}, {"txtLegalID", ""},    {"txtCounty", ""},     {"txtState", ""},
        {"txtDesigner", ""},    {"txtDate", ""},       {"txtSYL", ""},        {"txtGPM", ""},
        {"txtAPPL", ""},        {"txtWetDiam", ""},    {"txtSurfStore", ""},  {"txtResidue", ""},
        {"txtUk", "6.3246"},    {"txtUN", "-0.615"},   {"txtKS", ""},         {"txtHW", ""},
        {"txtThetaS", ""},      {"txtThetaI", "0.25"}, {"txtOmega", ".0002"}, {"txtRzDepth", ""},
    };
    for (const auto& [name, text] : texts)
        QVERIFY2(f.field(name)->text() == QLatin1String(text), name);

    auto* list = f.get<QComboBox>("cboIntakeFamily");
    QCOMPARE(list->currentIndex(), -1);
    QCOMPARE(list->placeholderText(), QStringLiteral("NRCS Intake Family"));
    QStringList entries;
    for (int i = 0; i < list->count(); ++i)
        entries << list->itemText(i);
    QCOMPARE(entries, QStringList({"0.1 Intake Family", "0.3 Intake Family", "0.5 Intake Family",
                                   "1.0 Intake Family", "1.5 Intake Family", "2.0 Intake Family",
                                   "3.0 Intake Family", "Customized Values"}));

    QVERIFY(f.get<QGroupBox>("frmUNUK")->isHidden());
    QVERIFY(f.get<QGroupBox>("frmGA")->isHidden());
    QVERIFY(!f.get<QGroupBox>("frmGA")->isEnabled());
    QVERIFY(f.get<QPushButton>("cmdInfModel")->isHidden());
    QCOMPARE(f.get<QPushButton>("cmdInfModel")->text(), QStringLiteral("Green-Ampt"));
    QVERIFY(f.get<QTableWidget>("msgSurfStore")->isHidden());
    QVERIFY(f.field("txtEdit")->isHidden());
    QVERIFY(!f.get<QGroupBox>("frmWetDiam")->isHidden());
    QVERIFY(f.get<QGroupBox>("frmSurfStore")->isHidden());
    QVERIFY(f.get<QGroupBox>("frmResidueStore")->isHidden());
    // Nothing is computed yet, so printing and plotting are off.
    for (const char* name :
         {"mnuFilePrintPreview", "mnuFilePrint", "mnuFilePlotPreview", "mnuFilePlot"})
        QVERIFY2(!f.action(name)->isEnabled(), name);
}

void InputPageTest::menus() {
    WindowFixture f;
    const QList<QAction*> top = f.window().menuBar()->actions();
    QStringList titles;
    for (const QAction* a : top)
        titles << a->text();
    QCOMPARE(titles, QStringList({"&File", "&View", "&Options", "&Help"}));

    QCOMPARE(MenuEntries(top[0]->menu()),
             QStringList({"mnuFileNew=&New", "mnuFileOpen=&Open...", "mnuFileClose=&Close", "-",
                          "mnuFileSave=&Save", "-", "mnuFilePrintPreview=Print Pre&view",
                          "mnuFilePrint=&Print...", "mnuFilePlotPreview=Plot Preview",
                          "mnuFilePlot=P&lot...", "-", "mnuFileExit=E&xit"}));
    QCOMPARE(MenuEntries(top[1]->menu()),
             QStringList({"mnuViewToolbar=&Toolbar", "mnuViewStatusBar=Status &Bar", "-"}));
    QCOMPARE(MenuEntries(top[2]->menu()),
             QStringList(
                 {"mnuOptionsSR0=Constant % Slope/Residue",
                  "mnuOptionsSR1=Variable % Slope/Residue", "mnuOptionsSR2=User Defined (Constant)",
                  "mnuOptionsSR3=User Defined (Variable)", "-", "mnuOptionsGreenAmpt=Green-Ampt"}));
    QCOMPARE(
        MenuEntries(top[3]->menu()),
        QStringList({"mnuHelpContents=&Contents", "mnuHelpSearchForHelpOn=&Search For Help On...",
                     "-", "mnuHelpAbout=&About"}));

    const std::pair<const char*, bool> ticks[] = {
        {"mnuViewToolbar", true},      {"mnuViewStatusBar", true}, {"mnuOptionsSR0", true},
        {"mnuOptionsSR1", false},      {"mnuOptionsSR2", false},   {"mnuOptionsSR3", false},
        {"mnuOptionsGreenAmpt", false}};
    for (const auto& [name, checked] : ticks)
        QVERIFY2(f.action(name)->isChecked() == checked, name);
    QVERIFY(!f.action("mnuFileClose")->isEnabled());
}

void InputPageTest::toolbar() {
    WindowFixture f;
    auto* bar = f.get<QToolBar>("tbToolBar");
    QStringList seen;
    for (const QAction* a : bar->actions())
        seen << (a->isSeparator() ? QStringLiteral("-")
                                  : a->data().toString() + '|' + a->toolTip() + '|' +
                                        a->property("imageKey").toString());
    QCOMPARE(seen, QStringList({"New|New|New", "Open|Open|Open", "Save|Save|Save", "-",
                                "Preview|Preview Print|Preview", "Print|Print Results|Print", "-",
                                "Plot Preview|Preview Plot|Preview",
                                "Drawing|Plot with Chart|Drawing", "-", "Help|Help|Help"}));

    // Buttons 5, 6, 8 and 9 follow the print and plot entries; the others stay on.
    auto enabledKeys = [bar] {
        QStringList keys;
        for (const QAction* a : bar->actions())
            if (!a->isSeparator() && a->isEnabled())
                keys << a->data().toString();
        return keys;
    };
    QCOMPARE(enabledKeys(), QStringList({"New", "Open", "Save", "Help"}));
    f.window().setOutputsEnabled(true);
    QCOMPARE(enabledKeys().size(), 8);
    QVERIFY(f.action("mnuFilePlot")->isEnabled());
}

void InputPageTest::viewTogglesAndStatusBar() {
    WindowFixture f;
    auto* bar = f.get<QToolBar>("tbToolBar");
    auto* status = f.get<QStatusBar>("sbStatusBar");
    QCOMPARE(f.get<QLabel>("sbStatusBarText")->text(), QStringLiteral("Status"));
    QVERIFY(!f.get<QLabel>("sbStatusBarDate")->text().isEmpty());
    QVERIFY(!f.get<QLabel>("sbStatusBarTime")->text().isEmpty());

    f.action("mnuViewToolbar")->trigger();
    QVERIFY(bar->isHidden());
    QVERIFY(!f.action("mnuViewToolbar")->isChecked());
    QVERIFY(!status->isHidden());
    f.action("mnuViewToolbar")->trigger();
    QVERIFY(!bar->isHidden());
    QVERIFY(f.action("mnuViewToolbar")->isChecked());

    f.action("mnuViewStatusBar")->trigger();
    QVERIFY(status->isHidden());
    f.action("mnuViewStatusBar")->trigger();
    QVERIFY(!status->isHidden());
}

void InputPageTest::helpEntries_data() {
    QTest::addColumn<QString>("entry");
    QTest::newRow("contents") << "mnuHelpContents";
    QTest::newRow("search") << "mnuHelpSearchForHelpOn";
}

void InputPageTest::helpEntries() {
    QFETCH(QString, entry);
    WindowFixture f;
    ModalAnswer answer;
    f.action(entry.toLatin1().constData())->trigger();
    QCOMPARE(answer.boxes().size(), size_t(1));
    const SeenBox& box = answer.boxes().front();
    QCOMPARE(box.text, QStringLiteral("Unable to display Help Contents. There is no Help "
                                      "associated with this project."));
    QCOMPARE(box.icon, QMessageBox::Information);
    QCOMPARE(box.title, QStringLiteral("Rainfold"));
    QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
}

void InputPageTest::aboutFromMenuAndToolbar() {
    WindowFixture f;
    QStringList opened;
    ModalAnswer answer(QMessageBox::Ok, [&opened](QWidget* modal) {
        opened << modal->objectName() + '/' + modal->parentWidget()->objectName();
        modal->close();
    });
    f.action("mnuHelpAbout")->trigger();
    f.window().tbToolBar_ButtonClick(QStringLiteral("Help"));
    QCOMPARE(opened, QStringList({"frmAbout/ROAnalysis", "frmAbout/ROAnalysis"}));
    QVERIFY(answer.boxes().empty());
}

void InputPageTest::closeStub() {
    WindowFixture f;
    ModalAnswer answer;
    QVERIFY(QMetaObject::invokeMethod(&f.window(), "mnuFileClose_Click"));
    QCOMPARE(answer.boxes().size(), size_t(1));
    QCOMPARE(answer.boxes()[0].text, QStringLiteral("Add 'mnuFileClose_Click' code."));
    QCOMPARE(answer.boxes()[0].icon, QMessageBox::NoIcon);
    QCOMPARE(answer.boxes()[0].title, QStringLiteral("Rainfold"));
}

void InputPageTest::fileNewKeepsInfiltrationInputs() {
    WindowFixture f;
    rainfold::DesignRecord d;
    d.txtDescription = "Farm";
    d.txtLegalID = "Sec 4";
    d.txtCounty = "Hall";
    d.txtState = "NE";
    d.txtDesigner = "JD";
    d.txtDate = "6/1";
    d.txtSYL = "1300";
    d.txtGPM = "800";
    d.txtAPPL = "1";
    d.txtWetDiam = "40";
    d.intakeFamilyIndex = 7;
    d.txtUk = "20";
    d.txtUN = "-0.4";
    d.surfaceOption = rainfold::kUserVariable;
    for (auto& row : d.segments)
        row = {"0.1", "0.2"};
    d.txtKS = "10";
    d.txtHW = "50";
    d.txtThetaS = "0.45";
    d.txtThetaI = "0.2";
    d.txtRzDepth = "600";
    d.txtOmega = "0.0004";
    f.window().setDesign(d);
    f.field("txtSurfStore")->setText("0.3");
    f.action("mnuOptionsGreenAmpt")->trigger();

    f.action("mnuFileNew")->trigger();
    rainfold::DesignRecord expected = d;
    for (std::string* s :
         {&expected.txtDescription, &expected.txtLegalID, &expected.txtCounty, &expected.txtState,
          &expected.txtDesigner, &expected.txtDate, &expected.txtSYL, &expected.txtGPM,
          &expected.txtAPPL, &expected.txtWetDiam, &expected.txtSurfStore, &expected.txtResidue})
        s->clear();
    expected.intakeFamilyIndex = -1;
    expected.surfaceOption = rainfold::kConstantSlopeResidue;
    expected.segments = {};
    expected.greenAmpt = true;
    QVERIFY(f.window().design() == expected);
    QVERIFY(!f.get<QGroupBox>("frmGA")->isHidden());
    QVERIFY(f.get<QTableWidget>("msgSurfStore")->isHidden());
}

void InputPageTest::txtModeDisablesEveryInput() {
    WindowFixture f;
    f.window().txtMode(false);
    for (const char* name :
         {"txtDescription",  "txtLegalID",   "txtCounty",  "txtState",     "txtDesigner",
          "txtDate",         "txtSYL",       "txtGPM",     "txtAPPL",      "txtWetDiam",
          "cboIntakeFamily", "txtSurfStore", "txtResidue", "msgSurfStore", "txtUk",
          "txtUN",           "txtKS",        "txtHW",      "txtThetaS",    "txtThetaI",
          "txtOmega",        "txtRzDepth"})
        QVERIFY2(!f.get(name)->isEnabledTo(&f.window()), name);
    f.window().txtMode(true);
    QVERIFY(f.field("txtRzDepth")->isEnabledTo(f.get("frmGA")));
    QVERIFY(f.field("txtSYL")->isEnabled());
}

void InputPageTest::surfaceOptions_data() {
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("option");
    QTest::addColumn<QString>("slopeLabel");   // empty: hidden
    QTest::addColumn<QString>("residueLabel"); // the residue label is never hidden
    QTest::addColumn<bool>("fields");
    QTest::addColumn<QStringList>("headings"); // empty: table hidden
    QTest::addColumn<int>("columnWidth");
    QTest::addColumn<int>("tableWidth");
    // Widths are twips at 12 to a pixel: 960 -> 80, 2978 -> 248, 1310 -> 109, 3670 -> 306.
    QTest::newRow("SR0") << 3 << 0 << "Slope (%)"
                         << "Residue (%)" << true << QStringList() << 0 << 0;
    QTest::newRow("SR1 after SR2") << 2 << 1 << ""
                                   << "Residue Storage" << false
                                   << QStringList({"Segment", "% Slope", "% Residue"}) << 80 << 248;
    QTest::newRow("SR2") << 0 << 2 << "Surface Storage"
                         << "Residue Storage" << true << QStringList() << 0 << 0;
    QTest::newRow("SR3 after SR0")
        << 0 << 3 << ""
        << "Residue (%)" << false << QStringList({"Segment", "Surface Storage", "Residue Storage"})
        << 109 << 306;
}

void InputPageTest::surfaceOptions() {
    QFETCH(int, before);
    QFETCH(int, option);
    QFETCH(QString, slopeLabel);
    QFETCH(QString, residueLabel);
    QFETCH(bool, fields);
    QFETCH(QStringList, headings);
    QFETCH(int, columnWidth);
    QFETCH(int, tableWidth);
    WindowFixture f;
    const QByteArray names[] = {"mnuOptionsSR0", "mnuOptionsSR1", "mnuOptionsSR2", "mnuOptionsSR3"};
    f.action(names[before])->trigger();
    f.action(names[option])->trigger();
    f.action(names[option])->trigger(); // choosing the ticked option again keeps it ticked
    for (int k = 0; k < 4; ++k)
        QCOMPARE(f.action(names[k])->isChecked(), k == option);

    auto* slope = f.get<QLabel>("lblSurfStore");
    QCOMPARE(slope->isHidden(), slopeLabel.isEmpty());
    if (!slopeLabel.isEmpty())
        QCOMPARE(slope->text(), slopeLabel);
    QVERIFY(!f.get<QLabel>("lblResidue")->isHidden());
    QCOMPARE(f.get<QLabel>("lblResidue")->text(), residueLabel);
    QCOMPARE(f.field("txtSurfStore")->isHidden(), !fields);
    QCOMPARE(f.field("txtResidue")->isHidden(), !fields);

    auto* grid = f.get<QTableWidget>("msgSurfStore");
    QCOMPARE(grid->isHidden(), headings.isEmpty());
    if (!headings.isEmpty()) {
        QCOMPARE(QStringList({grid->item(0, 0)->text(), grid->item(0, 1)->text(),
                              grid->item(0, 2)->text()}),
                 headings);
        QCOMPARE(grid->columnWidth(1), columnWidth);
        QCOMPARE(grid->columnWidth(2), columnWidth);
        QCOMPARE(grid->width(), tableWidth);
    }
}

void InputPageTest::segmentLabels_data() {
    QTest::addColumn<QString>("length");
    QTest::addColumn<QStringList>("labels"); // rows 1, 2, 5 and 10
    QTest::newRow("1300") << "1300"
                          << QStringList({"0 - 130", "130 - 260", "520 - 650", "1170 - 1300"});
    QTest::newRow("1255") << "1255"
                          << QStringList(
                                 {"0 - 125.5", "125.5 - 251", "502 - 627.5", "1129.5 - 1255"});
    QTest::newRow("blank") << "" << QStringList({"0 - 0", "0 - 0", "0 - 0", "0 - 0"});
    QTest::newRow("unit typed") << "1000 ft"
                                << QStringList({"0 - 100", "100 - 200", "400 - 500", "900 - 1000"});
}

void InputPageTest::segmentLabels() {
    QFETCH(QString, length);
    QFETCH(QStringList, labels);
    WindowFixture f;
    QVERIFY(f.active());
    auto* grid = f.get<QTableWidget>("msgSurfStore");
    f.action("mnuOptionsSR1")->trigger();
    grid->item(5, 1)->setText("2.5");
    grid->item(10, 2)->setText("30");
    f.field("txtSYL")->setText("9999");
    f.focus(f.field("txtSYL"));
    f.field("txtSYL")->setText(length);
    f.focus(f.field("txtGPM")); // leaving the length relabels the rows
    const QStringList column = ColumnTexts(grid, 0);
    QCOMPARE(QStringList({column[1], column[2], column[5], column[10]}), labels);
    QCOMPARE(grid->item(5, 1)->text(), QStringLiteral("2.5"));
    QCOMPARE(grid->item(10, 2)->text(), QStringLiteral("30"));
    f.action("mnuOptionsSR3")->trigger(); // renaming the columns keeps the numbers
    QCOMPARE(grid->item(5, 1)->text(), QStringLiteral("2.5"));
}

void InputPageTest::storagePanelsFollowFocus_data() {
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("panel"); // empty: no panel comes up
    QTest::newRow("constant %, slope") << "mnuOptionsSR0"
                                       << "txtSurfStore"
                                       << "";
    QTest::newRow("constant %, residue") << "mnuOptionsSR0"
                                         << "txtResidue"
                                         << "";
    QTest::newRow("user constant, slope") << "mnuOptionsSR2"
                                          << "txtSurfStore"
                                          << "frmSurfStore";
    QTest::newRow("user constant, residue") << "mnuOptionsSR2"
                                            << "txtResidue"
                                            << "frmResidueStore";
}

void InputPageTest::storagePanelsFollowFocus() {
    QFETCH(QString, option);
    QFETCH(QString, field);
    QFETCH(QString, panel);
    WindowFixture f;
    QVERIFY(f.active());
    auto* surface = f.get<QGroupBox>("frmSurfStore");
    auto* residue = f.get<QGroupBox>("frmResidueStore");
    residue->move(0, 0);
    f.action(option.toLatin1().constData())->trigger();
    f.focus(f.field(field.toLatin1().constData()));
    QCOMPARE(!surface->isHidden(), panel == "frmSurfStore");
    QCOMPARE(!residue->isHidden(), panel == "frmResidueStore");
    if (field ==
        "txtResidue") // its place beside the field: left 4440, top 4560 twips at 12 to a pixel
        QCOMPARE(residue->pos(), QPoint(370, 380));
    f.focus(f.field("txtDate"));
    QVERIFY(surface->isHidden());
    QVERIFY(residue->isHidden());
}

void InputPageTest::wettedDiameterPanelHidesForGood() {
    WindowFixture f;
    QVERIFY(f.active());
    auto* panel = f.get<QGroupBox>("frmWetDiam");
    QVERIFY(!panel->isHidden());
    f.focus(f.field("txtWetDiam"));
    QVERIFY(!panel->isHidden());
    f.focus(f.field("txtAPPL"));
    QVERIFY(panel->isHidden());
    f.focus(f.field("txtWetDiam"));
    QVERIFY(panel->isHidden());
}

void InputPageTest::customizedValuesFrame() {
    WindowFixture f;
    auto* list = f.get<QComboBox>("cboIntakeFamily");
    auto* frame = f.get<QGroupBox>("frmUNUK");
    f.field("txtUk")->setText("22.5");
    list->setCurrentIndex(7);
    QVERIFY(!frame->isHidden());
    list->setCurrentIndex(3);
    QVERIFY(frame->isHidden());
    QCOMPARE(f.field("txtUk")->text(), QStringLiteral("22.5"));
    QCOMPARE(f.field("txtUN")->text(), QStringLiteral("-0.615"));
}

void InputPageTest::greenAmptToggle() {
    WindowFixture f;
    QAction* toggle = f.action("mnuOptionsGreenAmpt");
    auto* frame = f.get<QGroupBox>("frmGA");
    auto* marker = f.get<QPushButton>("cmdInfModel");
    toggle->trigger();
    QVERIFY(toggle->isChecked());
    QVERIFY(!frame->isHidden());
    QVERIFY(frame->isEnabled());
    QVERIFY(!marker->isHidden());
    QVERIFY(f.window().design().greenAmpt);
    toggle->trigger();
    QVERIFY(!toggle->isChecked());
    QVERIFY(frame->isHidden());
    QVERIFY(!frame->isEnabledTo(frame->parentWidget()));
    QVERIFY(marker->isHidden());
    // Each part turns over from where it stands, not from the tick.
    marker->show();
    toggle->trigger();
    QVERIFY(marker->isHidden());
    QVERIFY(!frame->isHidden());
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
    QTest::newRow("every keystroke above") << "0.1"
                                           << "0.25" << 2;
}

void InputPageTest::waterContentWarning() {
    QFETCH(QString, saturated);
    QFETCH(QString, typed);
    QFETCH(int, warnings);
    WindowFixture f;
    QVERIFY(f.active());
    f.action("mnuOptionsGreenAmpt")->trigger(); // the water contents sit in the Green-Ampt frame
    f.field("txtThetaS")->setText(saturated);
    QLineEdit* initial = f.field("txtThetaI");
    initial->clear();
    f.focus(initial);
    ModalAnswer answer;
    QTest::keyClicks(initial, typed);
    QCOMPARE(initial->text(), typed);
    QCOMPARE(int(answer.boxes().size()), warnings);
    for (const SeenBox& box : answer.boxes()) {
        QCOMPARE(box.text, QStringLiteral("The initital water content must be less than the "
                                          "saturated water content."));
        QCOMPARE(box.icon, QMessageBox::NoIcon);
        QCOMPARE(box.title, QStringLiteral("Rainfold"));
        QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    }
    QApplication::processEvents();
    QCOMPARE(f.window().focusWidget(), initial);
}

void InputPageTest::omegaFromWaterContents_data() {
    QTest::addColumn<QString>("saturated");
    QTest::addColumn<QString>("initial");
    QTest::addColumn<QString>("depth");
    QTest::addColumn<QString>("left");
    QTest::addColumn<QString>("omega");
    // (0.45 - 0.25) / 40 = 0.005; (0.5 - 0.1) / 4 = 0.1; (0.3 - 0.1) / 3 = 0.0667 (0.06666...)
    QTest::newRow("leaving the depth") << "0.45"
                                       << "0.25"
                                       << "40"
                                       << "txtRzDepth"
                                       << "0.0050";
    QTest::newRow("leaving saturated") << "0.5"
                                       << "0.1"
                                       << "4"
                                       << "txtThetaS"
                                       << "0.1000";
    QTest::newRow("leaving initial") << "0.3"
                                     << "0.1"
                                     << "3"
                                     << "txtThetaI"
                                     << "0.0667";
    QTest::newRow("no depth keeps omega") << "0.45"
                                          << "0.25"
                                          << ""
                                          << "txtThetaS"
                                          << "typed";
    QTest::newRow("depth of letters") << "0.45"
                                      << "0.25"
                                      << "deep"
                                      << "txtRzDepth"
                                      << "typed";
}

void InputPageTest::omegaFromWaterContents() {
    QFETCH(QString, saturated);
    QFETCH(QString, initial);
    QFETCH(QString, depth);
    QFETCH(QString, left);
    QFETCH(QString, omega);
    WindowFixture f;
    QVERIFY(f.active());
    f.action("mnuOptionsGreenAmpt")->trigger();
    f.field("txtThetaS")->setText(saturated);
    f.field("txtThetaI")->setText(initial);
    f.field("txtRzDepth")->setText(depth);
    f.field("txtOmega")->setText("typed");
    f.focus(f.field(left.toLatin1().constData()));
    QCOMPARE(f.field("txtOmega")->text(), QStringLiteral("typed")); // entering changes nothing
    f.focus(f.field("txtKS"));
    QCOMPARE(f.field("txtOmega")->text(), omega);
}

QTEST_MAIN(InputPageTest)
#include "input_page_test.moc"
