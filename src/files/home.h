// SPDX-License-Identifier: MIT
//
// Functions of Kel_Util with the host's conventions as an argument; Kel_Util passes Port::NATIVE.
#pragma once

#include "port/file_name.h"

#include <string>

namespace KelRT::files {

// Kel_Util::createDotLumatraceDir
[[nodiscard]] std::string createUserDirectory(const Port::Conventions& conventions);

// Kel_Util::createDotLumatraceTempFile
[[nodiscard]] std::string createTempFile(const Port::Conventions& conventions,
                                         const std::string& baseName);

} // namespace KelRT::files
