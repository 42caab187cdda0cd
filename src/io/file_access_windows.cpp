// file_access.h and file_chunks.h on Windows: the wide-character API throughout, paths converted
// from UTF-8 to UTF-16 at each call (never through the ANSI code page) and given the \\?\ form,
// so that a path longer than 260 characters works too.

#include "file_access.h"
#include "file_access_shared.h"
#include "file_chunks.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <shellapi.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <io.h>
#include <random>
#include <string>
#include <vector>

namespace rainfold {

using file_access::kNotRegular;

namespace {

std::wstring Wide(const std::string& text) {
    if (text.empty())
        return {};
    const int n =
        MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
    std::wstring wide(static_cast<size_t>(n), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), wide.data(), n);
    return wide;
}

std::string Utf8(const std::wstring& wide) {
    if (wide.empty())
        return {};
    const int n = WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()),
                                      nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<size_t>(n), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()), text.data(), n,
                        nullptr, nullptr);
    return text;
}

// The system's reason for an error code, in the same words as on POSIX systems where there is
// such a word, otherwise the system's own message.
std::string Reason(DWORD code) {
    int number = 0;
    switch (code) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
        number = ENOENT;
        break;
    case ERROR_ACCESS_DENIED:
        number = EACCES;
        break;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
        number = ENOSPC;
        break;
    case ERROR_FILENAME_EXCED_RANGE:
        number = ENAMETOOLONG;
        break;
    case ERROR_DIRECTORY:
        number = ENOTDIR;
        break;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
        number = ENOMEM;
        break;
    case ERROR_BROKEN_PIPE:
    case ERROR_NO_DATA:
        number = EPIPE;
        break;
    default:
        break;
    }
    if (number != 0)
        return std::strerror(number);
    wchar_t* text = nullptr;
    const DWORD n = FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM |
                                       FORMAT_MESSAGE_IGNORE_INSERTS,
                                   nullptr, code, 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    std::wstring message = n && text ? std::wstring(text, n) : std::wstring();
    if (text)
        LocalFree(text);
    while (!message.empty() && (message.back() == L'\n' || message.back() == L'\r' ||
                                message.back() == L' ' || message.back() == L'.'))
        message.pop_back();
    if (message.empty())
        return "System error " + std::to_string(code);
    return Utf8(message);
}

std::string LastReason() {
    return Reason(GetLastError());
}

// A path for the wide API: absolute, with backslashes, and in the \\?\ form that lifts the
// 260-character limit. Device names (NUL, CON, \\.\pipe\...) stay as the system spells them.
std::wstring SystemPath(const std::string& path) {
    std::wstring wide = Wide(path);
    std::replace(wide.begin(), wide.end(), L'/', L'\\');
    if (wide.rfind(L"\\\\?\\", 0) == 0 || wide.rfind(L"\\\\.\\", 0) == 0)
        return wide;
    const DWORD n = GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr);
    if (n == 0)
        return wide;
    std::wstring full(n, L'\0');
    const DWORD got = GetFullPathNameW(wide.c_str(), n, full.data(), nullptr);
    full.resize(got < n ? got : 0);
    if (full.size() >= 3 && full[1] == L':' && full[2] == L'\\')
        return L"\\\\?\\" + full;
    if (full.rfind(L"\\\\", 0) == 0 && full.rfind(L"\\\\.\\", 0) != 0)
        return L"\\\\?\\UNC\\" + full.substr(2);
    return full.empty() ? wide : full;
}

// The folder part of a path in the wide API's form.
std::wstring WideFolder(const std::wstring& path) {
    const size_t slash = path.find_last_of(L'\\');
    return slash == std::wstring::npos ? std::wstring(L".") : path.substr(0, slash);
}

// A path as the program shows it: without the \\?\ prefix.
std::string Shown(const std::wstring& path) {
    if (path.rfind(L"\\\\?\\UNC\\", 0) == 0)
        return Utf8(L"\\" + path.substr(7));
    if (path.rfind(L"\\\\?\\", 0) == 0)
        return Utf8(path.substr(4));
    return Utf8(path);
}

