// SPDX-License-Identifier: MIT
#pragma once

#include "KelRT/Export.h"

#include <cstdint>
#include <string>
#include <vector>

namespace KelRT {

/// Offers static helpers for text, files and the environment; the class is used without instances.
///
/// Strings are byte strings. The text functions depend only on their arguments and, when they fold
/// case, on the process's locale. They keep no state and report no errors. The file functions call
/// the operating system, keep one setting, and throw.
///
/// Threads: any thread may call the text functions at any time, as long as no other thread changes
/// the same texts. For the file functions see below.
class Kel_Util {
public:
    /// \name Text
    ///
    /// *Ignoring case* means: upper-case letters are folded to lower case by the process's locale
    /// (`tolower`; in the default locale only A to Z), then both texts are compared byte by byte as
    /// unsigned characters. So the characters between 'Z' and 'a' (`[ \ ] ^ _` and the grave
    /// accent) sort before every letter.
    ///
    /// Only the sign of a comparison's result is defined.
    ///@{

    /// Compares two texts, ignoring case. A text that is the beginning of the other sorts before
    /// it.
    /// \return negative, 0 or positive if \a a sorts before, with or after \a b
    /// \pre \a a and \a b are not null.
    /// \code
    /// stricmp("Key", "kEY") => 0
    /// stricmp("a", "B")     => negative
    /// stricmp("_", "A")     => negative
    /// stricmp("abc", "ab")  => positive
    /// \endcode
    [[nodiscard]] KELRT_API static int stricmp(const char* a, const char* b);

    /// Compares at most the first \a count characters as stricmp does. If \a count is 0, the result
    /// is 0.
    /// \pre \a a and \a b are not null.
    /// \code
    /// strnicmp("HELLO world", "hello there", 6) => 0
    /// strnicmp("HELLO world", "hello there", 7) => positive
    /// \endcode
    [[nodiscard]] KELRT_API static int strnicmp(const char* a, const char* b, std::uint64_t count);

    /// Compares two strings, each up to its first NUL, as stricmp of two pointers does.
    [[nodiscard]] KELRT_API static int stricmp(const std::string& a, const std::string& b);

    /// Compares two strings, each up to its first NUL, as strnicmp of two pointers does.
    [[nodiscard]] KELRT_API static int strnicmp(const std::string& a, const std::string& b,
                                                std::uint64_t count);

    /// Removes one carriage return from the end of \a text. A line of a Windows file ends in one
    /// after its newline is removed.
    /// \return \a text
    /// \code
    /// stripEndingCR("line\r")   => "line"
    /// stripEndingCR("line\r\r") => "line\r"
    /// stripEndingCR("line\r\n") => "line\r\n"
    /// \endcode
    KELRT_API static std::string& stripEndingCR(std::string& text);

    /// Removes one pair of double quotes that encloses \a text. Other quotes and apostrophes stay.
    /// \return \a text
    /// \code
    /// unQuote("\"abc\"")     => "abc"
    /// unQuote("\"\"")        => ""
    /// unQuote("\"\"abc\"\"") => "\"abc\""
    /// unQuote("\"a\"b")      => "\"a\"b"
    /// unQuote("\"")          => "\""
    /// \endcode
    KELRT_API static std::string& unQuote(std::string& text);

    /// Calls unQuote for each of \a texts.
    KELRT_API static void unQuote(std::vector<std::string>& texts);

    /// Returns \a text, up to its first NUL, without the white space at both ends. White space is
    /// the set Kel_StrTok::WHITE_SPACE, which includes backspace and form feed.
    /// \throws std::bad_alloc
    /// \code
    /// trimWhitespace(" \t value \r\n") => "value"
    /// trimWhitespace("\bvalue\f")      => "value"
    /// trimWhitespace("a b")            => "a b"
    /// trimWhitespace(" \t ")           => ""
    /// \endcode
    [[nodiscard]] KELRT_API static std::string trimWhitespace(const std::string& text);

    /// Returns the value of the setting \a key among words of the form `name=value`.
    ///
    /// The name is the text before the first `=` of a word; the value is all text after it. The
    /// result comes from the first word whose name is as long as \a key and equals it, ignoring
    /// case, up to the first NUL. Words without `=` are skipped. Nothing is trimmed, and no prefix
    /// such as a dash is recognised.
    ///
    /// \param entries the words; they are not changed
    /// \return the value, or empty text if no name matches
    /// \throws std::bad_alloc
    /// \code
    /// findKey({"a=1", "B=2", "b=3"}, "b") => "2"
    /// findKey({"a=b=c"}, "A")             => "b=c"
    /// findKey({"key", "keyx=1"}, "key")   => ""
    /// findKey({" key=v"}, "key")          => ""
    /// findKey({"=v"}, "")                 => "v"
    /// \endcode
    [[nodiscard]] KELRT_API static std::string findKey(std::vector<std::string>& entries,
                                                       const std::string& key);

