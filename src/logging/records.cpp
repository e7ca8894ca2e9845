// SPDX-License-Identifier: MIT
//
// Formats records and writes them with their indentation. dumps.cpp writes the rows of dumps.
#include "logging/records.h"
#include "KelRT/Logger.h"
#include "port/runtime.h"

#include <algorithm>
#include <cstring>

namespace KelRT {

// NOLINTNEXTLINE(cert-dcl50-cpp): the interface is printf's, and the compiler checks its calls.
void Logger::printLog(int level, const char* format, ...) noexcept {
    if (!shouldPrintLog(level))
        return;
    std::va_list arguments;
    va_start(arguments, format);
    vprintLog(level, format, arguments);
    va_end(arguments);
}

void Logger::vprintLog(int level, const char* format, std::va_list arguments) noexcept {
    if (!shouldPrintLog(level))
        return;
    const Port::CancellationDisabled cancellationGuard;
    if (format == nullptr || *format == '\0')
        return flush();
    char text[logging::MAX_RECORD_LENGTH + 1];
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): a false positive: callers call va_start.
    const int length = Port::formatText(text, sizeof text, format, arguments);
    if (length >= 0) // otherwise formatting failed and the record is lost
        write(text, std::min(static_cast<std::size_t>(length), logging::MAX_RECORD_LENGTH));
}

void Logger::flush() noexcept {
    const Port::CancellationDisabled cancellationGuard;
    if (stream != nullptr)
        static_cast<void>(std::fflush(stream.get()));
}

// Writes a record. The stream is not null. Output errors are ignored: logging reports nothing.
void Logger::write(const char* text, std::size_t length) noexcept {
    if (atLineStart)
        writeIndentation();
    static_cast<void>(std::fwrite(text, 1, length, stream.get()));
    if (length != 0)
        atLineStart = text[length - 1] == '\n';
    if (!Port::HAS_LINE_BUFFERING && std::memchr(text, '\n', length) != nullptr)
        flush();
}

void Logger::writeIndentation() noexcept {
    constexpr std::int32_t INDENTS_PER_WRITE = 32;
    static constexpr char BLANKS[2 * INDENTS_PER_WRITE + 1] =
        "                                                                ";
    for (std::int32_t remaining = nestingDepth; remaining > 0; remaining -= INDENTS_PER_WRITE) {
        const auto count = static_cast<std::size_t>(std::min(remaining, INDENTS_PER_WRITE));
        static_cast<void>(std::fwrite(BLANKS, 2, count, stream.get()));
    }
}

} // namespace KelRT
