// SPDX-License-Identifier: MIT
//
// Hexadecimal text of byte buffers and back. The library writes the most significant byte first;
// the peers write in memory order and so do less.
#include "peers.h"
#include "row.h"

#include "KelRT/Kel_ByteBuffer.h"

#include <algorithm>
#include <cstring>

using namespace bench;

namespace {

std::string upperHex(const Bytes& bytes) {
    std::string text;
    for (const auto byte : bytes) {
        text += "0123456789ABCDEF"[byte >> 4];
        text += "0123456789ABCDEF"[byte & 15];
    }
    return text;
}

/// The peers get the bytes in the order in which the library writes them.
Bytes reversed(Bytes bytes) {
    std::reverse(bytes.begin(), bytes.end());
    return bytes;
}

struct State {
    Bytes bytes;
    std::string text;
};

std::string upper(std::string text) {
    for (auto& character : text)
        character = character >= 'a' ? static_cast<char>(character - 'a' + 'A') : character;
    return text;
}

std::string upperText(State& own) {
    return upper(own.text.substr(0, 2 * own.bytes.size()));
}
std::string bytesText(State& own) {
    return textOf(own.bytes);
}

void encodeRows(const char* size, std::size_t count) {
    const Bytes bytes = randomBytes(count);
    Row row("hex", "encode", size);
    struct Own {
        KelRT::Kel_ByteBuffer buffer;
        std::string text;
    };
    row.add("KelUtil", Contender{Own{{bytes.data(), count, 0, 0}, std::string(2 * count + 1, ' ')},
                                 [](Own& own) {
                                     own.buffer.bin2HexString(
                                         0, reinterpret_cast<unsigned char*>(own.text.data()));
                                 },
                                 [](Own& own) { return own.text.substr(0, own.text.size() - 1); }});
    const State state{reversed(bytes), std::string(2 * count + 1, ' ')};
#ifdef HAVE_ABSL
    row.add("Abseil",
            Contender{state,
                      [](State& own) {
                          own.text = absl::BytesToHexString(absl::string_view(
                              reinterpret_cast<const char*>(own.bytes.data()), own.bytes.size()));
                      },
                      upperText});
#else
    row.missing("Abseil");
#endif
#ifdef HAVE_OPENSSL
    row.add("OpenSSL", Contender{state,
                                 [](State& own) {
                                     OPENSSL_buf2hexstr_ex(own.text.data(), own.text.size(),
                                                           nullptr, own.bytes.data(),
                                                           own.bytes.size(), '\0');
                                 },
                                 upperText});
#else
    row.missing("OpenSSL");
#endif
#ifdef HAVE_LLVM
    row.add("LLVM",
            Contender{state, [](State& own) { own.text = llvm::toHex(own.bytes); }, upperText});
#else
    row.missing("LLVM");
#endif
#ifdef HAVE_BOOST
    row.add("Boost", Contender{state,
                               [](State& own) {
                                   boost::algorithm::hex(own.bytes.begin(), own.bytes.end(),
                                                         own.text.begin());
                               },
                               upperText});
#else
    row.missing("Boost");
#endif
    row.limit(Contender{std::pair{state.text, state.text},
                        [](auto& own) {
                            std::memcpy(own.first.data(), own.second.data(), own.first.size());
                            benchmark::DoNotOptimize(own.first.data());
                        },
                        [](auto& own) { return own.first; }});
}

void decodeRows(const char* size, std::size_t count) {
    const Bytes bytes = randomBytes(count);
    Row row("hex", "decode", size);
    struct Own {
        KelRT::Kel_ByteBuffer text;
        Bytes out;
    };
    const std::string ownText = upperHex(reversed(bytes));
    row.add("KelUtil",
            Contender{Own{{reinterpret_cast<const unsigned char*>(ownText.data()), 2 * count, 0, 0},
                          Bytes(count)},
                      [](Own& own) { own.text.hex2Bin(0, own.text.getSize() - 1, own.out.data()); },
                      [](Own& own) { return textOf(own.out); }});
    const State state{Bytes(count), upperHex(bytes)};
#ifdef HAVE_ABSL
    struct Absl {
        std::string bytes, text;
    };
    row.add("Abseil", Contender{Absl{"", state.text},
                                [](Absl& own) { own.bytes = absl::HexStringToBytes(own.text); },
                                [](Absl& own) { return own.bytes; }});
#else
    row.missing("Abseil");
#endif
#ifdef HAVE_OPENSSL
    row.add("OpenSSL", Contender{state,
                                 [](State& own) {
                                     OPENSSL_hexstr2buf_ex(own.bytes.data(), own.bytes.size(),
                                                           nullptr, own.text.c_str(), '\0');
                                 },
                                 bytesText});
#else
    row.missing("OpenSSL");
#endif
#ifdef HAVE_LLVM
    struct Llvm {
        std::string bytes, text;
    };
    row.add("LLVM",
            Contender{Llvm{"", state.text}, [](Llvm& own) { own.bytes = llvm::fromHex(own.text); },
                      [](Llvm& own) { return own.bytes; }});
#else
    row.missing("LLVM");
#endif
#ifdef HAVE_BOOST
    row.add("Boost", Contender{state,
                               [](State& own) {
                                   boost::algorithm::unhex(own.text.begin(), own.text.end(),
                                                           own.bytes.begin());
                               },
                               bytesText});
#else
    row.missing("Boost");
#endif
    row.limit(Contender{std::pair{bytes, bytes},
                        [](auto& own) {
                            std::memcpy(own.first.data(), own.second.data(), own.first.size());
                            benchmark::DoNotOptimize(own.first.data());
                        },
                        [](auto& own) { return own.first; }});
}

} // namespace

int main(int argc, char** argv) {
    for (const auto& [name, count] : {std::pair<const char*, std::size_t>{"8 B", 8},
                                      {"64 B", 64},
                                      {"4 KiB", 4096},
                                      {"1 MiB", 1 << 20}}) {
        encodeRows(name, count);
        decodeRows(name, count);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
