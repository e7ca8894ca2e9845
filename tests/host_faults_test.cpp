// SPDX-License-Identifier: MIT
//
// Logging to a full disk and to a pipe without a reader: the program goes on. Files that keep their
// opener waiting, and processes that want the same file. A standard output that is closed is tested
// in logging_process/, a current directory that is lost in files_test.cpp.
#include "KelRT/Kel_Util.h"
#include "KelRT/Logger.h"

#include "failing_new.h"
#include "outcome.h"
#include "test_host.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace KelRT;
using test::outcome;

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

TEST(HostFaults, WhateverOpensIsALibraryAndNothingIsWaitedFor) {
    const test_host::TemporaryDirectory directory;
    const test_host::Variable searchPath("PATH", directory.path());
    const std::string file = directory / "libFoo.so";
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0); // nobody writes to it
    EXPECT_EQ(outcome(Kel_Util::findLibInPath, "libFoo"), directory.path());
    ASSERT_EQ(unlink(file.c_str()), 0);
    test_host::writeFile(file);
    ASSERT_EQ(truncate(file.c_str(), off_t{3} << 30), 0); // more than 2 GiB, with nothing in it
    EXPECT_EQ(outcome(Kel_Util::findLibInPath, "libFoo"), directory.path());
}

// Two processes at once are to be told apart, as two threads are.
TEST(HostFaults, ProcessesGetDifferentTemporaryFiles) {
    constexpr int CALLERS = 8;
    const test_host::TemporaryDirectory directory;
    const test_host::Variable home("USERPROFILE", directory.path());
    for (int caller = 0; caller < CALLERS; ++caller)
        if (fork() == 0) {
            const std::string path = outcome(Kel_Util::createDotLumatraceTempFile, "trace");
            test_host::writeFile(path, path);
            _exit(0);
        }
    while (wait(nullptr) > 0) {
    }
    for (int number = 0; number < CALLERS; ++number) {
        const std::string path = directory / (".kel/trace" + std::to_string(number));
        EXPECT_EQ(test_host::readWholeFile(path), path);
    }
}

} // namespace
