// SPDX-License-Identifier: MIT
//
// The file functions of Kel_Util as they are written: over the conventions of any host. The public
// ones pass the native conventions; the contracts stand with them.
#pragma once

#include "port/port.h"

#include <string>

namespace KelRT::files {

/// The value of an environment variable; empty when it is unset, which nobody here tells apart.
std::string environment(const char* name);

/// A name or a path as it counts: up to its first NUL.
std::string upToNul(const std::string& text);

/// Kel_Util::createDotLumatraceDir
std::string createUserDirectory(const Port::Conventions& conventions);

/// Kel_Util::createDotLumatraceTempFile
std::string createTempFile(const Port::Conventions& conventions, const std::string& baseName);

/// Kel_Util::findLibInPath
std::string findLibrary(const Port::Conventions& conventions, const std::string& libraryName);

/// Kel_Util::getDataDirPath, with the directory that the caller set (empty when there is none)
std::string dataDirectory(const Port::Conventions& conventions, const std::string& userDataDir);

/// Kel_Util::getSorvaDataDirPath
std::string sorvaDataDirectory(const Port::Conventions& conventions);

/// Kel_Util::normalizePath
std::string normalize(const Port::Conventions& conventions, const std::string& path);

} // namespace KelRT::files
