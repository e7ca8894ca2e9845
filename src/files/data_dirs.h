// SPDX-License-Identifier: MIT
//
// Functions of Kel_Util with the host's conventions as an argument; Kel_Util passes Port::NATIVE.
#pragma once

#include "port/file_name.h"

#include <string>

namespace KelRT::files {

// Kel_Util::getDataDirPath; an empty userDataDir counts as unset.
[[nodiscard]] std::string dataDirectory(const Port::Conventions& conventions,
                                        const std::string& userDataDir);

// Kel_Util::getSorvaDataDirPath
[[nodiscard]] std::string sorvaDataDirectory(const Port::Conventions& conventions);

} // namespace KelRT::files
