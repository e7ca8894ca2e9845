// SPDX-License-Identifier: MIT
//
// Logging to a full disk and to a pipe without a reader: the program goes on. A standard output
// that is closed is tested in logging_process/, a current directory that is lost in files_test.cpp.
#include "KelRT/Logger.h"

#include "failing_new.h"
#include "test_host.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace KelRT;

namespace {

Logger& logger = Logger::logger;

void logALot() {
    static const unsigned char bytes[3000] = {};
    for (int i = 0; i < 20; ++i) {
        logger.printLog(1, "record %3000d\n", i);
        logger.dumpBuffer(1, "dump", bytes, 24000);
        logger.flush();
    }
}

void startLogging(const std::string& file) {
    test_host::setEnvironment("TOR_KEL_LOGFILE", file);
    test_host::setEnvironment("TOR_KEL_LOGDETAIL", "4");
    logger.startLogging();
}

TEST(HostFaults, FullDiskIsSurvivedWithoutMemory) {
    startLogging("/dev/full");
    ASSERT_TRUE(logger.shouldPrintLog(4));
    {
        const test::FailingNew noMemory;
        logALot();
        EXPECT_TRUE(logger.shouldPrintLog(4));
        logger.endLogging();
    }
    EXPECT_FALSE(test::FailingNew::refused());
    EXPECT_FALSE(logger.shouldPrintLog(0));
}

TEST(HostFaults, PipeWhoseReaderIsGone) {
    const test_host::TemporaryDirectory directory;
    const std::string pipe = directory / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK); // NOLINT(*-vararg)
    startLogging(pipe);
    ASSERT_TRUE(logger.shouldPrintLog(4));
    std::array<char, 16> begin{};
    EXPECT_EQ(read(reader, begin.data(), begin.size()), 16);
    EXPECT_EQ(std::string(begin.data(), 16), "ENVIRONMENT::TOR");
    EXPECT_TRUE(test_host::closeDescriptor(reader));
    logALot();
    EXPECT_TRUE(logger.shouldPrintLog(4));
    logger.endLogging();
    EXPECT_FALSE(logger.shouldPrintLog(0));
}

} // namespace
