#include "batch_rows.h"

#include "inventory_columns.h"
#include "json_text.h"

#include "calc.h"
#include "checks.h"
#include "csv_text.h"
#include "design_file.h"
#include "format.h"
#include "results_page.h"

#include <cerrno>
#include <cstring>

namespace rainfold::cli {

namespace {

constexpr double kLitresPerGallon = 0.06309; // L/s per gpm
constexpr double kMetresPerFoot = 0.3048;
constexpr double kMmPerInch = 25.4;

const char* const kQuantityNames[kBatchQuantities] = {
    "capacity_gpm",        "hours_per_revolution", "peak_rate_in_hr", "application_time_hr",
    "weighted_runoff_pct", "max_runoff_pct",       "first_runoff_ft",
};

void AddNote(std::string& message, const std::string& note) {
    message += (message.empty() ? "" : " ") + note;
}

// A file of results has no OK button: an excessive value is computed as typed, and the row says
// so in place of the window's question.
std::string Accepted(const std::string& warning) {
    const size_t question = warning.find("Press OK to proceed");
    if (question == std::string::npos)
        return warning;
    return warning.substr(0, question) + "Accepted as typed.";
}

BatchRow Stopped(BatchRow row, const char* status, const std::string& message) {
    row.status = status;
    AddNote(row.message, message);
    return row;
}

// The three cases' values as the results page shows them, for the slot it opens on.
void ReadResults(const DesignRecord& design, const Results& res, const ResultsPage& page, int slot,
                 BatchRow& row) {
    const double L = Val(design.txtSYL) * kMetresPerFoot;
    const double Q0 = (Val(design.txtGPM) - 200) * kLitresPerGallon;
    for (int k = 1; k <= 3; ++k) {
        const size_t i = static_cast<size_t>(k - 1);
        const auto set = [&](BatchQuantity q, std::optional<double> value, std::string text) {
            row.cases[q].value[i] = value;
            row.cases[q].text[i] = value ? std::move(text) : std::string();
        };
        const Cell peak = res.PeakRate.get(k, 10, slot);
        const Cell half = res.HalfTime.get(k, 10, slot);
        set(kCapacityGpm, (Q0 + k * 6.309) / kLitresPerGallon, page.lblGPM[i]);
        set(kHoursPerRevolution, res.HoursPerRev[static_cast<size_t>(k)], page.txtHours[i]);
        set(kPeakRateInHr, peak ? std::optional<double>(*peak / kMmPerInch) : std::nullopt,
            page.txtHPV[i]);
        set(kApplicationTimeHr, half ? std::optional<double>(2 * *half) : std::nullopt,
            page.txtTPV[i]);
        set(kWeightedRunoffPct, page.WeightedRunoff[static_cast<size_t>(k)], page.txtWARP[i]);

        // The runoff column of the page's grid: Green-Ampt shows its varying-water-content
        // results whatever the slot.
        std::optional<double> largest, first;
        for (int p = 1; p <= 10; ++p) {
            const Cell r =
                design.greenAmpt ? res.GAVarPctRunoff.get(k, p, 1) : res.PctRunoff.get(k, p, slot);
            if (!r)
                continue;
            largest = largest ? std::max(*largest, *r) : *r;
            if (!first && *r > 0)
                first = p * 0.1 * L / kMetresPerFoot;
        }
        set(kMaxRunoffPct, largest, largest ? FormatFixed(*largest, 1) : "");
        set(kFirstRunoffFt, first, first ? PlainNumber(*first) : "");
    }
}

} // namespace

BatchRow EvaluateBatchItem(const BatchItem& item, bool greenAmpt) {
    BatchRow row;
    row.name = item.name;
    if (item.kind == BatchItem::Kind::Failed)
        return Stopped(row, "file", item.message);

    DesignRecord design;
    if (item.kind == BatchItem::Kind::DesignFile) {
        const FileOutcome opened = OpenDesign(item.path, design);
        if (!opened.ok)
            return Stopped(row, "file", opened.message);
    } else {
        // An inventory row goes the way of a design saved from the window and opened again.
        DesignRecord typed;
        const RowRefusal refused = RowDesign(item.cells, *item.columns, typed);
        if (refused.status)
            return Stopped(row, refused.status, item.path + ": " + refused.message);
        std::string bytes;
        const FileOutcome saved = SerializeDesign(typed, bytes);
        if (!saved.ok) // names the field the format cannot hold
            return Stopped(row, "file", item.path + ": " + saved.message);
        if (bytes.size() > kDesignFileLimit) // what opening that design file would say
            return Stopped(row, "file",
                           "Could not open " + item.path + ": " + std::strerror(EFBIG) + ".");
        const FileOutcome opened = ParseDesign(bytes, item.path, design);
        if (!opened.ok)
            return Stopped(row, "file", opened.message);
    }
    design.greenAmpt = greenAmpt;

    for (const CheckFailure& f : CheckDesign(design)) {
        if (f.kind == CheckKind::Error)
            return Stopped(row, "check", f.message);
        AddNote(row.message, Accepted(f.message));
    }
    Results results;
    const CalcOutcome calc =
        Calc_Results(design, results, [&](const std::string& m) { AddNote(row.message, m); });
    if (!calc.ok())
        return Stopped(row, "fault", calc.message);
    const int slot = InitialSlot(design.intakeFamilyIndex);
    const ResultsPage page = BuildResultsPage(design, results, slot, PageParts::WithoutGrid);
    if (!page.fault.empty())
        return Stopped(row, "fault", page.fault);
    row.status = "ok";
    row.family = page.lblIntakeFamily;
    ReadResults(design, results, page, slot, row);
    return row;
}

std::string BatchCsvHeader() {
    std::string header = "name,status,message,family";
    for (const char* name : kQuantityNames)
        for (int k = 1; k <= 3; ++k)
            header += std::string(",") + name + "_" + std::to_string(k);
    return header + "\n";
}

std::string BatchCsvLine(const BatchRow& row) {
    std::string line = CsvField(row.name);
    line.append(1, ',').append(row.status).append(1, ',').append(CsvField(row.message));
    line.append(1, ',').append(CsvField(row.family));
    for (const CaseValues& q : row.cases)
        for (const std::string& text : q.text)
            line.append(1, ',').append(text);
    line += '\n';
    return line;
}

std::string BatchJsonLine(const BatchRow& row) {
    Json json;
    json["name"] = row.name;
    json["status"] = row.status;
    json["message"] = row.message;
    json["family"] = row.family;
    for (int q = 0; q < kBatchQuantities; ++q) {
        Json& values = json[kQuantityNames[q]] = Json::array();
        for (const std::optional<double>& v : row.cases[static_cast<size_t>(q)].value)
            values.push_back(JsonNumber(v));
    }
    return JsonText(json) + "\n";
}

} // namespace rainfold::cli
