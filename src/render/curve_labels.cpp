#include "curve_labels.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace rainfold::render {

namespace {

constexpr double kGap = 3; // between the curve's point and the name's nearest corner

bool Inside(const LabelPoint& p, const LabelBox& b) {
    return p.x >= b.left && p.x <= b.right && p.y >= b.top && p.y <= b.bottom;
}

bool Within(const LabelBox& inner, const LabelBox& outer) {
    return inner.left >= outer.left && inner.right <= outer.right && inner.top >= outer.top &&
           inner.bottom <= outer.bottom;
}

bool Overlap(const LabelBox& a, const LabelBox& b) {
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

// Whether the segment a-b passes through the box (clipped against each side in turn).
bool Crosses(const LabelPoint& a, const LabelPoint& b, const LabelBox& box) {
    double t0 = 0, t1 = 1;
    const double dx = b.x - a.x, dy = b.y - a.y;
    const double p[4] = {-dx, dx, -dy, dy};
    const double q[4] = {a.x - box.left, box.right - a.x, a.y - box.top, box.bottom - a.y};
    for (int i = 0; i < 4; ++i) {
        if (p[i] == 0) {
            if (q[i] < 0)
                return false;
            continue;
        }
        const double r = q[i] / p[i];
        if (p[i] < 0)
            t0 = std::max(t0, r);
        else
            t1 = std::min(t1, r);
        if (t0 > t1)
            return false;
    }
    return true;
}

int Crossings(const std::vector<LabelCurve>& curves, const std::vector<LabelBox>& taken,
              const LabelBox& box) {
    int n = 0;
    for (const LabelCurve& c : curves)
        for (size_t i = 1; i < c.points.size(); ++i)
            n += Crosses(c.points[i - 1], c.points[i], box);
    for (const LabelBox& t : taken)
        n += Overlap(t, box);
    return n;
}

} // namespace

LabelPlace PlaceCurveLabel(const std::vector<LabelCurve>& curves, std::size_t own, double width,
                           double height, const LabelBox& area, const std::vector<LabelBox>& taken,
                           LabelPreference preference) {
    LabelPlace best;
    if (own >= curves.size())
        return best;
    const std::vector<LabelPoint>& points = curves[own].points;
    std::vector<size_t> order;
    for (size_t i = 0; i < points.size(); ++i)
        if (Inside(points[i], area))
            order.push_back(i);
    if (order.empty())
        return best;
    const double n = static_cast<double>(points.size() - 1);
    const double aim = preference == LabelPreference::Middle ? n / 2 : n * 0.8;
    std::stable_sort(order.begin(), order.end(), [&](size_t a, size_t b) {
        return std::fabs(static_cast<double>(a) - aim) < std::fabs(static_cast<double>(b) - aim);
    });

    int fewest = std::numeric_limits<int>::max();
    for (size_t i : order) {
        const LabelPoint& p = points[i];
        const LabelBox boxes[] = {
            {p.x + kGap, p.y - kGap - height, p.x + kGap + width, p.y - kGap}, // above right
            {p.x - kGap - width, p.y - kGap - height, p.x - kGap, p.y - kGap}, // above left
            {p.x + kGap, p.y + kGap, p.x + kGap + width, p.y + kGap + height}, // below right
            {p.x - kGap - width, p.y + kGap, p.x - kGap, p.y + kGap + height}, // below left
        };
        for (const LabelBox& box : boxes) {
            if (!Within(box, area))
                continue;
            const int n = Crossings(curves, taken, box);
            if (n < fewest) {
                fewest = n;
                best = {true, box};
            }
            if (n == 0)
                return best;
        }
    }
    if (!best.visible) // no room inside the area anywhere: beside the preferred point
        best = {true,
                {points[order[0]].x + kGap, points[order[0]].y - kGap - height,
                 points[order[0]].x + kGap + width, points[order[0]].y - kGap}};
    return best;
}

} // namespace rainfold::render
