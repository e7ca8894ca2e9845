// SPDX-License-Identifier: MIT
//
// Compares normalised paths of either host with a model that reads one character at a time.
#include "KelRT/Kel_Util.h"
#include "files/paths.h"

#include "input.h"
#include "models/path_model.h"

#include <filesystem>

using KelRT::Kel_Util;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string here = std::filesystem::current_path().string();
    fuzz::Input input(data, size);
    const std::string path = input.text(2000, "/\\..ab:");

    const std::string rooted = "/" + path;
    const std::string found = Kel_Util::normalizePath(rooted);
    fuzz::requireEqual(found, model::normalized('/', "", rooted), "an absolute path");
    fuzz::requireEqual(Kel_Util::normalizePath(found), found, "a normalised path stays as it is");
    const std::string onDrive = KelRT::files::normalize(Port::WINDOWS, "c:" + rooted);
    fuzz::requireEqual(onDrive, model::normalized('\\', "c:", rooted), "a path on a drive");

    const bool relative = !path.empty() && !Port::isSeparator(path[0]);
    if (relative)
        fuzz::requireEqual(Kel_Util::normalizePath(path),
                           model::normalized('/', "", here + "/" + path), "a relative path");
    // A Windows path with any beginning is not compared with the model, because the current
    // directory here has no drive.
    const std::string any = KelRT::files::normalize(Port::WINDOWS, path);
    fuzz::requireEqual(any.find('/'), std::string::npos, "only the host's separator is written");
    return 0;
}
