// SPDX-License-Identifier: MIT
//
// Measures how fields and 64-bit integers are converted to a number and back. The number is as wide
// as the field. The peers are APInt, and the library doing the same through text: hexadecimal for
// fields, decimal for integers.
#include "peers.h"
#include "row.h"

#include "KelRT/Kel_ByteBuffer.h"
#include "KelRT/Kel_Number.h"
#include "KelRT/NumberValue.h"

#include <algorithm>
#include <memory>

using namespace bench;
using KelRT::Kel_ByteBuffer;
using KelRT::Kel_Number;

namespace {

constexpr std::size_t REGISTER_BYTES = 4096;
constexpr std::size_t VALUES = 256;

// Each of the following classes holds a register and a number, and has the same four operations.

struct KelUtil {
    KelUtil(const Bytes& bytes, unsigned bits)
        : scan(bytes.data(), bytes.size(), 0, 0), width(bits),
          number(std::make_shared<Kel_Number>(bits)) {}
    Kel_ByteBuffer scan;
    unsigned width;
    std::shared_ptr<Kel_Number> number; // shared, since contenders run one after another
    void readField(std::uint32_t position) { KelRT::bits2Number(scan, position, *number); }
    void writeField(std::uint32_t position) { KelRT::number2Bits(*number, scan, position); }
    void setInteger(std::uint64_t value) const { KelRT::uLL2Number(value, *number); }
    std::uint64_t integer() const {
        std::uint64_t value = 0;
        static_cast<void>(KelRT::number2ULL(*number, value));
        return value;
    }
    std::string text() { return number->toString('x') + textOf(Bytes(scan.uPtr(), end())); }
    unsigned char* end() { return scan.uPtr() + scan.getSize(); }
};

struct AsText : KelUtil {
    using KelUtil::KelUtil;
    void readField(std::uint32_t position) {
        Kel_ByteBuffer bits((width + 7) / 8, 0, 0);
        Kel_ByteBuffer digits;
        copyBits(scan, position, bits, 0);
        bits.bin2HexString(0, digits);
        number->set('x', digits.ptr());
    }
    void writeField(std::uint32_t position) {
        const std::string hex = number->toString('x');
        Kel_ByteBuffer digits(reinterpret_cast<const unsigned char*>(hex.data()), hex.size(), 0, 0);
        Kel_ByteBuffer bits;
        digits.hex2Bin(0, hex.size() - 1, bits);
        copyBits(bits, 0, scan, position);
    }
    void setInteger(std::uint64_t value) const { number->set('u', std::to_string(value)); }
    std::uint64_t integer() const { return std::stoull(number->toString('u')); }
    void copyBits(Kel_ByteBuffer& from, std::uint64_t fromBit, Kel_ByteBuffer& to,
                  std::uint64_t toBit) const {
        for (std::uint64_t done = 0; done < width; done += 64) {
            const std::uint64_t count = std::min<std::uint64_t>(64, width - done);
            to.setBitsLL(toBit + done, count, from.getBitsLL(fromBit + done, count));
        }
    }
};

using Positions = std::vector<std::uint32_t>;

Positions randomPositions(unsigned width) {
    std::mt19937_64 random(width);
    Positions positions(VALUES);
    for (auto& position : positions)
        position = static_cast<std::uint32_t>(random() % (8 * REGISTER_BYTES - width + 1));
    return positions;
}

template <typename Holder>
struct Work {
    Holder holder;
    Positions positions;
    std::uint64_t sum = 0;
    std::string result() { return holder.text() + std::to_string(sum); }
};
template <typename Holder>
struct FieldRead : Work<Holder> {
    void run() {
        for (const std::uint32_t position : this->positions)
            this->holder.readField(position);
    }
};
template <typename Holder>
struct FieldWritten : Work<Holder> {
    void run() {
        for (const std::uint32_t position : this->positions)
            this->holder.writeField(position);
    }
};
template <typename Holder>
struct IntegerSet : Work<Holder> {
    void run() {
        for (const std::uint32_t position : this->positions)
            this->holder.setInteger(position * std::uint64_t{0x9E3779B97F4A7C15});
    }
};
template <typename Holder>
struct IntegerRead : Work<Holder> {
    void run() {
        for (std::size_t i = 0; i < VALUES; ++i) {
            benchmark::ClobberMemory();
            this->sum += this->holder.integer();
        }
    }
};

template <template <typename> typename Kind, typename Holder>
Kind<Holder> contender(unsigned width) {
    Kind<Holder> work{{Holder(randomBytes(REGISTER_BYTES), width), randomPositions(width)}};
    work.holder.setInteger(0xFEDCBA9876543210);
    return work;
}

template <template <typename> typename Kind>
void rows(const char* work, unsigned width) {
    const std::string size = std::to_string(width) + " b";
    Row row("values", work, size, VALUES);
    row.add("KelUtil", contender<Kind, KelUtil>(width));
    row.addPeer<peers::Llvm>("APInt", [width](auto peer) {
        return contender<Kind, typename decltype(peer)::Register>(width);
    });
    Row asText("values as text", work, size, VALUES);
    asText.add("KelUtil", contender<Kind, KelUtil>(width));
    asText.add("as text", contender<Kind, AsText>(width));
}

} // namespace

int main(int argc, char** argv) {
    for (const unsigned width : {96U, 4096U}) {
        rows<FieldRead>("field read", width);
        rows<FieldWritten>("field written", width);
        rows<IntegerSet>("integer set", width);
        rows<IntegerRead>("integer read", width);
    }
    return runAll(argc, argv);
}
