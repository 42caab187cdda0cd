#pragma once
// The designs of one batch run, one at a time: design files named on the command line, every
// design file of a folder, and the rows of CSV inventories. Nothing is read before it is needed,
// so a run holds only the designs in hand, whatever the size of its inputs.

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace rainfold::cli {

struct InventoryColumns; // an inventory's header, shared by its rows
class InventoryReader;

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

    // About how much memory the item holds, for keeping the designs in hand within bounds.
    std::size_t Bytes() const;
};

BatchItem FailedItem(const std::string& name, const std::string& message);

// Far beyond any county's inventory, and small enough that a wrong file is soon refused.
inline constexpr std::size_t kLargestInventory = std::size_t(64) << 20;

// Every design the inputs name, in the order given: a folder's design files (.rfd, found
// recursively; a symbolic link to a folder is not followed) in sorted order, an inventory's rows
// (a .csv file) in file order. Whatever cannot be read becomes a Failed item in its place (a
// folder that cannot be read, a row that is not one) and the rest goes on.
class BatchSource {
public:
    explicit BatchSource(std::vector<std::string> inputs);
    ~BatchSource();
    BatchSource(const BatchSource&) = delete;
    BatchSource& operator=(const BatchSource&) = delete;

    // The next item; false when every input is done.
    bool Next(BatchItem& item);

private:
    struct Walk;
    std::vector<std::string> inputs_;
    std::size_t next_ = 0;
    std::unique_ptr<Walk> walk_;
    std::unique_ptr<InventoryReader> inventory_;
};

} // namespace rainfold::cli
