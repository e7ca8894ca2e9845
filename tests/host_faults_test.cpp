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
using test::outcome;

namespace {

Logger& logger = Logger::logger;

void startLogging(const std::string& file) {
    test_host::setEnvironment("TOR_KEL_LOGFILE", file);
    test_host::setEnvironment("TOR_KEL_LOGDETAIL", "4");
    logger.startLogging();
}

// Logs much to a stream that accepts no output, and ends logging. No call may allocate memory.
void expectLogCallsSurvive() {
    static const unsigned char bytes[3000] = {};
    const test::FailingNew noMemory;
    for (int i = 0; i < 20; ++i) {
        logger.printLog(1, "record %3000d\n", i);
        logger.dumpBuffer(1, "dump", bytes, 24000);
        logger.flush();
    }
    EXPECT_TRUE(logger.shouldPrintLog(4));
    logger.endLogging();
    EXPECT_FALSE(logger.shouldPrintLog(0));
    EXPECT_FALSE(test::FailingNew::failed());
}

TEST(HostFaults, FullDiskIsSurvived) {
    startLogging("/dev/full");
    expectLogCallsSurvive();
}

TEST(HostFaults, PipeWhoseReaderIsGone) {
    const test_host::TemporaryDirectory directory;
    const std::string pipe = directory / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK); // NOLINT(*-vararg)
    startLogging(pipe);
    std::string begin(16, ' ');
    EXPECT_EQ(read(reader, begin.data(), begin.size()), 16);
    EXPECT_EQ(begin, "ENVIRONMENT::TOR");
    EXPECT_TRUE(test_host::closeDescriptor(reader));
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

TEST(HostFaults, CancelledThreadsFinishTheirLogCalls) {
    const test_host::TemporaryDirectory directory;
    const std::string file = directory / "trace.log";
    const unsigned char bytes[12000] = {};
    auto copy = std::make_unique<Logger>();
    expectCancelledAfterwards({
        [&] { startLogging(file); },
        [] { logger.printLog(1, "open line"); },
        [] { logger.flush(); },
        [] { logger.printLog(1, nullptr); },
        [] { logger.printLog(1, "\nrecord %2000d\n", 1); },
        [&] { logger.dumpBuffer(1, "title", bytes, 96000); },
        [] { logger.logMethodEntry("f", "%d", 1); },
        [] { KelRT::MethodLogger().setMethodName("g"); },
        [] { logger.logMethodExit("result"); },
        [&] { *copy = logger; },
        [] { logger.endLogging(); },
        [&] { *copy = Logger(); }, // closes the file
        [&] { copy.reset(); },
    });
    const std::string text = test_host::readWholeFile(file);
    const char* const end =
        "is LSB.)\nENTERING f 1\n  ENTERING g \n  EXITING g\nEXITING f -- returning result\n"
        "----- Logging Ended - ";
    for (const char* const piece : {"ENVIRONMENT::TOR_KEL_LOGFILE=", "\nopen line\nrecord ",
                                    "1\ntitle\n(MSB<-LSB)", "00002710h: ", end})
        EXPECT_NE(text.find(piece), std::string::npos) << piece;
}

TEST(HostFaults, ForkedChildThatExitsEndsLoggingToo) {
    const test_host::TemporaryDirectory directory;
    const std::string file = directory / "trace.log";
    startLogging(file);
    logger.flush();
    const std::size_t opening = test_host::readWholeFile(file).size();
    logger.printLog(1, "held back ");
    const pid_t child = fork();
    if (child == 0)
        std::exit(0);
    ASSERT_EQ(waitpid(child, nullptr, 0), child);
    logger.setDetailLevel(0);
    logger.endLogging();
    const std::string text = test_host::readWholeFile(file).substr(opening);
    const std::string line = "held back ----- Logging Ended - ";
    EXPECT_EQ(text.substr(0, line.size()), line);
    EXPECT_EQ(text.substr(text.find('\n')), "\nheld back ");
}

TEST(HostFaults, LongPathOfTheLogIsCutBeforeTheNewline) {
    const test_host::TemporaryDirectory directory;
    std::string file = directory.path();
    while (file.size() < 3000)
        file += "/.";
    file += "/trace.log";
    startLogging(file);
    const std::string line = "ENVIRONMENT::TOR_KEL_LOGFILE=" + file;
    EXPECT_EQ(test_host::readWholeFile(file).substr(0, 2060),
              line.substr(0, 2046) + "\n" + "ENVIRONMENT::");
}

TEST(HostFaults, AnyFileThatOpensIsALibraryAndOpeningDoesNotWait) {
    const test_host::TemporaryDirectory directory;
    const test_host::Variable searchPath("PATH", directory.path());
    const std::string file = directory / "libFoo.so";
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0); // without a writer
    EXPECT_EQ(outcome(Kel_Util::findLibInPath, "libFoo"), directory.path());
    ASSERT_EQ(unlink(file.c_str()), 0);
    test_host::writeFile(file);
    ASSERT_EQ(truncate(file.c_str(), off_t{3} << 30), 0); // a sparse file of more than 2 GiB
    EXPECT_EQ(outcome(Kel_Util::findLibInPath, "libFoo"), directory.path());
    // A process, such as a file server, may hold a write lease on a file. It gets SIGIO when the
    // file is opened.
    static_cast<void>(std::signal(SIGIO, SIG_IGN));
    const int holder = open(file.c_str(), O_RDWR);         // NOLINT(*-vararg)
    static_cast<void>(fcntl(holder, F_SETLEASE, F_WRLCK)); // NOLINT(*-vararg)
    EXPECT_EQ(outcome(Kel_Util::findLibInPath, "libFoo"), directory.path());
    ASSERT_TRUE(test_host::closeDescriptor(holder));
    ASSERT_TRUE(test_host::closeDescriptor(0)); // the next file gets descriptor 0
    EXPECT_EQ(outcome(Kel_Util::findLibInPath, "libFoo"), directory.path());
}

