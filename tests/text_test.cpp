// SPDX-License-Identifier: MIT
#include "KelRT/Kel_StrTok.h"
#include "KelRT/Kel_Util.h"

#include "models/tokenizer_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <clocale>
#include <cstdlib>
#include <string>
#include <type_traits>
#include <vector>

using namespace KelRT;
using model::Flags;

namespace {

using Texts = std::vector<std::string>;

Texts tokensOf(const char* text, const char* delimiters, Flags flags) {
    Kel_StrTok tokenizer(text, delimiters, flags.handleQuotes, flags.toLowerCase, flags.keepQuotes);
    Texts tokens;
    while (const char* const token = tokenizer.getNext())
        tokens.emplace_back(token);
    return tokens;
}

static_assert(!std::is_copy_constructible_v<Kel_StrTok> && !std::is_copy_assignable_v<Kel_StrTok>);
static_assert(!std::is_move_constructible_v<Kel_StrTok>);

// Selects a locale with one byte per character in which 0xC4 is an upper-case letter; returns false
// if the host has none.
bool selectLatinLocale() {
    const volatile int upper = 0xC4; // GCC computes tolower of a constant for the default locale
    const auto isLatin = [&](const char* name) {
        return std::setlocale(LC_CTYPE, name) != nullptr && std::tolower(upper) == 0xE4;
    };
    const auto names = {"de_DE.ISO-8859-1", "en_US.ISO-8859-1", "German_Germany.1252"};
    return std::any_of(names.begin(), names.end(), isLatin);
}

TEST(CaseFolding, FollowsTheLocaleOfTheProcess) {
    EXPECT_EQ(tokensOf("\xC4Q", " ", {.toLowerCase = true}), Texts{"\xC4q"});
    EXPECT_LT(Kel_Util::stricmp("\xC4", "\xE4"), 0);
    if (!selectLatinLocale())
        GTEST_SKIP() << "no locale of this host has letters above 127 in one byte";
    EXPECT_EQ(tokensOf("\xC4Q", " ", {.toLowerCase = true}), Texts{"\xE4q"});
    EXPECT_EQ(Kel_Util::stricmp("\xC4", "\xE4"), 0);
    static_cast<void>(std::setlocale(LC_CTYPE, "C"));
}

int sign(int value) {
    return value == 0 ? 0 : value / std::abs(value);
}

TEST(CaseInsensitiveComparison, EveryPairOfBytes) {
    const auto folded = [](int c) { return c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c; };
    for (int a = 0; a < 256; ++a)
        for (int b = 0; b < 256; ++b) {
            const char textA[] = {static_cast<char>(a), '\0'};
            const char textB[] = {static_cast<char>(b), '\0'};
            EXPECT_EQ(sign(Kel_Util::stricmp(textA, textB)), sign(folded(a) - folded(b)))
                << a << " " << b;
        }
}

TEST(KeyLookup, StringsMayHoldNuls) {
    Texts entries = {std::string("a\0b=no", 6), std::string("a=1\0002", 5)};
    EXPECT_EQ(Kel_Util::findKey(entries, "a"), std::string("1\0002", 3));
}

} // namespace
