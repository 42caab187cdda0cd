#include "inventory_columns.h"

#include "format.h"
#include "soil_textures.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace rainfold::cli {

namespace {

std::string Trimmed(const std::string& text) {
    const size_t first = text.find_first_not_of(" \t");
    if (first == std::string::npos)
        return "";
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

// The intake-family list entry a "family" cell names: the family as the list shows it (a
// spreadsheet may have written "1.0" as 1), or "custom" for typed K and N; -1 when blank.
bool FamilyIndex(const std::string& cell, int& index) {
    const std::string text = Trimmed(cell);
    double value = 0;
    if (text.empty()) {
        index = -1;
        return true;
    }
    if (Lower(text) == "custom") {
        index = kCustomizedValuesIndex;
        return true;
    }
    if (!ParseDecimal(text, value))
        return false;
    const double families[] = {0.1, 0.3, 0.5, 1.0, 1.5, 2.0, 3.0};
    for (int i = 0; i < 7; ++i)
        if (std::fabs(value - families[i]) < 1e-9) {
            index = i;
            return true;
        }
    return false;
}

// The texts of one row: the design record's fields, and the cells that are settled once the
// whole row is read (the family list entry, the storage kind and its two pairs of values, the
// soil texture).
struct RowTexts {
    DesignRecord& d;
    std::string family, storage, slope, residue, surfaceStorage, residueStorage, texture;
};

// The columns of an inventory and where each one's text goes. A number column takes only a
// number: the window reads the leading number of a field, but a cell such as "1,5" comes from a
// spreadsheet in another language, and reading it as 1 would understate the runoff.
struct ColumnSpec {
    const char* name;
    bool number;
    std::string* (*text)(RowTexts&);
};
const ColumnSpec kColumns[] = {
    {"name", false, [](RowTexts& r) { return &r.d.txtDescription; }},
    {"length_ft", true, [](RowTexts& r) { return &r.d.txtSYL; }},
    {"capacity_gpm", true, [](RowTexts& r) { return &r.d.txtGPM; }},
    {"depth_in", true, [](RowTexts& r) { return &r.d.txtAPPL; }},
    {"wetted_diameter_ft", true, [](RowTexts& r) { return &r.d.txtWetDiam; }},
    {"family", false, [](RowTexts& r) { return &r.family; }},
    {"k", true, [](RowTexts& r) { return &r.d.txtUk; }},
    {"n", true, [](RowTexts& r) { return &r.d.txtUN; }},
    {"storage", false, [](RowTexts& r) { return &r.storage; }},
    {"slope_pct", true, [](RowTexts& r) { return &r.slope; }},
    {"residue_pct", true, [](RowTexts& r) { return &r.residue; }},
    {"surface_storage_in", true, [](RowTexts& r) { return &r.surfaceStorage; }},
    {"residue_storage_in", true, [](RowTexts& r) { return &r.residueStorage; }},
    {"texture", false, [](RowTexts& r) { return &r.texture; }},
    {"ks_mm_hr", true, [](RowTexts& r) { return &r.d.txtKS; }},
    {"hw_mm", true, [](RowTexts& r) { return &r.d.txtHW; }},
    {"theta_s", true, [](RowTexts& r) { return &r.d.txtThetaS; }},
    {"theta_i", true, [](RowTexts& r) { return &r.d.txtThetaI; }},
    {"root_depth_mm", true, [](RowTexts& r) { return &r.d.txtRzDepth; }},
    {"omega", true, [](RowTexts& r) { return &r.d.txtOmega; }},
};
constexpr size_t kNameColumn = 0;

RowRefusal Refuse(const char* status, std::string message) {
    return {status, std::move(message)};
}

std::string TextureNames() {
    std::string names;
    for (const SoilTexture& texture : kSoilTextures)
        names += (names.empty() ? "" : ", ") + Lower(texture.name);
    return names;
}

} // namespace

std::string ReadInventoryHeader(const std::vector<std::string>& names, InventoryColumns& header) {
    std::vector<size_t>& columns = header.columns;
    columns.clear();
    for (const std::string& cell : names) {
        const std::string name = Trimmed(cell);
        const auto known = std::find_if(std::begin(kColumns), std::end(kColumns),
                                        [&](const ColumnSpec& c) { return name == c.name; });
        if (known == std::end(kColumns))
            return "unknown column \"" + name + "\"";
        const size_t index = static_cast<size_t>(known - std::begin(kColumns));
        if (std::find(columns.begin(), columns.end(), index) != columns.end())
            return "column \"" + name + "\" appears twice";
        columns.push_back(index);
    }
    const auto name = std::find(columns.begin(), columns.end(), kNameColumn);
    header.nameAt = name == columns.end() ? std::string::npos : size_t(name - columns.begin());
    return "";
}

RowRefusal RowDesign(const std::vector<std::string>& cells, const InventoryColumns& header,
                     DesignRecord& d) {
    const std::vector<size_t>& columns = header.columns;
    RowTexts texts{d, {}, {}, {}, {}, {}, {}, {}};
    for (size_t k = 0; k < columns.size(); ++k) {
        const ColumnSpec& column = kColumns[columns[k]];
        const std::string& cell = cells[k];
        if (cell.find_first_of("\r\n") != std::string::npos)
            return Refuse("file", std::string("the ") + column.name +
                                      " cell holds a line break, which a design cannot hold");
        double ignored = 0;
        if (column.number && !IsBlank(cell) && !ParseDecimal(Trimmed(cell), ignored))
            return Refuse("check", std::string(column.name) + " \"" + cell + "\" is not a number");
        *column.text(texts) = cell;
    }
    const std::string& family = texts.family;
    if (!FamilyIndex(family, d.intakeFamilyIndex))
        return Refuse("file", "family \"" + family +
                                  "\" is not 0.1, 0.3, 0.5, 1.0, 1.5, 2.0, 3.0 or custom");

    const std::string kind = Trimmed(texts.storage);
    const bool user = kind == "user";
    if (!user && !kind.empty() && kind != "slope-residue")
        return Refuse("file", "storage \"" + texts.storage + "\" is not slope-residue or user");
    // The two pairs fill the same two fields; a value in the pair not chosen would be lost.
    const bool otherGiven = user ? !IsBlank(texts.slope) || !IsBlank(texts.residue)
                                 : !IsBlank(texts.surfaceStorage) || !IsBlank(texts.residueStorage);
    if (otherGiven)
        return Refuse("file", user ? "slope_pct and residue_pct belong to storage slope-residue, "
                                     "not user"
                                   : "surface_storage_in and residue_storage_in belong to storage "
                                     "user");
    d.surfaceOption = user ? kUserConstant : kConstantSlopeResidue;
    d.txtSurfStore = user ? texts.surfaceStorage : texts.slope;
    d.txtResidue = user ? texts.residueStorage : texts.residue;

    // A texture stands for the soil values typed as its preset would fill them; a typed value
    // wins. The initial water content, root depth and linear variation describe the field on the
    // day, not the texture.
    if (!IsBlank(texts.texture)) {
        const SoilTexture* texture = FindSoilTexture(Trimmed(texts.texture));
        if (!texture)
            return Refuse("check",
                          "texture \"" + texts.texture + "\" is not one of " + TextureNames());
        for (auto [field, preset] : {std::pair{&d.txtKS, texture->ksMmHr},
                                     {&d.txtHW, texture->hwMm},
                                     {&d.txtThetaS, texture->thetaS}})
            if (IsBlank(*field))
                *field = preset;
    }
    return {};
}

} // namespace rainfold::cli
