// SPDX-License-Identifier: MIT
#include "common/decimal.h"

#include <array>
#include <cstddef>
#include <cstring>

namespace KelRT::common {
namespace {

/// "00", "01", ... "99" in a row.
constexpr std::array<char, 200> PAIRS = [] {
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}();

char* writePair(char* end, std::uint32_t pair) {
    std::memcpy(end - 2, &PAIRS[std::size_t{2} * pair], 2);
    return end - 2;
}

/// The four pairs are independent of each other, unlike those of a loop that divides on.
char* writeEight(char* end, std::uint32_t value) {
    const std::uint32_t high = value / 10000;
    const std::uint32_t low = value % 10000;
    writePair(end, low % 100);
    writePair(end - 2, low / 100);
    writePair(end - 4, high % 100);
    return writePair(end - 6, high / 100);
}

constexpr std::uint64_t EIGHT_DIGITS = 100'000'000;

} // namespace

char* writeDecimal(char* end, std::uint64_t value) {
    for (; value >= EIGHT_DIGITS; value /= EIGHT_DIGITS)
        end = writeEight(end, static_cast<std::uint32_t>(value % EIGHT_DIGITS));
    auto rest = static_cast<std::uint32_t>(value);
    for (; rest >= 100; rest /= 100)
        end = writePair(end, rest % 100);
    if (rest >= 10)
        return writePair(end, rest);
    *--end = static_cast<char>('0' + rest);
    return end;
}

char* writeSeventeen(char* end, std::uint64_t chunk) {
    const std::uint64_t high = chunk / EIGHT_DIGITS; // 9 digits
    end = writeEight(end, static_cast<std::uint32_t>(chunk % EIGHT_DIGITS));
    end = writeEight(end, static_cast<std::uint32_t>(high % EIGHT_DIGITS));
    *--end = static_cast<char>('0' + high / EIGHT_DIGITS);
    return end;
}

char* writeChunk(char* end, std::uint64_t chunk) {
    constexpr std::uint64_t SEVENTEEN_DIGITS = 100'000'000'000'000'000;
    end = writeSeventeen(end, chunk % SEVENTEEN_DIGITS);
    return writePair(end, static_cast<std::uint32_t>(chunk / SEVENTEEN_DIGITS));
}

} // namespace KelRT::common