// Closes the handle when it goes out of scope.
class Handle {
public:
    explicit Handle(HANDLE h = INVALID_HANDLE_VALUE) : h_(h) {}
    ~Handle() { Reset(INVALID_HANDLE_VALUE); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    HANDLE get() const { return h_; }
    bool ok() const { return h_ != INVALID_HANDLE_VALUE; }
    void Reset(HANDLE h) {
        if (ok())
            CloseHandle(h_);
        h_ = h;
    }
    bool Close() {
        const HANDLE h = h_;
        h_ = INVALID_HANDLE_VALUE;
        return CloseHandle(h) != 0;
    }

private:
    HANDLE h_;
};

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// Opens what a path names, whatever it is (a folder too), for `access`.
HANDLE OpenExisting(const std::wstring& path, DWORD access) {
    return CreateFileW(path.c_str(), access, kShareAll, nullptr, OPEN_EXISTING,
                       FILE_FLAG_BACKUP_SEMANTICS, nullptr);
}

bool IsFolder(HANDLE h) {
    BY_HANDLE_FILE_INFORMATION info{};
    return GetFileInformationByHandle(h, &info) &&
           (info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY);
}

// The path of the file a handle is open on, links followed, in the \\?\ form.
std::wstring FinalPath(HANDLE h, const std::wstring& fallback) {
    const DWORD n = GetFinalPathNameByHandleW(h, nullptr, 0, FILE_NAME_NORMALIZED);
    if (n == 0)
        return fallback;
    std::wstring path(n, L'\0');
    const DWORD got = GetFinalPathNameByHandleW(h, path.data(), n, FILE_NAME_NORMALIZED);
    if (got == 0 || got >= n)
        return fallback;
    path.resize(got);
    return path;
}

std::string WriteAll(HANDLE h, const std::string& bytes) {
    size_t done = 0;
    while (done < bytes.size()) {
        const DWORD part = static_cast<DWORD>(std::min<size_t>(bytes.size() - done, 1u << 30));
        DWORD written = 0;
        if (!WriteFile(h, bytes.data() + done, part, &written, nullptr))
            return LastReason();
        if (written == 0)
            return std::strerror(EIO);
        done += written;
    }
    return "";
}

std::wstring TemporaryName(std::mt19937& rng) {
    static const char letters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    std::string name = kTemporaryPrefix;
    for (int i = 0; i < 6; ++i)
        name += letters[rng() % (sizeof letters - 1)];
    return Wide(name);
}

} // namespace

struct FileChunks::State {
    Handle file;
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
    s.limit = limit;
    s.total = 0;
    const auto refuse = [&s](const std::string& reason) {
        s.file.Reset(INVALID_HANDLE_VALUE);
        s.error = reason;
        return reason;
    };
    s.file.Reset(OpenExisting(SystemPath(path), GENERIC_READ));
    if (!s.file.ok())
        return refuse(LastReason());
    if (IsFolder(s.file.get()))
        return refuse(std::strerror(EISDIR));
    // A console, a pipe or a device may wait for input for ever.
    if (GetFileType(s.file.get()) != FILE_TYPE_DISK)
        return refuse(kNotRegular);
    LARGE_INTEGER size{};
    if (!GetFileSizeEx(s.file.get(), &size))
        return refuse(LastReason());
    if (static_cast<unsigned long long>(size.QuadPart) > limit)
        return refuse(std::strerror(EFBIG));
    s.error.clear();
    return "";
}

bool FileChunks::Next(std::string& bytes, std::size_t most) {
    State& s = *state_;
    if (!s.file.ok())
        return false;
    // One byte past the limit is read, enough to know that a growing file is too large.
    const std::size_t want =
        std::min<std::size_t>({most, s.limit + 1 - s.total, std::size_t(1) << 30});
    const std::size_t had = bytes.size();
    bytes.resize(had + want);
    DWORD got = 0;
    const bool read = ReadFile(s.file.get(), &bytes[had], static_cast<DWORD>(want), &got, nullptr);
    bytes.resize(had + (read ? got : 0));
    if (!read || got == 0) {
        s.error = read ? std::string() : LastReason();
        s.file.Reset(INVALID_HANDLE_VALUE);
        return false;
    }
    s.total += got;
    if (s.total > s.limit) {
        bytes.resize(had);
        s.error = std::strerror(EFBIG);
        s.file.Reset(INVALID_HANDLE_VALUE);
        return false;
    }
    return true;
}

