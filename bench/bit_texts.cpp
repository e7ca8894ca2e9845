// SPDX-License-Identifier: MIT
//
// Conversions between bytes, texts of '0' and '1' and hexadecimal text, into a string or an array
// that is given. In the texts of bytes the library puts bit 0 first and the peers put it last: they
// get and give the bits in the opposite order, which makes the texts the same.
#include "peers.h"
#include "row.h"

#include "KelRT/Kel_NumberUtil.h"

#include <algorithm>
#include <bitset>
#include <cstring>

using namespace bench;
using KelRT::Kel_NumberUtil;

namespace {

/// All bits in the opposite order.
Bytes mirrored(Bytes bytes) {
    std::reverse(bytes.begin(), bytes.end());
    for (auto& byte : bytes)
        for (unsigned i = 0, old = std::exchange(byte, static_cast<unsigned char>(0)); i < 8; ++i)
            byte = static_cast<unsigned char>(byte | (old >> i & 1) << (7 - i));
    return bytes;
}

struct State {
    explicit State(std::size_t bits) : bytes(randomBytes(bits / 8)), bytesOut(bytes.size()) {
        bytes.front() |= 1; // no leading zeros, which GMP would not print
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
    std::string hex;  // the text's number
    std::string out;
    Bytes bytesOut;
};

std::string madeText(State& own) {
    return own.out;
}
std::string madeBytes(State& own) {
    return textOf(own.bytesOut);
}
[[maybe_unused]] std::string peersBytes(State& own) {
    return textOf(mirrored(own.bytesOut));
}

#ifdef HAVE_GMP
struct Gmp {
    explicit Gmp(std::size_t bits) : state(bits) {}
    State state;
    mpz_class value;

    void readText(const std::string& text, int radix) {
        mpz_set_str(value.get_mpz_t(), text.c_str(), radix);
    }
    void readBytes() {
        mpz_import(value.get_mpz_t(), state.forPeers.size(), -1, 1, 0, 0, state.forPeers.data());
    }
    /// \param radix below 0 for upper-case letters
    void writeText(int radix) {
        state.out.resize(mpz_sizeinbase(value.get_mpz_t(), std::abs(radix)));
        mpz_get_str(state.out.data(), radix, value.get_mpz_t());
    }
    void writeBytes() {
        mpz_export(state.bytesOut.data(), nullptr, -1, 1, 0, 0, value.get_mpz_t());
    }
};
#endif

template <typename Work>
void addGmp([[maybe_unused]] Row& row, [[maybe_unused]] std::size_t bits,
            [[maybe_unused]] Work work) {
#ifdef HAVE_GMP
    row.add("GMP", Contender{Gmp(bits), work, [](Gmp& own) {
                                 return own.state.out.empty() ? peersBytes(own.state)
                                                              : madeText(own.state);
                             }});
#else
    row.missing("GMP");
#endif
}

void copyLimit(Row& row, const std::string& made) {
    row.limit(Contender{std::pair{made, made},
                        [](auto& own) {
                            std::memcpy(own.first.data(), own.second.data(), own.first.size());
                            benchmark::DoNotOptimize(own.first.data());
                        },
                        [](auto& own) { return own.first; }});
}

void bitsToHexRow(const char* size, const State& state) {
    Row row("bit texts", "bits to hexadecimal", size);
    row.add("KelUtil",
            Contender{state,
                      [](State& own) { Kel_NumberUtil::binStr2HexStr(own.text.c_str(), own.out); },
                      madeText});
    addGmp(row, state.text.size(), [](auto& own) {
        own.readText(own.state.text, 2);
        own.writeText(-16);
    });
    copyLimit(row, state.hex);
}

void hexToBitsRow(const char* size, const State& state) {
    Row row("bit texts", "hexadecimal to bits", size);
    row.add("KelUtil", Contender{state,
                                 [](State& own) {
                                     const auto bits = static_cast<std::uint32_t>(own.text.size());
                                     Kel_NumberUtil::hexStr2BinStr(own.hex.c_str(), bits, own.out);
                                 },
                                 madeText});
    addGmp(row, state.text.size(), [](auto& own) {
        own.readText(own.state.hex, 16);
        own.writeText(2);
    });
    copyLimit(row, state.text);
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
    addGmp(row, state.text.size(), [](auto& own) {
        own.readBytes();
        own.writeText(2);
    });
#ifdef HAVE_BOOST
    row.add("dynamic_bitset",
            Contender{state,
                      [](State& own) {
                          boost::to_string(boost::dynamic_bitset<unsigned char>(
                                               own.forPeers.begin(), own.forPeers.end()),
                                           own.out);
                      },
                      madeText});
#else
    row.missing("dynamic_bitset");
#endif
    if (state.text.size() == 64) // the widest integer that a std::bitset takes
        row.add("std::bitset", Contender{state,
                                         [](State& own) {
                                             std::uint64_t bits = 0;
                                             std::memcpy(&bits, own.forPeers.data(), sizeof bits);
                                             own.out = std::bitset<64>(bits).to_string();
                                         },
                                         madeText});
    copyLimit(row, state.text);
}

void bitsToBytesRow(const char* size, const State& state) {
    Row row("bit texts", "bits to bytes", size);
    row.add("KelUtil", Contender{state,
                                 [](State& own) {
                                     Kel_NumberUtil::reverseBinStr2Bin(own.text.c_str(),
                                                                       own.bytesOut.data());
                                 },
                                 madeBytes});
    addGmp(row, state.text.size(), [](auto& own) {
        own.readText(own.state.text, 2);
        own.writeBytes();
    });
#ifdef HAVE_BOOST
    row.add("dynamic_bitset",
            Contender{state,
                      [](State& own) {
                          boost::to_block_range(boost::dynamic_bitset<unsigned char>(own.text),
                                                own.bytesOut.begin());
                      },
                      peersBytes});
#else
    row.missing("dynamic_bitset");
#endif
    if (state.text.size() == 64)
        row.add("std::bitset", Contender{state,
                                         [](State& own) {
                                             const std::uint64_t bits =
                                                 std::bitset<64>(own.text).to_ullong();
                                             std::memcpy(own.bytesOut.data(), &bits, sizeof bits);
                                         },
                                         peersBytes});
    copyLimit(row, textOf(state.bytes));
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
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
