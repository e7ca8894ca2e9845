// SPDX-License-Identifier: MIT
/// \file
/// These functions convert a Kel_Number from and to bit fields and 64-bit integers.
///
/// Threads: several threads may read an object at the same time; a function that changes it must
/// run alone. Reading a field of a buffer changes the buffer while a shift is pending.
#pragma once

#include "KelRT/Export.h"

#include <cstdint>

namespace KelRT {

class Kel_ByteBuffer;
class Kel_Number;

/// \name Fields
/// A field has the width of the number. Bit j of the number is bit `bitPosition + j` of the bytes,
/// where bit k is bit (k mod 8) of byte (k div 8). The bits are copied unchanged, so signed and
/// unsigned numbers are treated alike.
/// @{

/// Reads a field of \a buffer into \a number. Realigns the buffer first.
/// \code
/// 12 bits, bits2Number(buffer, 4, number) => 0x432  // of a buffer 21 43
/// 8 bits, bits2Number(buffer, 4, number)  => 0x32
/// \endcode
/// \throws std::logic_error "Internal Error - Kel_ByteBuffer::getBits bad params." when the field
/// reaches past the last used byte; the number is then unchanged
KELRT_API void bits2Number(Kel_ByteBuffer& buffer, std::uint64_t bitPosition, Kel_Number& number);

/// Reads a field of an array.
/// \pre the field lies inside the array
KELRT_API void bits2Number(const unsigned char* data, std::uint64_t bitPosition,
                           Kel_Number& number) noexcept;

/// Writes \a number to a field of \a buffer. Realigns the buffer first. Bits outside the field do
/// not change, and the buffer never grows.
/// \code
/// 12 bits, 0xABC, number2Bits(number, buffer, 4) => C0 AB  // from 00 00
/// \endcode
/// \throws std::logic_error "Internal Error - Kel_ByteBuffer::setBits(ll) bad params." when the
/// field reaches past the last used byte; the bytes are then unchanged
KELRT_API void number2Bits(const Kel_Number& number, Kel_ByteBuffer& buffer,
                           std::uint64_t bitPosition);

/// Writes \a number to a field of an array. Bits outside the field do not change.
/// \pre the field lies inside the array
KELRT_API void number2Bits(const Kel_Number& number, unsigned char* data,
                           std::uint64_t bitPosition) noexcept;

/// @}
/// \name Integers
/// An integer that does not fit the number wraps modulo 2^width, as in Kel_Number::set(). If a
/// number does not fit the integer, the function returns false.
/// @{

/// Sets \a number to an unsigned integer.
/// \code
/// 17 bits, uLL2Number(70000, number) => 70000
/// 16 bits, uLL2Number(70000, number) => 4464
/// \endcode
KELRT_API void uLL2Number(std::uint64_t value, Kel_Number& number) noexcept;

/// Sets \a number to a signed integer, in two's complement.
/// \code
/// 80 bits, lL2Number(-5, number) => -5
/// 4 bits, lL2Number(-20, number) => -4
/// \endcode
KELRT_API void lL2Number(std::int64_t value, Kel_Number& number) noexcept;

/// Stores \a number, read as unsigned, in \a value.
/// \return false, with \a value unchanged, if the number is above 2^64 - 1
/// \code
/// 8 bits, 0xFB, number2ULL(number, value) => true, 251
/// \endcode
[[nodiscard]] KELRT_API bool number2ULL(const Kel_Number& number, std::uint64_t& value) noexcept;

/// Stores \a number, read as signed, in \a value.
/// \return false, with \a value unchanged, if the number is below -2^63 or above 2^63 - 1
/// \code
/// 8 bits, 0xFB, number2LL(number, value) => true, -5
/// \endcode
[[nodiscard]] KELRT_API bool number2LL(const Kel_Number& number, std::int64_t& value) noexcept;

/// @}

} // namespace KelRT
