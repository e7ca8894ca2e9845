// SPDX-License-Identifier: MIT
#include "KelRT/Kel_StrTok.h"
#include "KelRT/Kel_Util.h"

#include "failing_new.h"
#include "models/tokenizer_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <new>
#include <optional>
#include <random>
#include <string>
#include <vector>

using namespace KelRT;
using model::Flags;

namespace {

using Texts = std::vector<std::string>;

constexpr Flags QUOTES{.handleQuotes = true};
constexpr Flags KEPT{.handleQuotes = true, .keepQuotes = true};
const char* const CSV = Kel_StrTok::CSV_DELIM;
const char* const WORDS = Kel_StrTok::WHITE_SPACE;

// All tokens, read only after the last one was cut, so that a later cut which spoils an earlier
// token shows.
Texts tokensOf(const char* text, const char* delimiters, Flags flags) {
    Kel_StrTok tokenizer(text, delimiters, flags.handleQuotes, flags.toLowerCase, flags.keepQuotes);
    std::vector<const char*> tokens;
    while (const char* const token = tokenizer.getNext())
        tokens.push_back(token);
    EXPECT_EQ(tokenizer.getNext(), nullptr);
    EXPECT_EQ(tokenizer.getNext(), nullptr);
    return {tokens.begin(), tokens.end()};
}

TEST(Tokenizer, ModesQuotesAndEnds) {
    const std::string otherComma = ",";
    struct {
        const char* text;
        const char* delimiters;
        Flags flags;
        Texts expected;
    } const cases[] = {
        {nullptr, CSV, {}, {}},
        {nullptr, ";", KEPT, {}},
        {"", CSV, {}, {}},
        {"", ";", {}, {}},
        // Every field counts.
        {"a,,b", CSV, {}, {"a", "", "b"}},
        {",a,", CSV, {}, {"", "a", ""}},
        {",", CSV, {}, {"", ""}},
        {"A,", CSV, {.toLowerCase = true}, {"a", ""}},
        {"a b;c", CSV, {}, {"a b;c"}},
        // Runs are skipped, with any other pointer.
        {"a,,b", otherComma.c_str(), {}, {"a", "b"}},
        {"a,,b", ",", {}, {"a", "b"}},
        {";;a;b", ";", {}, {"a", "b"}},
        {"a;", ";", {}, {"a"}},
        {"a;;", ";", {}, {"a", ""}},
        {";", ";", {}, {""}},
        {";;;", ";", {}, {""}},
        {"a;b", "", {}, {"a;b"}},
        {"a\xFF"
         "b\x7F",
         "\xFF",
         {},
         {"a", "b\x7F"}},
        {"1\n2\t3 4\v5\r6\b7\f8", WORDS, {}, {"1", "2", "3", "4", "5", "6", "7", "8"}},
        // Quotes.
        {R"(say "hello world" now)", WORDS, {}, {"say", "\"hello", "world\"", "now"}},
        {R"(say "hello world" now)", WORDS, QUOTES, {"say", "hello world", "now"}},
        {R"(say "hello world" now)", WORDS, KEPT, {"say", R"("hello world")", "now"}},
        {R"("x,y",z)", CSV, KEPT, {R"("x,y")", "z"}},
        {R"("x,y",z)", CSV, QUOTES, {"x,y", "", "z"}},
        {R"("x,y",z)", CSV, {.keepQuotes = true}, {"\"x", "y\"", "z"}},
        {R"("ab"cd e)", WORDS, KEPT, {R"("ab")", "d", "e"}},
        {R"("ab"cd e)", WORDS, QUOTES, {"ab", "cd", "e"}},
        {R"(a"b c" d)", WORDS, QUOTES, {"a\"b", "c\"", "d"}},
        {R"("a",)", CSV, KEPT, {R"("a")", ""}},
        {R"("a",)", CSV, QUOTES, {"a", "", ""}},
        {R"("","")", CSV, KEPT, {R"("")", R"("")"}},
        {R"(x "")", WORDS, QUOTES, {"x", ""}},
        {R"("A B" C)", WORDS, {true, true, false}, {"a b", "c"}},
        // Without a closing quote.
        {R"(x "a b)", WORDS, QUOTES, {"x", "a b"}},
        {R"(x "a b)", WORDS, KEPT, {"x", "\"a b"}},
        {R"("a,)", CSV, QUOTES, {"a,", ""}},
        {"\"", WORDS, QUOTES, {""}},
        {"\"", WORDS, KEPT, {"\""}},
    };
    for (const auto& [text, delimiters, flags, expected] : cases)
        EXPECT_EQ(tokensOf(text, delimiters, flags), expected)
            << (text == nullptr ? "null" : text) << ", keepQuotes " << flags.keepQuotes;
}

