#pragma once
// The designs of one batch run: design files named on the command line, every design file of a
// folder, and the rows of CSV inventories.

#include "design.h"

#include <memory>
#include <string>
#include <vector>

namespace rainfold::cli {

struct InventoryColumns; // an inventory's header, shared by its rows

struct BatchItem {
    enum class Kind {
        DesignFile, // `path` is opened as a design file
        Record,     // an inventory row: `cells` under the header `columns`
        Failed,     // nothing to compute: `message` says why (a malformed row, a folder unread)
    };
    Kind kind = Kind::Failed;
    std::string name; // the file's path, the inventory's name column, or FILE:LINE
    std::string path; // the design file, or FILE:LINE of the inventory row
    std::vector<std::string> cells;
    std::shared_ptr<const InventoryColumns> columns;
    std::string message;
};

// Every design the inputs name, in the order given: a folder's design files (.rfd, found
// recursively) in sorted order, an inventory's rows (a .csv file) in file order. Never fails:
// whatever cannot be read becomes a Failed item in its place.
std::vector<BatchItem> CollectBatchItems(const std::vector<std::string>& inputs);

// The rows of one inventory, read from its text; `file` names it in the items and messages.
std::vector<BatchItem> InventoryItems(const std::string& text, const std::string& file);

// An inventory row as the design record the window would hold (texts as typed). An empty text,
// or why the row cannot be one (a family or storage the window does not offer).
std::string RowDesign(const BatchItem& row, DesignRecord& design);

} // namespace rainfold::cli
