// SPDX-License-Identifier: MIT
#pragma once

#include "KelRT/Export.h"

#include <cstdint>
#include <string>

namespace KelRT {

/// Converts between bit arrays, texts of '0' and '1', hexadecimal text, decimal text and unsigned
/// integers. Every member is static; the class is used without instances.
///
/// **Bit numbering.** Bit n of an array is bit (n mod 8) of byte (n div 8), bit 0 being the least
/// significant bit of a byte.
///
/// **Texts:**
/// - A *binary string* has one character for each bit, the most significant bit first. In input,
///   '1' is a one bit and every other character a zero bit.
/// - A *reverse binary string* has one character for each bit of an array, bit 0 first.
/// - *Hexadecimal text* has the most significant digit first and no prefix.
///
/// **Integers.** "UInt" and "Long" are unsigned 32-bit on every host, "LongLong" and "ULL" unsigned
/// 64-bit. A "character code" is a signed 8-bit value, -128 to 127, also on hosts whose `char` is
/// unsigned.
///
/// **Hexadecimal digits.** The members treat lower-case letters and characters that are not digits
/// by different rules, and clients depend on each rule. The table gives the value of each character
/// code c:
///
/// | member          | '0'-'9' | 'A'-'F' | 'a'-'f' | other characters                       |
/// |-----------------|---------|---------|---------|----------------------------------------|
/// | `hex2Bin`       | 0-9     | 10-15   | c - 55  | c < 'A' ? c - 48 : c - 55              |
/// | `hexStr2BinStr` | 0-9     | 10-15   | 10-15   | the low four bits of `hex2Bin`'s value |
/// | `hexStr2UInt`   | 0-9     | 10-15   | 10-15   | c - 48                                 |
/// | `hexStr2ULL`    | 0-9     | 10-15   | 10-15   | c - 48                                 |
///
/// **Output strings.** A member that produces text fills a string passed by reference and returns
/// that reference. Input may point into the output: `binStr2HexStr(s.c_str(), s)` works. A member
/// that checks its arguments leaves the output empty if it throws.
///
/// **Errors.** Only the conditions that a member lists are checked; it throws `std::logic_error`
/// with the given message. If it lists two, it checks them in that order. Any other input is
/// converted by the rules above. Members that fill a string also throw `std::bad_alloc`.
///
/// **Locale.** `double2Str` writes the decimal point of the process's `LC_NUMERIC`; nothing else
/// depends on the locale.
///
/// **Threads.** The members keep no state and may run in parallel on distinct outputs.
class Kel_NumberUtil {
public:
    /// \name Fields of a bit array
    /// A field is given by two inclusive indices. Its bits are shifted into the result one after
    /// the other from \a firstBit to \a lastBit, so the bit at \a lastBit becomes the least
    /// significant one. If the field is longer than the result, its last 32 (or 64) bits remain.
    /// Each member says which index must be the higher one. If the indices are in the wrong order,
    /// the result is 0 and \a data is not read.
    /// \pre the indices are not negative, and the field lies inside the array
    ///
    /// Only bytes that hold bits of the field are read.
    /// \code
    /// const unsigned char data[] = {0x34, 0x12};
    /// getBits(data, 15, 0)        => 0x1234
    /// getBits(data, 11, 4)        => 0x23
    /// getReverseBits(data, 0, 3)  => 2
    /// getReverseBits(data, 0, 15) => 0x2C48
    /// \endcode
    /// @{

    /// Returns a field from its most significant bit \a firstBit down to \a lastBit, its least
    /// significant one (firstBit >= lastBit). If the field has more than 32 bits, the result is its
    /// lowest 32 bits.
    [[nodiscard]] KELRT_API static std::uint32_t
    getBits(const unsigned char* data, std::int32_t firstBit, std::int32_t lastBit) noexcept;

    /// Returns a field with its bits reversed: the bit at \a firstBit becomes the most significant
    /// one (firstBit <= lastBit). If the field has more than 32 bits, the result is its highest 32
    /// bits, reversed.
    [[nodiscard]] KELRT_API static std::uint32_t
    getReverseBits(const unsigned char* data, std::int32_t firstBit, std::int32_t lastBit) noexcept;

    /// Does the same as getBits.
    [[nodiscard]] KELRT_API static std::uint32_t
    getLongBits(const unsigned char* data, std::int32_t firstBit, std::int32_t lastBit) noexcept;

    /// Does the same as getReverseBits.
    [[nodiscard]] KELRT_API static std::uint32_t getReverseLongBits(const unsigned char* data,
                                                                    std::int32_t firstBit,
                                                                    std::int32_t lastBit) noexcept;

    /// Does the same as getBits for up to 64 bits.
    [[nodiscard]] KELRT_API static std::uint64_t getLongLongBits(const unsigned char* data,
                                                                 std::int32_t firstBit,
                                                                 std::int32_t lastBit) noexcept;

