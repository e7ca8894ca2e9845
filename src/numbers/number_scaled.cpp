// SPDX-License-Identifier: MIT
//
// These functions use double arithmetic. The build disables floating-point contraction for this
// file, because fused multiply-adds would change results.
#include "KelRT/Kel_Number.h"
#include "numbers/fixed_text.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace KelRT {

void Kel_Number::setFloat(const std::string& text, double scale, double offset) noexcept {
    const double value = std::strtod(text.c_str(), nullptr); // as atof() does
    const double quotient = std::trunc((value - offset) / scale);
    setToZero();
    if (!std::isfinite(quotient))
        return;
    // Every step is exact: the magnitude has at most 53 significant bits, and the divisor is a
    // power of two. A division moves the word just stored into the fraction of the magnitude, and
    // the next conversion to a word drops the fraction.
    double magnitude = std::fabs(quotient);
    for (std::uint16_t& word : words) {
        if (magnitude < 1)
            break;
        word = static_cast<std::uint16_t>(std::fmod(magnitude, WORD_BASE));
        magnitude /= WORD_BASE;
    }
    if (quotient < 0)
        negate();
    maskTopWord();
}

std::string Kel_Number::toFloatString(double scale, double offset, std::uint32_t precision) const {
    if (isNegative()) {
        Kel_Number magnitude(*this);
        magnitude.negate();
        return numbers::fixedText(-scale * magnitude.toDouble() + offset, precision);
    }
    return numbers::fixedText(scale * toDouble() + offset, precision);
}

// Adds 16 bits in each step. Wider steps would round differently.
double Kel_Number::toDouble() const noexcept {
    double value = 0;
    std::for_each(words.rbegin(), words.rend(),
                  [&value](std::uint16_t word) { value = value * WORD_BASE + word; });
    return value;
}

} // namespace KelRT
