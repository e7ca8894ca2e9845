// SPDX-License-Identifier: MIT
//
// Measures the realignment after bits were dropped, the mirroring of the bits in each byte, and the
// reversal of the bytes. All work in place.
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

void shiftRows(const Size& size, const Bytes& bytes) {
    Row row("shift", "by 3 bits", size.name);
    row.add("KelUtil", Contender{bufferOf(bytes),
                                 [](auto& buffer) {
                                     buffer.shiftBitsDown(SHIFT);
                                     benchmark::DoNotOptimize(buffer.uPtr());
                                 },
                                 [](auto& buffer) { return bufferText(buffer); }});
    row.addPeer<peers::Gmp>("mpn_rshift", [&](auto gmp) {
        return Contender{gmp.limbsOf(bytes), [gmp](auto& limbs) { gmp.shiftDown(limbs, SHIFT); },
                         [gmp](auto& limbs) { return gmp.text(limbs); }};
    });
    row.addPeer<peers::Llvm>("APInt", [&](auto llvm) {
        using Bits = typename decltype(llvm)::Bits;
        return Contender{Bits(bytes), [](auto& bits) { bits.shiftDown(SHIFT); },
                         [](auto& bits) { return bits.text(); }};
    });
    row.limit(Copy{bytes, bytes});
}

void mirrorRows(const Size& size, const Bytes& bytes) {
    Row row("mirror", "bits in bytes", size.name);
    row.add("KelUtil",
            Contender{bufferOf(bytes), [](auto& buffer) { buffer.swapBitOrderWithinEachByte(); },
                      [](auto& buffer) { return bufferText(buffer); }});
    row.addPeer<peers::Llvm>("LLVM", [&](auto llvm) {
        return Contender{bytes,
                         [llvm](Bytes& own) {
                             for (auto& byte : own)
                                 byte = llvm.mirror(byte);
                             benchmark::DoNotOptimize(own.data());
                         },
                         [](Bytes& own) { return textOf(own); }};
    });
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
    row.addPeer<peers::Llvm>("APInt", [&](auto llvm) {
        using Bits = typename decltype(llvm)::Bits;
        return Contender{Bits(bytes), [](auto& bits) { bits.reverseBytes(); },
                         [](auto& bits) { return bits.text(); }};
    });
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
    return runAll(argc, argv);
}
