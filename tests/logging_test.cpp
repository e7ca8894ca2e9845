// SPDX-License-Identifier: MIT
//
// Tests flushes, unusual formats, and the stack that log calls take. The golden tests in
// logging_process/ cover the start and end of logging, and Loggers without a stream. fuzz/log.cpp
// compares levels, traces and dumps with a model.
#include "KelRT/Logger.h"
#include "KelRT/MethodLogger.h"

#include "models/log_model.h"
#include "support/host.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <functional>
#include <iterator>
#include <string>
#include <thread>

using namespace KelRT;
using model::LogFile;

namespace {

Logger& logger = Logger::logger;

TEST(LogRecord, NullOrEmptyFormatFlushesIfTheLevelIsEnabled) {
    const LogFile log;
    const std::string none;
    const std::function<void()> flushes[] = {
        [] { logger.flush(); }, [] { logger.printLog(1, nullptr); },
        [&] { logger.printLog(1, none.c_str(), 0); }, [] { logger.printLog(1, "\n"); }};
    std::string expected;
    for (const auto& flush : flushes) {
        logger.printLog(1, "x%cy", '\0');
        logger.printLog(2, nullptr); // filtered out
        logger.dumpBuffer(2, "", nullptr, 0);
        EXPECT_EQ(log.text(), expected);
        flush();
        expected += std::string("x\0y", 3);
        EXPECT_EQ(log.text().substr(0, expected.size()), expected);
    }
}

constexpr std::size_t ROOM = 1 << 16; // bytes of a thread's stack to fill
constexpr unsigned char PATTERN = 0xA5;

std::uintptr_t lowestFilled = 0;

// Fills ROOM bytes of the stack below the caller and stores the lowest address in lowestFilled.
void fillStack() {
    volatile unsigned char room[ROOM];
    std::fill(std::begin(room), std::end(room), PATTERN);
    lowestFilled = reinterpret_cast<std::uintptr_t>(&room[0]);
}

// Returns how many bytes of stack `call` uses: it overwrites the pattern in those bytes.
std::size_t stackOf(const std::function<void()>& call) {
    std::size_t unused = 0;
    std::thread([&] {
        void (*volatile notInlined)() = fillStack;
        notInlined();
        // NOLINTNEXTLINE(performance-no-int-to-ptr): the compiler must not see that room is gone.
        const auto* const room = reinterpret_cast<const volatile unsigned char*>(lowestFilled);
        call();
        while (room[unused] == PATTERN)
            ++unused;
    }).join();
    return ROOM - unused;
}

TEST(LogStack, EachCallUsesLessStackThanDocumented) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "sanitizers use stack of their own";
#endif
    constexpr std::size_t PROMISED = test_host::WINDOWS ? 16384 : 8192;
    const test_host::TemporaryDirectory directory;
    test_host::setEnvironment("TOR_KEL_LOGFILE", directory / "trace.log");
    test_host::setEnvironment("TOR_KEL_LOGDETAIL", "4");
    const std::string format = "%2$*1$d %4$.*3$f %5$s\n";
    const std::string longText(4000, 'l');
    const unsigned char bytes[12000] = {};
    const std::function<void()> calls[] = {
        [] { logger.startLogging(); },
        [&] { logger.printLog(1, "%d %f %s\n", 7, 1e300, longText.c_str()); },
        [&] { logger.printLog(1, format.c_str(), 8, 1, 3, 0.5, "text"); },
        [&] { logger.dumpBuffer(1, longText.c_str(), bytes, 96000); },
        [&] { logger.logMethodEntry(longText.c_str(), "%s", longText.c_str()); },
        [&] { logger.logMethodExit(longText.c_str()); },
        [&] { MethodLogger().setMethodName(longText); },
        [] { logger.endLogging(); },
    };
    for (const auto& call : calls)
        EXPECT_LT(stackOf(call), PROMISED) << &call - calls;
}

// The compiler cannot check a format that is made at run time.
TEST(LogRecord, RunTimeFormatsDoNotEndTheProcess) {
    const LogFile log;
    int count = 0;
    const std::string counting = "ab%nc\n";
    logger.printLog(1, counting.c_str(), &count);
    for (const std::string format : {"%2$d\n", "%3$d%1$d\n", "%2$-8.3d|%4$d\n"})
        logger.printLog(1, format.c_str(), 1, 2, 3, 4);
    if (test_host::WINDOWS) // its formats have no numbered arguments
        return;
    EXPECT_EQ(count, 2);
    logger.flush();
    EXPECT_EQ(log.text(), "abc\n2\n31\n002     |4\n");
}

TEST(LogTimes, ResultsOfGmtimeAndLocaltimeAreNotOverwritten) {
    const LogFile log;
    logger.setDetailLevel(2);
    const std::time_t day = 86400;
    const std::tm* const held[] = {std::gmtime(&day), std::localtime(&day)};
    logger.endLogging();
    EXPECT_NE(log.text().find("----- Logging Ended - "), std::string::npos);
    for (const std::tm* const own : held)
        EXPECT_EQ(own->tm_year, 70);
}

TEST(Tracer, SettersReturnTheirArgument) {
    char text[] = "own";
    char* const null = nullptr;
    const char* const constNull = nullptr;
    MethodLogger tracer;
    EXPECT_EQ(tracer.setReturnStatus(0x80070005), 0x80070005);
    EXPECT_TRUE(tracer.setReturn(true));
    EXPECT_FALSE(tracer.setReturn(false));
    EXPECT_EQ(tracer.setReturn(4294967295U), -1);
    EXPECT_EQ(tracer.setReturn(text), text);
    EXPECT_EQ(tracer.setReturn(null), null);
    EXPECT_EQ(tracer.setReturn(constNull), constNull);
}

} // namespace
