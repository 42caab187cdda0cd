#include "format.h"
#include "printout.h"
#include "printout_layout.h"

#include <array>
#include <string>

namespace rainfold {

using namespace printout;

namespace {

constexpr double kPictureAllowance = 6800; // the chart picture stands this far left of ...
constexpr double kRightInset = 1080;       // ... this inset from the page's right edge
constexpr double kDistanceStep = 0.1;      // positions are tenths of the system length
constexpr double kMetresPerFoot = 0.3048;
constexpr double kMmPerInch = 25.4;

} // namespace

void PrintPlot(DrawingSurface& s, const PrintInputs& in) {
    const DesignRecord& d = in.design;
    const double width = s.PageWidth();
    const bool rowShown = in.shownRow >= 0 && in.shownRow <= 9;
    const int position = rowShown ? in.shownRow + 1 : 0;
    const int capacityCase = ShownCapacityCase(in.txtCol);

    WriteHeader(s, in);
    const double storageMm = position ? Read(in.SurfStore[static_cast<size_t>(position)]) : 0;
    const std::array<std::string, 4> left = {
        "System Length = " + d.txtSYL + " ft",
        "System Capacity = " + CapacityText(d, in.txtCol) + " gpm",
        "Application Depth = " + d.txtAPPL + " in",
        "Sprinkler Wetted Diameter = " + d.txtWetDiam + " ft",
    };
    // The soil side names the model and the storage of the one position charted.
    const std::array<std::string, 4> right = {
        ModelLine(in),
        "Surface Storage = " + PlainNumber(storageMm / kMmPerInch) + " in",
        "",
        "",
    };
    for (size_t i = 0; i < left.size(); ++i) {
        WriteAt(s, kLeftMargin, left[i], LineEnd::Continued);
        WriteAt(s, width / 2, right[i], LineEnd::Finished);
    }

    const double ruleY = DrawRule(s);
    s.SetCurrentY(ruleY + kRuleGap);

    SetFont(s, 14, true, false, true);
    WriteCentred(s, width / 2, kWeightedAverage + in.page.txtWARP[1] + "%", LineEnd::Finished);

    SetFont(s, 12, false, false, false);
    // The distance makes the same round trip through metres as the results table's first column.
    const double L = Val(d.txtSYL) * kMetresPerFoot;
    const std::string distance =
        PlainNumber(L * (in.shownRow + 1) * kDistanceStep / kMetresPerFoot);
    const std::string flow =
        capacityCase ? in.page.lblGPM[static_cast<size_t>(capacityCase - 1)] : std::string();
    WriteAt(s, kLeftMargin, "Distance from Pivot = " + distance + " ft", LineEnd::Finished);
    WriteAt(s, 2 * kLeftMargin, "  at " + flow + " gpm", LineEnd::Finished);
    s.Write(" ", LineEnd::Finished);

    const double top = s.CurrentY();
    s.PaintPicture(in.chart, width - kPictureAllowance - kRightInset, top);

    s.SetCurrentY(top + in.chart.height);
    WriteAt(s, kLeftMargin, "Percent Runoff = " + in.percentRunoff + "%", LineEnd::Finished);
    WriteAt(s, kLeftMargin, "Peak Application Rate = " + in.txtHP + " in/hr", LineEnd::Finished);
    WriteAt(s, kLeftMargin, "Time to Saturation = " + in.txtTS + " hr", LineEnd::Finished);
    WriteAt(s, kLeftMargin, "Time to Peak Application = " + in.txtTP + " hr", LineEnd::Finished);
}

} // namespace rainfold
