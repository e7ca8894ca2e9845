// SPDX-License-Identifier: MIT
//
// A text is always composed in a block of its own and then handed to its target, so a target may be
// the source, and is unchanged when memory runs out.
#include "KelRT/Kel_ByteBuffer.h"

#include "common/digits.h"
#include "common/hex.h"
#include "common/memory.h"
#include "common/words.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <utility>

namespace KelRT {
namespace {

using namespace common;

constexpr std::uint64_t HALF_BYTES = 4; // half a word of bytes makes a word of digits

/// Writes the eight bytes at \a bytes as sixteen digits, the last byte's first.
void encodeWord(const unsigned char* bytes, unsigned char* out) {
    storeVector(out, hexCharacters(nibblesOf(loadWord(bytes)), 'A'));
}

/// Writes the \a count bytes at \a bytes as 2 * count digits, the last byte's first.
void encode(const unsigned char* bytes, std::uint64_t count, unsigned char* out) {
    for (; count >= 2 * WORD_BYTES; count -= 2 * WORD_BYTES, out += 4 * WORD_BYTES) {
        encodeWord(bytes + count - WORD_BYTES, out);
        encodeWord(bytes + count - 2 * WORD_BYTES, out + 2 * WORD_BYTES);
    }
    if (count >= WORD_BYTES) {
        count -= WORD_BYTES;
        encodeWord(bytes + count, out);
        out += 2 * WORD_BYTES;
    }
    if (count == 0)
        return;
    const std::uint64_t rest = loadBytes(bytes, count) << (8 * (WORD_BYTES - count));
    unsigned char digits[2 * WORD_BYTES];
    storeVector(digits, hexCharacters(nibblesOf(rest), 'A'));
    std::memcpy(out, digits, static_cast<std::size_t>(2 * count));
}

/// What ordinary text means by any character: its value as a hexadecimal digit, or else its code
/// less the code of '0', kept to 8 bits.
unsigned char ordinaryValue(unsigned char character) {
    const std::uint8_t value = HEX_VALUES[character];
    return value != NO_DIGIT ? value : static_cast<unsigned char>(character - '0');
}

/// Reads \a count characters, the last the least significant digit, one by one.
void decodeSlowCase(const unsigned char* text, std::uint64_t count, unsigned char* out) {
    for (; count > 1; count -= 2)
        *out++ = static_cast<unsigned char>(ordinaryValue(text[count - 2]) * 16U +
                                            ordinaryValue(text[count - 1]));
    if (count == 1)
        *out = ordinaryValue(text[0]);
}

/// As decodeSlowCase(), sixteen digits at a time. A text with other characters is read again.
void decode(const unsigned char* text, std::uint64_t count, unsigned char* out) {
    Vector valid = broadcast(0xFF);
    std::uint64_t left = count;
    unsigned char* to = out;
    for (; left >= VECTOR_BYTES; left -= VECTOR_BYTES, to += WORD_BYTES) {
        const Vector characters = loadVector(text + left - VECTOR_BYTES);
        storeWord(to, wordOfNibbles(hexDigitValues(characters, valid)));
    }
    if (allSet(valid))
        decodeSlowCase(text, left, to);
    else
        decodeSlowCase(text, count, out);
}

std::uint64_t decodedSize(std::uint64_t firstChar, std::uint64_t lastChar) {
    return lastChar < firstChar ? 0 : (lastChar - firstChar) / 2 + 1;
}

/// Up to eight characters of bit-mirrored text as digit values, one a byte. A character that is no
/// digit repeats \a previous, the value before it.
std::uint64_t mirroredTextValues(const char* text, std::uint64_t count, std::uint64_t previous) {
    std::uint64_t values = 0;
    for (std::uint64_t i = 0; i < count; ++i) {
        const std::uint8_t value = hexValue(text[i]);
        if (value != NO_DIGIT)
            previous = value;
        values |= previous << (8 * i);
    }
    return values;
}

/// Reads \a count characters of bit-mirrored text into ceil(count / 2) bytes.
void decodeMirrored(const char* text, std::uint64_t count, unsigned char* out) {
    std::uint64_t previous = 0;
    for (std::uint64_t i = 0; i < count; i += WORD_BYTES, out += HALF_BYTES) {
        const std::uint64_t step = std::min(count - i, WORD_BYTES);
        const std::uint64_t characters =
            loadBytes(reinterpret_cast<const unsigned char*>(text + i), step);
        const std::uint64_t values = step == WORD_BYTES && areHexDigits(characters)
                                         ? hexDigitValues(characters)
                                         : mirroredTextValues(text + i, step, previous);
        previous = values >> (8 * (step - 1));
        // Mirroring a byte moves its low nibble, mirrored, to the high one.
        storeBytes(out, packNibbles(mirrorEachByte(values) >> 4), (step + 1) / 2);
    }
}

Kel_ByteBuffer mirroredBytes(const char* hexText) {
    constexpr std::uint64_t RESERVE = 10;
    const std::uint64_t count = hexText == nullptr ? 0 : std::strlen(hexText);
    Kel_ByteBuffer bytes((count + 1) / 2, RESERVE, RESERVE);
    decodeMirrored(hexText, count, bytes.uPtr());
    return bytes;
}

Kel_ByteBuffer* toClient(Kel_ByteBuffer&& made) {
    return new Kel_ByteBuffer(std::move(made));
}

} // namespace

void Kel_ByteBuffer::bin2HexString(std::uint64_t fromByte, unsigned char* out) noexcept {
    byteAlign();
    const std::uint64_t count = fromByte < size ? size - fromByte : 0;
    assert(out != nullptr && common::areApart(storage.get(), blockSize(), out, 2 * count + 1) &&
           "out lies outside this buffer");
    if (count != 0)
        encode(used() + fromByte, count, out);
    out[2 * count] = '\0';
}

void Kel_ByteBuffer::bin2HexString(std::uint64_t fromByte, Kel_ByteBuffer& target) {
    byteAlign();
    Kel_ByteBuffer text(2 * size + 1, 0, 0);
    bin2HexString(fromByte, text.uPtr());
    target = std::move(text);
}

Kel_ByteBuffer* Kel_ByteBuffer::bin2HexString(std::uint64_t fromByte) {
    Kel_ByteBuffer text;
    bin2HexString(fromByte, text);
    return toClient(std::move(text));
}

Kel_ByteBuffer* Kel_ByteBuffer::bin2HexString(std::uint64_t fromByte, std::uint64_t bitCount) {
    byteAlign();
    const std::uint64_t available = fromByte < size ? size - fromByte : 0;
    const std::uint64_t count = std::min(available, bitCount / 8 + (bitCount % 8 != 0 ? 1 : 0));
    Kel_ByteBuffer text(2 * count + 1, 0, 0);
    if (count != 0)
        encode(used() + fromByte, count, text.used());
    text.setHexStringBitCount(bitCount); // one digit at most, and bits of the next
    return toClient(std::move(text));
}

void Kel_ByteBuffer::setHexStringBitCount(std::uint64_t bitCount) noexcept {
    byteAlign();
    assert((size == 0 || used()[size - 1] == '\0') && "the last used byte is the terminating NUL");
    const std::uint64_t wanted = bitCount / 4 + (bitCount % 4 != 0 ? 1 : 0);
    if (size <= wanted) // fewer digits than wanted
        return;
    giveToLowReserve(size - 1 - wanted);
    if (bitCount % 4 == 0)
        return;
    unsigned char& first = *used();
    first = static_cast<unsigned char>(UPPER_DIGITS[ordinaryValue(first) & lowBits(bitCount % 4)]);
}

void Kel_ByteBuffer::hex2Bin(std::uint64_t firstChar, std::uint64_t lastChar,
                             unsigned char* out) noexcept {
    byteAlign();
    if (lastChar < firstChar)
        return;
    assert(lastChar < size && "lastChar < getSize()");
    assert(out != nullptr &&
           common::areApart(storage.get(), blockSize(), out, decodedSize(firstChar, lastChar)) &&
           "out lies outside this buffer");
    decode(used() + firstChar, lastChar - firstChar + 1, out);
}

void Kel_ByteBuffer::hex2Bin(std::uint64_t firstChar, std::uint64_t lastChar,
                             Kel_ByteBuffer& target) {
    byteAlign();
    Kel_ByteBuffer bytes(decodedSize(firstChar, lastChar), 0, 0);
    hex2Bin(firstChar, lastChar, bytes.uPtr());
    target = std::move(bytes);
}

Kel_ByteBuffer* Kel_ByteBuffer::hex2Bin(std::uint64_t firstChar, std::uint64_t lastChar) {
    Kel_ByteBuffer bytes;
    hex2Bin(firstChar, lastChar, bytes);
    return toClient(std::move(bytes));
}

Kel_ByteBuffer* Kel_ByteBuffer::hex2BinReverse(const char* hexText) {
    return toClient(mirroredBytes(hexText));
}

void Kel_ByteBuffer::hex2BinReverse(const char* hexText, Kel_ByteBuffer& target) {
    target = mirroredBytes(hexText);
}

} // namespace KelRT
