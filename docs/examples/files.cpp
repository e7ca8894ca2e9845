// SPDX-License-Identifier: MIT
//! [example]
#include "KelRT/Kel_Exception.h"
#include "KelRT/Kel_Util.h"

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

using namespace KelRT;

// Returns the part of a path below the current directory.
static std::string below(const std::string& path) {
    return path.substr(Kel_Util::normalizePath("./").size());
}

int main() {
    try {
        // Creates an empty file in the directory .kel of the user's profile. We must delete it.
        const std::string directory = Kel_Util::createDotLumatraceDir();
        const std::string file = Kel_Util::createDotLumatraceTempFile("scan.log");
        std::printf("made       %s\n", file.substr(directory.size() + 1).c_str());
        std::printf("directory  %d, file %d\n", Kel_Util::isDirectory(directory),
                    Kel_Util::isDirectory(file));
        std::filesystem::remove(file);

        // Looks at the text only: the path need not exist.
        std::printf("normal     %s\n", below(Kel_Util::normalizePath("./a/b/..\\c/")).c_str());

        // Sets the default data directory; TOR_KEL_DATADIR overrides it.
        Kel_Util::setUserDataDirPath("data");
        const std::string data = Kel_Util::getDataDirPath();
        std::vector<std::string> entries;
        Kel_Util::getDirectoryFileList(data, false, entries);
        for (const std::string& entry : entries)
            std::printf("data       %s\n", below(data + entry).c_str());

        Kel_Util::findLibInPath("libNowhere");
    } catch (const Kel_Exception& failure) {
        std::printf("%s", failure.what().c_str());
    }
}
//! [example]
