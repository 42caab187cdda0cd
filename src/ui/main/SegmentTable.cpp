// The surface-storage options and the segment table with its floating cell editor, and the small
// rules of the input page that act while the user types.

#include "InputPageLayout.h"
#include "Messages.h"
#include "ROAnalysis.h"

#include "format.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QFocusEvent>
#include <QFontMetrics>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>
#include <QTableWidget>

#include <algorithm>
#include <cmath>

namespace {

using namespace rainfold::ui::layout;

const QString kWaterContentMessage =
    QStringLiteral("The initital water content must be less than the saturated water content.");

bool IsWindowOrMenuFocusChange(const QEvent* event) {
    const Qt::FocusReason reason = static_cast<const QFocusEvent*>(event)->reason();
    return reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason;
}

} // namespace

void ROAnalysis::txtMode(bool enabled) {
    QWidget* const controls[] = {
        txtDescription, txtLegalID,   txtCounty, txtState,   txtDesigner,     txtDate,
        txtSYL,         txtGPM,       txtAPPL,   txtWetDiam, cboIntakeFamily, txtSurfStore,
        txtResidue,     msgSurfStore, txtUk,     txtUN,      txtKS,           txtHW,
        txtThetaS,      txtThetaI,    txtOmega,  txtRzDepth,
    };
    for (QWidget* control : controls)
        control->setEnabled(enabled);
}

int ROAnalysis::surfaceOption() const {
    // The last ticked option wins; in normal use exactly one is ticked.
    int option = rainfold::kNoOptionTicked;
    for (int k = 0; k < 4; ++k)
        if (mnuOptionsSR[k]->isChecked())
            option = k;
    return option;
}

void ROAnalysis::optionSlopeResidue() {
    auto setHeadings = [this](const QString& first, const QString& second, int columnTwips,
                              int tableTwips) {
        msgSurfStore->item(0, 0)->setText(QStringLiteral("Segment"));
        msgSurfStore->item(0, 1)->setText(first);
        msgSurfStore->item(0, 2)->setText(second);
        labelSegments();
        sizeSegmentTable(columnTwips, tableTwips);
    };

    if (mnuOptionsSR[rainfold::kConstantSlopeResidue]->isChecked()) {
        lblSurfStore->setText(QStringLiteral("Slope (%)"));
        lblSurfStore->show();
        lblResidue->setText(QStringLiteral("Residue (%)"));
        lblResidue->show();
        txtSurfStore->show();
        txtResidue->show();
        msgSurfStore->hide();
        frmSurfStore->hide();
        txtEdit->hide();
    }
    if (mnuOptionsSR[rainfold::kVariableSlopeResidue]->isChecked()) {
        // The residue label is left standing; the table covers it.
        frmSurfStore->hide();
        lblSurfStore->hide();
        txtSurfStore->hide();
        txtResidue->hide();
        msgSurfStore->show();
        msgSurfStore->raise();
        setHeadings(QStringLiteral("% Slope"), QStringLiteral("% Residue"), kPercentColumnWidth,
                    kPercentTableWidth);
    }
    if (mnuOptionsSR[rainfold::kUserConstant]->isChecked()) {
        lblSurfStore->setText(QStringLiteral("Surface Storage"));
        lblSurfStore->show();
        lblResidue->setText(QStringLiteral("Residue Storage"));
        lblResidue->show();
        txtSurfStore->show();
        txtResidue->show();
        msgSurfStore->hide();
        frmSurfStore->hide();
        txtEdit->hide();
    }
    if (mnuOptionsSR[rainfold::kUserVariable]->isChecked()) {
        lblSurfStore->hide();
        txtSurfStore->hide();
        txtResidue->hide();
        msgSurfStore->show();
        msgSurfStore->raise();
        setHeadings(QStringLiteral("Surface Storage"), QStringLiteral("Residue Storage"),
                    kStorageColumnWidth, kStorageTableWidth);
    }
}

void ROAnalysis::labelSegments() {
    // Ten equal segments of the system length, in feet.
    const double length = Value(txtSYL) / 10;
    // A length past the range of a double has no segment ends to show.
    if (!std::isfinite(kSegmentRows * length)) {
        rainfold::ui::ShowError(this, QStringLiteral("Overflow."));
        return;
    }
    auto number = [](double x) { return QString::fromStdString(rainfold::PlainNumber(x)); };
    msgSurfStore->item(1, 0)->setText(QStringLiteral("0 - ") + number(length));
    for (int i = 2; i <= kSegmentRows; ++i)
        msgSurfStore->item(i, 0)->setText(number((i - 1) * length) + QStringLiteral(" - ") +
                                          number(i * length));
}

