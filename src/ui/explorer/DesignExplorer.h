#pragma once
// The "Design Explorer" window: which wetted diameter and depth per pass (or surface storage)
// keep the weighted-average runoff of a design under a target, as a map with the two answers
// beside it and the runoff along the pivot of the selected point. Non-modal; it works on a copy
// of the design it was opened with and hands values back only through "Use".

#include "ExplorerMapPicture.h"
#include "explore.h"

#include <QPointF>
#include <QString>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>
#include <thread>

class ExplorerMapWidget;
class ExplorerPivotChart;
class QComboBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QTimer;

class DesignExplorer : public QWidget {
    Q_OBJECT

public:
    // Writes a value into a field of the main window ("txtWetDiam", "txtAPPL") as typed text and
    // brings the main window back to its input page.
    using UseFunction = std::function<void(const QString& field, const QString& text)>;
    // Asks for the name of a file to save (empty when cancelled).
    using SaveDialog = std::function<QString(QWidget* parent, const QString& filter)>;

    // `design` has passed the checks and `probe` was made from it.
    DesignExplorer(QWidget* parent, const rainfold::DesignRecord& design,
                   const rainfold::RunoffProbe& probe, UseFunction use);
    ~DesignExplorer() override;

    void setSaveDialog(SaveDialog dialog);

    // The map shown, once one has been computed.
    const rainfold::ExploreMap* map() const { return map_.get(); }
    bool computing() const { return worker_.joinable() && !finished_; }

signals:
    void mapFinished();

private:
    struct Job;

    void buildLayout();
    void startMap();
    void stopMap();
    void mapDone(const std::shared_ptr<Job>& job);
    void showProgress();
    void refreshView();
    void refreshAnswers();
    void refreshPoint(std::optional<QPointF> hovered);
    void refreshChart();
    void select(QPointF value);
    void use(const QString& field, const QString& text);
    std::optional<double> target() const;
    rainfold::ExploreAxis axis() const;
    QString pointText(QPointF value) const;

    void copyPicture();
    void savePicture(bool pdf);
    void saveCsv();
    void saveFile(const QString& name, const std::string& bytes);
    QImage picture() const;

    rainfold::DesignRecord design_;
    std::optional<rainfold::RunoffProbe> probe_;
    UseFunction use_;
    SaveDialog saveDialog_;

    std::unique_ptr<rainfold::ExploreMap> map_;
    std::shared_ptr<Job> job_;
    std::thread worker_;
    bool finished_ = true;
    QString mapMessage_;
    QPointF selected_; // wetted diameter ft, y in
    QString diameterAnswer_, depthAnswer_;

    QLineEdit* txtTarget = nullptr;
    QComboBox* cboYAxis = nullptr;
    QProgressBar* prgMap = nullptr;
    QPushButton* cmdCancel = nullptr;
    QPushButton* cmdDrawMap = nullptr;
    ExplorerMapWidget* mapView = nullptr;
    QLabel* lblStatus = nullptr;
    QLabel* lblDiameterAnswer = nullptr;
    QPushButton* cmdUseDiameter = nullptr;
    QLabel* lblDepthAnswer = nullptr;
    QPushButton* cmdUseDepth = nullptr;
    QLabel* lblPoint = nullptr;
    ExplorerPivotChart* chtPivot = nullptr;
    QTimer* progressTimer_ = nullptr;
};
