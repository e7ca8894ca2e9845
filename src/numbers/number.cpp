// SPDX-License-Identifier: MIT
#include "KelRT/Kel_Number.h"

#include "numbers/limbs.h"

#include <algorithm>
#include <stdexcept>

namespace KelRT {

using numbers::WORDS_PER_LIMB;

namespace {

std::uint64_t checkedWidth(std::uint64_t bitCount) {
    if (bitCount == 0)
        throw std::logic_error("Internal error: bad bitCount for Kel_Number");
    return bitCount;
}

} // namespace

// bitCount + 15 could overflow, so the words are counted in two steps.
Kel_Number::Kel_Number(std::uint64_t bitCount)
    : topWordMask_(static_cast<std::uint16_t>(
          0xFFFF >> (WORD_LENGTH - checkedWidth(bitCount) % WORD_LENGTH) % WORD_LENGTH)),
      words_(bitCount / WORD_LENGTH + (bitCount % WORD_LENGTH == 0 ? 0 : 1)), bitCount_(bitCount),
      wordCount_(words_.size()) {}

Kel_Number::Kel_Number(const Kel_Number&) = default;
Kel_Number::~Kel_Number() = default;

// Only the reservation can fail, and it changes nothing then.
Kel_Number& Kel_Number::operator=(const Kel_Number& other) {
    if (this == &other)
        return *this;
    words_.reserve(other.words_.size());
    words_.assign(other.words_.begin(), other.words_.end());
    topWordMask_ = other.topWordMask_;
    bitCount_ = other.bitCount_;
    wordCount_ = other.wordCount_;
    return *this;
}

void Kel_Number::setToZero() noexcept {
    std::fill(words_.begin(), words_.end(), std::uint16_t{0});
}

bool Kel_Number::isZero() const noexcept {
    return std::all_of(words_.begin(), words_.end(), [](std::uint16_t word) { return word == 0; });
}

bool Kel_Number::isNegative() const noexcept {
    return (words_.back() >> (bitCount_ - 1) % WORD_LENGTH & 1) != 0;
}

void Kel_Number::negate() noexcept {
    bool carry = true;
    for (std::size_t i = 0; i < wordCount_; i += WORDS_PER_LIMB) {
        std::uint16_t* const words = words_.data() + i;
        const numbers::Limb limb = numbers::loadLimb(words, wordCount_ - i);
        numbers::storeLimb(words, wordCount_ - i, numbers::negateLimb(limb, carry));
    }
    maskTopWord();
}

void Kel_Number::maskTopWord() noexcept {
    words_.back() &= topWordMask_;
}

} // namespace KelRT
