// SPDX-License-Identifier: MIT
#include "KelRT/Kel_Number.h"

#include "common/u64.h"
#include "numbers/limb.h"

#include <algorithm>
#include <limits>
#include <span>
#include <stdexcept>

namespace KelRT {
namespace {

std::uint64_t checkedWidth(std::uint64_t bitCount) {
    if (bitCount == 0)
        throw std::logic_error("Internal error: bad bitCount for Kel_Number");
    return bitCount;
}

// Converts a word count to a size. A count that does not fit becomes the largest size, for which
// the vector throws std::length_error.
std::size_t sizeOf(std::uint64_t wordCount) {
    constexpr std::uint64_t MAX_SIZE = std::numeric_limits<std::size_t>::max();
    return static_cast<std::size_t>(std::min(wordCount, MAX_SIZE));
}

} // namespace

Kel_Number::Kel_Number(std::uint64_t newBitCount)
    : topWordMask(static_cast<std::uint16_t>(
          0xFFFF >> (WORD_LENGTH - checkedWidth(newBitCount) % WORD_LENGTH) % WORD_LENGTH)),
      words(sizeOf(common::divideUp(newBitCount, WORD_LENGTH))), bitCount(newBitCount),
      wordCount(words.size()) {}

Kel_Number::Kel_Number(const Kel_Number&) = default;
Kel_Number::~Kel_Number() = default;

// Only reserve() can throw, and it comes first: if it throws, the number is unchanged.
Kel_Number& Kel_Number::operator=(const Kel_Number& other) {
    if (this == &other)
        return *this;
    words.reserve(other.words.size());
    words.assign(other.words.begin(), other.words.end());
    topWordMask = other.topWordMask;
    bitCount = other.bitCount;
    wordCount = other.wordCount;
    return *this;
}

void Kel_Number::setToZero() noexcept {
    std::fill(words.begin(), words.end(), std::uint16_t{0});
}

bool Kel_Number::isZero() const noexcept {
    return std::all_of(words.begin(), words.end(), [](std::uint16_t word) { return word == 0; });
}

bool Kel_Number::isNegative() const noexcept {
    return (words.back() >> (bitCount - 1) % WORD_LENGTH & 1) != 0;
}

void Kel_Number::negate() noexcept {
    bool carry = true;
    for (std::size_t i = 0; i < words.size(); i += numbers::WORDS_PER_LIMB) {
        const auto rest = std::span(words).subspan(i);
        numbers::storeLimb(rest, numbers::negateLimb(numbers::loadLimb(rest), carry));
    }
    maskTopWord();
}

void Kel_Number::maskTopWord() noexcept {
    words.back() &= topWordMask;
}

} // namespace KelRT
