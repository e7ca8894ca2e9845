// SPDX-License-Identifier: MIT
//
// Functions of Kel_Util with the host's conventions as an argument; Kel_Util passes Port::NATIVE.
#pragma once

#include "port/file_name.h"

#include <string>

namespace KelRT::files {

// The text before the first NUL, as the host reads a name or a path.
[[nodiscard]] std::string upToNul(const std::string& text);

// Kel_Util::normalizePath
[[nodiscard]] std::string normalize(const Port::Conventions& conventions, const std::string& path);

} // namespace KelRT::files
