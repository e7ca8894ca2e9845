// SPDX-License-Identifier: MIT
#include "KelRT/Kel_Exception.h"
#include "KelRT/Kel_Util.h"
#include "files/paths.h"
#include "port/host.h"

#include <utility>

namespace KelRT {

int Kel_Util::isDirectory(const std::string& path) {
    return Port::File::isdir(path.c_str()) ? 1 : 0;
}

void Kel_Util::getDirectoryFileList(const std::string& directory, bool listFlag,
                                    std::vector<std::string>& list) {
    const Port::UT_DIR reader(directory.c_str(), listFlag ? 0 : 1);
    if (reader.isvalid() != 1)
        throw Kel_Exception("Could not open the directory: " + files::upToNul(directory) + "\n");
    // Fill a separate list, so that `list` is unchanged if memory is exhausted.
    std::vector<std::string> entries;
    for (auto entry = reader.begin(); entry != reader.end(); ++entry)
        entries.emplace_back(*entry);
    list = std::move(entries);
}

} // namespace KelRT
