// SPDX-License-Identifier: MIT
//
// Calls the narrow (ANSI) functions, which take the bytes that fopen takes. Some implementations of
// std::filesystem::path decode them in another code page.
#include "port/host.h"

#include <cstdio>
#include <memory>

#include <windows.h>

namespace Port {
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
    FileInit::assertReady();
    return GetFileAttributesA(path) != INVALID_FILE_ATTRIBUTES;
}

bool File::isdir(const char* path) {
    FileInit::assertReady();
    DWORD attributes = GetFileAttributesA(path);
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0)
        attributes = attributesOfTarget(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool File::mkdir(const char* path, bool /*flag*/) {
    FileInit::assertReady();
    return CreateDirectoryA(path, nullptr) != 0;
}

bool File::readable(const char* path) {
    FileInit::assertReady();
    using Close = int (*)(std::FILE*);
    return std::unique_ptr<std::FILE, Close>(std::fopen(path, "rb"), std::fclose) != nullptr;
}

Creation File::create(const char* path) {
    FileInit::assertReady();
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
    FileInit::assertReady();
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

} // namespace Port
