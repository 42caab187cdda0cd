#include "results_json.h"

#include "results_page.h"

namespace rainfold::cli {

namespace {

// [case][position][slot], every index from 1 in the record, from 0 in JSON.
Json SlotArrayJson(const SlotArray& a) {
    Json cases = Json::array();
    for (int c = 1; c <= 3; ++c) {
        Json positions = Json::array();
        for (int p = 1; p <= 10; ++p) {
            Json slots = Json::array();
            for (int s = 1; s <= 3; ++s)
                slots.push_back(JsonNumber(a.get(c, p, s)));
            positions.push_back(slots);
        }
        cases.push_back(positions);
    }
    return cases;
}

Json GreenArrayJson(const GreenArray& a) {
    Json cases = Json::array();
    for (int c = 1; c <= 3; ++c) {
        Json positions = Json::array();
        for (int p = 1; p <= 10; ++p)
            positions.push_back(JsonNumber(a.get(c, p, 1)));
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
    Json& store = doc["SurfStore"] = Json::array();
    for (size_t p = 1; p <= 10; ++p)
        store.push_back(JsonNumber(res.SurfStore[p]));
    doc["PeakRate"] = SlotArrayJson(res.PeakRate);
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
        doc["GAVarPctRunoff"] = GreenArrayJson(res.GAVarPctRunoff);
        Json& gaWeighted = doc["GAWeightedRunoff"] = Json::array();
        for (int c = 1; c <= 3; ++c)
            gaWeighted.push_back(
                JsonNumber(Guarded([&] { return WeightedAverage(res.GAPctRunoff, L, c); })));
    }
    return doc;
}

} // namespace rainfold::cli
