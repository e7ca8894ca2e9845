// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace KelRT::library {

// The cached version texts, each empty until it is first asked for.
extern std::string branchText;
extern std::string buildText;
extern std::string versionNumberText;
extern std::string versionText;
extern std::string fullVersionText;

} // namespace KelRT::library
