// SPDX-License-Identifier: MIT
//
// What logging must survive: a full disk and exhausted memory.
#include "KelRT/Logger.h"
#include "KelRT/MethodLogger.h"

#include "failing_new.h"
#include "models/log_model.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

using namespace KelRT;
using namespace model;

namespace {

Logger& logger = Logger::logger;

// Does something while memory is exhausted, which it must have met.
template <typename Action>
void whileExhausted(Action&& action) {
    {
        const test::FailingNew noMemory;
        action();
    }
    EXPECT_TRUE(test::FailingNew::refused());
}

class LogWithoutMemory : public testing::Test {
protected:
    void SetUp() override {
        if (!test::failingNewReachesTheLibrary())
            GTEST_SKIP() << "a program's operator new does not reach into a DLL";
    }
};

TEST_F(LogWithoutMemory, LostNamesKeepExitsAndIndentationInOrder) {
    const LogFile log;
    logger.setDetailLevel(4);
    const std::string lost(40, 'n');
    logger.logMethodEntry("kept");
    whileExhausted([&] { logger.logMethodEntry(lost.c_str()); });
    logger.logMethodEntry("inside");
    Logger copy(logger);
    logger.logMethodExit(1);
    logger.logMethodExit("x");
    logger.logMethodEntry("again");
    std::string expected = "ENTERING kept \n  ENTERING " + lost +
                           " \n    ENTERING inside \n    EXITING  -- returning 1\n"
                           "  EXITING  -- returning x\n  ENTERING again \n";
    whileExhausted([&] {
        const Logger nameless(logger); // writes the closing line in the end
        copy = nameless;
    });
    expected += "    " + std::string(ENDED);
    logger.logMethodExit();
    for (int exit = 0; exit < 3; ++exit)
        copy.logMethodExit(exit);
    expected += "  EXITING again\n  EXITING  -- returning 0\nEXITING  -- returning 1\n";
    whileExhausted([&] { logger.logMethodEntry(lost.c_str()); });
    logger.popAllMethods();
    logger.logMethodExit();
    expected += "  ENTERING " + lost + " \n";
    EXPECT_EQ(log.finish(), FILE_LINE + expected + "    " + ENDED);
}

TEST_F(LogWithoutMemory, LostResultsAreEmpty) {
    const LogFile log;
    logger.setDetailLevel(4);
    {
        MethodLogger tracer;
        tracer.setMethodName("f");
        tracer.setReturn("a result beyond what a string holds inside");
        whileExhausted([&] {
            MethodLogger copy; // closes f
            copy = tracer;
        });
        tracer.setMethodName("g");
        char longText[] = "another result beyond what a string holds inside, longer than the first";
        whileExhausted([&] { EXPECT_EQ(tracer.setReturn(longText), longText); });
    }
    MethodLogger status;
    whileExhausted([&] { EXPECT_EQ(status.setReturnStatus(0x80000001), 0x80000001); });
    EXPECT_EQ(log.finish(),
              std::string(FILE_LINE) + "ENTERING f \nEXITING f\nENTERING g \nEXITING g\n" + ENDED);
}

TEST_F(LogWithoutMemory, StartStaysOffAndLeavesTheFileAlone) {
    const test_host::TemporaryDirectory directory;
    const std::string file = directory / "kept.log";
    std::ofstream(file) << "kept";
    configure(file.c_str(), "2", nullptr);
    whileExhausted([] { logger.startLogging(); });
    EXPECT_FALSE(logger.shouldPrintLog(0));
    logger.printLog(0, "nothing\n");
    EXPECT_EQ(test_host::readWholeFile(file), "kept");
}

TEST_F(LogWithoutMemory, WritingAllocatesNothing) {
    const LogFile log("2", "2");
    const std::vector<unsigned char> bytes(20000, 0xA5);
    {
        const test::FailingNew noMemory;
        logger.printLog(1, "%s %d %.3f\n", "text", 5, 0.5);
        logger.dumpBuffer(1, bytes.data(), 160000);
        logger.endLogging();
    }
    EXPECT_FALSE(test::FailingNew::refused());
    EXPECT_NE(log.text().find("00004e10h: a5 a5"), std::string::npos);
}

TEST(LogToFullDisk, IsSurvived) {
    configure("/dev/full", "10", "3");
    logger.startLogging();
    if (!logger.shouldPrintLog(10))
        GTEST_SKIP() << "this host has no /dev/full";
    const std::vector<unsigned char> bytes(20000, 0xA5);
    for (int i = 0; i < 100; ++i) {
        MethodLogger tracer;
        tracer.setMethodName("f");
        logger.printLog(1, "%s", std::string(3000, 'x').c_str());
        logger.dumpBuffer(1, bytes.data(), 160000);
        tracer.setReturnStatus(0);
    }
    EXPECT_TRUE(logger.shouldPrintLog(10));
    logger.flush();
    logger.endLogging();
    EXPECT_FALSE(logger.shouldPrintLog(0));
}

} // namespace
