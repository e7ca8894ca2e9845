// SPDX-License-Identifier: MIT
#include "files/data_dirs.h"

#include "KelRT/Kel_Exception.h"
#include "KelRT/Kel_StrTok.h"
#include "KelRT/Kel_Util.h"
#include "files/paths.h"
#include "port/runtime.h"

namespace KelRT {
namespace {

using Port::Conventions;

bool holds(const Conventions& conventions, const std::string& directory, const std::string& file) {
    return Port::File::readable(Port::join(conventions, directory, file).c_str());
}

std::string withSeparator(const Conventions& conventions, const std::string& directory) {
    return Port::endsInSeparator(conventions, directory) ? directory
                                                         : Port::join(conventions, directory, "");
}

// The directory data/FAMILY in the installation tree, whose root is two levels above the directory
// of the library.
std::string installedDirectory(const Conventions& conventions, const char* library,
                               const char* family) {
    std::string directory = files::findLibrary(conventions, library);
    for (const char* const part : {"..", "..", "data", family, ""})
        directory = Port::join(conventions, directory, part);
    return directory;
}

} // namespace

std::string files::findLibrary(const Conventions& conventions, const std::string& libraryName) {
    std::string file = libraryName;
    if (file.find(conventions.libraryExtension) == std::string::npos)
        file += conventions.libraryExtension;
    if (holds(conventions, ".", file))
        return ".";
    const std::string path = Port::environment("PATH");
    if (path.empty())
        throw Kel_Exception("PATH Environmental Variable not set.\n");
    Kel_StrTok directories(path.c_str(), conventions.listSeparator, false, false, false);
    while (const char* const directory = directories.getNext())
        if (holds(conventions, directory, file))
            return directory;
    throw Kel_Exception("Could not find " + libraryName + " in path.\n");
}

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

std::string Kel_Util::findLibInPath(const std::string& libraryName) {
    return files::findLibrary(Port::NATIVE, files::upToNul(libraryName));
}

std::string Kel_Util::getDataDirPath() {
    return files::dataDirectory(Port::NATIVE, files::upToNul(userDataDir));
}

std::string Kel_Util::getSorvaDataDirPath() {
    return files::sorvaDataDirectory(Port::NATIVE);
}

} // namespace KelRT
