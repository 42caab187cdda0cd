#include "DesignExplorer.h"

#include "ExplorerMapWidget.h"
#include "ExplorerPivotChart.h"
#include "FileNames.h"
#include "Messages.h"
#include "file_access.h"
#include "format.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QStyle>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

using namespace rainfold;

namespace {

constexpr int kColumns = 60;
constexpr int kRows = 40;

QString DefaultSaveDialog(QWidget* parent, const QString& filter) {
    return QFileDialog::getSaveFileName(parent, QString(), QString(), filter);
}

// A label with an access key for `buddy`.
QLabel* BuddyLabel(const QString& text, QWidget* buddy) {
    auto* label = new QLabel(text);
    label->setBuddy(buddy);
    return label;
}

} // namespace

struct DesignExplorer::Job {
    ExploreProgress progress;
    ExploreMap result;
    QElapsedTimer clock;
};

DesignExplorer::DesignExplorer(QWidget* parent, const DesignRecord& design,
                               const RunoffProbe& probe, UseFunction use)
    : QWidget(parent, Qt::Window), design_(design), probe_(probe), use_(std::move(use)),
      saveDialog_(DefaultSaveDialog) {
    setObjectName(QStringLiteral("DesignExplorer"));
    setWindowTitle(QStringLiteral("Design Explorer"));
    setAttribute(Qt::WA_DeleteOnClose);
    selected_ = QPointF(probe_->designDiameter(), probe_->designDepth());
    buildLayout();
    progressTimer_ = new QTimer(this);
    connect(progressTimer_, &QTimer::timeout, this, &DesignExplorer::showProgress);
    fitToScreen();
    refreshAnswers();
    refreshPointer(std::nullopt);
    refreshChart();
    startMap();
}

DesignExplorer::~DesignExplorer() {
    stopMap();
}

void DesignExplorer::setSaveDialog(SaveDialog dialog) {
    saveDialog_ = dialog ? std::move(dialog) : SaveDialog(DefaultSaveDialog);
}

// Everything lies in a scroll area: on a screen too small for the window's least size, every
// control can still be reached.
void DesignExplorer::buildLayout() {
    mapView = new ExplorerMapWidget;
    lblStatus = new QLabel;
    lblStatus->setObjectName(QStringLiteral("lblStatus"));
    lblStatus->setWordWrap(true);
    lblStatus->setMinimumHeight(2 * fontMetrics().lineSpacing());
    lblStatus->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    auto* mapLabel = BuddyLabel(
        QStringLiteral("&Map: the arrow keys move the selected point, Enter selects"), mapView);
    mapLabel->setObjectName(QStringLiteral("lblMap"));
    mapLabel->setWordWrap(true);
    // Under the map: how it was computed, or its progress; "Draw Map" or "Cancel".
    prgMap = new QProgressBar;
    prgMap->setObjectName(QStringLiteral("prgMap"));
    prgMap->setRange(0, kColumns * kRows);
    prgMap->setMaximumWidth(fontMetrics().averageCharWidth() * 24);
    cmdCancel = new QPushButton(QStringLiteral("&Cancel"));
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdDrawMap = new QPushButton(QStringLiteral("&Draw Map"));
    cmdDrawMap->setObjectName(QStringLiteral("cmdDrawMap"));
    connect(cmdCancel, &QPushButton::clicked, this, [this] {
        if (job_)
            job_->progress.cancel = true;
    });
    connect(cmdDrawMap, &QPushButton::clicked, this, &DesignExplorer::startMap);
    auto* status = new QHBoxLayout;
    status->addWidget(lblStatus, 1);
    status->addWidget(prgMap, 0, Qt::AlignTop);
    status->addWidget(cmdCancel, 0, Qt::AlignTop);
    status->addWidget(cmdDrawMap, 0, Qt::AlignTop);

    auto* left = new QVBoxLayout;
    left->addWidget(mapView, 1);
    left->addWidget(mapLabel);
    left->addLayout(status);

    auto* middle = new QHBoxLayout;
    middle->addLayout(left, 1);
    middle->addWidget(buildRightPanel());

    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->addWidget(buildTopRow());
    layout->addLayout(middle, 1);
    layout->addWidget(buildButtonRow());

    auto* scroll = new QScrollArea;
    scroll->setObjectName(QStringLiteral("scrExplorer"));
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setWidget(content);
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(scroll);

    connect(mapView, &ExplorerMapWidget::pointHovered, this,
            [this](QPointF value) { refreshPointer(value); });
    connect(mapView, &ExplorerMapWidget::hoverLeft, this, [this] { refreshPointer(std::nullopt); });
    connect(mapView, &ExplorerMapWidget::pointClicked, this, &DesignExplorer::selectRounded);
    connect(mapView, &ExplorerMapWidget::stepRequested, this, &DesignExplorer::step);
    connect(mapView, &ExplorerMapWidget::enterPressed, this, [this] { select(selected_); });
}

