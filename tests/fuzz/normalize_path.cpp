// SPDX-License-Identifier: MIT
//
// Compares normalised paths of either host with those that the standard library computes.
#include "KelRT/Kel_Util.h"
#include "files/paths.h"

#include "input.h"

#include <algorithm>
#include <filesystem>

using KelRT::Kel_Util;

namespace {

/// Returns the normalised form of a path that begins with a separator.
std::string expectedFor(std::string path, char separator) {
    std::replace(path.begin(), path.end(), '\\', '/');
    // Without the ".", libstdc++ would not normalise a path that has only separators.
    std::string text = std::filesystem::path("/." + path + "/").lexically_normal().string();
    if (path.back() != '/')
        text.pop_back(); // removes the separator that was added
    std::replace(text.begin(), text.end(), '/', separator);
    return text;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string here = std::filesystem::current_path().string();
    fuzz::Input input(data, size);
    const std::string path = input.text(2000, "/\\..ab:");

    const std::string rooted = "/" + path;
    const std::string found = Kel_Util::normalizePath(rooted);
    fuzz::requireEqual(found, expectedFor(rooted, '/'), "an absolute path");
    fuzz::requireEqual(Kel_Util::normalizePath(found), found, "a normalised path stays as it is");
    const std::string onDrive = KelRT::files::normalize(Port::WINDOWS, "c:" + rooted);
    fuzz::requireEqual(onDrive, "c:" + expectedFor(rooted, '\\'), "a path on a drive");

    if (!path.empty() && !Port::isSeparator(path[0]))
        fuzz::requireEqual(Kel_Util::normalizePath(path), expectedFor(here + "/" + path, '/'),
                           "a relative path");
    // A Windows path may depend on the drive of the current directory, which has none here. So only
    // the separators of the result are checked.
    const std::string any = KelRT::files::normalize(Port::WINDOWS, path);
    fuzz::requireEqual(any.find('/'), std::string::npos, "only the host's separator is written");
    return 0;
}
