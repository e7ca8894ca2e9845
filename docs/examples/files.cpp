// SPDX-License-Identifier: MIT
//! [example]
#include "KelRT/Kel_Exception.h"
#include "KelRT/Kel_Util.h"

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

using namespace KelRT;

// The part of a path below the current directory.
static std::string below(const std::string& path) {
    return path.substr(Kel_Util::normalizePath("./").size());
}

int main() {
    try {
        // A fresh, empty file in the directory .kel of the user's profile; it is ours to delete.
        const std::string directory = Kel_Util::createDotLumatraceDir();
        const std::string file = Kel_Util::createDotLumatraceTempFile("scan.log");
        std::printf("made       %s\n", file.substr(directory.size() + 1).c_str());
        std::printf("directory  %d, file %d\n", Kel_Util::isDirectory(directory),
                    Kel_Util::isDirectory(file));
        std::filesystem::remove(file);

        // Folded from the text alone: nothing of it needs to exist.
        std::printf("normal     %s\n", below(Kel_Util::normalizePath("./a/b/..\\c/")).c_str());

        // The tool says where its data is, unless TOR_KEL_DATADIR does.
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
