// The design as a whole, gathered from and put back into the controls, and the File-menu flows
// that read and write it.

#include "FileNames.h"
#include "Messages.h"
#include "ROAnalysis.h"

#include "design_file.h"

#include <QAction>
#include <QCloseEvent>
#include <QComboBox>
#include <QCoreApplication>
#include <QLineEdit>
#include <QTableWidget>

namespace {

const QString kFileFilter = QStringLiteral("All Files (*.*);;Rainfold Files (*.rfd)");
const QString kDesignFilter = QStringLiteral("Rainfold Files (*.rfd)");

void SetText(QLineEdit* field, const std::string& text) {
    field->setText(QString::fromStdString(text));
}

std::string Text(const QLineEdit* field) {
    return field->text().toStdString();
}

} // namespace

rainfold::DesignRecord ROAnalysis::design() const {
    rainfold::DesignRecord d;
    d.txtDescription = Text(txtDescription);
    d.txtLegalID = Text(txtLegalID);
    d.txtCounty = Text(txtCounty);
    d.txtState = Text(txtState);
    d.txtDesigner = Text(txtDesigner);
    d.txtDate = Text(txtDate);
    d.txtSYL = Text(txtSYL);
    d.txtGPM = Text(txtGPM);
    d.txtAPPL = Text(txtAPPL);
    d.txtWetDiam = Text(txtWetDiam);
    d.intakeFamilyIndex = cboIntakeFamily->currentIndex();
    d.txtUk = Text(txtUk);
    d.txtUN = Text(txtUN);
    d.surfaceOption = surfaceOption();
    d.txtSurfStore = Text(txtSurfStore);
    d.txtResidue = Text(txtResidue);
    for (int row = 1; row <= 10; ++row) {
        d.segments[row - 1].col1 = msgSurfStore->item(row, 1)->text().toStdString();
        d.segments[row - 1].col2 = msgSurfStore->item(row, 2)->text().toStdString();
    }
    d.txtKS = Text(txtKS);
    d.txtHW = Text(txtHW);
    d.txtThetaS = Text(txtThetaS);
    d.txtThetaI = Text(txtThetaI);
    d.txtRzDepth = Text(txtRzDepth);
    d.txtOmega = Text(txtOmega);
    d.greenAmpt = mnuOptionsGreenAmpt->isChecked();
    return d;
}

void ROAnalysis::setDesign(const rainfold::DesignRecord& d) {
    SetText(txtDescription, d.txtDescription);
    SetText(txtLegalID, d.txtLegalID);
    SetText(txtCounty, d.txtCounty);
    SetText(txtState, d.txtState);
    SetText(txtDesigner, d.txtDesigner);
    SetText(txtDate, d.txtDate);
    SetText(txtSYL, d.txtSYL);
    SetText(txtGPM, d.txtGPM);
    SetText(txtAPPL, d.txtAPPL);
    SetText(txtWetDiam, d.txtWetDiam);

    const int index = d.intakeFamilyIndex >= -1 && d.intakeFamilyIndex < cboIntakeFamily->count()
                          ? d.intakeFamilyIndex
                          : -1;
    cboIntakeFamily->setCurrentIndex(index);
    cboIntakeFamily_Click();
    if (index == rainfold::kCustomizedValuesIndex) {
        SetText(txtUk, d.txtUk);
        SetText(txtUN, d.txtUN);
    }

    for (QAction* option : mnuOptionsSR)
        option->setChecked(false);
    if (d.surfaceOption >= 0 && d.surfaceOption < 4)
        mnuOptionsSR[d.surfaceOption]->setChecked(true);

    if (d.surfaceOption == rainfold::kConstantSlopeResidue ||
        d.surfaceOption == rainfold::kUserConstant) {
        SetText(txtSurfStore, d.txtSurfStore);
        SetText(txtResidue, d.txtResidue);
    } else if (d.surfaceOption == rainfold::kVariableSlopeResidue ||
               d.surfaceOption == rainfold::kUserVariable) {
        // Cell by cell through the current cell, which is left on row 10, column 2.
        for (int row = 1; row <= 10; ++row) {
            msgSurfStore->setCurrentCell(row, 1);
            msgSurfStore->item(row, 1)->setText(QString::fromStdString(d.segments[row - 1].col1));
            msgSurfStore->setCurrentCell(row, 2);
            msgSurfStore->item(row, 2)->setText(QString::fromStdString(d.segments[row - 1].col2));
        }
    }

    SetText(txtKS, d.txtKS);
    SetText(txtHW, d.txtHW);
    SetText(txtThetaS, d.txtThetaS);
    SetText(txtThetaI, d.txtThetaI);
    SetText(txtRzDepth, d.txtRzDepth);
    SetText(txtOmega, d.txtOmega);

    optionSlopeResidue();
}