QWidget* DesignExplorer::buildTopRow() {
    txtTarget = new QLineEdit(QStringLiteral("0.0"));
    txtTarget->setObjectName(QStringLiteral("txtTarget"));
    txtTarget->setMaximumWidth(fontMetrics().horizontalAdvance(QStringLiteral("100.000")) + 16);
    cboCriterion = new QComboBox;
    cboCriterion->setObjectName(QStringLiteral("cboCriterion"));
    cboCriterion->addItems({QStringLiteral("Weighted average over the circle"),
                            QStringLiteral("Outer end of the pivot")});
    cboYAxis = new QComboBox;
    cboYAxis->setObjectName(QStringLiteral("cboYAxis"));
    cboYAxis->addItems({QStringLiteral("Depth per pass (in)"),
                        QStringLiteral("Surface storage on every segment (in)")});
    auto* row = new QWidget;
    auto* top = new QHBoxLayout(row);
    top->setContentsMargins(0, 0, 0, 0);
    top->addWidget(BuddyLabel(QStringLiteral("Runoff &target (%)"), txtTarget));
    top->addWidget(txtTarget);
    top->addSpacing(fontMetrics().averageCharWidth() * 2);
    top->addWidget(BuddyLabel(QStringLiteral("Target &applies to:"), cboCriterion));
    top->addWidget(cboCriterion);
    top->addSpacing(fontMetrics().averageCharWidth() * 2);
    top->addWidget(BuddyLabel(QStringLiteral("&Y axis"), cboYAxis));
    top->addWidget(cboYAxis);
    top->addStretch(1);

    connect(txtTarget, &QLineEdit::textChanged, this, [this] {
        refreshAnswers();
        refreshView();
    });
    connect(cboCriterion, &QComboBox::currentIndexChanged, this, [this] {
        refreshAnswers();
        startMap();
    });
    connect(cboYAxis, &QComboBox::currentIndexChanged, this, [this] {
        const std::optional<double> storage = probe_->uniformStorage();
        selected_.setY(axis() == ExploreAxis::Depth ? probe_->designDepth() : storage.value_or(0));
        refreshAnswers();
        refreshPointer(std::nullopt);
        refreshChart();
        startMap();
    });
    return row;
}

