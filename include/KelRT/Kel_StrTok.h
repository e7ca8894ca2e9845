// SPDX-License-Identifier: MIT
#pragma once

#include "KelRT/Export.h"

#include <cstdint>
#include <memory>

namespace KelRT {

/// Splits a text into tokens at a set of delimiter characters.
///
/// There are two modes. The *pointer* to the delimiter set selects the mode, not the text that it
/// points to:
///  - Comma-separated mode, with the pointer Kel_StrTok::CSV_DELIM itself: every field counts. No
///    delimiter is skipped; a leading, a repeated and a trailing comma each give an empty token.
///  - Skipping mode, with any other set, another "," included: the run of delimiters before a token
///    is skipped, so a run acts as one separator.
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
/// The last four lines show what follows a closing quote. If quotes are kept, the next character
/// counts as the delimiter, whatever it is. If they are not kept, that character starts the next
/// token; in comma-separated mode this gives an empty token. So split records with quoted fields
/// with quotes kept, and remove the quotes with Kel_Util::unQuote. Unlike in RFC 4180, a
/// doubled quote does not stand for one quote: the first of the two closes the token.
///
/// In skipping mode, a text that ends in two or more delimiters, or consists of delimiters, gives
/// one final empty token.
///
/// Ownership: the constructor copies the text; the tokens lie in that copy, which the tokenizer
/// owns. The delimiter set is not copied.
///
/// To scan a text again, construct another tokenizer. Tokenizers are neither copied nor moved,
/// since their tokens point into them.
///
/// Threads: only one thread at a time may use an object; distinct objects are independent.
class Kel_StrTok {
public:
    /// ",", at the address that selects comma-separated mode.
    KELRT_API static const char* const CSV_DELIM;

    /// The delimiters of words: newline, tab, space, vertical tab, carriage return, backspace, form
    /// feed.
    KELRT_API static const char* const WHITE_SPACE;

    /// Copies \a text and starts before its first token.
    ///
    /// \param text         ends at its NUL; a null pointer is taken as the empty text
    /// \param delimiters   ends at its NUL; an empty set splits nowhere. CSV_DELIM selects
    ///                     comma-separated mode
    /// \param handleQuotes a token that begins with a double quote runs to the next double quote,
    ///                     or without one to the end of the text, whatever delimiters lie between.
    ///                     A double quote elsewhere in a token is an ordinary character
    /// \param toLowerCase  every upper-case letter of the copy is folded to lower case first, also
    ///                     within quotes, by `isupper` and `tolower` of the current locale (in the
    ///                     default locale only A to Z)
    /// \param keepQuotes   quoted tokens keep their quotes; without \a handleQuotes it has no
    ///                     effect
    /// \pre \a delimiters is not null, and the set stays alive and unchanged while tokens are taken
    ///      (delimiters are searched for beyond the current token)
    /// \throws std::bad_alloc when there is no memory for the copy
    KELRT_API Kel_StrTok(const char* text, const char* delimiters, bool handleQuotes,
                         bool toLowerCase, bool keepQuotes);

    /// Releases the copy, and with it every token.
    KELRT_API ~Kel_StrTok();

    Kel_StrTok(const Kel_StrTok&) = delete;
    Kel_StrTok& operator=(const Kel_StrTok&) = delete;

    /// The next token as a NUL-terminated text, or null if there is none; after a null every
    /// further call gives null again. Every text is valid, and nothing is allocated.
    ///
    /// The token stays valid and unchanged until the tokenizer is destroyed, even if later tokens
    /// are taken.
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
    std::uint64_t position = 0; // of the next character to examine; >= length at the end
    std::uint64_t length;
    const char* delimiters;
    std::int32_t pendingEmptyToken = 0; // 1: an empty token is due behind the last character

    // The delimiters among the 64 characters of one block of the buffer, found once for all tokens
    // of the block: bit i of the mask stands for character 64 * block + i.
    std::uint64_t block = ~std::uint64_t{0};
    std::uint64_t blockDelimiters = 0;
};

} // namespace KelRT
