// The "Input Data" page: its fields and labels, the reference panels, the infiltration frames and
// the segment table with its floating cell editor, and the small rules that act while the user
// types.

#include "Messages.h"
#include "ROAnalysis.h"

#include "design.h"
#include "format.h"

#include <QApplication>
#include <QComboBox>
#include <QFocusEvent>
#include <QFont>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace {

// Positions inside the page are thought of in twips, at 12 twips to a pixel: the page's text is
// about a fifth larger than the 8-point form font the twips measures were made for, so the
// table and the panels keep room for their texts.
constexpr int Tw(int twips) {
    return (twips + 6) / 12;
}

// Where the residue panel stands beside the residue field and the cell editor.
constexpr int kResiduePanelLeft = 4440;
constexpr int kResiduePanelTop = 4560;

// Widths of the two value columns and of the whole segment table, per variable option.
constexpr int kPercentColumnWidth = 960;
constexpr int kPercentTableWidth = 2978;
constexpr int kStorageColumnWidth = 1310;
constexpr int kStorageTableWidth = 3670;

constexpr int kFixedRows = 1; // the heading row of the segment table
constexpr int kSegmentRows = 10;
constexpr int kHeaderRowHeight = 34;
constexpr int kRowHeight = 20;

const QString kWaterContentMessage =
    QStringLiteral("The initital water content must be less than the saturated water content.");

std::string Text(const QLineEdit* field) {
    return field->text().toStdString();
}
double Value(const QLineEdit* field) {
    return rainfold::Val(Text(field));
}

QLabel* AddLabel(QWidget* parent, const QString& name, const QString& text, const QRect& where) {
    auto* label = new QLabel(text, parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setGeometry(where);
    return label;
}

QLineEdit* AddField(QWidget* parent, const QString& name, const QRect& where, const QString& hint,
                    QLabel* label) {
    auto* field = new QLineEdit(parent);
    field->setObjectName(name);
    field->setGeometry(where);
    if (!hint.isEmpty())
        field->setToolTip(hint);
    if (label)
        label->setBuddy(field);
    return field;
}

struct PanelRow {
    QString left;
    QString right;
};

// A fixed reference panel: a captioned frame holding a two-column table of labels and a hint
// line beneath it.
QGroupBox* AddPanel(QWidget* parent, const QString& name, const QString& title, const QRect& where,
                    const PanelRow& headings, const std::vector<PanelRow>& rows,
                    const QString& hint) {
    auto* panel = new QGroupBox(title, parent);
    panel->setObjectName(name);
    panel->setGeometry(where);
    panel->setAutoFillBackground(true);
    auto* layout = new QGridLayout(panel);
    layout->setContentsMargins(8, 4, 8, 4);
    layout->setHorizontalSpacing(12);
    layout->setVerticalSpacing(1);

    auto addCell = [&](const QString& text, int row, int column, bool heading) {
        auto* label = new QLabel(text, panel);
        label->setTextFormat(Qt::PlainText);
        if (heading) {
            QFont font = label->font();
            font.setBold(true);
            font.setUnderline(true);
            label->setFont(font);
        }
        layout->addWidget(label, row, column);
    };
    addCell(headings.left, 0, 0, true);
    addCell(headings.right, 0, 1, true);
    int row = 1;
    for (const PanelRow& r : rows) {
        addCell(r.left, row, 0, false);
        addCell(r.right, row, 1, false);
        ++row;
    }
    auto* hintLabel = new QLabel(hint, panel);
    hintLabel->setTextFormat(Qt::PlainText);
    layout->addWidget(hintLabel, row, 0, 1, 2);
    layout->setColumnStretch(1, 1);
    return panel;
}

// "0.5" becomes 0.5 followed by a blank and an inch mark.
QString Inches(const char* depth) {
    return QString::fromLatin1(depth) + QStringLiteral(" \"");
}

bool IsWindowOrMenuFocusChange(const QEvent* event) {
    const Qt::FocusReason reason = static_cast<const QFocusEvent*>(event)->reason();
    return reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason;
}

} // namespace

