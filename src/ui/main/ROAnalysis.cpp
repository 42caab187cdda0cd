// The main window: pages, menus, toolbar, status bar and the commands that act on the window as a
// whole.

#include "ROAnalysis.h"

#include "Icons.h"
#include "Messages.h"
#include "dialogs/frmAbout.h"
#include "help/HelpWindow.h"

#include "design_file.h"

#include <QAction>
#include <QCloseEvent>
#include <QComboBox>
#include <QCoreApplication>
#include <QDate>
#include <QFile>
#include <QFileDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QStatusBar>
#include <QStyle>
#include <QTabWidget>
#include <QTableWidget>
#include <QTime>
#include <QTimer>
#include <QToolBar>

namespace {

const char* const kFamilyEntries[] = {
    "0.1 Intake Family", "0.3 Intake Family", "0.5 Intake Family", "1.0 Intake Family",
    "1.5 Intake Family", "2.0 Intake Family", "3.0 Intake Family", "Customized Values",
};

QString PlatformFileDialog(QWidget* parent, const FileDialogRequest& request) {
    QString selected = request.selectedFilter;
    // Saving replaces an existing file without asking, as every save asks for a name anyway.
    if (request.save)
        return QFileDialog::getSaveFileName(parent, QString(), request.fileName, request.filter,
                                            &selected, QFileDialog::DontConfirmOverwrite);
    return QFileDialog::getOpenFileName(parent, QString(), request.fileName, request.filter,
                                        &selected);
}

} // namespace

ROAnalysis::ROAnalysis(QWidget* parent) : QMainWindow(parent), fileDialog_(PlatformFileDialog) {
    setObjectName(QStringLiteral("ROAnalysis"));
    setWindowTitle(QStringLiteral("Potential Runoff Analysis"));
    setContextMenuPolicy(Qt::NoContextMenu);

    SSTab1 = new QTabWidget(this);
    SSTab1->setObjectName(QStringLiteral("SSTab1"));
    inputPage_ = new QWidget;
    inputPage_->setObjectName(QStringLiteral("tabInputData"));
    resultsPage_ = new QWidget;
    resultsPage_->setObjectName(QStringLiteral("tabResults"));
    SSTab1->addTab(inputPage_, QStringLiteral("Input Data"));
    SSTab1->addTab(resultsPage_, QStringLiteral("Results"));
    setCentralWidget(SSTab1);

    buildInputPage(inputPage_);
    buildResultsPage(resultsPage_);
    buildMenus();
    buildToolBar();
    buildStatusBar();

    // Start-up, in order: the input page, the controls enabled, the constant slope/residue
    // option, the family list.
    SSTab1->setCurrentIndex(0);
    txtMode(true);
    setStartUpValues();
    mnuOptionsSR_Click(rainfold::kConstantSlopeResidue);
    for (const char* entry : kFamilyEntries)
        cboIntakeFamily->addItem(QString::fromLatin1(entry));
    cboIntakeFamily->setCurrentIndex(-1);
    // No results exist yet, so there is nothing to print or plot.
    setOutputsEnabled(false);

    connectSignals();
    connectResultsSignals();
    fitToScreen();
}

void ROAnalysis::fitToScreen() {
    // The least size: a few dozen characters each way, so the menus, the toolbar and the status
    // bar keep their texts; the pages scroll inside it. The size it opens with: what the pages
    // ask for, within the screen's free area less room for the window's title bar and frame.
    const QFontMetrics metrics(font());
    const QSize titleRoom(2 * metrics.averageCharWidth(), 3 * metrics.height());
    const QRect screenArea = screen() ? screen()->availableGeometry() : QRect(0, 0, 1280, 720);
    const QSize room = screenArea.size() - titleRoom;
    setMinimumSize(
        QSize(64 * metrics.averageCharWidth(), 30 * metrics.lineSpacing()).boundedTo(room));
    QSize wanted = sizeHint();
    if (wanted.height() > room.height()) // the pages scroll up and down, beside their scroll bar
        wanted.rwidth() += style()->pixelMetric(QStyle::PM_ScrollBarExtent) + 2;
    resize(wanted.expandedTo(minimumSize()).boundedTo(room));
}

ROAnalysis::~ROAnalysis() = default;

void ROAnalysis::setStartUpValues() {
    txtUk->setText(QStringLiteral("6.3246"));
    txtUN->setText(QStringLiteral("-0.615"));
    txtThetaI->setText(QStringLiteral("0.25"));
    txtOmega->setText(QStringLiteral(".0002"));
}

