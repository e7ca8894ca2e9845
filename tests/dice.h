// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>

namespace test {

constexpr unsigned SEED = 20110314; // fixed, and printed, so that a failing run can be repeated

inline std::uint64_t randomValue() {
    static std::mt19937_64 engine(SEED);
    return engine();
}

inline std::size_t below(std::size_t limit) {
    return randomValue() % limit;
}

} // namespace test
