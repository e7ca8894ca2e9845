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
#include <string_view>

namespace field_report::host {

#ifdef _WIN32

bool isTerminal(std::FILE* stream) {
    return _isatty(_fileno(stream)) != 0;
}

bool enableEscapes() {
    const HANDLE console = GetStdHandle(STD_OUTPUT_HANDLE);
    const DWORD escapes = 0x0004; // ENABLE_VIRTUAL_TERMINAL_PROCESSING, not in every SDK
    DWORD mode = 0;
    return GetConsoleMode(console, &mode) != 0 && SetConsoleMode(console, mode | escapes) != 0;
}

void setBinaryMode(std::FILE* stream) {
    static_cast<void>(_setmode(_fileno(stream), _O_BINARY));
}

bool mayReplace(const std::string& path) {
    const DWORD attributes = GetFileAttributesA(path.c_str());
    return attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

bool replaceFile(const std::string& from, const std::string& to) {
    const bool done = MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING) != 0;
    errno = done ? 0 : EACCES;
    return done;
}

#else

bool isTerminal(std::FILE* stream) {
    return isatty(fileno(stream)) != 0;
}

bool enableEscapes() {
    const char* const kind = std::getenv("TERM");
    return isTerminal(stdout) && kind != nullptr && std::string_view(kind) != "dumb";
}

void setBinaryMode(std::FILE* /*stream*/) {}

bool mayReplace(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) != 0 || S_ISREG(status.st_mode);
}

bool replaceFile(const std::string& from, const std::string& to) {
    return std::rename(from.c_str(), to.c_str()) == 0;
}

#endif

} // namespace field_report::host
