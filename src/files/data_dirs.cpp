// SPDX-License-Identifier: MIT
#include "files/data_dirs.h"

#include "KelRT/Kel_Util.h"
#include "files/library_search.h"
#include "files/paths.h"
#include "port/runtime.h"

namespace KelRT {
namespace {

using Port::Conventions;

std::string withSeparator(const Conventions& conventions, const std::string& directory) {
    return Port::endsInSeparator(conventions, directory) ? directory
                                                         : Port::join(conventions, directory, "");
}

// Returns the directory data/FAMILY of the installation, not normalised. The library's directory is
// two levels below the root of the installation. For /opt/kel/bin/x64, the result is
//     "/opt/kel/bin/x64/../../data/FAMILY/"
std::string installedDirectory(const Conventions& conventions, const char* library,
                               const char* family) {
    std::string directory = files::findLibrary(conventions, library);
    for (const char* const part : {"..", "..", "data", family, ""})
        directory = Port::join(conventions, directory, part);
    return directory;
}

} // namespace

std::string files::dataDirectory(const Conventions& conventions, const std::string& userDataDir) {
    std::string directory = Port::environment("TOR_KEL_DATADIR");
    if (directory.empty())
        directory = userDataDir;
    return normalize(conventions, directory.empty()
                                      ? installedDirectory(conventions, "libKelJtag", "kel")
                                      : withSeparator(conventions, directory));
}

std::string files::sorvaDataDirectory(const Conventions& conventions) {
    const std::string directory = Port::environment("TOR_KEL_SORVADATADIR");
    return normalize(conventions, directory.empty()
                                      ? installedDirectory(conventions, "libKelCore", "lumatrace")
                                      : withSeparator(conventions, directory));
}

void Kel_Util::setUserDataDirPath(const std::string& path) {
    userDataDir = path;
}

std::string Kel_Util::getDataDirPath() {
    return files::dataDirectory(Port::NATIVE, files::upToNul(userDataDir));
}

std::string Kel_Util::getSorvaDataDirPath() {
    return files::sorvaDataDirectory(Port::NATIVE);
}

} // namespace KelRT
