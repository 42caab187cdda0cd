// file_access.h and file_chunks.h on POSIX systems.

#include "file_access.h"
#include "file_access_shared.h"
#include "file_chunks.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace rainfold {

using file_access::kNotRegular;

namespace {

std::string Reason(int code) {
    return std::strerror(code);
}

// Closes the descriptor when it goes out of scope.
class Descriptor {
public:
    explicit Descriptor(int fd = -1) : fd_(fd) {}
    ~Descriptor() {
        if (fd_ >= 0)
            ::close(fd_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return fd_; }
    void Reset(int fd) {
        if (fd_ >= 0)
            ::close(fd_);
        fd_ = fd;
    }
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

// Writes every byte, through interruptions and partial writes. 0, or the error number.
int WriteAll(int fd, const std::string& bytes) {
    size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return n < 0 ? errno : EIO;
        done += static_cast<size_t>(n);
    }
    return 0;
}

mode_t NewFileMode() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

// A device or a pipe: nothing to replace, the bytes go straight to it.
std::string WriteStream(const std::string& path, const std::string& bytes) {
    // Without O_NONBLOCK a pipe with no reader would wait for one for ever.
    Descriptor fd(::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (fd.get() < 0)
        return errno == ENXIO ? std::string("no program reads from it") : Reason(errno);
    const int flags = ::fcntl(fd.get(), F_GETFL);
    if (flags >= 0)
        ::fcntl(fd.get(), F_SETFL, flags & ~O_NONBLOCK);
    if (const int failed = WriteAll(fd.get(), bytes))
        return Reason(failed);
    return fd.Close() ? std::string() : Reason(errno);
}

} // namespace

struct FileChunks::State {
    Descriptor fd;
    std::size_t limit = 0;
    std::size_t total = 0;
    std::string error;
};

FileChunks::FileChunks() : state_(std::make_unique<State>()) {}
FileChunks::~FileChunks() = default;

const std::string& FileChunks::error() const {
    return state_->error;
}

std::string FileChunks::Open(const std::string& path, std::size_t limit) {
    State& s = *state_;
    s.fd.Reset(-1);
    s.limit = limit;
    s.total = 0;
    const auto refuse = [&s](const std::string& reason) {
        s.fd.Reset(-1);
        s.error = reason;
        return reason;
    };
    // Without O_NONBLOCK a pipe with no writer would wait for one for ever.
    s.fd.Reset(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (s.fd.get() < 0)
        return refuse(Reason(errno));
    struct stat st {};
    if (::fstat(s.fd.get(), &st) != 0)
        return refuse(Reason(errno));
    if (S_ISDIR(st.st_mode))
        return refuse(Reason(EISDIR));
    if (!S_ISREG(st.st_mode))
        return refuse(kNotRegular);
    if (static_cast<unsigned long long>(st.st_size) > limit)
        return refuse(Reason(EFBIG));
    const int flags = ::fcntl(s.fd.get(), F_GETFL);
    if (flags >= 0)
        ::fcntl(s.fd.get(), F_SETFL, flags & ~O_NONBLOCK);
    s.error.clear();
    return "";
}

bool FileChunks::Next(std::string& bytes, std::size_t most) {
    State& s = *state_;
    if (s.fd.get() < 0)
        return false;
    // The size may be wrong (files under /proc say 0) or grow while it is read: one byte past the
    // limit is read, enough to know the file is too large.
    const std::size_t want = std::min(most, s.limit + 1 - s.total);
    const std::size_t had = bytes.size();
    bytes.resize(had + want);
    ssize_t n;
    do
        n = ::read(s.fd.get(), &bytes[had], want);
    while (n < 0 && errno == EINTR);
    bytes.resize(had + (n > 0 ? static_cast<std::size_t>(n) : 0));
    if (n <= 0) {
        s.error = n < 0 ? Reason(errno) : std::string();
        s.fd.Reset(-1);
        return false;
    }
    s.total += static_cast<std::size_t>(n);
    if (s.total > s.limit) {
        bytes.resize(had);
        s.error = Reason(EFBIG);
        s.fd.Reset(-1);
        return false;
    }
    return true;
}

std::string SaveFile(const std::string& path, const std::string& bytes, StreamTarget streams) {
    // A device or pipe is asked for through the path as given: /dev/stdout leads through links
    // under /proc that only the system itself can follow.
    struct stat named {};
    if (::stat(path.c_str(), &named) == 0 && !S_ISREG(named.st_mode) && !S_ISDIR(named.st_mode))
        return streams == StreamTarget::WrittenDirectly ? WriteStream(path, bytes) : kNotRegular;

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

    const std::string folder = Folder(target);
    file_access::RemoveStaleTemporaries(folder);
    // A short name, whatever the length of the target's: a name near the system's limit fits.
    std::string temp = folder + "/" + kTemporaryPrefix + "XXXXXX";
    Descriptor fd(::mkostemp(temp.data(), O_CLOEXEC));
    if (fd.get() < 0) {
        const int code = errno;
        return code == EACCES || code == EPERM || code == EROFS
                   ? file_access::FolderRefused(folder, Reason(code))
                   : Reason(code);
    }

    const auto abandon = [&temp](int code) {
        ::unlink(temp.c_str());
        return Reason(code);
    };
    if (exists && (old.st_uid != ::geteuid() || old.st_gid != ::getegid()))
        (void)!::fchown(fd.get(), old.st_uid, old.st_gid); // kept where the system allows
    if (::fchmod(fd.get(), mode) != 0)
        return abandon(errno);
    if (const int failed = WriteAll(fd.get(), bytes))
        return abandon(failed);
    if (::fsync(fd.get()) != 0 || !fd.Close())
        return abandon(errno);
    if (std::rename(temp.c_str(), target.c_str()) != 0)
        return abandon(errno);
    return "";
}

bool SameFile(const std::string& first, const std::string& second) {
    struct stat a {
    }, b{};
    return ::stat(first.c_str(), &a) == 0 && ::stat(second.c_str(), &b) == 0 &&
           a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

std::vector<std::string> ProgramArguments(int argc, char** argv) {
    return std::vector<std::string>(argv, argv + argc);
}

void PrepareStandardStreams() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

bool StandardErrorIsTerminal() {
    return ::isatty(STDERR_FILENO) == 1;
}

} // namespace rainfold
