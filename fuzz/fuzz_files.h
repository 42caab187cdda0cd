#pragma once
// What the fuzz targets share: each input is also written to a file, read back by path.

#include <cstddef>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <unistd.h>

// The file the bytes are written to, one per fuzzing process ("rainfold-fuzz-PID.rfd").
inline const std::string& FuzzFile(const char* extension) {
    static const std::string path = [extension] {
        const char* dir = std::getenv("TMPDIR");
        return std::string(dir && *dir ? dir : "/tmp") + "/rainfold-fuzz-" +
               std::to_string(::getpid()) + extension;
    }();
    return path;
}

inline bool WriteFuzzFile(const std::string& path, const std::string& bytes) {
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (fd < 0)
        return false;
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (n <= 0)
            break;
        done += static_cast<std::size_t>(n);
    }
    return ::close(fd) == 0 && done == bytes.size();
}
