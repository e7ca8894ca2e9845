// SPDX-License-Identifier: MIT
//
// Wrappers of the host's run-time services, in the form that this library needs. Each host has its
// own source.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdlib>
#include <ctime>
#include <string>

namespace Port {

// The value of an environment variable, "" if it is unset. The library reads them only through
// this function.
[[nodiscard]] inline const char* environment(const char* name) noexcept {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

// True if a line-buffered stream passes complete lines on to the host by itself. The C libraries of
// Windows buffer such a stream fully.
#if defined(_WIN32)
inline constexpr bool HAS_LINE_BUFFERING = false;
#else
inline constexpr bool HAS_LINE_BUFFERING = true;
#endif

// As std::vsnprintf. A format that the host rejects gives a negative result and never ends the
// process, even in a hardened build.
int formatText(char* text, std::size_t size, const char* format, std::va_list arguments) noexcept;

// Converts the character at `text`, which is not NUL, to the encoding of the locale and moves
// `text` past it. The result is "?" if the character has no narrow form.
[[nodiscard]] std::string takeCharacter(const wchar_t*& text);

// Converts to local time without the static object of std::localtime. False if the host cannot
// convert the time.
bool localTime(std::time_t time, std::tm& local) noexcept;

// While an instance exists, its thread cannot be cancelled: a request stays pending. With glibc,
// cancellation unwinds the stack, which ends the process at a `noexcept` function.
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
