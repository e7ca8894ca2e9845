// SPDX-License-Identifier: MIT
//
// Writes the logs that the golden tests in logging_process/ compare. Some can only be read from
// outside the process, for example after a crash.
#include "KelRT/Logger.h"
#include "KelRT/MethodLogger.h"

#include "support/host.h"

#include <climits>
#include <cstdarg>
#include <iterator>
#include <memory>
#include <numeric>
#include <string>
#include <type_traits>

using KelRT::Logger;

namespace {

// A client's static object lives longer than main and logs from its destructor.
struct Client {
    ~Client() { Logger::logger.printLog(1, "client ends\n"); }
    KelRT::MethodLogger tracer;
};
Client client;

void logWithVaList(const char* format, ...) { // NOLINT(cert-dcl50-cpp): how a va_list is made
    std::va_list arguments;
    va_start(arguments, format);
    Logger::logger.vprintLog(5, format, arguments); // filtered out, so it reads no argument
    Logger::logger.logMethodEntry("list", format, arguments);
    va_end(arguments);
    va_start(arguments, format);
    [](std::va_list passed) { Logger::logger.logMethodEntry("passed", "%d%s", passed); }(arguments);
    va_end(arguments);
}

template <typename Parameter>
constexpr bool isCharPointer(void (*)(Parameter)) {
    return std::is_same_v<Parameter, char*>;
}

// Logs entries whose arguments only look like a va_list, then entries that get one.
void logEntries() {
    char text[] = "own";
    const char* const constText = text;
    Logger::logger.logMethodEntry("m", "count=%d", 0); // a null pointer constant
    Logger::logger.logMethodEntry("m", "text=%s", constText);
    if (!isCharPointer(+[](std::va_list) {})) // otherwise a char* is taken as a va_list
        Logger::logger.logMethodEntry("m", "text=%s", text);
    else
        Logger::logger.logMethodEntry("m", "text=%s", constText);
    logWithVaList("%d%s", 7, "b");
}

struct NamedTracer : KelRT::MethodLogger {
    NamedTracer() {
        setMethodName("f");
        addArgument("port", "two");
        addArgument("port", 2U);
        setReturn("replaced");
    }
};

// Logs what each setter of a result returns. The exit line of the tracer then shows the result.
void logResults() {
    char own[] = "own";
    char* const null = nullptr;
    const char* const constNull = nullptr;
    Logger& logger = Logger::logger;
    logger.printLog(1, "%X\n", NamedTracer().setReturnStatus(0x80070005));
    logger.printLog(1, "%s\n", NamedTracer().setReturn(true) ? "yes" : "no");
    logger.printLog(1, "%s\n", NamedTracer().setReturn(false) ? "yes" : "no");
    logger.printLog(1, "%d\n", NamedTracer().setReturn(4294967295U));
    logger.printLog(1, "%s\n", NamedTracer().setReturn(own) == own ? "same" : "other");
    logger.printLog(1, "%s\n", NamedTracer().setReturn(null) == null ? "same" : "other");
    logger.printLog(1, "%s\n", NamedTracer().setReturn(constNull) == constNull ? "same" : "other");
}

// Shows that each destruction of a tracer closes the innermost entry.
void logDestructions() {
    Logger::logger.setDetailLevel(3);
    KelRT::MethodLogger early;
    early.setMethodName("early"); // tracing is off: no entry, but an exit at the end
    Logger::logger.setDetailLevel(4);
    Logger::logger.logMethodEntry("outer");
    Logger::logger.logMethodEntry("middle");
    NamedTracer named;
    named.setReturn("own");
    const KelRT::MethodLogger copy(named);
    KelRT::MethodLogger assigned;
    assigned = copy;
    const KelRT::MethodLogger unnamed;
}

void logTraces() {
    const unsigned char bytes[] = {0x55, 0x0A};
    Logger::logger.dumpBuffer(1, bytes, 12);
    Logger::logger.dumpBuffer(1, "100%% of %s", bytes, 12); // a title is never used as a format
    logEntries();
    logResults();
    logDestructions();
}

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

// Logs complete lines and the beginning of one more, then ends the process. The last line is lost.
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

// The arguments are [MODE [DESCRIPTOR]] or "crash" WHAT. The process fails if DESCRIPTOR is still
// open at the end. WHAT is "dump" or the number of records to log before the crash.
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
    if (mode == "traces")
        logTraces();
    if (mode == "unload") {
        client.tracer.setMethodName("Client");
        return 0; // unloading the library ends logging
    }
    logger.endLogging();
    logger.startLogging();
    logger.printLog(INT_MIN, "after the end");
    return argc > 2 && test_host::closeDescriptor(*argv[2] - '0') ? 1 : 0;
}