void ROAnalysis::sizeSegmentTable(int columnTwips, int tableTwips) {
    const int frame = 2 * msgSurfStore->frameWidth();
    const int column = Tw(columnTwips, inputContent_->font());
    msgSurfStore->setColumnWidth(1, column);
    msgSurfStore->setColumnWidth(2, column);

    // The segment column is as wide as its longest label; the page makes room for it.
    const QFontMetrics metrics(msgSurfStore->font());
    int longest = 0;
    for (int row = 0; row <= kSegmentRows; ++row)
        longest = std::max(longest, metrics.horizontalAdvance(msgSurfStore->item(row, 0)->text()));
    const int margin =
        msgSurfStore->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, msgSurfStore) + 1;
    const int segment = std::max(Tw(tableTwips, inputContent_->font()) - frame - 2 * column,
                                 longest + 2 * margin + 4);
    msgSurfStore->setColumnWidth(0, segment);
    msgSurfStore->setFixedWidth(segment + 2 * column + frame);
}

void ROAnalysis::placeStoragePanel(QWidget* panel) {
    // Beside the table when it is shown, else beside the fields, level with the table's top:
    // the place the page keeps free for the panels.
    storageGrid_->activate();
    const QRect place = storageGrid_->cellRect(0, 4);
    if (place.isValid())
        panel->move(place.topLeft());
}

void ROAnalysis::cboIntakeFamily_Click() {
    frmUNUK->setVisible(cboIntakeFamily->currentIndex() == rainfold::kCustomizedValuesIndex);
}

void ROAnalysis::txtThetaI_Change() {
    if (Value(txtThetaS) < Value(txtThetaI)) {
        rainfold::ui::ShowNotice(this, kWaterContentMessage);
        txtThetaI->setFocus();
    }
}

void ROAnalysis::updateOmega() {
    // Without a root depth the variation is undefined; what is there stays.
    const double depth = Value(txtRzDepth);
    if (depth == 0)
        return;
    const double omega = (Value(txtThetaS) - Value(txtThetaI)) / depth;
    if (!std::isfinite(omega))
        return;
    txtOmega->setText(QString::fromStdString(rainfold::FormatFixed(omega, 4)));
}

void ROAnalysis::MSFlexGridEdit(QTableWidget* grid, QLineEdit* editor, short keyAscii) {
    // The key only opens the editor; the editor starts from the cell's own text.
    (void)keyAscii;
    const int row = grid->currentRow();
    const int column = grid->currentColumn();
    QTableWidgetItem* cell = grid->item(row, column);
    if (!cell || row < kFixedRows || column < 1)
        return;
    editor->setText(cell->text());
    editor->setCursorPosition(std::min<int>(1000, static_cast<int>(editor->text().size())));
    const QRect rect = grid->visualItemRect(cell);
    editor->setGeometry(
        QRect(grid->viewport()->mapTo(editor->parentWidget(), rect.topLeft()), rect.size()));
    editor->show();
    editor->raise();
    editor->setFocus(Qt::OtherFocusReason);
}

void ROAnalysis::EditKeyCode(QTableWidget* grid, QLineEdit* editor, short keyCode, short shift) {
    (void)shift;
    switch (keyCode) {
    case 13: // Enter
        returnFocusToGrid(grid, editor);
        break;
    case 27: // Escape: the cell keeps its old text
        editor->hide();
        grid->setFocus(Qt::OtherFocusReason);
        break;
    case 38: // Up
        returnFocusToGrid(grid, editor);
        QCoreApplication::processEvents();
        if (grid->currentRow() > kFixedRows)
            grid->setCurrentCell(grid->currentRow() - 1, grid->currentColumn());
        break;
    case 40: // Down
        returnFocusToGrid(grid, editor);
        QCoreApplication::processEvents();
        if (grid->currentRow() < grid->rowCount() - 1)
            grid->setCurrentCell(grid->currentRow() + 1, grid->currentColumn());
        break;
    default:
        break;
    }
}

