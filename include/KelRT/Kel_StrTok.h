// SPDX-License-Identifier: MIT
#pragma once

#include "KelRT/Export.h"

#include <cstdint>
#include <memory>

namespace KelRT {

/// Splits a text into tokens at a set of delimiter characters.
///
/// The delimiter set selects one of two modes:
///  - The pointer Kel_StrTok::CSV_DELIM selects comma-separated mode. No delimiter is skipped: a
///    leading, a repeated and a trailing comma each give an empty token.
///  - Any other pointer selects skipping mode, even if it points to the text ",". The delimiters in
///    front of a token are skipped, so a run of them acts as one separator.
///
/// \code
/// text                     delimiters and flags                  tokens
/// a,,b                     CSV_DELIM                          => a | (empty) | b
/// ,a,                      CSV_DELIM                          => (empty) | a | (empty)
/// ,                        CSV_DELIM                          => (empty) | (empty)
/// (empty)                  any                                => none
/// ;;a;b                    ";"                                => a | b
/// a;                       ";"                                => a
/// a;;                      ";"                                => a | (empty)
/// ;                        ";"                                => (empty)
/// say "hello world" now    WHITE_SPACE, quotes handled        => say | hello world | now
/// say "hello world" now    WHITE_SPACE, handled and kept      => say | "hello world" | now
/// "x,y",z                  CSV_DELIM, handled and kept        => "x,y" | z
/// "x,y",z                  CSV_DELIM, quotes handled          => x,y | (empty) | z
/// "ab"cd e                 WHITE_SPACE, handled and kept      => "ab" | d | e
/// "ab"cd e                 WHITE_SPACE, quotes handled        => ab | cd | e
/// \endcode
///
/// The last four lines show what happens after a closing quote. If quotes are kept, the next
/// character counts as a delimiter, whatever it is. If they are not kept, that character starts the
/// next token; in comma-separated mode, a comma there gives an empty token. So, to split a line
/// with quoted fields, keep the quotes and remove them afterwards with Kel_Util::unQuote. Unlike in
/// RFC 4180, a doubled quote does not stand for one quote: the first of the two closes the token.
///
/// In skipping mode, a text that ends in two or more delimiters gives one final empty token. So
/// does a text of nothing but delimiters.
///
/// Ownership: the tokenizer owns a copy of the text, in which the tokens lie. The delimiter set is
/// not copied.
///
/// To scan a text again, construct another tokenizer. Tokenizers cannot be copied or moved, since
/// their tokens point into them.
///
/// Threads: only one thread at a time may use an object; distinct objects are independent.
class Kel_StrTok {
public:
    /// This pointer selects comma-separated mode; it points to ",".
    KELRT_API static const char* const CSV_DELIM;

    /// These characters separate words: newline, tab, space, vertical tab, carriage return,
    /// backspace, form feed.
    KELRT_API static const char* const WHITE_SPACE;

    /// Copies \a text and starts before its first token.
    ///
    /// \param text         NUL-terminated text; a null pointer counts as empty text
    /// \param delimiters   NUL-terminated set of characters; with an empty set, no character is a
    ///                     delimiter. CSV_DELIM selects comma-separated mode
    /// \param handleQuotes If true, a token that begins with a double quote ends at the next double
    ///                     quote, or at the end of the text if there is none; it may contain
    ///                     delimiters. A double quote elsewhere in a token is an ordinary character
    /// \param toLowerCase  If true, the copy is converted to lower case before it is split, quoted
    ///                     parts included. The upper-case letters are those that `isupper` of the
    ///                     current locale accepts (in the default locale A to Z); `tolower`
    ///                     converts them
    /// \param keepQuotes   If true, quoted tokens keep their quotes. Without \a handleQuotes it has
    ///                     no effect
    /// \pre \a delimiters is not null, and the set stays alive and unchanged between the
    ///      construction and the last call of getNext()
    /// \throws std::bad_alloc if there is no memory for the copy
    KELRT_API Kel_StrTok(const char* text, const char* delimiters, bool handleQuotes,
                         bool toLowerCase, bool keepQuotes);

    /// Releases the copy, and with it every token.
    KELRT_API ~Kel_StrTok();

    Kel_StrTok(const Kel_StrTok&) = delete;
    Kel_StrTok& operator=(const Kel_StrTok&) = delete;

    /// Returns the next token as NUL-terminated text. After the last token, every call returns
    /// null. The function never fails and allocates nothing.
    ///
    /// The token stays valid and unchanged until the tokenizer is destroyed, even after later
    /// calls.
    KELRT_API const char* getNext() noexcept;

private:
    void examine(std::uint64_t newBlock) noexcept;
    std::uint64_t delimitersFrom(std::uint64_t from) noexcept;
    std::uint64_t findDelimiter(std::uint64_t from) noexcept;
    std::uint64_t skipDelimiters(std::uint64_t from) noexcept;
    std::uint64_t findQuote(std::uint64_t from) const noexcept;
    const char* cut(std::uint64_t first, std::uint64_t end) noexcept;
    const char* cutQuoted() noexcept;

    std::unique_ptr<char[]> buffer;
    bool handleQuotes;
    bool keepQuotes;
    std::uint64_t position = 0; // the next character to examine; >= length at the end
    std::uint64_t length;
    const char* delimiters;
    std::int32_t pendingEmptyToken = 0; // 1: an empty token follows the last character

    // Bit i of blockDelimiters is 1 if character 64 * block + i of the buffer is a delimiter. The
    // mask is computed once for all tokens of a block.
    std::uint64_t block = ~std::uint64_t{0};
    std::uint64_t blockDelimiters = 0;
};

} // namespace KelRT
