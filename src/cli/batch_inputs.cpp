#include "batch_inputs.h"

#include "csv_reader.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <system_error>

namespace fs = std::filesystem;

namespace rainfold::cli {

namespace {

// Far beyond any county's inventory, and small enough that a wrong file cannot exhaust memory.
constexpr std::uintmax_t kLargestInventory = 64u << 20;

BatchItem Failed(const std::string& name, const std::string& message) {
    BatchItem item;
    item.name = name;
    item.message = message;
    return item;
}

bool HasExtension(const fs::path& path, const std::string& extension) {
    std::string ext = path.extension().string();
    std::transform(ext.begin(), ext.end(), ext.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return ext == extension;
}

std::string Trimmed(const std::string& text) {
    const size_t first = text.find_first_not_of(" \t");
    if (first == std::string::npos)
        return "";
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

// The intake-family list entry a "family" cell names: the family as the list shows it (a
// spreadsheet may have written "1.0" as 1), or "custom" for typed K and N; -1 when blank.
bool FamilyIndex(const std::string& cell, int& index) {
    const std::string text = Trimmed(cell);
    std::string lower = text;
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (text.empty()) {
        index = -1;
        return true;
    }
    if (lower == "custom") {
        index = kCustomizedValuesIndex;
        return true;
    }
    if (!IsNumeric(text))
        return false;
    const double families[] = {0.1, 0.3, 0.5, 1.0, 1.5, 2.0, 3.0};
    for (int i = 0; i < 7; ++i)
        if (std::fabs(Val(text) - families[i]) < 1e-9) {
            index = i;
            return true;
        }
    return false;
}

// The texts of one row: the design record's fields, and the cells that are settled once the
// whole row is read (the family list entry, the storage kind and its two pairs of values).
struct RowTexts {
    DesignRecord& d;
    std::string family, storage, slope, residue, surfaceStorage, residueStorage;
};

// The columns of an inventory and where each one's text goes.
struct ColumnSpec {
    const char* name;
    std::string* (*text)(RowTexts&);
};
const ColumnSpec kColumns[] = {
    {"name", [](RowTexts& r) { return &r.d.txtDescription; }},
    {"length_ft", [](RowTexts& r) { return &r.d.txtSYL; }},
    {"capacity_gpm", [](RowTexts& r) { return &r.d.txtGPM; }},
    {"depth_in", [](RowTexts& r) { return &r.d.txtAPPL; }},
    {"wetted_diameter_ft", [](RowTexts& r) { return &r.d.txtWetDiam; }},
    {"family", [](RowTexts& r) { return &r.family; }},
    {"k", [](RowTexts& r) { return &r.d.txtUk; }},
    {"n", [](RowTexts& r) { return &r.d.txtUN; }},
    {"storage", [](RowTexts& r) { return &r.storage; }},
    {"slope_pct", [](RowTexts& r) { return &r.slope; }},
    {"residue_pct", [](RowTexts& r) { return &r.residue; }},
    {"surface_storage_in", [](RowTexts& r) { return &r.surfaceStorage; }},
    {"residue_storage_in", [](RowTexts& r) { return &r.residueStorage; }},
    {"ks_mm_hr", [](RowTexts& r) { return &r.d.txtKS; }},
    {"hw_mm", [](RowTexts& r) { return &r.d.txtHW; }},
    {"theta_s", [](RowTexts& r) { return &r.d.txtThetaS; }},
    {"theta_i", [](RowTexts& r) { return &r.d.txtThetaI; }},
    {"root_depth_mm", [](RowTexts& r) { return &r.d.txtRzDepth; }},
    {"omega", [](RowTexts& r) { return &r.d.txtOmega; }},
};
constexpr size_t kNameColumn = 0;

} // namespace

struct InventoryColumns {
    std::vector<size_t> columns; // index in kColumns of each column of the file
};

std::string RowDesign(const BatchItem& row, DesignRecord& d) {
    const std::vector<size_t>& columns = row.columns->columns;
    RowTexts texts{d, {}, {}, {}, {}, {}, {}};
    for (size_t k = 0; k < columns.size(); ++k) {
        const ColumnSpec& column = kColumns[columns[k]];
        if (row.cells[k].find_first_of("\r\n") != std::string::npos)
            return std::string("the ") + column.name +
                   " cell holds a line break, which a design cannot hold";
        *column.text(texts) = row.cells[k];
    }
    const std::string& family = texts.family;
    if (!FamilyIndex(family, d.intakeFamilyIndex))
        return "family \"" + family + "\" is not 0.1, 0.3, 0.5, 1.0, 1.5, 2.0, 3.0 or custom";

    const std::string kind = Trimmed(texts.storage);
    const bool user = kind == "user";
    if (!user && !kind.empty() && kind != "slope-residue")
        return "storage \"" + texts.storage + "\" is not slope-residue or user";
    // The two pairs fill the same two fields; a value in the pair not chosen would be lost.
    const bool otherGiven = user ? !IsBlank(texts.slope) || !IsBlank(texts.residue)
                                 : !IsBlank(texts.surfaceStorage) || !IsBlank(texts.residueStorage);
    if (otherGiven)
        return user ? "slope_pct and residue_pct belong to storage slope-residue, not user"
                    : "surface_storage_in and residue_storage_in belong to storage user";
    d.surfaceOption = user ? kUserConstant : kConstantSlopeResidue;
    d.txtSurfStore = user ? texts.surfaceStorage : texts.slope;
    d.txtResidue = user ? texts.residueStorage : texts.residue;
    return "";
}

namespace {

std::vector<BatchItem> InventoryFile(const std::string& file) {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (error || !fs::exists(status))
        return {Failed(file, "Could not open " + file + ": " +
                                 (error ? error.message() : "No such file or directory"))};
    if (!fs::is_regular_file(status))
        return {Failed(file, "Could not open " + file + ": not a regular file")};
    const std::uintmax_t size = fs::file_size(file, error);
    if (error || size > kLargestInventory)
        return {Failed(file, "Could not open " + file + ": " +
                                 (error ? error.message() : "larger than 64 MiB"))};
    std::ifstream in(file, std::ios::binary);
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (!in && !in.eof())
        return {Failed(file, "Could not open " + file + ": the file cannot be read")};
    return InventoryItems(CsvTextAsUtf8(text), file);
}

void FolderItems(const std::string& folder, std::vector<BatchItem>& items) {
    std::vector<std::string> files;
    std::error_code error;
    fs::recursive_directory_iterator it(folder, error), end;
    for (; !error && it != end; it.increment(error)) {
        std::error_code ignored;
        if (HasExtension(it->path(), ".rfd") && it->is_regular_file(ignored))
            files.push_back(it->path().string());
    }
    if (error) {
        items.push_back(
            Failed(folder, "Could not read the folder " + folder + ": " + error.message()));
        return;
    }
    if (files.empty())
        items.push_back(Failed(folder, "no design files (.rfd) in " + folder));
    std::sort(files.begin(), files.end());
    for (const std::string& file : files) {
        BatchItem item;
        item.kind = BatchItem::Kind::DesignFile;
        item.name = item.path = file;
        items.push_back(std::move(item));
    }
}

} // namespace

std::vector<BatchItem> InventoryItems(const std::string& text, const std::string& file) {
    std::vector<CsvRecord> records = ReadCsv(text);
    if (records.empty())
        return {Failed(file, file + ": no header row")};
    const CsvRecord& header = records.front();
    const std::string at = file + ":" + std::to_string(header.line) + ": ";
    if (!header.error.empty())
        return {Failed(file, at + header.error)};
    auto shared = std::make_shared<InventoryColumns>();
    std::vector<size_t>& columns = shared->columns;
    for (const std::string& cell : header.fields) {
        const std::string name = Trimmed(cell);
        const auto known = std::find_if(std::begin(kColumns), std::end(kColumns),
                                        [&](const ColumnSpec& c) { return name == c.name; });
        if (known == std::end(kColumns))
            return {Failed(file, at + "unknown column \"" + name + "\"")};
        const size_t index = static_cast<size_t>(known - std::begin(kColumns));
        if (std::find(columns.begin(), columns.end(), index) != columns.end())
            return {Failed(file, at + "column \"" + name + "\" appears twice")};
        columns.push_back(index);
    }
    const auto nameColumn = std::find(columns.begin(), columns.end(), kNameColumn);

    std::vector<BatchItem> items;
    items.reserve(records.size());
    for (auto r = records.begin() + 1; r != records.end(); ++r) {
        const std::string where = file + ":" + std::to_string(r->line);
        const std::string line = where + ": ";
        if (!r->error.empty()) {
            items.push_back(Failed(where, line + r->error));
            continue;
        }
        if (std::all_of(r->fields.begin(), r->fields.end(), IsBlank))
            continue; // a spreadsheet's empty row
        if (r->fields.size() != columns.size()) {
            items.push_back(Failed(where, line + std::to_string(r->fields.size()) + " fields, " +
                                              std::to_string(columns.size()) + " expected"));
            continue;
        }
        BatchItem item;
        item.kind = BatchItem::Kind::Record;
        const std::string name =
            nameColumn == columns.end() ? "" : r->fields[size_t(nameColumn - columns.begin())];
        item.name = IsBlank(name) ? where : name;
        item.path = where;
        item.cells = std::move(r->fields);
        item.columns = shared;
        items.push_back(std::move(item));
    }
    if (items.empty())
        items.push_back(Failed(file, file + ": no designs below the header row"));
    return items;
}

std::vector<BatchItem> CollectBatchItems(const std::vector<std::string>& inputs) {
    std::vector<BatchItem> items;
    for (const std::string& input : inputs) {
        std::error_code error;
        if (fs::is_directory(input, error)) {
            FolderItems(input, items);
        } else if (HasExtension(input, ".csv")) {
            std::vector<BatchItem> rows = InventoryFile(input);
            std::move(rows.begin(), rows.end(), std::back_inserter(items));
        } else {
            BatchItem item;
            item.kind = BatchItem::Kind::DesignFile;
            item.name = item.path = input;
            items.push_back(std::move(item));
        }
    }
    return items;
}

} // namespace rainfold::cli
