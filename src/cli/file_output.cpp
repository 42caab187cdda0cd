#include "file_output.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace rainfold::cli {

namespace {

std::string Reason(int error) {
    return std::strerror(error);
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

int CurrentUmask() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return static_cast<int>(mask);
}

} // namespace

std::string WriteFileReplacing(const std::string& path, const std::string& bytes) {
    struct stat target {};
    const bool exists = ::stat(path.c_str(), &target) == 0;
    if (!exists && errno != ENOENT)
        return Reason(errno);

    if (exists && S_ISDIR(target.st_mode))
        return Reason(EISDIR);
    if (exists && !S_ISREG(target.st_mode)) {
        // A device or a pipe: nothing to replace. Without a reader a pipe would block for ever.
        const int fd = ::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
        if (fd < 0)
            return errno == ENXIO ? std::string("no program reads from it") : Reason(errno);
        ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
        const int failed = WriteAll(fd, bytes);
        const int closed = ::close(fd) == 0 ? 0 : errno;
        return failed ? Reason(failed) : closed ? Reason(closed) : std::string();
    }

    // The file a symbolic link points to is the one replaced, not the link.
    std::string real = path;
    if (exists) {
        char resolved[PATH_MAX];
        if (::realpath(path.c_str(), resolved))
            real = resolved;
        if (::access(real.c_str(), W_OK) != 0)
            return Reason(errno);
    }
    const size_t slash = real.rfind('/');
    // A short name, so that a target whose own name is as long as the system allows still has
    // room for its temporary file beside it.
    std::string temporary =
        (slash == std::string::npos ? std::string("./") : real.substr(0, slash + 1)) + ".rfXXXXXX";
    const int fd = ::mkostemp(temporary.data(), O_CLOEXEC);
    if (fd < 0)
        return Reason(errno);

    int failed = WriteAll(fd, bytes);
    if (!failed && ::fsync(fd) != 0)
        failed = errno;
    if (!failed) {
        const mode_t mode =
            exists ? target.st_mode & 07777 : static_cast<mode_t>(0666 & ~CurrentUmask());
        if (::fchmod(fd, mode) != 0)
            failed = errno;
        if (exists && (target.st_uid != ::geteuid() || target.st_gid != ::getegid()))
            (void)!::fchown(fd, target.st_uid, target.st_gid); // kept where the system allows
    }
    if (::close(fd) != 0 && !failed)
        failed = errno;
    if (!failed && ::rename(temporary.c_str(), real.c_str()) != 0)
        failed = errno;
    if (failed) {
        ::unlink(temporary.c_str());
        return Reason(failed);
    }
    return {};
}

} // namespace rainfold::cli