TEST(Tokenizer, AgreesWithTheModelOnRandomTexts) {
    constexpr unsigned SEED = 20240611;
    std::mt19937 random(SEED);
    const auto below = [&random](std::size_t bound) { return random() % bound; };
    const std::string alphabets[] = {"ab,;",
                                     "aZ\",",
                                     "\" ;x",
                                     "\n\t \v\r\b\fQ\"",
                                     ",,,,,,,,,,a",
                                     "abcdefghijklmnopqrstuvwxyz,",
                                     "\x80\xE4\xFF\x01,\"A"};
    const char* const sets[] = {CSV, ",", WORDS, ";", "\xE4,\xFF", "\"", "", "zyxwvutsrqponm"};
    for (unsigned round = 0; round < 20000; ++round) {
        const std::string& alphabet = alphabets[below(std::size(alphabets))];
        std::string text(below(round % 4 == 0 ? 300 : 12), '\0');
        for (char& c : text)
            c = alphabet[below(alphabet.size())];
        const char* const set = sets[below(std::size(sets))];
        const Flags flags{below(2) == 0, below(2) == 0, below(2) == 0};
        ASSERT_EQ(tokensOf(text.c_str(), set, flags),
                  model::Tokenizer(text, set, set == CSV, flags).tokens())
            << "seed " << SEED << ", round " << round << ", text " << text;
    }
}

// Blocks of 64 characters are examined at a time: tokens and runs end on either side of each edge.
TEST(Tokenizer, TokensAndRunsOfEveryLength) {
    for (std::size_t length = 1; length <= 200; ++length)
        for (std::size_t lead = 0; lead < 3; ++lead) {
            const std::string token(length, 'x');
            const std::string front(lead, ' ');
            const std::string tail(length, ' ');
            const std::string begin = front + token;
            const std::string words = begin + tail;
            const std::string fields = begin + ',';
            EXPECT_EQ(tokensOf((words + "y").c_str(), " ", {}), (Texts{token, "y"}));
            EXPECT_EQ(tokensOf((fields + token).c_str(), CSV, {}), (Texts{begin, token}));
        }
}

TEST(Tokenizer, LeavesTheCallersTextAlone) {
    const char text[] = "A,\"B\",C";
    const std::string before = text;
    EXPECT_EQ(tokensOf(text, CSV, {true, true, true}), (Texts{"a", "\"b\"", "c"}));
    EXPECT_EQ(text, before);
}

TEST(Tokenizer, AllocatesAtConstructionOnly) {
    if (!test::failingNewReachesTheLibrary())
        GTEST_SKIP() << "this host keeps the program's operator new out of the library";
    Kel_StrTok tokenizer("a,\"b,c\",,d,", CSV, true, true, true);
    std::optional<Kel_StrTok> unborn;
    unsigned count = 0;
    bool thrown = false;
    {
        const test::FailingNew noMemory; // an allocation in getNext would end the program
        while (tokenizer.getNext() != nullptr)
            ++count;
        try {
            unborn.emplace("text", ",", false, false, false);
        } catch (const std::bad_alloc&) {
            thrown = true;
        }
    }
    EXPECT_EQ(count, 5U);
    EXPECT_TRUE(thrown);
}

TEST(Tokenizer, IsNeitherCopiedNorMoved) {
    static_assert(!std::is_copy_constructible_v<Kel_StrTok>);
    static_assert(!std::is_copy_assignable_v<Kel_StrTok>);
    static_assert(!std::is_move_constructible_v<Kel_StrTok>);
}

// Selects a locale of one byte a character in which 0xC4 is an upper-case letter.
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

