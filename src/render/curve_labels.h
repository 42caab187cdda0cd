#pragma once
// Where to write a curve's name beside it on a chart, in the chart's own pixels (y down): at a
// point of the curve inside the plot area, clear of every curve and of names already placed.

#include <cstddef>
#include <vector>

namespace rainfold::render {

struct LabelPoint {
    double x = 0;
    double y = 0;
};
struct LabelCurve {
    std::vector<LabelPoint> points; // joined in order
};
struct LabelBox {
    double left = 0, top = 0, right = 0, bottom = 0;
};

enum class LabelPreference {
    Middle, // nearest the middle of the curve first
    Late,   // nearest four fifths along the curve first
};

struct LabelPlace {
    bool visible = false; // false when no point of the curve lies in the plot area
    LabelBox box;
};

// Places a width x height name for curves[own]. Tries the curve's points inside `area` in the
// order of `preference`, the name at a small gap above or below, right or left of each; takes
// the first place that crosses no curve and no box of `taken`, or, when every place crosses
// something, the one that crosses least.
LabelPlace PlaceCurveLabel(const std::vector<LabelCurve>& curves, std::size_t own, double width,
                           double height, const LabelBox& area, const std::vector<LabelBox>& taken,
                           LabelPreference preference);

} // namespace rainfold::render
