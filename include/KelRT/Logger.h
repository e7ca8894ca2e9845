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
/// Logging is off until startLogging() has obtained a stream; without one every log call returns
/// at once and writes nothing. The library itself writes no records: `Logger::logger` serves the
/// programs and libraries that load it.
///
/// **Levels.** A record of level L is written if L is at most the detail level (both signed). The
/// Logger's own lines have level 1 (what was read from the environment), 2 (banner, start and end
/// of logging) and 4 (method entries and exits); callers choose the levels of their records.
///
/// **Lines.** No newline is added to a record: if it does not end in one, the next record
/// continues the line. A record that begins at the start of a line is indented by two spaces for
/// each unit of the nesting depth; only its first line is indented. An entry raises the depth, and
/// the exit that closes it lowers the depth again. It differs from the number of open entries after
/// popAllMethods(), which leaves it, and after an exit by name, which closes no entry. At depth 2,
/// the four records "a\nb\n", "c", "d\n" and "e\n" read
/// \code
///     a
/// b
///     cd
///     e
/// \endcode
/// A complete line is with the host when the call returns, so it is in the file even if the process
/// crashes afterwards. A line that is still open is not.
///
/// **Limits.** The text of one record is cut at 2,047 characters. The Logger's own lines keep their
/// newline then: a name, a path or a result is cut instead. A log call takes less than 8 KiB of
/// stack (Windows: 16 KiB), unless the C library takes more for a conversion (`"%Lf"` of a huge
/// number, for example).
///
/// **Copies** share the stream. It is closed when the last Logger that holds it ends logging, is
/// assigned to, or is destroyed, so no Logger uses a closed stream. A copy has its own level,
/// depth, names and flags.
///
/// **Failures.** No operation throws, reports anything or ends the process. Output that the stream
/// does not accept is lost. On a full disk, a fragment of a record may remain before the next whole
/// one. The host may end the process, though: by SIGPIPE if the reader of a
/// pipe is gone, by SIGXFSZ at the limit for the size of a file, and in MSVC's C library if the
/// program has closed the stream's descriptor. A program that must survive ignores these signals,
/// or sets an invalid-parameter handler. If memory is exhausted, startLogging() obtains no stream
/// or drops the banner, and an entry is kept without its name, so every exit still closes its entry
/// and the indentation stays right. The library allocates nothing to write a record; the C library
/// may. Conversions are those of the C library: floating-point conversions in records follow the
/// process's `LC_NUMERIC`, the time lines `LC_TIME`.
///
/// **Threads.** Nothing here is locked. Callers serialise every use of every Logger,
/// startLogging(), endLogging() and destruction included: Loggers share the one stream of the
/// process, and `Logger::logger` writes the lines about start and end for all. A cancellation
/// (`pthread_cancel`) waits until the log call has returned. A thread whose cancellation is
/// asynchronous must not log.
///
/// **Processes.** A child process inherits the descriptor of the log file, also across `exec`. A
/// forked child that calls `exit` ends logging as its parent does: it writes once more what the
/// stream still held when it was forked, and the closing line. To avoid this, it calls `_exit`, or
/// the parent flushes before it forks and the child sets the detail level to 0.
class Logger {
    /// Never defined. A pointer to a function with one parameter of type T converts to the type of
    /// its parameter only if T is the type of a `std::va_list` parameter.
    static void acceptVaListFunction(void (*function)(std::va_list));

    /// `void` if List is the host's `std::va_list`. For any other type substitution fails, which
    /// removes the overload (SFINAE).
    template <typename List>
    using VoidIfVaList = decltype(acceptVaListFunction(static_cast<void (*)(List)>(nullptr)));

public:
    /// The process-wide instance, from the loading of the library to its unloading. Its destruction
    /// ends logging, so a client may log from the destructors of its own static objects.
    KELRT_API static Logger logger;

    /// A Logger without a stream: detail level 0, no open entries, no flags.
    KELRT_API Logger() noexcept;

    /// Copies everything and shares the stream. If memory for the method names is exhausted, the
    /// copy keeps the entries without their names.
    KELRT_API Logger(const Logger& other) noexcept;

    /// As the copy constructor. Releases the stream held before, without a closing line.
    KELRT_API Logger& operator=(const Logger& other) noexcept;

    /// Ends logging as endLogging() does: destroying any Logger writes the closing line to
    /// `Logger::logger` while that one is logging at level 2 or more.
    KELRT_API ~Logger();

