// SPDX-License-Identifier: MIT
//
// Start-up, records, traces and copies. Logging starts once per process, and every case runs in a
// process of its own.
#include "KelRT/Logger.h"
#include "KelRT/MethodLogger.h"

#include "models/log_model.h"

#include <gtest/gtest.h>

#include <climits>
#include <filesystem>
#include <memory>

using namespace KelRT;
using namespace model;

namespace {

Logger& logger = Logger::logger;

struct Opening {
    const char* name;
    const char* detail;
    const char* flags;
    int level;
    std::string log;
};

class LogOpening : public testing::TestWithParam<Opening> {};

TEST_P(LogOpening, TellsWhatTheEnvironmentAsksFor) {
    const Opening& opening = GetParam();
    const LogFile log(opening.detail, opening.flags);
    logger.startLogging(); // does nothing any more
    for (const int level : {INT_MIN, -4, -3, 0, 1, 2, 3, 24, 25, 26, INT_MAX})
        EXPECT_EQ(logger.shouldPrintLog(level), level <= opening.level) << level;
    EXPECT_EQ(log.finish(), opening.log + (opening.level >= 2 ? ENDED : ""));
    EXPECT_FALSE(logger.shouldPrintLog(INT_MIN));
    logger.startLogging();
    logger.printLog(INT_MIN, "after the end\n");
    logger.endLogging();
    EXPECT_EQ(log.text(), opening.log + (opening.level >= 2 ? ENDED : ""));
}

std::string join(std::initializer_list<const char*> pieces) {
    std::string text;
    for (const char* const piece : pieces)
        text += piece;
    return text;
}

constexpr const char* DETAIL = "ENVIRONMENT::TOR_KEL_LOGDETAIL=";
constexpr const char* FLAGS = "ENVIRONMENT::TOR_KEL_LOGFLAGS=0x";
constexpr const char* BITS = "      -PRINTBITS ON\n";
constexpr const char* LARGE = "      -PRINTLARGEBUFS ON\n";

INSTANTIATE_TEST_SUITE_P(
    Logger, LogOpening,
    testing::Values(
        Opening{"FileAlone", nullptr, nullptr, 1, FILE_LINE},
        Opening{"EmptyIsUnset", "", "", 1, FILE_LINE},
        Opening{"Level1", "1", "3", 1,
                join({FILE_LINE, DETAIL, "1\n", FLAGS, "00000003\n", BITS, LARGE})},
        Opening{"Level2Banner", "2", nullptr, 2, join({FILE_LINE, DETAIL, "2\n", BANNER})},
        Opening{"Level0HidesAllButTheFile", "0", "3", 0, FILE_LINE},
        Opening{"NoNumberIsLevel0", "high", nullptr, 0, FILE_LINE},
        Opening{"NegativeLevel", " -3", "1", -3, FILE_LINE},
        Opening{"LevelsAreNotLimited", "25", nullptr, 25,
                join({FILE_LINE, DETAIL, "25\n", BANNER})},
        Opening{"TrailingTextIsIgnored", "\t+2x", "2kB", 2,
                join({FILE_LINE, DETAIL, "2\n", FLAGS, "00000002\n", LARGE, BANNER})},
        Opening{"FlagsAreDecimal", nullptr, "0x3", 1, join({FILE_LINE, FLAGS, "00000000\n"})},
        Opening{"OtherFlagsAreShownAndIgnored", nullptr, "6", 1,
                join({FILE_LINE, FLAGS, "00000006\n", LARGE})},
        Opening{"NegativeFlags", nullptr, "-1", 1,
                join({FILE_LINE, FLAGS, "FFFFFFFF\n", BITS, LARGE})}),
    [](const auto& instance) { return instance.param.name; });

struct OutputName {
    const char* name;
    const char* value;
    const char* file; // null: logging stays off
};

class LogOutput : public testing::TestWithParam<OutputName> {};

TEST_P(LogOutput, IsNamedByTheTrimmedValue) {
    const test_host::TemporaryDirectory directory;
    std::filesystem::current_path(directory / "");
    const char* const file = GetParam().file;
    configure(GetParam().value, nullptr, nullptr);
    logger.startLogging();
    EXPECT_EQ(logger.shouldPrintLog(1), file != nullptr);
    logger.printLog(1, "text\n");
    logger.dumpBuffer(1, nullptr, 0);
    logger.logMethodEntry("m");
    logger.logMethodExit("m", 1);
    logger.flush();
    logger.endLogging();
    if (file != nullptr) {
        EXPECT_EQ(test_host::readWholeFile(file), std::string("ENVIRONMENT::TOR_KEL_LOGFILE=") +
                                                      file + "\ntext\n[Buffer Dump]\n(MSB<-LSB)\n");
    } else {
        EXPECT_TRUE(std::filesystem::is_empty("."));
    }
    std::filesystem::current_path(std::filesystem::temp_directory_path());
}

INSTANTIATE_TEST_SUITE_P(Logger, LogOutput,
                         testing::Values(OutputName{"Unset", nullptr, nullptr},
                                         OutputName{"Blank", " \t\r\n\b", nullptr},
                                         OutputName{"Unopenable", "missing/trace.log", nullptr},
                                         OutputName{"Directory", ".", nullptr},
                                         OutputName{"Trimmed", "\b my trace.log\t\n",
                                                    "my trace.log"},
                                         OutputName{"CaseCounts", "STDOUT", "STDOUT"},
                                         OutputName{"WholeNameCounts", "stdout.", "stdout."}),
                         [](const auto& instance) { return instance.param.name; });

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

TEST(LogRecord, OnlyItsFirstLineIsIndentedAndItIsCutAtItsLimit) {
    const LogFile log("4");
    std::string expected = join({FILE_LINE, DETAIL, "4\n", BANNER});
    logger.logMethodEntry("f");
    logger.logMethodEntry("g", nullptr);
    for (const char* const text : {"a\nb\n", "c", "d\n", "e\n"})
        logger.printLog(0, "%s", text);
    expected += "ENTERING f \n  ENTERING g \n    a\nb\n    cd\n    e\n";
    logger.printLog(1, "%s", ""); // only the indentation, and still at the start of the line
    logger.printLog(1, "x%cy\n", '\0');
    expected += std::string("        x\0y\n", 12);
    for (const std::size_t length : {2046U, 2047U, 2048U, 5000U}) {
        logger.printLog(1, "%s\n", std::string(length, 'r').c_str());
        logger.printLog(1, "|\n"); // indented only when the newline was not cut off
        expected += "    " + std::string(length, 'r').substr(0, 2047);
        expected += length < 2047 ? "\n    |\n" : "|\n";
    }
    // The depth outlives the names.
    EXPECT_EQ(log.finish(), expected + "    " + ENDED);
}

TEST(LogRecord, NullOrEmptyFormatFlushesThroughTheLevelFilter) {
    const LogFile log;
    const std::string none;
    const char* const empty = none.c_str(); // compilers warn of a literal ""
    const auto unseen = [&](const char* text) {
        logger.printLog(1, "%s", text);
        EXPECT_EQ(log.text().find(text), std::string::npos) << text;
    };
    unseen("open");
    logger.printLog(2, nullptr);
    logger.dumpBuffer(2, empty, nullptr, 0);
    EXPECT_EQ(log.text().find("open"), std::string::npos);
    logger.printLog(1, nullptr);
    EXPECT_EQ(log.text(), std::string(FILE_LINE) + "open");
    unseen("more");
    logger.printLog(1, empty, 0); // the argument is for compilers that expect one
    EXPECT_EQ(log.text(), std::string(FILE_LINE) + "openmore");
    unseen("rest");
    logger.flush();
    EXPECT_EQ(log.text(), std::string(FILE_LINE) + "openmorerest");
    logger.printLog(1, "\nline\n");
    if (!test_host::WINDOWS) { // which knows no line buffering
        EXPECT_EQ(log.text(), std::string(FILE_LINE) + "openmorerest\nline\n");
    }
}

void forwardEntry(const char* format, ...) { // NOLINT(cert-dcl50-cpp): how a list is made
    std::va_list arguments;
    va_start(arguments, format);
    logger.logMethodEntry("list", format, arguments);
    va_end(arguments);
    va_start(arguments, format);
    [](std::va_list passed) { logger.vprintLog(1, "%d %s|\n", passed); }(arguments);
    va_end(arguments);
}

TEST(LogEntry, LiteralZeroAndPointersReachTheVariadicForm) {
    const LogFile log;
    logger.setDetailLevel(4);
    logger.logMethodEntry("m", "count=%d", 0);
    logger.logMethodEntry("m", "text=%s", "t");
    char text[] = "own";
    if (test_host::WINDOWS) // there a char* is a list
        logger.logMethodEntry("m", "text=%s", static_cast<const char*>(text));
    else
        logger.logMethodEntry("m", "text=%s", text);
    forwardEntry("%d %s", 7, "b");
    logger.popAllMethods();
    logger.logMethodExit(); // nothing is left to close
    EXPECT_EQ(log.finish(), std::string(FILE_LINE) +
                                "ENTERING m count=0\n  ENTERING m text=t\n"
                                "    ENTERING m text=own\n      ENTERING list 7 b\n"
                                "        7 b|\n        " +
                                ENDED);
}

TEST(LogExit, FormsNameTheirEntryOrTheGivenOne) {
    const LogFile log;
    logger.logMethodEntry("off"); // level 1: not even on the stack
    logger.setDetailLevel(4);
    logger.logMethodExit();
    std::string expected;
    for (const char* const name : {"a", "b", "c", "d", "e"})
        logger.logMethodEntry(name);
    expected += "ENTERING a \n  ENTERING b \n    ENTERING c \n      ENTERING d \n"
                "        ENTERING e \n";
    logger.logMethodExit("other", -1);
    logger.logMethodExit(0);
    logger.logMethodExit("");
    logger.logMethodExit(static_cast<const char*>(nullptr));
    expected += "        EXITING other -- returning -1\n      EXITING e -- returning 0\n"
                "    EXITING d\n  EXITING c\n";
    logger.setDetailLevel(3);
    logger.logMethodExit();
    logger.logMethodExit("b", 3);
    logger.setDetailLevel(4);
    logger.logMethodExit("ok");
    logger.logMethodExit();
    logger.logMethodExit("below", 2); // the depth is -1 from the exit without an entry, now -2
    logger.logMethodEntry("f");
    logger.logMethodEntry("g");
    logger.logMethodEntry("h");
    logger.printLog(4, "depth 1\n");
    expected += "EXITING b -- returning ok\nEXITING a\nEXITING below -- returning 2\n"
                "ENTERING f \nENTERING g \nENTERING h \n  depth 1\n";
    EXPECT_EQ(log.finish(), std::string(FILE_LINE) + expected + "  " + ENDED);
}

TEST(LogCopy, SharesTheStreamAndTheLastHolderClosesIt) {
    const LogFile log("4");
    logger.logMethodEntry("f");
    std::string expected = join({FILE_LINE, DETAIL, "4\n", BANNER}) + "ENTERING f \n";
    auto copy = std::make_unique<Logger>(logger);
    Logger assigned;
    assigned = *copy;
    assigned = *&assigned;
    copy->logMethodExit("copied"); // the name came along; the depth is the copy's own
    logger.printLog(1, "g\n");
    expected += "EXITING f -- returning copied\n  g\n";
    copy.reset(); // the closing line comes through the global one
    { const Logger unrelated; }
    logger.logMethodExit();
    expected += std::string("  ") + ENDED + "  " + ENDED + "EXITING f\n" + ENDED;
    EXPECT_EQ(log.finish(), expected);
    EXPECT_TRUE(test_host::isOpen(log.path()));
    assigned.logMethodExit(7);
    EXPECT_FALSE(logger.shouldPrintLog(0));
    assigned = logger; // lets go of the last hold
    EXPECT_FALSE(assigned.shouldPrintLog(0));
    EXPECT_EQ(log.text(), expected + "EXITING f -- returning 7\n");
    EXPECT_FALSE(test_host::isOpen(log.path()));
}

TEST(LogCopy, StartingAnotherLoggerTellsNothing) {
    Logger other;
    const LogFile log("2", "1", other);
    other.printLog(2, "only line\n");
    EXPECT_FALSE(logger.shouldPrintLog(0));
    logger.startLogging();
    EXPECT_FALSE(logger.shouldPrintLog(0));
    const unsigned char byte = 5;
    other.dumpBuffer(2, nullptr, &byte, 3); // the flags are the other's
    other.endLogging();
    EXPECT_EQ(log.text(), "only line\n\n(MSB<-LSB)        0\n00000000h:      101 \n");
}

TEST(MethodLogger, ExitLineShowsTheLastResult) {
    const LogFile log;
    logger.setDetailLevel(4);
    const std::string entry = "ENTERING Probe::open \n";
    std::string expected;
    const auto trace = [&](const char* shown, auto&& record) {
        {
            MethodLogger tracer;
            tracer.setMethodName("Probe::open");
            tracer.addArgument("port", "two");
            tracer.addArgument("port", 2U);
            tracer.setReturn("replaced");
            record(tracer);
        }
        expected += entry + "EXITING Probe::open" + shown + "\n";
    };
    char text[] = "own";
    for (const auto& [status, shown] : {std::pair{0U, "KEL_SUCCESS"},
                                        {0x7FFFFFFFU, "KEL_SUCCESS"},
                                        {0x80000000U, "KEL_FAILURE, ERROR CODE: 0"},
                                        {0x80070005U, "KEL_FAILURE, ERROR CODE: 5"},
                                        {0xFFFFABCDU, "KEL_FAILURE, ERROR CODE: ABCD"}})
        trace((std::string(" -- returning ") + shown).c_str(), [status = status](auto& tracer) {
            EXPECT_EQ(tracer.setReturnStatus(status), status);
        });
    trace(" -- returning true", [](auto& tracer) { EXPECT_TRUE(tracer.setReturn(true)); });
    trace(" -- returning false", [](auto& tracer) { EXPECT_FALSE(tracer.setReturn(false)); });
    trace(" -- returning 12", [](auto& tracer) { EXPECT_EQ(tracer.setReturn(12U), 12); });
    trace(" -- returning -1", [](auto& tracer) { EXPECT_EQ(tracer.setReturn(4294967295U), -1); });
    trace(" -- returning own", [&](auto& tracer) { EXPECT_EQ(tracer.setReturn(text), text); });
    trace("", [](auto& tracer) { tracer.setReturn(""); });
    for (const bool isConst : {false, true})
        trace(" -- returning 0 (NULL)", [isConst](auto& tracer) {
            const char* const result = isConst ? tracer.setReturn(static_cast<const char*>(nullptr))
                                               : tracer.setReturn(static_cast<char*>(nullptr));
            EXPECT_EQ(result, nullptr);
        });
    EXPECT_EQ(log.finish(), std::string(FILE_LINE) + expected + ENDED);
}

TEST(MethodLogger, EveryDestructionClosesTheInnermostEntry) {
    const LogFile log;
    {
        MethodLogger early;
        early.setMethodName("early"); // tracing is off: pushes nothing, yet exits
        logger.setDetailLevel(4);
        logger.logMethodEntry("outer");
        logger.logMethodEntry("middle");
        MethodLogger named;
        named.setMethodName("inner");
        {
            MethodLogger copy(named);
            copy.setReturn("copy");
            MethodLogger assigned;
            assigned = copy;
            assigned = *&assigned;
            const MethodLogger unnamed;
        }
        logger.printLog(1, "open\n");
    }
    EXPECT_EQ(log.finish(), std::string(FILE_LINE) +
                                "ENTERING outer \n  ENTERING middle \n"
                                "    ENTERING inner \n    EXITING inner\n"
                                "  EXITING middle -- returning copy\n"
                                "EXITING outer -- returning copy\nopen\n" +
                                ENDED);
}

} // namespace
