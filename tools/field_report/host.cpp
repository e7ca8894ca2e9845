// SPDX-License-Identifier: MIT
#include "host.h"

#ifdef _WIN32
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <fcntl.h>
#include <io.h>
#else
#include <sys/stat.h>
#include <unistd.h>
#endif

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

namespace field_report::host {

#ifdef _WIN32

bool enableEscapes() {
    const HANDLE console = GetStdHandle(STD_OUTPUT_HANDLE);
    const DWORD escapes = 0x0004; // ENABLE_VIRTUAL_TERMINAL_PROCESSING, which some SDKs lack
    DWORD mode = 0;
    return GetConsoleMode(console, &mode) != 0 && SetConsoleMode(console, mode | escapes) != 0;
}

void setBinaryMode(std::FILE* stream) {
    static_cast<void>(_setmode(_fileno(stream), _O_BINARY));
}

bool isSameFile(const std::string& a, const std::string& b) {
    const auto absolute = [](const std::string& path) {
        char text[MAX_PATH] = "";
        return std::string(text, GetFullPathNameA(path.c_str(), MAX_PATH, text, nullptr) < MAX_PATH
                                     ? std::strlen(text)
                                     : 0);
    };
    return _access(a.c_str(), 0) == 0 && !absolute(a).empty() &&
           _stricmp(absolute(a).c_str(), absolute(b).c_str()) == 0;
}

bool mayReplace(const std::string& path) {
    const DWORD attributes = GetFileAttributesA(path.c_str());
    return attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

std::string linkTarget(const std::string& path) {
    return path;
}

void copyPermissions(const std::string& /*from*/, const std::string& /*to*/) {}

bool replaceFile(const std::string& from, const std::string& to) {
    const bool done = MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING) != 0;
    errno = done ? 0 : EACCES;
    return done;
}

#else

bool enableEscapes() {
    const char* const kind = std::getenv("TERM");
    return isatty(STDOUT_FILENO) != 0 && kind != nullptr && std::string_view(kind) != "dumb";
}

void setBinaryMode(std::FILE* /*stream*/) {}

bool isSameFile(const std::string& a, const std::string& b) {
    struct stat first = {};
    struct stat second = {};
    return stat(a.c_str(), &first) == 0 && stat(b.c_str(), &second) == 0 &&
           S_ISREG(first.st_mode) && first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

bool mayReplace(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) != 0 || S_ISREG(status.st_mode);
}

std::string linkTarget(const std::string& path) {
    struct stat status = {};
    if (lstat(path.c_str(), &status) != 0 || !S_ISLNK(status.st_mode))
        return path;
    const std::unique_ptr<char, void (*)(void*)> target(realpath(path.c_str(), nullptr), std::free);
    return target == nullptr ? path : target.get();
}

void copyPermissions(const std::string& from, const std::string& to) {
    struct stat status = {};
    if (stat(from.c_str(), &status) == 0)
        static_cast<void>(chmod(to.c_str(), status.st_mode & 0777));
}

bool replaceFile(const std::string& from, const std::string& to) {
    return std::rename(from.c_str(), to.c_str()) == 0;
}

#endif

} // namespace field_report::host