// The answers, the selected point and the pointer, and the runoff along the pivot: as wide as
// the font needs for the answers' texts, each text given room for its longest form, so nothing
// moves as the texts change.
QWidget* DesignExplorer::buildRightPanel() {
    const QFontMetrics fm = fontMetrics();
    fraAnswers = new QGroupBox(QStringLiteral("Answers"));
    fraAnswers->setObjectName(QStringLiteral("fraAnswers"));
    auto* grid = new QGridLayout(fraAnswers);
    lblDiameterAnswer = new QLabel;
    lblDiameterAnswer->setObjectName(QStringLiteral("lblDiameterAnswer"));
    cmdUseDiameter = new QPushButton(QStringLiteral("&Use"));
    cmdUseDiameter->setObjectName(QStringLiteral("cmdUseDiameter"));
    lblDepthAnswer = new QLabel;
    lblDepthAnswer->setObjectName(QStringLiteral("lblDepthAnswer"));
    cmdUseDepth = new QPushButton(QStringLiteral("U&se"));
    cmdUseDepth->setObjectName(QStringLiteral("cmdUseDepth"));
    const int panelWidth =
        fm.averageCharWidth() * 56 + fm.horizontalAdvance(QStringLiteral("Use")) + fm.height() * 3;
    // The answer's column: the panel less the button's, the margins and a little to spare.
    const int textWidth = panelWidth - cmdUseDiameter->sizeHint().width() - 4 * fm.height();
    const int answerHeight = fm.boundingRect(QRect(0, 0, textWidth, 100 * fm.lineSpacing()),
                                             Qt::TextWordWrap, LongestAnswer())
                                 .height();
    for (QLabel* label : {lblDiameterAnswer, lblDepthAnswer}) {
        label->setWordWrap(true);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        label->setMinimumHeight(answerHeight);
    }
    grid->addWidget(lblDiameterAnswer, 0, 0);
    grid->addWidget(cmdUseDiameter, 0, 1, Qt::AlignTop);
    grid->addWidget(lblDepthAnswer, 1, 0);
    grid->addWidget(cmdUseDepth, 1, 1, Qt::AlignTop);
    grid->setColumnStretch(0, 1);
    connect(cmdUseDiameter, &QPushButton::clicked, this, [this] { use(diameterAnswer_); });
    connect(cmdUseDepth, &QPushButton::clicked, this, [this] { use(depthAnswer_); });

    lblSelected = new QLabel;
    lblSelected->setObjectName(QStringLiteral("lblSelected"));
    lblPointer = new QLabel;
    lblPointer->setObjectName(QStringLiteral("lblPointer"));
    for (QLabel* label : {lblSelected, lblPointer}) {
        label->setWordWrap(true);
        label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        label->setMinimumHeight(2 * fm.lineSpacing());
    }
    chtPivot = new ExplorerPivotChart;
    chtPivot->setMinimumHeight(13 * fm.lineSpacing());

    auto* panel = new QWidget;
    auto* right = new QVBoxLayout(panel);
    right->setContentsMargins(0, 0, 0, 0);
    right->addWidget(fraAnswers);
    right->addWidget(lblSelected);
    right->addWidget(lblPointer);
    right->addWidget(chtPivot, 1);
    panel->setFixedWidth(panelWidth);
    return panel;
}

QWidget* DesignExplorer::buildButtonRow() {
    auto* row = new QWidget;
    auto* bottom = new QHBoxLayout(row);
    bottom->setContentsMargins(0, 0, 0, 0);
    const auto button = [&](const char* name, const char* caption) {
        auto* b = new QPushButton(QString::fromLatin1(caption));
        b->setObjectName(QString::fromLatin1(name));
        bottom->addWidget(b);
        return b;
    };
    QPushButton* copy = button("cmdCopyPicture", "Copy &Picture");
    QPushButton* png = button("cmdSavePng", "Save P&NG...");
    QPushButton* pdf = button("cmdSavePdf", "Save PD&F...");
    cmdSaveCsv = button("cmdSaveCsv", "Save CS&V...");
    bottom->addStretch(1);
    QPushButton* close = button("cmdClose", "C&lose");
    connect(copy, &QPushButton::clicked, this, &DesignExplorer::copyPicture);
    connect(png, &QPushButton::clicked, this, [this] { savePicture(false); });
    connect(pdf, &QPushButton::clicked, this, [this] { savePicture(true); });
    connect(cmdSaveCsv, &QPushButton::clicked, this, &DesignExplorer::saveCsv);
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    return row;
}

