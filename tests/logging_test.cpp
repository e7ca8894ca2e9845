// SPDX-License-Identifier: MIT
//
// Records, traces and dumps within one process. Start-up, copies and the end of logging are tested
// from outside, by logging_process.cmake.
#include "KelRT/Logger.h"
#include "KelRT/MethodLogger.h"

#include "models/log_model.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <string>
#include <type_traits>

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
        logger.printLog(2, nullptr); // a level that is not written
        logger.dumpBuffer(2, "", nullptr, 0);
        EXPECT_EQ(log.text(), expected);
        flush();
        expected += std::string("x\0y", 3);
        EXPECT_EQ(log.text(), expected);
    }
    logger.printLog(1, "\n");
    if (test_host::WINDOWS) // which knows no line buffering
        logger.flush();
    EXPECT_EQ(log.text(), expected + "\n");
}

void logWithList(const char* format, ...) { // NOLINT(cert-dcl50-cpp): how a list is made
    std::va_list arguments;
    va_start(arguments, format);
    logger.vprintLog(5, format, arguments); // beyond the level
    va_end(arguments);
    va_start(arguments, format);
    logger.logMethodEntry("list", format, arguments);
    va_end(arguments);
    va_start(arguments, format);
    [](std::va_list passed) { logger.logMethodEntry("passed", "%d%s", passed); }(arguments);
    va_end(arguments);
}

TEST(LogEntry, OnlyAListReachesTheFormWithAList) {
    const LogFile log;
    logWithList("%d%s", 7, "below the level of traces");
    logger.setDetailLevel(4);
    char text[] = "own";
    const char* const constText = text;
    logger.logMethodEntry("m", "count=%d", 0); // a null pointer constant
    logger.logMethodEntry("m", "text=%s", constText);
    if (!std::is_same_v<std::va_list, char*>) // or else a char* is a list
        logger.logMethodEntry("m", "text=%s", text);
    else
        logger.logMethodEntry("m", "text=%s", constText);
    logWithList("%d%s", 7, "b");
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

TEST(MethodLogger, ExitLineShowsTheLastResult) {
    const LogFile log;
    logger.setDetailLevel(4);
    char own[] = "own";
    char* const null = nullptr;
    const char* const constNull = nullptr;
    std::string expected;
    for (const unsigned status : {0U, 0x7FFFFFFFU, 0x80000000U, 0x80070005U, 0xFFFFABCDU})
        EXPECT_EQ(NamedTracer().setReturnStatus(status), status);
    EXPECT_TRUE(NamedTracer().setReturn(true));
    EXPECT_FALSE(NamedTracer().setReturn(false));
    EXPECT_EQ(NamedTracer().setReturn(12U), 12);
    EXPECT_EQ(NamedTracer().setReturn(4294967295U), -1);
    EXPECT_EQ(NamedTracer().setReturn(own), own);
    EXPECT_STREQ(NamedTracer().setReturn(""), "");
    EXPECT_EQ(NamedTracer().setReturn(null), null);
    EXPECT_EQ(NamedTracer().setReturn(constNull), null);
    for (const char* const shown : {"KEL_SUCCESS", "KEL_SUCCESS", "KEL_FAILURE, ERROR CODE: 0",
                                    "KEL_FAILURE, ERROR CODE: 5", "KEL_FAILURE, ERROR CODE: ABCD",
                                    "true", "false", "12", "-1", "own", "", "0 (NULL)", "0 (NULL)"})
        expected += std::string("ENTERING f \nEXITING f") + (*shown != 0 ? " -- returning " : "") +
                    shown + "\n";
    EXPECT_EQ(log.finish(), expected);
}

TEST(MethodLogger, EveryDestructionClosesTheInnermostEntry) {
    const LogFile log;
    {
        MethodLogger early;
        early.setMethodName("early"); // tracing is off: enters nothing, yet exits
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
    logger.dumpBuffer(1, "100%% of %s", bytes, 12); // from outside: never a format
    logger.dumpBuffer(1, nullptr, bytes, 12);
    EXPECT_EQ(log.finish(), "[Buffer Dump]" + table + "100% of %s" + table + table);
}

} // namespace
