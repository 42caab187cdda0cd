#pragma once
// The "Design Explorer" window: which wetted diameter and depth per pass (or surface storage)
// keep the runoff of a design, weighted over the circle or at the outer end of the pivot, under a
// target, as a map with the two answers beside it and the runoff along the pivot of the selected
// point. Non-modal; it works on a copy of the design it was opened with and hands values back
// only through "Use".

#include "ExplorerMapPicture.h"
#include "explore.h"

#include <QPointF>
#include <QString>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

class ExplorerMapWidget;
class ExplorerPivotChart;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QTimer;

class DesignExplorer : public QWidget {
    Q_OBJECT

public:
    // (field, text) pairs: "txtWetDiam" and "txtAPPL" as typed text.
    using FieldValues = std::vector<std::pair<QString, QString>>;
    // Writes the values into the main window's fields and brings it back to its input page.
    using UseFunction = std::function<void(const FieldValues& values)>;
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
    // An answer and the point it holds for: "Use" writes the point's diameter and depth.
    struct Answer {
        QString text;
        std::optional<QPointF> point; // wetted diameter ft, depth in; empty: nothing meets
    };

    void buildLayout();
    QWidget* buildTopRow();
    QWidget* buildRightPanel();
    QWidget* buildButtonRow();
    void fitToScreen();
    void startMap();
    void stopMap();
    void mapDone(const std::shared_ptr<Job>& job);
    void showProgress();
    void refreshView();
    void refreshAnswers();
    void refreshPointer(std::optional<QPointF> at);
    void refreshChart();
    void select(QPointF value);
    void selectRounded(QPointF value); // to the steps of the answers: a click
    void step(int columns, int rows);
    void use(const Answer& answer);
    std::optional<double> target() const;
    rainfold::ExploreAxis axis() const;
    rainfold::ExploreCriterion criterion() const;
    QString pointText(QPointF value) const;
    QString bothRunoffs(double diameter, double depth) const;
    static QString LongestAnswer(); // the longest text an answer can have, for its room

    void copyPicture();
    void savePicture(bool pdf);
    void saveCsv();
    void saveFile(const QString& name, const std::string& bytes);
    QString saveName(const QString& filter, const QString& extension);
    rainfold::render::ExplorerMapView savedView() const;
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
    Answer diameterAnswer_, depthAnswer_;

    QLineEdit* txtTarget = nullptr;
    QComboBox* cboCriterion = nullptr;
    QComboBox* cboYAxis = nullptr;
    QProgressBar* prgMap = nullptr;
    QPushButton* cmdCancel = nullptr;
    QPushButton* cmdDrawMap = nullptr;
    ExplorerMapWidget* mapView = nullptr;
    QLabel* lblStatus = nullptr;
    QGroupBox* fraAnswers = nullptr;
    QLabel* lblDiameterAnswer = nullptr;
    QPushButton* cmdUseDiameter = nullptr;
    QLabel* lblDepthAnswer = nullptr;
    QPushButton* cmdUseDepth = nullptr;
    QLabel* lblSelected = nullptr;
    QLabel* lblPointer = nullptr;
    ExplorerPivotChart* chtPivot = nullptr;
    QPushButton* cmdSaveCsv = nullptr;
    QTimer* progressTimer_ = nullptr;
};
