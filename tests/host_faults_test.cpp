// SPDX-License-Identifier: MIT
//
// A POSIX host that fails or exaggerates: the program goes on, and the stated exception or nothing
// is what it gets. A closed standard output is in logging_process.cmake, a lost current directory
// and a .kel that is a file in files_test.cpp.
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

TEST(HostFaults, LogFileIsRemovedWhileOpen) {
    const test_host::TemporaryDirectory directory;
    const std::string file = directory / "trace.log";
    startLogging(file);
    ASSERT_EQ(unlink(file.c_str()), 0);
    logALot();
    EXPECT_TRUE(logger.shouldPrintLog(4));
    logger.endLogging();
    EXPECT_FALSE(test_host::opens(file)); // it is not made again
}

TEST(HostFaults, UserDirectoryIsNotWritable) {
    const test_host::TemporaryDirectory directory;
    const test_host::Variable home("USERPROFILE", directory.path());
    const std::string kel = Kel_Util::createDotLumatraceDir();
    ASSERT_EQ(chmod(kel.c_str(), 0555), 0);
    const uid_t user = geteuid();
    static_cast<void>(seteuid(65534)); // for root permissions do not hold
    const bool mayWrite = faccessat(AT_FDCWD, kel.c_str(), W_OK, AT_EACCESS) == 0;
    const std::string outcomeThere = outcome(Kel_Util::createDotLumatraceTempFile, "trace");
    ASSERT_EQ(seteuid(user), 0);
    if (mayWrite)
        GTEST_SKIP() << "this user may write everywhere";
    EXPECT_EQ(outcomeThere, kel + "/trace0");
    EXPECT_FALSE(test_host::opens(kel + "/trace0"));
}

TEST(HostFaults, EnvironmentValuesOf100Kilobytes) {
    const std::string value(100000, 'v');
    const test_host::Variable home("USERPROFILE", "/" + value);
    const test_host::Variable dataDir("TOR_KEL_DATADIR", "/" + value + "/..//x");
    const test_host::Variable sorvaDataDir("TOR_KEL_SORVADATADIR", "/" + value);
    EXPECT_EQ(Kel_Util::getHomePath(), "/" + value);
    EXPECT_EQ(outcome(Kel_Util::createDotLumatraceDir),
              "Cannot create /" + value + "/.kel directory, check the USERPROFILE variable.\n");
    EXPECT_EQ(Kel_Util::getDataDirPath(), "/x/");
    EXPECT_EQ(Kel_Util::getSorvaDataDirPath(), "/" + value + "/");
    startLogging("/" + value); // cannot be opened: logging stays off
    EXPECT_FALSE(logger.shouldPrintLog(0));
    const test_host::Variable searchPath("PATH", value);
    EXPECT_EQ(outcome(Kel_Util::findLibInPath, "libFoo"), "Could not find libFoo in path.\n");
}

TEST(HostFaults, PathOf10000Directories) {
    const test_host::TemporaryDirectory directory;
    std::string path;
    for (int i = 0; i < 10000; ++i)
        path += (directory / std::to_string(i)) + ":";
    const test_host::Variable searchPath("PATH", path + directory.path());
    EXPECT_EQ(outcome(Kel_Util::findLibInPath, "libFoo"), "Could not find libFoo in path.\n");
    test_host::writeFile(directory / "libFoo.so");
    EXPECT_EQ(outcome(Kel_Util::findLibInPath, "libFoo"), directory.path());
}

} // namespace
