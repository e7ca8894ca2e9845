// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <new>

namespace KelRT::common {

// Converts the element count of a block, or the length of a text, to std::size_t. Throws
// std::bad_alloc unless count + 1 elements fit in PTRDIFF_MAX bytes. The additional element is for
// the NUL that terminates a text.
template <typename Element = unsigned char>
[[nodiscard]] constexpr std::size_t checkedCount(std::uint64_t count) {
    if (count >= std::numeric_limits<std::ptrdiff_t>::max() / sizeof(Element))
        throw std::bad_alloc();
    return static_cast<std::size_t>(count);
}

// Returns whether two blocks of memory overlap. An empty block overlaps another one only if it lies
// strictly inside. The blocks may belong to different objects.
[[nodiscard]] inline bool overlap(const void* a, std::uint64_t aSize, const void* b,
                                  std::uint64_t bSize) noexcept {
    const std::less<> before; // also orders pointers into different objects
    return before(static_cast<const char*>(a), static_cast<const char*>(b) + bSize) &&
           before(static_cast<const char*>(b), static_cast<const char*>(a) + aSize);
}

} // namespace KelRT::common