void ROAnalysis::returnFocusToGrid(QTableWidget* grid, QLineEdit* editor) {
    // The grid's focus event writes the text back. A window that is not active receives no
    // focus events, so the write is made here in that case.
    grid->setFocus(Qt::OtherFocusReason);
    if (!editor->isHidden())
        commitEdit(grid->currentRow(), grid->currentColumn());
}

void ROAnalysis::commitEdit(int row, int column) {
    if (txtEdit->isHidden())
        return;
    if (QTableWidgetItem* cell = msgSurfStore->item(row, column);
        cell && row >= kFixedRows && column >= 1)
        cell->setText(txtEdit->text());
    txtEdit->hide();
}

void ROAnalysis::txtEdit_GotFocus() {
    placeStoragePanel(frmResidueStore);
    placeStoragePanel(frmSurfStore);
    frmResidueStore->hide();
    frmSurfStore->hide();
    const bool userOption = mnuOptionsSR[rainfold::kUserVariable]->isChecked() ||
                            mnuOptionsSR[rainfold::kUserConstant]->isChecked();
    QGroupBox* panel = nullptr;
    switch (msgSurfStore->currentColumn()) {
    case 1:
        panel = frmSurfStore;
        break;
    case 2:
        panel = frmResidueStore;
        break;
    default:
        break;
    }
    if (panel && userOption) {
        panel->show();
        panel->raise();
    }
}

void ROAnalysis::txtEdit_LostFocus() {
    frmResidueStore->hide();
    frmSurfStore->hide();
}

bool ROAnalysis::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type == QEvent::FocusIn || type == QEvent::FocusOut) {
        // Only moves of the focus inside the window count, not the window losing or regaining
        // activation or a menu opening.
        if (IsWindowOrMenuFocusChange(event))
            return QMainWindow::eventFilter(watched, event);
        const bool in = type == QEvent::FocusIn;
        if (watched == txtSYL && !in) {
            optionSlopeResidue(); // the segment labels follow the system length
        } else if (watched == txtWetDiam && !in) {
            frmWetDiam->hide(); // once hidden, it stays hidden
        } else if (watched == txtSurfStore) {
            if (in && mnuOptionsSR[rainfold::kUserConstant]->isChecked()) {
                placeStoragePanel(frmSurfStore);
                frmSurfStore->show();
                frmSurfStore->raise();
            } else if (!in) {
                frmSurfStore->hide();
            }
        } else if (watched == txtResidue) {
            if (in) {
                placeStoragePanel(frmResidueStore);
                if (mnuOptionsSR[rainfold::kUserConstant]->isChecked()) {
                    frmResidueStore->show();
                    frmResidueStore->raise();
                }
            } else {
                frmResidueStore->hide();
            }
        } else if ((watched == txtThetaS || watched == txtThetaI || watched == txtRzDepth) && !in) {
            updateOmega();
        } else if (watched == msgSurfStore && in) {
            commitEdit(msgSurfStore->currentRow(), msgSurfStore->currentColumn());
        } else if (watched == txtEdit) {
            if (in)
                txtEdit_GotFocus();
            else
                txtEdit_LostFocus();
        }
        return QMainWindow::eventFilter(watched, event);
    }

    if (type == QEvent::KeyPress) {
        auto* key = static_cast<QKeyEvent*>(event);
        if (watched == txtEdit) {
            short code = 0;
            switch (key->key()) {
            case Qt::Key_Return:
            case Qt::Key_Enter:
                code = 13;
                break;
            case Qt::Key_Escape:
                code = 27;
                break;
            case Qt::Key_Up:
                code = 38;
                break;
            case Qt::Key_Down:
                code = 40;
                break;
            default:
                return QMainWindow::eventFilter(watched, event);
            }
            EditKeyCode(msgSurfStore, txtEdit, code,
                        static_cast<short>(key->modifiers() & Qt::ShiftModifier ? 1 : 0));
            return true; // an Enter is swallowed so the field does not beep
        }
        if (watched == msgSurfStore) {
            // A typed character opens the editor; it is not typed into the cell. Navigation
            // keys (arrows, Tab) stay with the grid.
            const QString text = key->text();
            if (!text.isEmpty() && key->key() != Qt::Key_Tab && key->key() != Qt::Key_Backtab) {
                MSFlexGridEdit(msgSurfStore, txtEdit, static_cast<short>(text.at(0).unicode()));
                return true;
            }
        }
    }
    return QMainWindow::eventFilter(watched, event);
}