// The size the window would like, within the screen it opens on; it can be made as small as its
// content allows, or as the screen, where the content scrolls.
void DesignExplorer::fitToScreen() {
    const QFontMetrics fm = fontMetrics();
    // With a scroll bar's width to spare, so that a scroll bar down does not bring one across.
    const QSize least = findChild<QScrollArea*>()->widget()->minimumSizeHint() +
                        QSize(style()->pixelMetric(QStyle::PM_ScrollBarExtent), 0);
    QSize size = QSize(fm.averageCharWidth() * 200, fm.lineSpacing() * 54).expandedTo(least);
    if (const QScreen* screen = parentWidget() ? parentWidget()->screen() : this->screen()) {
        // Room for the window's frame and title bar.
        const QSize available = screen->availableGeometry().size() - QSize(16, 48);
        size = size.boundedTo(available);
        setMinimumSize(least.boundedTo(available));
    }
    resize(size);
}

ExploreAxis DesignExplorer::axis() const {
    return cboYAxis->currentIndex() == 1 ? ExploreAxis::Storage : ExploreAxis::Depth;
}

ExploreCriterion DesignExplorer::criterion() const {
    return cboCriterion->currentIndex() == 1 ? ExploreCriterion::OuterEnd
                                             : ExploreCriterion::Average;
}

// A number from 0 to 100, written with a point as every number of the program.
std::optional<double> DesignExplorer::target() const {
    double value = 0;
    const std::string text = txtTarget->text().trimmed().toStdString();
    if (!ParseDecimal(text, value) || !(value >= 0 && value <= 100))
        return std::nullopt;
    return value;
}

// A new request stops the one before it; the thread of the old request is waited for, which
// takes one point at most.
void DesignExplorer::startMap() {
    stopMap();
    map_.reset();
    auto job = std::make_shared<Job>();
    job_ = job;
    finished_ = false;
    mapMessage_ = QStringLiteral("Computing the map...");
    lblStatus->clear();
    const RunoffProbe probe = *probe_;
    const ExploreAxis a = axis();
    const ExploreCriterion c = criterion();
    job->clock.start();
    worker_ = std::thread([this, job, probe, a, c] {
        job->result = ComputeExploreMap(probe, a, c, kColumns, kRows, &job->progress);
        QMetaObject::invokeMethod(
            this, [this, job] { mapDone(job); }, Qt::QueuedConnection);
    });
    prgMap->setValue(0);
    prgMap->show();
    cmdCancel->show();
    cmdDrawMap->hide();
    progressTimer_->start(40);
    refreshView();
}

void DesignExplorer::stopMap() {
    if (!worker_.joinable())
        return;
    job_->progress.cancel = true;
    worker_.join();
}

void DesignExplorer::showProgress() {
    if (job_)
        prgMap->setValue(job_->progress.done);
}

void DesignExplorer::mapDone(const std::shared_ptr<Job>& job) {
    if (job != job_)
        return; // a request that a newer one replaced
    if (worker_.joinable())
        worker_.join();
    finished_ = true;
    progressTimer_->stop();
    const bool hadFocus = cmdCancel->hasFocus();
    prgMap->hide();
    cmdCancel->hide();
    cmdDrawMap->show();
    if (hadFocus)
        cmdDrawMap->setFocus();
    if (job->result.cancelled) {
        mapMessage_ = QStringLiteral("Map cancelled. \"Draw Map\" draws it again.");
    } else {
        map_ = std::make_unique<ExploreMap>(std::move(job->result));
        mapMessage_.clear();
        QString status = QStringLiteral("%1 \u00d7 %2 points in %3 s.")
                             .arg(kColumns)
                             .arg(kRows)
                             .arg(QString::fromStdString(
                                 FormatFixed(static_cast<double>(job->clock.elapsed()) / 1000, 2)));
        if (map_->faults > 0)
            status += QStringLiteral(" %1 points have no result: %2")
                          .arg(map_->faults)
                          .arg(QString::fromStdString(map_->firstFault));
        if (map_->notices > 0)
            status += QStringLiteral(" The root solver ran out of iterations %1 times; those "
                                     "points carry its last estimate.")
                          .arg(map_->notices);
        lblStatus->setText(status);
    }
    refreshView();
    emit mapFinished();
}

