#include "results_page.h"

#include "calc.h"
#include "fault.h"
#include "format.h"
#include "intake.h"
#include "pattern.h"

namespace rainfold {

namespace {

constexpr double kLitresPerGallon = 0.06309; // L/s per gpm
constexpr double kMetresPerFoot = 0.3048;
constexpr double kMmPerInch = 25.4;

template <class Runoff>
std::optional<double> Weighted(const Runoff& runoff, double L, int c, int slot) {
    const double lFt = L / kMetresPerFoot;
    double sum = 0;
    for (int j = 20; j <= 100; j += 20) {
        const double outer = j * lFt / 100;
        const double inner = (j - 20) * lFt / 100;
        const double area = (outer * outer - inner * inner) * kPi / 43560; // acres
        const int p = 1 + 2 * (j - 20) / 20; // the middle of each fifth: 1, 3, 5, 7, 9
        const Cell value = runoff.at(c, p, slot);
        if (!value)
            return std::nullopt;
        sum = sum + area * *value;
    }
    return Div(sum, kPi * (lFt * lFt) / 43560);
}

} // namespace

std::optional<double> WeightedAverage(const SlotArray& runoff, double L, int capacityCase,
                                      int slot) {
    return Weighted(runoff, L, capacityCase, slot);
}

std::optional<double> WeightedAverage(const GreenArray& runoff, double L, int capacityCase) {
    return Weighted(runoff, L, capacityCase, 1);
}

int InitialSlot(int listIndex) {
    if (listIndex == 0)
        return 1;
    if (listIndex == 6)
        return 3;
    return 2;
}

std::string SlotFamilyName(int listIndex, int slot) {
    const int family = SlotFamily(listIndex + 1, slot);
    if (family == kCustomizedValuesIndex + 1 && slot == 2)
        return "Customized Values";
    if (family < 1 || family > 7)
        return "";
    return kIntakeFamilyName[static_cast<size_t>(family)];
}

ResultsPage BuildResultsPage(const DesignRecord& design, const Results& res, int slot,
                             PageParts parts) {
    ResultsPage page;
    const double L = Val(design.txtSYL) * kMetresPerFoot;
    const double Q0 = (Val(design.txtGPM) - 200) * kLitresPerGallon;
    const double radius = Val(design.txtWetDiam) / 2; // feet; no floor on the display
    const bool green = design.greenAmpt;

    for (int k = 1; k <= 3; ++k) {
        const size_t i = static_cast<size_t>(k - 1);
        page.lblGPM[i] = FormatFixed((Q0 + k * 6.309) / kLitresPerGallon, 0);
        page.txtHours[i] = FormatFixed(Read(res.HoursPerRev[static_cast<size_t>(k)]), 1);
        page.txtHPV[i] = FormatFixed(Read(res.PeakRate.get(k, 10, slot)) / kMmPerInch, 1);
        // The half time is rounded to two decimals before it is doubled.
        const std::string half = FormatFixed(Read(res.HalfTime.get(k, 10, slot)), 2);
        double halfValue = 0;
        ParseDecimal(half, halfValue);
        page.txtTPV[i] = PlainNumber(2 * halfValue);
    }

    if (green) {
        page.lblIntakeFamily = "Green and Ampt Infiltration";
    } else {
        const std::string name = SlotFamilyName(design.intakeFamilyIndex, slot);
        page.lblIntakeFamily = name == "Customized Values" ? name : name + " NRCS Intake Family";
    }
    const auto runoffAt = [&](int c, int position) {
        return green ? res.GAVarPctRunoff.get(c, position, 1)
                     : res.PctRunoff.get(c, position, slot);
    };
    for (int i = 1; i <= 10 && parts == PageParts::All; ++i) {
        auto& row = page.grid[static_cast<size_t>(i - 1)];
        row[0] = PlainNumber(i * 0.1 * L / kMetresPerFoot);
        row[1] = PlainNumber(2 * radius);
        row[2] = PlainNumber(Read(res.SurfStore[static_cast<size_t>(i)]) / kMmPerInch);
        for (int c = 1; c <= 3; ++c)
            row[static_cast<size_t>(2 + c)] = FormatFixed(Read(runoffAt(c, i)), 1);
    }

    try {
        for (int c = 1; c <= 3; ++c) {
            const std::optional<double> wr = green ? WeightedAverage(res.GAPctRunoff, L, c)
                                                   : WeightedAverage(res.PctRunoff, L, c, slot);
            page.WeightedRunoff[static_cast<size_t>(c)] = wr;
            page.txtWARP[static_cast<size_t>(c - 1)] = wr ? FormatFixed(*wr, 1) : "";
        }
    } catch (const EngineFault& e) {
        page.fault = e.what();
    } catch (const std::out_of_range&) {
        page.fault = "Subscript out of range.";
    }
    return page;
}

} // namespace rainfold
