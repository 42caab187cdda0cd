#pragma once
// The main window: the whole design lives in its input fields, its Options-menu ticks and its
// segment table; every command is offered in the menu bar and the toolbar.

#include "chart_data.h"
#include "design.h"
#include "print_inputs.h"
#include "results.h"
#include "results_page.h"

#include <QMainWindow>
#include <QPointer>
#include <QString>

#include <array>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

class QAction;
class QComboBox;
class QGridLayout;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QStatusBar;
class QTabWidget;
class QTableWidget;
class QToolBar;
class QWidget;
class ResultsView;
class DesignExplorer;

// What the window asks of a file dialog. The open and save commands share one dialog state, so
// the name shown at first is the one the last dialog ended with (a folder the very first time).
struct FileDialogRequest {
    bool save = false;      // the save dialog rather than the open dialog
    QString fileName;       // preset file name
    QString filter;         // "All Files (*.*);;Rainfold Files (*.rfd)"
    QString selectedFilter; // the filter selected first: "Rainfold Files (*.rfd)"
};
// Returns the chosen file name, or an empty text when the user cancelled.
using FileDialogFunction = std::function<QString(QWidget* parent, const FileDialogRequest&)>;

class ROAnalysis : public QMainWindow {
    Q_OBJECT

public:
    explicit ROAnalysis(QWidget* parent = nullptr);
    ~ROAnalysis() override;

    // The design as it stands in the window: every input text, the list index, the ticked
    // surface-storage option (the last ticked one, -1 when none), the ten segment rows and the
    // Green-Ampt tick.
    rainfold::DesignRecord design() const;

    // Puts a design into the window the way opening a design file does: the fields, the list
    // selection with its handling, the option tick and then the page brought into line with the
    // option. What a design file would not carry under the design's own choices is left as it
    // stands: K and N unless "Customized Values" is chosen, the two constant fields under a
    // variable option, the segment cells under a constant option. The Green-Ampt tick is not
    // part of a design file either and is left alone.
    void setDesign(const rainfold::DesignRecord& design);

    // Enables or disables every input control of the "Input Data" page at once.
    void txtMode(bool enabled);

    // Brings the page into line with the ticked surface-storage option.
    void optionSlopeResidue();

    // Opens the floating editor over the grid's current cell. The key that opened it is not
    // typed into the cell.
    void MSFlexGridEdit(QTableWidget* grid, QLineEdit* editor, short keyAscii);
    // Enter (13), Escape (27), Up (38) and Down (40) pressed in the floating editor.
    void EditKeyCode(QTableWidget* grid, QLineEdit* editor, short keyCode, short shift);

    // The print and plot commands (menu entries and toolbar buttons), usable only while results
    // are shown.
    void setOutputsEnabled(bool enabled);
    // The four surface-storage options, locked while results are shown.
    void setSurfaceOptionsEnabled(bool enabled);

    // The "Results" page of SSTab1, for the results table, chart and navigation.
    QWidget* resultsPage() const { return resultsPage_; }

    // Replaces the platform file dialog (tests answer it without a window).
    void setFileDialog(FileDialogFunction dialog);

    // File > Open once its dialog has named the file: the same reader, the same "Error" box.
    // The name becomes the one the file dialogs show next.
    void openDesignFile(const QString& fileName);

    // The results side: the one results record the window owns, the page that shows it, the
    // weighted averages of the page, and what the printed report and plot read.
    const rainfold::Results& results() const { return *results_; }
    ResultsView* resultsView() const { return resultsView_; }
    const std::array<rainfold::Cell, 4>& WeightedRunoff() const { return WeightedRunoff_; }
    rainfold::PrintInputs printInputs();

public slots:
    // Runs the command of a toolbar button, chosen by the button's key.
    void tbToolBar_ButtonClick(const QString& key);
    void mnuFilePrintPreview_Click();
    void mnuFilePrint_Click();
    void mnuFilePlotPreview_Click();
    void mnuFilePlot_Click();
    void cmdPrev_Click();
    void cmdNext_Click();

private slots:
    void mnuFileNew_Click();
    void mnuFileOpen_Click();
    void mnuFileClose_Click();
    void mnuFileSave_Click();
    void mnuFileExit_Click();
    void mnuViewToolbar_Click();
    void mnuViewStatusBar_Click();
    void mnuOptionsSR_Click(int option);
    void mnuOptionsGreenAmpt_Click();
    void mnuToolsDesignExplorer_Click();
    void mnuToolsGreenAmptSoil_Click();
    void mnuHelpContents_Click();
    void mnuHelpSearchForHelpOn_Click();
    void mnuHelpAbout_Click();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void buildMenus();
    void buildToolBar();
    void buildStatusBar();
    void buildInputPage(QWidget* page);
    void buildLocationFrame(QWidget* page);
    void buildSystemFields(QWidget* page);
    void buildReferencePanels(QWidget* page);
    void buildInfiltrationFrames(QWidget* page);
    void buildSegmentTable(QWidget* page);
    void setStartUpValues();
    void connectSignals();
    void fitToScreen();
    // Turns from "Results" to "Input Data", as the user would, before the design changes.
    void leaveResults();

    void SSTab1_Click(int previousTab);

