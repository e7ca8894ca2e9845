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

constexpr Flags KEPT{.handleQuotes = true, .keepQuotes = true};
const char* const CSV = Kel_StrTok::CSV_DELIM;
const char* const WORDS = Kel_StrTok::WHITE_SPACE;

Texts tokensOf(const char* text, const char* delimiters, Flags flags) {
    Kel_StrTok tokenizer(text, delimiters, flags.handleQuotes, flags.toLowerCase, flags.keepQuotes);
    Texts tokens;
    while (const char* const token = tokenizer.getNext())
        tokens.emplace_back(token);
    return tokens;
}

static_assert(!std::is_copy_constructible_v<Kel_StrTok> && !std::is_copy_assignable_v<Kel_StrTok>);
static_assert(!std::is_move_constructible_v<Kel_StrTok>);

TEST(Tokenizer, ModesQuotesAndEnds) {
    const std::string otherComma = ",";
    struct {
        const char* text;
        const char* delimiters;
        Flags flags;
        Texts expected;
    } const cases[] = {
        {nullptr, CSV, {}, {}},
        {"A,", CSV, {.toLowerCase = true}, {"a", ""}},
        {"a,,b", otherComma.c_str(), {}, {"a", "b"}}, // any other pointer
        {";;;", ";", {}, {""}},
        {"1\n2\t3 4\v5\r6\b7\f8", WORDS, {}, {"1", "2", "3", "4", "5", "6", "7", "8"}},
        {R"(x "a b)", WORDS, KEPT, {"x", "\"a b"}}, // without a closing quote
        {"\"", WORDS, KEPT, {"\""}},
    };
    for (const auto& [text, delimiters, flags, expected] : cases)
        EXPECT_EQ(tokensOf(text, delimiters, flags), expected)
            << (text == nullptr ? "null" : text) << ", keepQuotes " << flags.keepQuotes;
}

// Selects a locale with one byte per character in which 0xC4 is an upper-case letter.
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

TEST(CaseInsensitiveComparison, OrdersAndStops) {
    constexpr std::uint64_t ALL = ~std::uint64_t{0};
    struct {
        const char* a;
        const char* b;
        std::uint64_t count;
        int expected;
    } const cases[] = {
        {"", "a", ALL, -1},
        {"a\xFF", "az", ALL, 1},
        {"abX", "abY", 2, 0},
        {"abX", "abY", 3, -1},
        {"ab", "AB", 99, 0},
        {"a", "b", 0, 0},
        {"abc", "ab", std::uint64_t{1} << 32, 1},
    };
    for (const auto& [a, b, count, expected] : cases) {
        EXPECT_EQ(sign(Kel_Util::strnicmp(a, b, count)), expected) << a << " " << b << " " << count;
        EXPECT_EQ(sign(Kel_Util::strnicmp(std::string(b), std::string(a), count)), -expected);
        EXPECT_TRUE(count != ALL || sign(Kel_Util::stricmp(std::string(a), b)) == expected) << a;
    }
    EXPECT_EQ(Kel_Util::stricmp(std::string("a\0b", 3), std::string("A\0c", 3)), 0);
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

TEST(StringHelpers, StripUnquoteAndTrim) {
    struct {
        std::string input;
        std::string withoutCR;
        std::string unquoted;
        std::string trimmed;
    } const cases[] = {
        {"", "", "", ""},
        {"\r", "", "\r", ""},
        {"\"abc", "\"abc", "\"abc", "\"abc"},
        {"abc\"", "abc\"", "abc\"", "abc\""},
        {" \t va lue \r\n", " \t va lue \r\n", " \t va lue \r\n", "va lue"},
        {"\n\t \v\r\b\f", "\n\t \v\r\b\f", "\n\t \v\r\b\f", ""},
        {"\xA0x\x85", "\xA0x\x85", "\xA0x\x85", "\xA0x\x85"},
        {{" a \0 b ", 7}, {" a \0 b ", 7}, {" a \0 b ", 7}, "a"},
        {{"\"a\0b\"", 5}, {"\"a\0b\"", 5}, {"a\0b", 3}, "\"a"},
    };
    Texts inputs;
    Texts unquoted;
    for (const auto& row : cases) {
        std::string text = row.input;
        EXPECT_EQ(&Kel_Util::stripEndingCR(text), &text);
        EXPECT_EQ(text, row.withoutCR);
        text = row.input;
        EXPECT_EQ(&Kel_Util::unQuote(text), &text);
        EXPECT_EQ(text, row.unquoted);
        EXPECT_EQ(Kel_Util::trimWhitespace(row.input), row.trimmed);
        inputs.push_back(row.input);
        unquoted.push_back(row.unquoted);
    }
    Kel_Util::unQuote(inputs);
    EXPECT_EQ(inputs, unquoted);
}

TEST(KeyLookup, FirstWholeNameDecides) {
    struct {
        Texts entries;
        std::string key;
        std::string expected;
    } const cases[] = {
        {{"key=", "key=later"}, "KEY", ""},
        {{"key", "keyx=1", "ke=2"}, "key", ""},
        {{" key=v", "key =v"}, "key", ""},
        {{"tool", "-mode=fast", "mode= Slow "}, "MODE", " Slow "},
        {{"a=1"}, "a=1", ""},
    };
    for (const auto& [given, key, expected] : cases) {
        Texts entries = given;
        EXPECT_EQ(Kel_Util::findKey(entries, key), expected) << key;
        EXPECT_EQ(entries, given);
        std::vector<char*> argv;
        for (std::string& entry : entries)
            argv.push_back(entry.data());
        const auto argc = static_cast<std::uint32_t>(argv.size());
        EXPECT_EQ(Kel_Util::findKey(argc, argv.data(), key), expected) << key;
    }
    EXPECT_EQ(Kel_Util::findKey(0, nullptr, "key"), "");
    Texts withNuls = {std::string("a\0b=no", 6), std::string("a=1\0002", 5)};
    EXPECT_EQ(Kel_Util::findKey(withNuls, "a"), std::string("1\0002", 3));
}

} // namespace