    /// Searches the \a argc texts of \a argv in the same way, including the first one, which is
    /// usually the program's name.
    /// \pre \a argv holds \a argc pointers, none of them null.
    [[nodiscard]] KELRT_API static std::string findKey(std::uint32_t argc, char** argv,
                                                       const std::string& key);

    ///@}

    /// \name Files and environment
    ///
    /// Paths are byte strings in the host's narrow encoding, the bytes that `fopen` takes. A name
    /// or a path ends at its first NUL. normalizePath, getDataDirPath and getSorvaDataDirPath
    /// accept both `/` and `\` as separators on every host. (On Windows, the second byte of a
    /// two-byte character is never a separator.) The other functions pass a path to the host
    /// unchanged. Separators and extensions that the functions add are the host's:
    ///
    /// |                                  | Windows | Linux |
    /// |----------------------------------|---------|-------|
    /// | separator between parts          | `\`     | `/`   |
    /// | separator of the list in `PATH`  | `;`     | `:`   |
    /// | extension of library files       | `.dll`  | `.so` |
    ///
    /// The examples are for Windows, with the current directory `C:\work`.
    ///
    /// Failures throw a Kel_Exception whose message ends in a newline. Exhausted memory throws
    /// `std::bad_alloc`. Every call reads the environment variables again; an empty value counts as
    /// unset.
    ///
    /// Threads: setUserDataDirPath writes what getDataDirPath reads, without a lock, so callers
    /// must serialise these two. The others may run in parallel while no thread changes the
    /// environment, the current directory or the locale of the process. Other threads and processes
    /// may create the same directory and temporary files at the same time.
    ///@{

    /// Returns the value of the environment variable `USERPROFILE`, unchanged.
    /// \throws Kel_Exception "USERPROFILE Environmental Variable is not set Correctly.\n" if it is
    ///         not set
    [[nodiscard]] KELRT_API static std::string getHomePath();

    /// Sets the directory that getDataDirPath returns if `TOR_KEL_DATADIR` is not set. \a path is
    /// stored unchanged and not checked. If it is empty, as it is initially, getDataDirPath
    /// searches for the installed directory.
    KELRT_API static void setUserDataDirPath(const std::string& path);

    /// Returns the path of the per-user directory `.kel` in the home path, and creates the
    /// directory if nothing of that name exists. If a file has that name, it stays, and its path is
    /// returned. The home path itself is not created.
    /// \throws Kel_Exception as getHomePath does; "Cannot create DIRECTORY directory, check the
    ///         USERPROFILE variable.\n" if the directory cannot be created
    /// \code
    /// USERPROFILE=C:\Users\user => "C:\Users\user\.kel"
    /// \endcode
    KELRT_API static std::string createDotLumatraceDir();

    /// Creates a new, empty file in the per-user directory and returns its path. The file's name is
    /// \a baseName followed by the lowest number from 0 to 32001 that makes it unused. The caller
    /// deletes the file.
    ///
    /// The file is created exclusively and never through a link, so no two threads or processes
    /// get the same file. If it cannot be created, no error is reported: the path is returned all
    /// the same, and a later call may return it again. If \a baseName contains a directory, that
    /// directory is not created.
    /// \throws Kel_Exception as createDotLumatraceDir does; when all 32,002 names are taken, "Too
    ///         many temporary files exist in the .kel directory with the name BASENAME\n"
    /// \code
    /// "trace"     => "C:\Users\user\.kel\trace0", then "C:\Users\user\.kel\trace1"
    /// "trace.log" => "C:\Users\user\.kel\trace.log0"
    /// \endcode
    KELRT_API static std::string createDotLumatraceTempFile(const std::string& baseName);

    /// Returns 1 if \a path names an existing directory or a link to one. Returns 0 otherwise, also
    /// if the host cannot tell.
    [[nodiscard]] KELRT_API static int isDirectory(const std::string& path);

