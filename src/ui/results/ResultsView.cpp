#include "ResultsView.h"

#include "ColumnAlignedRows.h"
#include "RateChart.h"
#include "intake.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>
#include <QTableWidget>
#include <QVBoxLayout>

#include <vector>

namespace {

// A read-only box about `digits` figures wide.
QLineEdit* ReadOnlyField(QWidget* parent, const QString& name, int digits = 6) {
    auto* field = new QLineEdit(parent);
    field->setObjectName(name);
    field->setReadOnly(true);
    field->setAlignment(Qt::AlignCenter);
    field->setFixedWidth(field->fontMetrics().horizontalAdvance(QLatin1Char('0')) * digits + 16);
    return field;
}

QLabel* Caption(QWidget* parent, const QString& text, Qt::Alignment align = Qt::AlignLeft) {
    auto* label = new QLabel(text, parent);
    label->setAlignment(align | Qt::AlignVCenter);
    return label;
}

// Family name of family number `family` for the buttons; the customised slot has no family name.
QString ButtonFamilyName(int family) {
    if (family == rainfold::kCustomizedValuesIndex + 1)
        return QStringLiteral("Customized Values");
    if (family < 1 || family > 7)
        return QString();
    return QString::fromLatin1(rainfold::kIntakeFamilyName[static_cast<size_t>(family)]) +
           QStringLiteral(" Intake");
}

const QColor kHighlightBack(0, 0, 255);     // light blue
const QColor kHighlightText(192, 192, 192); // light grey

} // namespace

