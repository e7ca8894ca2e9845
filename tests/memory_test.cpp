// SPDX-License-Identifier: MIT
//
// Lets each allocation of every operation fail in turn. The operation must either complete, or
// throw std::bad_alloc and leave its object unchanged. The sanitized build also checks for leaks.
#include "KelRT/Kel_ByteBuffer.h"
#include "KelRT/Kel_Exception.h"
#include "KelRT/Kel_Number.h"
#include "KelRT/Kel_NumberUtil.h"
#include "KelRT/Kel_StrTok.h"
#include "KelRT/Kel_Util.h"
#include "KelRT/MethodLogger.h"
#include "KelRT/Version.h"

#include "models/log_model.h"
#include "support/failing_new.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <iterator>
#include <memory>
#include <new>
#include <string>
#include <vector>

using namespace KelRT;
using Util = Kel_NumberUtil;
using model::LogFile;
using test::FailingNew;
using test::Failure;

namespace {

// NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): a false positive: it refers to the global.
Logger& logger = Logger::logger;

class ExhaustedMemory : public testing::Test {
protected:
    void SetUp() override {
        if (!test::failingNewReachesTheLibrary())
            GTEST_SKIP() << "a program's operator new does not reach into a DLL";
    }
};

/// Calls \a action while every allocation fails, and expects that it tries one.
void whileExhausted(const std::function<void()>& action) {
    {
        const FailingNew noMemory;
        action();
    }
    EXPECT_TRUE(FailingNew::failed());
}

/// Runs \a attempt(failure, n) for both kinds of failure and n = 0, 1, ... until it returns false
/// because no allocation has failed.
void forEveryAllocation(const std::string& name,
                        const std::function<bool(Failure, long)>& attempt) {
    SCOPED_TRACE(name);
    long failures = 0;
    for (const Failure failure : {Failure::persistent, Failure::single})
        for (long n = 0; n < 10000 && attempt(failure, n); ++n)
            ++failures;
    // The 19 digits of uLL2DecStr fit in a string of libc++ without an allocation.
    const bool fits = name == "uLL2DecStr" && std::string().capacity() >= 19;
    EXPECT_GE(failures, fits ? 0 : 1);
    EXPECT_LT(failures, 10000);
}

using Own = std::unique_ptr<Kel_ByteBuffer>;

constexpr unsigned char BYTES[100] = {};

/// Holds the arguments of the operations. The libraries that they find are in a directory that the
/// test has put in PATH.
struct State {
    std::string word = std::string(60, 'w');
    const wchar_t* wideWord = L"longer than what fits inside";
    std::string setting = "w=" + word;
    char* settings[1] = {setting.data()};
    std::string padded = std::string(60, ' ') + word + std::string(60, ' ');
    std::string ones = std::string(800, '1');
    Kel_Exception longer{padded};
    Kel_ByteBuffer text{reinterpret_cast<const unsigned char*>("A54321"), 7, 1, 1};
    Kel_ByteBuffer target{BYTES, 4, 0, 0};
    Kel_Number narrow{40};
    Kel_Number wide{3000};
    Kel_Number vast{16000}; // enough for divide and conquer
    std::string digits = std::string(4800, '1');
    Kel_Exception message{"kept"};
    std::vector<std::string> list{"kept", "and this one is longer than what fits inside"};
    std::string out; // starts empty, since a failure may empty it

