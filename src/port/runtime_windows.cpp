// SPDX-License-Identifier: MIT
#include "port/runtime.h"

#include "port/locale_windows.h"

#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <utility>

#include <windows.h>

namespace Port {

int formatText(char* text, std::size_t size, const char* format, std::va_list arguments) noexcept {
#if defined(_MSC_VER)
    // Without a handler, this C library ends the process if it refuses the format.
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

// A character is one code unit or a surrogate pair. Only UTF-8 can represent a pair. The C library
// would convert each unit of a pair by itself, so WideCharToMultiByte() converts to UTF-8.
std::string takeCharacter(const wchar_t*& text) {
    const int units = IS_SURROGATE_PAIR(text[0], text[1]) ? 2 : 1;
    const wchar_t* const character = std::exchange(text, text + units);
    char bytes[MB_LEN_MAX];
    if (localeIsUtf8()) {
        const WCHAR copy[] = {static_cast<WCHAR>(character[0]), static_cast<WCHAR>(character[1])};
        const int length = WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, copy, units, bytes,
                                               sizeof bytes, nullptr, nullptr);
        return length == 0 ? "?" : std::string(bytes, static_cast<std::size_t>(length));
    }
    std::mbstate_t state{};
    const std::size_t length = std::wcrtomb(bytes, *character, &state);
    return units == 2 || length == static_cast<std::size_t>(-1) ? "?" : std::string(bytes, length);
}

bool localTime(std::time_t time, std::tm& local) noexcept {
    const __time64_t wide = time;
    return _localtime64_s(&local, &wide) == 0;
}

CancellationDisabled::CancellationDisabled() noexcept = default;
CancellationDisabled::~CancellationDisabled() {
    static_cast<void>(previousState); // threads cannot be cancelled here
}

} // namespace Port
