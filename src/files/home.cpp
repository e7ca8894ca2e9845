// SPDX-License-Identifier: MIT
#include "KelRT/Kel_Util.h"

#include "KelRT/Kel_Exception.h"
#include "files/files.h"

#include <cstdlib>

namespace KelRT {
namespace {

constexpr const char* HOME_VARIABLE = "USERPROFILE";
constexpr const char* USER_DIRECTORY = ".kel";
constexpr unsigned LAST_TEMP_NUMBER = 32001;

} // namespace

std::string files::environment(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::string files::upToNul(const std::string& text) {
    return text.substr(0, text.find('\0'));
}

std::string files::createUserDirectory(const Port::Conventions& conventions) {
    std::string directory = Port::join(conventions, Kel_Util::getHomePath(), USER_DIRECTORY);
    const auto exists = [&] { return Port::File::exist(directory.c_str()); };
    // Another thread or process may make it meanwhile.
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
        // A name that is taken meanwhile belongs to the faster caller. A file that cannot be made
        // is not reported: the caller meets it on opening the path.
        if (!Port::File::exist(candidate.c_str()) &&
            Port::File::create(candidate.c_str()) != Port::Creation::nameTaken)
            return candidate;
    }
    throw Kel_Exception("Too many temporary files exist in the " + std::string(USER_DIRECTORY) +
                        " directory with the name " + baseName + "\n");
}

std::string Kel_Util::getHomePath() {
    std::string path = files::environment(HOME_VARIABLE);
    if (path.empty())
        throw Kel_Exception(std::string(HOME_VARIABLE) +
                            " Environmental Variable is not set Correctly.\n");
    return path;
}

void Kel_Util::setUserDataDirPath(const std::string& path) {
    userDataDir = path;
}

std::string Kel_Util::createDotLumatraceDir() {
    return files::createUserDirectory(Port::NATIVE);
}

std::string Kel_Util::createDotLumatraceTempFile(const std::string& baseName) {
    return files::createTempFile(Port::NATIVE, files::upToNul(baseName));
}

int Kel_Util::isDirectory(const std::string& path) {
    return Port::File::isdir(path.c_str()) ? 1 : 0;
}

} // namespace KelRT
