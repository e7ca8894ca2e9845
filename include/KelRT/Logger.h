// SPDX-License-Identifier: MIT
#pragma once

#include "KelRT/Export.h"

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace KelRT {

/// Writes levelled records, method traces and buffer dumps to one output stream.
///
/// Logging is off until startLogging() has obtained a stream. Without a stream every log call
/// returns at once and writes nothing. The library logs nothing about its own work:
/// `Logger::logger` is for its clients.
///
/// **Levels.** A record of level L is written if L is at most the detail level; both may be
/// negative. The Logger's own lines have level 1 (what was read from the environment), 2 (banner,
/// start and end of logging) and 4 (method entries and exits). Callers choose the levels of their
/// records.
///
/// **Lines.** No newline is added to a record: if it does not end in one, the next record
/// continues the line. A record that begins at the start of a line is indented by two spaces per
/// level of nesting; only its first line is indented. A method entry increments the nesting depth,
/// and a method exit decrements it. The depth is not always the number of open entries:
/// popAllMethods() discards the entries and keeps the depth, and an exit by name decrements the
/// depth and closes no entry. At depth 2, the four records "a\nb\n", "c", "d\n" and "e\n" look like
/// this:
/// \code
///     a
/// b
///     cd
///     e
/// \endcode
/// When a log call returns, every complete line has been passed to the host, so it is in the file
/// even if the process crashes afterwards. A line that is still open may be lost.
///
/// **Limits.** The text of one record is truncated to 2,047 characters. The Logger's own lines keep
/// their newline even then: the name, path or result in them is shortened. A log call takes
/// less than 8 KiB of stack (Windows: 16 KiB), unless the C library takes more for a conversion
/// (`"%Lf"` of a huge number, for example).
///
/// **Copies** share the stream. It is closed when the last Logger that holds it ends logging, is
/// assigned to, or is destroyed, so no Logger uses a closed stream. A copy has its own level,
/// depth, names and flags.
///
/// **Failures.** No operation throws, reports a failure or ends the process itself. Output that the
/// stream does not accept is lost. On a full disk, a fragment of a record may remain in front of
/// the next whole record.
///
/// Others may still end the process: the operating system by SIGPIPE, if the reader of a pipe is
/// gone, or by SIGXFSZ, if the file reaches its size limit; and MSVC's C library, if the program
/// has closed the stream's descriptor. A program that must survive ignores these signals, or sets
/// an invalid-parameter handler.
///
/// If memory is exhausted, startLogging() obtains no stream or drops the banner. A method entry is
/// then kept without its name, so every exit still closes its own entry and the indentation stays
/// correct. The library allocates nothing to write a record; the C library may.
///
/// **Locale.** Conversions are those of the C library: floating-point conversions in records follow
/// the process's `LC_NUMERIC`, the lines with the time follow `LC_TIME`.
///
/// **Threads.** Nothing here is locked. Callers must serialise every use of every Logger, including
/// startLogging(), endLogging() and destruction: Loggers share the one stream of the process, and
/// `Logger::logger` writes the lines about start and end for all of them. A cancellation
/// (`pthread_cancel`) waits until the log call has returned. A thread whose cancellation is
/// asynchronous must not log.
///
/// **Processes.** A child process inherits the descriptor of the log file, also across `exec`. A
/// forked child that calls `exit` ends logging, so it writes a second closing line. Output that was
/// still buffered at the fork is then written twice, by the parent and by the child. To avoid this,
/// the child calls `_exit`; or the parent flushes before it forks and the child sets the detail
/// level to 0.
class Logger {
    /// Serves VoidIfVaList only and is never defined. It accepts a `void (*)(List)` only if List is
    /// the type of a `std::va_list` parameter. Where `std::va_list` is an array type, such a
    /// parameter is a pointer.
    static void acceptVaListFunction(void (*function)(std::va_list));

    /// `VoidIfVaList<List>` is `void` if List is the host's `std::va_list`. For any other type the
    /// substitution fails, which removes the overload (SFINAE).
    template <typename List>
    using VoidIfVaList = decltype(acceptVaListFunction(static_cast<void (*)(List)>(nullptr)));

public:
    /// This instance serves the whole process, from the loading of the library to its unloading.
    /// Its destruction ends logging, so a client may log from the destructors of its own static
    /// objects.
    KELRT_API static Logger logger;

    /// Constructs a Logger without a stream: detail level 0, no open entries, no flags.
    KELRT_API Logger() noexcept;

    /// Copies everything and shares the stream. If memory for the method names is exhausted, the
    /// copy keeps the entries without their names.
    KELRT_API Logger(const Logger& other) noexcept;

    /// Copies as the copy constructor does. The previous stream is released without a closing line.
    KELRT_API Logger& operator=(const Logger& other) noexcept;

    /// Ends logging as endLogging() does. So destroying any Logger, even a temporary copy, writes a
    /// closing line if `Logger::logger` is logging at level 2 or more.
    KELRT_API ~Logger();

    /// Starts logging with the settings of the environment. Only the first call in a process has an
    /// effect, whichever Logger it is made on; logging that has ended cannot be started again.
    ///
    /// The call resets this Logger (no open entries, detail level 1, no stream, no flags) and then
    /// reads its settings from the environment variables below. The lines that show the settings,
    /// the banner and the start line are records of `Logger::logger`, so they appear only if
    /// startLogging() is called on `Logger::logger`.
    ///
    /// - `TOR_KEL_LOGFILE` names the output. White space around the name is removed. "stdout" and
    ///   "stderr" (exact match) are the standard streams. Any other name is a file in the host's
    ///   narrow encoding, which is created or truncated; symbolic links are followed. For a FIFO
    ///   (POSIX), the call waits until a reader has opened it. If the variable is unset or blank,
    ///   or the file cannot be opened, there is no stream.
    /// - `TOR_KEL_LOGDETAIL` is the detail level, as `atoi` reads it. Any number is accepted,
    ///   negative ones as well; text without a number yields 0.
    /// - `TOR_KEL_LOGFLAGS` is a decimal number, as `atoi` reads it. If bit 0 is set, dumps show
    ///   bits. If bit 1 is set, dumps are not truncated. Other bits are ignored.
    ///
    /// At level 2 with the flags 3 a log begins with
    /// \code
    /// ENVIRONMENT::TOR_KEL_LOGFILE=trace.log
    /// ENVIRONMENT::TOR_KEL_LOGDETAIL=2
    /// ENVIRONMENT::TOR_KEL_LOGFLAGS=0x00000003
    ///       -PRINTBITS ON
    ///       -PRINTLARGEBUFS ON
    /// Kel - Version 7.4 K.41b - Compiled Mar 14 2011 09:05:37
    ///
    /// ----- Logging Started - Tue Mar 02 2027 09:05:07 AM UTC
    /// \endcode
    KELRT_API void startLogging() noexcept;

    /// Ends logging: discards the open entries (the indentation stays), writes the closing line at
    /// level 2 through `Logger::logger`, flushes the stream of this Logger and releases it. The
    /// last Logger that holds the stream closes it, even a standard stream. A Logger without a
    /// stream only discards its entries and writes the closing line.
    KELRT_API void endLogging() noexcept;

    /// Sets the detail level. A \a level outside 0 to 10 is ignored.
    KELRT_API void setDetailLevel(int level) noexcept;

    /// Flushes the stream.
    KELRT_API void flush() noexcept;

    /// Returns true if a record of this level would be written. It is inline, so a caller can avoid
    /// the cost of a record that is filtered out. One comparison covers the level and whether there
    /// is a stream: see levelBound.
    [[nodiscard]] bool shouldPrintLog(int level) const noexcept {
        return rankOf(level) < levelBound;
    }

    /// Writes a record: \a format with the arguments that follow, as `printf` formats them.
    ///
    /// If \a format is null or empty and the level is enabled, the call only flushes the stream.
    /// (Pass null rather than "", which compilers warn about.) If only the formatted text is empty,
    /// the call writes the indentation, or nothing if a line is still open. A record that the C
    /// library cannot format (a character outside the encoding, a text beyond 2^31 - 1 characters)
    /// is lost.
    ///
    /// Never pass untrusted text as the format; write `printLog(1, "%s", text)`.
    KELRT_API void printLog(int level, const char* format, ...) noexcept KELRT_FORMAT(3, 4);

    /// Does the same as printLog with a `va_list`; the caller calls `va_start` and `va_end`.
    KELRT_API void vprintLog(int level, const char* format, std::va_list arguments) noexcept
        KELRT_FORMAT(3, 0);

    /// \name Method tracing
    /// Tracing is active while there is a stream and the detail level is 4 or more. Otherwise
    /// entries and exits do nothing, so an exit while tracing is off leaves its entry open. The
    /// names are copied.
    /// \code
    /// logMethodEntry("configure")               => ENTERING configure       (and a space)
    /// logMethodEntry("scan", "count=%d", 3)     =>   ENTERING scan count=3
    /// logMethodExit(0)                          =>   EXITING scan -- returning 0
    /// logMethodExit("ok")                       => EXITING configure -- returning ok
    /// \endcode
    /// @{

    /// Writes the entry line with an argument text, formatted from a `va_list`; the caller calls
    /// `va_start` and `va_end`. The compiler selects this overload only for a `std::va_list`.
    /// Any other argument, even the literal 0 or a null pointer, selects the overload below.
    ///
    /// Where `std::va_list` is `char*` (Windows, and Linux on 32-bit x86), a single argument of
    /// type `char*` counts as a `va_list`. Pass it as `const char*` there.
    /// \pre \a name is not null
    template <typename List>
    KELRT_FORMAT(3, 0)
    VoidIfVaList<List> logMethodEntry(const char* name, const char* format,
                                      List arguments) noexcept {
        traceEntry(name, format, arguments);
    }

    /// Writes the entry line with an argument text, as printLog formats it. If \a format is null or
    /// empty, the line has no argument text; an empty one also flushes the stream.
    /// \pre \a name is not null
    KELRT_API void logMethodEntry(const char* name, const char* format, ...) noexcept
        KELRT_FORMAT(3, 4);

    /// Writes the entry line without argument text; one space follows the name.
    /// \pre \a name is not null
    KELRT_API void logMethodEntry(const char* name) noexcept;

    /// Closes the innermost entry and writes "EXITING name". Does nothing if no entry is open.
    KELRT_API void logMethodExit() noexcept;

    /// Closes the innermost entry and writes "EXITING name -- returning value". Does nothing if no
    /// entry is open.
    KELRT_API void logMethodExit(int value) noexcept;

    /// Closes the innermost entry and writes "EXITING name -- returning text". Does the same as
    /// logMethodExit() if \a text is null or empty.
    KELRT_API void logMethodExit(const char* text) noexcept;

    /// Writes "EXITING name -- returning value" with this name and decrements the nesting depth,
    /// even below 0. It closes no entry, not even one of this name. When another exit closes that
    /// entry later, the depth is decremented once more.
    /// \pre \a name is not null
    KELRT_API void logMethodExit(const char* name, int value) noexcept;

    /// Discards all open entries, whether tracing is active or not, so later exits do not find
    /// them. Writes nothing and leaves the indentation unchanged.
    KELRT_API void popAllMethods() noexcept;
    /// @}

    /// Writes \a title and a table of the first \a bitCount bits of \a buffer, the most significant
    /// byte on the left. The size in bytes is the bit count divided by 8, rounded up.
    ///
    /// The hexadecimal form has rows of 16 bytes; each row ends in a space. For the bytes 0 to 19:
    /// \code
    /// [Buffer Dump]
    /// (MSB<-LSB)  f  e  d  c  b  a  9  8  7  6  5  4  3  2  1  0
    /// 00000000h: 0f 0e 0d 0c 0b 0a 09 08 07 06 05 04 03 02 01 00
    /// 00000010h:                                     13 12 11 10
    /// \endcode
    /// The bit form (bit 0 of `TOR_KEL_LOGFLAGS`) has rows of 8 bytes. Bits from \a bitCount on are
    /// blank. For 0x55, 0x0A and 12 bits:
    /// \code
    /// (MSB<-LSB)        1        0
    /// 00000000h:     1010 01010101
    /// \endcode
    /// A dump is truncated to 10,000 bytes, and a message then names the flag for whole dumps (bit
    /// 1 of `TOR_KEL_LOGFLAGS`).
    ///
    /// The title is a record of its own, truncated to 2,047 characters and indented as any record.
    /// A null title writes no record; an empty one flushes the stream. The title is not a format:
    /// a '%' in it stands for itself, but "%%" writes a single '%'.
    ///
    /// The table begins with a newline, so the title should not end in one. If the table begins at
    /// the start of a line (without a title, or after one that ends in a newline), it is preceded
    /// by a line that holds only the indentation. Rows are never indented.
    /// \pre \a buffer holds the given number of bits
    KELRT_API void dumpBuffer(int level, const char* title, const unsigned char* buffer,
                              unsigned int bitCount) noexcept;

    /// Writes the same table under the title "[Buffer Dump]".
    /// \pre \a buffer holds the given number of bits
    KELRT_API void dumpBuffer(int level, const unsigned char* buffer,
                              unsigned int bitCount) noexcept;

private:
    /// Holds the names of the open entries, the innermost on top. If memory for a name is
    /// exhausted, the entry and all that are opened above it are kept without names.
    class MethodStack {
    public:
        MethodStack() noexcept = default;
        MethodStack(const MethodStack& other) noexcept;
        MethodStack& operator=(const MethodStack& other) noexcept;
        ~MethodStack() = default;
        [[nodiscard]] bool empty() const noexcept;
        /// Returns the innermost name, or "" for a nameless entry. \pre the stack is not empty
        [[nodiscard]] const char* top() const noexcept;
        void push(const char* name) noexcept;
        /// \pre the stack is not empty
        void pop() noexcept;
        void clear() noexcept;

    private:
        std::vector<std::string> names;
        std::uint64_t nameless = 0; ///< how many open entries are above those in `names`
    };

    /// Maps \a level to its rank among all values of int; the lowest has rank 0.
    static constexpr std::uint64_t rankOf(int level) noexcept {
        return static_cast<std::uint64_t>(std::int64_t{level} - INT32_MIN);
    }
    void updateLevelBound() noexcept;
    void openOutput() noexcept;
    void readDetailLevel() noexcept;
    void readFlags() noexcept;

    void write(const char* text, std::size_t length) noexcept;
    void writeIndentation() noexcept;
    void writeTitle(const char* title) noexcept;

    KELRT_API void traceEntry(const char* name, const char* format, std::va_list arguments) noexcept
        KELRT_FORMAT(3, 0);
    bool beginExit() noexcept;
    void writeExitLine(const char* name, int value) noexcept;

    std::shared_ptr<std::FILE> stream; ///< null: logging is off
    std::int32_t detailLevel = 0;
    std::int32_t nestingDepth = 0; ///< entries minus exits; may be negative
    /// This is the exclusive upper bound of the ranks of the enabled levels. It is 0, so that none
    /// is enabled, while there is no stream and before construction (static storage is zeroed).
    std::uint64_t levelBound = 0;
    bool atLineStart = false; ///< true if the last character written was a newline
    MethodStack methodStack;
    bool printBits = false;
    bool printLargeBufs = false;
};

} // namespace KelRT
