// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace KelRT::library {

// These cache the version texts. Each is empty until it is first queried.
extern std::string branchText;
extern std::string buildText;
extern std::string versionNumberText;
extern std::string versionText;
extern std::string fullVersionText;

} // namespace KelRT::library
