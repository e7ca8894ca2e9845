// SPDX-License-Identifier: MIT
#include "files/library_search.h"

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
    // The flags leave quotes and case as they are.
    Kel_StrTok directories(path.c_str(), conventions.listSeparator, false, false, false);
    while (const char* const directory = directories.getNext())
        if (holds(conventions, directory, file))
            return directory;
    throw Kel_Exception("Could not find " + libraryName + " in path.\n");
}

std::string Kel_Util::findLibInPath(const std::string& libraryName) {
    return files::findLibrary(Port::NATIVE, files::upToNul(libraryName));
}

} // namespace KelRT
