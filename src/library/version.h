// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace KelRT::library {

// The version number of a release. A patch level that `atoi` reads as 0 is left out.
//     composeVersionNumber("7.4", "0") => "7.4"
//     composeVersionNumber("7.4", "2") => "7.4.2"
[[nodiscard]] std::string composeVersionNumber(const std::string& twoPart,
                                               const std::string& patchLevel);

} // namespace KelRT::library
