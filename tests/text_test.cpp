// SPDX-License-Identifier: MIT
#include "KelRT/Kel_StrTok.h"
#include "KelRT/Kel_Util.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <clocale>
#include <type_traits>

using namespace KelRT;

namespace {

static_assert(!std::is_copy_constructible_v<Kel_StrTok> && !std::is_copy_assignable_v<Kel_StrTok>);
static_assert(!std::is_move_constructible_v<Kel_StrTok>);

// Selects a locale with one byte per character in which 0xC4 is the upper-case letter of 0xE4.
// Returns false if the host has none.
bool selectLatinLocale() {
    const volatile int upper = 0xC4; // GCC computes tolower of a constant for the default locale
    const auto isLatin = [&](const char* name) {
        return std::setlocale(LC_CTYPE, name) != nullptr && std::tolower(upper) == 0xE4;
    };
    const auto names = {"de_DE.ISO-8859-1", "en_US.ISO-8859-1", "German_Germany.1252"};
    return std::any_of(names.begin(), names.end(), isLatin);
}

TEST(CaseFolding, FollowsTheLocaleOfTheProcess) {
    EXPECT_STREQ(Kel_StrTok("\xC4Q", " ", false, true, false).getNext(), "\xC4q");
    EXPECT_LT(Kel_Util::stricmp("\xC4", "\xE4"), 0);
    if (!selectLatinLocale())
        GTEST_SKIP() << "no locale of this host has letters above 127 in one byte";
    EXPECT_STREQ(Kel_StrTok("\xC4Q", " ", false, true, false).getNext(), "\xE4q");
    EXPECT_EQ(Kel_Util::stricmp("\xC4", "\xE4"), 0);
    static_cast<void>(std::setlocale(LC_CTYPE, "C"));
}

TEST(CaseInsensitiveComparison, EveryPairOfBytesIsOrderedByItsFoldedCodes) {
    const auto folded = [](int c) { return c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c; };
    for (int a = 0; a < 256; ++a)
        for (int b = 0; b < 256; ++b) {
            const char textA[] = {static_cast<char>(a), '\0'};
            const char textB[] = {static_cast<char>(b), '\0'};
            EXPECT_EQ(std::clamp(Kel_Util::stricmp(textA, textB), -1, 1),
                      std::clamp(folded(a) - folded(b), -1, 1))
                << a << " " << b;
        }
}

} // namespace
