// SPDX-License-Identifier: MIT
//
// Implements functions of Kel_Util, whose header states their contracts. The conventions of a host
// are an argument, so that tests can pass those of another host; Kel_Util passes Port::NATIVE.
#pragma once

#include "port/file_name.h"

#include <string>

namespace KelRT::files {

// Implements Kel_Util::findLibInPath.
[[nodiscard]] std::string findLibrary(const Port::Conventions& conventions,
                                      const std::string& libraryName);

} // namespace KelRT::files
