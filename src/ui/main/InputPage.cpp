// The "Input Data" page: its fields and labels, the reference panels, the infiltration frames and
// the segment table's construction.

#include "InputPageLayout.h"
#include "Messages.h"
#include "PageScrollArea.h"
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
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace {

using namespace rainfold::ui::layout;

QLabel* AddLabel(QWidget* parent, const QString& name, const QString& text) {
    auto* label = new QLabel(text, parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    return label;
}

// A text field about `digits` figures wide in the page's font.
QLineEdit* AddField(QWidget* parent, const QString& name, int digits, const QString& hint,
                    QLabel* label) {
    auto* field = new QLineEdit(parent);
    field->setObjectName(name);
    const QFontMetrics metrics(field->font());
    field->setFixedWidth(metrics.horizontalAdvance(QLatin1Char('0')) * digits + 2 * kGap);
    if (!hint.isEmpty())
        field->setToolTip(hint);
    if (label)
        label->setBuddy(field);
    return field;
}

// A frame that keeps its place in the page while hidden, so that showing it moves nothing.
void KeepPlace(QWidget* widget) {
    QSizePolicy policy = widget->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    widget->setSizePolicy(policy);
}

struct PanelRow {
    QString left;
    QString right;
};

// A fixed reference panel: a captioned frame holding a two-column table of labels and a hint
// line beneath it, in the given font.
QGroupBox* AddPanel(QWidget* parent, const QString& name, const QString& title, const QFont& font,
                    const PanelRow& headings, const std::vector<PanelRow>& rows,
                    const QString& hint) {
    auto* panel = new QGroupBox(title, parent);
    panel->setObjectName(name);
    panel->setFont(font);
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
    panel->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    return panel;
}

// "0.5" becomes 0.5 followed by a blank and an inch mark.
QString Inches(const char* depth) {
    return QString::fromLatin1(depth) + QStringLiteral(" \"");
}

} // namespace

// The page is laid out in two columns, from the fonts' measures: on the left the job, the
// system and the surface storage; on the right the wetted-diameter panel and the infiltration
// frames. Frames that come and go keep their place, so nothing moves when one is shown. A
// scroll area around the page keeps every control in reach on a small screen or with a large
// font.
void ROAnalysis::buildInputPage(QWidget* page) {
    auto* scroll = new rainfold::ui::PageScrollArea(page);
    scroll->setObjectName(QStringLiteral("scrInputData"));
    auto* pageLayout = new QVBoxLayout(page);
    pageLayout->setContentsMargins(0, 0, 0, 0);
    pageLayout->addWidget(scroll);
    inputContent_ = new QWidget;
    inputContent_->setObjectName(QStringLiteral("inputContent"));
    scroll->setWidget(inputContent_);

    auto* columns = new QHBoxLayout(inputContent_);
    columns->setContentsMargins(kGap, kGap / 2, kGap, kGap);
    columns->setSpacing(2 * kGap);
    auto* left = new QVBoxLayout;
    auto* right = new QVBoxLayout;
    columns->addLayout(left);
    columns->addLayout(right);
    columns->addStretch(1);

    buildLocationFrame(inputContent_);
    left->addWidget(frmJob_);
    buildSystemFields(inputContent_);
    left->addLayout(systemGrid_);
    buildInfiltrationFrames(inputContent_);
    buildSegmentTable(inputContent_);
    buildReferencePanels(inputContent_);
    left->addLayout(storageGrid_);
    left->addStretch(1);
    right->addWidget(frmWetDiam);
    right->addWidget(frmUNUK);
    right->addWidget(frmGA);
    right->addStretch(1);

    // The labels of the system fields and of the storage fields stand in one column.
    int labels = 0;
    for (const char* caption : {"Slope (%)", "Residue (%)", "Surface Storage", "Residue Storage"})
        labels = std::max(
            labels, lblResidue->fontMetrics().horizontalAdvance(QString::fromLatin1(caption)));
    for (int row = 0; row < systemGrid_->rowCount(); ++row)
        if (QLayoutItem* item = systemGrid_->itemAtPosition(row, 0); item && item->widget())
            labels = std::max(labels, item->widget()->sizeHint().width());
    systemGrid_->setColumnMinimumWidth(0, labels);
    storageGrid_->setColumnMinimumWidth(0, labels);
    sizeSegmentTable(kPercentColumnWidth, kPercentTableWidth);

    // The editor floats above the table; leaving it by hiding it hands the focus to the table.
    txtEdit = new QLineEdit(inputContent_);
    txtEdit->setObjectName(QStringLiteral("txtEdit"));
    txtEdit->setFrame(false);
    txtEdit->setFont(msgSurfStore->font()); // the text keeps its size when the cell opens
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
    auto* grid = new QGridLayout(frmJob_);
    grid->setHorizontalSpacing(kGap);
    grid->setVerticalSpacing(kGap / 2);

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
    int row = 0;
    for (const JobField& f : fields) {
        const QString name = QString::fromLatin1(f.name);
        QLabel* label =
            AddLabel(frmJob_, QStringLiteral("lbl") + name.mid(3), QString::fromLatin1(f.label));
        *f.field = AddField(frmJob_, name, 34, QString::fromLatin1(f.hint), label);
        (*f.field)->setMinimumWidth((*f.field)->width());
        (*f.field)->setMaximumWidth(QWIDGETSIZE_MAX);
        grid->addWidget(label, row, 0);
        grid->addWidget(*f.field, row, 1);
        ++row;
    }
    grid->setColumnStretch(1, 1);
}

void ROAnalysis::buildSystemFields(QWidget* page) {
    systemGrid_ = new QGridLayout;
    systemGrid_->setHorizontalSpacing(kGap);
    systemGrid_->setVerticalSpacing(kGap / 2);
    systemGrid_->setContentsMargins(0, kGap / 2, 0, 0);
    auto addRow = [this, page](int row, const char* labelName, const QString& caption,
                               QLineEdit** field, const char* fieldName, const QString& hint,
                               Qt::Alignment vertical = Qt::AlignVCenter) {
        QLabel* label = AddLabel(page, QString::fromLatin1(labelName), caption);
        *field = AddField(page, QString::fromLatin1(fieldName), 10, hint, label);
        systemGrid_->addWidget(label, row, 0, Qt::AlignLeft | vertical);
        systemGrid_->addWidget(*field, row, 1, Qt::AlignLeft | vertical);
        return label;
    };
    addRow(0, "lblSYL", QStringLiteral("System Wetted Length (ft)"), &txtSYL, "txtSYL",
           QStringLiteral("Enter length of the Center Pivot in feet."));
    // The blanks in this caption push "(w/o end gun)" onto a second line: the label is no wider
    // than its first words.
    QLabel* gpm = addRow(1, "lblGPM", QStringLiteral("System Capacity (GPM)        (w/o end gun)"),
                         &txtGPM, "txtGPM",
                         QStringLiteral("Enter the capacity of the system in gallons per minute, "
                                        "without the end gun operating."),
                         Qt::AlignTop);
    gpm->setWordWrap(true);
    gpm->setFixedWidth(
        gpm->fontMetrics().horizontalAdvance(QStringLiteral("System Capacity (GPM)  ")));
    gpm->setFixedHeight(gpm->heightForWidth(gpm->width()));
    QSizePolicy fixed = gpm->sizePolicy();
    fixed.setHeightForWidth(false);
    gpm->setSizePolicy(fixed);
    addRow(2, "lblAPPL", QStringLiteral("Application Amount (in)"), &txtAPPL, "txtAPPL",
           QStringLiteral("Enter the depth of application in inches."));
    addRow(3, "lblWetDiam", QStringLiteral("Wetted Diameter (ft)"), &txtWetDiam, "txtWetDiam",
           QStringLiteral("Enter the wetted diameter of the nozzles in feet."));

    QLabel* label =
        AddLabel(page, QStringLiteral("lblIntakeFamilyList"), QStringLiteral("Intake Family"));
    cboIntakeFamily = new QComboBox(page);
    cboIntakeFamily->setObjectName(QStringLiteral("cboIntakeFamily"));
    cboIntakeFamily->setToolTip(QStringLiteral("Select the intake family from the dropdown list."));
    cboIntakeFamily->setPlaceholderText(QStringLiteral("NRCS Intake Family"));
    cboIntakeFamily->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    label->setBuddy(cboIntakeFamily);
    // A marker of the Green-Ampt model in use; pressing it does nothing.
    cmdInfModel = new QPushButton(QStringLiteral("Green-Ampt"), page);
    cmdInfModel->setObjectName(QStringLiteral("cmdInfModel"));
    cmdInfModel->hide();
    auto* family = new QHBoxLayout;
    family->addWidget(cboIntakeFamily);
    family->addWidget(cmdInfModel);
    family->addStretch(1);
    systemGrid_->addWidget(label, 4, 0);
    systemGrid_->addLayout(family, 4, 1, 1, 2);
    systemGrid_->setColumnStretch(2, 1);

    // The storage fields come next for the keyboard too; the segment table lays them out.
    lblSurfStore = AddLabel(page, QStringLiteral("lblSurfStore"), QStringLiteral("Slope (%)"));
    txtSurfStore = AddField(page, QStringLiteral("txtSurfStore"), 10,
                            QStringLiteral("Enter surface storage parameter relative to slope."),
                            lblSurfStore);
    lblResidue = AddLabel(page, QStringLiteral("lblResidue"), QStringLiteral("Residue (%)"));
    txtResidue = AddField(page, QStringLiteral("txtResidue"), 10,
                          QStringLiteral("Enter surface storage parameter relative to residue."),
                          lblResidue);
}

void ROAnalysis::buildInfiltrationFrames(QWidget* page) {
    frmUNUK = new QGroupBox(QStringLiteral("User Supplied K and N Values"), page);
    frmUNUK->setObjectName(QStringLiteral("frmUNUK"));
    auto* kn = new QGridLayout(frmUNUK);
    kn->setHorizontalSpacing(kGap);
    QLabel* label = AddLabel(frmUNUK, QStringLiteral("lblUk"), QStringLiteral("K Value"));
    txtUk = AddField(frmUNUK, QStringLiteral("txtUk"), 12, {}, label);
    kn->addWidget(label, 0, 0);
    kn->addWidget(txtUk, 0, 1);
    label = AddLabel(frmUNUK, QStringLiteral("lblUN"), QStringLiteral("N Value"));
    txtUN = AddField(frmUNUK, QStringLiteral("txtUN"), 12, {}, label);
    kn->addWidget(label, 1, 0);
    kn->addWidget(txtUN, 1, 1);
    kn->setColumnStretch(2, 1);
    KeepPlace(frmUNUK);
    frmUNUK->hide();

    frmGA = new QGroupBox(QStringLiteral("Green and Ampt Infiltration Parameters"), page);
    frmGA->setObjectName(QStringLiteral("frmGA"));
    auto* ga = new QGridLayout(frmGA);
    ga->setHorizontalSpacing(kGap);
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
    int row = 0;
    for (const GaField& f : fields) {
        const QString name = QString::fromLatin1(f.name);
        const QString stem = name.mid(3);
        label = AddLabel(frmGA, QStringLiteral("lbl") + stem, QString::fromLatin1(f.label));
        *f.field = AddField(frmGA, name, 9, {}, label);
        ga->addWidget(label, row, 0);
        ga->addWidget(*f.field, row, 1);
        if (*f.unit)
            ga->addWidget(AddLabel(frmGA, QStringLiteral("lbl") + stem + QStringLiteral("Unit"),
                                   QString::fromLatin1(f.unit)),
                          row, 2);
        ++row;
    }
    ga->setColumnStretch(3, 1);
    KeepPlace(frmGA);
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
    // A point smaller than the page, so the table stays compact beside the storage panels.
    QFont gridFont = msgSurfStore->font();
    gridFont.setPointSizeF(gridFont.pointSizeF() - 1);
    msgSurfStore->setFont(gridFont);

    // The heading row and the segment column are fixed: grey, never current, never edited.
    const QBrush fixedBack = msgSurfStore->palette().brush(QPalette::Button);
    const QBrush fixedText = msgSurfStore->palette().brush(QPalette::ButtonText);
    // The table's own hint is shown through its cells, which answer the pointer's hover.
    const QString hint = msgSurfStore->toolTip();
    // Rows as tall as the table's font asks: two lines for the headings, which may wrap.
    const QFontMetrics metrics(gridFont);
    const int rowHeight = metrics.height() + 7;
    const int headerHeight = 2 * metrics.lineSpacing() + 8;
    for (int row = 0; row <= kSegmentRows; ++row) {
        for (int column = 0; column < 3; ++column) {
            auto* item = new QTableWidgetItem;
            item->setToolTip(hint);
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
        msgSurfStore->setRowHeight(row, row < kFixedRows ? headerHeight : rowHeight);
    }
    msgSurfStore->setFixedHeight(headerHeight + kSegmentRows * rowHeight +
                                 2 * msgSurfStore->frameWidth());
    msgSurfStore->setCurrentCell(kFixedRows, 1);
    msgSurfStore->hide();

    // The irrigated area beside the table's foot; nothing fills it.
    txtSysArea = AddField(page, QStringLiteral("txtSysArea"), 7, {}, nullptr);
    txtSysArea->setReadOnly(true);
    lblSysArea = AddLabel(page, QStringLiteral("lblSysArea"), QStringLiteral("acres"));
    lblSysArea->setBuddy(txtSysArea);

    // The storage fields, or the table in their place; the storage panels beside them, above
    // the area box. The table is raised over the residue label that stays behind it.
    // Columns: the labels, a gap, the fields (or the table over all three), a gap, then the
    // panels above the area box. The gaps are columns of their own: a table spanning the label
    // column would swallow a layout spacing there.
    storageGrid_ = new QGridLayout;
    storageGrid_->setSpacing(0);
    storageGrid_->setVerticalSpacing(kGap / 2);
    storageGrid_->setContentsMargins(0, kGap, 0, 0);
    storageGrid_->setColumnMinimumWidth(1, kGap);
    storageGrid_->setColumnMinimumWidth(3, kGap);
    storageGrid_->addWidget(lblSurfStore, 0, 0);
    storageGrid_->addWidget(txtSurfStore, 0, 2, Qt::AlignLeft);
    storageGrid_->addWidget(lblResidue, 1, 0);
    storageGrid_->addWidget(txtResidue, 1, 2, Qt::AlignLeft);
    storageGrid_->addWidget(msgSurfStore, 0, 0, 4, 3, Qt::AlignLeft | Qt::AlignTop);
    auto* area = new QHBoxLayout;
    area->setSpacing(kGap / 2);
    area->addWidget(txtSysArea);
    area->addWidget(lblSysArea);
    area->addStretch(1);
    storageGrid_->addLayout(area, 3, 4, Qt::AlignBottom);
    storageGrid_->setRowStretch(2, 1);
    storageGrid_->setColumnStretch(5, 1);
}

void ROAnalysis::buildReferencePanels(QWidget* page) {
    frmWetDiam = AddPanel(
        page, QStringLiteral("frmWetDiam"), QStringLiteral("Wetted Diameter"), page->font(),
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

    // The storage panels list values for the segment table and share its font; each stands
    // beside the storage fields or the table when it is shown.
    const QFont tableFont = msgSurfStore->font();
    frmSurfStore =
        AddPanel(page, QStringLiteral("frmSurfStore"), QStringLiteral("Surface Storage Options"),
                 tableFont, {QStringLiteral("Slope"), QStringLiteral("Surface Storage")},
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
                 tableFont, {QStringLiteral("Residue"), QStringLiteral("Surface Storage")},
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

    KeepPlace(frmWetDiam);
    for (QGroupBox* panel : {frmSurfStore, frmResidueStore}) {
        KeepPlace(panel);
        storageGrid_->addWidget(panel, 0, 4, 3, 1, Qt::AlignLeft | Qt::AlignTop);
    }
}
