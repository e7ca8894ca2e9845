// SPDX-License-Identifier: MIT
//
// A hardened C library ends the process over formats that the standard lets it print (%n in memory
// that can be written, numbered arguments with a gap), so this file alone does without hardening.
#undef _FORTIFY_SOURCE
#include "port/port.h"

#include <cstdio>
#include <cstdlib>

namespace Port {

int formatText(char* text, std::size_t size, const char* format, std::va_list arguments) noexcept {
#if defined(_MSC_VER)
    // This C library ends the process over a format that it refuses, unless the thread objects.
    const auto ignore = [](const wchar_t*, const wchar_t*, const wchar_t*, unsigned,
                           std::uintptr_t) {};
    const auto before = _set_thread_local_invalid_parameter_handler(ignore);
    const int length = std::vsnprintf(text, size, format, arguments);
    _set_thread_local_invalid_parameter_handler(before);
    return length;
#else
    return std::vsnprintf(text, size, format, arguments);
#endif
}

} // namespace Port
