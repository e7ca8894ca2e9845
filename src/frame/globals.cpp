// SPDX-License-Identifier: MIT
//
// Every object with static storage that needs construction, in the order of construction at load;
// at unload they are destroyed in the reverse order. One file, because only within a file does the
// language fix that order. A new global belongs here or nowhere.
//
// Namespace and class statics, never function-local ones: those would die before exit handlers that
// a client registered earlier.
#include "KelRT/Kel_Number.h"
#include "KelRT/Kel_Util.h"
#include "KelRT/Logger.h"
#include "frame/version_texts.h"
#include "port/port.h"

namespace KelRT {

// 1 to 5: the version texts, empty until the first query.
namespace frame {
std::string branchText;
std::string buildText;
std::string versionNumberText;
std::string versionText;
std::string fullVersionText;
} // namespace frame

// 6: the process-wide logger, off until a client starts it.
Logger Logger::logger;

// 7: the file services, open before the first file operation and closed after the last.
namespace {
const Port::FileInit fileServices;
} // namespace

// 8: the caller's data directory, empty.
std::string Kel_Util::userDataDir;

// Constants, which need no code at load. Their values stand in the headers.
const std::uint32_t Kel_Number::WORD_LENGTH;
const std::uint32_t Kel_Number::WORD_BASE;

} // namespace KelRT