    /// Starts logging as the environment says. Only the first call in a process has an effect,
    /// whichever Logger it is made on; logging that has ended cannot be started again.
    ///
    /// This Logger is reset (no open entries, detail level 1, no stream, no flags) and then takes
    /// the settings of the variables. `Logger::logger` writes the lines about them, the banner and
    /// the start line, so they appear only if it is the Logger that is started.
    ///
    /// - `TOR_KEL_LOGFILE`: where to write. White space around it is removed. "stdout" and "stderr"
    ///   (exactly so) are the standard streams; any other name is a file in the host's narrow
    ///   encoding, which is created or emptied; links are followed. For a FIFO (POSIX), the call
    ///   waits until a reader has opened it. Unset, blank or impossible to open: no stream.
    /// - `TOR_KEL_LOGDETAIL`: the detail level, as `atoi` reads it. Any number is accepted,
    ///   negative ones too; text without a number yields 0.
    /// - `TOR_KEL_LOGFLAGS`: a decimal number, as `atoi` reads it. Bit 0: dumps show bits; bit 1:
    ///   dumps are not cut. Other bits are ignored.
    ///
    /// At level 2 with the flags 3 a log begins
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

    /// Ends logging: discards the open entries (their indentation stays), writes the
    /// closing line at level 2 through `Logger::logger`, flushes the stream of this Logger and
    /// releases it. The last Logger that holds the stream closes it, even a standard stream.
    /// Without a stream it only discards the entries and writes the closing line.
    KELRT_API void endLogging() noexcept;

    /// Sets the detail level; only 0 to 10 are accepted, any other \a level is ignored.
    KELRT_API void setDetailLevel(int level) noexcept;

    /// Flushes the stream.
    KELRT_API void flush() noexcept;

    /// True if a record of this level would be written. It is inlined, so a caller can avoid the
    /// cost of a record that is filtered out.
    [[nodiscard]] bool shouldPrintLog(int level) const noexcept {
        return rankOf(level) < levelBound;
    }

    /// Writes a record: \a format with the arguments that follow, as `printf` formats them. A null
    /// or empty format writes nothing and flushes the stream, if the level is enabled (compilers
    /// warn of a literal ""; null means the same). A record without characters writes only the
    /// indentation, at the start of a line. A record that the C library cannot format (a character
    /// outside the encoding, a text beyond 2^31 - 1 characters) is lost.
    ///
    /// Never pass untrusted text as the format: `printLog(1, "%s", text)`.
    KELRT_API void printLog(int level, const char* format, ...) noexcept KELRT_FORMAT(3, 4);

    /// As printLog, with a `va_list`; the caller calls `va_start` and `va_end`.
    KELRT_API void vprintLog(int level, const char* format, std::va_list arguments) noexcept
        KELRT_FORMAT(3, 0);

    /// \name Method tracing
    /// Active while there is a stream and the detail level is 4 or more. Otherwise entries and
    /// exits do nothing, so an exit while tracing is off leaves its entry open. The names are
    /// copied.
    /// \code
    /// logMethodEntry("configure")               => ENTERING configure       (and one space)
    /// logMethodEntry("scan", "count=%d", 3)     =>   ENTERING scan count=3
    /// logMethodExit(0)                          =>   EXITING scan -- returning 0
    /// logMethodExit("ok")                       => EXITING configure -- returning ok
    /// \endcode
    /// @{

    /// The entry line with an argument text, formatted from a `va_list`; the caller calls
    /// `va_start` and `va_end`. This form is selected only for an argument of exactly the host's
    /// `std::va_list` type (as passed to functions). The literal 0, null pointers and everything
    /// else select the form below.
    ///
    /// Where `std::va_list` is `char*` (Windows, and Linux on 32-bit x86), a single argument of
    /// type `char*` counts as a list. Pass it as `const char*` there.
    /// \pre \a name is not null
    template <typename List>
    KELRT_FORMAT(3, 0)
    VoidIfVaList<List> logMethodEntry(const char* name, const char* format,
                                      List arguments) noexcept {
        traceEntry(name, format, arguments);
    }

    /// The entry line with an argument text, as printLog formats it. A null or empty \a format
    /// gives the line without argument text; an empty one also flushes the stream.
    /// \pre \a name is not null
    KELRT_API void logMethodEntry(const char* name, const char* format, ...) noexcept
        KELRT_FORMAT(3, 4);