    // The results side (ROAnalysisResults.cpp).
    void buildResultsPage(QWidget* page);
    void connectResultsSignals();
    bool checkDesign(const rainfold::DesignRecord& design);
    void showResults();
    QString Calc_Results_And_Populate();
    void Populate_Results(const rainfold::DesignRecord& design);
    void Display_Chart(int row, int column);
    void stepSlot(int step);
    void cboIntakeFamily_Click();
    void txtThetaI_Change();
    void updateOmega();
    void labelSegments();
    void sizeSegmentTable(int columnTwips, int tableTwips);
    void placeStoragePanel(QWidget* panel);
    void commitEdit(int row, int column);
    void txtEdit_GotFocus();
    void txtEdit_LostFocus();
    void returnFocusToGrid(QTableWidget* grid, QLineEdit* editor);
    QString askFileName(bool save);
    int surfaceOption() const;

    QTabWidget* SSTab1 = nullptr;
    QWidget* inputPage_ = nullptr;
    QWidget* resultsPage_ = nullptr;
    QWidget* inputContent_ = nullptr; // the input page's controls, inside its scroll area
    QGridLayout* systemGrid_ = nullptr;
    QGridLayout* storageGrid_ = nullptr; // storage fields or table, their panels, the area box

    // "Location" frame
    QGroupBox* frmJob_ = nullptr;
    QLineEdit* txtDescription = nullptr;
    QLineEdit* txtLegalID = nullptr;
    QLineEdit* txtCounty = nullptr;
    QLineEdit* txtState = nullptr;
    QLineEdit* txtDesigner = nullptr;
    QLineEdit* txtDate = nullptr;

    // System
    QLineEdit* txtSYL = nullptr;
    QLineEdit* txtGPM = nullptr;
    QLineEdit* txtAPPL = nullptr;
    QLineEdit* txtWetDiam = nullptr;
    QComboBox* cboIntakeFamily = nullptr;
    QPushButton* cmdInfModel = nullptr;

    // Surface storage
    QLabel* lblSurfStore = nullptr;
    QLabel* lblResidue = nullptr;
    QLineEdit* txtSurfStore = nullptr;
    QLineEdit* txtResidue = nullptr;
    QTableWidget* msgSurfStore = nullptr;
    QLineEdit* txtEdit = nullptr;
    QLineEdit* txtSysArea = nullptr;
    QLabel* lblSysArea = nullptr;

    // Reference panels
    QGroupBox* frmWetDiam = nullptr;
    QGroupBox* frmSurfStore = nullptr;
    QGroupBox* frmResidueStore = nullptr;

    // Infiltration
    QGroupBox* frmUNUK = nullptr;
    QLineEdit* txtUk = nullptr;
    QLineEdit* txtUN = nullptr;
    QGroupBox* frmGA = nullptr;
    QLineEdit* txtKS = nullptr;
    QLineEdit* txtHW = nullptr;
    QLineEdit* txtThetaS = nullptr;
    QLineEdit* txtThetaI = nullptr;
    QLineEdit* txtOmega = nullptr;
    QLineEdit* txtRzDepth = nullptr;

    // Menus
    QAction* mnuFileNew = nullptr;
    QAction* mnuFileOpen = nullptr;
    QAction* mnuFileClose = nullptr;
    QAction* mnuFileSave = nullptr;
    QAction* mnuFilePrintPreview = nullptr;
    QAction* mnuFilePrint = nullptr;
    QAction* mnuFilePlotPreview = nullptr;
    QAction* mnuFilePlot = nullptr;
    QAction* mnuFileExit = nullptr;
    QAction* mnuViewToolbar = nullptr;
    QAction* mnuViewStatusBar = nullptr;
    std::array<QAction*, 4> mnuOptionsSR{};
    QAction* mnuOptionsGreenAmpt = nullptr;
    QAction* mnuToolsDesignExplorer = nullptr;
    QAction* mnuToolsGreenAmptSoil = nullptr;
    QAction* mnuHelpContents = nullptr;
    QAction* mnuHelpSearchForHelpOn = nullptr;
    QAction* mnuHelpAbout = nullptr;

    QToolBar* tbToolBar = nullptr;
    QStatusBar* sbStatusBar = nullptr;

    // The file dialog's state, shared by Open and Save: the folder it starts in the first time
    // (set once per run) and the file name it last held.
    QString startFolder_;
    QString dialogFileName_;
    FileDialogFunction fileDialog_;

    bool closing_ = false;

    // Results
    // True while the "Results" page shows the results of the design on the input page: the
    // chart, the slot buttons and the print and plot commands act only then.
    bool resultsShown_ = false;
    ResultsView* resultsView_ = nullptr;
    std::unique_ptr<rainfold::Results> results_;
    std::array<rainfold::Cell, 4> WeightedRunoff_{};
    rainfold::ResultsPage shownPage_;
    rainfold::ChartData shownChart_;
    int chartRow_ = -1;
    int chartColumn_ = -1;

    // Tools > "Design Explorer..." (ROAnalysisExplorer.cpp)
    QPointer<DesignExplorer> explorer_;
    void useExplorerValues(const std::vector<std::pair<QString, QString>>& values);
};
