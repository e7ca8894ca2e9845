// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>

namespace Port {

// True if the locale of the process is in UTF-8, which only UCRT offers. Its fopen then decodes
// paths as UTF-8.
[[nodiscard]] inline bool localeIsUtf8() {
    // MB_CUR_MAX is this call. Every other encoding has at most two bytes in a character.
    return ___mb_cur_max_func() > 2;
}

} // namespace Port