void ROAnalysis::buildMenus() {
    auto addAction = [this](QMenu* menu, const char* name, const QString& caption) {
        QAction* action = menu->addAction(caption);
        action->setObjectName(QString::fromLatin1(name));
        return action;
    };

    QMenu* file = menuBar()->addMenu(QStringLiteral("&File"));
    file->setObjectName(QStringLiteral("mnuFile"));
    mnuFileNew = addAction(file, "mnuFileNew", QStringLiteral("&New"));
    mnuFileOpen = addAction(file, "mnuFileOpen", QStringLiteral("&Open..."));
    mnuFileClose = addAction(file, "mnuFileClose", QStringLiteral("&Close"));
    mnuFileClose->setEnabled(false); // not offered; its handler is a stub
    file->addSeparator();
    mnuFileSave = addAction(file, "mnuFileSave", QStringLiteral("&Save"));
    file->addSeparator();
    mnuFilePrintPreview = addAction(file, "mnuFilePrintPreview", QStringLiteral("Print Pre&view"));
    mnuFilePrint = addAction(file, "mnuFilePrint", QStringLiteral("&Print..."));
    mnuFilePlotPreview = addAction(file, "mnuFilePlotPreview", QStringLiteral("Plot Preview"));
    mnuFilePlot = addAction(file, "mnuFilePlot", QStringLiteral("P&lot..."));
    file->addSeparator();
    mnuFileExit = addAction(file, "mnuFileExit", QStringLiteral("E&xit"));

    QMenu* view = menuBar()->addMenu(QStringLiteral("&View"));
    view->setObjectName(QStringLiteral("mnuView"));
    mnuViewToolbar = addAction(view, "mnuViewToolbar", QStringLiteral("&Toolbar"));
    mnuViewStatusBar = addAction(view, "mnuViewStatusBar", QStringLiteral("Status &Bar"));
    for (QAction* toggle : {mnuViewToolbar, mnuViewStatusBar}) {
        toggle->setCheckable(true);
        toggle->setChecked(true);
    }
    view->addSeparator();

    QMenu* options = menuBar()->addMenu(QStringLiteral("&Options"));
    options->setObjectName(QStringLiteral("mnuOptions"));
    const char* const srNames[] = {"mnuOptionsSR0", "mnuOptionsSR1", "mnuOptionsSR2",
                                   "mnuOptionsSR3"};
    const QString srCaptions[] = {
        QStringLiteral("Constant % Slope/Residue"), QStringLiteral("Variable % Slope/Residue"),
        QStringLiteral("User Defined (Constant)"), QStringLiteral("User Defined (Variable)")};
    for (int k = 0; k < 4; ++k) {
        mnuOptionsSR[k] = addAction(options, srNames[k], srCaptions[k]);
        mnuOptionsSR[k]->setCheckable(true);
    }
    options->addSeparator();
    mnuOptionsGreenAmpt = addAction(options, "mnuOptionsGreenAmpt", QStringLiteral("Green-Ampt"));
    mnuOptionsGreenAmpt->setCheckable(true);

    QMenu* tools = menuBar()->addMenu(QStringLiteral("&Tools"));
    tools->setObjectName(QStringLiteral("mnuTools"));
    mnuToolsDesignExplorer =
        addAction(tools, "mnuToolsDesignExplorer", QStringLiteral("Design &Explorer..."));
    connect(mnuToolsDesignExplorer, &QAction::triggered, this,
            &ROAnalysis::mnuToolsDesignExplorer_Click);
    mnuToolsGreenAmptSoil = addAction(tools, "mnuToolsGreenAmptSoil",
                                      QStringLiteral("Green-Ampt Soil from &Texture..."));
    connect(mnuToolsGreenAmptSoil, &QAction::triggered, this,
            &ROAnalysis::mnuToolsGreenAmptSoil_Click);

    QMenu* help = menuBar()->addMenu(QStringLiteral("&Help"));
    help->setObjectName(QStringLiteral("mnuHelp"));
    mnuHelpContents = addAction(help, "mnuHelpContents", QStringLiteral("&Contents"));
    mnuHelpSearchForHelpOn =
        addAction(help, "mnuHelpSearchForHelpOn", QStringLiteral("&Search For Help On..."));
    help->addSeparator();
    mnuHelpAbout = addAction(help, "mnuHelpAbout", QStringLiteral("&About"));
}

