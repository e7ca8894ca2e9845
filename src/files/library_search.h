// SPDX-License-Identifier: MIT
//
// Functions of Kel_Util with the host's conventions as an argument; Kel_Util passes Port::NATIVE.
#pragma once

#include "port/file_name.h"

#include <string>

namespace KelRT::files {

// Kel_Util::findLibInPath
[[nodiscard]] std::string findLibrary(const Port::Conventions& conventions,
                                      const std::string& libraryName);

} // namespace KelRT::files
