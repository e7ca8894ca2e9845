// SPDX-License-Identifier: MIT
//
// On Windows this file calls the narrow (ANSI) functions, which take the bytes that fopen takes.
// Some implementations of std::filesystem::path decode them in another code page.
#include "port/host.h"

#include "port/runtime.h"

#include <cassert>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#if defined(_WIN32)
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#else
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace Port {
namespace {

void assertReady() {
    assert(FileInit::ready() && "a FileInit exists during every file operation");
}

// True if a directory listing with this flag includes name.
bool isListed(const char* name, std::uint8_t flag) {
    return flag == 0 || (std::strcmp(name, ".") != 0 && std::strcmp(name, "..") != 0);
}

} // namespace

#if defined(_WIN32)

namespace {

struct CloseFile {
    void operator()(HANDLE file) const { CloseHandle(file); }
};
using FileHandle = std::unique_ptr<void, CloseFile>;

struct CloseSearch {
    void operator()(HANDLE search) const { FindClose(search); }
};
using Search = std::unique_ptr<void, CloseSearch>;

// Opens a file without locking it; null if the host refuses.
FileHandle openFile(const char* path, DWORD access, DWORD disposition, DWORD flags) {
    constexpr DWORD SHARED = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE file = CreateFileA(path, access, SHARED, nullptr, disposition, flags, nullptr);
    return FileHandle(file != INVALID_HANDLE_VALUE ? file : nullptr);
}

// The attributes of a link's target, INVALID_FILE_ATTRIBUTES if there is none.
DWORD attributesOfTarget(const char* path) {
    const FileHandle target =
        openFile(path, FILE_READ_ATTRIBUTES, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
    BY_HANDLE_FILE_INFORMATION information;
    return target && GetFileInformationByHandle(target.get(), &information) != 0
               ? information.dwFileAttributes
               : INVALID_FILE_ATTRIBUTES;
}

// The absolute form of a path; empty if the host has none.
std::string fullPath(const char* path) {
    std::string text(GetFullPathNameA(path, 0, nullptr, nullptr), '\0');
    const DWORD length =
        GetFullPathNameA(path, static_cast<DWORD>(text.size()), text.data(), nullptr);
    text.resize(length < text.size() ? length : 0);
    return text;
}

} // namespace

bool isLeadByte(char byte) {
    return IsDBCSLeadByte(static_cast<BYTE>(byte)) != 0;
}

bool File::exist(const char* path) {
    assertReady();
    return GetFileAttributesA(path) != INVALID_FILE_ATTRIBUTES;
}

bool File::isdir(const char* path) {
    assertReady();
    DWORD attributes = GetFileAttributesA(path);
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0)
        attributes = attributesOfTarget(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool File::mkdir(const char* path, bool /*flag*/) {
    assertReady();
    return CreateDirectoryA(path, nullptr) != 0;
}

bool File::readable(const char* path) {
    assertReady();
    using Close = int (*)(std::FILE*);
    return std::unique_ptr<std::FILE, Close>(std::fopen(path, "rb"), std::fclose) != nullptr;
}

Creation File::create(const char* path) {
    assertReady();
    if (openFile(path, GENERIC_WRITE, CREATE_NEW, FILE_FLAG_OPEN_REPARSE_POINT))
        return Creation::created;
    const DWORD reason = GetLastError();
    return reason == ERROR_FILE_EXISTS || reason == ERROR_ALREADY_EXISTS ? Creation::nameTaken
                                                                         : Creation::refused;
}

std::string currentDirectory(char drive) {
    const char onDrive[] = {drive, ':', '.', '\0'};
    return fullPath(drive == 0 ? "." : onDrive);
}

UT_DIR::UT_DIR(const char* directory, std::uint8_t flag) {
    assertReady();
    std::string pattern = fullPath(directory);
    if (pattern.empty())
        return;
    pattern += "\\*"; // the doubled separator after a root counts as one
    WIN32_FIND_DATAA entry;
    const HANDLE first = FindFirstFileA(pattern.c_str(), &entry);
    if (first == INVALID_HANDLE_VALUE) {
        // The root directory of an empty volume has no entries, not even ".".
        valid = GetLastError() == ERROR_FILE_NOT_FOUND && File::isdir(directory);
        return;
    }
    const Search search(first);
    for (BOOL found = TRUE; found != FALSE; found = FindNextFileA(search.get(), &entry))
        if (isListed(entry.cFileName, flag))
            entries.emplace_back(entry.cFileName);
    valid = GetLastError() == ERROR_NO_MORE_FILES;
}

#else

namespace {

// Owns a file descriptor, if opening succeeded. Opening is retried if a signal interrupts it.
class Descriptor {
public:
    Descriptor(const char* path, int flags) {
        errno = EINTR;
        while (number < 0 && errno == EINTR)
            number = ::open(path, flags | O_CLOEXEC | O_NOCTTY, 0666); // NOLINT(*-vararg)
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        const CancellationDisabled cancellationGuard; // unwinding must not leave a destructor
        if (isOpen())
            ::close(number);
    }
    bool isOpen() const { return number >= 0; }
    bool isDirectory() const {
        struct stat status{};
        return ::fstat(number, &status) == 0 && S_ISDIR(status.st_mode);
    }

private:
    int number = -1;
};

} // namespace

bool isLeadByte(char /*byte*/) {
    return false; // paths are bytes
}

bool File::exist(const char* path) {
    assertReady();
    struct stat status{};
    return ::lstat(path, &status) == 0;
}

bool File::isdir(const char* path) {
    assertReady();
    struct stat status{};
    return ::stat(path, &status) == 0 && S_ISDIR(status.st_mode);
}

bool File::mkdir(const char* path, bool /*flag*/) {
    assertReady();
    return ::mkdir(path, 0777) == 0;
}

bool File::readable(const char* path) {
    assertReady();
    // Without O_NONBLOCK, opening a device, or a FIFO that has no writer, could block. With it, a
    // file under another process's write lease fails with EWOULDBLOCK. Such a file counts as
    // readable, since a blocking open would succeed after a wait.
    const Descriptor file(path, O_RDONLY | O_NONBLOCK);
    return file.isOpen() ? !file.isDirectory() : errno == EWOULDBLOCK;
}

Creation File::create(const char* path) {
    assertReady();
    if (Descriptor(path, O_WRONLY | O_CREAT | O_EXCL).isOpen())
        return Creation::created;
    return errno == EEXIST ? Creation::nameTaken : Creation::refused;
}

std::string currentDirectory(char /*drive*/) {
    std::string text(256, '\0');
    while (::getcwd(text.data(), text.size()) == nullptr) {
        if (errno != ERANGE)
            return {};
        text.resize(2 * text.size());
    }
    return text.substr(0, text.find('\0'));
}

UT_DIR::UT_DIR(const char* directory, std::uint8_t flag) {
    assertReady();
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(directory), closedir);
    if (!stream)
        return;
    // readdir returns null at the end and on failure; only errno tells the difference.
    errno = 0;
    while (const dirent* const entry = readdir(stream.get())) {
        if (isListed(entry->d_name, flag))
            entries.emplace_back(entry->d_name);
        errno = 0;
    }
    valid = errno == 0;
}

#endif

} // namespace Port
