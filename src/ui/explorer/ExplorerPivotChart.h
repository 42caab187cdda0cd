#pragma once
// Percent runoff against distance from the pivot for the three capacities of one design, so that
// the engineer sees where along the pivot the runoff begins.

#include "explore.h"

#include <QChartView>

class ExplorerPivotChart : public QChartView {
    Q_OBJECT

public:
    explicit ExplorerPivotChart(QWidget* parent = nullptr);

    // Draws the profile under a caption naming the point; a profile that is not ok shows its
    // message instead of curves.
    void setProfile(const rainfold::PivotProfile& profile, const QString& caption);
};
