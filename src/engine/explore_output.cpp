#include "explore.h"

#include "csv_text.h"
#include "format.h"
#include "results_page.h"

#include <algorithm>
#include <cmath>

namespace rainfold {

namespace {

// The exact values rounded by round(x, digits) with as few digits as keep every one within a
// tenth of a step (as `distance` measures it) of its place; the ends stay exact.
template <class Round, class Distance>
std::vector<double> Shortened(std::vector<double> exact, double step, const Round& round,
                              const Distance& distance) {
    for (int digits = 1; digits < 17; ++digits) {
        std::vector<double> rounded = exact;
        for (size_t i = 1; i + 1 < rounded.size(); ++i)
            rounded[i] = round(exact[i], digits);
        const bool close =
            std::equal(rounded.begin(), rounded.end(), exact.begin(),
                       [&](double a, double b) { return distance(a, b) <= step / 10; });
        if (close)
            return rounded;
    }
    return exact;
}

// A field as typed, without the blanks around it.
std::string Typed(const std::string& text) {
    const size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos)
        return std::string();
    return text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

double ReadBack(const std::string& text) {
    double value = 0;
    ParseDecimal(text, value);
    return value;
}

} // namespace

std::vector<double> ExploreXValues(int columns) {
    std::vector<double> x(static_cast<size_t>(std::max(columns, 2)));
    const double span = std::log(kExploreMaxDiameter / kExploreMinDiameter);
    const double step = span / static_cast<double>(x.size() - 1);
    for (size_t i = 0; i < x.size(); ++i)
        x[i] = kExploreMinDiameter * std::exp(step * static_cast<double>(i));
    x.front() = kExploreMinDiameter;
    x.back() = kExploreMaxDiameter;
    return Shortened(
        x, step, [](double v, int digits) { return ReadBack(SignificantText(v, digits)); },
        [](double a, double b) { return std::fabs(std::log(a / b)); });
}

std::vector<double> ExploreYValues(ExploreAxis axis, int rows) {
    const double lo = axis == ExploreAxis::Depth ? kExploreMinDepth : kExploreMinStorage;
    const double hi = axis == ExploreAxis::Depth ? kExploreMaxDepth : kExploreMaxStorage;
    std::vector<double> y(static_cast<size_t>(std::max(rows, 2)));
    const double step = (hi - lo) / static_cast<double>(y.size() - 1);
    for (size_t j = 0; j < y.size(); ++j)
        y[j] = lo + (hi - lo) * static_cast<double>(j) / static_cast<double>(y.size() - 1);
    y.back() = hi;
    return Shortened(
        y, step, [](double v, int decimals) { return ReadBack(FixedText(v, decimals)); },
        [](double a, double b) { return std::fabs(a - b); });
}

const std::array<SprinklerPackage, 9> kSprinklerPackages = {{
    {"Ultra Low Pressure (LEPA Bubble Mode)", "LEPA bubble", 1, 2},
    {"Ultra Low Pressure (LEPA Spray Mode)", "LEPA spray", 12, 18},
    {"Low Pressure Spray (180 Degrees)", "Spray 180\xC2\xB0", 16, 20},
    {"Low Pressure Spray on Drop Tube", "Spray, drops", 20, 30},
    {"Low Pressure Spray on Pipeline", "Spray, pipeline", 30, 40},
    {"Low Pressure w/Rotators", "Rotators", 50, 60},
    {"Low Pressure Impact", "LP impact", 60, 70},
    {"Medium Pressure Impact", "MP impact", 70, 90},
    {"High Pressure Impact (Variable Spacing)", "HP impact", 80, 110},
}};

std::string PackageClass(double diameterFt) {
    std::string within;
    const SprinklerPackage* below = nullptr;
    const SprinklerPackage* above = nullptr;
    for (const SprinklerPackage& p : kSprinklerPackages) {
        if (diameterFt >= p.low && diameterFt <= p.high)
            within += (within.empty() ? "" : " or ") + std::string(p.name);
        if (p.high < diameterFt && (!below || p.high > below->high))
            below = &p;
        if (p.low > diameterFt && (!above || p.low < above->low))
            above = &p;
    }
    if (!within.empty())
        return within;
    if (below && above)
        return std::string("between ") + below->name + " and " + above->name;
    if (below)
        return std::string("larger than ") + below->name;
    return above ? std::string("smaller than ") + above->name : std::string();
}

std::string ExactText(double x) {
    for (int decimals = 0; decimals <= 20; ++decimals) {
        const std::string text = FixedText(x, decimals);
        double back = 0;
        if (ParseDecimal(text, back) && back == x)
            return text;
    }
    return SignificantText(x, 17);
}

std::vector<ContourSegment> Contour(const ExploreMap& map, double level) {
    std::vector<ContourSegment> out;
    const size_t nx = map.xValues.size(), ny = map.yValues.size();
    for (size_t r = 0; r + 1 < ny; ++r) {
        for (size_t c = 0; c + 1 < nx; ++c) {
            // Corners counter-clockwise from (c, r); the edge k runs from corner k to k + 1.
            const double cx[] = {0, 1, 1, 0}, ry[] = {0, 0, 1, 1};
            double v[4];
            bool above[4], skip = false;
            for (int k = 0; k < 4; ++k) {
                v[k] = map.runoff[r + static_cast<size_t>(ry[k])][c + static_cast<size_t>(cx[k])];
                skip = skip || std::isnan(v[k]);
                above[k] = v[k] > level;
            }
            if (skip)
                continue;
            double px[4], py[4];
            int crossings[4], n = 0;
            for (int k = 0; k < 4; ++k) {
                const int e = (k + 1) % 4;
                if (above[k] == above[e])
                    continue;
                const double t =
                    level == 0 ? 0.5 : std::clamp((level - v[k]) / (v[e] - v[k]), 0.0, 1.0);
                px[k] = static_cast<double>(c) + cx[k] + t * (cx[e] - cx[k]);
                py[k] = static_cast<double>(r) + ry[k] + t * (ry[e] - ry[k]);
                crossings[n++] = k;
            }
            const auto add = [&](int a, int b) { out.push_back({px[a], py[a], px[b], py[b]}); };
            if (n == 2) {
                add(crossings[0], crossings[1]);
            } else if (n == 4) {
                // A saddle: the centre decides which pair of opposite corners is joined.
                const bool centre = (v[0] + v[1] + v[2] + v[3]) / 4 > level;
                if (centre == above[0]) {
                    add(0, 1); // cuts off corner 1
                    add(2, 3); // cuts off corner 3
                } else {
                    add(3, 0); // cuts off corner 0
                    add(1, 2); // cuts off corner 2
                }
            }
        }
    }
    return out;
}

std::string ExploreSoilText(const DesignRecord& design) {
    if (design.greenAmpt)
        return "Green and Ampt Infiltration (Ks " + Typed(design.txtKS) + " mm/hr, Hw " +
               Typed(design.txtHW) + " mm, water content " + Typed(design.txtThetaS) +
               " saturated, " + Typed(design.txtThetaI) + " initial, varying " +
               Typed(design.txtOmega) + " per mm)";
    const std::string name =
        SlotFamilyName(design.intakeFamilyIndex, InitialSlot(design.intakeFamilyIndex));
    if (name == "Customized Values")
        return name + " (K " + Typed(design.txtUk) + ", N " + Typed(design.txtUN) + ")";
    return name + " NRCS Intake Family";
}

ExploreFacts ExploreFactsOf(const DesignRecord& design, const RunoffProbe& probe,
                            ExploreCriterion criterion) {
    std::string location;
    for (const std::string* part : {&design.txtLegalID, &design.txtCounty, &design.txtState})
        if (!Typed(*part).empty())
            location += (location.empty() ? "" : ", ") + Typed(*part);
    std::string storage;
    if (const std::optional<double> uniform = probe.uniformStorage()) {
        storage = PlainNumber(*uniform);
    } else {
        for (int segment = 1; segment <= 10; ++segment)
            storage += (segment > 1 ? " " : "") + PlainNumber(probe.segmentStorage(segment));
        storage += " (segments 1 to 10)";
    }
    const std::string flow =
        FormatFixed((ReadEngineInputs(design).Q0 + 2 * 6.309) / 0.06309, 0) + " gpm";
    return {
        {"Producer", Typed(design.txtDescription)},
        {"Location", location},
        {"Designer", Typed(design.txtDesigner)},
        {"Date", Typed(design.txtDate)},
        {"System length (ft)", Typed(design.txtSYL)},
        {"System capacity (gpm)", Typed(design.txtGPM)},
        {"Depth per pass (in)", Typed(design.txtAPPL)},
        {"Wetted diameter (ft)", Typed(design.txtWetDiam)},
        {"Soil", ExploreSoilText(design)},
        {"Surface storage (in)", storage},
        {"Runoff (%)", criterion == ExploreCriterion::OuterEnd
                           ? "at the outer end of the pivot at " + flow
                           : "weighted average over the circle at " + flow},
    };
}

std::string ExploreMapCsv(const ExploreMap& map, const ExploreFacts& facts) {
    std::string out;
    for (const auto& [key, value] : facts)
        out += CsvField(key) + "," + CsvField(value) + "\r\n";
    out += "\r\n";
    out += map.axis == ExploreAxis::Depth ? "Depth per pass (in)" : "Storage (in)";
    out += " \\ Wetted diameter (ft)";
    for (double x : map.xValues)
        out += "," + ExactText(x);
    out += "\r\n";
    for (size_t row = 0; row < map.yValues.size(); ++row) {
        out += ExactText(map.yValues[row]);
        for (double v : map.runoff[row])
            out += "," + (std::isfinite(v) ? ExactText(v) : std::string());
        out += "\r\n";
    }
    return out;
}

} // namespace rainfold
