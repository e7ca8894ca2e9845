// SPDX-License-Identifier: MIT
//
// The standard output of a fuzz target, in a file of its own that is emptied again and again.
#pragma once

#include "test_host.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
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
    std::string take() const {
        static_cast<void>(std::fflush(stdout));
        const std::string text = test_host::readWholeFile(path);
        std::filesystem::resize_file(path, 0);
        return text;
    }

private:
    test_host::TemporaryDirectory directory;
    std::string path = directory / "output";
};

} // namespace fuzz