void ROAnalysis::buildToolBar() {
    tbToolBar = addToolBar(QStringLiteral("Toolbar"));
    tbToolBar->setObjectName(QStringLiteral("tbToolBar"));
    tbToolBar->setMovable(false);
    tbToolBar->setFloatable(false);
    tbToolBar->toggleViewAction()->setVisible(false);

    struct Button {
        const char* key;
        const char* hint;
        const char* image;
    };
    // A null key stands for a separator.
    const Button buttons[] = {
        {"New", "New", "New"},
        {"Open", "Open", "Open"},
        {"Save", "Save", "Save"},
        {nullptr, nullptr, nullptr},
        {"Preview", "Preview Print", "Preview"},
        {"Print", "Print Results", "Print"},
        {nullptr, nullptr, nullptr},
        {"Plot Preview", "Preview Plot", "Preview"},
        {"Drawing", "Plot with Chart", "Drawing"},
        {nullptr, nullptr, nullptr},
        {"Help", "Help", "Help"},
    };
    for (const Button& b : buttons) {
        if (!b.key) {
            tbToolBar->addSeparator();
            continue;
        }
        const QString key = QString::fromLatin1(b.key);
        QAction* action =
            tbToolBar->addAction(rainfold::ui::ToolbarIcon(QString::fromLatin1(b.image)), key);
        action->setData(key);
        action->setToolTip(QString::fromLatin1(b.hint));
        action->setProperty("imageKey", QString::fromLatin1(b.image));
        connect(action, &QAction::triggered, this, [this, key] { tbToolBar_ButtonClick(key); });
    }
}

void ROAnalysis::buildStatusBar() {
    sbStatusBar = statusBar();
    sbStatusBar->setObjectName(QStringLiteral("sbStatusBar"));
    auto* text = new QLabel(QStringLiteral("Status"));
    text->setObjectName(QStringLiteral("sbStatusBarText"));
    auto* date = new QLabel;
    date->setObjectName(QStringLiteral("sbStatusBarDate"));
    auto* time = new QLabel;
    time->setObjectName(QStringLiteral("sbStatusBarTime"));
    sbStatusBar->addWidget(text, 1);
    sbStatusBar->addPermanentWidget(date);
    sbStatusBar->addPermanentWidget(time);

    // The date and time panels keep themselves current, as a clock does.
    auto refresh = [date, time] {
        const QLocale locale;
        date->setText(locale.toString(QDate::currentDate(), QLocale::ShortFormat));
        time->setText(locale.toString(QTime::currentTime(), QLocale::ShortFormat));
    };
    refresh();
    auto* clock = new QTimer(sbStatusBar);
    connect(clock, &QTimer::timeout, sbStatusBar, refresh);
    clock->start(1000);
}

void ROAnalysis::connectSignals() {
    connect(SSTab1, &QTabWidget::currentChanged, this, [this, previous = 0](int index) mutable {
        SSTab1_Click(previous);
        previous = index;
    });

    connect(mnuFileNew, &QAction::triggered, this, &ROAnalysis::mnuFileNew_Click);
    connect(mnuFileOpen, &QAction::triggered, this, &ROAnalysis::mnuFileOpen_Click);
    connect(mnuFileClose, &QAction::triggered, this, &ROAnalysis::mnuFileClose_Click);
    connect(mnuFileSave, &QAction::triggered, this, &ROAnalysis::mnuFileSave_Click);
    connect(mnuFileExit, &QAction::triggered, this, &ROAnalysis::mnuFileExit_Click);
    connect(mnuViewToolbar, &QAction::triggered, this, &ROAnalysis::mnuViewToolbar_Click);
    connect(mnuViewStatusBar, &QAction::triggered, this, &ROAnalysis::mnuViewStatusBar_Click);
    for (int k = 0; k < 4; ++k)
        connect(mnuOptionsSR[k], &QAction::triggered, this, [this, k] { mnuOptionsSR_Click(k); });
    connect(mnuOptionsGreenAmpt, &QAction::triggered, this, &ROAnalysis::mnuOptionsGreenAmpt_Click);
    connect(mnuHelpContents, &QAction::triggered, this, &ROAnalysis::mnuHelpContents_Click);
    connect(mnuHelpSearchForHelpOn, &QAction::triggered, this,
            &ROAnalysis::mnuHelpSearchForHelpOn_Click);
    connect(mnuHelpAbout, &QAction::triggered, this, &ROAnalysis::mnuHelpAbout_Click);

    connect(cboIntakeFamily, &QComboBox::currentIndexChanged, this,
            &ROAnalysis::cboIntakeFamily_Click);
    // Typing only: a design put into the window by Open or New raises no warning.
    connect(txtThetaI, &QLineEdit::textEdited, this, &ROAnalysis::txtThetaI_Change);
    connect(msgSurfStore, &QTableWidget::currentCellChanged, this,
            [this](int, int, int previousRow, int previousColumn) {
                commitEdit(previousRow, previousColumn);
            });
    connect(msgSurfStore, &QTableWidget::cellDoubleClicked, this,
            [this] { MSFlexGridEdit(msgSurfStore, txtEdit, 0); });
    connect(msgSurfStore, &QTableWidget::clicked, this, [this] { frmSurfStore->hide(); });
}

