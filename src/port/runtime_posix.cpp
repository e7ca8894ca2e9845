// SPDX-License-Identifier: MIT
//
// This file alone is compiled without _FORTIFY_SOURCE. With it, the C library ends the process on
// some formats that it otherwise accepts: a format in writable memory that contains %n, and a
// format whose numbered arguments have a gap, such as "%2$d" without "%1$d".
#undef _FORTIFY_SOURCE
#include "port/runtime.h"

#include <climits>
#include <cstdio>
#include <cwchar>

#include <pthread.h>

namespace Port {

int formatText(char* text, std::size_t size, const char* format, std::va_list arguments) noexcept {
    return std::vsnprintf(text, size, format, arguments);
}

std::string takeCharacter(const wchar_t*& text) {
    char bytes[MB_LEN_MAX];
    std::mbstate_t state{};
    const std::size_t length = std::wcrtomb(bytes, *text++, &state);
    return length == static_cast<std::size_t>(-1) ? "?" : std::string(bytes, length);
}

bool localTime(std::time_t time, std::tm& local) noexcept {
    tzset(); // localtime_r() alone may ignore a change of the time zone
    return localtime_r(&time, &local) != nullptr;
}

CancellationDisabled::CancellationDisabled() noexcept {
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &previousState);
}

CancellationDisabled::~CancellationDisabled() {
    pthread_setcancelstate(previousState, nullptr);
}

} // namespace Port
