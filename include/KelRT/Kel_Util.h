// SPDX-License-Identifier: MIT
#pragma once

#include "KelRT/Export.h"

#include <cstdint>
#include <string>
#include <vector>

namespace KelRT {

/// Static helpers; the class is used without instances.
///
/// Strings are byte strings. The text functions read and change only what they are given, keep
/// nothing between calls, and report no errors: where a text does not fit the rule, it stays as it
/// is.
///
/// Threads: the text functions may be called from any thread at any time, on texts that no other
/// thread changes. Those that fold case read the locale that the process has set.
class Kel_Util {
public:
    /// \name Text
    ///
    /// *Without regard to case* means: both texts are compared byte by byte as unsigned characters,
    /// each upper-case letter first folded to lower case by the process's locale (`tolower`; in the
    /// default locale A to Z alone). As the folding goes to lower case, the punctuation between the
    /// two alphabets (`[ \ ] ^ _` and the grave accent) sorts in front of every letter.
    ///
    /// Only the sign of a comparison's result carries meaning.
    ///@{

    /// Compares two texts without regard to case, up to the first difference or the end of either;
    /// the end counts as the smallest character.
    /// \return negative, 0 or positive as \a a sorts before, with or behind \a b
    /// \pre \a a and \a b are not null.
    /// \code
    /// stricmp("Key", "kEY") => 0
    /// stricmp("a", "B")     => negative
    /// stricmp("_", "A")     => negative
    /// stricmp("abc", "ab")  => positive
    /// \endcode
    KELRT_API static int stricmp(const char* a, const char* b);

    /// As stricmp, over the first \a count characters at the most; with a \a count of 0 the result
    /// is 0.
    /// \pre \a a and \a b are not null.
    /// \code
    /// strnicmp("HELLO world", "hello there", 6) => 0
    /// strnicmp("HELLO world", "hello there", 7) => positive
    /// \endcode
    KELRT_API static int strnicmp(const char* a, const char* b, std::uint64_t count);

    /// As the form for NUL-terminated texts: what stands behind a NUL within a string is not
    /// compared.
    KELRT_API static int stricmp(const std::string& a, const std::string& b);

    /// As the form for NUL-terminated texts: what stands behind a NUL within a string is not
    /// compared.
    KELRT_API static int strnicmp(const std::string& a, const std::string& b, std::uint64_t count);

    /// Removes one carriage return from the end of \a text, as a line has it that was written on
    /// Windows and read without its newline.
    /// \return \a text
    /// \code
    /// "line\r"   => "line"
    /// "line\r\r" => "line\r"
    /// "line\r\n" => "line\r\n"
    /// \endcode
    KELRT_API static std::string& stripEndingCR(std::string& text);

    /// Removes one pair of double quotes that encloses \a text. Quotes within, apostrophes and a
    /// quote without a partner stay.
    /// \return \a text
    /// \code
    /// "abc"   => abc
    /// ""      => (empty)
    /// ""abc"" => "abc"
    /// "a"b    => "a"b
    /// "       => "
    /// \endcode
    KELRT_API static std::string& unQuote(std::string& text);

    /// unQuote for each of \a texts.
    KELRT_API static void unQuote(std::vector<std::string>& texts);

    /// \a text without the white space at both ends; that within stays. White space is what
    /// Kel_StrTok::WHITE_SPACE holds, backspace and form feed included. A NUL ends the text.
    /// \throws std::bad_alloc
    /// \code
    /// " \t value \r\n" => "value"
    /// "\bvalue\f"      => "value"
    /// "a b"            => "a b"
    /// " \t "           => ""
    /// \endcode
    KELRT_API static std::string trimWhitespace(const std::string& text);

    /// The value of one setting among words of the form `name=value`.
    ///
    /// The name is what stands in front of a word's first `=`, the value all that follows it, as
    /// it is written. The first word whose name equals \a key decides: names have the same length
    /// and compare equal by stricmp. Words without `=` are passed over. Nothing is trimmed, and no
    /// leading dash or other prefix is recognised.
    ///
    /// \param entries the words; they are not changed
    /// \return the value; empty when no name matches, which cannot be told from an empty value
    /// \throws std::bad_alloc
    /// \code
    /// {"a=1", "B=2", "b=3"}, "b" => "2"
    /// {"a=b=c"}, "A"             => "b=c"
    /// {"key", "keyx=1"}, "key"   => ""
    /// {" key=v"}, "key"          => ""
    /// {"=v"}, ""                 => "v"
    /// \endcode
    KELRT_API static std::string findKey(std::vector<std::string>& entries, const std::string& key);

    /// findKey over the \a argc texts of \a argv, the first one (by custom the program's name)
    /// included.
    /// \pre \a argv holds \a argc pointers, none of them null.
    KELRT_API static std::string findKey(std::uint32_t argc, char** argv, const std::string& key);

    ///@}
};

} // namespace KelRT