ResultsView::ResultsView(QWidget* parent) : QWidget(parent) {
    auto* outer = new QHBoxLayout(this);

    auto* frame = new QGroupBox(QStringLiteral("Percent Potential Runoff"), this);
    frame->setObjectName(QStringLiteral("frmResults"));
    auto* left = new QVBoxLayout(frame);

    // Model or family caption and the slot navigation.
    auto* nav = new QHBoxLayout;
    lblIntakeFamily = Caption(frame, QString());
    lblIntakeFamily->setObjectName(QStringLiteral("lblIntakeFamily"));
    QFont bold = lblIntakeFamily->font();
    bold.setBold(true);
    lblIntakeFamily->setFont(bold);
    cmdPrev = new QPushButton(QStringLiteral("Prev"), frame);
    cmdPrev->setObjectName(QStringLiteral("cmdPrev"));
    cmdNext = new QPushButton(QStringLiteral("Next"), frame);
    cmdNext->setObjectName(QStringLiteral("cmdNext"));
    txtIC = ReadOnlyField(frame, QStringLiteral("txtIC"), 2);
    txtIC->setVisible(false); // the slot is state, not something to read
    // A hidden button keeps its place, so the caption stays put between them.
    for (QPushButton* button : {cmdPrev, cmdNext}) {
        QSizePolicy policy = button->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        button->setSizePolicy(policy);
    }
    nav->addWidget(cmdPrev);
    nav->addStretch();
    nav->addWidget(lblIntakeFamily);
    nav->addWidget(txtIC);
    nav->addStretch();
    nav->addWidget(cmdNext);
    left->addLayout(nav);

    // The table, with its column headings as its own header, so that each heading stands over
    // its column at every font and width. Headings wrap onto a second line rather than being cut.
    msgResults = new QTableWidget(10, 6, frame);
    msgResults->setObjectName(QStringLiteral("msgResults"));
    msgResults->verticalHeader()->setVisible(false);
    msgResults->setEditTriggers(QAbstractItemView::NoEditTriggers);
    msgResults->setSelectionMode(QAbstractItemView::NoSelection);
    // Arrow keys move within the table; Tab leaves it for the next control.
    msgResults->setTabKeyNavigation(false);
    msgResults->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    msgResults->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    QHeaderView* header = msgResults->horizontalHeader();
    header->setSectionResizeMode(QHeaderView::Stretch);
    header->setDefaultAlignment(Qt::Alignment(Qt::AlignCenter | Qt::TextWordWrap));
    header->setTextElideMode(Qt::ElideNone);
    header->setSectionsClickable(false);
    header->setHighlightSections(false);
    msgResults->verticalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    const QStringList fixed = {QStringLiteral("System Length (feet)"),
                               QStringLiteral("Wetted Diameter (feet)"),
                               QStringLiteral("Surface Storage (in)")};
    for (int c = 0; c < 6; ++c)
        msgResults->setHorizontalHeaderItem(c, new QTableWidgetItem(c < 3 ? fixed[c] : QString()));
    for (int r = 0; r < 10; ++r)
        for (int c = 0; c < 6; ++c) {
            auto* item = new QTableWidgetItem;
            item->setTextAlignment(Qt::AlignCenter);
            msgResults->setItem(r, c, item);
        }

    // The capacity headings and the per-case summaries over the table's last three columns,
    // the weighted averages under them.
    auto* summary = new ColumnAlignedRows(msgResults, frame);
    std::array<QWidget*, 3> units{};
    for (int k = 0; k < 3; ++k) {
        lblGPM[k] = Caption(frame, QString(), Qt::AlignHCenter);
        lblGPM[k]->setObjectName(QStringLiteral("lblGPM%1").arg(k + 1));
        units[k] = Caption(frame, QStringLiteral("(gpm)"), Qt::AlignHCenter);
        units[k]->setObjectName(QStringLiteral("lblGPMUnit%1").arg(k + 1));
        txtHours[k] = ReadOnlyField(frame, QStringLiteral("txtHours(%1)").arg(k));
        txtHPV[k] = ReadOnlyField(frame, QStringLiteral("txtHPV(%1)").arg(k));
        txtTPV[k] = ReadOnlyField(frame, QStringLiteral("txtTPV(%1)").arg(k));
        txtWARP[k] = ReadOnlyField(frame, QStringLiteral("txtWARP(%1)").arg(k));
    }
    summary->addRow(nullptr, {lblGPM[0], lblGPM[1], lblGPM[2]}, 3);
    summary->addRow(nullptr, {units[0], units[1], units[2]}, 3);
    summary->addRow(Caption(frame, QStringLiteral("Hours per Revolution")),
                    {txtHours[0], txtHours[1], txtHours[2]}, 3);
    summary->addRow(Caption(frame, QStringLiteral("Peak Water Application Rate")),
                    {txtHPV[0], txtHPV[1], txtHPV[2]}, 3);
    summary->addRow(Caption(frame, QStringLiteral("Water Application Time")),
                    {txtTPV[0], txtTPV[1], txtTPV[2]}, 3);
    auto* averages = new ColumnAlignedRows(msgResults, frame);
    averages->addRow(Caption(frame, QStringLiteral("Weighted Average Percent Runoff")),
                     {txtWARP[0], txtWARP[1], txtWARP[2]}, 3);

    // Columns wide enough for a value box, together for the captions of the first three, and
    // for the longest word of a heading: a heading wraps onto as many lines as it needs, and the
    // header is as tall as the tallest heading at that width. Rows as tall as a line and a margin.
    const QFontMetrics metrics(msgResults->font());
    const QFontMetrics headings(header->font());
    const int margin = 2 * (style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, header) + 2);
    int column = std::max({summary->cellWidth(), averages->cellWidth()}) + 4;
    const int captions = std::max(summary->captionWidth(), averages->captionWidth());
    column = std::max(column, (captions + 2) / 3 + 1);
    const QStringList texts = fixed + QStringList{QStringLiteral("1000 (gpm)")};
    for (const QString& word : texts.join(QLatin1Char(' ')).split(QLatin1Char(' ')))
        column = std::max(column, headings.horizontalAdvance(word) + margin);
    int tallest = 0;
    for (const QString& text : texts)
        tallest = std::max(tallest, headings
                                        .boundingRect(QRect(0, 0, column - margin, 10000),
                                                      Qt::AlignCenter | Qt::TextWordWrap, text)
                                        .height());
    header->setMinimumSectionSize(column);
    header->setMinimumHeight(tallest + margin + 4);
    const int row = metrics.height() + 4;
    msgResults->verticalHeader()->setMinimumSectionSize(row);
    msgResults->setMinimumSize(6 * column + 2 * msgResults->frameWidth(),
                               header->minimumHeight() + 10 * row + 2 * msgResults->frameWidth());

    left->addWidget(summary);
    left->addWidget(msgResults, 1);
    left->addWidget(averages);
    outer->addWidget(frame, 3);

    // The chart and the "Location" numbers of the chosen cell.
    auto* right = new QVBoxLayout;
    MSChart1 = new RateChart(this);
    MSChart1->setMinimumSize(360, 300);
    right->addWidget(MSChart1, 1);
    frmLocation = new QGroupBox(QStringLiteral("Location"), this);
    frmLocation->setObjectName(QStringLiteral("frmLocation"));
    auto* loc = new QGridLayout(frmLocation);
    txtHP = ReadOnlyField(frmLocation, QStringLiteral("txtHP"));
    txtTS = ReadOnlyField(frmLocation, QStringLiteral("txtTS"));
    txtTP = ReadOnlyField(frmLocation, QStringLiteral("txtTP"));
    txtCol = ReadOnlyField(frmLocation, QStringLiteral("txtCol"), 2);
    txtCol->setVisible(false);
    loc->addWidget(Caption(frmLocation, QStringLiteral("Peak Application Rate")), 0, 0);
    loc->addWidget(txtHP, 0, 1);
    loc->addWidget(Caption(frmLocation, QStringLiteral("in/hr")), 0, 2);
    loc->addWidget(Caption(frmLocation, QStringLiteral("Time to Saturation")), 1, 0);
    loc->addWidget(txtTS, 1, 1);
    loc->addWidget(Caption(frmLocation, QStringLiteral("hr")), 1, 2);
    loc->addWidget(Caption(frmLocation, QStringLiteral("Time to Peak Application")), 2, 0);
    loc->addWidget(txtTP, 2, 1);
    loc->addWidget(Caption(frmLocation, QStringLiteral("hr")), 2, 2);
    loc->addWidget(txtCol, 3, 1);
    frmLocation->setVisible(false);
    right->addWidget(frmLocation);
    outer->addLayout(right, 2);

    // Tab walks the page as it reads: the buttons, the summaries, the table, the averages, the
    // "Location" numbers.
    std::vector<QWidget*> order = {cmdPrev, cmdNext};
    for (const auto* boxes : {&txtHours, &txtHPV, &txtTPV})
        order.insert(order.end(), boxes->begin(), boxes->end());
    order.push_back(msgResults);
    order.insert(order.end(), txtWARP.begin(), txtWARP.end());
    order.insert(order.end(), {txtHP, txtTS, txtTP});
    for (size_t k = 1; k < order.size(); ++k)
        QWidget::setTabOrder(order[k - 1], order[k]);

    connect(cmdPrev, &QPushButton::clicked, this, &ResultsView::prevClicked);
    connect(cmdNext, &QPushButton::clicked, this, &ResultsView::nextClicked);
    connect(txtIC, &QLineEdit::textChanged, this, [this] { txtIC_Change(); });
    connect(msgResults, &QTableWidget::cellClicked, this,
            [this](int row, int column) { emit chartRequested(row, column); });
    connect(msgResults, &QTableWidget::currentCellChanged, this,
            [this](int row, int column, int previousRow, int previousColumn) {
                if (previousRow >= 0 && previousColumn >= 0)
                    msgResults_LeaveCell(previousRow, previousColumn);
                if (row >= 0 && column >= 0)
                    msgResults_EnterCell(row, column);
            });
}

