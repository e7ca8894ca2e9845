// SPDX-License-Identifier: MIT
//
// Tests records, traces and dumps within one process. The golden tests in logging_process/ cover
// copies, and the start and end of logging.
#include "KelRT/Logger.h"
#include "KelRT/MethodLogger.h"

#include "models/log_model.h"
#include "support/host.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <ctime>
#include <functional>
#include <string>
#include <thread>
#include <typeinfo>

using namespace KelRT;
using model::LogFile;

namespace {

Logger& logger = Logger::logger;

TEST(LogLevel, SettingAcceptsZeroToTen) {
    const LogFile log;
    struct {
        int asked;
        int level;
    } const steps[] = {{4, 4}, {0, 0}, {-1, 0}, {11, 0}, {10, 10}, {INT_MIN, 10}, {INT_MAX, 10}};
    for (const auto& [asked, level] : steps) {
        logger.setDetailLevel(asked);
        EXPECT_TRUE(logger.shouldPrintLog(level)) << asked;
        EXPECT_FALSE(logger.shouldPrintLog(level + 1)) << asked;
    }
}

TEST(LogLevel, WithoutAStreamNothingIsWritten) {
    const auto isSilent = [](const Logger& asked) {
        return !asked.shouldPrintLog(INT_MIN) && !asked.shouldPrintLog(0);
    };
    Logger copy;
    EXPECT_TRUE(isSilent(copy));
    copy.setDetailLevel(10);
    EXPECT_TRUE(isSilent(copy));
    const LogFile log;
    copy = logger;
    EXPECT_TRUE(copy.shouldPrintLog(INT_MIN));
    copy.endLogging();
    EXPECT_TRUE(isSilent(copy));
    copy.setDetailLevel(10);
    EXPECT_TRUE(isSilent(copy));
    EXPECT_TRUE(logger.shouldPrintLog(0));
}

TEST(LogRecord, NullOrEmptyFormatFlushesThroughTheLevelFilter) {
    const LogFile log;
    const std::string none;
    const std::function<void()> flushes[] = {[] { logger.flush(); },
                                             [] { logger.printLog(1, nullptr); },
                                             [&] { logger.printLog(1, none.c_str(), 0); }};
    std::string expected;
    for (const auto& flush : flushes) {
        logger.printLog(1, "x%cy", '\0');
        logger.printLog(2, nullptr); // filtered out
        logger.dumpBuffer(2, "", nullptr, 0);
        EXPECT_EQ(log.text(), expected);
        flush();
        expected += std::string("x\0y", 3);
        EXPECT_EQ(log.text(), expected);
    }
    logger.printLog(1, "\n");
    EXPECT_EQ(log.text(), expected + "\n");
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool SANITIZED = true;
#else
constexpr bool SANITIZED = false;
#endif

constexpr std::size_t ROOM = 1 << 16; // bytes of a thread's stack to fill
constexpr unsigned char PATTERN = 0xA5;

std::uintptr_t lowestFilled = 0;

// Fills ROOM bytes of the stack below the caller and stores the lowest address in lowestFilled.
void fillStack() {
    volatile unsigned char room[ROOM];
    for (volatile unsigned char& byte : room)
        byte = PATTERN;
    lowestFilled = reinterpret_cast<std::uintptr_t>(&room[0]);
}

// Returns how many bytes of stack `call` uses: it overwrites the pattern in those bytes.
std::size_t stackOf(const std::function<void()>& call) {
    std::size_t unused = 0;
    std::thread([&] {
        void (*volatile notInlined)() = fillStack;
        notInlined();
        // NOLINTNEXTLINE(performance-no-int-to-ptr): the compiler must not follow the pointer.
        const auto* const room = reinterpret_cast<const volatile unsigned char*>(lowestFilled);
        call();
        while (room[unused] == PATTERN)
            ++unused;
    }).join();
    return ROOM - unused;
}

TEST(LogStack, EachCallTakesLessThanIsPromised) {
    constexpr std::size_t PROMISED = test_host::WINDOWS ? 16384 : 8192;
    if (SANITIZED)
        GTEST_SKIP() << "sanitizers use stack of their own";
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
    EXPECT_EQ(log.finish(), "abc\n2\n31\n002     |4\n");
}

TEST(LogTimes, LeaveStaticTimesOfTheClientUnchanged) {
    const test_host::TemporaryDirectory directory;
    const test_host::Variable file("TOR_KEL_LOGFILE", directory / "trace.log");
    const test_host::Variable level("TOR_KEL_LOGDETAIL", "2");
    const std::time_t day = 86400;
    const std::tm* const held[] = {std::gmtime(&day), std::localtime(&day)};
    const auto expectUntouched = [&](const char* after) {
        for (const std::tm* const own : held)
            EXPECT_EQ(own->tm_year, 70) << after;
    };
    logger.startLogging();
    expectUntouched("the start");
    ASSERT_TRUE(logger.shouldPrintLog(2));
    logger.endLogging();
    expectUntouched("the end");
}

void logWithVaList(const char* format, ...) { // NOLINT(cert-dcl50-cpp): how a va_list is made
    std::va_list arguments;
    va_start(arguments, format);
    logger.vprintLog(5, format, arguments); // filtered out
    va_end(arguments);
    va_start(arguments, format);
    logger.logMethodEntry("list", format, arguments);
    va_end(arguments);
    va_start(arguments, format);
    [](std::va_list passed) { logger.logMethodEntry("passed", "%d%s", passed); }(arguments);
    va_end(arguments);
}

TEST(LogEntry, OnlyAVaListSelectsTheVaListOverload) {
    const LogFile log;
    logWithVaList("%d%s", 7, "below the level of traces");
    logger.setDetailLevel(4);
    char text[] = "own";
    const char* const constText = text;
    logger.logMethodEntry("m", "count=%d", 0); // a null pointer constant
    logger.logMethodEntry("m", "text=%s", constText);
    if (typeid(std::va_list) != typeid(char*)) // otherwise a char* is a list
        logger.logMethodEntry("m", "text=%s", text);
    else
        logger.logMethodEntry("m", "text=%s", constText);
    logWithVaList("%d%s", 7, "b");
    EXPECT_EQ(log.finish(), "ENTERING m count=0\n  ENTERING m text=own\n    ENTERING m text=own\n"
                            "      ENTERING list 7b\n        ENTERING passed 7b\n");
}

struct NamedTracer : MethodLogger {
    NamedTracer() {
        setMethodName("f");
        addArgument("port", "two");
        addArgument("port", 2U);
        setReturn("replaced");
    }
};

TEST(MethodLogger, ResultsAreReturnedAndTheLastOneIsShown) {
    const LogFile log;
    logger.setDetailLevel(4);
    char own[] = "own";
    char* const null = nullptr;
    const char* const constNull = nullptr;
    EXPECT_EQ(NamedTracer().setReturnStatus(0x80070005), 0x80070005);
    EXPECT_TRUE(NamedTracer().setReturn(true));
    EXPECT_FALSE(NamedTracer().setReturn(false));
    EXPECT_EQ(NamedTracer().setReturn(4294967295U), -1);
    EXPECT_EQ(NamedTracer().setReturn(own), own);
    EXPECT_EQ(NamedTracer().setReturn(null), null);
    EXPECT_EQ(NamedTracer().setReturn(constNull), null);
    std::string expected;
    for (const char* const shown :
         {"KEL_FAILURE, ERROR CODE: 5", "true", "false", "-1", "own", "0 (NULL)", "0 (NULL)"})
        expected += std::string("ENTERING f \nEXITING f -- returning ") + shown + "\n";
    EXPECT_EQ(log.finish(), expected);
}

TEST(MethodLogger, EveryDestructionClosesTheInnermostEntry) {
    const LogFile log;
    {
        MethodLogger early;
        early.setMethodName("early"); // tracing is off: no entry, but an exit at the end
        logger.setDetailLevel(4);
        logger.logMethodEntry("outer");
        logger.logMethodEntry("middle");
        MethodLogger named;
        named.setMethodName("inner");
        named.setReturn("own");
        const MethodLogger copy(named);
        MethodLogger assigned;
        assigned = copy;
        const MethodLogger unnamed;
    }
    EXPECT_EQ(log.finish(), "ENTERING outer \n  ENTERING middle \n    ENTERING inner \n"
                            "    EXITING inner\n  EXITING middle -- returning own\n"
                            "EXITING outer -- returning own\n");
}

TEST(LogDump, TitlesAreTextsAndMayBeLeftOut) {
    const LogFile log;
    const unsigned char bytes[] = {0x55, 0x0A};
    const std::string table = "\n(MSB<-LSB)  1  0\n00000000h: 0a 55 \n";
    logger.dumpBuffer(1, bytes, 12);
    logger.dumpBuffer(1, "100%% of %s", bytes, 12); // a title is never used as a format
    logger.dumpBuffer(1, nullptr, bytes, 12);
    EXPECT_EQ(log.finish(), "[Buffer Dump]" + table + "100% of %s" + table + table);
}

} // namespace
