// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <new>

namespace KelRT::common {

// `count` as the number of elements of a block or, with a NUL behind them, of a text. Counts are
// 64-bit on every host. Throws std::bad_alloc when the size in bytes exceeds std::ptrdiff_t, the
// most that an object can have.
template <class Element = unsigned char>
constexpr std::size_t checkedCount(std::uint64_t count) {
    if (count >= std::numeric_limits<std::ptrdiff_t>::max() / sizeof(Element))
        throw std::bad_alloc();
    return static_cast<std::size_t>(count);
}

/// Whether two pieces of memory, which may belong to different objects, have no byte in common.
inline bool areApart(const void* a, std::uint64_t aSize, const void* b,
                     std::uint64_t bSize) noexcept {
    constexpr std::less_equal<> before; // orders pointers into different objects, too
    return before(static_cast<const char*>(a) + aSize, static_cast<const char*>(b)) ||
           before(static_cast<const char*>(b) + bSize, static_cast<const char*>(a));
}

} // namespace KelRT::common
