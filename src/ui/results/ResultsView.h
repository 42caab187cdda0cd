#pragma once
// The "Results" page: the capacity headings and per-case summaries, the ten-row results table,
// the weighted averages, the family-slot navigation and the chart of the chosen cell with its
// "Location" numbers. It shows what the engine computed; it computes nothing itself.

#include "chart_data.h"
#include "results_page.h"

#include <QWidget>

#include <array>

class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableWidget;
class RateChart;

class ResultsView : public QWidget {
    Q_OBJECT

public:
    explicit ResultsView(QWidget* parent = nullptr);

    // Fills the headings, summaries, table and weighted averages, leaving the table's current
    // cell in column 0 of the last row.
    void Populate_Results(const rainfold::ResultsPage& page);

    // Draws a chart the engine built for the current cell and fills the "Location" frame.
    void showChart(const rainfold::ChartData& data);

    // The family slot, held only as the text of txtIC. Setting it refreshes Prev and Next, for
    // the intake-family list index and model given in setNavigationContext.
    QString slotText() const;
    void setSlotText(const QString& text);
    void setNavigationContext(int familyListIndex, bool greenAmpt);

    // The table's current cell.
    int currentRow() const;
    int currentColumn() const;
    void setCurrentColumn(int column);
    // Writes a column number into txtCol, as the chart does before anything else.
    void noteColumn(int column);

    RateChart* chart() const { return MSChart1; }
    QTableWidget* grid() const { return msgResults; }
    QString txtColText() const;
    QString txtHPText() const;
    QString txtTSText() const;
    QString txtTPText() const;

signals:
    void prevClicked();
    void nextClicked();
    // A click on a cell or the entering of a cell: the window draws the chart of that cell.
    void chartRequested(int row, int column);

private:
    void txtIC_Change();
    void msgResults_EnterCell(int row, int column);
    void msgResults_LeaveCell(int row, int column);

    // While the page is filled, entering cells only highlights them; the chart follows the last
    // runoff cell entered once the table is full.
    bool populating_ = false;
    int lastRow_ = -1, lastColumn_ = -1;

    int familyListIndex_ = -1;
    bool greenAmpt_ = false;

    std::array<QLabel*, 3> lblGPM{};
    QLabel* lblIntakeFamily = nullptr;
    std::array<QLineEdit*, 3> txtHours{};
    std::array<QLineEdit*, 3> txtHPV{};
    std::array<QLineEdit*, 3> txtTPV{};
    std::array<QLineEdit*, 3> txtWARP{};
    QTableWidget* msgResults = nullptr;
    QLineEdit* txtIC = nullptr;
    QPushButton* cmdPrev = nullptr;
    QPushButton* cmdNext = nullptr;
    QLineEdit* txtCol = nullptr;
    QGroupBox* frmLocation = nullptr;
    QLineEdit* txtHP = nullptr;
    QLineEdit* txtTS = nullptr;
    QLineEdit* txtTP = nullptr;
    RateChart* MSChart1 = nullptr;
};