    /// Does the same as getReverseBits for up to 64 bits.
    [[nodiscard]] KELRT_API static std::uint64_t
    getReverseLongLongBits(const unsigned char* data, std::int32_t firstBit,
                           std::int32_t lastBit) noexcept;

    /// Does the same as getLongLongBits, and also prints every bit of the field to standard output,
    /// including bits that do not fit the result: '0' or '1' from \a firstBit on, a newline after
    /// every eighth bit, and one more newline at the end. If the indices are in the wrong order, it
    /// prints one newline.
    /// \code
    /// getLongLongBitsDebug(data, 15, 4) => prints "00010010\n0011\n"
    /// getLongLongBitsDebug(data, 15, 8) => prints "00010010\n\n"
    /// \endcode
    KELRT_API static std::uint64_t
    getLongLongBitsDebug(const unsigned char* data, std::int32_t firstBit, std::int32_t lastBit);
    /// @}

    /// \name Single digits
    /// @{

    /// Converts 0 to 15 to an upper-case hexadecimal digit, by the formula
    /// value < 10 ? '0' + value : 'A' + value - 10. Larger values follow the same formula,
    /// truncated to `char`.
    /// \code
    /// bin2Hex(7)  => '7'
    /// bin2Hex(12) => 'C'
    /// \endcode
    [[nodiscard]] KELRT_API static char bin2Hex(std::uint32_t value) noexcept;

    /// Converts an upper-case hexadecimal digit c to its value: c < 'A' ? c - 48 : c - 55, modulo
    /// 2^32. Nothing is checked, and lower-case letters are not digits here.
    /// \code
    /// hex2Bin('9') => 9
    /// hex2Bin('A') => 10
    /// hex2Bin('a') => 42
    /// \endcode
    [[nodiscard]] KELRT_API static std::uint32_t hex2Bin(char digit) noexcept;
    /// @}

    /// \name Bit arrays and texts
    /// @{

    /// Converts bits 0 to \a bitCount - 1 of \a binArray to a reverse binary string. It reads
    /// (bitCount + 7) / 8 bytes.
    /// \throws std::logic_error for a \a bitCount of 0:
    ///         "Internal error: bad bitCount value for Kel_NumberUtil::bin2ReverseBinStr";
    ///         for a null \a binArray:
    ///         "Internal error: bad binArray in Kel_NumberUtil::bin2ReverseBinStr"
    /// \code
    /// bin2ReverseBinStr({0x06}, 4) => "0110"
    /// \endcode
    KELRT_API static std::string& bin2ReverseBinStr(const unsigned char* binArray,
                                                    std::uint32_t bitCount, std::string& binStr);

    /// Converts a reverse binary string to bits 0, 1, ... of \a binArray. It writes exactly
    /// (length + 7) / 8 bytes; unused high bits of the last byte become 0.
    /// \pre binArray has room for these bytes, and binArray does not overlap binStr
    /// \throws std::logic_error for a null \a binStr:
    ///         "Internal error: bad binStr in Kel_NumberUtil::reverseBinStr2Bin"; for a null
    ///         \a binArray: "Internal error: bad binArray in Kel_NumberUtil::reverseBinStr2Bin"
    /// \code
    /// reverseBinStr2Bin("0110") => {0x06}
    /// \endcode
    KELRT_API static void reverseBinStr2Bin(const char* binStr, unsigned char* binArray);

    /// Converts a binary string to upper-case hexadecimal text of (length + 3) / 4 digits.
    /// \throws std::logic_error for a null or empty \a binStr:
    ///         "Internal error: bad binStr for Kel_NumberUtil::binStr2HexStr"
    /// \code
    /// binStr2HexStr("101")   => "5"
    /// binStr2HexStr("11111") => "1F"
    /// binStr2HexStr("0000")  => "0"
    /// \endcode
    KELRT_API static std::string& binStr2HexStr(const char* binStr, std::string& hexStr);

    /// Converts hexadecimal text of either case to a binary string of \a bitCount characters. The
    /// bits are truncated on the left, or padded there with '0', to this length. See the table
    /// above for characters that are not digits.
    /// \throws std::logic_error for a null or empty \a hexStr:
    ///         "Internal error: bad hexStr for Kel_NumberUtil::hexStr2BinStr"; for a
    ///         \a bitCount of 0: "Internal error: bad bitCount for Kel_NumberUtil::hexStr2BinStr"
    /// \code
    /// hexStr2BinStr("a5", 8)  => "10100101"
    /// hexStr2BinStr("A5", 10) => "0010100101"
    /// hexStr2BinStr("A5", 4)  => "0101"
    /// \endcode
    KELRT_API static std::string& hexStr2BinStr(const char* hexStr, std::uint32_t bitCount,
                                                std::string& binStr);

    /// Writes the first \a length characters of \a src in reverse order, followed by a NUL, to
    /// \a dst. \a src needs no terminator.
    /// \pre dst has room for length + 1 characters, and dst does not overlap src
    /// \code
    /// reverseStr("abc", 3) => "cba"
    /// reverseStr("abc", 0) => ""
    /// \endcode
    KELRT_API static void reverseStr(const char* src, std::uint32_t length, char* dst) noexcept;
    /// @}

