// SPDX-License-Identifier: MIT
//
// Logs where the effect can only be seen from outside the process: after a crash, for example. The
// golden tests in logging_process/ run this program.
#include "KelRT/Logger.h"
#include "KelRT/MethodLogger.h"

#include "support/host.h"

#include <climits>
#include <iterator>
#include <memory>
#include <numeric>
#include <string>

using KelRT::Logger;

namespace {

// A client's static object lives longer than main and logs from its destructor.
struct Client {
    ~Client() { Logger::logger.printLog(1, "client ends\n"); }
    KelRT::MethodLogger tracer;
};
Client client;

void logWithCopies() {
    Logger::logger.logMethodEntry("f");
    auto copy = std::make_unique<Logger>(Logger::logger);
    Logger assigned;
    assigned = *copy;
    assigned = *&assigned;
    copy->logMethodExit("copied");
    Logger::logger.printLog(1, "still inside\n");
    copy.reset();
    Logger::logger.endLogging();
    assigned.logMethodExit(7);
}

// Logs, then ends the process within a line, which is lost.
[[noreturn]] void crashAfter(const std::string& what) {
    if (what == "dump") {
        unsigned char bytes[200];
        std::iota(std::begin(bytes), std::end(bytes), static_cast<unsigned char>(0));
        Logger::logger.dumpBuffer(1, "title", bytes, 1600);
    } else {
        for (int i = 1; i <= std::stoi(what); ++i)
            Logger::logger.printLog(1, "record %d of %s\n", i, what.c_str());
    }
    Logger::logger.printLog(1, "open line");
    test_host::crash();
}

} // namespace

// The arguments are MODE [DESCRIPTOR], where the descriptor must no longer be open at the end, or
// "crash" WHAT, where WHAT is "dump" or the number of records to log before the crash.
int main(int argc, char** argv) {
    const std::string mode = argc > 1 ? argv[1] : "";
    const auto other = mode == "other" ? std::make_unique<Logger>() : nullptr;
    Logger& logger = other ? *other : Logger::logger;
    if (mode == "closed")
        test_host::closeDescriptor(1);
    logger.startLogging();
    Logger::logger.startLogging(); // does nothing
    if (mode == "crash")
        crashAfter(argv[2]);
    for (int level = -4; level <= 26; ++level)
        if (logger.shouldPrintLog(level))
            logger.printLog(level, "%d ", level);
    const unsigned char bytes[] = {0x55, 0x0A};
    logger.dumpBuffer(INT_MIN, nullptr, bytes, 12);
    if (mode == "copies")
        logWithCopies();
    if (mode == "unload") {
        client.tracer.setMethodName("Client");
        return 0; // unloading the library ends logging
    }
    logger.endLogging();
    logger.startLogging();
    logger.printLog(INT_MIN, "after the end");
    return argc > 2 && test_host::closeDescriptor(*argv[2] - '0') ? 1 : 0;
}
