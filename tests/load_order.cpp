// SPDX-License-Identifier: MIT
//
// The order in which the global objects are constructed at load and destroyed at unload, as a
// program of the library's own objects can see it. It ends with status 0 when both orders are
// right.
//
// The file services (7) are the program's own. What it puts into the objects 1 to 6 while they are
// constructed would be lost if those were constructed later. When a text (1 to 5, 8) is destroyed
// its block is released, which the program's operator delete sees; when the logger (6) is, the log
// gets its last line. The construction of 8 leaves no trace, but destruction is the reverse of it.
#include "KelRT/Kel_Util.h"
#include "KelRT/Logger.h"
#include "frame/version_texts.h"
#include "port/port.h"
#include "test_host.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

using namespace KelRT;

namespace {

constexpr const char* LOG = "load_order.log";
constexpr const char* EXPECTED = "userDataDir FileInit logger fullVersionText versionText "
                                 "versionNumberText buildText branchText ";

const void* newestBlock = nullptr;
struct {
    const void* block;
    const char* name;
} watched[6];
std::size_t watchedCount = 0;
char seen[256] = "";
bool right = true; // the order of construction

bool logHasEnded() {
    char text[4096];
    std::FILE* const log = std::fopen(LOG, "r");
    if (log == nullptr)
        return false;
    text[std::fread(text, 1, sizeof text - 1, log)] = '\0';
    static_cast<void>(std::fclose(log));
    return std::strstr(text, "----- Logging Ended") != nullptr;
}

void append(const char* event) {
    const std::size_t end = std::strlen(seen);
    static_cast<void>(std::snprintf(seen + end, sizeof seen - end, "%s ", event));
}

void see(const char* event) {
    if (std::strstr(seen, "logger") == nullptr && logHasEnded())
        append("logger");
    append(event);
    if (std::strcmp(event, "branchText") != 0)
        return;
    static_cast<void>(std::remove(LOG));
    static_cast<void>(std::fprintf(stderr, "destroyed: %s\n", seen));
    std::_Exit(right && std::strcmp(seen, EXPECTED) == 0 ? 0 : 1);
}

/// Sees to it that the destruction of a text is seen, by the block that was allocated for it last.
void watch(const char* name) {
    watched[watchedCount++] = {newestBlock, name};
}

constexpr std::size_t LENGTH = 100; // long enough for a block of its own

struct {
    std::string& text;
    const char* name;
} const TEXTS[] = {{frame::branchText, "branchText"},
                   {frame::buildText, "buildText"},
                   {frame::versionNumberText, "versionNumberText"},
                   {frame::versionText, "versionText"},
                   {frame::fullVersionText, "fullVersionText"}};

} // namespace

void* operator new(std::size_t bytes) {
    void* const block = std::malloc(bytes);
    if (block == nullptr)
        throw std::bad_alloc();
    newestBlock = block;
    return block;
}

void operator delete(void* block) noexcept {
    for (const auto& [watchedBlock, name] : watched)
        if (block != nullptr && block == watchedBlock)
            see(name);
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
    operator delete(block);
}

Port::FileInit::FileInit() noexcept {
    test_host::setEnvironment("TOR_KEL_LOGFILE", LOG);
    test_host::setEnvironment("TOR_KEL_LOGDETAIL", "2");
    Logger::logger.startLogging();
    for (const auto& [text, name] : TEXTS) {
        text.assign(LENGTH, 'x');
        watch(name);
    }
}

Port::FileInit::~FileInit() {
    see("FileInit");
}

bool Port::FileInit::ready() {
    return true;
}

int main() {
    const std::string content(LENGTH, 'x');
    Kel_Util::setUserDataDirPath(content);
    watch("userDataDir");
    for (const auto& [text, name] : TEXTS)
        right = right && text == content;
    right = right && Logger::logger.shouldPrintLog(2);
    return 1; // unless the last destruction is seen
}
