#include "results_json.h"

#include "results_page.h"

namespace rainfold::cli {

namespace {

// The engine works in millimetres; each key in millimetres has a twin in inches, named with the
// unit ("SurfStore" and "SurfStore_in"), as the window shows it.
constexpr double kMmPerInch = 25.4;

std::optional<double> Scaled(const std::optional<double>& value, double divisor) {
    return value ? std::optional<double>(*value / divisor) : std::nullopt;
}

// [case][position][slot], every index from 1 in the record, from 0 in JSON.
Json SlotArrayJson(const SlotArray& a, double divisor = 1) {
    Json cases = Json::array();
    for (int c = 1; c <= 3; ++c) {
        Json positions = Json::array();
        for (int p = 1; p <= 10; ++p) {
            Json slots = Json::array();
            for (int s = 1; s <= 3; ++s)
                slots.push_back(JsonNumber(Scaled(a.get(c, p, s), divisor)));
            positions.push_back(slots);
        }
        cases.push_back(positions);
    }
    return cases;
}

Json GreenArrayJson(const GreenArray& a, double divisor = 1) {
    Json cases = Json::array();
    for (int c = 1; c <= 3; ++c) {
        Json positions = Json::array();
        for (int p = 1; p <= 10; ++p)
            positions.push_back(JsonNumber(Scaled(a.get(c, p, 1), divisor)));
        cases.push_back(positions);
    }
    return cases;
}

// The weighted average of one case, or empty when its positions were never computed or the
// average cannot be formed.
template <class F> std::optional<double> Guarded(const F& average) {
    try {
        return average();
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace

Json ResultsJson(const DesignRecord& design, const Results& res, const CalcOutcome& calc) {
    const double L = ReadEngineInputs(design).L;
    Json doc;
    doc["status"] = calc.ok() ? "ok" : "error";
    doc["message"] = calc.message;
    Json& hours = doc["HoursPerRev"] = Json::array();
    for (size_t c = 1; c <= 3; ++c)
        hours.push_back(JsonNumber(res.HoursPerRev[c]));
    // Built apart and then added: a reference into the ordered object dies with its next key.
    Json store = Json::array(), storeInches = Json::array();
    for (size_t p = 1; p <= 10; ++p) {
        store.push_back(JsonNumber(res.SurfStore[p]));
        storeInches.push_back(JsonNumber(Scaled(res.SurfStore[p], kMmPerInch)));
    }
    doc["SurfStore"] = store;
    doc["SurfStore_in"] = storeInches;
    doc["PeakRate"] = SlotArrayJson(res.PeakRate);
    doc["PeakRate_in_hr"] = SlotArrayJson(res.PeakRate, kMmPerInch);
    doc["HalfTime"] = SlotArrayJson(res.HalfTime);
    doc["PondFlag"] = SlotArrayJson(res.PondFlag);
    doc["PondStart"] = SlotArrayJson(res.PondStart);
    doc["PondEnd"] = SlotArrayJson(res.PondEnd);
    doc["PctRunoff"] = SlotArrayJson(res.PctRunoff);
    Json& weighted = doc["WeightedRunoff"] = Json::array();
    for (int s = 1; s <= 3; ++s) {
        Json cases = Json::array();
        for (int c = 1; c <= 3; ++c)
            cases.push_back(
                JsonNumber(Guarded([&] { return WeightedAverage(res.PctRunoff, L, c, s); })));
        weighted.push_back(cases);
    }
    if (design.greenAmpt) {
        doc["GATs"] = GreenArrayJson(res.GATs);
        doc["GAPctRunoff"] = GreenArrayJson(res.GAPctRunoff);
        doc["GAVarTs"] = GreenArrayJson(res.GAVarTs);
        doc["GAVarFTf"] = GreenArrayJson(res.GAVarFTf);
        doc["GAVarFTf_in"] = GreenArrayJson(res.GAVarFTf, kMmPerInch);
        doc["GAVarPctRunoff"] = GreenArrayJson(res.GAVarPctRunoff);
        Json& gaWeighted = doc["GAWeightedRunoff"] = Json::array();
        for (int c = 1; c <= 3; ++c)
            gaWeighted.push_back(
                JsonNumber(Guarded([&] { return WeightedAverage(res.GAPctRunoff, L, c); })));
    }
    return doc;
}

} // namespace rainfold::cli
