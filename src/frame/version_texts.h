// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace KelRT::frame {

/// The five cached version texts, empty until they are first asked for. They are defined with the
/// other global objects, which fixes when they are constructed and destroyed.
extern std::string branchText;
extern std::string buildText;
extern std::string versionNumberText;
extern std::string versionText;
extern std::string fullVersionText;

/// The version number of a release: \a twoPart alone, or with ".\a patchLevel" behind it when the
/// patch level reads as a number other than 0 (as `atoi` reads it).
/// \code
/// composeVersionNumber("7.4", "0") => "7.4"
/// composeVersionNumber("7.4", "2") => "7.4.2"
/// \endcode
std::string composeVersionNumber(const std::string& twoPart, const std::string& patchLevel);

} // namespace KelRT::frame
