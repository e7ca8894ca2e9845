// SPDX-License-Identifier: MIT
//
// Every global object that needs construction, in the order of construction; destruction is in the
// reverse order. The language fixes the order only within one file, so any new global belongs here.
//
// A function-local static, if first used after a client registered an exit handler, would be
// destroyed before that handler runs.
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

// 7: the file services.
namespace {
const Port::FileInit fileServices;
} // namespace

// 8: the caller's data directory.
std::string Kel_Util::userDataDir;

// Definitions of constants that the header initialises; no dynamic initialisation.
const std::uint32_t Kel_Number::WORD_LENGTH;
const std::uint32_t Kel_Number::WORD_BASE;

} // namespace KelRT
