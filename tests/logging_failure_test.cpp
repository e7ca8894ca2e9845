// SPDX-License-Identifier: MIT
//
// What logging survives: exhausted memory and a full disk.
#include "KelRT/Logger.h"
#include "KelRT/MethodLogger.h"

#include "failing_new.h"
#include "models/log_model.h"

#include <gtest/gtest.h>

using namespace KelRT;
using model::LogFile;

namespace {

Logger& logger = Logger::logger;

class LogWithoutMemory : public testing::Test {
protected:
    void SetUp() override {
        if (!test::failingNewReachesTheLibrary())
            GTEST_SKIP() << "a program's operator new does not reach into a DLL";
    }

    // Does something while memory is exhausted, which it must have met.
    template <typename Action>
    static void whileExhausted(Action&& action) {
        {
            const test::FailingNew noMemory;
            action();
        }
        EXPECT_TRUE(test::FailingNew::refused());
    }
};

TEST_F(LogWithoutMemory, LostNamesKeepExitsAndIndentationInOrder) {
    const LogFile log;
    logger.setDetailLevel(4);
    const std::string lost(40, 'n');
    logger.logMethodEntry("kept");
    whileExhausted([&] { logger.logMethodEntry(lost.c_str()); });
    logger.logMethodEntry("inside");
    logger.logMethodExit(1);
    logger.logMethodExit("x");
    logger.logMethodEntry("again");
    logger.setDetailLevel(1); // no closing line from the copy that ends
    Logger nameless;
    whileExhausted([&] { nameless = Logger(logger); });
    logger.setDetailLevel(4);
    nameless.setDetailLevel(4);
    for (int exit = 0; exit < 3; ++exit)
        nameless.logMethodExit(exit);
    logger.logMethodExit();
    logger.logMethodExit();
    whileExhausted([&] { logger.logMethodEntry(lost.c_str()); });
    logger.popAllMethods();
    logger.logMethodExit();
    EXPECT_EQ(log.finish(), "ENTERING kept \n  ENTERING " + lost +
                                " \n    ENTERING inside \n    EXITING  -- returning 1\n"
                                "  EXITING  -- returning x\n  ENTERING again \n"
                                "  EXITING  -- returning 0\nEXITING  -- returning 1\n"
                                "  EXITING again\nEXITING kept\nENTERING " +
                                lost + " \n");
}

TEST_F(LogWithoutMemory, LostResultsAreEmpty) {
    const LogFile log;
    logger.setDetailLevel(4);
    {
        MethodLogger tracer;
        tracer.setMethodName("f");
        tracer.setReturn("a result beyond what a string holds inside");
        whileExhausted([&] { MethodLogger() = tracer; });
        tracer.setMethodName("g");
        const std::string longer(200, 'r');
        whileExhausted([&] { EXPECT_EQ(tracer.setReturn(longer.c_str()), longer.c_str()); });
    }
    EXPECT_EQ(log.finish(), "ENTERING f \nEXITING f\nENTERING g \nEXITING g\n");
}

TEST_F(LogWithoutMemory, StartLeavesTheFileAlone) {
    const test_host::TemporaryDirectory directory;
    const std::string file = directory / "kept.log";
    std::ofstream(file) << "kept";
    test_host::setEnvironment("TOR_KEL_LOGFILE", file);
    whileExhausted([] { logger.startLogging(); });
    EXPECT_FALSE(logger.shouldPrintLog(0));
    EXPECT_EQ(test_host::readWholeFile(file), "kept");
}

TEST(LogToFullDisk, IsSurvivedAndAllocatesNothing) {
    test_host::setEnvironment("TOR_KEL_LOGFILE", "/dev/full");
    test_host::setEnvironment("TOR_KEL_LOGDETAIL", "10");
    logger.startLogging();
    if (!logger.shouldPrintLog(10))
        GTEST_SKIP() << "this host has no /dev/full";
    const std::vector<unsigned char> bytes(20000, 0xA5);
    const std::string longText(3000, 'x');
    {
        const test::FailingNew noMemory;
        for (int i = 0; i < 100; ++i) {
            logger.printLog(1, "%s\n", longText.c_str());
            logger.dumpBuffer(1, bytes.data(), 160000);
        }
        EXPECT_TRUE(logger.shouldPrintLog(10));
        logger.endLogging();
    }
    EXPECT_FALSE(test::FailingNew::refused());
    EXPECT_FALSE(logger.shouldPrintLog(0));
}

} // namespace
