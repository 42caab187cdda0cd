#pragma once
// Reading a regular file in pieces, for files too large to hold at once.

#include <cstddef>
#include <memory>
#include <string>

namespace rainfold {

// Reads a regular file piece by piece: never more than `limit` + 1 bytes in all, never
// blocking on a device or pipe (they are refused as ReadSmallFile refuses them).
class FileChunks {
public:
    FileChunks();
    ~FileChunks();
    FileChunks(const FileChunks&) = delete;
    FileChunks& operator=(const FileChunks&) = delete;
    // "" or the reason, in the same words as the whole-file read.
    std::string Open(const std::string& path, std::size_t limit);
    // Appends up to `most` bytes to `bytes`. False at the end of the file or on a failure;
    // then error() is "" at the end, or the reason ("File too large." past the limit).
    bool Next(std::string& bytes, std::size_t most);
    const std::string& error() const;

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace rainfold