void ROAnalysis::leaveResults() {
    if (SSTab1->currentIndex() == 1)
        SSTab1->setCurrentIndex(0);
}

void ROAnalysis::mnuFileNew_Click() {
    leaveResults();
    for (QLineEdit* field : {txtDescription, txtLegalID, txtCounty, txtState, txtDesigner, txtDate,
                             txtSYL, txtGPM, txtAPPL, txtWetDiam})
        field->clear();
    cboIntakeFamily->setCurrentIndex(-1); // shows "NRCS Intake Family" again
    txtSurfStore->clear();
    txtResidue->clear();
    for (int row = 1; row <= 10; ++row) {
        msgSurfStore->item(row, 1)->setText(QString());
        msgSurfStore->item(row, 2)->setText(QString());
    }
    mnuOptionsSR_Click(rainfold::kConstantSlopeResidue);
}

QString ROAnalysis::askFileName(bool save) {
    FileDialogRequest request;
    request.save = save;
    request.fileName = dialogFileName_;
    request.filter = kFileFilter;
    request.selectedFilter = kDesignFilter;
    const QString chosen = fileDialog_(this, request);
    if (!chosen.isEmpty())
        dialogFileName_ = chosen;
    return chosen;
}

void ROAnalysis::mnuFileOpen_Click() {
    // The first dialog of a run starts in the program's own folder.
    if (startFolder_.isEmpty()) {
        startFolder_ = QCoreApplication::applicationDirPath();
        dialogFileName_ = startFolder_;
    }
    const QString fileName = askFileName(false);
    if (fileName.isEmpty())
        return; // cancelled
    openDesignFile(fileName);
}

void ROAnalysis::openDesignFile(const QString& fileName) {
    if (startFolder_.isEmpty())
        startFolder_ = QCoreApplication::applicationDirPath();
    dialogFileName_ = fileName;

    // The file is read and checked whole before anything in the window changes.
    rainfold::DesignRecord opened = design();
    const rainfold::FileOutcome outcome =
        rainfold::OpenDesign(rainfold::ui::FileNameBytes(fileName), opened);
    if (!outcome.ok) {
        rainfold::ui::ShowError(this, QString::fromStdString(outcome.message));
        return;
    }
    leaveResults();
    setDesign(opened);
}

void ROAnalysis::mnuFileSave_Click() {
    // What the table shows is what is saved: an edit still open goes into its cell first.
    commitEdit(msgSurfStore->currentRow(), msgSurfStore->currentColumn());
    const QString fileName = askFileName(true);
    if (fileName.isEmpty())
        return; // cancelled
    const rainfold::FileOutcome outcome =
        rainfold::SaveDesign(rainfold::ui::FileNameBytes(fileName), design());
    if (!outcome.ok)
        rainfold::ui::ShowError(this, QString::fromStdString(outcome.message));
}

void ROAnalysis::mnuFileClose_Click() {
    rainfold::ui::ShowNotice(this, QStringLiteral("Add 'mnuFileClose_Click' code."));
}

void ROAnalysis::mnuFileExit_Click() {
    close();
}

void ROAnalysis::closeEvent(QCloseEvent* event) {
    // No prompt to save: the window keeps no record of changes. Closing the window ends the
    // program and every window it has open.
    event->accept();
    if (!closing_) {
        closing_ = true;
        QCoreApplication::quit();
    }
}
