// SPDX-License-Identifier: MIT
//
// What tests need from the host: the one place in the tests that knows which host it is.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <system_error>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace test_host {

#ifdef _WIN32
constexpr bool WINDOWS = true;
inline void setEnvironment(const char* name, const std::string& value) {
    _putenv_s(name, value.c_str());
}
inline void unsetEnvironment(const char* name) {
    _putenv_s(name, "");
}
inline bool closeDescriptor(int descriptor) {
    return _close(descriptor) == 0;
}
#else
constexpr bool WINDOWS = false;
inline void setEnvironment(const char* name, const std::string& value) {
    setenv(name, value.c_str(), 1);
}
inline void unsetEnvironment(const char* name) {
    unsetenv(name);
}
inline bool closeDescriptor(int descriptor) {
    return close(descriptor) == 0;
}
#endif

/// The bytes of a file, with the host's line ends folded to "\n"; empty when there is none.
inline std::string readWholeFile(const std::string& path) {
    std::ifstream file(path); // text mode folds them
    return {std::istreambuf_iterator<char>(file), {}};
}

/// A new directory of its own, removed with all that is in it at the end of the scope.
class TemporaryDirectory {
public:
    TemporaryDirectory() {
        std::random_device random;
        do
            path_ = std::filesystem::temp_directory_path() /
                    ("kel_test_" + std::to_string(random()) + std::to_string(random()));
        while (!std::filesystem::create_directory(path_));
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    /// The path of \a name in the directory, in the host's style.
    std::string operator/(const std::string& name) const { return (path_ / name).string(); }

private:
    std::filesystem::path path_;
};

} // namespace test_host
