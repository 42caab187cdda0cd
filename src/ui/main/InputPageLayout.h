// Measures shared by the input page's builders and its segment-table rules.

#pragma once

#include "design.h"

#include <QFontInfo>
#include <QLineEdit>

#include <cmath>

namespace rainfold::ui::layout {

// The segment table's widths are given in twips for the form's own font. At the usual 9-point
// page font a pixel stands for 12 twips (the text is about a fifth larger than the 8-point form
// font those widths were made for); a larger page font widens the table in proportion, so its
// headings and numbers keep their room.
inline int Tw(int twips, const QFont& pageFont) {
    const double points = QFontInfo(pageFont).pointSizeF();
    const double scale = points > 0 ? points / 9.0 : 1.0;
    return static_cast<int>(std::lround(twips * scale / 12.0));
}

// The gap kept between neighbouring controls and frames.
inline constexpr int kGap = 8;

// Widths of the two value columns and of the whole segment table, per variable option.
inline constexpr int kPercentColumnWidth = 960;
inline constexpr int kPercentTableWidth = 2978;
inline constexpr int kStorageColumnWidth = 1310;
inline constexpr int kStorageTableWidth = 3670;

inline constexpr int kFixedRows = 1; // the heading row of the segment table
inline constexpr int kSegmentRows = 10;

inline double Value(const QLineEdit* field) {
    return rainfold::Val(field->text().toStdString());
}

} // namespace rainfold::ui::layout