TEST(HostFaults, DirectoriesMayBeDatedAfter2038) {
    const test_host::TemporaryDirectory directory;
    const test_host::Variable home("USERPROFILE", directory.path());
    const std::string kel = directory / ".kel";
    ASSERT_TRUE(test_host::makeDirectory(kel));
    const timespec in2040{2208988800, 0};
    const timespec times[] = {in2040, in2040};
    ASSERT_EQ(utimensat(AT_FDCWD, kel.c_str(), times, 0), 0);
    EXPECT_EQ(Kel_Util::isDirectory(kel), 1);
    EXPECT_EQ(outcome(Kel_Util::createDotLumatraceDir), kel);
}

TEST(HostFaults, CancelledThreadsFinishTheirFileFunctions) {
    const test_host::TemporaryDirectory directory;
    const test_host::Variable searchPath("PATH", directory.path());
    const test_host::Variable home("USERPROFILE", directory.path());
    test_host::writeFile(directory / "libFoo.so");
    std::vector<std::string> list;
    const int free = dup(0);
    ASSERT_TRUE(test_host::closeDescriptor(free));
    expectCancelledAfterwards({
        [] { static_cast<void>(Kel_Util::findLibInPath("libFoo")); },
        [] { static_cast<void>(Kel_Util::normalizePath("a")); },
        [] { static_cast<void>(Kel_Util::createDotLumatraceDir()); },
        [] { static_cast<void>(Kel_Util::createDotLumatraceTempFile("a")); },
        [&] { static_cast<void>(Kel_Util::isDirectory(directory.path())); },
        [&] { Kel_Util::getDirectoryFileList(directory / ".kel", false, list); },
    });
    EXPECT_EQ(list, std::vector<std::string>{"a0"});
    EXPECT_EQ(dup(0), free) << "a descriptor leaked";
}

} // namespace
