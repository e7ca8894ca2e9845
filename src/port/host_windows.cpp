// SPDX-License-Identifier: MIT
//
// Decodes paths as fopen() does and calls the wide system functions. The narrow system functions
// would ignore the locale, but the fopen() of UCRT decodes paths as UTF-8 in a UTF-8 locale.
#include "port/host.h"

#include "port/locale_windows.h"

#include <cstdio>
#include <memory>
#include <string>
#include <utility>

#include <windows.h>

namespace Port {
namespace {

// The wide system functions take text of this type. WCHAR is not wchar_t in every header.
using WideText = std::basic_string<WCHAR>;

struct CloseFile {
    void operator()(HANDLE file) const { CloseHandle(file); }
};
using FileHandle = std::unique_ptr<void, CloseFile>;

struct CloseSearch {
    void operator()(HANDLE search) const { FindClose(search); }
};
using Search = std::unique_ptr<void, CloseSearch>;

// Returns the code page in which fopen() decodes paths.
UINT pathEncoding() {
    if (localeIsUtf8())
        return CP_UTF8;
    return AreFileApisANSI() != FALSE ? CP_ACP : CP_OEMCP;
}

WideText wide(const char* path) {
    const UINT encoding = pathEncoding();
    const int size = MultiByteToWideChar(encoding, 0, path, -1, nullptr, 0); // counts the NUL
    WideText text(static_cast<std::size_t>(size), WCHAR{});
    MultiByteToWideChar(encoding, 0, path, -1, text.data(), size);
    return text.c_str();
}

std::string narrow(const WCHAR* path) {
    const UINT encoding = pathEncoding();
    const int size = WideCharToMultiByte(encoding, 0, path, -1, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(encoding, 0, path, -1, text.data(), size, nullptr, nullptr);
    return text.c_str();
}

// Opens a file, which others may still read, write and delete. Returns null if the host refuses.
FileHandle openFile(const WideText& path, DWORD access, DWORD disposition, DWORD flags) {
    constexpr DWORD SHARED = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE file =
        CreateFileW(path.c_str(), access, SHARED, nullptr, disposition, flags, nullptr);
    return FileHandle(file != INVALID_HANDLE_VALUE ? file : nullptr);
}

// Returns the attributes of a link's target, or INVALID_FILE_ATTRIBUTES if there is none.
DWORD attributesOfTarget(const WideText& path) {
    const FileHandle target =
        openFile(path, FILE_READ_ATTRIBUTES, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
    BY_HANDLE_FILE_INFORMATION information;
    return target && GetFileInformationByHandle(target.get(), &information) != 0
               ? information.dwFileAttributes
               : INVALID_FILE_ATTRIBUTES;
}

// Returns the absolute form of a path, or an empty text on failure. Asks again for a longer text if
// another thread has changed the current directory meanwhile.
WideText fullPath(const WideText& path) {
    WideText text;
    DWORD length = 0;
    do {
        text.resize(length);
        length =
            GetFullPathNameW(path.c_str(), static_cast<DWORD>(text.size()), text.data(), nullptr);
    } while (length > text.size());
    text.resize(length);
    return text;
}

} // namespace

bool isLeadByte(char byte) {
    // For UTF-8, the call returns FALSE. This is right, since no byte of a UTF-8 character of two
    // or more bytes looks like a separator.
    return IsDBCSLeadByteEx(pathEncoding(), static_cast<BYTE>(byte)) != FALSE;
}

bool File::exist(const char* path) {
    FileInit::assertReady();
    return GetFileAttributesW(wide(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool File::isdir(const char* path) {
    FileInit::assertReady();
    const WideText name = wide(path);
    DWORD attributes = GetFileAttributesW(name.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0)
        attributes = attributesOfTarget(name);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool File::mkdir(const char* path, bool /*flag*/) {
    FileInit::assertReady();
    return CreateDirectoryW(wide(path).c_str(), nullptr) != 0;
}

bool File::readable(const char* path) {
    FileInit::assertReady();
    using Close = int (*)(std::FILE*);
    return std::unique_ptr<std::FILE, Close>(std::fopen(path, "rb"), std::fclose) != nullptr;
}

Creation File::create(const char* path) {
    FileInit::assertReady();
    if (openFile(wide(path), GENERIC_WRITE, CREATE_NEW, FILE_FLAG_OPEN_REPARSE_POINT))
        return Creation::created;
    const DWORD reason = GetLastError();
    return reason == ERROR_FILE_EXISTS || reason == ERROR_ALREADY_EXISTS ? Creation::nameTaken
                                                                         : Creation::refused;
}

std::string currentDirectory(char drive) {
    const char onDrive[] = {drive, ':', '.', '\0'};
    return narrow(fullPath(wide(drive == 0 ? "." : onDrive)).c_str());
}

UT_DIR::UT_DIR(const char* directory, std::uint8_t flag) {
    FileInit::assertReady();
    WideText pattern = fullPath(wide(directory));
    if (pattern.empty())
        return;
    // In a path with the prefix `\\?\`, a second separator would make the path invalid.
    if (pattern.back() != '\\')
        pattern += WCHAR{'\\'};
    pattern += WCHAR{'*'};
    WIN32_FIND_DATAW entry;
    const HANDLE first = FindFirstFileW(pattern.c_str(), &entry);
    if (first == INVALID_HANDLE_VALUE) {
        // The root directory of an empty volume has no entries, not even ".".
        valid = GetLastError() == ERROR_FILE_NOT_FOUND && File::isdir(directory);
        return;
    }
    const Search search(first);
    for (BOOL found = TRUE; found != FALSE; found = FindNextFileW(search.get(), &entry)) {
        std::string name = narrow(entry.cFileName);
        if (isListed(name, flag))
            entries.push_back(std::move(name));
    }
    valid = GetLastError() == ERROR_NO_MORE_FILES;
}

} // namespace Port
