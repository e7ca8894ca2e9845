// SPDX-License-Identifier: MIT
#include "port/runtime.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace Port {

int formatText(char* text, std::size_t size, const char* format, std::va_list arguments) noexcept {
#if defined(_MSC_VER)
    // On a format that it rejects, this C library ends the process unless a handler is installed.
    const auto ignore = [](const wchar_t*, const wchar_t*, const wchar_t*, unsigned,
                           std::uintptr_t) {};
    const auto previous = _set_thread_local_invalid_parameter_handler(ignore);
    const int length = std::vsnprintf(text, size, format, arguments);
    _set_thread_local_invalid_parameter_handler(previous);
    return length;
#else
    return std::vsnprintf(text, size, format, arguments);
#endif
}

bool localTime(std::time_t time, std::tm& local) noexcept {
    const __time64_t wide = time;
    return _localtime64_s(&local, &wide) == 0;
}

CancellationDisabled::CancellationDisabled() noexcept = default;
CancellationDisabled::~CancellationDisabled() = default;

} // namespace Port
