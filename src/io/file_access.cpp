#include "file_access.h"
#include "file_access_shared.h"
#include "file_chunks.h"

#include <chrono>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace rainfold {

namespace fs = std::filesystem;

std::string ReadSmallFile(const std::string& path, std::size_t limit, std::string& bytes) {
    FileChunks file;
    const std::string refused = file.Open(path, limit);
    if (!refused.empty())
        return refused;
    std::string read;
    while (file.Next(read, std::size_t(1) << 16)) {
    }
    if (!file.error().empty())
        return file.error();
    bytes.swap(read);
    return "";
}

namespace file_access {

std::string FolderRefused(const std::string& folder, const std::string& reason) {
    std::error_code ec;
    const fs::path absolute = fs::absolute(fs::u8path(folder), ec);
    const std::string shown = ec ? folder : absolute.lexically_normal().u8string();
    return "the folder " + shown + " takes no new file: " + reason;
}

bool IsTemporaryName(const std::string& name) {
    const size_t prefix = std::strlen(kTemporaryPrefix);
    if (name.size() != prefix + 6 || name.compare(0, prefix, kTemporaryPrefix) != 0)
        return false;
    for (size_t i = prefix; i < name.size(); ++i) {
        const char c = name[i];
        if (!((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')))
            return false;
    }
    return true;
}

void RemoveStaleTemporaries(const std::string& folder) {
    std::error_code ec;
    const auto oldest = fs::file_time_type::clock::now() - std::chrono::hours(24);
    for (fs::directory_iterator it(fs::u8path(folder), ec), end; !ec && it != end;
         it.increment(ec)) {
        std::error_code entry;
        // Only plain files: a link or folder of that name is not one of ours.
        if (!IsTemporaryName(it->path().filename().u8string()) ||
            !fs::is_regular_file(it->symlink_status(entry)) || entry)
            continue;
        const auto written = fs::last_write_time(it->path(), entry);
        if (!entry && written < oldest)
            fs::remove(it->path(), entry);
    }
}

} // namespace file_access
} // namespace rainfold
