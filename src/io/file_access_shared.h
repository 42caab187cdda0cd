#pragma once
// What the POSIX and Windows implementations of file_access.h have in common.

#include <string>

namespace rainfold::file_access {

// The reason given for a device, a pipe or anything else that is not a file.
inline constexpr const char* kNotRegular = "Not a regular file";

// The reason for a folder in which no file can be made: it names the folder.
std::string FolderRefused(const std::string& folder, const std::string& reason);

// Whether a name in a folder is one of SaveFile's temporary files.
bool IsTemporaryName(const std::string& name);

// Removes SaveFile's temporary files older than a day from `folder` (left by a save that was
// killed before it could remove its own); any failure is left alone.
void RemoveStaleTemporaries(const std::string& folder);

} // namespace rainfold::file_access
