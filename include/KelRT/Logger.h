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

/// Writes leveled records, method traces and buffer dumps to one output stream.
///
/// Logging is off until startLogging() has obtained a stream; without one every operation returns
/// at once and writes nothing. The library itself writes no records of its own: `Logger::logger`
/// is a service for the programs and libraries that load it.
///
/// **Levels.** A record of level L is written when L is at most the detail level (both signed).
/// The Logger's own lines have level 1 (what was read from the environment), 2 (banner, start and
/// end of logging) and 4 (method entries and exits); the caller chooses the level of its own.
///
/// **Lines.** A record carries its own newlines and is not ended for the caller: one without a
/// final newline leaves the line open, and the next record continues it. A record that begins at
/// the start of a line is indented by two spaces for each open method entry; only its first line
/// is. With two entries open, the four records "a\nb\n", "c", "d\n" and "e\n" read
/// \code
///     a
/// b
///     cd
///     e
/// \endcode
///
/// **Limits.** The text of one record is cut at 2,047 characters. The Logger's own lines keep their
/// newline then: a name, a path or a result is cut instead. A log call takes less than 8 KiB of
/// stack, unless a conversion makes the C library take more (`"%Lf"` of a huge number, for
/// example).
///
/// **Copies** share the stream, and each holds it: it is closed when the last Logger that holds it
/// ends logging, is assigned to, or is destroyed. So no Logger uses a stream that another one has
/// closed. Everything else of a copy is its own (level, depth, names, flags).
///
/// **Failures.** No operation throws, reports anything or ends the process. What the stream cannot
/// take is lost. The host may end the process by a signal, though: SIGPIPE when the reader of a
/// pipe is gone, SIGXFSZ at the limit for the size of a file. A program that is to survive ignores
/// them. When memory is exhausted, startLogging() obtains no stream or drops the banner, and the
/// names of entries are lost: such an entry is kept without its name, so that every exit still
/// closes the entry that it belongs to and the indentation stays right. Writing allocates nothing.
/// The C library's own conversions apply: floating-point conversions in records follow the
/// process's `LC_NUMERIC`, the time lines `LC_TIME`.
///
/// **Threads.** Nothing here is locked. Callers serialise every use of every Logger,
/// startLogging(), endLogging() and destruction included: all of them write to the one stream of
/// the process or to `Logger::logger`. A cancellation (`pthread_cancel`) waits until the log call
/// has returned. A thread whose cancellation is asynchronous must not log.
///
/// **Processes.** A child process inherits the descriptor of the log file, also across `exec`. A
/// forked child that calls `exit` ends logging as its parent does: it writes once more what the
/// stream still held when it was forked, and the closing line. It calls `_exit` instead, or the
/// parent flushes before it forks and the child sets the detail level to 0.
class Logger {
    /// Declared only. Its argument fits a function of T exactly when T is passed as lists are.
    static void onlyForLists(void (*function)(std::va_list));

    /// `void` for the host's `std::va_list`; any other type takes a template that names it out of
    /// the overloads.
    template <typename List>
    using VoidIfVaList = decltype(onlyForLists(static_cast<void (*)(List)>(nullptr)));

public:
    /// The process-wide instance, from the loading of the library to its unloading. Its destruction
    /// ends logging, so a client may log from the destructors of its own static objects.
    KELRT_API static Logger logger;

    /// A Logger without a stream: detail level 0, no open entries, dumps hexadecimal and cut.
    KELRT_API Logger() noexcept;

    /// Copies everything and shares the stream. A copy of the method names for which memory is
    /// exhausted keeps the entries without their names.
    KELRT_API Logger(const Logger& other) noexcept;

    /// As the copy constructor; the stream held before is let go of, without a closing line.
    KELRT_API Logger& operator=(const Logger& other) noexcept;

    /// Ends logging as endLogging() does: destroying any Logger writes the closing line to
    /// `Logger::logger` while that one is logging at level 2 or more.
    KELRT_API ~Logger();

