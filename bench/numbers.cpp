// SPDX-License-Identifier: MIT
//
// Numbers of a fixed width, printed into a new string and read. Every peer makes a new string too:
// GMP writes into the string itself (mpz_get_str) and, as the library does, looks at each character
// that it reads (mpz_set_str). APInt and cpp_int are left out where they take most of a second.
#include "peers.h"
#include "row.h"

#include "KelRT/Kel_Number.h"

#ifdef HAVE_BOOST
#include <boost/multiprecision/cpp_int.hpp>
#endif

#include <cctype>
#include <cstring>
#include <memory>

using namespace bench;

namespace {

struct Base {
    const char* name;
    unsigned radix;
    char letter; // the library's
};
constexpr Base DECIMAL{"decimal", 10, 'u'};
constexpr Base BASES[] = {{"radix 2", 2, 'b'}, {"radix 8", 8, 'o'}, DECIMAL, {"radix 16", 16, 'x'}};
constexpr unsigned WIDTHS[] = {32, 64, 128, 512, 4096, 65536, 1048576};

std::string widthName(unsigned bits) {
    return std::to_string(bits) + " b";
}

/// A random number that has exactly \a bits bits, so that no contender prints leading zeros.
std::string randomNumber(unsigned bits) {
    std::string text(bits / 4, '0');
    std::mt19937_64 random(bits);
    for (char& digit : text)
        digit = "0123456789abcdef"[random() % 16];
    text[0] = "89abcdef"[random() % 8];
    return text;
}

// Each kind of number has its value from a hexadecimal text. `spelled` is a text as the kind wants
// to read it.

struct KelNumber {
    KelNumber(const Base& base, unsigned bits, const std::string& hex)
        : letter(base.letter), value(std::make_shared<KelRT::Kel_Number>(bits)) {
        value->set('x', hex);
    }
    char letter;
    std::shared_ptr<KelRT::Kel_Number> value; // the contenders of a row run one after the other
    std::string print() const { return value->toString(letter); }
    void parse(const std::string& text) const { value->set(letter, text); }
    std::string hex() const { return value->toString('x'); }
    static std::string spelled(const std::string& text) { return text; }
};

#ifdef HAVE_GMP
struct Gmp {
    Gmp(const Base& base, unsigned /*bits*/, const std::string& hex)
        : radix(static_cast<int>(base.radix)), value(hex, 16) {}
    int radix;
    mpz_class value;
    std::string print() const {
        std::string text(mpz_sizeinbase(value.get_mpz_t(), radix), '\0');
        mpz_get_str(text.data(), radix, value.get_mpz_t());
        if (text.back() == '\0') // the size may be one too large
            text.pop_back();
        return text;
    }
    void parse(const std::string& text) { mpz_set_str(value.get_mpz_t(), text.c_str(), radix); }
    std::string hex() const { return value.get_str(16); }
    static std::string spelled(const std::string& text) { return text; }
};
#endif

#ifdef HAVE_LLVM
std::string lower(std::string text) {
    for (char& character : text)
        character = static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
    return text;
}

struct ApInt {
    ApInt(const Base& base, unsigned width, const std::string& hex)
        : radix(static_cast<std::uint8_t>(base.radix)), bits(width), value(width, hex, 16) {}
    std::uint8_t radix;
    unsigned bits;
    llvm::APInt value;
    std::string print() const { return llvm::toString(value, radix, false); }
    void parse(const std::string& text) { value = llvm::APInt(bits, text, radix); }
    std::string hex() const { return lower(llvm::toString(value, 16, false)); }
    static std::string spelled(const std::string& text) { return text; }
};
#endif

#ifdef HAVE_BOOST
struct CppInt {
    CppInt(const Base& base, unsigned /*bits*/, const std::string& hex)
        : radix(base.radix), value("0x" + hex) {}
    unsigned radix;
    boost::multiprecision::cpp_int value;
    std::string print() const {
        return value.str(0, radix == 16  ? std::ios_base::hex
                            : radix == 8 ? std::ios_base::oct
                                         : std::ios_base::dec);
    }
    void parse(const std::string& text) { value.assign(text); }
    std::string hex() const { return value.str(0, std::ios_base::hex); }
    std::string spelled(const std::string& text) const {
        return (radix == 16 ? "0x" : radix == 8 ? "0" : "") + text;
    }
};
#endif

template <typename Number>
struct Printing {
    Number number;
    Printing(const Number& printed, const std::string& /*text*/) : number(printed) {}
    void run() {
        const std::string text = number.print();
        benchmark::DoNotOptimize(text.data());
    }
    std::string result() {
        std::string text = number.print();
        for (char& character : text)
            character = static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
        return text;
    }
};

template <typename Number>
struct Parsing {
    Number number;
    std::string text;
    Parsing(const Number& read, const std::string& digits)
        : number(read), text(number.spelled(digits)) {}
    void run() { number.parse(text); }
    std::string result() { return number.hex(); }
};

/// The widest numbers of which APInt and cpp_int take less than some 100 ms.
struct Widest {
    unsigned apInt;
    unsigned cppInt;
};
constexpr Widest PRINTED{4096, 65536};
constexpr Widest READ{4096, 1048576};
constexpr Widest DECIMAL_READ{65536, 1048576};

template <template <typename> class Work>
void rows(const char* work, const Base& base, unsigned bits, const Widest& widest) {
    const std::string hex = randomNumber(bits);
    const KelNumber own(base, bits, hex);
    const std::string text = own.print();
    Row row("numbers", std::string(work) + ' ' + base.name, widthName(bits));
    row.add("KelUtil", Work<KelNumber>(own, text));
#ifdef HAVE_GMP
    row.add("GMP", Work<Gmp>({base, bits, hex}, text));
#else
    row.missing("GMP");
#endif
#ifdef HAVE_LLVM
    if (bits <= widest.apInt)
        row.add("APInt", Work<ApInt>({base, bits, hex}, text));
#else
    row.missing("APInt");
#endif
#ifdef HAVE_BOOST
    if (bits <= widest.cppInt && base.radix != 2) // it has no binary
        row.add("cpp_int", Work<CppInt>({base, bits, hex}, text));
#else
    row.missing("cpp_int");
#endif
    row.limit(Contender{std::pair{text, text},
                        [](auto& both) {
                            std::memcpy(both.first.data(), both.second.data(), both.first.size());
                            benchmark::DoNotOptimize(both.first.data());
                        },
                        [](auto& both) { return both.first; }});
}

// Decimal beside itself at half the width: four times the cost would be quadratic.
template <template <typename> class Work>
struct Agreeing : Work<KelNumber> {
    using Work<KelNumber>::Work;
    std::string expected = this->number.print();
    std::string result() { return this->number.print() == expected ? "text and value agree" : ""; }
};

template <template <typename> class Work>
Agreeing<Work> decimalOf(unsigned bits) {
    const KelNumber number(DECIMAL, bits, randomNumber(bits));
    return {number, number.print()};
}

template <template <typename> class Work>
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
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
