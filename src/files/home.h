// SPDX-License-Identifier: MIT
//
// Implements functions of Kel_Util, whose header states their contracts. The conventions of a host
// are an argument, so that tests can pass those of another host; Kel_Util passes Port::NATIVE.
#pragma once

#include "port/file_name.h"

#include <string>

namespace KelRT::files {

// Implements Kel_Util::createDotLumatraceDir.
[[nodiscard]] std::string createUserDirectory(const Port::Conventions& conventions);

// Implements Kel_Util::createDotLumatraceTempFile.
[[nodiscard]] std::string createTempFile(const Port::Conventions& conventions,
                                         const std::string& baseName);

} // namespace KelRT::files
