#include "batch_inputs.h"

#include "inventory_columns.h"
#include "inventory_reader.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

namespace rainfold::cli {

namespace {

bool HasExtension(const fs::path& path, const std::string& extension) {
    std::string ext = path.extension().string();
    std::transform(ext.begin(), ext.end(), ext.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return ext == extension;
}

BatchItem DesignFileItem(const std::string& path) {
    BatchItem item;
    item.kind = BatchItem::Kind::DesignFile;
    item.name = item.path = path;
    return item;
}

} // namespace

BatchItem FailedItem(const std::string& name, const std::string& message) {
    BatchItem item;
    item.name = name;
    item.message = message;
    return item;
}

std::size_t BatchItem::Bytes() const {
    std::size_t bytes = sizeof(BatchItem) + name.size() + path.size() + message.size();
    for (const std::string& cell : cells)
        bytes += sizeof(std::string) + cell.size();
    return bytes;
}

// A folder walked one folder at a time, each read whole and closed before the next is opened: a
// tree of any depth needs one open folder at a time, and only the folders on the way down to
// the current one are held. Each folder's entries are taken in the order that sorts the whole
// paths (a folder "x" after a file "x.rfd", as "x/" sorts after "x.").
struct BatchSource::Walk {
    struct Entry {
        std::string key; // the name, with "/" after a folder's
        std::string path;
        bool folder;
    };
    struct Level {
        std::vector<Entry> entries;
        std::size_t next = 0;
    };
    std::vector<Level> levels;
    std::string top;
    std::size_t given = 0;

    // Reads a folder's entries onto the walk; false with the system's reason when it cannot.
    bool Enter(const std::string& folder, std::string& reason) {
        Level level;
        std::error_code error;
        for (fs::directory_iterator it(folder, error), end; !error && it != end;
             it.increment(error)) {
            std::error_code ignored;
            // A symbolic link is not followed into a folder (it may lead back up the tree); one
            // named .rfd is a design file like any other entry so named, whatever it is.
            const bool folderHere = it->symlink_status(ignored).type() == fs::file_type::directory;
            if (!folderHere && !HasExtension(it->path(), ".rfd"))
                continue;
            const std::string name = it->path().filename().string();
            level.entries.push_back(
                {folderHere ? name + "/" : name, it->path().string(), folderHere});
        }
        if (error) {
            reason = error.message();
            return false;
        }
        std::sort(level.entries.begin(), level.entries.end(),
                  [](const Entry& a, const Entry& b) { return a.key < b.key; });
        levels.push_back(std::move(level));
        return true;
    }

    static BatchItem Unread(const std::string& folder, const std::string& reason) {
        return FailedItem(folder, "Could not read the folder " + folder + ": " + reason);
    }

    bool Next(BatchItem& item) {
        while (!levels.empty()) {
            Level& level = levels.back();
            if (level.next == level.entries.size()) {
                levels.pop_back();
                continue;
            }
            const Entry entry = level.entries[level.next++];
            std::string reason;
            if (!entry.folder) {
                item = DesignFileItem(entry.path);
            } else if (!Enter(entry.path, reason)) {
                item = Unread(entry.path, reason);
            } else {
                continue;
            }
            ++given;
            return true;
        }
        if (given > 0)
            return false;
        ++given;
        item = FailedItem(top, "no design files (.rfd) in " + top);
        return true;
    }
};

BatchSource::BatchSource(std::vector<std::string> inputs) : inputs_(std::move(inputs)) {}

BatchSource::~BatchSource() = default;

bool BatchSource::Next(BatchItem& item) {
    while (true) {
        if (walk_ && walk_->Next(item))
            return true;
        walk_.reset();
        if (inventory_ && inventory_->Next(item))
            return true;
        inventory_.reset();
        if (next_ == inputs_.size())
            return false;
        const std::string& input = inputs_[next_++];
        std::error_code error;
        if (fs::is_directory(input, error)) {
            walk_ = std::make_unique<Walk>();
            walk_->top = input;
            std::string reason;
            if (!walk_->Enter(input, reason)) {
                walk_.reset();
                item = Walk::Unread(input, reason);
                return true;
            }
        } else if (HasExtension(input, ".csv")) {
            inventory_ = std::make_unique<InventoryReader>(input);
        } else {
            item = DesignFileItem(input);
            return true;
        }
    }
}

} // namespace rainfold::cli
