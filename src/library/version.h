// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace KelRT::library {

// Composes the version number of a release. Omits a patch level that `atoi` reads as 0.
//     composeVersionNumber("7.4", "0") => "7.4"
//     composeVersionNumber("7.4", "2") => "7.4.2"
[[nodiscard]] std::string composeVersionNumber(const std::string& twoPart,
                                               const std::string& patchLevel);

} // namespace KelRT::library
