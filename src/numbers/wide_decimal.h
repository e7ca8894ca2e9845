// SPDX-License-Identifier: MIT
//
// Decimal text of very wide numbers, both ways, at less than quadratic cost.
//
// Both ways are the same work: the digits of a number are given in one base and wanted in another.
// They are joined in groups, then the groups in pairs, high * weight + low, then pairs of pairs and
// so on, always in the arithmetic of the wanted base; the weight is squared from round to round. So
// nothing wide is ever divided. The products of halves are made by Karatsuba's method, so twice the
// width costs about three times as much. For still wider numbers there are quicker methods, which
// are not worth their code here.
#pragma once

#include "numbers/limbs.h"

#include <cstddef>
#include <vector>

namespace KelRT::numbers {

/// From so many limbs on this is quicker than the steps of Limbs, when printed and when read.
constexpr std::size_t WIDE_PRINT_LIMBS = 120;
constexpr std::size_t WIDE_READ_LIMBS = 220;

/// The decimal digits of a chunk that is printed, and of one that is read, the number of whose
/// values is the base.
constexpr unsigned PRINTED_CHUNK_DIGITS = 17;
constexpr unsigned READ_CHUNK_DIGITS = 18;
constexpr Limb READ_CHUNK_BASE = 1'000'000'000'000'000'000;

/// The bits of a limb of a number that is read: a chunk just fits.
constexpr unsigned READ_LIMB_BITS = 60;

/// The number of \a count (at least 1) \a limbs, the lowest one first, in chunks of
/// PRINTED_CHUNK_DIGITS decimal digits, the lowest one first. The highest is 0 only if it is the
/// only one. \throws std::bad_alloc
std::vector<Limb> toDecimalChunks(const Limb* limbs, std::size_t count);

/// The number of \a chunks (at least one) of READ_CHUNK_DIGITS decimal digits, the lowest one
/// first, in limbs of READ_LIMB_BITS bits: its lowest \a room (at least 1) of them, without those
/// at the high end that are 0. \throws std::bad_alloc
std::vector<Limb> fromDecimalChunks(const std::vector<Limb>& chunks, std::size_t room);

} // namespace KelRT::numbers