void DesignExplorer::refreshView() {
    render::ExplorerMapView view =
        render::MapViewFor(design_, *probe_, axis(), criterion(), target());
    if (map_ && map_->axis == axis() && map_->criterion == criterion())
        view.map = map_.get();
    view.message = mapMessage_;
    view.selected = selected_;
    mapView->setView(view);
    cmdSaveCsv->setEnabled(map_ != nullptr);
}

// One grid step from the selected point (a point between grid values goes to the next one).
void DesignExplorer::step(int columns, int rows) {
    const std::vector<double> xs = map_ ? map_->xValues : ExploreXValues(kColumns);
    const std::vector<double> ys =
        map_ && map_->axis == axis() ? map_->yValues : ExploreYValues(axis(), kRows);
    const auto next = [](const std::vector<double>& grid, double at, int by) {
        if (by > 0) {
            const auto it = std::upper_bound(grid.begin(), grid.end(), at);
            return it == grid.end() ? grid.back() : *it;
        }
        if (by < 0) {
            const auto it = std::lower_bound(grid.begin(), grid.end(), at);
            return it == grid.begin() ? grid.front() : *(it - 1);
        }
        return std::clamp(at, grid.front(), grid.back());
    };
    const QPointF to(next(xs, selected_.x(), columns), next(ys, selected_.y(), rows));
    select(to);
    refreshPointer(to);
}

// The picture as saved and copied: as large as it is shown, with the title block under it.
render::ExplorerMapView DesignExplorer::savedView() const {
    render::ExplorerMapView view = mapView->view();
    view.facts = ExploreFactsOf(design_, *probe_, criterion());
    return view;
}

QImage DesignExplorer::picture() const {
    const render::ExplorerMapView view = savedView();
    return render::ExplorerMapImage(view, render::ExplorerPictureSize(view, mapView->size()));
}

void DesignExplorer::copyPicture() {
    QApplication::clipboard()->setImage(picture());
}

// The name asked for, with the file type's extension added when none was typed.
QString DesignExplorer::saveName(const QString& filter, const QString& extension) {
    QString name = saveDialog_(this, filter);
    if (!name.isEmpty() && QFileInfo(name).suffix().isEmpty())
        name += (name.endsWith(QLatin1Char('.')) ? QString() : QStringLiteral(".")) + extension;
    return name;
}

void DesignExplorer::savePicture(bool pdf) {
    const QString name =
        pdf ? saveName(QStringLiteral("PDF Files (*.pdf)"), QStringLiteral("pdf"))
            : saveName(QStringLiteral("PNG Images (*.png)"), QStringLiteral("png"));
    if (name.isEmpty())
        return;
    const render::ExplorerMapView view = savedView();
    std::string bytes;
    if (!render::ExplorerMapFile(view, render::ExplorerPictureSize(view, mapView->size()), pdf,
                                 bytes))
        ui::ShowError(this,
                      QStringLiteral("Could not save %1: the picture cannot be drawn.").arg(name));
    else
        saveFile(name, bytes);
}

void DesignExplorer::saveCsv() {
    if (!map_)
        return;
    const QString name = saveName(QStringLiteral("CSV Files (*.csv)"), QStringLiteral("csv"));
    if (!name.isEmpty())
        saveFile(name, ExploreMapCsv(*map_, ExploreFactsOf(design_, *probe_, map_->criterion)));
}

// As File > Save writes a design: the whole file or, with the reason, nothing.
void DesignExplorer::saveFile(const QString& name, const std::string& bytes) {
    const std::string failure = SaveFile(ui::FileNameBytes(name), bytes);
    if (!failure.empty())
        ui::ShowError(
            this,
            QStringLiteral("Could not save %1: %2.").arg(name, QString::fromStdString(failure)));
}
