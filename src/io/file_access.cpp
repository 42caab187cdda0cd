#include "file_access.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace rainfold {

namespace {

std::string Reason(int code) {
    return std::strerror(code);
}

const char* const kNotRegular = "Not a regular file";

// Closes the descriptor when it goes out of scope.
class Descriptor {
public:
    explicit Descriptor(int fd) : fd_(fd) {}
    ~Descriptor() {
        if (fd_ >= 0)
            ::close(fd_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return fd_; }
    // Closes now and tells whether the close succeeded (a delayed write error shows here).
    bool Close() {
        const int fd = fd_;
        fd_ = -1;
        return ::close(fd) == 0;
    }

private:
    int fd_;
};

std::string Folder(const std::string& path) {
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

// Follows symbolic links to the path they end at, which need not exist yet (saving through a
// link to a file not yet written creates that file).
bool ResolveLinks(std::string& path, std::string& reason) {
    for (int hops = 0;; ++hops) {
        struct stat st {};
        if (::lstat(path.c_str(), &st) != 0) {
            if (errno == ENOENT)
                return true;
            reason = Reason(errno);
            return false;
        }
        if (!S_ISLNK(st.st_mode))
            return true;
        if (hops == 40) { // the system's own limit
            reason = Reason(ELOOP);
            return false;
        }
        std::vector<char> target(static_cast<size_t>(st.st_size > 0 ? st.st_size : 255) + 2);
        const ssize_t n = ::readlink(path.c_str(), target.data(), target.size());
        if (n < 0) {
            reason = Reason(errno);
            return false;
        }
        const std::string link(target.data(), static_cast<size_t>(n));
        path = link.empty() || link[0] == '/' ? link : Folder(path) + "/" + link;
    }
}

bool WriteAll(int fd, const std::string& bytes) {
    size_t written = 0;
    while (written < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.data() + written, bytes.size() - written);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        written += static_cast<size_t>(n);
    }
    return true;
}

mode_t NewFileMode() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

} // namespace

std::string ReadSmallFile(const std::string& path, std::size_t limit, std::string& bytes) {
    // Without O_NONBLOCK a pipe with no writer would wait for one forever.
    Descriptor fd(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (fd.get() < 0)
        return Reason(errno);
    struct stat st {};
    if (::fstat(fd.get(), &st) != 0)
        return Reason(errno);
    if (S_ISDIR(st.st_mode))
        return Reason(EISDIR);
    if (!S_ISREG(st.st_mode))
        return kNotRegular;
    if (static_cast<unsigned long long>(st.st_size) > limit)
        return Reason(EFBIG);
    const int flags = ::fcntl(fd.get(), F_GETFL);
    if (flags >= 0)
        ::fcntl(fd.get(), F_SETFL, flags & ~O_NONBLOCK);

    // The size may be wrong (files under /proc say 0) or change while reading: read at most one
    // byte past the limit, enough to know the file is too large.
    std::string read(static_cast<size_t>(st.st_size) + 1, '\0');
    size_t have = 0;
    while (true) {
        if (have == read.size()) {
            if (read.size() > limit)
                break;
            read.resize(std::min(limit + 1, std::max<size_t>(2 * read.size(), 4096)));
        }
        const ssize_t n = ::read(fd.get(), &read[have], read.size() - have);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return Reason(errno);
        }
        if (n == 0)
            break;
        have += static_cast<size_t>(n);
    }
    if (have > limit)
        return Reason(EFBIG);
    read.resize(have);
    bytes.swap(read);
    return "";
}

std::string ReplaceFile(const std::string& path, const std::string& bytes) {
    std::string target = path;
    std::string reason;
    if (!ResolveLinks(target, reason))
        return reason;

    struct stat old {};
    const bool exists = ::stat(target.c_str(), &old) == 0;
    if (!exists && errno != ENOENT)
        return Reason(errno);
    if (exists) {
        if (S_ISDIR(old.st_mode))
            return Reason(EISDIR);
        if (!S_ISREG(old.st_mode))
            return kNotRegular;
        // The rename below needs only the folder's permission: ask the file itself whether this
        // user may write it.
        Descriptor probe(::open(target.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
        if (probe.get() < 0)
            return Reason(errno);
    }
    const mode_t mode = exists ? old.st_mode & 07777 : NewFileMode();

    // A short name, whatever the length of the target's: a name near the system's limit fits.
    std::string temp = Folder(target) + "/.rfd-XXXXXX";
    std::vector<char> pattern(temp.begin(), temp.end());
    pattern.push_back('\0');
    Descriptor fd(::mkstemp(pattern.data()));
    if (fd.get() < 0)
        return Reason(errno);
    temp = pattern.data();

    const auto abandon = [&](int code) {
        ::unlink(temp.c_str());
        return Reason(code);
    };
    if (exists) // best effort: only the owner or root may hand the file back to its owner
        (void)!::fchown(fd.get(), old.st_uid, old.st_gid);
    if (::fchmod(fd.get(), mode) != 0 || !WriteAll(fd.get(), bytes) || ::fsync(fd.get()) != 0)
        return abandon(errno);
    if (!fd.Close())
        return abandon(errno);
    if (std::rename(temp.c_str(), target.c_str()) != 0)
        return abandon(errno);
    return "";
}

} // namespace rainfold