    State() {
        narrow.set('d', "-12345");
        wide.set('X', ones.substr(100));
        vast.set('d', digits.substr(1));
    }
    /// Returns in one text all that an operation that throws must not change.
    std::string kept() {
        const std::filesystem::directory_iterator made(".kel");
        return std::string(text.ptr(), static_cast<std::size_t>(text.getSize())) +
               std::string(target.ptr(), static_cast<std::size_t>(target.getSize())) +
               narrow.toString('x') + wide.toString('x') + vast.toString('x') + message.what() +
               list[0] + list.back() + out + Kel_Util::getDataDirPath() +
               std::to_string(std::distance(begin(made), end(made)));
    }
};

constexpr struct {
    const char* name;
    void (*run)(State& s);
} OPERATIONS[] = {
    {"buffer", [](State&) { const Kel_ByteBuffer made(3, 1, 1); }},
    {"buffer of bytes", [](State&) { const Kel_ByteBuffer made({}, 0, 1, 1); }},
    {"buffer copy", [](State& s) { const Kel_ByteBuffer copy(s.text); }},
    {"buffer assignment", [](State& s) { s.target = s.text; }},
    {"init", [](State& s) { s.target.init(9, 1, 1); }},
    {"insert low", [](State& s) { s.text.insertBytes(0, 2); }},
    {"insert high", [](State& s) { s.text.insertBytes(7, 2); }},
    {"text", [](State& s) { s.text.bin2HexString(0, s.target); }},
    {"own text", [](State& s) { s.text.bin2HexString(0, s.text); }},
    {"new text", [](State& s) { const Own made(s.text.bin2HexString(0)); }},
    {"cut text", [](State& s) { const Own made(s.text.bin2HexString(0, 9)); }},
    {"bytes", [](State& s) { s.text.hex2Bin(0, 5, s.target); }},
    {"own bytes", [](State& s) { s.text.hex2Bin(0, 5, s.text); }},
    {"new bytes", [](State& s) { const Own made(s.text.hex2Bin(0, 5)); }},
    {"mirrored", [](State& s) { Kel_ByteBuffer::hex2BinReverse("A5", s.target); }},
    {"new mirrored", [](State&) { const Own made(Kel_ByteBuffer::hex2BinReverse("A5")); }},

    {"number", [](State&) { const Kel_Number made(3000); }},
    {"number assignment", [](State& s) { s.narrow = s.wide; }},
    {"wide decimal", [](State& s) { EXPECT_TRUE(s.wide.set('d', s.ones)); }},
    {"very wide decimal", [](State& s) { EXPECT_TRUE(s.vast.set('d', s.digits)); }},
    {"very wide digits", [](State& s) { static_cast<void>(s.vast.toString('u')); }},
    {"bits", [](State& s) { static_cast<void>(s.narrow.toString('b')); }},
    {"characters", [](State& s) { static_cast<void>(s.wide.toString('s')); }},
    {"decimal", [](State& s) { static_cast<void>(s.wide.toString('d')); }},
    {"scaled", [](State& s) { static_cast<void>(s.narrow.toFloatString(1, 0, 40)); }},

    {"binStr2HexStr", [](State& s) { Util::binStr2HexStr(s.ones.c_str(), s.out); }},
    {"hexStr2BinStr", [](State& s) { Util::hexStr2BinStr(s.ones.c_str(), 300, s.out); }},
    {"bin2ReverseBinStr", [](State& s) { Util::bin2ReverseBinStr(BYTES, 800, s.out); }},
    {"uInt2BinStr", [](State& s) { Util::uInt2BinStr(5, 32, s.out); }},
    {"uInt2HexStr", [](State& s) { Util::uInt2HexStr(5, 400, s.out); }},
    {"uLL2DecStr", [](State& s) { Util::uLL2DecStr(0x7FFFFFFFFFFFFFFF, s.out); }},
    {"double2Str", [](State& s) { Util::double2Str(1e300, s.out); }},

    {"getHomePath", [](State&) { static_cast<void>(Kel_Util::getHomePath()); }},
    {"user directory", [](State&) { Kel_Util::createDotLumatraceDir(); }},
    {"temporary file", [](State& s) { Kel_Util::createDotLumatraceTempFile(s.word); }},
    {"findLibInPath", [](State& s) { Kel_Util::findLibInPath(s.word); }},
    {"getDataDirPath", [](State&) { static_cast<void>(Kel_Util::getDataDirPath()); }},
    {"setUserDataDirPath", [](State& s) { Kel_Util::setUserDataDirPath(s.word); }},
    {"getSorvaDataDirPath", [](State&) { static_cast<void>(Kel_Util::getSorvaDataDirPath()); }},
    {"normalizePath", [](State& s) { static_cast<void>(Kel_Util::normalizePath(s.word)); }},
    {"getDirectoryFileList", [](State& s) { Kel_Util::getDirectoryFileList(".", true, s.list); }},
    {"message", [](State& s) { static_cast<void>(Kel_Util::getLocalizedPortMsg(s.wideWord)); }},
    {"trimWhitespace", [](State& s) { EXPECT_EQ(Kel_Util::trimWhitespace(s.padded), s.word); }},
    {"findKey", [](State& s) { static_cast<void>(Kel_Util::findKey(1, s.settings, "W")); }},
    {"tokens", [](State& s) { Kel_StrTok(s.padded.c_str(), " ", true, true, true).getNext(); }},
    {"exception", [](State& s) { EXPECT_EQ(Kel_Exception(s.longer).what(), s.padded); }},
    {"exception assignment", [](State& s) { s.message = s.longer; }},
    {"version", [](State&) { static_cast<void>(getVersionWithBuildNumber()); }},
};

TEST_F(ExhaustedMemory, OperationsCompleteOrChangeNothing) {
    const test_host::TemporaryDirectory directory;
    const test_host::CurrentDirectory current(directory.path());
    const test_host::Variable home("USERPROFILE", directory.path());
    const std::string place = directory / "a long name of one";
    const test_host::Variable searchPath("PATH", "/nowhere/at/all:" + place);
    const test_host::Variable dataDir("TOR_KEL_DATADIR");
    std::filesystem::create_directory(place);
    test_host::writeFile(test_host::below(place, "libKelCore.so"));
    const std::string word(60, 'w');
    test_host::writeFile(test_host::below(place, word + ".so"));
    Kel_Util::createDotLumatraceDir();
    Kel_Util::setUserDataDirPath("kept");

    for (const auto& operation : OPERATIONS)
        forEveryAllocation(operation.name, [&operation](Failure failure, long n) {
            State state;
            const std::string before = state.kept();
            bool thrown = false;
            {
                const FailingNew noMemory(n, failure);
                try {
                    operation.run(state);
                } catch (const std::bad_alloc&) {
                    thrown = true;
                }
            }
            EXPECT_EQ(thrown, FailingNew::failed()) << n;
            EXPECT_TRUE(!thrown || state.kept() == before) << n;
            return thrown;
        });
    // Failures have interrupted the composition of the version texts. None may be incomplete now.
    EXPECT_EQ(std::string(getVersionWithBuildNumber()),
              std::string(getVersion()) + " - Compiled " + getBuildNumber());
}

TEST_F(ExhaustedMemory, LoggingNeverThrowsAndKeepsItsIndentation) {
    const LogFile log;
    logger.setDetailLevel(4);
    const std::string name(40, 'n');
    const std::vector<unsigned char> bytes(100, 0xA5);
    forEveryAllocation("logging", [&](Failure failure, long n) {
        const FailingNew noMemory(n, failure);
        logger.logMethodEntry(name.c_str(), "%s", name.c_str());
        logger.printLog(1, "%s\n", name.c_str());
        logger.dumpBuffer(1, name.c_str(), bytes.data(), 800);
        logger.logMethodEntry(name.c_str());
        logger.logMethodExit(name.c_str());
        logger.logMethodExit(7);
        {
            MethodLogger tracer;
            tracer.setReturn(name.c_str());
        }
        logger.printLog(1, "alive %ld\n", n);
        return FailingNew::failed();
    });
    const std::string text = log.finish();
    EXPECT_NE(text.find("\nalive 0\n"), std::string::npos); // not indented: at depth 0
    EXPECT_NE(text.find("\nalive 1\n"), std::string::npos);
    EXPECT_EQ(text.find(" alive"), std::string::npos);
}

TEST_F(ExhaustedMemory, LostNamesAndResultsAreEmptyAndKeepTheOrder) {
    const LogFile log;
    logger.setDetailLevel(4);
    const std::string lost(40, 'n');
    const std::string lostResult(200, 'r');
    logger.logMethodEntry("kept");
    whileExhausted([&] { logger.logMethodEntry(lost.c_str()); });
    logger.logMethodEntry("inside");
    logger.setDetailLevel(1); // so the end of the temporary Logger writes no closing line
    Logger nameless;
    whileExhausted([&] { nameless = Logger(logger); });
    logger.setDetailLevel(4);
    nameless.setDetailLevel(4);
    for (int exit = 0; exit < 4; ++exit)
        nameless.logMethodExit(exit);
    logger.logMethodExit(1);
    logger.logMethodExit("x");
    logger.logMethodEntry("again");
    logger.logMethodExit();
    logger.logMethodExit();
    {
        MethodLogger tracer;
        tracer.setMethodName("f");
        tracer.setReturn(lost.c_str());
        whileExhausted([&] { MethodLogger() = tracer; });
        tracer.setMethodName("g");
        const char* const result = lostResult.c_str();
        whileExhausted([&] { EXPECT_EQ(tracer.setReturn(result), result); });
    }
    whileExhausted([&] { logger.logMethodEntry(lost.c_str()); });
    logger.popAllMethods();
    logger.logMethodExit();
    EXPECT_EQ(log.finish(), "ENTERING kept \n  ENTERING " + lost +
                                " \n    ENTERING inside \n    EXITING  -- returning 0\n"
                                "  EXITING  -- returning 1\nEXITING  -- returning 2\n"
                                "    EXITING  -- returning 1\n  EXITING  -- returning x\n"
                                "  ENTERING again \n  EXITING again\nEXITING kept\n"
                                "ENTERING f \nEXITING f\nENTERING g \nEXITING g\nENTERING " +
                                lost + " \n");
}

// Logging starts once in a process, so each allocation needs a test of its own.
class ExhaustedMemoryAtStart : public ExhaustedMemory, public testing::WithParamInterface<long> {};

TEST_P(ExhaustedMemoryAtStart, LoggingIsOnOrOff) {
    const test_host::TemporaryDirectory directory;
    const std::string file = directory / "a name that is long enough to be allocated.log";
    test_host::setEnvironment("TOR_KEL_LOGFILE", file);
    test_host::setEnvironment("TOR_KEL_LOGDETAIL", "2");
    test_host::writeFile(file, "kept");
    {
        const FailingNew noMemory(GetParam(), Failure::single);
        logger.startLogging();
    }
    const bool on = logger.shouldPrintLog(2);
    EXPECT_TRUE(on || FailingNew::failed());
    logger.printLog(1, "alive\n");
    logger.endLogging();
    const std::string text = test_host::readWholeFile(file);
    EXPECT_EQ(text.find("\nalive\n----- Logging Ended - ") != std::string::npos, on) << text;
    EXPECT_EQ(text == "kept", !on);
}

INSTANTIATE_TEST_SUITE_P(Allocation, ExhaustedMemoryAtStart, testing::Range(0L, 12L));

} // namespace