    /// The entry line without argument text; the name is followed by one space.
    /// \pre \a name is not null
    KELRT_API void logMethodEntry(const char* name) noexcept;

    /// Closes the innermost entry: "EXITING name". Does nothing if no entry is open.
    KELRT_API void logMethodExit() noexcept;

    /// Closes the innermost entry: "EXITING name -- returning value".
    KELRT_API void logMethodExit(int value) noexcept;

    /// Closes the innermost entry: "EXITING name -- returning text"; as logMethodExit() if \a text
    /// is null or empty.
    KELRT_API void logMethodExit(const char* text) noexcept;

    /// Writes "EXITING name -- returning value" with this name and decrements the nesting depth,
    /// even below 0. It closes no entry: an entry of that name stays open, and the exit that closes
    /// it decrements the depth once more.
    /// \pre \a name is not null
    KELRT_API void logMethodExit(const char* name, int value) noexcept;

    /// Discards all open entries, whether tracing is active or not; later exits do not find them.
    /// Writes nothing and leaves the indentation as it is.
    KELRT_API void popAllMethods() noexcept;
    /// @}

    /// Writes \a title and a table of the first \a bitCount bits of \a buffer, the most significant
    /// byte on the left. The size in bytes is the bit count divided by 8, rounded up.
    ///
    /// Hexadecimal form, rows of 16 bytes (each ends in a space), for the values 0 to 19:
    /// \code
    /// [Buffer Dump]
    /// (MSB<-LSB)  f  e  d  c  b  a  9  8  7  6  5  4  3  2  1  0
    /// 00000000h: 0f 0e 0d 0c 0b 0a 09 08 07 06 05 04 03 02 01 00
    /// 00000010h:                                     13 12 11 10
    /// \endcode
    /// Bit form (bit 0 of `TOR_KEL_LOGFLAGS`), rows of 8 bytes; bits from \a bitCount on are blank.
    /// For 0x55, 0x0A and 12 bits:
    /// \code
    /// (MSB<-LSB)        1        0
    /// 00000000h:     1010 01010101
    /// \endcode
    /// A dump is cut after 10,000 bytes, with a message that names the flag for whole dumps (bit 1
    /// of `TOR_KEL_LOGFLAGS`).
    ///
    /// The title is a record of its own, cut at 2,047 characters. A null title writes no record, an
    /// empty one flushes the stream. It should not end in a newline: the table begins with one.
    /// It is never used as a format: "%%" in it writes one '%', and any other '%' stands for
    /// itself. Indentation applies to the title. Where the table begins at the start of a line
    /// (without a title, or after one that ends in a newline), a line of nothing but
    /// the indentation comes before it. Rows are never indented.
    /// \pre \a buffer holds the given number of bits
    KELRT_API void dumpBuffer(int level, const char* title, const unsigned char* buffer,
                              unsigned int bitCount) noexcept;

    /// The same with the title "[Buffer Dump]".
    /// \pre \a buffer holds the given number of bits
    KELRT_API void dumpBuffer(int level, const unsigned char* buffer,
                              unsigned int bitCount) noexcept;

private:
    /// The names of the open entries, the innermost on top. If memory for a name is exhausted, the
    /// entry stays without it.
    class MethodStack {
    public:
        MethodStack() noexcept = default;
        MethodStack(const MethodStack& other) noexcept;
        MethodStack& operator=(const MethodStack& other) noexcept;
        ~MethodStack() = default;
        [[nodiscard]] bool empty() const noexcept;
        /// The innermost name, "" for a nameless entry. \pre the stack is not empty
        [[nodiscard]] const char* top() const noexcept;
        void push(const char* name) noexcept;
        /// \pre the stack is not empty
        void pop() noexcept;
        void clear() noexcept;

    private:
        std::vector<std::string> names;
        std::uint64_t nameless = 0; ///< open entries without a name, all above those in names
    };

    /// The rank of \a level among all values of int; the lowest has rank 0.
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
    std::int32_t nestingDepth = 0; ///< entries less exits; may be negative
    /// Exclusive upper bound of the ranks of the enabled levels. It is 0, which enables none,
    /// without a stream and before construction (static storage is zeroed).
    std::uint64_t levelBound = 0;
    bool atLineStart = false; ///< the last character written ended a line
    MethodStack methodStack;
    bool printBits = false;
    bool printLargeBufs = false;
};

} // namespace KelRT
