// SPDX-License-Identifier: MIT
//
// Lets each allocation of every operation fail in turn. The operation must either complete, or
// throw std::bad_alloc and leave its object unchanged. The sanitized build also checks for leaks.
// In fuzz/log.cpp, memory is exhausted while a Logger is in use.
#include "KelRT/Kel_ByteBuffer.h"
#include "KelRT/Kel_Exception.h"
#include "KelRT/Kel_Number.h"
#include "KelRT/Kel_NumberUtil.h"
#include "KelRT/Kel_StrTok.h"
#include "KelRT/Kel_Util.h"
#include "KelRT/Logger.h"
#include "KelRT/Version.h"

#include "support/failing_new.h"
#include "support/host.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <memory>
#include <new>
#include <string>
#include <vector>

using namespace KelRT;
using Util = Kel_NumberUtil;
using test::FailingNew;
using test::Failure;

namespace {

class ExhaustedMemory : public testing::Test {
protected:
    void SetUp() override {
        if (!test::failingNewReachesTheLibrary())
            GTEST_SKIP() << "a program's operator new does not reach into a DLL";
    }
};

using Own = std::unique_ptr<Kel_ByteBuffer>;

constexpr unsigned char BYTES[100] = {};

/// Holds the arguments of the operations. A shift by 4 bits is pending in `text`. An operation that
/// searches for a library finds it in a directory that the test has put in PATH.
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
        text.shiftBitsDown(4);
    }
    /// Returns true if `text` has been realigned. Otherwise a shift by 4 bits is still pending, and
    /// another one by 4 bits drops a byte.
    [[nodiscard]] bool isRealigned() const {
        Kel_ByteBuffer copy(text);
        copy.shiftBitsDown(4);
        return copy.getSize() == text.getSize();
    }
    /// Realigns `text`. Returns, as one text, what an operation must not change if it throws.
    std::string kept() {
        const std::filesystem::directory_iterator made(".kel");
        return std::string(text.ptr(), static_cast<std::size_t>(text.getSize())) +
               std::string(target.ptr(), static_cast<std::size_t>(target.getSize())) +
               narrow.toString('x') + wide.toString('x') + vast.toString('x') + message.what() +
               list[0] + list.back() + out + Kel_Util::getDataDirPath() +
               std::to_string(std::distance(begin(made), end(made)));
    }
};

constexpr struct Operation {
    const char* name;
    void (*run)(State& s);
    bool realigns = false; // true if it realigns `text`, even if it throws
} OPERATIONS[] = {
    {"buffer", [](State&) { const Kel_ByteBuffer made(3, 1, 1); }},
    {"buffer of bytes", [](State&) { const Kel_ByteBuffer made({}, 0, 1, 1); }},
    {"buffer copy", [](State& s) { const Kel_ByteBuffer copy(s.text); }},
    {"buffer assignment", [](State& s) { s.target = s.text; }},
    {"init", [](State& s) { s.target.init(9, 1, 1); }},
    {"insert low", [](State& s) { s.text.insertBytes(0, 2); }, true},
    {"insert high", [](State& s) { s.text.insertBytes(7, 2); }, true},
    {"hex text", [](State& s) { s.text.bin2HexString(0, s.target); }, true},
    {"own hex text", [](State& s) { s.text.bin2HexString(0, s.text); }, true},
    {"new text", [](State& s) { const Own made(s.text.bin2HexString(0)); }, true},
    {"cut text", [](State& s) { const Own made(s.text.bin2HexString(0, 9)); }, true},
    {"bytes", [](State& s) { s.text.hex2Bin(0, 5, s.target); }, true},
    {"own bytes", [](State& s) { s.text.hex2Bin(0, 5, s.text); }, true},
    {"new bytes", [](State& s) { const Own made(s.text.hex2Bin(0, 5)); }, true},
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

/// Runs an operation whose allocation \a n, counted from 0, fails. Returns true if it has thrown.
/// Expects that it throws if and only if an allocation has failed, and that it then changes
/// nothing.
bool throwsAt(long n, Failure failure, const Operation& operation) {
    const std::string before = State().kept();
    State state;
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
    if (thrown) {
        EXPECT_EQ(state.isRealigned(), operation.realigns) << n;
        EXPECT_EQ(state.kept(), before) << n;
    }
    return thrown;
}

TEST_F(ExhaustedMemory, OperationsCompleteOrThrowAndChangeNothing) {
    const test_host::TemporaryDirectory directory;
    const test_host::CurrentDirectory current(directory.path());
    const test_host::Variable home("USERPROFILE", directory.path());
    const std::string place = directory / "a long name of one";
    const test_host::Variable searchPath("PATH", "/nowhere/at/all:" + place);
    const test_host::Variable dataDir("TOR_KEL_DATADIR");
    std::filesystem::create_directory(place);
    for (const std::string& name : {std::string("libKelCore"), State().word})
        test_host::writeFile(test_host::below(place, name + ".so"));
    Kel_Util::createDotLumatraceDir();
    Kel_Util::setUserDataDirPath("kept");

    for (const auto& operation : OPERATIONS) {
        SCOPED_TRACE(operation.name);
        long failures = 0;
        for (const Failure failure : {Failure::persistent, Failure::single})
            for (long n = 0; n < 10000 && throwsAt(n, failure, operation); ++n)
                ++failures;
        // The 19 digits of uLL2DecStr fit in a string of libc++ without an allocation.
        const bool fits =
            operation.name == std::string("uLL2DecStr") && std::string().capacity() >= 19;
        EXPECT_GE(failures, fits ? 0 : 1);
        EXPECT_LT(failures, 10000);
    }
    // Failures have interrupted the composition of the version texts. None may be incomplete now.
    EXPECT_EQ(std::string(getVersionWithBuildNumber()),
              std::string(getVersion()) + " - Compiled " + getBuildNumber());
}

// Logging starts once in a process, so each allocation needs a test of its own.
class ExhaustedMemoryAtStart : public ExhaustedMemory, public testing::WithParamInterface<long> {};

TEST_P(ExhaustedMemoryAtStart, LoggingStartsOrLeavesTheFileAlone) {
    const test_host::TemporaryDirectory directory;
    const std::string file = directory / "a name that is long enough to be allocated.log";
    test_host::setEnvironment("TOR_KEL_LOGFILE", file);
    test_host::setEnvironment("TOR_KEL_LOGDETAIL", "2");
    test_host::writeFile(file, "kept");
    Logger& logger = Logger::logger;
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