TEST(CaseBlindComparison, OrdersAndStops) {
    constexpr std::uint64_t ALL = ~std::uint64_t{0};
    struct {
        const char* a;
        const char* b;
        std::uint64_t count;
        int expected;
    } const cases[] = {
        {"Key", "kEY", ALL, 0},    {"a", "B", ALL, -1},
        {"_", "A", ALL, -1},       {"abc", "ab", ALL, 1},
        {"", "", ALL, 0},          {"", "a", ALL, -1},
        {"a\xFF", "az", ALL, 1},   {"HELLO world", "hello WORLD", 5, 0},
        {"abX", "abY", 2, 0},      {"HELLO world", "hello WORLD", 11, 0},
        {"abX", "abY", 3, -1},     {"HELLO world", "hello WORLD", 99, 0},
        {"a", "b", 0, 0},          {"ab", "abc", 2, 0},
        {"ab", "abc", 3, -1},      {"abc", "ab", std::uint64_t{1} << 32, 1},
        {"[\\]^_`", "A", ALL, -1},
    };
    for (const auto& [a, b, count, expected] : cases) {
        EXPECT_EQ(sign(Kel_Util::strnicmp(a, b, count)), expected) << a << " " << b << " " << count;
        EXPECT_EQ(sign(Kel_Util::strnicmp(std::string(b), std::string(a), count)), -expected);
        if (count == ALL) {
            EXPECT_EQ(sign(Kel_Util::stricmp(a, b)), expected) << a << " " << b;
            EXPECT_EQ(sign(Kel_Util::stricmp(std::string(b), std::string(a))), -expected);
        }
    }
    EXPECT_EQ(Kel_Util::stricmp(std::string("a\0b", 3), std::string("A\0c", 3)), 0);
}

TEST(CaseBlindComparison, EveryPairOfBytes) {
    const auto folded = [](int c) { return c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c; };
    for (int a = 0; a < 256; ++a)
        for (int b = 0; b < 256; ++b) {
            const char textA[] = {static_cast<char>(a), '\0'};
            const char textB[] = {static_cast<char>(b), '\0'};
            EXPECT_EQ(sign(Kel_Util::stricmp(textA, textB)), sign(folded(a) - folded(b)))
                << a << " " << b;
        }
}

TEST(StringHelpers, CleaningTables) {
    struct {
        std::string input;
        std::string withoutCR;
        std::string unquoted;
        std::string trimmed;
    } const cases[] = {
        {"", "", "", ""},
        {"line", "line", "line", "line"},
        {"line\r", "line", "line\r", "line"},
        {"line\r\r", "line\r", "line\r\r", "line"},
        {"line\r\n", "line\r\n", "line\r\n", "line"},
        {"\r", "", "\r", ""},
        {"\"abc\"", "\"abc\"", "abc", "\"abc\""},
        {"\"\"", "\"\"", "", "\"\""},
        {"\"", "\"", "\"", "\""},
        {"\"abc", "\"abc", "\"abc", "\"abc"},
        {"abc\"", "abc\"", "abc\"", "abc\""},
        {"'abc'", "'abc'", "'abc'", "'abc'"},
        {"\"a\"b", "\"a\"b", "\"a\"b", "\"a\"b"},
        {"\"\"abc\"\"", "\"\"abc\"\"", "\"abc\"", "\"\"abc\"\""},
        {" \t value \r\n", " \t value \r\n", " \t value \r\n", "value"},
        {"\bvalue\f", "\bvalue\f", "\bvalue\f", "value"},
        {"a b", "a b", "a b", "a b"},
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
        {{"a=1", "B=2", "b=3"}, "b", "2"},
        {{"a=b=c"}, "A", "b=c"},
        {{"key="}, "key", ""},
        {{"key=", "key=later"}, "KEY", ""},
        {{"key", "keyx=1", "ke=2"}, "key", ""},
        {{"=v"}, "", "v"},
        {{"v"}, "", ""},
        {{" key=v"}, "key", ""},
        {{"key =v"}, "key", ""},
        {{"-mode=fast"}, "mode", ""},
        {{"-mode=fast"}, "-MODE", "fast"},
        {{"tool", "mode= Fast "}, "MODE", " Fast "},
        {{"tool=1", "x=2"}, "tool", "1"},
        {{"a=1"}, "a=1", ""},
        {{}, "key", ""},
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
}

TEST(KeyLookup, ListEntriesMayHoldNuls) {
    const std::string value("1\0002", 3);
    Texts entries = {std::string("a\0b=no", 6), "a=" + value};
    EXPECT_EQ(Kel_Util::findKey(entries, "a"), value);
}

} // namespace
