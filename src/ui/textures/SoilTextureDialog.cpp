#include "SoilTextureDialog.h"

#include "soil_textures.h"

#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {

QLabel* WrappedLabel(QWidget* parent, const char* name, const QString& text) {
    auto* label = new QLabel(text, parent);
    label->setObjectName(QString::fromLatin1(name));
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    return label;
}

} // namespace

SoilTextureDialog::SoilTextureDialog(QWidget* parent, bool modelOn) : QDialog(parent) {
    setObjectName(QStringLiteral("frmSoilTexture"));
    setWindowTitle(QStringLiteral("Green-Ampt Soil from Texture"));
    setModal(true);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(WrappedLabel(
        this, "lblIntro",
        QStringLiteral("Mean Green-Ampt parameters of the soil texture classes. The class chosen "
                       "fills \"Saturated Hydraulic Conductivity\" (K \u00d7 10), \"Wetting Front "
                       "Suction Head\" (\u03c8 \u00d7 10) and \"Saturated Water Content\" (the "
                       "total porosity) as if typed; the initial water content, the root-zone "
                       "depth and the linear variation stay as they are.")));

    const QStringList headings = {QStringLiteral("Texture class"),
                                  QStringLiteral("Total\nporosity \u03b7"),
                                  QStringLiteral("Effective\nporosity \u03b8e"),
                                  QStringLiteral("Suction head\n\u03c8 (cm)"),
                                  QStringLiteral("Conductivity\nK (cm/h)"),
                                  QStringLiteral("Ks\n(mm/hr)"),
                                  QStringLiteral("Hw\n(mm)"),
                                  QStringLiteral("\u03b8s")};
    tblTextures = new QTableWidget(static_cast<int>(rainfold::kSoilTextures.size()),
                                   static_cast<int>(headings.size()), this);
    tblTextures->setObjectName(QStringLiteral("tblTextures"));
    tblTextures->setHorizontalHeaderLabels(headings);
    tblTextures->verticalHeader()->hide();
    tblTextures->setSelectionBehavior(QAbstractItemView::SelectRows);
    tblTextures->setSelectionMode(QAbstractItemView::SingleSelection);
    tblTextures->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tblTextures->setSizeAdjustPolicy(QAbstractScrollArea::AdjustToContents);
    for (int row = 0; row < tblTextures->rowCount(); ++row) {
        const rainfold::SoilTexture& t = rainfold::kSoilTextures[static_cast<size_t>(row)];
        const char* cells[] = {t.name,
                               t.totalPorosity,
                               t.effectivePorosity,
                               t.suctionHeadCm,
                               t.conductivityCmHr,
                               t.ksMmHr,
                               t.hwMm,
                               t.thetaS};
        for (int column = 0; column < tblTextures->columnCount(); ++column) {
            auto* item = new QTableWidgetItem(QString::fromUtf8(cells[column]));
            if (column > 0)
                item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            tblTextures->setItem(row, column, item);
        }
    }
    tblTextures->resizeColumnsToContents();
    // A little air between the columns of numbers.
    const int air = 2 * tblTextures->fontMetrics().averageCharWidth();
    for (int column = 0; column < tblTextures->columnCount(); ++column)
        tblTextures->setColumnWidth(column, tblTextures->columnWidth(column) + air);
    tblTextures->resizeRowsToContents();
    layout->addWidget(tblTextures, 1);

    layout->addWidget(WrappedLabel(
        this, "lblSource",
        QStringLiteral(
            "Source: Rawls, W. J., Brakensiek, D. L. and Miller, N. (1983). Green-Ampt "
            "infiltration parameters from soils data. Journal of Hydraulic Engineering "
            "109(1): 62-70, Table 2 (about 5,000 soil horizons). The source gives a wide "
            "spread around each mean.")));
    if (!modelOn)
        layout->addWidget(WrappedLabel(
            this, "lblModelOff",
            QStringLiteral("Options > \"Green-Ampt\" is not ticked: the values are filled in "
                           "and used once it is.")));

    auto* buttons = new QDialogButtonBox(this);
    cmdFill = buttons->addButton(QStringLiteral("Fill Fields"), QDialogButtonBox::AcceptRole);
    cmdFill->setObjectName(QStringLiteral("cmdFill"));
    cmdFill->setEnabled(false);
    QPushButton* cancel = buttons->addButton(QDialogButtonBox::Cancel);
    cancel->setObjectName(QStringLiteral("cmdCancel"));
    layout->addWidget(buttons);

    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(tblTextures, &QTableWidget::itemSelectionChanged, this,
            [this] { cmdFill->setEnabled(chosen() >= 0); });
    connect(tblTextures, &QTableWidget::cellDoubleClicked, this, [this] { accept(); });

    // The whole table where the screen has room for it; on a small screen or with a large font
    // the table scrolls rather than the dialog running off the screen.
    QSize size = sizeHint();
    if (const QScreen* screen = parent ? parent->screen() : QGuiApplication::primaryScreen())
        size = size.boundedTo(screen->availableGeometry().size() * 0.9);
    resize(size);
}

int SoilTextureDialog::chosen() const {
    const QList<QTableWidgetItem*> selected = tblTextures->selectedItems();
    return selected.isEmpty() ? -1 : selected.front()->row();
}