void ResultsView::Populate_Results(const rainfold::ResultsPage& page) {
    for (size_t k = 0; k < 3; ++k) {
        lblGPM[k]->setText(QString::fromStdString(page.lblGPM[k]));
        msgResults->horizontalHeaderItem(static_cast<int>(k) + 3)
            ->setText(QString::fromStdString(page.lblGPM[k]) + QStringLiteral(" (gpm)"));
        txtHours[k]->setText(QString::fromStdString(page.txtHours[k]));
        txtHPV[k]->setText(QString::fromStdString(page.txtHPV[k]));
        txtTPV[k]->setText(QString::fromStdString(page.txtTPV[k]));
    }
    lblIntakeFamily->setText(QString::fromStdString(page.lblIntakeFamily));
    populating_ = true;
    lastRow_ = lastColumn_ = -1;
    msgResults->setCurrentCell(0, 0);
    for (int r = 0; r < 10; ++r) {
        for (int c = 0; c < 6; ++c) {
            msgResults->setCurrentCell(r, c);
            msgResults->item(r, c)->setText(
                QString::fromStdString(page.grid[static_cast<size_t>(r)][static_cast<size_t>(c)]));
        }
        msgResults->setCurrentCell(r, 0);
    }
    populating_ = false;
    for (size_t k = 0; k < 3; ++k)
        txtWARP[k]->setText(QString::fromStdString(page.txtWARP[k]));
    // A page cut short by a fault is left charting the last runoff cell written; a whole page is
    // charted where the window puts the current cell next, so it is not drawn twice.
    if (!page.fault.empty() && lastRow_ >= 0)
        emit chartRequested(lastRow_, lastColumn_);
    emit chartRequested(currentRow(), currentColumn());
}