std::string SaveFile(const std::string& path, const std::string& bytes, StreamTarget streams) {
    std::wstring target = SystemPath(path);
    bool exists = false;
    {
        // Opening for writing asks whether this user may write the file, and whether another
        // program holds it in a way that forbids it.
        Handle existing(OpenExisting(target, GENERIC_WRITE));
        if (!existing.ok()) {
            const DWORD code = GetLastError();
            if (code != ERROR_FILE_NOT_FOUND) {
                Handle any(OpenExisting(target, 0));
                if (any.ok() && IsFolder(any.get()))
                    return std::strerror(EISDIR);
                return Reason(code);
            }
        } else {
            if (IsFolder(existing.get()))
                return std::strerror(EISDIR);
            if (GetFileType(existing.get()) != FILE_TYPE_DISK) {
                if (streams == StreamTarget::Refused)
                    return kNotRegular;
                const std::string failed = WriteAll(existing.get(), bytes);
                if (!failed.empty())
                    return failed;
                return existing.Close() ? std::string() : LastReason();
            }
            exists = true;
            // A symbolic link: the file it names is the one replaced.
            target = FinalPath(existing.get(), target);
            // Read-only binds everyone, however the file system below shows it (under Wine, to
            // root).
            BY_HANDLE_FILE_INFORMATION info{};
            if (GetFileInformationByHandle(existing.get(), &info) &&
                (info.dwFileAttributes & FILE_ATTRIBUTE_READONLY))
                return std::strerror(EACCES);
        }
    }

    const std::wstring folder = WideFolder(target);
    file_access::RemoveStaleTemporaries(Shown(folder));
    std::random_device seed;
    std::mt19937 rng(seed() ^ GetCurrentProcessId() ^ GetTickCount());
    std::wstring temp;
    Handle out;
    for (int attempt = 0; attempt < 100 && !out.ok(); ++attempt) {
        temp = folder + L"\\" + TemporaryName(rng);
        out.Reset(CreateFileW(temp.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                              FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!out.ok() && GetLastError() != ERROR_FILE_EXISTS)
            break;
    }
    if (!out.ok()) {
        const DWORD code = GetLastError();
        return code == ERROR_ACCESS_DENIED || code == ERROR_WRITE_PROTECT
                   ? file_access::FolderRefused(Shown(folder), Reason(code))
                   : Reason(code);
    }

    const auto abandon = [&temp](const std::string& reason) {
        DeleteFileW(temp.c_str());
        return reason;
    };
    std::string failed = WriteAll(out.get(), bytes);
    if (failed.empty() && !FlushFileBuffers(out.get()))
        failed = LastReason();
    if (!out.Close() && failed.empty())
        failed = LastReason();
    if (!failed.empty())
        return abandon(failed);
    // The file keeps what it had: its attributes (hidden, archive ...) and its access rights.
    // (ReplaceFileW would do this too, but leaves a file of its own behind where the old file is
    // held open, under Wine.) A new file takes its folder's rights.
    if (exists) {
        const DWORD attributes = GetFileAttributesW(target.c_str());
        if (attributes != INVALID_FILE_ATTRIBUTES)
            SetFileAttributesW(temp.c_str(), attributes & ~FILE_ATTRIBUTE_READONLY);
        DWORD size = 0;
        GetFileSecurityW(target.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
        std::vector<char> rights(size);
        if (size &&
            GetFileSecurityW(target.c_str(), DACL_SECURITY_INFORMATION, rights.data(), size, &size))
            SetFileSecurityW(temp.c_str(), DACL_SECURITY_INFORMATION, rights.data());
    }
    const bool replaced = MoveFileExW(temp.c_str(), target.c_str(),
                                      MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
    if (!replaced)
        return abandon(LastReason());
    return "";
}

bool SameFile(const std::string& first, const std::string& second) {
    Handle a(OpenExisting(SystemPath(first), 0)), b(OpenExisting(SystemPath(second), 0));
    BY_HANDLE_FILE_INFORMATION x{}, y{};
    return a.ok() && b.ok() && GetFileInformationByHandle(a.get(), &x) &&
           GetFileInformationByHandle(b.get(), &y) &&
           x.dwVolumeSerialNumber == y.dwVolumeSerialNumber &&
           x.nFileIndexHigh == y.nFileIndexHigh && x.nFileIndexLow == y.nFileIndexLow;
}

std::vector<std::string> ProgramArguments(int argc, char** argv) {
    int n = 0;
    wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &n);
    if (!wide)
        return std::vector<std::string>(argv, argv + argc);
    std::vector<std::string> arguments;
    for (int i = 0; i < n; ++i)
        arguments.push_back(Utf8(wide[i]));
    LocalFree(wide);
    return arguments;
}

void PrepareStandardStreams() {
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
}

bool StandardErrorIsTerminal() {
    return _isatty(_fileno(stderr)) != 0;
}

} // namespace rainfold