void ROAnalysis::buildInputPage(QWidget* page) {
    page->setMinimumSize(940, 620);
    buildLocationFrame(page);
    buildSystemFields(page);
    buildInfiltrationFrames(page);
    buildSegmentTable(page);
    buildReferencePanels(page);

    // The editor floats above the table; leaving it by hiding it hands the focus to the table.
    txtEdit = new QLineEdit(page);
    txtEdit->setObjectName(QStringLiteral("txtEdit"));
    txtEdit->setFrame(false);
    txtEdit->hide();
    QWidget::setTabOrder(txtEdit, msgSurfStore);

    const std::initializer_list<QWidget*> watched = {txtSYL,     txtWetDiam,   txtSurfStore,
                                                     txtResidue, txtThetaS,    txtThetaI,
                                                     txtRzDepth, msgSurfStore, txtEdit};
    for (QWidget* control : watched)
        control->installEventFilter(this);
}

void ROAnalysis::buildLocationFrame(QWidget* page) {
    frmJob_ = new QGroupBox(QStringLiteral("Location"), page);
    frmJob_->setObjectName(QStringLiteral("frmLocationInput"));
    frmJob_->setGeometry(8, 6, 400, 198);

    struct JobField {
        QLineEdit** field;
        const char* name;
        const char* label;
        const char* hint;
    };
    const JobField fields[] = {
        {&txtDescription, "txtDescription", "Producer",
         "Enter the name of the producer or project."},
        {&txtLegalID, "txtLegalID", "Location", "Enter legal description for the field."},
        {&txtCounty, "txtCounty", "County", "Enter County name."},
        {&txtState, "txtState", "State", "Enter state name or initials."},
        {&txtDesigner, "txtDesigner", "Designed By", "Enter designers name or initials."},
        {&txtDate, "txtDate", "Date", "Enter date designed."},
    };
    int y = 24;
    for (const JobField& f : fields) {
        const QString name = QString::fromLatin1(f.name);
        QLabel* label = AddLabel(frmJob_, QStringLiteral("lbl") + name.mid(3),
                                 QString::fromLatin1(f.label), QRect(10, y + 2, 100, 20));
        *f.field =
            AddField(frmJob_, name, QRect(112, y, 276, 22), QString::fromLatin1(f.hint), label);
        y += 28;
    }
}

