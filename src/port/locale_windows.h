// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>

namespace Port {

// Returns true if the locale of the process is in UTF-8, which only UCRT offers. The fopen() of
// UCRT then decodes paths as UTF-8.
[[nodiscard]] inline bool localeIsUtf8() {
    // Not every header has the macro MB_CUR_MAX, which expands to this call. The call returns the
    // size of the longest character: at most two bytes in every encoding but UTF-8.
    return ___mb_cur_max_func() > 2;
}

} // namespace Port
