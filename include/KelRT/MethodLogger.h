// SPDX-License-Identifier: MIT
#pragma once

#include "KelRT/Export.h"

#include <string>

namespace KelRT {

/// A MethodLogger traces one method on `Logger::logger`. setMethodName() writes the entry line, and
/// the destructor writes the exit line with the result that was recorded last.
/// \code
/// unsigned int Probe::open(unsigned int port) {
///     MethodLogger trace;
///     trace.setMethodName("Probe::open");
///     Logger::logger.printLog(4, "opening port %u\n", port);
///     return trace.setReturnStatus(0x80070005);
/// }
/// \endcode
/// At detail level 4 or more this method writes (with one space after the name in the first line):
/// \code
/// ENTERING Probe::open
///   opening port 2
/// EXITING Probe::open -- returning KEL_FAILURE, ERROR CODE: 5
/// \endcode
///
/// The object does not own an entry. Its destructor closes the innermost entry of `Logger::logger`,
/// even if the object was never named, or was named while tracing was off. So name every tracer,
/// and do not copy it: each copy closes one more entry.
///
/// No operation throws: if memory for a text is exhausted, the text counts as empty. Only the
/// construction of a string argument, in the caller, can throw.
///
/// Threads: callers must serialise access to tracers and Loggers, as Logger describes.
class MethodLogger {
public:
    /// Constructs an unnamed tracer without a result. Writes nothing.
    KELRT_API MethodLogger() noexcept;

    /// Copies name and result and writes nothing. The copy will close an entry of its own.
    KELRT_API MethodLogger(const MethodLogger& other) noexcept;

    /// Copies name and result and writes nothing.
    KELRT_API MethodLogger& operator=(const MethodLogger& other) noexcept;

    /// Closes the innermost entry of `Logger::logger` by `logMethodExit(const char*)` with the
    /// result's text.
    KELRT_API ~MethodLogger();

    /// Names the method and writes its entry line, without argument text, if tracing is active.
    KELRT_API void setMethodName(std::string name) noexcept;

    /// \name Arguments
    /// Arguments are ignored: they appear in no line.
    /// @{

    /// Ignores a text.
    KELRT_API void addArgument(std::string name, std::string value) noexcept;
    /// Ignores a number.
    KELRT_API void addArgument(std::string name, unsigned int value) noexcept;
    /// @}

    /// Records a status code and returns it unchanged. Bit 31 marks a failure. The low 16 bits are
    /// the error code, shown in upper-case hexadecimal without leading zeros. Bits 16 to 30 are not
    /// shown.
    /// \code
    /// setReturnStatus(0)          => KEL_SUCCESS
    /// setReturnStatus(0x7FFFFFFF) => KEL_SUCCESS
    /// setReturnStatus(0x8000ABCD) => KEL_FAILURE, ERROR CODE: ABCD
    /// setReturnStatus(0x80000000) => KEL_FAILURE, ERROR CODE: 0
    /// \endcode
    KELRT_API unsigned int setReturnStatus(unsigned int status) noexcept;

    /// \name Results
    /// Each call replaces what was recorded before and returns its argument. A pointer to
    /// characters is text, never a `bool`. A call with an `int` is ambiguous: convert it to
    /// `unsigned int`.
    /// \code
    /// setReturn(true)                   => true
    /// setReturn("ready")                => ready
    /// setReturn("")                     => no result on the exit line
    /// setReturn((const char*)nullptr)   => 0 (NULL)
    /// setReturn(4294967295U)            => -1             // and returns -1
    /// \endcode
    /// @{

    /// Records "true" or "false".
    KELRT_API bool setReturn(bool value) noexcept;
    /// Records a copy of the text.
    KELRT_API char* setReturn(char* text) noexcept;
    /// Records a copy of the text.
    KELRT_API const char* setReturn(const char* text) noexcept;
    /// Records and returns the value as a signed number: 2,147,483,648 and more become negative.
    KELRT_API int setReturn(unsigned int value) noexcept;
    /// @}

private:
    std::string methodName;
    std::string returnText;
};

} // namespace KelRT
