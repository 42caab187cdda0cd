#pragma once
// Runs a piece of a test in a child process, as the unprivileged user "nobody" when the tests run
// as root (root may write a read-only file, which would hide what a user sees), and gives back
// the text the piece returned. A child that crashes, aborts or hangs for 20 s gives "died".

#include <cstdlib>
#include <filesystem>
#include <grp.h>
#include <pwd.h>
#include <signal.h>
#include <string>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace rainfold::testing {

// The user the pieces run as; empty when root has no unprivileged user to become.
inline const passwd* Unprivileged() {
    return ::geteuid() == 0 ? ::getpwnam("nobody") : ::getpwuid(::geteuid());
}

// A fresh folder that the unprivileged user may write in, removed with all it holds.
struct SharedFolder {
    std::string path = [] {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "rainfold-io-XXXXXX").string();
        const char* made = ::mkdtemp(pattern.data());
        if (made)
            ::chmod(made, 0777);
        return made ? std::string(made) : std::string();
    }();
    ~SharedFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
};

template <class Piece> std::string RunUnprivileged(Piece piece) {
    int channel[2];
    if (::pipe(channel) != 0)
        return "no pipe";
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(channel[0]);
        ::alarm(20);
        const passwd* user = Unprivileged();
        if (::geteuid() == 0 && (::setgroups(0, nullptr) != 0 || ::setgid(user->pw_gid) != 0 ||
                                 ::setuid(user->pw_uid) != 0))
            ::_exit(2);
        ::prctl(PR_SET_DUMPABLE, 1); // as any process of that user: its /proc entries are its own
        const std::string said = piece();
        for (size_t done = 0; done < said.size();) {
            const ssize_t n = ::write(channel[1], said.data() + done, said.size() - done);
            if (n <= 0)
                ::_exit(3);
            done += static_cast<size_t>(n);
        }
        ::_exit(0);
    }
    ::close(channel[1]);
    std::string said;
    char buffer[4096];
    for (ssize_t n; (n = ::read(channel[0], buffer, sizeof buffer)) > 0;)
        said.append(buffer, static_cast<size_t>(n));
    ::close(channel[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? said : "died";
}

} // namespace rainfold::testing
