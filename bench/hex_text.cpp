// SPDX-License-Identifier: MIT
//
// Measures the conversion of byte buffers to hexadecimal text and back. The library writes the most
// significant byte first. The peers write in memory order, which is less work.
#include "peers.h"
#include "row.h"

#include "KelRT/Kel_ByteBuffer.h"

#include <algorithm>

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

/// Reverses the bytes for the peers, so that they write the same text as the library.
Bytes reversed(Bytes bytes) {
    std::reverse(bytes.begin(), bytes.end());
    return bytes;
}

/// Holds the bytes and the text of a contender. BYTES is the type into which a peer decodes.
template <typename BYTES>
struct State {
    BYTES bytes;
    std::string text;
};

std::string upper(std::string text) {
    for (auto& character : text)
        character = character >= 'a' ? static_cast<char>(character - 'a' + 'A') : character;
    return text;
}

template <typename Peer>
void addEncoder(Row& row, const char* name, const Bytes& bytes) {
    row.addPeer<Peer>(name, [&](auto peer) {
        return Contender{State<Bytes>{bytes, std::string(2 * bytes.size() + 1, ' ')},
                         [peer](auto& own) { peer.encodeHex(own.bytes, own.text); },
                         [](auto& own) { return upper(own.text.substr(0, 2 * own.bytes.size())); }};
    });
}

void encodeRow(const char* size, const Bytes& bytes) {
    Row row("hex", "encode", size);
    struct Own {
        KelRT::Kel_ByteBuffer buffer;
        std::string text;
    };
    row.add("KelUtil",
            Contender{
                Own{{bytes.data(), bytes.size(), 0, 0}, std::string(2 * bytes.size() + 1, ' ')},
                [](Own& own) {
                    own.buffer.bin2HexString(0, reinterpret_cast<unsigned char*>(own.text.data()));
                },
                [](Own& own) { return own.text.substr(0, own.text.size() - 1); }});
    addEncoder<peers::Absl>(row, "Abseil", reversed(bytes));
    addEncoder<peers::OpenSsl>(row, "OpenSSL", reversed(bytes));
    addEncoder<peers::Llvm>(row, "LLVM", reversed(bytes));
    addEncoder<peers::Boost>(row, "Boost", reversed(bytes));
    row.limit(copying(std::string(2 * bytes.size() + 1, ' ')));
}

template <typename Peer>
void addDecoder(Row& row, const char* name, const Bytes& bytes) {
    row.addPeer<Peer>(name, [&](auto peer) {
        using Decoded = typename decltype(peer)::Decoded;
        return Contender{State<Decoded>{Decoded(bytes.size(), '\0'), upperHex(bytes)},
                         [peer](auto& own) { peer.decodeHex(own.text, own.bytes); },
                         [](auto& own) { return textOf(own.bytes); }};
    });
}

void decodeRow(const char* size, const Bytes& bytes) {
    Row row("hex", "decode", size);
    struct Own {
        KelRT::Kel_ByteBuffer text;
        Bytes out;
    };
    const std::string text = upperHex(reversed(bytes));
    row.add("KelUtil",
            Contender{Own{{reinterpret_cast<const unsigned char*>(text.data()), text.size(), 0, 0},
                          Bytes(bytes.size())},
                      [](Own& own) { own.text.hex2Bin(0, own.text.getSize() - 1, own.out.data()); },
                      [](Own& own) { return textOf(own.out); }});
    addDecoder<peers::Absl>(row, "Abseil", bytes);
    addDecoder<peers::OpenSsl>(row, "OpenSSL", bytes);
    addDecoder<peers::Llvm>(row, "LLVM", bytes);
    addDecoder<peers::Boost>(row, "Boost", bytes);
    row.limit(copying(textOf(bytes)));
}

} // namespace

int main(int argc, char** argv) {
    for (const auto& [name, count] : {std::pair<const char*, std::size_t>{"8 B", 8},
                                      {"64 B", 64},
                                      {"4 KiB", 4096},
                                      {"1 MiB", 1 << 20}}) {
        const Bytes bytes = randomBytes(count);
        encodeRow(name, bytes);
        decodeRow(name, bytes);
    }
    return runAll(argc, argv);
}
