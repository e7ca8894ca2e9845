// SPDX-License-Identifier: MIT
//
// Decimal text out of machine words. A wide number is printed and read in chunks: the largest power
// of ten that fits a 64-bit word has 19 zeros, so 19 digits are handled by one step of word
// arithmetic.
#pragma once

#include <cstdint>

namespace KelRT::common {

/// The digits of a chunk, and the number of its values: a chunk holds 0 to CHUNK_BASE - 1.
constexpr unsigned CHUNK_DIGITS = 19;
constexpr std::uint64_t CHUNK_BASE = 10'000'000'000'000'000'000U;

/// The most digits that a 64-bit value has.
constexpr unsigned MOST_DECIMAL_DIGITS = 20;

/// Writes \a value without leading zeros so that its last digit stands right before \a end.
/// \return its first digit; at most MOST_DECIMAL_DIGITS before \a end
char* writeDecimal(char* end, std::uint64_t value);

/// Writes the 17 digits of a \a chunk below 10^17, leading zeros included, right before \a end.
/// \return the first of them
char* writeSeventeen(char* end, std::uint64_t chunk);

/// Writes the CHUNK_DIGITS digits of \a chunk, leading zeros included, right before \a end.
/// \return the first of them
char* writeChunk(char* end, std::uint64_t chunk);

} // namespace KelRT::common
