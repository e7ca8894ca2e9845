// SPDX-License-Identifier: MIT
#include "files/home.h"

#include "KelRT/Kel_Exception.h"
#include "KelRT/Kel_Util.h"
#include "files/paths.h"
#include "port/runtime.h"

namespace KelRT {
namespace {

constexpr const char* HOME_VARIABLE = "USERPROFILE"; // on every host
constexpr const char* USER_DIRECTORY = ".kel";       // createDotLumatraceDir creates it
constexpr unsigned LAST_TEMP_NUMBER = 32001;         // the limit that Kel_Util.h states

} // namespace

std::string files::createUserDirectory(const Port::Conventions& conventions) {
    std::string directory = Port::join(conventions, Kel_Util::getHomePath(), USER_DIRECTORY);
    const auto exists = [&] { return Port::File::exist(directory.c_str()); };
    // If mkdir fails, check again: another thread or process may have just created it.
    if (!exists() && !Port::File::mkdir(directory.c_str(), false) && !exists())
        throw Kel_Exception("Cannot create " + directory + " directory, check the " +
                            HOME_VARIABLE + " variable.\n");
    return directory;
}

std::string files::createTempFile(const Port::Conventions& conventions,
                                  const std::string& baseName) {
    const std::string stem = Port::join(conventions, createUserDirectory(conventions), baseName);
    for (unsigned number = 0; number <= LAST_TEMP_NUMBER; ++number) {
        std::string candidate = stem + std::to_string(number);
        // If another caller takes the name after exist(), try the next number. Do not report other
        // failures of create(): the caller will notice them when it opens the path.
        if (!Port::File::exist(candidate.c_str()) &&
            Port::File::create(candidate.c_str()) != Port::Creation::nameTaken)
            return candidate;
    }
    throw Kel_Exception("Too many temporary files exist in the " + std::string(USER_DIRECTORY) +
                        " directory with the name " + baseName + "\n");
}

std::string Kel_Util::getHomePath() {
    std::string path = Port::environment(HOME_VARIABLE);
    if (path.empty())
        throw Kel_Exception(std::string(HOME_VARIABLE) +
                            " Environmental Variable is not set Correctly.\n");
    return path;
}

std::string Kel_Util::createDotLumatraceDir() {
    return files::createUserDirectory(Port::NATIVE);
}

std::string Kel_Util::createDotLumatraceTempFile(const std::string& baseName) {
    return files::createTempFile(Port::NATIVE, files::upToNul(baseName));
}

} // namespace KelRT