    /// Returns the directory that contains a library: "." if the file is in the current directory,
    /// otherwise the first directory of `PATH` that contains it, as `PATH` spells it. The extension
    /// is appended unless \a libraryName already contains it in lower case, at any position.
    ///
    /// Any file that opens for reading counts as the library; an unreadable file or a directory
    /// does not. A FIFO or a device is opened without waiting; it counts if it opens. Quotes in
    /// `PATH` are ordinary characters, and empty entries are skipped. But if `PATH` ends in two or
    /// more separators (`C:\a;;`) or is a single one (`;`), the root is searched last. If the file
    /// is there, the result is the empty text.
    /// \throws Kel_Exception if the file is not in the current directory: "PATH Environmental
    ///         Variable not set.\n" or "Could not find LIBRARYNAME in path.\n"
    /// \code
    /// "foo"         looks for foo.dll
    /// "foo.dll.bak" looks for foo.dll.bak
    /// "foo.DLL"     looks for foo.DLL.dll
    /// PATH=C:\a;;C:\b, foo.dll in C:\b => "C:\b"
    /// \endcode
    KELRT_API static std::string findLibInPath(const std::string& libraryName);

    /// Returns the main data directory, normalised by normalizePath and with a separator at its
    /// end: the value of `TOR_KEL_DATADIR`; else the directory given to setUserDataDirPath; else
    /// `..\..\data\kel\` relative to the directory in which findLibInPath finds "libKelJtag". The
    /// data directory need not exist.
    /// \throws Kel_Exception as findLibInPath and normalizePath do
    /// \code
    /// TOR_KEL_DATADIR=D:\data           => "D:\data\"
    /// libKelJtag.dll in C:\tool\bin\x64 => "C:\tool\data\kel\"
    /// \endcode
    [[nodiscard]] KELRT_API static std::string getDataDirPath();

    /// Returns the Sorva data directory in the same form: the value of `TOR_KEL_SORVADATADIR`; else
    /// `..\..\data\lumatrace\` relative to the directory in which findLibInPath finds "libKelCore".
    /// setUserDataDirPath does not affect it.
    /// \throws Kel_Exception as findLibInPath and normalizePath do
    [[nodiscard]] KELRT_API static std::string getSorvaDataDirPath();

    /// Makes \a path absolute. Only its text and the current directory are used: nothing needs to
    /// exist, and no link is followed. "." and ".." are resolved; ".." at the root stays at the
    /// root. Separators become the host's, and a run of them becomes one. On Windows a path such as
    /// `E:x` is relative to the current directory of its drive.
    ///
    /// The result ends in a separator if and only if \a path does, with one exception: "." becomes
    /// the current directory as the host spells it, `C:\` or `/` if this is a root. A path to the
    /// root without a separator at its end, such as "/a/..", becomes `C:` on Windows and the empty
    /// text on Linux.
    /// \throws Kel_Exception "Could not read the current directory.\n" if \a path is relative
    /// \code
    /// ""               => ""
    /// "."              => "C:\work"
    /// ".\sub\"         => "C:\work\sub\"
    /// "../x"           => "C:\x"
    /// "C:\a\b\..\c"    => "C:\a\c"
    /// "C:\a\.."        => "C:"
    /// "//srv/data/a/." => "\\srv\data\a"
    /// \endcode
    [[nodiscard]] KELRT_API static std::string normalizePath(const std::string& path);

    /// Replaces \a list with the names of the entries of \a directory, without their path, in the
    /// host's order. If \a listFlag is true, "." and ".." are included if the host lists them;
    /// otherwise they are left out.
    ///
    /// On Windows a directory with a path longer than the host's limit, usually 260 characters,
    /// cannot be opened. In a name, characters that the narrow encoding lacks are replaced by
    /// others, so a file cannot be opened by such a name.
    /// \throws Kel_Exception "Could not open the directory: DIRECTORY\n" if it cannot be opened or
    ///         read; \a list is then unchanged
    KELRT_API static void getDirectoryFileList(const std::string& directory, bool listFlag,
                                               std::vector<std::string>& list);

    /// Converts \a message to the multibyte encoding of the process's current locale (`LC_CTYPE`).
    /// A character that the encoding lacks becomes "?". The text is truncated to as many whole
    /// characters as fit 2,047 bytes. A null \a message yields empty text.
    /// \code
    /// L"Disk full"    => "Disk full"
    /// L"5 \u20AC off" => "5 ? off"    (in the default locale)
    /// \endcode
    [[nodiscard]] KELRT_API static std::string getLocalizedPortMsg(const wchar_t* message);

    ///@}

private:
    KELRT_API static std::string userDataDir;
};

} // namespace KelRT