    /// \name Texts to integers
    /// @{

    /// Converts a binary string to a number modulo 2^32, so only the last 32 characters count. A
    /// null pointer or an empty text yields 0.
    /// \code
    /// binStr2UInt("1010") => 10
    /// binStr2UInt("1012") => 10
    /// binStr2UInt("")     => 0
    /// \endcode
    [[nodiscard]] KELRT_API static std::uint32_t binStr2UInt(const char* binStr) noexcept;

    /// Converts hexadecimal text of either case to a number modulo 2^32. Any other character c is a
    /// digit of the value c - 48. An empty text yields 0. So does a text so long that its length,
    /// converted to a signed 32-bit number, is 0 or negative, for example 2^31 characters.
    /// \throws std::logic_error for a null pointer:
    ///         "Kel_NumberUtil::hexStr2UInt called with null ptr"
    /// \code
    /// hexStr2UInt("ff")        => 255
    /// hexStr2UInt("123456789") => 0x23456789
    /// hexStr2UInt("G")         => 23
    /// hexStr2UInt(" 1")        => 0xFFFFFF01
    /// \endcode
    [[nodiscard]] KELRT_API static std::uint32_t hexStr2UInt(const char* hexStr);

    /// Converts the text as hexStr2UInt does, modulo 2^64, up to the first NUL of \a hexStr. The
    /// string is not modified, although for compatibility the reference is not const.
    /// \code
    /// hexStr2ULL("FFFFFFFFFFFFFFFF") => 0xFFFFFFFFFFFFFFFF
    /// hexStr2ULL("")                 => 0
    /// \endcode
    [[nodiscard]] KELRT_API static std::uint64_t hexStr2ULL(std::string& hexStr) noexcept;

    /// Converts a signed decimal number to its 64-bit pattern. It reads as `scanf` does with
    /// "%lld": leading white space of the "C" locale is skipped, a sign may follow, and reading
    /// stops at the first character that is not a digit. Text without a number yields 0. A number
    /// outside the range -2^63 to 2^63 - 1 saturates.
    /// \code
    /// decStr2ULL("\t42abc")              => 42
    /// decStr2ULL("-1")                  => 0xFFFFFFFFFFFFFFFF
    /// decStr2ULL("abc")                 => 0
    /// decStr2ULL("9223372036854775808") => 0x7FFFFFFFFFFFFFFF
    /// \endcode
    [[nodiscard]] KELRT_API static std::uint64_t decStr2ULL(const std::string& text) noexcept;
    /// @}

    /// \name Integers to texts
    /// @{

    /// Converts the low \a bitCount bits of \a value to a binary string; higher bits are ignored.
    /// \throws std::logic_error for a \a bitCount of 0 or above 32:
    ///         "Internal error: bad bitCount value for Kel_NumberUtil::uInt2BinStr"
    /// \code
    /// uInt2BinStr(5, 4) => "0101"
    /// uInt2BinStr(5, 2) => "01"
    /// \endcode
    KELRT_API static std::string& uInt2BinStr(std::uint32_t value, std::uint32_t bitCount,
                                              std::string& binStr);

    /// Converts \a value to decimal text without leading zeros.
    KELRT_API static std::string& uInt2DecStr(std::uint32_t value, std::string& out);

    /// Converts \a value to lower-case hexadecimal text, padded on the left with '0' to
    /// (bitCount + 3) / 4 digits. A value with more digits is printed in full.
    /// \code
    /// uInt2HexStr(0xAB, 16) => "00ab"
    /// uInt2HexStr(0xAB, 4)  => "ab"
    /// uInt2HexStr(0, 0)     => "0"
    /// \endcode
    KELRT_API static std::string& uInt2HexStr(std::uint32_t value, std::uint32_t bitCount,
                                              std::string& out);

    /// Converts \a value, read as a signed 64-bit number, to decimal text. decStr2ULL converts the
    /// text back to the same value.
    /// \code
    /// uLL2DecStr(42)                 => "42"
    /// uLL2DecStr(0xFFFFFFFFFFFFFFFF) => "-1"
    /// \endcode
    KELRT_API static std::string& uLL2DecStr(std::uint64_t value, std::string& out);

    /// Converts \a value to lower-case hexadecimal text without leading zeros; 0 becomes "0".
    KELRT_API static std::string& uLL2HexStr(std::uint64_t value, std::string& out);

    /// Converts \a value to fixed-point text with six digits after the decimal point, as `printf`
    /// prints it with "%f". The text is complete, up to 317 characters. Infinities and NaN become
    /// what the C library prints for them.
    /// \code
    /// double2Str(1.5) => "1.500000"
    /// \endcode
    KELRT_API static std::string& double2Str(double value, std::string& out);
    /// @}
};

} // namespace KelRT
