// The results side of the main window: the checks and computation behind the page change, the
// results page, the chart of the chosen cell, the family-slot buttons and the printed output.

#include "Messages.h"
#include "PageScrollArea.h"
#include "ROAnalysis.h"
#include "RateChart.h"
#include "ResultsView.h"

#include "calc.h"
#include "chart_picture.h"
#include "checks.h"
#include "printing.h"

#include <QAction>
#include <QComboBox>
#include <QTabWidget>
#include <QTableWidget>
#include <QVBoxLayout>

using namespace rainfold;

namespace {

QString Q(const std::string& text) {
    return QString::fromStdString(text);
}

} // namespace

void ROAnalysis::buildResultsPage(QWidget* page) {
    results_ = std::make_unique<Results>();
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    // Where the window is smaller than the page needs, the page scrolls; where it is larger, the
    // table and the chart take the room.
    auto* scroll = new ui::PageScrollArea(page);
    scroll->setObjectName(QStringLiteral("scrResults"));
    resultsView_ = new ResultsView;
    scroll->setWidget(resultsView_);
    layout->addWidget(scroll);
}

void ROAnalysis::connectResultsSignals() {
    connect(resultsView_, &ResultsView::prevClicked, this, &ROAnalysis::cmdPrev_Click);
    connect(resultsView_, &ResultsView::nextClicked, this, &ROAnalysis::cmdNext_Click);
    connect(resultsView_, &ResultsView::chartRequested, this, &ROAnalysis::Display_Chart);
    connect(mnuFilePrintPreview, &QAction::triggered, this, &ROAnalysis::mnuFilePrintPreview_Click);
    connect(mnuFilePrint, &QAction::triggered, this, &ROAnalysis::mnuFilePrint_Click);
    connect(mnuFilePlotPreview, &QAction::triggered, this, &ROAnalysis::mnuFilePlotPreview_Click);
    connect(mnuFilePlot, &QAction::triggered, this, &ROAnalysis::mnuFilePlot_Click);
}

// The checks of the page change, in order. An error, or a warning the user cancels, returns to
// "Input Data" with the focus in the field.
bool ROAnalysis::checkDesign(const DesignRecord& design) {
    for (const CheckFailure& failure : CheckDesign(design)) {
        QWidget* field = findChild<QWidget*>(Q(failure.field));
        const auto backToField = [&] {
            SSTab1->setCurrentIndex(0);
            if (field)
                field->setFocus();
        };
        if (failure.kind == CheckKind::Warning) {
            if (ui::AskWarning(this, Q(failure.message)))
                continue;
            backToField();
            return false;
        }
        SSTab1->setCurrentIndex(0);
        ui::ShowError(this, Q(failure.message));
        backToField();
        return false;
    }
    return true;
}

void ROAnalysis::showResults() {
    // What the table shows is what is computed: an edit still open goes into its cell first.
    commitEdit(msgSurfStore->currentRow(), msgSurfStore->currentColumn());
    const DesignRecord design = this->design();
    if (!checkDesign(design))
        return;

    setOutputsEnabled(true);
    setSurfaceOptionsEnabled(false);
    resultsShown_ = true;
    resultsView_->setNavigationContext(design.intakeFamilyIndex, design.greenAmpt);
    resultsView_->setSlotText(
        QString::fromStdString(std::to_string(InitialSlot(design.intakeFamilyIndex))));

    // Hidden while the pages fill, so nothing half-filled is drawn.
    SSTab1->setVisible(false);
    const QString fault = Calc_Results_And_Populate();
    SSTab1->setVisible(true);
    if (!fault.isEmpty()) {
        ui::ShowError(this, fault);
        SSTab1->setCurrentIndex(0);
        return;
    }
    // The keyboard starts where the eye does: on the highlighted cell.
    resultsView_->grid()->setFocus(Qt::OtherFocusReason);
}

