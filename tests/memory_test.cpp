// SPDX-License-Identifier: MIT
//
// Exhausted memory: every operation that allocates is run again and again, each time with another
// one of its allocations refused. It completes, or throws std::bad_alloc and leaves its object as
// it was. The leak checker of the sanitized build watches.
#include "KelRT/Kel_ByteBuffer.h"
#include "KelRT/Kel_Exception.h"
#include "KelRT/Kel_Number.h"
#include "KelRT/Kel_NumberUtil.h"
#include "KelRT/Kel_StrTok.h"
#include "KelRT/Kel_Util.h"
#include "KelRT/MethodLogger.h"
#include "KelRT/Version.h"

#include "failing_new.h"
#include "models/log_model.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <vector>

using namespace KelRT;
using Util = Kel_NumberUtil;
using test::FailingNew;
using test::Refusal;

namespace {

class ExhaustedMemory : public testing::Test {
protected:
    void SetUp() override {
        if (!test::failingNewReachesTheLibrary())
            GTEST_SKIP() << "a program's operator new does not reach into a DLL";
    }
};

/// Runs \a attempt(refusal, n) for n = 0, 1, ... until no allocation was refused any more.
template <typename Attempt>
void forEveryAllocation(const std::string& name, long atLeast, Attempt attempt) {
    for (const Refusal refusal : {Refusal::from, Refusal::only}) {
        SCOPED_TRACE(name + (refusal == Refusal::only ? ", only" : ", from"));
        long n = 0;
        while (attempt(refusal, n) && n < 10000)
            ++n;
        EXPECT_GE(n, atLeast);
        EXPECT_LT(n, 10000);
    }
}

template <typename State>
using Operation = std::pair<const char*, std::function<void(State&)>>;

/// \a kept tells what of a state an operation that throws may not change.
template <typename State>
void exhaust(const std::function<std::unique_ptr<State>()>& fresh,
             const std::function<std::string(State&)>& kept,
             const std::vector<Operation<State>>& operations) {
    for (const auto& [name, run] : operations)
        forEveryAllocation(name, 1, [&, &operation = run](Refusal refusal, long n) {
            const auto state = fresh();
            const std::string before = kept(*state);
            bool thrown = false;
            {
                const FailingNew noMemory(n, refusal);
                try {
                    operation(*state);
                } catch (const std::bad_alloc&) {
                    thrown = true;
                }
            }
            EXPECT_EQ(thrown, FailingNew::refused()) << n;
            if (thrown) {
                EXPECT_EQ(kept(*state), before) << n;
            }
            return thrown;
        });
}

struct Buffers {
    Kel_ByteBuffer text{reinterpret_cast<const unsigned char*>("A54321"), 7, 1, 1};
    Kel_ByteBuffer target{reinterpret_cast<const unsigned char*>("kept"), 4, 0, 0};
};

std::string contentOf(Kel_ByteBuffer& buffer) {
    return {buffer.ptr(), buffer.getSize()};
}

TEST_F(ExhaustedMemory, BuffersKeepTheirBlocks) {
    using Own = std::unique_ptr<Kel_ByteBuffer>;
    exhaust<Buffers>(
        [] { return std::make_unique<Buffers>(); },
        [](Buffers& b) { return contentOf(b.text) + contentOf(b.target); },
        {
            {"construction", [](auto&) { const Kel_ByteBuffer made(3, 1, 1); }},
            {"from bytes", [](auto&) { const Kel_ByteBuffer made({}, 0, 1, 1); }},
            {"copy", [](auto& b) { const Kel_ByteBuffer copy(b.text); }},
            {"assignment", [](auto& b) { b.target = b.text; }},
            {"init", [](auto& b) { b.target.init(9, 1, 1); }},
            {"insert low", [](auto& b) { b.text.insertBytes(0, 2); }},
            {"insert high", [](auto& b) { b.text.insertBytes(7, 2); }},
            {"text", [](auto& b) { b.text.bin2HexString(0, b.target); }},
            {"own text", [](auto& b) { b.text.bin2HexString(0, b.text); }},
            {"new text", [](auto& b) { const Own made(b.text.bin2HexString(0)); }},
            {"cut text", [](auto& b) { const Own made(b.text.bin2HexString(0, 9)); }},
            {"bytes", [](auto& b) { b.text.hex2Bin(0, 5, b.target); }},
            {"own bytes", [](auto& b) { b.text.hex2Bin(0, 5, b.text); }},
            {"new bytes", [](auto& b) { const Own made(b.text.hex2Bin(0, 5)); }},
            {"mirrored", [](auto& b) { Kel_ByteBuffer::hex2BinReverse("A5", b.target); }},
            {"new mirrored", [](auto&) { const Own made(Kel_ByteBuffer::hex2BinReverse("A5")); }},
        });
}

struct Numbers {
    Kel_Number narrow{40};
    Kel_Number wide{16000};
};

TEST_F(ExhaustedMemory, NumbersKeepTheirValues) {
    exhaust<Numbers>(
        [] {
            auto made = std::make_unique<Numbers>();
            made->narrow.set('d', "-12345");
            made->wide.set('x', std::string(4000, '7'));
            return made;
        },
        [](Numbers& n) { return n.narrow.toString('x') + ' ' + n.wide.toString('x'); },
        {
            {"construction", [](auto&) { const Kel_Number made(3000); }},
            {"assignment", [](auto& n) { n.narrow = n.wide; }},
            {"wide decimal",
             [digits = std::string(800, '9')](auto& n) { EXPECT_TRUE(n.wide.set('d', digits)); }},
            {"very wide decimal",
             [digits = std::string(4800, '9')](auto& n) { EXPECT_TRUE(n.wide.set('d', digits)); }},
            {"bits", [](auto& n) { static_cast<void>(n.narrow.toString('b')); }},
            {"characters", [](auto& n) { static_cast<void>(n.wide.toString('s')); }},
            {"decimal", [](auto& n) { static_cast<void>(n.wide.toString('d')); }},
            {"scaled", [](auto& n) { static_cast<void>(n.narrow.toFloatString(1, 0, 40)); }},
        });
}

TEST_F(ExhaustedMemory, ConvertersLeaveTheOutputEmptyOrWhole) {
    const std::string bits(100, '1');
    const unsigned char array[100] = {};
    const auto state = [] { return std::make_unique<std::string>(); };
    exhaust<std::string>(
        state, [](std::string& out) { return out; },
        {
            {"binStr2HexStr", [&](auto& out) { Util::binStr2HexStr(bits.c_str(), out); }},
            {"hexStr2BinStr", [&](auto& out) { Util::hexStr2BinStr(bits.c_str(), 300, out); }},
            {"bin2ReverseBinStr", [&](auto& out) { Util::bin2ReverseBinStr(array, 800, out); }},
            {"uInt2BinStr", [](auto& out) { Util::uInt2BinStr(5, 32, out); }},
            {"uInt2HexStr", [](auto& out) { Util::uInt2HexStr(5, 400, out); }},
            {"uLL2DecStr", [](auto& out) { Util::uLL2DecStr(0x7FFFFFFFFFFFFFFF, out); }},
            {"double2Str", [](auto& out) { Util::double2Str(1e300, out); }},
        });
}

struct Files {
    test_host::TemporaryDirectory directory;
    test_host::CurrentDirectory current{directory.path()};
    test_host::Variable home{"USERPROFILE", directory.path()};
    test_host::Variable searchPath{"PATH", "/nowhere/at/all:" + directory / "a long name of one"};
    test_host::Variable dataDir{"TOR_KEL_DATADIR"};
    Kel_Exception message{"kept"};
    std::vector<std::string> list{"kept", "and this one is longer than what fits inside"};
};

TEST_F(ExhaustedMemory, FilesAndTextsKeepWhatTheyWereGiven) {
    const std::string blank(60, ' ');
    const std::string word(60, 'w');
    const std::string text = blank + word + blank;
    const Kel_Exception longer(text);
    Kel_Util::setUserDataDirPath("kept");
    {
        const FailingNew noMemory;
        EXPECT_THROW(Kel_Util::setUserDataDirPath(text), std::bad_alloc);
    }
    EXPECT_EQ(Kel_Util::getDataDirPath(), Kel_Util::normalizePath("kept/"));
    exhaust<Files>(
        [] {
            auto made = std::make_unique<Files>();
            const std::string place = made->directory / "a long name of one";
            std::filesystem::create_directory(place);
            test_host::writeFile(test_host::below(place, "libKelCore.so"));
            return made;
        },
        [](Files& f) {
            const bool made = test_host::opens(f.directory / ".kel/a trace beside the others0");
            return f.message.what() + f.list[0] + f.list[1] + Kel_Util::getDataDirPath() +
                   (made ? "made" : "");
        },
        {
            {"getHomePath", [](auto&) { Kel_Util::getHomePath(); }},
            {"user directory", [](auto&) { Kel_Util::createDotLumatraceDir(); }},
            {"temporary file", [name = std::string("a trace beside the others")](
                                   auto&) { Kel_Util::createDotLumatraceTempFile(name); }},
            {"findLibInPath",
             [&, name = std::string("libKelCore")](auto&) { Kel_Util::findLibInPath(name); }},
            {"getSorvaDataDirPath", [&](auto&) { Kel_Util::getSorvaDataDirPath(); }},
            {"getDataDirPath", [](auto&) { Kel_Util::getDataDirPath(); }},
            {"normalizePath", [&](auto&) { Kel_Util::normalizePath(word); }},
            {"getDirectoryFileList",
             [](auto& f) { Kel_Util::getDirectoryFileList(".", true, f.list); }},
            {"getLocalizedPortMsg",
             [](auto&) { Kel_Util::getLocalizedPortMsg(L"a message longer than a short text"); }},
            {"trimWhitespace", [&](auto&) { EXPECT_EQ(Kel_Util::trimWhitespace(text), word); }},
            {"findKey",
             [&](auto& f) {
                 char argument[] = "key=a value longer than what fits inside a string";
                 char* const arguments[] = {argument};
                 Kel_Util::findKey(1, const_cast<char**>(arguments), "key");
                 Kel_Util::findKey(f.list, "key");
             }},
            {"tokenizer",
             [&](auto&) { EXPECT_NE(Kel_StrTok(text.c_str(), " ", 0, 0, 0).getNext(), nullptr); }},
            {"exception",
             [&](auto&) {
                 const Kel_Exception first(text);
                 const Kel_Exception second(first);
                 EXPECT_EQ(second.what(), text);
             }},
            {"exception is kept", [&](auto& f) { f.message = longer; }},
        });
}

// A text is never handed out in part: a query that threw is simply made again.
TEST_F(ExhaustedMemory, VersionTextsAreWholeOrUnfilled) {
    long n = 0;
    for (bool thrown = true; thrown; ++n) {
        thrown = false;
        const FailingNew noMemory(n, Refusal::only);
        try {
            static_cast<void>(getVersionWithBuildNumber());
        } catch (const std::bad_alloc&) {
            thrown = true;
        }
    }
    EXPECT_GE(n, 2);
    EXPECT_EQ(std::string(getVersionWithBuildNumber()),
              std::string(getVersion()) + " - Compiled " + getBuildNumber());
    EXPECT_EQ(std::string(getVersion()).find(getVersionNumber()), 0U);
}

TEST_F(ExhaustedMemory, LoggingNeverThrowsAndKeepsItsIndentation) {
    const model::LogFile log;
    Logger::logger.setDetailLevel(4);
    const std::string name(40, 'n');
    const std::vector<unsigned char> bytes(100, 0xA5);
    forEveryAllocation("logging", 2, [&](Refusal refusal, long n) {
        const FailingNew noMemory(n, refusal);
        // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): a false alarm, it refers to the
        // global.
        Logger::logger.logMethodEntry(name.c_str(), "%s", name.c_str());
        Logger::logger.printLog(1, "%s\n", name.c_str());
        Logger::logger.dumpBuffer(1, name.c_str(), bytes.data(), 800);
        Logger::logger.logMethodEntry(name.c_str());
        Logger::logger.logMethodExit(name.c_str());
        Logger::logger.logMethodExit(7);
        {
            MethodLogger tracer;
            tracer.setReturn(name.c_str());
        }
        Logger::logger.printLog(1, "alive %ld\n", n);
        return FailingNew::refused();
    });
    const std::string text = log.finish();
    EXPECT_NE(text.find("\nalive 0\n"), std::string::npos); // at depth 0
    EXPECT_NE(text.find("\nalive 1\n"), std::string::npos);
    EXPECT_EQ(text.find(" alive"), std::string::npos);
}

// Logging starts once in a process, so each allocation has a case of its own.
class ExhaustedMemoryAtStart : public ExhaustedMemory, public testing::WithParamInterface<long> {};

TEST_P(ExhaustedMemoryAtStart, LoggingIsOnOrOff) {
    const test_host::TemporaryDirectory directory;
    const std::string file = directory / "a name that is long enough to be allocated.log";
    test_host::setEnvironment("TOR_KEL_LOGFILE", file);
    test_host::setEnvironment("TOR_KEL_LOGDETAIL", "2");
    Logger& logger = Logger::logger;
    {
        const FailingNew noMemory(GetParam(), Refusal::only);
        logger.startLogging();
    }
    const bool on = logger.shouldPrintLog(2);
    EXPECT_EQ(on, test_host::opens(file));
    EXPECT_TRUE(on || FailingNew::refused());
    logger.printLog(1, "alive\n");
    logger.endLogging();
    const std::string text = test_host::readWholeFile(file);
    EXPECT_EQ(text.find("\nalive\n----- Logging Ended - ") != std::string::npos, on) << text;
}

INSTANTIATE_TEST_SUITE_P(Allocation, ExhaustedMemoryAtStart, testing::Range(0L, 12L));

} // namespace
