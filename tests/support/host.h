// SPDX-License-Identifier: MIT
//
// Gives tests what they need from the host. All differences between hosts are here, except in the
// tests that only one kind of host can run.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <system_error>

#ifdef _WIN32
#define NOMINMAX 1 // libstdc++ defines it with the same value
#include <crtdbg.h>
#include <direct.h>
#include <io.h>
#include <windows.h>
#else
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace test_host {

#ifdef _WIN32
constexpr bool WINDOWS = true;
constexpr const char* SEPARATOR = "\\"; ///< between the parts of a path
inline void setEnvironment(const char* name, const std::optional<std::string>& value) {
    _putenv_s(name, value.value_or("").c_str());
}
inline bool makeDirectory(const std::string& path) {
    return _mkdir(path.c_str()) == 0;
}
inline bool changeDirectory(const std::string& path) {
    return _chdir(path.c_str()) == 0;
}
inline bool closeDescriptor(int descriptor) {
#ifdef _MSC_VER
    // Without a handler, the C library ends a process that uses a closed descriptor. Its debug
    // version would first ask in a dialog.
    _CrtSetReportMode(_CRT_ASSERT, 0);
    _set_invalid_parameter_handler(
        [](const wchar_t*, const wchar_t*, const wchar_t*, unsigned, std::uintptr_t) {});
#endif
    return _close(descriptor) == 0;
}
/// Ends the process with status 1 as a crash does: nothing is flushed, no library is unloaded.
[[noreturn]] inline void crash() {
    TerminateProcess(GetCurrentProcess(), 1);
    std::abort(); // not reached
}
#else
constexpr bool WINDOWS = false;
constexpr const char* SEPARATOR = "/"; ///< between the parts of a path
inline void setEnvironment(const char* name, const std::optional<std::string>& value) {
    static_cast<void>(value ? setenv(name, value->c_str(), 1) : unsetenv(name));
}
inline bool makeDirectory(const std::string& path) {
    return mkdir(path.c_str(), 0777) == 0;
}
inline bool changeDirectory(const std::string& path) {
    return chdir(path.c_str()) == 0;
}
inline bool closeDescriptor(int descriptor) {
    return close(descriptor) == 0;
}
/// Ends the process with status 1 as a crash does: nothing is flushed, no library is unloaded.
[[noreturn]] inline void crash() {
    _exit(1);
}
#endif

/// Returns the path of \a name in \a directory.
inline std::string below(std::string directory, const std::string& name) {
    return directory.append(SEPARATOR).append(name);
}

/// Returns the text of a file, with the line ends of the host as "\n", or "" if there is no file.
inline std::string readWholeFile(const std::string& path) {
    std::ifstream file(path); // text mode converts the line ends
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Returns true if `fopen` opens \a path for reading.
inline bool opens(const std::string& path) {
    std::FILE* const stream = std::fopen(path.c_str(), "rb");
    return stream != nullptr && std::fclose(stream) == 0;
}

/// Creates or replaces a file; throws on failure.
inline void writeFile(const std::string& path, const std::string& text = "") {
    std::ofstream stream(path, std::ios::binary);
    if (!(stream << text).flush())
        throw std::runtime_error("cannot write " + path);
}

/// Creates a new directory. At the end of the scope, makes its parent the current directory, since
/// Windows does not remove the current one, and then removes the new directory with its contents.
class TemporaryDirectory {
public:
    TemporaryDirectory() {
        do
            location.replace_filename("kel_test_" + std::to_string(std::random_device()()));
        while (!std::filesystem::create_directory(location));
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory() {
        std::error_code ignored;
        std::filesystem::current_path(location.parent_path(), ignored);
        std::filesystem::remove_all(location, ignored);
    }
    /// Returns the path without a trailing separator.
    std::string path() const { return location.string(); }
    /// Returns the path of \a name in the directory, with the host's separator.
    std::string operator/(const std::string& name) const { return below(path(), name); }

private:
    std::filesystem::path location =
        std::filesystem::canonical(std::filesystem::temp_directory_path()) / "kel_test_";
};

// The next two classes do not restore what they change, since every test has a process of its own.

/// Changes the current directory.
struct CurrentDirectory {
    explicit CurrentDirectory(const std::string& path) { std::filesystem::current_path(path); }
};

/// Sets an environment variable, or unsets it if there is no value. On Windows, an empty value
/// unsets it, too.
struct Variable {
    const char* name;

    explicit Variable(const char* variable, const std::optional<std::string>& value = {})
        : name(variable) {
        set(value);
    }
    void set(const std::optional<std::string>& value) const { setEnvironment(name, value); }
};

} // namespace test_host
