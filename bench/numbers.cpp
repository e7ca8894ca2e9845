// SPDX-License-Identifier: MIT
//
// Measures how numbers of a fixed width are printed into a new string and read. Every peer makes a
// new string, too; GMP writes directly into it (mpz_get_str). GMP examines each character that it
// reads (mpz_set_str), as the library does. FLINT is compared only in decimal. APInt and cpp_int
// are left out where they take 100 ms or more.
#include "peers.h"
#include "row.h"

#include "KelRT/Kel_Number.h"

#include <cctype>
#include <memory>

using namespace bench;

namespace {

struct Base {
    const char* name;
    unsigned radix;
    char letter; // the library's radix letter
};
constexpr Base DECIMAL{"decimal", 10, 'u'};
constexpr Base BASES[] = {{"radix 2", 2, 'b'}, {"radix 8", 8, 'o'}, DECIMAL, {"radix 16", 16, 'x'}};
constexpr unsigned WIDTHS[] = {32, 64, 128, 512, 4096, 65536, 1048576};

std::string widthName(unsigned bits) {
    return std::to_string(bits) + " b";
}

/// Returns a random number whose bit \a bits - 1 is 1, so that no contender prints leading zeros.
std::string randomNumber(unsigned bits) {
    std::string text(bits / 4, '0');
    std::mt19937_64 random(bits);
    for (char& digit : text)
        digit = "0123456789abcdef"[random() % 16];
    text[0] = "89abcdef"[random() % 8];
    return text;
}

// Each of these classes is constructed from hexadecimal text. `spelled` returns a text in the form
// that the class expects.

struct KelNumber {
    KelNumber(const Base& base, unsigned bits, const std::string& hex)
        : letter(base.letter), value(std::make_shared<KelRT::Kel_Number>(bits)) {
        value->set('x', hex);
    }
    char letter;
    std::shared_ptr<KelRT::Kel_Number> value; // shared, since contenders run one after another
    std::string print() const { return value->toString(letter); }
    void parse(const std::string& text) const { value->set(letter, text); }
    std::string hex() const { return value->toString('x'); }
    static std::string spelled(const std::string& text) { return text; }
};

std::string lower(std::string text) {
    for (char& character : text)
        character = static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
    return text;
}

template <typename Number>
struct Printing {
    Number number;
    Printing(const Number& printed, const std::string& /*text*/) : number(printed) {}
    void run() {
        const std::string text = number.print();
        benchmark::DoNotOptimize(text.data());
    }
    std::string result() { return lower(number.print()); }
};

template <typename Number>
struct Parsing {
    Number number;
    std::string text;
    Parsing(const Number& read, const std::string& digits)
        : number(read), text(number.spelled(digits)) {}
    void run() { number.parse(text); }
    std::string result() { return lower(number.hex()); }
};

/// The widest numbers for which APInt and cpp_int take less than about 100 ms.
struct Widest {
    unsigned apInt;
    unsigned cppInt;
};
constexpr Widest PRINTED{4096, 65536};
constexpr Widest READ{4096, 1048576};
constexpr Widest DECIMAL_READ{65536, 1048576};

template <template <typename> typename Work>
void rows(const char* work, const Base& base, unsigned bits, const Widest& widest) {
    const std::string hex = randomNumber(bits);
    const KelNumber own(base, bits, hex);
    const std::string text = own.print();
    Row row("numbers", std::string(work) + ' ' + base.name, widthName(bits));
    row.add("KelUtil", Work<KelNumber>(own, text));
    const auto contender = [&](auto peer) {
        using Number = typename decltype(peer)::Number;
        return Work<Number>(Number(base.radix, bits, hex), text);
    };
    row.addPeer<peers::Gmp>("GMP", contender);
    if (base.radix == 10)
        row.addPeer<peers::Flint>("FLINT", contender);
    if (bits <= widest.apInt)
        row.addPeer<peers::Llvm>("APInt", contender);
    if (bits <= widest.cppInt && base.radix != 2) // cpp_int has no binary text
        row.addPeer<peers::Boost>("cpp_int", contender);
    row.limit(copying(text));
}

// In the table of growth, a number is compared with one of half the width: a ratio of 4 would mean
// quadratic cost. The two have different results, so each contender checks its own result.
template <template <typename> typename Work>
struct Agreeing : Work<KelNumber> {
    using Work<KelNumber>::Work;
    std::string expected = this->number.print();
    std::string result() { return this->number.print() == expected ? "text and value agree" : ""; }
};

template <template <typename> typename Work>
Agreeing<Work> decimalOf(unsigned bits) {
    const KelNumber number(DECIMAL, bits, randomNumber(bits));
    return {number, number.print()};
}

template <template <typename> typename Work>
void growthRow(const char* work, unsigned bits) {
    Row row("growth", work, widthName(bits));
    row.add("KelUtil", decimalOf<Work>(bits));
    row.add("half as wide", decimalOf<Work>(bits / 2));
}

} // namespace

int main(int argc, char** argv) {
    for (const Base& base : BASES)
        for (const unsigned bits : WIDTHS) {
            rows<Printing>("print", base, bits, PRINTED);
            rows<Parsing>("parse", base, bits, base.radix == 10 ? DECIMAL_READ : READ);
        }
    for (unsigned bits = 1U << 11; bits <= 1U << 20; bits *= 2) {
        growthRow<Printing>("print decimal", bits);
        growthRow<Parsing>("parse decimal", bits);
    }
    return runAll(argc, argv);
}