    /// Starts logging as the environment asks. Only the first call of the process does anything,
    /// on whichever Logger it is made; logging that has ended cannot be started again.
    ///
    /// The settings go to this Logger: no open entries, detail level 1, no stream and no flags,
    /// then what the variables ask for. The lines that tell of it are written through
    /// `Logger::logger`, so they show only when that is the Logger that is started.
    ///
    /// - `TOR_KEL_LOGFILE`: where to write. White space around it is removed. "stdout" and "stderr"
    ///   (exactly so) are the standard streams; any other name is a file in the host's narrow
    ///   encoding, which is created or emptied; links are followed. Unset, blank or not to be
    ///   opened: no stream. The stream is switched to line buffering where the host has it.
    /// - `TOR_KEL_LOGDETAIL`: the detail level, as `atoi` reads it. Any number is taken, negative
    ///   ones too; no number reads as 0.
    /// - `TOR_KEL_LOGFLAGS`: a decimal number, as `atoi` reads it. Bit 0: dumps show bits; bit 1:
    ///   dumps are not cut. Other bits are ignored.
    ///
    /// A log that starts with the flags 3 at level 2 begins
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

    /// Ends logging: forgets the names of the open entries (their indentation stays), writes the
    /// closing line at level 2 through `Logger::logger`, flushes the stream of this Logger and lets
    /// go of it. The last Logger that holds the stream closes it, a standard stream included.
    /// Without a stream only the names and the closing line are dealt with.
    KELRT_API void endLogging() noexcept;

    /// Sets the detail level; only 0 to 10 are accepted, any other \a level is ignored.
    KELRT_API void setDetailLevel(int level) noexcept;

    /// Hands what the stream holds back to the host.
    KELRT_API void flush() noexcept;

    /// True when a record of this level would be written. Inlined, so that a caller can spare
    /// itself the making of a record that is filtered out.
    [[nodiscard]] bool shouldPrintLog(int level) const noexcept {
        return placeOf(level) < writtenLevels;
    }

    /// Writes a record: \a format with the arguments that follow, as `printf` formats them. A null
    /// or empty format writes nothing and flushes the stream, when the level is written at all
    /// (compilers warn of a literal ""; null says the same). A text of no characters writes only
    /// the indentation, when it is due. A record that the C library refuses to format (a character
    /// outside the encoding, a text beyond 2^31 - 1 characters) is lost.
    ///
    /// Never pass a text from outside as the format: `printLog(1, "%s", text)`.
    KELRT_API void printLog(int level, const char* format, ...) noexcept KELRT_FORMAT(3, 4);

    /// As printLog, with the arguments collected by the caller, who ends the list.
    KELRT_API void vprintLog(int level, const char* format, std::va_list arguments) noexcept
        KELRT_FORMAT(3, 0);

    /// \name Method tracing
    /// Active while there is a stream and the detail level is 4 or more; otherwise entries and
    /// exits do nothing at all, so an exit made while tracing is off leaves its entry open. The
    /// names are copied.
    /// \code
    /// logMethodEntry("configure")               => ENTERING configure       (and one space)
    /// logMethodEntry("scan", "count=%d", 3)     =>   ENTERING scan count=3
    /// logMethodExit(0)                          =>   EXITING scan -- returning 0
    /// logMethodExit("ok")                       => EXITING configure -- returning ok
    /// \endcode
    /// @{

    /// The entry line with an argument text, formatted from the list that the caller has collected
    /// and ends. Chosen only for an argument of exactly the host's `std::va_list` type (as it is
    /// passed to functions): the literal 0, null pointers and all else reach the form below.
    ///
    /// One call cannot be told apart: a single argument of type `char*` where `std::va_list` is
    /// `char*` (Windows, and Linux on 32-bit x86), which is taken for a list. Pass it as
    /// `const char*` there.
    /// \pre \a name is not null
    template <typename List>
    KELRT_FORMAT(3, 0)
    VoidIfVaList<List> logMethodEntry(const char* name, const char* format,
                                      List arguments) noexcept {
        traceEntry(name, format, arguments);
    }