void ROAnalysis::buildSystemFields(QWidget* page) {
    constexpr int labelX = 8, labelW = 186, fieldX = 200, fieldW = 90;
    QLabel* label =
        AddLabel(page, QStringLiteral("lblSYL"), QStringLiteral("System Wetted Length (ft)"),
                 QRect(labelX, 216, labelW, 20));
    txtSYL = AddField(page, QStringLiteral("txtSYL"), QRect(fieldX, 214, fieldW, 22),
                      QStringLiteral("Enter length of the Center Pivot in feet."), label);

    // The blanks in this caption push "(w/o end gun)" onto a second line.
    label = AddLabel(page, QStringLiteral("lblGPM"),
                     QStringLiteral("System Capacity (GPM)        (w/o end gun)"),
                     QRect(labelX, 242, 160, 34));
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    txtGPM = AddField(page, QStringLiteral("txtGPM"), QRect(fieldX, 242, fieldW, 22),
                      QStringLiteral("Enter the capacity of the system in gallons per minute, "
                                     "without the end gun operating."),
                      label);

    label = AddLabel(page, QStringLiteral("lblAPPL"), QStringLiteral("Application Amount (in)"),
                     QRect(labelX, 284, labelW, 20));
    txtAPPL = AddField(page, QStringLiteral("txtAPPL"), QRect(fieldX, 282, fieldW, 22),
                       QStringLiteral("Enter the depth of application in inches."), label);

    label = AddLabel(page, QStringLiteral("lblWetDiam"), QStringLiteral("Wetted Diameter (ft)"),
                     QRect(labelX, 312, labelW, 20));
    txtWetDiam =
        AddField(page, QStringLiteral("txtWetDiam"), QRect(fieldX, 310, fieldW, 22),
                 QStringLiteral("Enter the wetted diameter of the nozzles in feet."), label);

    label = AddLabel(page, QStringLiteral("lblIntakeFamilyList"), QStringLiteral("Intake Family"),
                     QRect(labelX, 341, labelW, 20));
    cboIntakeFamily = new QComboBox(page);
    cboIntakeFamily->setObjectName(QStringLiteral("cboIntakeFamily"));
    cboIntakeFamily->setGeometry(fieldX, 338, 220, 24);
    cboIntakeFamily->setToolTip(QStringLiteral("Select the intake family from the dropdown list."));
    cboIntakeFamily->setPlaceholderText(QStringLiteral("NRCS Intake Family"));
    label->setBuddy(cboIntakeFamily);

    // A marker of the Green-Ampt model in use; pressing it does nothing.
    cmdInfModel = new QPushButton(QStringLiteral("Green-Ampt"), page);
    cmdInfModel->setObjectName(QStringLiteral("cmdInfModel"));
    cmdInfModel->setGeometry(426, 338, 92, 24);
    cmdInfModel->hide();

    lblSurfStore = AddLabel(page, QStringLiteral("lblSurfStore"), QStringLiteral("Slope (%)"),
                            QRect(labelX, 376, labelW, 20));
    txtSurfStore = AddField(page, QStringLiteral("txtSurfStore"), QRect(fieldX, 374, fieldW, 22),
                            QStringLiteral("Enter surface storage parameter relative to slope."),
                            lblSurfStore);
    lblResidue = AddLabel(page, QStringLiteral("lblResidue"), QStringLiteral("Residue (%)"),
                          QRect(labelX, 404, labelW, 20));
    txtResidue = AddField(page, QStringLiteral("txtResidue"), QRect(fieldX, 402, fieldW, 22),
                          QStringLiteral("Enter surface storage parameter relative to residue."),
                          lblResidue);
}

void ROAnalysis::buildInfiltrationFrames(QWidget* page) {
    frmUNUK = new QGroupBox(QStringLiteral("User Supplied K and N Values"), page);
    frmUNUK->setObjectName(QStringLiteral("frmUNUK"));
    frmUNUK->setGeometry(520, 282, 230, 88);
    QLabel* label = AddLabel(frmUNUK, QStringLiteral("lblUk"), QStringLiteral("K Value"),
                             QRect(10, 26, 80, 20));
    txtUk = AddField(frmUNUK, QStringLiteral("txtUk"), QRect(96, 24, 110, 22), {}, label);
    label = AddLabel(frmUNUK, QStringLiteral("lblUN"), QStringLiteral("N Value"),
                     QRect(10, 56, 80, 20));
    txtUN = AddField(frmUNUK, QStringLiteral("txtUN"), QRect(96, 54, 110, 22), {}, label);
    frmUNUK->hide();

    frmGA = new QGroupBox(QStringLiteral("Green and Ampt Infiltration Parameters"), page);
    frmGA->setObjectName(QStringLiteral("frmGA"));
    frmGA->setGeometry(520, 378, 410, 214);
    struct GaField {
        QLineEdit** field;
        const char* name;
        const char* label;
        const char* unit;
    };
    const GaField fields[] = {
        {&txtKS, "txtKS", "Saturated Hydraulic Conductivity", "(mm/hr)"},
        {&txtHW, "txtHW", "Wetting Front Suction Head", "(mm)"},
        {&txtThetaS, "txtThetaS", "Saturated Water Content", ""},
        {&txtThetaI, "txtThetaI", "Initial Water Content", ""},
        {&txtOmega, "txtOmega", "Linear Variation of Water Content", "(per mm)"},
        {&txtRzDepth, "txtRzDepth", "Depth of the Root Zone", "(mm)"},
    };
    int y = 24;
    for (const GaField& f : fields) {
        const QString name = QString::fromLatin1(f.name);
        const QString stem = name.mid(3);
        label = AddLabel(frmGA, QStringLiteral("lbl") + stem, QString::fromLatin1(f.label),
                         QRect(10, y + 2, 230, 20));
        *f.field = AddField(frmGA, name, QRect(244, y, 80, 22), {}, label);
        if (*f.unit)
            AddLabel(frmGA, QStringLiteral("lbl") + stem + QStringLiteral("Unit"),
                     QString::fromLatin1(f.unit), QRect(332, y + 2, 70, 20));
        y += 31;
    }
    frmGA->hide();
    frmGA->setEnabled(false);
}

