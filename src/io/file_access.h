#pragma once
// Reading and replacing small files by path, safely whatever the path names: a folder, a device,
// a pipe with no writer, a huge file, a symbolic link, a file the user may not write.

#include <cstddef>
#include <string>

namespace rainfold {

// Reads a regular file of at most `limit` bytes into `bytes`. Never blocks on a pipe or device
// and never reads more than limit + 1 bytes. Returns "" or the reason it could not, in the
// system's words ("No such file or directory", "Is a directory", ...).
std::string ReadSmallFile(const std::string& path, std::size_t limit, std::string& bytes);

// Replaces the file at `path` with `bytes`: written to a temporary file beside it and renamed
// over it only when complete, so a failure leaves the old file as it was. A symbolic link is
// followed to the file it names; the file's permission bits are kept. A target the user may not
// write, or one that is not a regular file, is refused. Returns "" or the reason.
std::string ReplaceFile(const std::string& path, const std::string& bytes);

} // namespace rainfold
