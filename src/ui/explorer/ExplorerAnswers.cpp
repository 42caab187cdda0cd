// The explorer's answers and what it says about one point: the smallest wetted diameter and the
// largest depth per pass that meet the target by the chosen criterion, each with the point it
// holds for and both of that point's runoffs; "Use", which writes the whole point; the selected
// point, the point under the pointer, and the runoff along the pivot.

#include "DesignExplorer.h"

#include "ExplorerMapWidget.h"
#include "ExplorerPivotChart.h"
#include "format.h"

#include <QGroupBox>
#include <QLabel>
#include <QPushButton>

#include <cmath>

using namespace rainfold;

namespace {

// A value with `decimals` decimals when that is exactly the value, in full otherwise.
QString Fixed(double x, int decimals) {
    const std::string text = FixedText(x, decimals);
    double back = 0;
    return QString::fromStdString(ParseDecimal(text, back) && back == x ? text : ExactText(x));
}

QString Percent(double x, int decimals) {
    return QString::fromStdString(FormatFixed(x, decimals));
}

// The diameter to 0.1 ft and the depth or storage to 0.01 in: the steps of the answers.
QPointF Rounded(QPointF value, ExploreAxis axis) {
    const double lo = axis == ExploreAxis::Depth ? kExploreMinDepth : kExploreMinStorage;
    const double hi = axis == ExploreAxis::Depth ? kExploreMaxDepth : kExploreMaxStorage;
    const double tenths =
        std::clamp(std::round(value.x() * 10), kExploreMinDiameter * 10, kExploreMaxDiameter * 10);
    const double hundredths = std::clamp(std::round(value.y() * 100), lo * 100, hi * 100);
    return QPointF(tenths / 10, hundredths / 100);
}

// On the storage axis the answers keep the design's storage and depth per pass: storage is not a
// field "Use" can write.
QString StorageNote(std::optional<double> storage) {
    return storage ? QStringLiteral("Storage is not a design field; at the design's %1 in: ")
                         .arg(QString::fromStdString(PlainNumber(*storage)))
                   : QStringLiteral("Storage is not a design field; at the design's own "
                                    "storage along the pivot: ");
}

QString DiameterAnswer(const QString& note, const QString& depth, const QString& diameter,
                       const QString& packages, const QString& runoffs) {
    const QString text = QStringLiteral("smallest wetted diameter for the target at %1 in per "
                                        "pass: %2 ft (%3).\n%4")
                             .arg(depth, diameter, packages, runoffs);
    return note.isEmpty() ? text.left(1).toUpper() + text.mid(1) : note + text;
}

} // namespace

QString DesignExplorer::LongestAnswer() {
    std::string packages;
    for (int tenths = 10; tenths <= 1500; ++tenths)
        if (PackageClass(tenths / 10.0).size() > packages.size())
            packages = PackageClass(tenths / 10.0);
    return DiameterAnswer(StorageNote(0.31), QStringLiteral("0.25"), QStringLiteral("149.9"),
                          QString::fromStdString(packages),
                          QStringLiteral("100.0 % over the circle, 100.0 % at the outer end."));
}

// Both numbers an engineer weighs, at the design's own storage.
QString DesignExplorer::bothRunoffs(double diameter, double depth) const {
    try {
        return QStringLiteral("%1 % over the circle, %2 % at the outer end.")
            .arg(Percent(probe_->WeightedAverage(diameter, depth), 1),
                 Percent(probe_->OuterEnd(diameter, depth), 1));
    } catch (const std::exception& e) {
        return QStringLiteral("No result: %1").arg(QString::fromUtf8(e.what()));
    }
}

void DesignExplorer::refreshAnswers() {
    diameterAnswer_ = {};
    depthAnswer_ = {};
    const std::optional<double> goal = target();
    const bool outerEnd = criterion() == ExploreCriterion::OuterEnd;
    fraAnswers->setTitle(outerEnd ? QStringLiteral("Answers for the outer end of the pivot")
                                  : QStringLiteral("Answers for the weighted average"));
    if (!goal) {
        diameterAnswer_.text = QStringLiteral("Type a runoff target from 0 to 100 %.");
    } else {
        // On the storage axis the answers keep the design's storage and depth per pass: storage
        // is not a field "Use" can write.
        const bool depthAxis = axis() == ExploreAxis::Depth;
        const double depth = depthAxis ? selected_.y() : probe_->designDepth();
        const double diameter = selected_.x();
        const QString depthText = Fixed(depth, 2), diameterText = Fixed(diameter, 1);
        const QString at = depthAxis ? QString() : StorageNote(probe_->uniformStorage());
        const ExploreCriterion by = criterion();
        if (const std::optional<double> D = SmallestWettedDiameter(*probe_, depth, *goal, by)) {
            diameterAnswer_.point = QPointF(*D, depth);
            diameterAnswer_.text =
                DiameterAnswer(at, depthText, Fixed(*D, 1),
                               QString::fromStdString(PackageClass(*D)), bothRunoffs(*D, depth));
        } else {
            diameterAnswer_.text =
                at + QStringLiteral("no wetted diameter from 1 to 150 ft meets the target at %1 in "
                                    "per pass. Less depth per pass or more surface storage would "
                                    "help.")
                         .arg(depthText);
        }
        if (const std::optional<double> d = LargestDepth(*probe_, diameter, *goal, by)) {
            depthAnswer_.point = QPointF(diameter, *d);
            depthAnswer_.text =
                at + QStringLiteral("largest depth per pass for the target with %1 ft: %2 in.\n%3")
                         .arg(diameterText, Fixed(*d, 2), bothRunoffs(diameter, *d));
        } else {
            depthAnswer_.text =
                at + QStringLiteral("no depth per pass from 0.25 to 3 in meets the target with "
                                    "%1 ft. A larger wetted diameter or more surface storage "
                                    "would help.")
                         .arg(diameterText);
        }
        if (at.isEmpty())
            for (Answer* a : {&diameterAnswer_, &depthAnswer_})
                a->text[0] = a->text[0].toUpper(); // a sentence of its own
    }
    lblDiameterAnswer->setText(diameterAnswer_.text);
    lblDepthAnswer->setText(depthAnswer_.text);
    cmdUseDiameter->setEnabled(diameterAnswer_.point.has_value());
    cmdUseDepth->setEnabled(depthAnswer_.point.has_value());
}