void ROAnalysis::buildSegmentTable(QWidget* page) {
    msgSurfStore = new QTableWidget(kFixedRows + kSegmentRows, 3, page);
    msgSurfStore->setObjectName(QStringLiteral("msgSurfStore"));
    msgSurfStore->setToolTip(
        QStringLiteral("Enter the surface storage parameters for slope and residue."));
    msgSurfStore->horizontalHeader()->hide();
    msgSurfStore->verticalHeader()->hide();
    msgSurfStore->setEditTriggers(QAbstractItemView::NoEditTriggers);
    msgSurfStore->setSelectionMode(QAbstractItemView::SingleSelection);
    msgSurfStore->setSelectionBehavior(QAbstractItemView::SelectItems);
    msgSurfStore->setTabKeyNavigation(false);
    msgSurfStore->setWordWrap(true);
    msgSurfStore->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    msgSurfStore->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // A point smaller than the page, so the longest segment labels fit their column.
    QFont gridFont = msgSurfStore->font();
    gridFont.setPointSizeF(gridFont.pointSizeF() - 1);
    msgSurfStore->setFont(gridFont);

    // The heading row and the segment column are fixed: grey, never current, never edited.
    const QBrush fixedBack = msgSurfStore->palette().brush(QPalette::Button);
    const QBrush fixedText = msgSurfStore->palette().brush(QPalette::ButtonText);
    for (int row = 0; row <= kSegmentRows; ++row) {
        for (int column = 0; column < 3; ++column) {
            auto* item = new QTableWidgetItem;
            if (row < kFixedRows || column == 0) {
                item->setFlags(Qt::NoItemFlags);
                item->setBackground(fixedBack);
                item->setForeground(fixedText);
                item->setTextAlignment(Qt::AlignCenter);
            } else {
                item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
            }
            msgSurfStore->setItem(row, column, item);
        }
        msgSurfStore->setRowHeight(row, row < kFixedRows ? kHeaderRowHeight : kRowHeight);
    }
    const int height =
        kHeaderRowHeight + kSegmentRows * kRowHeight + 2 * msgSurfStore->frameWidth();
    msgSurfStore->setGeometry(8, 372, Tw(kPercentTableWidth), height);
    msgSurfStore->setCurrentCell(kFixedRows, 1);
    msgSurfStore->hide();

    // The irrigated area beside the table; nothing fills it.
    txtSysArea = new QLineEdit(page);
    txtSysArea->setObjectName(QStringLiteral("txtSysArea"));
    txtSysArea->setGeometry(326, 586, 70, 22);
    txtSysArea->setReadOnly(true);
    AddLabel(page, QStringLiteral("lblSysArea"), QStringLiteral("acres"), QRect(402, 588, 50, 20))
        ->setBuddy(txtSysArea);
}

