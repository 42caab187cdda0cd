// The "Input Data" page: its fields and labels, the reference panels, the infiltration frames and
// the segment table's construction.

#include "InputPageLayout.h"
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

using namespace rainfold::ui::layout;

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
// line beneath it, in the given font. An empty size leaves the panel at the size its texts need.
QGroupBox* AddPanel(QWidget* parent, const QString& name, const QString& title, const QRect& where,
                    const QFont& font, const PanelRow& headings, const std::vector<PanelRow>& rows,
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
    panel->setGeometry(where.isEmpty() ? QRect(where.topLeft(), panel->sizeHint()) : where);
    return panel;
}

// "0.5" becomes 0.5 followed by a blank and an inch mark.
QString Inches(const char* depth) {
    return QString::fromLatin1(depth) + QStringLiteral(" \"");
}

} // namespace

void ROAnalysis::buildInputPage(QWidget* page) {
    page->setMinimumSize(kRightColumnX + kRightColumnWidth + kGap, 620);
    buildLocationFrame(page);
    buildSystemFields(page);
    buildInfiltrationFrames(page);
    buildSegmentTable(page);
    buildReferencePanels(page);
    sizeSegmentTable(kPercentColumnWidth, kPercentTableWidth);

    // The editor floats above the table; leaving it by hiding it hands the focus to the table.
    txtEdit = new QLineEdit(page);
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
    frmUNUK->setGeometry(kRightColumnX, 282, 230, 88);
    QLabel* label = AddLabel(frmUNUK, QStringLiteral("lblUk"), QStringLiteral("K Value"),
                             QRect(10, 26, 80, 20));
    txtUk = AddField(frmUNUK, QStringLiteral("txtUk"), QRect(96, 24, 110, 22), {}, label);
    label = AddLabel(frmUNUK, QStringLiteral("lblUN"), QStringLiteral("N Value"),
                     QRect(10, 56, 80, 20));
    txtUN = AddField(frmUNUK, QStringLiteral("txtUN"), QRect(96, 54, 110, 22), {}, label);
    frmUNUK->hide();

    frmGA = new QGroupBox(QStringLiteral("Green and Ampt Infiltration Parameters"), page);
    frmGA->setObjectName(QStringLiteral("frmGA"));
    frmGA->setGeometry(kRightColumnX, 378, kRightColumnWidth, 214);
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
                         QRect(10, y + 2, 214, 20));
        *f.field = AddField(frmGA, name, QRect(228, y, 80, 22), {}, label);
        if (*f.unit)
            AddLabel(frmGA, QStringLiteral("lbl") + stem + QStringLiteral("Unit"),
                     QString::fromLatin1(f.unit), QRect(316, y + 2, 70, 20));
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
    // A point smaller than the page, so the table stays compact beside the storage panels.
    QFont gridFont = msgSurfStore->font();
    gridFont.setPointSizeF(gridFont.pointSizeF() - 1);
    msgSurfStore->setFont(gridFont);

    // The heading row and the segment column are fixed: grey, never current, never edited.
    const QBrush fixedBack = msgSurfStore->palette().brush(QPalette::Button);
    const QBrush fixedText = msgSurfStore->palette().brush(QPalette::ButtonText);
    // The table's own hint is shown through its cells, which answer the pointer's hover.
    const QString hint = msgSurfStore->toolTip();
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
        msgSurfStore->setRowHeight(row, row < kFixedRows ? kHeaderRowHeight : kRowHeight);
    }
    const int height =
        kHeaderRowHeight + kSegmentRows * kRowHeight + 2 * msgSurfStore->frameWidth();
    msgSurfStore->setGeometry(kTableX, kTableY, Tw(kPercentTableWidth), height);
    msgSurfStore->setCurrentCell(kFixedRows, 1);
    msgSurfStore->hide();

    // The irrigated area beside the table's foot; nothing fills it. It follows the table's width.
    txtSysArea = new QLineEdit(page);
    txtSysArea->setObjectName(QStringLiteral("txtSysArea"));
    txtSysArea->resize(70, 22);
    txtSysArea->setReadOnly(true);
    lblSysArea = AddLabel(page, QStringLiteral("lblSysArea"), QStringLiteral("acres"), QRect());
    lblSysArea->resize(50, 20);
    lblSysArea->setBuddy(txtSysArea);
}

void ROAnalysis::buildReferencePanels(QWidget* page) {
    frmWetDiam = AddPanel(
        page, QStringLiteral("frmWetDiam"), QStringLiteral("Wetted Diameter"),
        QRect(kRightColumnX, 6, kRightColumnWidth, 268), page->font(),
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
                 QRect(), tableFont, {QStringLiteral("Slope"), QStringLiteral("Surface Storage")},
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
                 QRect(), tableFont, {QStringLiteral("Residue"), QStringLiteral("Surface Storage")},
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