void ResultsView::showChart(const rainfold::ChartData& data) {
    txtHP->setText(QString::fromStdString(data.txtHP));
    txtTS->setText(QString::fromStdString(data.txtTS));
    txtTP->setText(QString::fromStdString(data.txtTP));
    frmLocation->setVisible(true);
    MSChart1->setData(data);
}

QString ResultsView::slotText() const {
    return txtIC->text();
}

void ResultsView::setSlotText(const QString& text) {
    if (txtIC->text() == text)
        txtIC_Change(); // the captions follow the context even when the slot stays
    else
        txtIC->setText(text);
}

void ResultsView::setNavigationContext(int familyListIndex, bool greenAmpt) {
    familyListIndex_ = familyListIndex;
    greenAmpt_ = greenAmpt;
}

void ResultsView::txtIC_Change() {
    const QString slot = txtIC->text();
    const int G = rainfold::SlotFamily(familyListIndex_ + 1, slot.toInt());
    cmdPrev->setText(ButtonFamilyName(G - 1));
    cmdNext->setText(ButtonFamilyName(G + 1));
    bool prev = slot == QLatin1String("2") || slot == QLatin1String("3");
    bool next = slot == QLatin1String("1") || slot == QLatin1String("2");
    // No family lies beyond customised values, and the Green-Ampt model has one slot only.
    if (G == rainfold::kCustomizedValuesIndex + 1)
        next = false;
    if (greenAmpt_)
        prev = next = false;
    // A button that hides itself while it has the focus hands the focus to the other one, not
    // to whatever field follows it.
    QWidget* focused = window()->focusWidget();
    if ((focused == cmdNext && !next && prev) || (focused == cmdPrev && !prev && next)) {
        QPushButton* other = focused == cmdNext ? cmdPrev : cmdNext;
        other->setVisible(true);
        other->setFocus(Qt::OtherFocusReason);
    }
    cmdPrev->setVisible(prev);
    cmdNext->setVisible(next);
}

int ResultsView::currentRow() const {
    return msgResults->currentRow();
}
int ResultsView::currentColumn() const {
    return msgResults->currentColumn();
}
void ResultsView::setCurrentColumn(int column) {
    msgResults->setCurrentCell(msgResults->currentRow() < 0 ? 0 : msgResults->currentRow(), column);
}

void ResultsView::noteColumn(int column) {
    txtCol->setText(QString::fromStdString(std::to_string(column)));
}

QString ResultsView::txtColText() const {
    return txtCol->text();
}
QString ResultsView::txtHPText() const {
    return txtHP->text();
}
QString ResultsView::txtTSText() const {
    return txtTS->text();
}
QString ResultsView::txtTPText() const {
    return txtTP->text();
}

void ResultsView::msgResults_EnterCell(int row, int column) {
    if (column >= 3) {
        QTableWidgetItem* item = msgResults->item(row, column);
        item->setBackground(kHighlightBack);
        item->setForeground(kHighlightText);
    }
    if (populating_) {
        if (column >= 3) {
            lastRow_ = row;
            lastColumn_ = column;
        }
        return;
    }
    emit chartRequested(row, column);
}

void ResultsView::msgResults_LeaveCell(int row, int column) {
    QTableWidgetItem* item = msgResults->item(row, column);
    if (!item)
        return;
    item->setBackground(QBrush());
    item->setForeground(QBrush());
}
