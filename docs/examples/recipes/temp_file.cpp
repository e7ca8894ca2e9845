// SPDX-License-Identifier: MIT
//! [example]
#include "KelRT/Kel_Exception.h"
#include "KelRT/Kel_Util.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

using namespace KelRT;

// Owns a file in the directory .kel of the user's profile and removes it at the end of its scope.
class TempFile {
public:
    explicit TempFile(const std::string& baseName)
        : path(Kel_Util::createDotLumatraceTempFile(baseName)) {}
    ~TempFile() {
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
    }
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;

    const std::string path;
};

int main() {
    try {
        const TempFile trace("trace");
        std::ofstream(trace.path) << "TDO 1101\n";

        std::string line;
        std::ifstream back(trace.path);
        std::getline(back, line);
        std::printf("%s\n", line.c_str());
    } catch (const Kel_Exception& failure) { // for example, if USERPROFILE is not set
        std::printf("%s", failure.what().c_str());
        return 1;
    }
}
//! [example]
