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
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include <cmath>

using namespace rainfold;

namespace {

constexpr int kColumns = 60;
constexpr int kRows = 40;

// A value with `decimals` decimals when that is exactly the value, in full otherwise.
QString Fixed(double x, int decimals) {
    const std::string text = FixedText(x, decimals);
    double back = 0;
    return QString::fromStdString(ParseDecimal(text, back) && back == x ? text : ExactText(x));
}

QString DefaultSaveDialog(QWidget* parent, const QString& filter) {
    return QFileDialog::getSaveFileName(parent, QString(), QString(), filter);
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
    resize(1200, 780);
    refreshAnswers();
    refreshPoint(std::nullopt);
    refreshChart();
    startMap();
}

DesignExplorer::~DesignExplorer() {
    stopMap();
}

void DesignExplorer::setSaveDialog(SaveDialog dialog) {
    saveDialog_ = dialog ? std::move(dialog) : SaveDialog(DefaultSaveDialog);
}

void DesignExplorer::buildLayout() {
    auto* top = new QHBoxLayout;
    txtTarget = new QLineEdit(QStringLiteral("0.0"));
    txtTarget->setObjectName(QStringLiteral("txtTarget"));
    txtTarget->setMaximumWidth(70);
    auto* targetLabel = new QLabel(QStringLiteral("Runoff target (%)"));
    targetLabel->setBuddy(txtTarget);
    cboYAxis = new QComboBox;
    cboYAxis->setObjectName(QStringLiteral("cboYAxis"));
    cboYAxis->addItems({QStringLiteral("Depth per pass (in)"),
                        QStringLiteral("Surface storage on every segment (in)")});
    auto* axisLabel = new QLabel(QStringLiteral("Y axis"));
    axisLabel->setBuddy(cboYAxis);
    prgMap = new QProgressBar;
    prgMap->setObjectName(QStringLiteral("prgMap"));
    prgMap->setRange(0, kColumns * kRows);
    prgMap->setMaximumWidth(220);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"));
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdDrawMap = new QPushButton(QStringLiteral("Draw Map"));
    cmdDrawMap->setObjectName(QStringLiteral("cmdDrawMap"));
    top->addWidget(targetLabel);
    top->addWidget(txtTarget);
    top->addSpacing(24);
    top->addWidget(axisLabel);
    top->addWidget(cboYAxis);
    top->addStretch(1);
    top->addWidget(prgMap);
    top->addWidget(cmdCancel);
    top->addWidget(cmdDrawMap);

    mapView = new ExplorerMapWidget;
    lblStatus = new QLabel;
    lblStatus->setObjectName(QStringLiteral("lblStatus"));
    auto* left = new QVBoxLayout;
    left->addWidget(mapView, 1);
    left->addWidget(lblStatus);

    auto* answers = new QGroupBox(QStringLiteral("Answers"));
    auto* grid = new QGridLayout(answers);
    lblDiameterAnswer = new QLabel;
    lblDiameterAnswer->setObjectName(QStringLiteral("lblDiameterAnswer"));
    cmdUseDiameter = new QPushButton(QStringLiteral("Use"));
    cmdUseDiameter->setObjectName(QStringLiteral("cmdUseDiameter"));
    lblDepthAnswer = new QLabel;
    lblDepthAnswer->setObjectName(QStringLiteral("lblDepthAnswer"));
    cmdUseDepth = new QPushButton(QStringLiteral("Use"));
    cmdUseDepth->setObjectName(QStringLiteral("cmdUseDepth"));
    for (QLabel* label : {lblDiameterAnswer, lblDepthAnswer}) {
        label->setWordWrap(true);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    }
    grid->addWidget(lblDiameterAnswer, 0, 0);
    grid->addWidget(cmdUseDiameter, 0, 1, Qt::AlignTop);
    grid->addWidget(lblDepthAnswer, 1, 0);
    grid->addWidget(cmdUseDepth, 1, 1, Qt::AlignTop);
    grid->setColumnStretch(0, 1);
    lblPoint = new QLabel;
    lblPoint->setObjectName(QStringLiteral("lblPoint"));
    lblPoint->setWordWrap(true);
    chtPivot = new ExplorerPivotChart;
    auto* right = new QVBoxLayout;
    right->addWidget(answers);
    right->addWidget(lblPoint);
    right->addWidget(chtPivot, 1);
    auto* rightPanel = new QWidget;
    rightPanel->setLayout(right);
    rightPanel->setFixedWidth(400);

    auto* middle = new QHBoxLayout;
    middle->addLayout(left, 1);
    middle->addWidget(rightPanel);

    auto* bottom = new QHBoxLayout;
    const auto button = [&](const char* name, const char* caption) {
        auto* b = new QPushButton(QString::fromLatin1(caption));
        b->setObjectName(QString::fromLatin1(name));
        bottom->addWidget(b);
        return b;
    };
    QPushButton* copy = button("cmdCopyPicture", "Copy Picture");
    QPushButton* png = button("cmdSavePng", "Save PNG...");
    QPushButton* pdf = button("cmdSavePdf", "Save PDF...");
    QPushButton* csv = button("cmdSaveCsv", "Save CSV...");
    bottom->addStretch(1);
    QPushButton* close = button("cmdClose", "Close");

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(middle, 1);
    layout->addLayout(bottom);

    connect(txtTarget, &QLineEdit::textChanged, this, [this] {
        refreshAnswers();
        refreshView();
    });
    connect(cboYAxis, &QComboBox::currentIndexChanged, this, [this] {
        const std::optional<double> storage = probe_->uniformStorage();
        selected_.setY(axis() == ExploreAxis::Depth ? probe_->designDepth() : storage.value_or(0));
        refreshAnswers();
        refreshPoint(std::nullopt);
        refreshChart();
        startMap();
    });
    connect(cmdCancel, &QPushButton::clicked, this, [this] {
        if (job_)
            job_->progress.cancel = true;
    });
    connect(cmdDrawMap, &QPushButton::clicked, this, &DesignExplorer::startMap);
    connect(mapView, &ExplorerMapWidget::pointHovered, this,
            [this](QPointF value) { refreshPoint(value); });
    connect(mapView, &ExplorerMapWidget::hoverLeft, this, [this] { refreshPoint(std::nullopt); });
    connect(mapView, &ExplorerMapWidget::pointClicked, this, &DesignExplorer::select);
    connect(cmdUseDiameter, &QPushButton::clicked, this,
            [this] { use(QStringLiteral("txtWetDiam"), diameterAnswer_); });
    connect(cmdUseDepth, &QPushButton::clicked, this,
            [this] { use(QStringLiteral("txtAPPL"), depthAnswer_); });
    connect(copy, &QPushButton::clicked, this, &DesignExplorer::copyPicture);
    connect(png, &QPushButton::clicked, this, [this] { savePicture(false); });
    connect(pdf, &QPushButton::clicked, this, [this] { savePicture(true); });
    connect(csv, &QPushButton::clicked, this, &DesignExplorer::saveCsv);
    connect(close, &QPushButton::clicked, this, &QWidget::close);
}

ExploreAxis DesignExplorer::axis() const {
    return cboYAxis->currentIndex() == 1 ? ExploreAxis::Storage : ExploreAxis::Depth;
}

std::optional<double> DesignExplorer::target() const {
    const std::string text = txtTarget->text().toStdString();
    const double value = Val(text);
    if (!IsNumeric(text) || value < 0 || value > 100)
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
    job->clock.start();
    worker_ = std::thread([this, job, probe, a] {
        job->result = ComputeExploreMap(probe, a, kColumns, kRows, &job->progress);
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
    prgMap->hide();
    cmdCancel->hide();
    cmdDrawMap->show();
    if (job->result.cancelled) {
        mapMessage_ = QStringLiteral("Map cancelled. \"Draw Map\" draws it again.");
    } else {
        map_ = std::make_unique<ExploreMap>(std::move(job->result));
        mapMessage_.clear();
        QString status = QStringLiteral("%1 \u00d7 %2 points in %3 s.")
                             .arg(kColumns)
                             .arg(kRows)
                             .arg(job->clock.elapsed() / 1000.0, 0, 'f', 2);
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
        render::MapViewFor(design_, *probe_, axis(), target().value_or(0));
    if (map_ && map_->axis == axis())
        view.map = map_.get();
    view.message = mapMessage_;
    view.selected = selected_;
    mapView->setView(view);
    findChild<QPushButton*>(QStringLiteral("cmdSaveCsv"))->setEnabled(map_ != nullptr);
}

void DesignExplorer::refreshAnswers() {
    diameterAnswer_.clear();
    depthAnswer_.clear();
    const std::optional<double> goal = target();
    if (!goal) {
        lblDiameterAnswer->setText(QStringLiteral("Type a runoff target from 0 to 100 %."));
        lblDepthAnswer->clear();
    } else {
        const double depth = axis() == ExploreAxis::Depth ? selected_.y() : probe_->designDepth();
        const double diameter = selected_.x();
        const QString depthText = Fixed(depth, 2), diameterText = Fixed(diameter, 1);
        if (const std::optional<double> D = SmallestWettedDiameter(*probe_, depth, *goal)) {
            diameterAnswer_ = Fixed(*D, 1);
            lblDiameterAnswer->setText(
                QStringLiteral("Smallest wetted diameter for the target at %1 in per pass: %2 ft "
                               "(%3)")
                    .arg(depthText, diameterAnswer_, QString::fromStdString(PackageClass(*D))));
        } else {
            lblDiameterAnswer->setText(
                QStringLiteral("No wetted diameter from 1 to 150 ft meets the target at %1 in per "
                               "pass. Less depth per pass or more surface storage would help.")
                    .arg(depthText));
        }
        if (const std::optional<double> d = LargestDepth(*probe_, diameter, *goal)) {
            depthAnswer_ = Fixed(*d, 2);
            lblDepthAnswer->setText(
                QStringLiteral("Largest depth per pass for the target with %1 ft: %2 in")
                    .arg(diameterText, depthAnswer_));
        } else {
            lblDepthAnswer->setText(
                QStringLiteral("No depth per pass from 0.25 to 3 in meets the target with %1 ft. "
                               "A larger wetted diameter or more surface storage would help.")
                    .arg(diameterText));
        }
    }
    cmdUseDiameter->setEnabled(!diameterAnswer_.isEmpty());
    cmdUseDepth->setEnabled(!depthAnswer_.isEmpty());
}

QString DesignExplorer::pointText(QPointF value) const {
    const bool depthAxis = axis() == ExploreAxis::Depth;
    QString where = depthAxis ? QStringLiteral("%1 ft, %2 in per pass")
                              : QStringLiteral("%1 ft, %2 in of storage on every segment");
    where = where.arg(Fixed(value.x(), 1), Fixed(value.y(), 2));
    try {
        const double runoff =
            depthAxis ? probe_->WeightedAverage(value.x(), value.y())
                      : probe_->WeightedAverage(value.x(), probe_->designDepth(), value.y());
        return where + QStringLiteral(": %1 % runoff").arg(runoff, 0, 'f', 2);
    } catch (const std::exception& e) {
        return where + QStringLiteral(": no result (%1)").arg(QString::fromUtf8(e.what()));
    }
}

// The diameter to 0.1 ft and the depth or storage to 0.01 in: the steps of the answers.
static QPointF Rounded(QPointF value, ExploreAxis axis) {
    const double lo = axis == ExploreAxis::Depth ? kExploreMinDepth : kExploreMinStorage;
    const double hi = axis == ExploreAxis::Depth ? kExploreMaxDepth : kExploreMaxStorage;
    const double tenths =
        std::clamp(std::round(value.x() * 10), kExploreMinDiameter * 10, kExploreMaxDiameter * 10);
    const double hundredths = std::clamp(std::round(value.y() * 100), lo * 100, hi * 100);
    return QPointF(tenths / 10, hundredths / 100);
}

void DesignExplorer::refreshPoint(std::optional<QPointF> hovered) {
    QString text = QStringLiteral("Selected: ") + pointText(selected_);
    if (hovered)
        text += QStringLiteral("\nPointer: ") + pointText(Rounded(*hovered, axis()));
    lblPoint->setText(text);
}

void DesignExplorer::select(QPointF value) {
    selected_ = Rounded(value, axis());
    refreshView();
    refreshAnswers();
    refreshPoint(std::nullopt);
    refreshChart();
}

void DesignExplorer::refreshChart() {
    const DesignRecord point = DesignAt(design_, axis(), selected_.x(), selected_.y());
    QString caption = QStringLiteral("Percent runoff along the pivot<br>%1 ft, %2 in")
                          .arg(Fixed(selected_.x(), 1), Fixed(selected_.y(), 2));
    caption +=
        axis() == ExploreAxis::Depth ? QStringLiteral(" per pass") : QStringLiteral(" of storage");
    if (design_.greenAmpt)
        caption += QStringLiteral(", varying water content as in the results table");
    chtPivot->setProfile(ComputePivotProfile(point), caption);
}

void DesignExplorer::use(const QString& field, const QString& text) {
    if (text.isEmpty())
        return;
    (field == QLatin1String("txtWetDiam") ? design_.txtWetDiam : design_.txtAPPL) =
        text.toStdString();
    std::string message;
    if (std::optional<RunoffProbe> probe = RunoffProbe::Make(design_, message))
        probe_ = std::move(probe);
    if (use_)
        use_(field, text);
    refreshView();
    // On the storage axis every point is computed at the design's depth.
    if (field == QLatin1String("txtAPPL") && axis() == ExploreAxis::Storage)
        startMap();
}

QImage DesignExplorer::picture() const {
    return render::ExplorerMapImage(mapView->view(), mapView->size());
}

void DesignExplorer::copyPicture() {
    QApplication::clipboard()->setImage(picture());
}

void DesignExplorer::savePicture(bool pdf) {
    const QString name = saveDialog_(this, pdf ? QStringLiteral("PDF Files (*.pdf)")
                                               : QStringLiteral("PNG Images (*.png)"));
    if (name.isEmpty())
        return;
    std::string bytes;
    if (!render::ExplorerMapFile(mapView->view(), mapView->size(), pdf, bytes))
        ui::ShowError(this,
                      QStringLiteral("Could not save %1: the picture cannot be drawn.").arg(name));
    else
        saveFile(name, bytes);
}

void DesignExplorer::saveCsv() {
    if (!map_)
        return;
    const QString name = saveDialog_(this, QStringLiteral("CSV Files (*.csv)"));
    if (!name.isEmpty())
        saveFile(name, ExploreMapCsv(*map_));
}

// As File > Save writes a design: the whole file or, with the reason, nothing.
void DesignExplorer::saveFile(const QString& name, const std::string& bytes) {
    const std::string failure = SaveFile(ui::FileNameBytes(name), bytes);
    if (!failure.empty())
        ui::ShowError(
            this,
            QStringLiteral("Could not save %1: %2.").arg(name, QString::fromStdString(failure)));
}
