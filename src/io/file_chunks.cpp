#include "file_chunks.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace rainfold {

struct FileChunks::State {
    int fd = -1;
    std::size_t limit = 0;
    std::size_t read = 0; // bytes read so far
    std::string error;

    void Close() {
        if (fd >= 0)
            ::close(fd);
        fd = -1;
    }
    ~State() { Close(); }
};

FileChunks::FileChunks() : state_(std::make_unique<State>()) {}

FileChunks::~FileChunks() = default;

std::string FileChunks::Open(const std::string& path, std::size_t limit) {
    State& s = *state_;
    s.Close();
    s.read = 0;
    s.limit = limit;
    s.error.clear();
    // Without O_NONBLOCK a pipe with no writer would wait for one forever.
    s.fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (s.fd < 0)
        return s.error = std::strerror(errno);
    struct stat st {};
    if (::fstat(s.fd, &st) != 0)
        s.error = std::strerror(errno);
    else if (S_ISDIR(st.st_mode))
        s.error = std::strerror(EISDIR);
    else if (!S_ISREG(st.st_mode))
        s.error = "Not a regular file";
    else if (static_cast<unsigned long long>(st.st_size) > limit)
        s.error = std::strerror(EFBIG);
    if (!s.error.empty()) {
        s.Close();
        return s.error;
    }
    const int flags = ::fcntl(s.fd, F_GETFL);
    if (flags >= 0)
        ::fcntl(s.fd, F_SETFL, flags & ~O_NONBLOCK);
    return "";
}

bool FileChunks::Next(std::string& bytes, std::size_t most) {
    State& s = *state_;
    if (s.fd < 0 || most == 0)
        return false;
    // A file that grows while it is read stops one byte past the limit, enough to know.
    const std::size_t want = std::min(most, s.limit + 1 - s.read);
    const std::size_t had = bytes.size();
    bytes.resize(had + want);
    ssize_t n;
    do
        n = ::read(s.fd, &bytes[had], want);
    while (n < 0 && errno == EINTR);
    if (n < 0)
        s.error = std::strerror(errno);
    bytes.resize(had + static_cast<std::size_t>(std::max<ssize_t>(n, 0)));
    if (n > 0)
        s.read += static_cast<std::size_t>(n);
    if (s.read > s.limit) {
        bytes.resize(bytes.size() - 1); // the byte past the limit was only a probe
        s.error = std::string(std::strerror(EFBIG)) + ".";
    }
    if (n <= 0 || !s.error.empty()) {
        s.Close();
        return false;
    }
    return true;
}

const std::string& FileChunks::error() const {
    return state_->error;
}

} // namespace rainfold
