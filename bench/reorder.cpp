// SPDX-License-Identifier: MIT
//
// Realignment after a dropped bit count, mirroring of bits within bytes, reversal of bytes; in
// place.
#include "peers.h"
#include "row.h"

#include "KelRT/Kel_ByteBuffer.h"

#include <algorithm>
#include <cstring>

using namespace bench;

namespace {

constexpr int SHIFT = 3;

struct Size {
    const char* name;
    std::size_t bytes;
};
constexpr Size SIZES[] = {{"64 B", 64}, {"4 KiB", 4096}, {"1 MiB", 1 << 20}};

KelRT::Kel_ByteBuffer bufferOf(const Bytes& bytes) {
    return {bytes.data(), bytes.size(), 0, 0};
}

std::string bufferText(KelRT::Kel_ByteBuffer& buffer) {
    return {buffer.ptr(), buffer.ptr() + buffer.getSize()};
}

struct Copy {
    Bytes from, to;
    void run() {
        std::memcpy(to.data(), from.data(), from.size());
        benchmark::DoNotOptimize(to.data());
    }
};

#ifdef HAVE_GMP
using Limbs = std::vector<mp_limb_t>;
Limbs limbsOf(const Bytes& bytes) {
    Limbs limbs(bytes.size() / sizeof(mp_limb_t));
    std::memcpy(limbs.data(), bytes.data(), bytes.size());
    return limbs;
}
std::string limbText(const Limbs& limbs) {
    const auto* const bytes = reinterpret_cast<const char*>(limbs.data());
    return {bytes, bytes + limbs.size() * sizeof(mp_limb_t)};
}
#endif

#ifdef HAVE_LLVM
llvm::APInt apIntOf(const Bytes& bytes) {
    std::vector<std::uint64_t> words(bytes.size() / 8);
    std::memcpy(words.data(), bytes.data(), bytes.size());
    return {static_cast<unsigned>(bytes.size() * 8), words};
}
std::string apIntText(const llvm::APInt& value) {
    const auto* const bytes = reinterpret_cast<const char*>(value.getRawData());
    return {bytes, bytes + value.getBitWidth() / 8};
}
#endif

void shiftRows(const Size& size, const Bytes& bytes) {
    Row row("shift", "by 3 bits", size.name);
    row.add("KelUtil", Contender{bufferOf(bytes),
                                 [](auto& buffer) {
                                     buffer.shiftBitsDown(SHIFT);
                                     benchmark::DoNotOptimize(buffer.uPtr());
                                 },
                                 [](auto& buffer) { return bufferText(buffer); }});
#ifdef HAVE_GMP
    row.add("mpn_rshift", Contender{limbsOf(bytes),
                                    [](Limbs& limbs) {
                                        mpn_rshift(limbs.data(), limbs.data(),
                                                   static_cast<mp_size_t>(limbs.size()), SHIFT);
                                    },
                                    limbText});
#else
    row.missing("mpn_rshift");
#endif
#ifdef HAVE_LLVM
    row.add("APInt",
            Contender{apIntOf(bytes), [](auto& value) { value.lshrInPlace(SHIFT); }, apIntText});
#else
    row.missing("APInt");
#endif
    row.limit(Copy{bytes, bytes});
}

void mirrorRows(const Size& size, const Bytes& bytes) {
    Row row("mirror", "bits in bytes", size.name);
    row.add("KelUtil",
            Contender{bufferOf(bytes), [](auto& buffer) { buffer.swapBitOrderWithinEachByte(); },
                      [](auto& buffer) { return bufferText(buffer); }});
#ifdef HAVE_LLVM
    row.add("LLVM", Contender{bytes,
                              [](Bytes& own) {
                                  for (auto& byte : own)
                                      byte = llvm::reverseBits(byte);
                                  benchmark::DoNotOptimize(own.data());
                              },
                              [](Bytes& own) { return textOf(own); }});
#else
    row.missing("LLVM");
#endif
    row.limit(Copy{bytes, bytes});
}

void reverseRows(const Size& size, const Bytes& bytes) {
    Row row("reversal", "bytes", size.name);
    row.add("KelUtil", Contender{bufferOf(bytes),
                                 [](auto& buffer) { buffer.swapByteOrder(0, buffer.getSize()); },
                                 [](auto& buffer) { return bufferText(buffer); }});
    row.add("std::reverse", Contender{bytes,
                                      [](Bytes& own) {
                                          std::reverse(own.begin(), own.end());
                                          benchmark::DoNotOptimize(own.data());
                                      },
                                      [](Bytes& own) { return textOf(own); }});
#ifdef HAVE_LLVM
    row.add("APInt",
            Contender{apIntOf(bytes), [](auto& value) { value = value.byteSwap(); }, apIntText});
#else
    row.missing("APInt");
#endif
    row.limit(Copy{bytes, bytes});
}

} // namespace

int main(int argc, char** argv) {
    for (const Size& size : SIZES) {
        const Bytes bytes = randomBytes(size.bytes);
        shiftRows(size, bytes);
        mirrorRows(size, bytes);
        reverseRows(size, bytes);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
