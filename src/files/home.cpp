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

std::string files::createUserDirectory(const Port::Conventions& conventions) {
    std::string directory = Port::join(conventions, Kel_Util::getHomePath(), USER_DIRECTORY);
    if (!Port::File::exist(directory.c_str()) && !Port::File::mkdir(directory.c_str(), false))
        throw Kel_Exception("Cannot create " + directory + " directory, check the " +
                            HOME_VARIABLE + " variable.\n");
    return directory;
}

std::string files::createTempFile(const Port::Conventions& conventions,
                                  const std::string& baseName) {
    const std::string stem = Port::join(conventions, createUserDirectory(conventions), baseName);
    unsigned number = 0;
    std::string candidate = stem + "0";
    while (Port::File::exist(candidate.c_str())) {
        if (number == LAST_TEMP_NUMBER)
            throw Kel_Exception("Too many temporary files exist in the " +
                                std::string(USER_DIRECTORY) + " directory with the name " +
                                baseName + "\n");
        candidate = stem + std::to_string(++number);
    }
    // A file that cannot be made is not reported: the caller meets it on opening the path.
    Port::File::create(candidate.c_str());
    return candidate;
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
    return files::createTempFile(Port::NATIVE, baseName);
}

int Kel_Util::isDirectory(const std::string& path) {
    return Port::File::isdir(path.c_str()) ? 1 : 0;
}

} // namespace KelRT
