// SPDX-License-Identifier: MIT
#pragma once

#include "KelRT/Export.h"

#include <cstdint>
#include <string>
#include <vector>

namespace KelRT {

/// A Kel_Number is an integer of a fixed width of one or more bits. It is parsed from text and
/// formatted as text.
///
/// **Value.** The number is a bit pattern of exactly its width, bit 0 the least significant. Each
/// operation says whether it reads the pattern as unsigned, 0 to 2^width - 1, or as signed in two's
/// complement, where bit width - 1 is the sign bit. Arithmetic is modulo 2^width: values that do
/// not fit wrap without an error.
///
/// **Width.** The constructor sets it; only assignment from another number changes it.
///
/// Radix letters, the same for reading and printing:
///
/// | letter             | base | reading                                                    |
/// |--------------------|------|------------------------------------------------------------|
/// | 'B', 'b'           | 2    | binary                                                     |
/// | 'O', 'o'           | 8    | octal                                                      |
/// | 'D', 'd', 'I', 'i' | 10   | decimal, printed as a signed number                        |
/// | 'U', 'u'           | 10   | decimal, printed as an unsigned number                     |
/// | 'X', 'x'           | 16   | hexadecimal, printed with letters of the same case         |
/// | 'S', 's'           | 256  | characters: the code of each is one digit                  |
/// | any other          | -    | `set` refuses every digit; `toString` gives an error text  |
///
/// **Ownership.** A number owns its storage. It can be copied only by assignment: the copy
/// constructor is private, so numbers are passed by reference and never returned by value.
/// \code
/// Kel_Number copy(1); // any width will do: assignment replaces it
/// copy = number;
/// \endcode
///
/// **Memory.** An operation that runs out of memory throws `std::bad_alloc` and leaves the number
/// as it was.
///
/// **Locale.** `setFloat` and `toFloatString` follow the process's `LC_NUMERIC`, as the C library's
/// conversions do: under a locale with a decimal comma they read and write "1,5". Everything else
/// is independent of the locale.
///
/// **Threads.** Distinct numbers are independent. Several threads may read a number at the same
/// time; an operation that changes it must run alone.
class Kel_Number {
public:
    /// Constructs a number of \a bitCount bits with the value 0.
    /// \param bitCount the width in bits, at least 1
    /// \throws std::logic_error "Internal error: bad bitCount for Kel_Number" for a width of 0
    /// \throws std::bad_alloc if the storage cannot be allocated
    /// \throws std::length_error for a width beyond the limit of `std::vector`: on 32-bit hosts,
    /// 2^34 bits or more
    KELRT_API explicit Kel_Number(std::uint64_t bitCount);

    /// Copies the width and the value of \a other. Assigning a number to itself changes nothing.
    /// \throws std::bad_alloc; this number is then unchanged
    KELRT_API Kel_Number& operator=(const Kel_Number& other);

    /// Releases the storage.
    KELRT_API ~Kel_Number();

    /// Sets the value to 0 and keeps the width.
    KELRT_API void setToZero() noexcept;

    /// Returns true if every bit is 0.
    [[nodiscard]] KELRT_API bool isZero() const noexcept;

    /// Returns true if the sign bit, bit width - 1, is set. In a number of 1 bit this is bit 0.
    [[nodiscard]] KELRT_API bool isNegative() const noexcept;

    /// Replaces the value with its two's complement, 2^width - value. 0 and the most negative value
    /// (only the sign bit set) are their own complements.
    KELRT_API void negate() noexcept;

    /// Parses an integer from text.
    ///
    /// In the bases 2, 8, 10 and 16 the characters '0' to '9', 'A' to 'F' and 'a' to 'f' are
    /// digits. One or more '-' anywhere make the whole value negative. Every other character
    /// (blanks, '_', ',', 'x', NUL, codes 0x80 and above) is skipped, so digits may be grouped and
    /// hexadecimal text may have the prefix "0x". A text without digits yields 0.
    ///
    /// In base 256 each character is one digit whose value is its code, most significant first;
    /// '-' is the digit 45. Codes 0x80 and above are refused.
    ///
    /// A value that does not fit wraps modulo 2^width.
    ///
    /// \param radix a radix letter of the table above
    /// \param text  any bytes, NUL included
    /// \return true on success. If \a text contains a digit outside the base (any digit, if
    ///         \a radix is not in the table), the result is false and the value becomes 0
    /// \throws std::bad_alloc only when parsing decimal text into a number wider than 512 bits
    /// \code
    /// set('x', "0x1F")      => 31, true
    /// set('b', "1010_1010") => 170, true
    /// set('d', "1,000")     => 1000, true
    /// set('d', "12-")       => -12, true
    /// set('q', "-")         => 0, true
    /// set('d', "1A")        => 0, false
    /// set('b', "2")         => 0, false
    /// set('q', "5")         => 0, false
    /// 16 bits, set('u', "70000") => 4464, true
    /// 16 bits, set('S', "AB")    => 0x4142, true
    /// \endcode
    KELRT_API bool set(char radix, const std::string& text);

