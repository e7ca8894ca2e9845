// SPDX-License-Identifier: MIT
#include "files/paths.h"

#include "KelRT/Kel_Exception.h"
#include "KelRT/Kel_Util.h"

namespace KelRT {
namespace {

std::string absolute(const Port::Conventions& conventions, const std::string& path) {
    std::string text = Port::FileName(path.c_str(), conventions).GetAbsolutePath(false).c_str();
    if (text.empty())
        throw Kel_Exception("Could not read the current directory.\n");
    return text;
}

} // namespace

std::string files::upToNul(const std::string& text) {
    return text.substr(0, text.find('\0'));
}

std::string files::normalize(const Port::Conventions& conventions, const std::string& path) {
    if (path.empty())
        return path;
    // The result ends in a separator only if path does: "/a/../" gives "/", but "/a/.." gives "".
    // The exception is ".", which gives "/" (or "C:\") if the current directory is a root.
    if (path == "." || Port::endsInSeparator(conventions, path))
        return absolute(conventions, path);
    // absolute() adds a separator to some results. If path ends in a separator, every result ends
    // in exactly one, so append one to path and remove it from the result.
    std::string text = absolute(conventions, Port::join(conventions, path, ""));
    text.pop_back();
    return text;
}

std::string Kel_Util::normalizePath(const std::string& path) {
    return files::normalize(Port::NATIVE, files::upToNul(path));
}

} // namespace KelRT