QString DesignExplorer::pointText(QPointF value) const {
    const bool depthAxis = axis() == ExploreAxis::Depth;
    QString where = depthAxis ? QStringLiteral("%1 ft, %2 in per pass")
                              : QStringLiteral("%1 ft, %2 in of storage on every segment");
    where = where.arg(Fixed(value.x(), 1), Fixed(value.y(), 2));
    try {
        const double depth = depthAxis ? value.y() : probe_->designDepth();
        const std::optional<double> storage =
            depthAxis ? std::nullopt : std::optional<double>(value.y());
        return where + QStringLiteral(": %1 % over the circle, %2 % at the outer end")
                           .arg(Percent(probe_->WeightedAverage(value.x(), depth, storage), 2),
                                Percent(probe_->OuterEnd(value.x(), depth, storage), 2));
    } catch (const std::exception& e) {
        return where + QStringLiteral(": no result (%1)").arg(QString::fromUtf8(e.what()));
    }
}

// The pointer's line is always there, so that nothing below it moves as the pointer comes and
// goes.
void DesignExplorer::refreshPointer(std::optional<QPointF> at) {
    lblSelected->setText(QStringLiteral("Selected: ") + pointText(selected_));
    lblPointer->setText(
        at ? QStringLiteral("Pointer: ") + pointText(Rounded(*at, axis()))
           : QStringLiteral("Pointer: point at the map, or move the selection with the arrow "
                            "keys"));
}

void DesignExplorer::selectRounded(QPointF value) {
    select(Rounded(value, axis()));
}

void DesignExplorer::select(QPointF value) {
    selected_ = value;
    refreshView();
    refreshAnswers();
    refreshPointer(std::nullopt);
    refreshChart();
}

void DesignExplorer::refreshChart() {
    const DesignRecord point = DesignAt(design_, axis(), selected_.x(), selected_.y());
    QString caption = QStringLiteral("Percent runoff along the pivot<br>%1 ft, %2 in")
                          .arg(Fixed(selected_.x(), 1), Fixed(selected_.y(), 2));
    caption +=
        axis() == ExploreAxis::Depth ? QStringLiteral(" per pass") : QStringLiteral(" of storage");
    if (design_.greenAmpt)
        caption += QStringLiteral("<br>Green-Ampt, varying water content (the results table)");
    chtPivot->setProfile(ComputePivotProfile(point), caption);
}

// Writes every value of the answer's point that differs from the design, then the main window
// returns to its input page.
void DesignExplorer::use(const Answer& answer) {
    if (!answer.point)
        return;
    FieldValues values;
    const double diameter = answer.point->x(), depth = answer.point->y();
    if (Val(design_.txtWetDiam) != diameter || !IsNumeric(design_.txtWetDiam)) {
        design_.txtWetDiam = Fixed(diameter, 1).toStdString();
        values.emplace_back(QStringLiteral("txtWetDiam"),
                            QString::fromStdString(design_.txtWetDiam));
    }
    const bool depthChanged = Val(design_.txtAPPL) != depth || !IsNumeric(design_.txtAPPL);
    if (depthChanged) {
        design_.txtAPPL = Fixed(depth, 2).toStdString();
        values.emplace_back(QStringLiteral("txtAPPL"), QString::fromStdString(design_.txtAPPL));
    }
    std::string message;
    if (std::optional<RunoffProbe> probe = RunoffProbe::Make(design_, message))
        probe_ = std::move(probe);
    if (use_)
        use_(values);
    refreshView();
    // On the storage axis every point is computed at the design's depth.
    if (depthChanged && axis() == ExploreAxis::Storage)
        startMap();
}
