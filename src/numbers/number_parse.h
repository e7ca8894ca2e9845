// SPDX-License-Identifier: MIT
//
// Whole numbers out of digit texts. The rule is told one digit at a time (value * base + digit,
// most significant digit first, modulo the width); a refused digit makes the whole result 0, and
// only the last digits survive the modulus, so nothing forces that order on the work.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace KelRT::numbers {

/// Reads \a text in the base that \a radix names into the \a wordCount words at \a words (word 0
/// the least significant, at least one). The value is wrapped at the last word, not at a bit of it,
/// and has no sign yet. \param negative set to true when a '-' that is no digit was met \return
/// false when a digit was refused; the words are unspecified then \throws std::bad_alloc with the
/// words unchanged
bool parseDigits(char radix, const std::string& text, std::uint16_t* words, std::size_t wordCount,
                 bool& negative);

/// The same for base 10. Everything is read before the words are touched.
bool parseDecimal(const std::string& text, std::uint16_t* words, std::size_t wordCount,
                  bool& negative);

} // namespace KelRT::numbers
