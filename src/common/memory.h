// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>

namespace KelRT::common {

/// Whether two pieces of memory, which may belong to different objects, have no byte in common.
inline bool areApart(const void* a, std::size_t aSize, const void* b, std::size_t bSize) noexcept {
    constexpr std::less_equal<> before; // orders pointers into different objects, too
    return before(static_cast<const char*>(a) + aSize, static_cast<const char*>(b)) ||
           before(static_cast<const char*>(b) + bSize, static_cast<const char*>(a));
}

} // namespace KelRT::common
