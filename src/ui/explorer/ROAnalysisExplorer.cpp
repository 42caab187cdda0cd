// Tools > "Design Explorer...": the explorer opens over the design on the input page after the
// checks of the page change, and hands its answers back into the input fields.

#include "DesignExplorer.h"
#include "Messages.h"
#include "ROAnalysis.h"

#include <QLineEdit>
#include <QTabWidget>
#include <QTableWidget>

using namespace rainfold;

void ROAnalysis::mnuToolsDesignExplorer_Click() {
    // A cell being edited counts as typed, as for the page change.
    commitEdit(msgSurfStore->currentRow(), msgSurfStore->currentColumn());
    const DesignRecord design = this->design();
    if (!checkDesign(design))
        return;
    // What stops the computation before any position stops the explorer too.
    std::string message;
    const std::optional<RunoffProbe> probe = RunoffProbe::Make(design, message);
    if (!probe) {
        ui::ShowError(this, QString::fromStdString(message));
        SSTab1->setCurrentIndex(0);
        return;
    }
    // One explorer at a time, always over the design as it now stands.
    if (explorer_)
        explorer_->close();
    explorer_ =
        new DesignExplorer(this, design, *probe, [this](const DesignExplorer::FieldValues& values) {
            useExplorerValues(values);
        });
    explorer_->show();
    explorer_->raise();
    explorer_->activateWindow();
}

// The page change back to "Input Data" comes first, so that no result of the design before the
// new values stays on show; then the values are typed in.
void ROAnalysis::useExplorerValues(const std::vector<std::pair<QString, QString>>& values) {
    SSTab1->setCurrentIndex(0);
    QLineEdit* first = nullptr;
    for (const auto& [field, text] : values) {
        QLineEdit* target = field == QLatin1String("txtWetDiam") ? txtWetDiam : txtAPPL;
        target->setText(text);
        first = first ? first : target;
    }
    raise();
    activateWindow();
    (first ? first : txtWetDiam)->setFocus(Qt::OtherFocusReason);
}