void ROAnalysis::buildReferencePanels(QWidget* page) {
    frmWetDiam = AddPanel(
        page, QStringLiteral("frmWetDiam"), QStringLiteral("Wetted Diameter"),
        QRect(520, 6, 410, 268),
        {QStringLiteral("Sprinkler Package"), QStringLiteral("Wetted Diameter")},
        {
            {QStringLiteral("High Pressure Impact (Constant Spacing)"), QStringLiteral("'H'")},
            {QStringLiteral("High Pressure Impact (Variable Spacing)"),
             QStringLiteral("80 - 110 ft")},
            {QStringLiteral("Medium Pressure Impact"), QStringLiteral("70 - 90 ft")},
            {QStringLiteral("Low Pressure Impact"), QStringLiteral("60 - 70 ft")},
            {QStringLiteral("Low Pressure w/Rotators"), QStringLiteral("50 - 60 ft")},
            {QStringLiteral("Low Pressure Spray on Pipeline"), QStringLiteral("30 - 40 ft")},
            {QStringLiteral("Low Pressure Spray on Drop Tube"), QStringLiteral("20 - 30 ft")},
            {QStringLiteral("Low Pressure Spray (180 Degrees)"), QStringLiteral("16 - 20 ft")},
            {QStringLiteral("Ultra Low Pressure (LEPA Spray Mode)"), QStringLiteral("12 - 18 ft")},
            {QStringLiteral("Ultra Low Pressure (LEPA Bubble Mode)"), QStringLiteral("1 - 2 ft")},
        },
        QStringLiteral("Enter a value for the wetted diameter.                  ^^^"));

    frmSurfStore = AddPanel(page, QStringLiteral("frmSurfStore"),
                            QStringLiteral("Surface Storage Options"), QRect(370, 330, 210, 140),
                            {QStringLiteral("Slope"), QStringLiteral("Surface Storage")},
                            {
                                {QStringLiteral("0 - 1 %"), Inches("0.5")},
                                {QStringLiteral("1 -3 %"), Inches("0.3")},
                                {QStringLiteral("3 - 5 %"), Inches("0.1")},
                                {QStringLiteral("> 5 %"), Inches("0.0")},
                            },
                            QStringLiteral("Enter storage amount.     ^ ^"));
    frmSurfStore->hide();

    frmResidueStore =
        AddPanel(page, QStringLiteral("frmResidueStore"), QStringLiteral("Residue Storage Options"),
                 QRect(Tw(kResiduePanelLeft), Tw(kResiduePanelTop), 210, 226),
                 {QStringLiteral("Residue"), QStringLiteral("Surface Storage")},
                 {
                     {QStringLiteral("0 %"), Inches("0.00")},
                     {QStringLiteral("10 %"), Inches("0.01")},
                     {QStringLiteral("20 %"), Inches("0.03")},
                     {QStringLiteral("30 %"), Inches("0.07")},
                     {QStringLiteral("40 %"), Inches("0.12")},
                     {QStringLiteral("50 %"), Inches("0.18")},
                     {QStringLiteral("60 %"), Inches("0.24")},
                     {QStringLiteral("70 %"), Inches("0.35")},
                 },
                 QStringLiteral("Enter storage amount.     ^^^"));
    frmResidueStore->hide();
}

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
        const int column = Tw(columnTwips);
        const int table = Tw(tableTwips);
        msgSurfStore->setColumnWidth(1, column);
        msgSurfStore->setColumnWidth(2, column);
        msgSurfStore->setColumnWidth(0, table - 2 * msgSurfStore->frameWidth() - 2 * column);
        msgSurfStore->resize(table, msgSurfStore->height());
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
        labelSegments();
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
        labelSegments();
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
    frmResidueStore->move(Tw(kResiduePanelLeft), Tw(kResiduePanelTop));
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
                frmSurfStore->show();
                frmSurfStore->raise();
            } else if (!in) {
                frmSurfStore->hide();
            }
        } else if (watched == txtResidue) {
            if (in) {
                frmResidueStore->move(Tw(kResiduePanelLeft), Tw(kResiduePanelTop));
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
