// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>

namespace Port {

// True if the locale of the process is in UTF-8, which only UCRT offers. Its fopen then decodes
// paths as UTF-8.
inline bool localeIsUtf8() {
    return MB_CUR_MAX > 2; // every other encoding has at most two bytes in a character
}

} // namespace Port
