#pragma once
// Reading and writing files by path, safely whatever the path names: a folder, a device, a pipe
// with no writer, a huge file, a symbolic link, a file the user may not write, a full disk.
//
// Paths are UTF-8 texts on every system (on POSIX systems, the bytes the system gives, which
// need not be UTF-8). Reasons are the system's, in the same words on every system where they
// have them ("No such file or directory", "Permission denied", "File too large").
//
// One implementation for POSIX systems and one for Windows live behind this header.

#include <cstddef>
#include <string>
#include <vector>

namespace rainfold {

// Reads a regular file of at most `limit` bytes into `bytes`. Never blocks on a pipe or device
// and never reads more than limit + 1 bytes. Returns "" or the reason it could not.
std::string ReadSmallFile(const std::string& path, std::size_t limit, std::string& bytes);

// What a save does with a path that names a device or a pipe rather than a file.
enum class StreamTarget {
    Refused,         // "Not a regular file": a design belongs in a file
    WrittenDirectly, // /dev/stdout, a pipe a program reads from: there is nothing to replace
};

// Gives the file at `path` exactly `bytes`: they are written to a temporary file with a short
// name beside the target, flushed to the disk, and put in the target's place only when complete,
// so a failure (a full disk, a file-size limit, a killed process) leaves any old file as it was.
// A symbolic link is followed to the file it names, which is created when it does not exist
// yet; the file keeps its permissions. A target the user may not write is refused, and so is a
// folder that takes no new file (the reason names the folder). Temporary files of this pattern
// left in that folder by a save that was killed, older than a day, are removed.
// Returns "" or the reason.
std::string SaveFile(const std::string& path, const std::string& bytes,
                     StreamTarget streams = StreamTarget::Refused);

// True when both paths name one existing file: the same name written two ways, a symbolic link
// and its file, or two hard links.
bool SameFile(const std::string& first, const std::string& second);

// The program's arguments (argv[0] included) as the file functions above take them. On Windows
// they are read again from the system in UTF-16, since `argv` holds only what the ANSI code page
// can.
std::vector<std::string> ProgramArguments(int argc, char** argv);

// Makes a failed write to standard output, a closed pipe or a file-size limit, a failure the
// program reports (the write returns an error) rather than the end of the process, and sends
// standard output and error as bytes, unchanged by line-end conversion.
void PrepareStandardStreams();

// True when standard error is a terminal that a person watches (not a file or a pipe).
bool StandardErrorIsTerminal();

// The start of the name of a temporary file SaveFile writes (six letters or digits follow).
inline constexpr const char* kTemporaryPrefix = ".rfd-";

} // namespace rainfold