    /// The entry line with an argument text, as printLog formats it. A null \a format gives the
    /// line without argument text, an empty one flushes the stream instead.
    /// \pre \a name is not null
    KELRT_API void logMethodEntry(const char* name, const char* format, ...) noexcept
        KELRT_FORMAT(3, 4);

    /// The entry line without argument text; the name is followed by one space.
    /// \pre \a name is not null
    KELRT_API void logMethodEntry(const char* name) noexcept;

    /// Closes the innermost entry: "EXITING name". Nothing happens when no entry is open.
    KELRT_API void logMethodExit() noexcept;

    /// Closes the innermost entry: "EXITING name -- returning value".
    KELRT_API void logMethodExit(int value) noexcept;

    /// Closes the innermost entry: "EXITING name -- returning text"; as logMethodExit() when
    /// \a text is null or empty.
    KELRT_API void logMethodExit(const char* text) noexcept;

    /// Writes "EXITING name -- returning value" with this name and takes one unit off the
    /// indentation, below 0 if need be. The open entries are neither looked at nor closed: the name
    /// of the matching entry stays and is closed once more by the next of the exits above.
    /// \pre \a name is not null
    KELRT_API void logMethodExit(const char* name, int value) noexcept;

    /// Forgets the names of all open entries, whether tracing is active or not. Writes nothing and
    /// leaves the indentation as it is.
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
    /// Dumps of more than 10,000 bytes are cut there, with a message that names the flag that lifts
    /// the limit (bit 1 of `TOR_KEL_LOGFLAGS`).
    ///
    /// The title is a record of its own: cut at 2,047 characters, none when it is null, a flush
    /// when it is empty. It does not end in a newline, since the table begins with one. It is never
    /// used as a format: "%%" in it writes one '%', and any other '%' stands for itself.
    /// Indentation applies to the title. Where the table begins at the start of a line (without a
    /// title, or after one that ends in a newline all the same), a line of nothing but the
    /// indentation comes before it. Rows are never indented.
    /// \pre \a buffer holds the given number of bits
    KELRT_API void dumpBuffer(int level, const char* title, const unsigned char* buffer,
                              unsigned int bitCount) noexcept;

    /// The same with the title "[Buffer Dump]".
    /// \pre \a buffer holds the given number of bits
    KELRT_API void dumpBuffer(int level, const unsigned char* buffer,
                              unsigned int bitCount) noexcept;

private:
    /// The names of the open entries, the innermost on top. An entry whose name is lost to
    /// exhausted memory stays as a nameless one.
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
        std::uint64_t nameless = 0; ///< entries above all of names
    };

    /// The place of \a level among all levels, the lowest one at 0.
    static constexpr std::uint64_t placeOf(int level) noexcept {
        return static_cast<std::uint64_t>(std::int64_t{level} - INT32_MIN);
    }
    void countWrittenLevels() noexcept;
    void readOutput() noexcept;
    void readDetailLevel() noexcept;
    void readFlags() noexcept;

    void write(const char* text, std::size_t length) noexcept;
    void writeIndentation() noexcept;
    void writeTitle(const char* title) noexcept;

    KELRT_API void traceEntry(const char* name, const char* format, std::va_list arguments) noexcept
        KELRT_FORMAT(3, 0);
    bool beginExit() noexcept;
    void writeResult(const char* name, int value) noexcept;

    std::shared_ptr<std::FILE> stream; ///< null: logging is off
    std::int32_t detailLevel = 0;
    std::int32_t nestingDepth = 0; ///< entries less exits; may be negative
    /// What decides on a record, so that one comparison will do: how many levels, the lowest ones,
    /// are written. None without a stream, nor before this object is made.
    std::uint64_t writtenLevels = 0;
    bool atLineStart = false; ///< the last character written ended a line
    MethodStack methodStack;
    bool printBits = false;
    bool printLargeBufs = false;
};

} // namespace KelRT
