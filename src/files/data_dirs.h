// SPDX-License-Identifier: MIT
//
// Implements functions of Kel_Util, whose header states their contracts. The conventions of a host
// are an argument, so that tests can pass those of another host; Kel_Util passes Port::NATIVE.
#pragma once

#include "port/file_name.h"

#include <string>

namespace KelRT::files {

// Implements Kel_Util::getDataDirPath. An empty userDataDir counts as unset.
[[nodiscard]] std::string dataDirectory(const Port::Conventions& conventions,
                                        const std::string& userDataDir);

// Implements Kel_Util::getSorvaDataDirPath.
[[nodiscard]] std::string sorvaDataDirectory(const Port::Conventions& conventions);

} // namespace KelRT::files
