// SPDX-License-Identifier: MIT
//
// The calls to the host. On Windows they are the narrow ones, as fopen is: there a
// std::filesystem::path that is made of narrow text does not go through the ANSI code page.
#include "port/port.h"

#include <cassert>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#if defined(_WIN32)
#define WIN32_LEAN_AND_MEAN
#include <direct.h>
#include <windows.h>
#else
#include <dirent.h>
#include <filesystem>
#include <system_error>
#endif

namespace Port {
namespace {

void assertReady() {
    assert(FileInit::ready() && "the library is loaded while its file services are used");
}

bool opens(const char* path, const char* mode) {
    std::FILE* const stream = std::fopen(path, mode);
    return stream != nullptr && (std::fclose(stream), true);
}

/// True when a reader of directories yields \a name: \a flag 1 leaves "." and ".." out.
bool isYielded(const char* name, std::uint8_t flag) {
    return flag == 0 || (std::strcmp(name, ".") != 0 && std::strcmp(name, "..") != 0);
}

} // namespace

#if defined(_WIN32)

namespace {

struct CloseSearch {
    void operator()(HANDLE search) const { FindClose(search); }
};
using Search = std::unique_ptr<void, CloseSearch>;

// The absolute form of a path; empty when the host has none.
std::string fullPath(const char* path) {
    std::string text(GetFullPathNameA(path, 0, nullptr, nullptr), '\0');
    const DWORD length =
        GetFullPathNameA(path, static_cast<DWORD>(text.size()), text.data(), nullptr);
    text.resize(length < text.size() ? length : 0);
    return text;
}

} // namespace

bool File::exist(const char* path) {
    assertReady();
    return GetFileAttributesA(path) != INVALID_FILE_ATTRIBUTES;
}

bool File::isdir(const char* path) {
    assertReady();
    const DWORD attributes = GetFileAttributesA(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool File::mkdir(const char* path, bool /*flag*/) {
    assertReady();
    return CreateDirectoryA(path, nullptr) != 0;
}

std::string currentDirectory(char drive) {
    // The letters count from 1, in either case.
    const int number = drive == 0 ? 0 : (drive & 0x1F);
    const std::unique_ptr<char, void (*)(void*)> text(_getdcwd(number, nullptr, 0), std::free);
    return text ? text.get() : "";
}

UT_DIR::UT_DIR(const char* directory, std::uint8_t flag) {
    assertReady();
    std::string pattern = fullPath(directory);
    if (pattern.empty())
        return;
    // One that ends in a separator keeps it; a second one between directory and name counts as one.
    pattern += "\\*";
    WIN32_FIND_DATAA entry;
    const HANDLE first = FindFirstFileA(pattern.c_str(), &entry);
    if (first == INVALID_HANDLE_VALUE) {
        // The root of an empty drive has not even "." in it.
        valid = GetLastError() == ERROR_FILE_NOT_FOUND && File::isdir(directory);
        return;
    }
    const Search search(first);
    do
        if (isYielded(entry.cFileName, flag))
            entries.emplace_back(entry.cFileName);
    while (FindNextFileA(search.get(), &entry) != 0);
    valid = GetLastError() == ERROR_NO_MORE_FILES;
}

#else

bool File::exist(const char* path) {
    assertReady();
    std::error_code refused;
    return std::filesystem::exists(std::filesystem::symlink_status(path, refused));
}

bool File::isdir(const char* path) {
    assertReady();
    std::error_code refused;
    return std::filesystem::is_directory(path, refused);
}

bool File::mkdir(const char* path, bool /*flag*/) {
    assertReady();
    std::error_code refused;
    return std::filesystem::create_directory(path, refused);
}

std::string currentDirectory(char /*drive*/) {
    std::error_code refused;
    return std::filesystem::current_path(refused).string();
}

UT_DIR::UT_DIR(const char* directory, std::uint8_t flag) {
    assertReady();
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(directory), closedir);
    if (!stream)
        return;
    // The end and a failure differ only in errno.
    errno = 0;
    while (const dirent* const entry = readdir(stream.get())) {
        if (isYielded(entry->d_name, flag))
            entries.emplace_back(entry->d_name);
        errno = 0;
    }
    valid = errno == 0;
}

#endif

bool File::readable(const char* path) {
    assertReady();
    // Some hosts open directories too, and fail only when they are read.
    return opens(path, "rb") && !isdir(path);
}

bool File::create(const char* path) {
    assertReady();
    return opens(path, "wb");
}

} // namespace Port