    /// Parses a scaled value: stores (value of \a text - \a offset) / \a scale modulo 2^width in
    /// two's complement. The fraction is dropped.
    ///
    /// Since the fraction is dropped, the text of toFloatString() may read back as a number one
    /// step nearer to 0. At a scale of 0.1, for example, the number 3 prints as "0.3", and
    /// 0.3 / 0.1 is just below 3 in double arithmetic; this happens to 11,469 of the numbers 0 to
    /// 32,767. It does not happen if all digits are printed and no operation rounds. For example,
    /// no operation rounds if \a scale and \a offset are small multiples of a power of two, such as
    /// 0.0625 and 2.5, and the number is not very wide. To get the nearest number instead, pass
    /// \a offset - \a scale / 2 for a number that is not negative, and \a offset + \a scale / 2 for
    /// a negative one.
    ///
    /// \param text   a floating-point number as `atof` reads it: leading white space is skipped,
    ///               reading stops at the first character that cannot continue the number, and text
    ///               that does not begin with a number yields 0.0. The decimal point is that of
    ///               `LC_NUMERIC`.
    /// \param scale  the physical value of one step
    /// \param offset the physical value that the number 0 stands for
    ///
    /// A quotient that is not finite (a \a scale of 0, a text beyond the range of double, "nan")
    /// stores 0. No error is reported.
    /// \code
    /// setFloat("2.5", 0.5, 0.0)  => 5
    /// setFloat("10", 2.0, 4.0)   => 3
    /// setFloat("-1.7", 1.0, 0.0) => -1
    /// setFloat("abc", 1.0, 0.0)  => 0
    /// setFloat("0.3", 0.1, 0.0)  => 2
    /// setFloat("0.3", 0.1, -0.05) => 3
    /// \endcode
    KELRT_API void setFloat(const std::string& text, double scale, double offset) noexcept;

    /// Formats the value as digits, most significant first.
    ///
    /// Base 10 prints no leading zeros; under 'D', 'd', 'I', 'i' a number whose sign bit is set
    /// prints as '-' and its magnitude. The other bases print the pattern as an unsigned number.
    /// The text is padded on the left with '0' to width digits in base 2, (width + 2) / 3 in base 8
    /// and (width + 3) / 4 in base 16. In base 256 it is padded with blanks to (width + 7) / 8
    /// characters; the value 0 prints as blanks followed by a NUL. These lengths are computed
    /// modulo 2^32: in base 2, a number of 2^32 + 8 bits is padded to 8 digits. Significant digits
    /// are always printed in full.
    ///
    /// \param radix a radix letter of the table above; for any other letter the result is
    ///              "bad format for number"
    /// \throws std::bad_alloc
    /// \code
    /// 16 bits, 10, toString('x')       => "000a"
    /// 16 bits, 10, toString('X')       => "000A"
    /// 16 bits, 10, toString('o')       => "000012"
    /// 12 bits, 0xFFF, toString('d')    => "-1"
    /// 12 bits, 0xFFF, toString('u')    => "4095"
    /// 12 bits, 0xFFF, toString('b')    => "111111111111"
    /// 32 bits, 0x414243, toString('s') => " ABC"
    /// \endcode
    [[nodiscard]] KELRT_API std::string toString(char radix) const;

    /// Formats the scaled value \a scale * value + \a offset in fixed-point notation. The value is
    /// read as signed. See setFloat() for reading the text back.
    ///
    /// The value is first converted to double, 16 bits at a time, most significant first. Each step
    /// rounds as double arithmetic does: values of up to 53 bits are exact, and values beyond the
    /// range of double become infinite. Then the multiplication by \a scale and the addition of
    /// \a offset are each rounded.
    ///
    /// \param scale     the physical value of one step
    /// \param offset    the physical value that the number 0 stands for
    /// \param precision how many digits follow the decimal point, which is that of `LC_NUMERIC`; 0
    ///                  omits the point
    /// \return the whole text that the C library's `printf` prints for "%.*f" with \a precision,
    ///         also for infinities and NaN
    /// \throws std::length_error for a \a precision above 2^31 - 512. Up to this limit, the length
    ///         of every text fits an `int`
    /// \throws std::bad_alloc
    /// \code
    /// 16 bits, 1000, toFloatString(0.001, 0.0, 3) => "1.000"
    /// 16 bits, -2, toFloatString(0.5, 1.0, 2)     => "0.00"
    /// 8 bits, 0x80, toFloatString(1.0, 0.0, 0)    => "-128"
    /// \endcode
    [[nodiscard]] KELRT_API std::string toFloatString(double scale, double offset,
                                                      std::uint32_t precision) const;

private:
    friend struct ValueAccess; // lets the functions of NumberValue.h access the words

    KELRT_API static const std::uint32_t WORD_LENGTH = 16;  // bits in a word
    KELRT_API static const std::uint32_t WORD_BASE = 65536; // the radix of one word

    Kel_Number(const Kel_Number& other); // to copy: Kel_Number copy(1); copy = other;

    void maskTopWord() noexcept;
    double toDouble() const noexcept; // reads the pattern as unsigned

    std::uint16_t topWordMask;        // the bits of the top word that belong to the number
    std::vector<std::uint16_t> words; // word 0 is the least significant; bits above the width are 0
    std::uint64_t bitCount;           // the width, at least 1
    std::uint64_t wordCount;          // == words.size(); kept for the object layout
};

} // namespace KelRT
