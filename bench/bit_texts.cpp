// SPDX-License-Identifier: MIT
//
// Measures conversions between bytes, texts of '0' and '1', and hexadecimal text. Every conversion
// writes into an existing string or array. The library puts bit 0 first and the peers put it last.
// To make the same texts, the peers get the bits in the opposite order.
#include "peers.h"
#include "row.h"

#include "KelRT/Kel_NumberUtil.h"

#include <algorithm>
#include <bitset>
#include <cstring>

using namespace bench;
using KelRT::Kel_NumberUtil;

namespace {

/// Returns the bits in the opposite order.
Bytes mirrored(Bytes bytes) {
    std::reverse(bytes.begin(), bytes.end());
    for (auto& byte : bytes)
        for (unsigned i = 0, old = std::exchange(byte, static_cast<unsigned char>(0)); i < 8; ++i)
            byte = static_cast<unsigned char>(byte | (old >> i & 1) << (7 - i));
    return bytes;
}

struct State {
    explicit State(std::size_t bits) : bytes(randomBytes(bits / 8)), bytesOut(bytes.size()) {
        bytes.front() |= 1; // GMP would not print leading zeros
        for (std::size_t i = 0; i < bits; ++i)
            text += (bytes[i / 8] >> i % 8 & 1) != 0 ? '1' : '0';
        forPeers = mirrored(bytes);
        for (std::size_t i = forPeers.size(); i-- > 0;) {
            hex += "0123456789ABCDEF"[forPeers[i] >> 4];
            hex += "0123456789ABCDEF"[forPeers[i] & 15];
        }
    }
    Bytes bytes;
    Bytes forPeers;   // the bits in the opposite order
    std::string text; // the bits, bit 0 first
    std::string hex;  // the same number, in hexadecimal
    std::string out;
    Bytes bytesOut;
};

std::string madeText(State& own) {
    return own.out;
}
std::string madeBytes(State& own) {
    return textOf(own.bytesOut);
}
std::string peersBytes(State& own) {
    return textOf(mirrored(own.bytesOut));
}

/// Adds GMP as a contender: \a work gets the state and an integer of GMP.
template <typename Work, typename Result>
void addGmp(Row& row, const State& state, Work work, Result result) {
    row.addPeer<peers::Gmp>("GMP", [&](auto gmp) {
        using Integer = typename decltype(gmp)::Integer;
        return Contender{std::pair{state, Integer()},
                         [work](auto& own) { work(own.first, own.second); },
                         [result](auto& own) { return result(own.first); }};
    });
}

void bitsToHexRow(const char* size, const State& state) {
    Row row("bit texts", "bits to hexadecimal", size);
    row.add("KelUtil",
            Contender{state,
                      [](State& own) { Kel_NumberUtil::binStr2HexStr(own.text.c_str(), own.out); },
                      madeText});
    const auto work = [](State& own, auto& integer) {
        integer.read(own.text, 2);
        integer.print(own.out, -16);
    };
    addGmp(row, state, work, madeText);
    row.limit(copying(state.hex));
}

void hexToBitsRow(const char* size, const State& state) {
    Row row("bit texts", "hexadecimal to bits", size);
    row.add("KelUtil", Contender{state,
                                 [](State& own) {
                                     const auto bits = static_cast<std::uint32_t>(own.text.size());
                                     Kel_NumberUtil::hexStr2BinStr(own.hex.c_str(), bits, own.out);
                                 },
                                 madeText});
    const auto work = [](State& own, auto& integer) {
        integer.read(own.hex, 16);
        integer.print(own.out, 2);
    };
    addGmp(row, state, work, madeText);
    row.limit(copying(state.text));
}

void bytesToBitsRow(const char* size, const State& state) {
    Row row("bit texts", "bytes to bits", size);
    row.add("KelUtil", Contender{state,
                                 [](State& own) {
                                     const auto bits = static_cast<std::uint32_t>(own.text.size());
                                     Kel_NumberUtil::bin2ReverseBinStr(own.bytes.data(), bits,
                                                                       own.out);
                                 },
                                 madeText});
    const auto work = [](State& own, auto& integer) {
        integer.read(own.forPeers);
        integer.print(own.out, 2);
    };
    addGmp(row, state, work, madeText);
    row.addPeer<peers::Boost>("dynamic_bitset", [&](auto boost) {
        return Contender{state, [boost](State& own) { boost.printBits(own.forPeers, own.out); },
                         madeText};
    });
    if (state.text.size() == 64) // std::bitset converts from at most 64 bits
        row.add("std::bitset", Contender{state,
                                         [](State& own) {
                                             std::uint64_t bits = 0;
                                             std::memcpy(&bits, own.forPeers.data(), sizeof bits);
                                             own.out = std::bitset<64>(bits).to_string();
                                         },
                                         madeText});
    row.limit(copying(state.text));
}

void bitsToBytesRow(const char* size, const State& state) {
    Row row("bit texts", "bits to bytes", size);
    row.add("KelUtil", Contender{state,
                                 [](State& own) {
                                     Kel_NumberUtil::reverseBinStr2Bin(own.text.c_str(),
                                                                       own.bytesOut.data());
                                 },
                                 madeBytes});
    const auto work = [](State& own, auto& integer) {
        integer.read(own.text, 2);
        integer.write(own.bytesOut);
    };
    addGmp(row, state, work, peersBytes);
    row.addPeer<peers::Boost>("dynamic_bitset", [&](auto boost) {
        return Contender{state, [boost](State& own) { boost.parseBits(own.text, own.bytesOut); },
                         peersBytes};
    });
    if (state.text.size() == 64)
        row.add("std::bitset", Contender{state,
                                         [](State& own) {
                                             const std::uint64_t bits =
                                                 std::bitset<64>(own.text).to_ullong();
                                             std::memcpy(own.bytesOut.data(), &bits, sizeof bits);
                                         },
                                         peersBytes});
    row.limit(copying(textOf(state.bytes)));
}

} // namespace

int main(int argc, char** argv) {
    for (const auto& [name, bits] :
         {std::pair<const char*, std::size_t>{"64 b", 64}, {"1024 b", 1024}}) {
        const State state(bits);
        bitsToHexRow(name, state);
        hexToBitsRow(name, state);
        bytesToBitsRow(name, state);
        bitsToBytesRow(name, state);
    }
    return runAll(argc, argv);
}
