// SPDX-License-Identifier: MIT
//
// Generates random values, always from the same seed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>

namespace test {

constexpr unsigned SEED = 20110314; // printed by a test that fails

inline std::uint64_t randomValue() {
    static std::mt19937_64 generator(SEED);
    return generator();
}

/// Returns a value from 0 to \a limit - 1.
inline std::size_t randomBelow(std::size_t limit) {
    return static_cast<std::size_t>(randomValue() % limit);
}

} // namespace test
