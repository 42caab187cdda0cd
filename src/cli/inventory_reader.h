#pragma once
// Reading a CSV inventory row by row.

#include "batch_inputs.h"

#include <cstddef>
#include <memory>
#include <string>

namespace rainfold::cli {

// The rows of one inventory file as batch items, read a piece at a time. The file's encoding is
// decided first (a byte order mark, or a look over the whole file for UTF-8), then the rows are
// read: each one a Record under the header, or a Failed item naming FILE:LINE and what is wrong
// with it. A file that cannot be read, or that is (or grows) larger than `limit`, ends in a
// Failed item naming it.
class InventoryReader {
public:
    // No row is longer than a design file may be, with room for what a design file does not
    // hold: a longer one is refused as its design file would be.
    static constexpr std::size_t kLongestRow = std::size_t(4) << 20;

    // `piece`: how much is read at a time.
    explicit InventoryReader(std::string file, std::size_t limit = kLargestInventory,
                             std::size_t longestRow = kLongestRow,
                             std::size_t piece = std::size_t(64) << 10);
    ~InventoryReader();
    InventoryReader(const InventoryReader&) = delete;
    InventoryReader& operator=(const InventoryReader&) = delete;

    // The next item; false when the file has given all it has.
    bool Next(BatchItem& item);

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace rainfold::cli
