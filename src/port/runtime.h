// SPDX-License-Identifier: MIT
//
// Wraps run-time services of the host and of its C library. Each host has its own source.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdlib>
#include <ctime>
#include <string>

namespace Port {

// Returns the value of an environment variable, or "" if it is unset. The library reads the
// environment only through this function.
[[nodiscard]] inline const char* environment(const char* name) noexcept {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

// Tells whether a line-buffered stream passes each complete line to the host. The C libraries of
// Windows buffer such a stream fully, so it must be flushed.
#if defined(_WIN32)
inline constexpr bool HAS_LINE_BUFFERING = false;
#else
inline constexpr bool HAS_LINE_BUFFERING = true;
#endif

// Formats like std::vsnprintf(). If the C library refuses the format, returns a negative number and
// does not end the process, even in a build with _FORTIFY_SOURCE.
int formatText(char* text, std::size_t size, const char* format, std::va_list arguments) noexcept;

// Converts the character at `text`, which is not NUL, to the encoding of the locale and moves
// `text` past it. Returns "?" if that encoding lacks the character.
[[nodiscard]] std::string takeCharacter(const wchar_t*& text);

// Converts to local time. Unlike std::localtime(), uses no static object. Returns false if the C
// library cannot convert the time.
bool localTime(std::time_t time, std::tm& local) noexcept;

// While an instance exists, its thread cannot be cancelled: a request stays pending. With glibc, a
// cancellation unwinds the stack. Unwinding through a `noexcept` function ends the process.
class CancellationDisabled {
public:
    CancellationDisabled() noexcept;
    ~CancellationDisabled();
    CancellationDisabled(const CancellationDisabled&) = delete;
    CancellationDisabled& operator=(const CancellationDisabled&) = delete;

private:
    int previousState = 0;
};

} // namespace Port
