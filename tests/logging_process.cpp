// SPDX-License-Identifier: MIT
//
// Writes the logs that the golden tests in logging_process/ compare. Each test runs the program and
// reads its log afterwards, even if the program has crashed.
#include "KelRT/Logger.h"

#include "support/host.h"

#include <climits>
#include <cstdarg>
#include <memory>
#include <string>
#include <type_traits>

using KelRT::Logger;

namespace {

// A client's static object lives longer than main and logs from its destructor.
struct Client {
    ~Client() { Logger::logger.printLog(1, "client ends\n"); }
};
const Client client;

template <typename Parameter>
constexpr bool isCharPointer(void (*)(Parameter)) {
    return std::is_same_v<Parameter, char*>;
}

// Logs entries whose arguments only look like a va_list, then entries that get one.
void logEntries(const char* format, ...) { // NOLINT(cert-dcl50-cpp): how a va_list is made
    // Where va_list is char*, an argument of type char* would be taken as a va_list.
    using Text = std::conditional_t<isCharPointer(+[](std::va_list) {}), const char*, char*>;
    Logger& logger = Logger::logger;
    char text[] = "own";
    logger.logMethodEntry("m", "count=%d", 0); // a null pointer constant
    logger.logMethodEntry("m", "text=%s", static_cast<const char*>(text));
    logger.logMethodEntry("m", "text=%s", static_cast<Text>(text));
    std::va_list arguments;
    va_start(arguments, format);
    logger.vprintLog(5, format, arguments); // filtered out, so it reads no argument
    logger.logMethodEntry("list", format, arguments);
    va_end(arguments);
    va_start(arguments, format);
    [](std::va_list passed) { Logger::logger.logMethodEntry("passed", "%d%s", passed); }(arguments);
    va_end(arguments);
}

void logWithCopies() {
    Logger::logger.logMethodEntry("f");
    auto copy = std::make_unique<Logger>(Logger::logger);
    Logger assigned;
    assigned.setDetailLevel(10);
    assigned.printLog(INT_MIN, "without a stream");
    assigned = *copy;
    assigned = *&assigned;
    copy->logMethodExit("copied");
    Logger::logger.printLog(1, "still inside\n");
    copy.reset();
    Logger::logger.endLogging();
    assigned.logMethodExit(7);
}

// Logs a record or a dump, then the beginning of a line, and crashes. That beginning is lost.
[[noreturn]] void crashAfter(const std::string& what) {
    const unsigned char bytes[40] = {};
    if (what == "dump")
        Logger::logger.dumpBuffer(1, "title", bytes, 320);
    else
        Logger::logger.printLog(1, "record\n");
    Logger::logger.printLog(1, "open line");
    test_host::crash();
}

} // namespace

// The arguments are [MODE [DESCRIPTOR]] or "crash" WHAT. The process fails if DESCRIPTOR is still
// open at the end. WHAT is "dump" or "record".
int main(int argc, char** argv) {
    const std::string mode = argc > 1 ? argv[1] : "";
    const auto other = mode == "other" ? std::make_unique<Logger>() : nullptr;
    Logger& logger = other ? *other : Logger::logger;
    if (mode == "closed")
        test_host::closeDescriptor(1);
    logger.startLogging();
    Logger::logger.startLogging(); // does nothing: logging starts once in a process
    if (mode == "crash")
        crashAfter(argv[2]);
    for (int level = -4; level <= 26; ++level)
        if (logger.shouldPrintLog(level))
            logger.printLog(level, "%d ", level);
    const unsigned char bytes[] = {0x55, 0x0A};
    logger.dumpBuffer(INT_MIN, nullptr, bytes, 12);
    if (mode == "copies")
        logWithCopies();
    if (mode == "entries")
        logEntries("%d%s", 7, "b");
    if (mode == "unload")
        return 0; // unloading the library ends logging
    logger.endLogging();
    logger.startLogging();
    logger.setDetailLevel(10);
    logger.printLog(INT_MIN, "after the end");
    return argc > 2 && test_host::closeDescriptor(*argv[2] - '0') ? 1 : 0;
}
