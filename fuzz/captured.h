// SPDX-License-Identifier: MIT
//
// The standard output of a fuzz target, in a file of its own.
#pragma once

#include "test_host.h"

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
        // Appending, so that what follows an emptying begins at the front.
        if (std::freopen(path.c_str(), "a", stdout) == nullptr)
            std::abort();
    }

    /// All that was printed since the last call.
    std::string take() {
        static_cast<void>(std::fflush(stdout));
        std::ifstream file(path, std::ios::binary); // the text may hold what ends one elsewhere
        file.seekg(taken);
        std::string text{std::istreambuf_iterator<char>(file), {}};
        for (std::size_t at = 0; test_host::WINDOWS && at < text.size(); ++at)
            if (text.compare(at, 2, "\r\n") == 0)
                text.erase(at, 1);
        taken = static_cast<std::streamoff>(std::filesystem::file_size(path));
        if (taken > 10'000'000) { // emptying costs too much to be done each time
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
