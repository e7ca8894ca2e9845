// SPDX-License-Identifier: MIT
//
// Measures how 64-bit integers are printed into a given string, and read. "full" values have 63
// bits. "mixed" values have 1 to 63 bits, so that the processor cannot predict the length of the
// next text.
#include "peers.h"
#include "row.h"

#include "KelRT/Kel_NumberUtil.h"

#include <array>
#include <charconv>
#include <cstring>

using namespace bench;
using KelRT::Kel_NumberUtil;

namespace {

constexpr std::size_t VALUES = 1024;
using Values = std::vector<std::uint64_t>;
using Texts = std::vector<std::string>;

Values randomValues(bool mixed) {
    std::mt19937_64 random(VALUES);
    Values values(VALUES);
    for (auto& value : values) {
        const auto bits = mixed ? 1 + random() % 63 : 63;
        value = (std::uint64_t{1} << (bits - 1)) | random() >> (64 - bits);
    }
    return values;
}

/// A contender that prints all values. `print` writes one value into a string.
template <typename Print>
struct Printing {
    Values values;
    Print print;
    std::string text;
    void run() {
        for (const auto value : values) {
            print(value, text);
            benchmark::DoNotOptimize(text.data());
        }
    }
    std::string result() {
        std::string all;
        for (const auto value : values) {
            print(value, text);
            all += text + '\n';
        }
        return all;
    }
};

template <typename Print>
Printing<Print> printing(const Values& values, Print print) {
    return {values, print, std::string(64, ' ')};
}

/// A contender that parses all texts. `parse` returns the value of one text.
template <typename Parse>
struct Parsing {
    Texts texts;
    Parse parse;
    std::uint64_t sum = 0;
    void run() {
        for (auto& text : texts) {
            std::uint64_t value = parse(text);
            benchmark::DoNotOptimize(value);
            sum += value;
        }
    }
    std::string result() { return std::to_string(sum); }
};

template <typename Parse>
Parsing<Parse> parsing(const Texts& texts, Parse parse) {
    return {texts, parse};
}

void putCharacters(std::uint64_t value, std::string& out, int radix) {
    std::array<char, 64> text;
    char* const begin = text.data();
    out.assign(begin, std::to_chars(begin, begin + text.size(), value, radix).ptr);
}

std::uint64_t ofCharacters(const std::string& text, int radix) {
    std::uint64_t value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value, radix);
    return value;
}

Texts textsOf(const Values& values, int radix) {
    Texts texts(values.size());
    for (std::size_t i = 0; i < values.size(); ++i)
        putCharacters(values[i], texts[i], radix);
    return texts;
}

void limitRow(Row& row, const Texts& texts) {
    row.limit(Contender{std::pair{texts, std::string(64, ' ')},
                        [](auto& own) {
                            for (const auto& text : own.first) {
                                own.second.assign(text);
                                benchmark::DoNotOptimize(own.second.data());
                            }
                        },
                        [](auto& own) { return own.second; }});
}

void decimalPrintRow(const char* length, const Values& values) {
    Row row("small texts", "print decimal", length, VALUES);
    row.add("KelUtil", printing(values, [](std::uint64_t value, std::string& out) {
                Kel_NumberUtil::uLL2DecStr(value, out);
            }));
    row.add("std", printing(values, [](std::uint64_t value, std::string& out) {
                putCharacters(value, out, 10);
            }));
    row.addPeer<peers::Fmt>("fmt", [&](auto peer) {
        return printing(values, [peer](std::uint64_t value, std::string& out) {
            peer.printDecimal(value, out);
        });
    });
    row.addPeer<peers::Absl>("Abseil", [&](auto peer) {
        return printing(values, [peer](std::uint64_t value, std::string& out) {
            peer.printDecimal(value, out);
        });
    });
    limitRow(row, textsOf(values, 10));
}

void hexPrintRow(const char* length, const Values& values) {
    Row row("small texts", "print hexadecimal", length, VALUES);
    row.add("KelUtil", printing(values, [](std::uint64_t value, std::string& out) {
                Kel_NumberUtil::uLL2HexStr(value, out);
            }));
    row.add("std", printing(values, [](std::uint64_t value, std::string& out) {
                putCharacters(value, out, 16);
            }));
    row.addPeer<peers::Fmt>("fmt", [&](auto peer) {
        return printing(
            values, [peer](std::uint64_t value, std::string& out) { peer.printHex(value, out); });
    });
    row.addPeer<peers::Absl>("Abseil", [&](auto peer) {
        return printing(
            values, [peer](std::uint64_t value, std::string& out) { peer.printHex(value, out); });
    });
    limitRow(row, textsOf(values, 16));
}

void decimalParseRow(const char* length, const Texts& texts) {
    Row row("small texts", "parse decimal", length, VALUES);
    row.add("KelUtil", parsing(texts, [](const std::string& text) {
                return Kel_NumberUtil::decStr2ULL(text);
            }));
    row.add("std", parsing(texts, [](const std::string& text) { return ofCharacters(text, 10); }));
    row.addPeer<peers::Absl>("Abseil", [&](auto peer) {
        return parsing(texts, [peer](const std::string& text) { return peer.parseDecimal(text); });
    });
}

void hexParseRow(const char* length, const Texts& texts) {
    Row row("small texts", "parse hexadecimal", length, VALUES);
    row.add("KelUtil",
            parsing(texts, [](std::string& text) { return Kel_NumberUtil::hexStr2ULL(text); }));
    row.add("std", parsing(texts, [](const std::string& text) { return ofCharacters(text, 16); }));
    row.addPeer<peers::Absl>("Abseil", [&](auto peer) {
        return parsing(texts, [peer](const std::string& text) { return peer.parseHex(text); });
    });
}

} // namespace

int main(int argc, char** argv) {
    for (const bool mixed : {false, true}) {
        const char* const length = mixed ? "mixed" : "full";
        const Values values = randomValues(mixed);
        decimalPrintRow(length, values);
        hexPrintRow(length, values);
        decimalParseRow(length, textsOf(values, 10));
        hexParseRow(length, textsOf(values, 16));
    }
    return runAll(argc, argv);
}
