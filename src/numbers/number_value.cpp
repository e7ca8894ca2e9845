// SPDX-License-Identifier: MIT
#include "KelRT/NumberValue.h"

#include "KelRT/Kel_ByteBuffer.h"
#include "KelRT/Kel_Number.h"
#include "common/u64.h"
#include "numbers/limb.h"

#include <algorithm>
#include <cassert>
#include <span>

namespace KelRT {

// Gives the functions of this file access to private members of both classes.
struct ValueAccess {
    static std::span<std::uint16_t> words(Kel_Number& number) { return number.words; }
    static std::span<const std::uint16_t> words(const Kel_Number& number) { return number.words; }
    static std::uint64_t width(const Kel_Number& number) { return number.bitCount; }
    static std::uint16_t topWordMask(const Kel_Number& number) { return number.topWordMask; }
    static bool holdsField(const Kel_ByteBuffer& buffer, std::uint64_t position,
                           const Kel_Number& number) {
        return buffer.holdsField(position, number.bitCount);
    }
};

namespace {

using numbers::Limb;
using numbers::LIMB_BITS;
using numbers::WORDS_PER_LIMB;
using Access = ValueAccess;

// The next two functions require that the field lies within the `size` bytes of `data`. For each
// limb but the last, they access up to nine bytes from the byte with its first bit. All nine are
// within `data`: at least one more bit of the field follows, and 65 bits always reach into the
// ninth byte.

void readField(const unsigned char* data, std::uint64_t size, std::uint64_t position,
               Kel_Number& number) {
    const auto words = Access::words(number);
    const auto shift = static_cast<unsigned>(position % 8); // the same for each limb
    std::uint64_t left = Access::width(number);
    std::size_t word = 0;
    for (; left > LIMB_BITS; left -= LIMB_BITS, position += LIMB_BITS, word += WORDS_PER_LIMB)
        numbers::storeLimb(words.subspan(word, WORDS_PER_LIMB),
                           common::u64AtBit(data + position / 8, shift));
    numbers::storeLimb(words.subspan(word), common::readField(data, size, position, left));
}

void writeField(unsigned char* data, std::uint64_t size, std::uint64_t position,
                const Kel_Number& number) {
    const auto words = Access::words(number);
    const auto shift = static_cast<unsigned>(position % 8);
    // Each limb starts at bit `shift` of a byte. `carried` has the lower bits of this byte: first
    // those in the array, which stay as they are, then the highest bits of the previous limb.
    Limb carried = data[position / 8] & common::lowBits(shift);
    std::uint64_t left = Access::width(number);
    std::size_t word = 0;
    for (; left > LIMB_BITS; left -= LIMB_BITS, position += LIMB_BITS, word += WORDS_PER_LIMB) {
        const Limb limb = numbers::loadLimb(words.subspan(word, WORDS_PER_LIMB));
        common::storeU64(data + position / 8, carried | limb << shift);
        carried = limb >> 1 >> (63 - shift);
    }
    common::writeField(data, size, position - shift, shift, carried);
    common::writeField(data, size, position, left, numbers::loadLimb(words.subspan(word)));
}

// Returns the number of bytes from the start of an array to the end of the field.
std::uint64_t sizeUpTo(const Kel_Number& number, std::uint64_t position) {
    return common::divideUp(position + Access::width(number), 8);
}

Limb lowestLimb(const Kel_Number& number) {
    return numbers::loadLimb(Access::words(number));
}

// Returns what each word above the lowest limb must be for an integer of this sign.
constexpr std::uint16_t extension(bool negative) {
    return negative ? 0xFFFF : 0;
}

// Sets the number to the 64-bit integer `lowest`. The words above it repeat the sign.
void setExtended(Kel_Number& number, Limb lowest, bool negative) {
    const auto words = Access::words(number);
    std::fill(words.begin(), words.end(), extension(negative));
    numbers::storeLimb(words, lowest);
    words.back() &= Access::topWordMask(number);
}

// Returns whether all words above the lowest limb repeat the sign. If so, that limb is the value.
bool isExtended(const Kel_Number& number, bool negative) {
    const auto words = Access::words(number);
    if (words.size() <= WORDS_PER_LIMB)
        return true;
    const std::uint16_t expected = extension(negative);
    unsigned differences = words.back() ^ (expected & Access::topWordMask(number));
    for (const std::uint16_t word :
         words.subspan(WORDS_PER_LIMB, words.size() - WORDS_PER_LIMB - 1))
        differences |= word ^ expected; // without an early exit, this is vectorised
    return differences == 0;
}

} // namespace

void bits2Number(Kel_ByteBuffer& buffer, std::uint64_t bitPosition, Kel_Number& number) {
    const unsigned char* const data = buffer.uPtr(); // realigns
    if (!Access::holdsField(buffer, bitPosition, number))
        return static_cast<void>(buffer.getBitsLL(bitPosition, Access::width(number))); // throws
    readField(data, buffer.getSize(), bitPosition, number);
}

void bits2Number(const unsigned char* data, std::uint64_t bitPosition,
                 Kel_Number& number) noexcept {
    assert(data != nullptr && "the field lies inside the array");
    readField(data, sizeUpTo(number, bitPosition), bitPosition, number);
}

void number2Bits(const Kel_Number& number, Kel_ByteBuffer& buffer, std::uint64_t bitPosition) {
    unsigned char* const data = buffer.uPtr(); // realigns
    if (!Access::holdsField(buffer, bitPosition, number))
        return buffer.setBitsLL(bitPosition, Access::width(number), 0); // throws
    writeField(data, buffer.getSize(), bitPosition, number);
}

void number2Bits(const Kel_Number& number, unsigned char* data,
                 std::uint64_t bitPosition) noexcept {
    assert(data != nullptr && "the field lies inside the array");
    writeField(data, sizeUpTo(number, bitPosition), bitPosition, number);
}

void uLL2Number(std::uint64_t value, Kel_Number& number) noexcept {
    setExtended(number, value, false);
}

void lL2Number(std::int64_t value, Kel_Number& number) noexcept {
    setExtended(number, static_cast<std::uint64_t>(value), value < 0);
}

bool number2ULL(const Kel_Number& number, std::uint64_t& value) noexcept {
    if (!isExtended(number, false))
        return false;
    value = lowestLimb(number);
    return true;
}

bool number2LL(const Kel_Number& number, std::int64_t& value) noexcept {
    const bool negative = number.isNegative();
    const Limb lowest =
        lowestLimb(number) | (negative ? ~common::lowBits(Access::width(number)) : 0);
    if (!isExtended(number, negative) || lowest >> (LIMB_BITS - 1) != (negative ? 1 : 0))
        return false;
    value = static_cast<std::int64_t>(lowest);
    return true;
}

} // namespace KelRT
