// SPDX-License-Identifier: MIT
//
// Tests faults that POSIX hosts can inject: a full disk, a pipe without a reader, cancelled
// threads, files that block on opening. The test of a closed standard output is in
// logging_process/, that of a removed current directory in files_test.cpp.
#include "KelRT/Kel_Util.h"
#include "KelRT/Logger.h"
#include "KelRT/MethodLogger.h"

#include "support/failing_new.h"
#include "support/host.h"
#include "support/outcome.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace KelRT;
using namespace test;
using namespace test_host;

namespace {

Logger& logger = Logger::logger;

/// Makes an empty directory the home and the only entry of PATH.
class HostFaults : public testing::Test {
protected:
    const TemporaryDirectory here;
    const Variable home{"USERPROFILE", here.path()};
    const Variable searchPath{"PATH", here.path()};
    const std::string logFile = here / "trace.log";
};

void startLogging(const std::string& file) {
    setEnvironment("TOR_KEL_LOGFILE", file);
    setEnvironment("TOR_KEL_LOGDETAIL", "4");
    logger.startLogging();
}

// Logs much to a stream that accepts no output, and ends logging. No call may allocate memory.
void expectLogCallsSurvive() {
    static const unsigned char bytes[3000] = {};
    const FailingNew noMemory;
    for (int i = 0; i < 20; ++i) {
        logger.printLog(1, "record %3000d\n", i);
        logger.dumpBuffer(1, "dump", bytes, 24000);
        logger.flush();
    }
    EXPECT_TRUE(logger.shouldPrintLog(4));
    logger.endLogging();
    EXPECT_FALSE(logger.shouldPrintLog(0));
    EXPECT_FALSE(FailingNew::failed());
}

TEST_F(HostFaults, LogCallsSurviveAFullDisk) {
    startLogging("/dev/full");
    expectLogCallsSurvive();
}

TEST_F(HostFaults, LogCallsSurviveAPipeWithoutAReader) {
    ASSERT_EQ(mkfifo(logFile.c_str(), 0600), 0);
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    const int reader = open(logFile.c_str(), O_RDONLY | O_NONBLOCK); // NOLINT(*-vararg)
    startLogging(logFile);
    std::string begin(16, ' ');
    EXPECT_EQ(read(reader, begin.data(), begin.size()), 16);
    EXPECT_EQ(begin, "ENVIRONMENT::TOR");
    EXPECT_TRUE(closeDescriptor(reader));
    expectLogCallsSurvive();
}

// Makes each call in a thread whose cancellation is already pending, and expects that the call
// returns. A call that did not disable cancellation would end at its first cancellation point.
void expectCancelledAfterwards(const std::vector<std::function<void()>>& calls) {
    for (std::size_t i = 0; i < calls.size(); ++i) {
        bool returned = false;
        std::function<void()> cancelledCall = [&] {
            pthread_cancel(pthread_self());
            calls[i]();
            returned = true;
            pthread_testcancel();
        };
        const auto run = [](void* call) -> void* {
            (*static_cast<std::function<void()>*>(call))();
            return nullptr;
        };
        pthread_t thread{};
        void* result = nullptr;
        EXPECT_EQ(pthread_create(&thread, nullptr, run, &cancelledCall), 0);
        EXPECT_EQ(pthread_join(thread, &result), 0);
        EXPECT_TRUE(returned && result == PTHREAD_CANCELED) << "call " << i;
    }
}

TEST_F(HostFaults, CancelledThreadsFinishTheirCalls) {
    const unsigned char bytes[12000] = {};
    auto copy = std::make_unique<Logger>();
    std::vector<std::string> list;
    writeFile(here / "libFoo.so");
    const int free = dup(0);
    ASSERT_TRUE(closeDescriptor(free));
    expectCancelledAfterwards({
        [&] { startLogging(logFile); },
        [] { logger.printLog(1, "open line"); },
        [] { logger.flush(); },
        [] { logger.printLog(1, nullptr); },
        [] { logger.printLog(1, "\nrecord %2000d\n", 1); },
        [&] { logger.dumpBuffer(1, "title", bytes, 96000); },
        [] { logger.logMethodEntry("f", "%d", 1); },
        [] { MethodLogger().setMethodName("g"); },
        [] { logger.logMethodExit("result"); },
        [&] { *copy = logger; },
        [] { logger.endLogging(); },
        [&] { *copy = Logger(); }, // closes the file
        [&] { copy.reset(); },
        [] { static_cast<void>(Kel_Util::findLibInPath("libFoo")); },
        [] { static_cast<void>(Kel_Util::normalizePath("a")); },
        [] { static_cast<void>(Kel_Util::createDotLumatraceDir()); },
        [] { static_cast<void>(Kel_Util::createDotLumatraceTempFile("a")); },
        [&] { static_cast<void>(Kel_Util::isDirectory(here.path())); },
        [&] { Kel_Util::getDirectoryFileList(here / ".kel", false, list); },
    });
    const std::string text = readWholeFile(logFile);
    const char* const end =
        "is LSB.)\nENTERING f 1\n  ENTERING g \n  EXITING g\nEXITING f -- returning result\n"
        "----- Logging Ended - ";
    for (const char* const piece : {"ENVIRONMENT::TOR_KEL_LOGFILE=", "\nopen line\nrecord ",
                                    "1\ntitle\n(MSB<-LSB)", "00002710h: ", end})
        EXPECT_NE(text.find(piece), std::string::npos) << piece;
    EXPECT_EQ(list, std::vector<std::string>{"a0"});
    EXPECT_EQ(dup(0), free) << "a descriptor leaked";
}

TEST_F(HostFaults, ForkedChildThatExitsEndsLoggingToo) {
    startLogging(logFile);
    logger.flush();
    const std::size_t opening = readWholeFile(logFile).size();
    logger.printLog(1, "held back ");
    const pid_t child = fork();
    if (child == 0)
        std::exit(0);
    ASSERT_EQ(waitpid(child, nullptr, 0), child);
    logger.setDetailLevel(0);
    logger.endLogging();
    const std::string text = readWholeFile(logFile).substr(opening);
    const std::string line = "held back ----- Logging Ended - ";
    EXPECT_EQ(text.substr(0, line.size()), line);
    EXPECT_EQ(text.substr(text.find('\n')), "\nheld back ");
}

TEST_F(HostFaults, OpeningLineOfALongPathIsCutAndKeepsItsNewline) {
    const std::string file = here / std::string(3000, '/') + "trace.log";
    startLogging(file);
    const std::string line = "ENVIRONMENT::TOR_KEL_LOGFILE=" + file;
    EXPECT_EQ(readWholeFile(file).substr(0, 2060), line.substr(0, 2046) + "\nENVIRONMENT::");
}

TEST_F(HostFaults, AnyFileThatOpensIsALibraryAndTheSearchDoesNotBlock) {
    const std::string file = here / "libFoo.so";
    const auto expectFound = [&](const char* what) {
        EXPECT_EQ(outcome(Kel_Util::findLibInPath, "libFoo"), here.path()) << what;
    };
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    expectFound("a FIFO without a writer");
    ASSERT_EQ(unlink(file.c_str()), 0);
    writeFile(file);
    ASSERT_EQ(truncate(file.c_str(), off_t{3} << 30), 0);
    expectFound("a sparse file of more than 2 GiB");
    // A process, such as a file server, may hold a write lease on a file. The holder gets SIGIO
    // when the file is opened.
    static_cast<void>(std::signal(SIGIO, SIG_IGN));
    const int holder = open(file.c_str(), O_RDWR);         // NOLINT(*-vararg)
    static_cast<void>(fcntl(holder, F_SETLEASE, F_WRLCK)); // NOLINT(*-vararg)
    expectFound("a file with a write lease");
    ASSERT_TRUE(closeDescriptor(holder));
    ASSERT_TRUE(closeDescriptor(0));
    expectFound("a file that gets descriptor 0");
}

TEST_F(HostFaults, DirectoriesMayBeDatedAfter2038) {
    const std::string kel = Kel_Util::createDotLumatraceDir();
    const timespec in2040[] = {{2208988800, 0}, {2208988800, 0}}; // of access and of modification
    ASSERT_EQ(utimensat(AT_FDCWD, kel.c_str(), in2040, 0), 0);
    EXPECT_EQ(Kel_Util::isDirectory(kel), 1);
    EXPECT_EQ(outcome(Kel_Util::createDotLumatraceDir), kel);
}

} // namespace