void ROAnalysis::SSTab1_Click(int previousTab) {
    (void)previousTab;
    if (SSTab1->currentIndex() == 0) {
        resultsShown_ = false;
        setOutputsEnabled(false);
        setSurfaceOptionsEnabled(true);
    } else {
        showResults();
    }
}

void ROAnalysis::setOutputsEnabled(bool enabled) {
    for (QAction* entry : {mnuFilePrintPreview, mnuFilePrint, mnuFilePlotPreview, mnuFilePlot})
        entry->setEnabled(enabled);
    for (QAction* button : tbToolBar->actions()) {
        const QString key = button->data().toString();
        if (key == QLatin1String("Preview") || key == QLatin1String("Print") ||
            key == QLatin1String("Plot Preview") || key == QLatin1String("Drawing"))
            button->setEnabled(enabled);
    }
}

void ROAnalysis::setSurfaceOptionsEnabled(bool enabled) {
    for (QAction* option : mnuOptionsSR)
        option->setEnabled(enabled);
}

void ROAnalysis::setFileDialog(FileDialogFunction dialog) {
    fileDialog_ = dialog ? std::move(dialog) : FileDialogFunction(PlatformFileDialog);
}

void ROAnalysis::mnuViewToolbar_Click() {
    tbToolBar->setVisible(mnuViewToolbar->isChecked());
}

void ROAnalysis::mnuViewStatusBar_Click() {
    sbStatusBar->setVisible(mnuViewStatusBar->isChecked());
}

void ROAnalysis::mnuOptionsSR_Click(int option) {
    for (int k = 0; k < 4; ++k)
        mnuOptionsSR[k]->setChecked(k == option);
    optionSlopeResidue();
}

void ROAnalysis::mnuOptionsGreenAmpt_Click() {
    // The menu entry has inverted its own tick; the frame, its enabled state and the marker
    // button are each inverted from where they stand.
    frmGA->setVisible(frmGA->isHidden());
    frmGA->setEnabled(!frmGA->isEnabledTo(frmGA->parentWidget()));
    cmdInfModel->setVisible(cmdInfModel->isHidden());
    // Results on show must belong to the model now in use: the page change runs again, checks
    // and all, and a failed check returns to "Input Data".
    if (SSTab1->currentIndex() == 1)
        showResults();
}

void ROAnalysis::mnuHelpContents_Click() {
    rainfold::ui::ShowHelp(this, rainfold::ui::HelpStart::Contents);
}

void ROAnalysis::mnuHelpSearchForHelpOn_Click() {
    rainfold::ui::ShowHelp(this, rainfold::ui::HelpStart::Index);
}

void ROAnalysis::mnuHelpAbout_Click() {
    frmAbout about(this);
    about.exec();
}

void ROAnalysis::tbToolBar_ButtonClick(const QString& key) {
    QAction* command = nullptr;
    if (key == QLatin1String("New"))
        command = mnuFileNew;
    else if (key == QLatin1String("Open"))
        command = mnuFileOpen;
    else if (key == QLatin1String("Save"))
        command = mnuFileSave;
    else if (key == QLatin1String("Preview"))
        command = mnuFilePrintPreview;
    else if (key == QLatin1String("Print"))
        command = mnuFilePrint;
    else if (key == QLatin1String("Plot Preview"))
        command = mnuFilePlotPreview;
    else if (key == QLatin1String("Drawing"))
        command = mnuFilePlot;
    else if (key == QLatin1String("Help"))
        command = mnuHelpAbout; // the Help button shows the About box
    if (command)
        command->trigger();
}
