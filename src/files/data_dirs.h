// SPDX-License-Identifier: MIT
//
// Functions of Kel_Util under the conventions of any host; the public ones pass the native ones.
#pragma once

#include "port/file_name.h"

#include <string>

namespace KelRT::files {

// Kel_Util::findLibInPath
std::string findLibrary(const Port::Conventions& conventions, const std::string& libraryName);

// Kel_Util::getDataDirPath; an empty userDataDir is not set.
std::string dataDirectory(const Port::Conventions& conventions, const std::string& userDataDir);

// Kel_Util::getSorvaDataDirPath
std::string sorvaDataDirectory(const Port::Conventions& conventions);

} // namespace KelRT::files
