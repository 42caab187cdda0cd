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

// The column of frames on the right of the page (wetted diameter, K and N, Green-Ampt), and the
// gap kept between neighbouring controls.
inline constexpr int kRightColumnX = 566;
inline constexpr int kRightColumnWidth = 410;
inline constexpr int kGap = 8;

// Where the segment table stands; the storage fields take its place under the constant options.
inline constexpr int kTableX = 8;
inline constexpr int kTableY = 372;

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
