// SPDX-License-Identifier: MIT
//
// Defines every global object that needs construction, in the order of construction. Destruction is
// in reverse order. The language fixes the order only within one file, so new globals belong here.
//
// Function-local statics are not used: one that is first used after a client has registered an exit
// handler is destroyed before that handler runs.
#include "library/globals.h"

#include "KelRT/Kel_Number.h"
#include "KelRT/Kel_Util.h"
#include "KelRT/Logger.h"
#include "port/host.h"

namespace KelRT {

// 1 to 5: the version texts.
namespace library {
std::string branchText;
std::string buildText;
std::string versionNumberText;
std::string versionText;
std::string fullVersionText;
} // namespace library

// 6: the process-wide logger.
Logger Logger::logger;

// 7: the object that must exist while a file function runs.
namespace {
const Port::FileInit fileServices;
} // namespace

// 8: the caller's data directory.
std::string Kel_Util::userDataDir;

// The header initialises these constants, so they need no construction.
const std::uint32_t Kel_Number::WORD_LENGTH;
const std::uint32_t Kel_Number::WORD_BASE;

} // namespace KelRT
