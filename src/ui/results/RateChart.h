#pragma once
// The application and intake-rate chart of one results cell on the results page.

#include "chart_data.h"

#include <QChartView>
#include <QImage>
#include <QSize>

class RateChart : public QChartView {
    Q_OBJECT

public:
    explicit RateChart(QWidget* parent = nullptr);

    // Replaces whatever the chart showed by the curves, markers and scale of `data`.
    void setData(const rainfold::ChartData& data);
    // True once a cell has been charted.
    bool hasData() const { return hasData_; }
    // What the chart shows (empty before a cell is charted).
    const rainfold::ChartData& data() const { return data_; }

    // The chart as shown, as a picture of the given size.
    QImage picture(QSize size);

    // Puts the chart's picture on the clipboard ("Copy Chart" on the chart's context menu).
    void copyToClipboard();

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    bool hasData_ = false;
    rainfold::ChartData data_;
};