// Runs the engine on the design as it stands and fills the page, then makes the runoff cell of
// the entered capacity at the outer end current, so that the chart, the report and the plot all
// name the capacity the user typed. Returns the message of a fault that stopped it (what was
// written before the fault keeps its value), empty when all went well.
QString ROAnalysis::Calc_Results_And_Populate() {
    const DesignRecord design = this->design();
    const CalcOutcome outcome = Calc_Results(design, *results_, [this](const std::string& message) {
        ui::ShowNotice(this, Q(message));
    });
    if (outcome.status == CalcStatus::NoFamily) {
        SSTab1->setVisible(true);
        ui::ShowNotice(this, Q(outcome.message));
        cboIntakeFamily->setFocus();
        SSTab1->setCurrentIndex(0);
        return QString();
    }
    if (!outcome.ok())
        return Q(outcome.message);
    Populate_Results(design);
    if (!shownPage_.fault.empty())
        return Q(shownPage_.fault);
    resultsView_->setCurrentColumn(4); // the last row written: the outer end
    return QString();
}

void ROAnalysis::Populate_Results(const DesignRecord& design) {
    const int slot = resultsView_->slotText().toInt();
    shownPage_ = BuildResultsPage(design, *results_, slot);
    WeightedRunoff_ = shownPage_.WeightedRunoff;
    resultsView_->Populate_Results(shownPage_);
}

void ROAnalysis::Display_Chart(int row, int column) {
    if (!resultsShown_)
        return; // no results of the design on the input page to chart
    resultsView_->noteColumn(column);
    if (column < 3 || row < 0)
        return;
    const DesignRecord design = this->design();
    const ChartRequest request{column, row, resultsView_->slotText().toInt()};
    const ChartOutcome outcome = BuildChart(
        design, *results_, request, [this](const std::string& m) { ui::ShowNotice(this, Q(m)); });
    if (!outcome.fault.empty()) {
        ui::ShowError(this, Q(outcome.fault));
        return;
    }
    if (!outcome.drawn)
        return;
    shownChart_ = outcome.data;
    chartRow_ = row;
    chartColumn_ = column;
    resultsView_->showChart(outcome.data);
}

void ROAnalysis::stepSlot(int step) {
    if (!resultsShown_)
        return; // only the results shown are stepped through, never a design not yet checked
    const int slot = resultsView_->slotText().toInt();
    if ((step > 0 && slot < 3) || (step < 0 && slot > 1))
        resultsView_->setSlotText(QString::fromStdString(std::to_string(slot + step)));
    const QString fault = Calc_Results_And_Populate();
    if (!fault.isEmpty())
        ui::ShowError(this, fault);
}

void ROAnalysis::cmdPrev_Click() {
    stepSlot(-1);
}
void ROAnalysis::cmdNext_Click() {
    stepSlot(+1);
}

PrintInputs ROAnalysis::printInputs() {
    PrintInputs in;
    in.design = design();
    in.page = shownPage_;
    in.model = in.design.greenAmpt ? InfiltrationModel::GreenAmpt : InfiltrationModel::IntakeFamily;
    in.txtCol = resultsView_->txtColText().toStdString();
    in.shownRow = chartRow_;
    in.txtHP = resultsView_->txtHPText().toStdString();
    in.txtTS = resultsView_->txtTSText().toStdString();
    in.txtTP = resultsView_->txtTPText().toStdString();
    if (chartRow_ >= 0 && chartColumn_ >= 0)
        in.percentRunoff =
            resultsView_->grid()->item(chartRow_, chartColumn_)->text().toStdString();
    in.SurfStore = results_->SurfStore;
    in.version = render::VersionText().toStdString();
    in.printDate = render::ShortDateToday().toStdString();
    // The plot draws the chart shown, laid out afresh at the plot's own size, as the command
    // line's plot does.
    const RateChart* chart = resultsView_->chart();
    in.chart = render::ChartPicture(chart->data(), chart->hasData());
    return in;
}

// What is printed and plotted is the results page on show; without it there is nothing to print.
void ROAnalysis::mnuFilePrintPreview_Click() {
    if (resultsShown_)
        ui::PreviewReport(this, printInputs());
}
void ROAnalysis::mnuFilePrint_Click() {
    if (resultsShown_)
        ui::PrintReportToPrinter(this, printInputs());
}
void ROAnalysis::mnuFilePlotPreview_Click() {
    if (resultsShown_)
        ui::PreviewPlot(this, printInputs());
}
void ROAnalysis::mnuFilePlot_Click() {
    if (resultsShown_)
        ui::PrintPlotToPrinter(this, printInputs());
}
