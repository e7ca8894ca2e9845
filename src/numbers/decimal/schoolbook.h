// SPDX-License-Identifier: MIT
//
// The schoolbook engine of decimal text. Reading multiplies the number by a power of ten and adds a
// chunk of digits. Printing divides it by 10^19; the remainder is a chunk. Each pass over the limbs
// handles two chunks when reading, four when printing. The cost is quadratic: n limbs have about n
// chunks, and n / 2 limbs are in use on average, as the number grows or shrinks with every chunk.
#pragma once

#include "numbers/decimal/natural.h"
#include "numbers/limb.h"

#include <array>

namespace KelRT::numbers::schoolbook {

// value = value * factor + addend, modulo 2^(64 * capacity).
void multiplyAdd(Natural& value, DoubleLimb factor, DoubleLimb addend);

// Divides by 10^19 and returns the remainder: the lowest chunk.
[[nodiscard]] Limb takeChunk(Natural& value);

// Takes the four lowest chunks, the lowest first, in one pass. Each division for a chunk waits for
// the previous one; interleaving four chains of divisions hides that latency. With one chunk a
// pass, the benchmark row "print decimal, 4096 b" takes 2.6 times as long.
[[nodiscard]] std::array<Limb, 4> takeFourChunks(Natural& value);

} // namespace KelRT::numbers::schoolbook
