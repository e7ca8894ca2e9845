// SPDX-License-Identifier: MIT
//
// Implements functions of Kel_Util, whose header states their contracts. The conventions of a host
// are an argument, so that tests can pass those of another host; Kel_Util passes Port::NATIVE.
#pragma once

#include "port/file_name.h"

#include <string>

namespace KelRT::files {

// Returns the text before the first NUL. The host reads a name or a path no further.
[[nodiscard]] std::string upToNul(const std::string& text);

// Implements Kel_Util::normalizePath.
[[nodiscard]] std::string normalize(const Port::Conventions& conventions, const std::string& path);

} // namespace KelRT::files
