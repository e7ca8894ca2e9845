// SPDX-License-Identifier: MIT
//
// With _FORTIFY_SOURCE the C library ends the process on some formats that it otherwise accepts (a
// format in writable memory with %n, gaps in numbered arguments). Only this file is compiled
// without it.
#undef _FORTIFY_SOURCE
#include "port/runtime.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#if !defined(_WIN32)
#include <pthread.h>
#endif

namespace Port {

const char* environment(const char* name) noexcept {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

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

#if defined(_WIN32)

bool localTime(std::time_t time, std::tm& local) noexcept {
    const __time64_t wide = time;
    return _localtime64_s(&local, &wide) == 0;
}

CancellationDisabled::CancellationDisabled() noexcept = default;
CancellationDisabled::~CancellationDisabled() = default;

#else

bool localTime(std::time_t time, std::tm& local) noexcept {
    tzset(); // localtime_r may ignore a change of the time zone
    return localtime_r(&time, &local) != nullptr;
}

CancellationDisabled::CancellationDisabled() noexcept {
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &previousState);
}

CancellationDisabled::~CancellationDisabled() {
    pthread_setcancelstate(previousState, nullptr);
}

#endif

} // namespace Port
