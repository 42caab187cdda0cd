#pragma once
// The columns of a CSV inventory, and how one of its rows becomes the design the window would
// hold.

#include "design.h"

#include <cstddef>
#include <string>
#include <vector>

namespace rainfold::cli {

struct InventoryColumns {
    std::vector<std::size_t> columns;       // which column each column of the file is
    std::size_t nameAt = std::string::npos; // where the name column stands in a row
};

// Reads the header row. "" or why it is none (an unknown column, a column twice).
std::string ReadInventoryHeader(const std::vector<std::string>& names, InventoryColumns& header);

// Why a row cannot be a design, and the status of its output row.
struct RowRefusal {
    const char* status = nullptr; // "check" or "file"; null when the row is a design
    std::string message;
};

// An inventory row as the design record the window would hold, texts as typed; a `texture` fills
// the Green-Ampt soil cells left blank. Refused as "check" when a cell of a number column is not
// wholly a number or the texture is unknown, as "file" when the row asks for something the window
// does not offer (a family, a storage kind) or a design cannot hold (a line break).
RowRefusal RowDesign(const std::vector<std::string>& cells, const InventoryColumns& header,
                     DesignRecord& design);

} // namespace rainfold::cli
