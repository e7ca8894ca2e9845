// SPDX-License-Identifier: MIT
//
// This engine converts decimal text by divide and conquer. The sizes for which it is used are in
// engines.h.
#pragma once

#include "numbers/limb.h"

#include <span>
#include <vector>

namespace KelRT::numbers::divide_and_conquer {

// Converts limbs (at least one) to chunks of decimal digits, both the lowest first. The highest
// chunk is 0 only for the value 0. Throws std::bad_alloc.
[[nodiscard]] std::vector<Limb> toDecimalChunks(std::span<const Limb> limbs);

// Converts chunks of decimal digits (at least one chunk) to digits of radix 2^READ_RADIX_BITS, both
// the lowest first. The lowest chunk may be short: it has `lowestDigits` decimal digits. Throws
// std::bad_alloc.
[[nodiscard]] std::vector<Limb> fromDecimalChunks(std::span<const Limb> chunks,
                                                  unsigned lowestDigits);

} // namespace KelRT::numbers::divide_and_conquer
