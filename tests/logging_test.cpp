// SPDX-License-Identifier: MIT
//
// Records, traces and dumps within one process. Start-up, copies and the end of logging are tested
// from outside, by logging_process.cmake.
#include "KelRT/Logger.h"
#include "KelRT/MethodLogger.h"

#include "models/log_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <functional>
#include <random>

using namespace KelRT;
using model::LogFile;

namespace {

Logger& logger = Logger::logger;
constexpr unsigned SEED = 20110314;

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
    if (!test_host::WINDOWS) // where a char* is a list
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

class LogBesideModel : public testing::TestWithParam<unsigned> {
protected:
    LogBesideModel() {
        expected.bits = (GetParam() & 1) != 0;
        expected.whole = (GetParam() & 2) != 0;
        for (auto& byte : bytes)
            byte = static_cast<unsigned char>(random());
    }
    void setLevel(int level) {
        logger.setDetailLevel(level);
        expected.level = level;
    }
    void record(int level, const std::string& text) {
        logger.printLog(level, "%s", text.c_str());
        expected.record(level, text);
    }
    void entry(const std::string& name) {
        logger.logMethodEntry(name.c_str());
        expected.entry(name, "");
    }
    void dump(const std::string& title, const std::string& shown, unsigned bits) {
        logger.dumpBuffer(1, title.c_str(), bytes.data(), bits);
        expected.dump(shown, bytes, bits);
    }
    void TearDown() override { // whole logs are too long to read: show where they part
        const std::string written = log.finish();
        const std::string& told = expected.text;
        const auto parts = std::mismatch(written.begin(), written.end(), told.begin(), told.end());
        const auto at = static_cast<std::size_t>(parts.first - written.begin());
        EXPECT_TRUE(written == told)
            << "seed " << SEED << ", position " << at
            << "\nwritten: " << written.substr(at - std::min<std::size_t>(at, 200), 400)
            << "\nexpected: " << told.substr(at, 200);
    }

    LogFile log{std::to_string(GetParam())};
    std::mt19937 random{SEED};
    std::vector<unsigned char> bytes = std::vector<unsigned char>(10100);
    model::Log expected;
};

INSTANTIATE_TEST_SUITE_P(Flags, LogBesideModel, testing::Range(0U, 4U));

TEST_P(LogBesideModel, DumpsOfAllSizes) {
    for (unsigned bits = 0; bits <= 300; ++bits)
        dump(std::to_string(bits), std::to_string(bits), bits);
    for (const unsigned size : {9984U, 9985U, 9992U, 9999U, 10000U, 10001U, 10016U, 10100U})
        for (unsigned blank = 0; blank < 8; ++blank)
            dump("long", "long", 8 * size - blank);
    if (!expected.whole) // of which only the first 10,000 bytes are read
        for (const unsigned bits : {0xFFFFFFF8U, 0xFFFFFFF9U, 0xFFFFFFFFU}) {
            logger.dumpBuffer(1, nullptr, bytes.data(), bits);
            expected.dump("", bytes, 80008);
        }
}

TEST_P(LogBesideModel, DumpsWithEveryTitleAndStateOfTheLine) {
    const std::string longest(2047, 't');
    const std::pair<std::string, std::string> titles[] = {
        {"", ""},
        {"ends\n", "ends\n"},
        {"two\nlines", "two\nlines"},
        {"100%% of %s%n, %d %", "100% of %s%n, %d %"}, // from outside: never a format
        {"%%%%%", "%%%"},
        {longest + "\n", longest},
        {longest.substr(1) + "%%%", longest.substr(1) + "%"},
    };
    setLevel(4);
    for (const int depth : {0, 1, 2, 40}) {
        while (expected.depth < depth)
            entry("f");
        for (const auto& [title, shown] : titles)
            for (const char* const before : {"", "open line"}) {
                record(1, before);
                dump(title, shown, 173);
            }
        logger.dumpBuffer(1, nullptr, bytes.data(), 320);
        expected.dump("", bytes, 320);
        logger.dumpBuffer(1, bytes.data(), 12);
        expected.dump("[Buffer Dump]", bytes, 12);
        logger.dumpBuffer(5, bytes.data(), 12);
    }
}

TEST_P(LogBesideModel, RandomOperations) {
    const auto below = [this](unsigned limit) { return static_cast<int>(random() % limit); };
    const std::string texts[] = {"",     "a",       "b\n",     "\n",
                                 "c\nd", "\ne\n\n", "open %d", std::string(2046, 'l') + "\n\n"};
    for (int step = 0; step < 5000; ++step) {
        const std::string& text = texts[random() % std::size(texts)];
        const std::string name = std::to_string(step) + "f";
        std::string result = " -- returning ";
        switch (below(12)) {
        case 0:
            setLevel(below(4) == 0 ? 3 : 4);
            break;
        case 1:
            logger.logMethodEntry(name.c_str(), "%s%d", text.c_str(), step);
            expected.entry(name, text + std::to_string(step));
            break;
        case 2:
        case 3:
            entry(name);
            break;
        case 4:
            logger.logMethodExit();
            expected.exit("");
            break;
        case 5:
            logger.logMethodExit(-step);
            expected.exit(result.append(std::to_string(-step)));
            break;
        case 6:
            logger.logMethodExit(text.c_str());
            expected.exit(text.empty() ? "" : result.append(text));
            break;
        case 7:
            logger.logMethodExit(name.c_str(), step);
            expected.exitByName(name, result.append(std::to_string(step)));
            break;
        case 8:
            if (below(10) == 0) {
                logger.popAllMethods();
                expected.names.clear();
            }
            break;
        case 9:
            dump(name, name, 412);
            break;
        default:
            record(below(6), text);
        }
    }
}

} // namespace
