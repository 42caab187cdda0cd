// Measures shared by the input page's builders and its segment-table rules.

#pragma once

#include "design.h"

#include <QLineEdit>

namespace rainfold::ui::layout {

// Positions inside the page are thought of in twips, at 12 twips to a pixel: the page's text is
// about a fifth larger than the 8-point form font the twips measures were made for, so the
// table and the panels keep room for their texts.
inline constexpr int Tw(int twips) {
    return (twips + 6) / 12;
}

// Where the residue panel stands beside the residue field and the cell editor.
inline constexpr int kResiduePanelLeft = 4440;
inline constexpr int kResiduePanelTop = 4560;

// Widths of the two value columns and of the whole segment table, per variable option.
inline constexpr int kPercentColumnWidth = 960;
inline constexpr int kPercentTableWidth = 2978;
inline constexpr int kStorageColumnWidth = 1310;
inline constexpr int kStorageTableWidth = 3670;

inline constexpr int kFixedRows = 1; // the heading row of the segment table
inline constexpr int kSegmentRows = 10;
inline constexpr int kHeaderRowHeight = 34;
inline constexpr int kRowHeight = 20;

inline double Value(const QLineEdit* field) {
    return rainfold::Val(field->text().toStdString());
}

} // namespace rainfold::ui::layout
