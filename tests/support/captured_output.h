// SPDX-License-Identifier: MIT
//
// Redirects the standard output of a fuzz target to a file, and reads it back.
#pragma once

#include "support/host.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace fuzz {

class CapturedOutput {
public:
    CapturedOutput() {
        // Append mode writes at the end of the file, even after take() has truncated it. Binary
        // mode keeps the line ends on Windows.
        if (std::freopen(path.c_str(), "ab", stdout) == nullptr)
            std::abort();
    }

    /// Returns the text printed since the last call.
    std::string take() {
        static_cast<void>(std::fflush(stdout));
        std::ifstream file(path, std::ios::binary);
        file.seekg(taken);
        std::string text{std::istreambuf_iterator<char>(file), {}};
        taken = static_cast<std::streamoff>(std::filesystem::file_size(path));
        if (taken > 10'000'000) { // truncating each time would be too slow
            std::filesystem::resize_file(path, 0);
            taken = 0;
        }
        return text;
    }

private:
    test_host::TemporaryDirectory directory;
    std::string path = directory / "output";
    std::streamoff taken = 0;
};

} // namespace fuzz
