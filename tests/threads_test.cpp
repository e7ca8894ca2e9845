// SPDX-License-Identifier: MIT
//
// Distinct objects in eight threads at a time. The build with the thread checker watches.
#include "KelRT/Kel_ByteBuffer.h"
#include "KelRT/Kel_Exception.h"
#include "KelRT/Kel_Number.h"
#include "KelRT/Kel_NumberUtil.h"
#include "KelRT/Kel_StrTok.h"
#include "KelRT/Kel_Util.h"
#include "KelRT/Version.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

using namespace KelRT;

namespace {

/// What one thread makes of a seed, through objects of its own and every stateless function.
std::string work(unsigned seed) {
    std::string out;
    std::string all = getVersionWithBuildNumber();
    Kel_ByteBuffer buffer(reinterpret_cast<const unsigned char*>("\x12\x34\x56\x78\x9A"), 5, 0, 0);
    buffer.setBitsLL(seed % 7, 30, std::uint64_t{0x2468ACE1} * seed);
    buffer.shiftBitsDown(3);
    buffer.insertBytes(2, seed % 3);
    buffer.swapBitOrderWithinEachByte();
    const std::unique_ptr<Kel_ByteBuffer> text(buffer.bin2HexString(0));
    all += text->ptr();
    Kel_Number number(700);
    number.set('x', text->ptr() + std::string(90, '7'));
    number.negate();
    for (const char radix : std::string("bodusX"))
        all += number.toString(radix);
    Kel_Number scaled(64);
    scaled.setFloat(std::to_string(seed).append(".5"), 0.25, 1.0);
    all += scaled.toFloatString(0.25, 1.0, 3);
    all += Kel_NumberUtil::uLL2DecStr(Kel_NumberUtil::hexStr2UInt(text->ptr()), out);
    all += Kel_NumberUtil::hexStr2BinStr(text->ptr(), 30, out);
    all += Kel_NumberUtil::double2Str(seed / 3.0, out);
    Kel_StrTok tokens("A,\"b,c\",,d,", Kel_StrTok::CSV_DELIM, true, true, true);
    while (const char* const token = tokens.getNext())
        all.append(token).append(1, '|');
    std::vector<std::string> entries{"a=1", std::string("key=").append(std::to_string(seed))};
    all += Kel_Util::trimWhitespace(Kel_Util::findKey(entries, "KEY").append(" \n"));
    all += Kel_Util::normalizePath("x/../y") + Kel_Util::getLocalizedPortMsg(L"message");
    try {
        Kel_Util::getDirectoryFileList("missing", true, entries);
    } catch (const Kel_Exception& exception) {
        all += exception.what();
    }
    return all;
}

TEST(Threads, DistinctObjectsAreIndependent) {
    constexpr unsigned THREADS = 8;
    constexpr unsigned ROUNDS = 50;
    std::atomic<unsigned> waiting{THREADS};
    std::array<std::vector<std::string>, THREADS> seen;
    std::array<std::thread, THREADS> threads;
    for (unsigned i = 0; i < THREADS; ++i)
        threads[i] = std::thread([&waiting, &mine = seen[i], i] {
            --waiting;
            while (waiting != 0)
                std::this_thread::yield();
            for (unsigned round = 0; round < ROUNDS; ++round)
                mine.push_back(work(i + round));
        });
    for (auto& thread : threads)
        thread.join();
    for (unsigned i = 0; i < THREADS; ++i)
        for (unsigned round = 0; round < ROUNDS; ++round)
            ASSERT_EQ(seen[i][round], work(i + round)) << i << ' ' << round;
}

} // namespace
