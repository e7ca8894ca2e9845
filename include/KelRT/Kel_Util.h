// SPDX-License-Identifier: MIT
#pragma once

#include "KelRT/Export.h"

#include <cstdint>
#include <string>
#include <vector>

namespace KelRT {

/// Static helpers for text, files and the environment; the class is used without instances.
///
/// Strings are byte strings. The text functions use only their arguments and, to fold case, the
/// locale. They keep no state and report no errors: text that does not match the rule does not
/// change. The file functions ask the host, keep one setting, and throw.
///
/// Threads: the text functions may be called from any thread at any time, on texts that no other
/// thread changes. Those that fold case use the process's locale. For the file functions see below.
class Kel_Util {
public:
    /// \name Text
    ///
    /// *Without regard to case* means: upper-case letters are folded to lower case by the process's
    /// locale (`tolower`; in the default locale only A to Z), then both texts are compared byte by
    /// byte as unsigned characters. So the punctuation between the two alphabets (`[ \ ] ^ _` and
    /// the grave accent) sorts before every letter.
    ///
    /// Only the sign of a comparison's result is defined.
    ///@{

    /// Compares two texts without regard to case, up to the first difference or the end of either;
    /// the end counts as the smallest character.
    /// \return negative, 0 or positive if \a a sorts before, with or after \a b
    /// \pre \a a and \a b are not null.
    /// \code
    /// stricmp("Key", "kEY") => 0
    /// stricmp("a", "B")     => negative
    /// stricmp("_", "A")     => negative
    /// stricmp("abc", "ab")  => positive
    /// \endcode
    [[nodiscard]] KELRT_API static int stricmp(const char* a, const char* b);

    /// As stricmp, for the first \a count characters at most; a \a count of 0 gives 0.
    /// \pre \a a and \a b are not null.
    /// \code
    /// strnicmp("HELLO world", "hello there", 6) => 0
    /// strnicmp("HELLO world", "hello there", 7) => positive
    /// \endcode
    [[nodiscard]] KELRT_API static int strnicmp(const char* a, const char* b, std::uint64_t count);

    /// As the form for NUL-terminated texts: characters after a NUL in a string are not compared.
    [[nodiscard]] KELRT_API static int stricmp(const std::string& a, const std::string& b);

    /// As the form for NUL-terminated texts: characters after a NUL in a string are not compared.
    [[nodiscard]] KELRT_API static int strnicmp(const std::string& a, const std::string& b,
                                                std::uint64_t count);

    /// Removes one carriage return from the end of \a text. A line that was written on Windows and
    /// read without its newline ends in one.
    /// \return \a text
    /// \code
    /// stripEndingCR("line\r")   => "line"
    /// stripEndingCR("line\r\r") => "line\r"
    /// stripEndingCR("line\r\n") => "line\r\n"
    /// \endcode
    KELRT_API static std::string& stripEndingCR(std::string& text);

    /// Removes one pair of double quotes that encloses \a text. Quotes within the text, apostrophes
    /// and a quote without a partner stay.
    /// \return \a text
    /// \code
    /// unQuote("\"abc\"")     => "abc"
    /// unQuote("\"\"")        => ""
    /// unQuote("\"\"abc\"\"") => "\"abc\""
    /// unQuote("\"a\"b")      => "\"a\"b"
    /// unQuote("\"")          => "\""
    /// \endcode
    KELRT_API static std::string& unQuote(std::string& text);

    /// unQuote for each of \a texts.
    KELRT_API static void unQuote(std::vector<std::string>& texts);

    /// \a text without the white space at both ends. White space is the set
    /// Kel_StrTok::WHITE_SPACE, backspace and form feed included. A NUL ends the text.
    /// \throws std::bad_alloc
    /// \code
    /// trimWhitespace(" \t value \r\n") => "value"
    /// trimWhitespace("\bvalue\f")      => "value"
    /// trimWhitespace("a b")            => "a b"
    /// trimWhitespace(" \t ")           => ""
    /// \endcode
    [[nodiscard]] KELRT_API static std::string trimWhitespace(const std::string& text);

    /// The value of one setting among words of the form `name=value`.
    ///
    /// The name is the text before the first `=` of a word, the value is all text after it. The
    /// first word whose name equals \a key counts: the same length, and equal by stricmp. Words
    /// without `=` are skipped. Nothing is trimmed, and no prefix such as a dash is recognised.
    ///
    /// \param entries the words; they are not changed
    /// \return the value; empty if no name matches, as for an empty value
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

    /// findKey for the \a argc texts of \a argv, including the first one, which is usually the
    /// program's name.
    /// \pre \a argv holds \a argc pointers, none of them null.
    [[nodiscard]] KELRT_API static std::string findKey(std::uint32_t argc, char** argv,
                                                       const std::string& key);

    ///@}

    /// \name Files and environment
    ///
    /// Paths are byte strings in the host's narrow encoding, the bytes that `fopen` takes. A name
    /// or a path ends at its first NUL. normalizePath and the data directories take both `/` and
    /// `\` as separators, on every host, unless one is the second byte of a character in the code
    /// page of Windows. The other functions pass a path to the host as it is. What the
    /// functions add follows the host:
    ///
    /// |                                  | Windows | Linux |
    /// |----------------------------------|---------|-------|
    /// | separator between parts          | `\`     | `/`   |
    /// | separator of the list in `PATH`  | `;`     | `:`   |
    /// | extension of library files       | `.dll`  | `.so` |
    ///
    /// The examples are for Windows, with the current directory `C:\work`.
    ///
    /// Failures are thrown as Kel_Exception whose message ends in a newline; exhausted memory as
    /// `std::bad_alloc`. Every call reads the environment variables again; an empty value counts as
    /// unset.
    ///
    /// Threads: setUserDataDirPath writes what getDataDirPath reads, without a lock: callers
    /// serialise the two. The others share only the environment, the current directory and the
    /// locale of the process, and may run in parallel while nobody changes those. Other threads and
    /// processes may create the same directory and temporary files at the same time.
    ///@{

    /// The value of the environment variable `USERPROFILE`, unchanged.
    /// \throws Kel_Exception "USERPROFILE Environmental Variable is not set Correctly.\n" if it is
    ///         not set
    [[nodiscard]] KELRT_API static std::string getHomePath();

    /// Sets the main data directory for getDataDirPath, which prefers `TOR_KEL_DATADIR`. \a path is
    /// stored unchanged and not checked. Empty text, the initial state, selects the installed
    /// directory.
    KELRT_API static void setUserDataDirPath(const std::string& path);

    /// The per-user directory `.kel` in the home path, created if nothing of that name exists.
    /// Anything else of that name is left alone. The home path itself is not created.
    /// \throws Kel_Exception as getHomePath; "Cannot create DIRECTORY directory, check the
    ///         USERPROFILE variable.\n"
    /// \code
    /// USERPROFILE=C:\Users\user => "C:\Users\user\.kel"
    /// \endcode
    KELRT_API static std::string createDotLumatraceDir();

    /// Creates a new, empty file in the per-user directory: \a baseName followed by the lowest
    /// number from 0 to 32001 that gives an unused name. The caller uses the file and deletes it.
    ///
    /// The file is created exclusively, never through a link, so every file is given to one caller,
    /// however many threads and processes ask at once. A file that cannot be created is not
    /// reported: the path is returned all the same, and may be returned again. A directory within
    /// \a baseName is not created.
    /// \throws Kel_Exception as createDotLumatraceDir; "Too many temporary files exist in the .kel
    ///         directory with the name BASENAME\n" when all 32,002 names are taken
    /// \code
    /// "trace"     => "C:\Users\user\.kel\trace0", then "C:\Users\user\.kel\trace1"
    /// "trace.log" => "C:\Users\user\.kel\trace.log0"
    /// \endcode
    KELRT_API static std::string createDotLumatraceTempFile(const std::string& baseName);

    /// 1 when \a path names an existing directory or a link to one; otherwise 0, also if the host
    /// does not tell.
    [[nodiscard]] KELRT_API static int isDirectory(const std::string& path);

    /// The directory that holds a library: "." when the file is in the current directory, otherwise
    /// the first directory of `PATH` that holds it, as `PATH` spells it. The name of the file is
    /// \a libraryName if that contains the library extension in lower case anywhere; otherwise
    /// \a libraryName followed by the extension.
    ///
    /// Any file that opens for reading counts as the library; an unreadable file or a directory
    /// does not. Opening does not wait, so a FIFO or a device that opens counts, too. Empty entries
    /// of `PATH` are skipped, but two or more separators at its end, or one that is all of it, give
    /// one empty entry, which means the root. Quotes are ordinary characters.
    /// \throws Kel_Exception when the file is not in the current directory: "PATH Environmental
    ///         Variable not set.\n" or "Could not find LIBRARYNAME in path.\n"
    /// \code
    /// "foo"         looks for foo.dll
    /// "foo.dll.bak" looks for foo.dll.bak
    /// "foo.DLL"     looks for foo.DLL.dll
    /// PATH=C:\a;;C:\b, foo.dll in C:\b => "C:\b"
    /// \endcode
    KELRT_API static std::string findLibInPath(const std::string& libraryName);

    /// The main data directory, as normalizePath gives it, with a separator at its end: the value
    /// of `TOR_KEL_DATADIR`; else the directory given to setUserDataDirPath; else `..\..\data\kel\`
    /// relative to the directory in which findLibInPath finds "libKelJtag". Its existence is not
    /// checked.
    /// \throws Kel_Exception as findLibInPath and normalizePath
    /// \code
    /// TOR_KEL_DATADIR=D:\data           => "D:\data\"
    /// libKelJtag.dll in C:\tool\bin\x64 => "C:\tool\data\kel\"
    /// \endcode
    [[nodiscard]] KELRT_API static std::string getDataDirPath();

    /// The Sorva data directory: as getDataDirPath, from `TOR_KEL_SORVADATADIR` or
    /// `..\..\data\lumatrace\` relative to the directory of "libKelCore". setUserDataDirPath does
    /// not affect it.
    /// \throws Kel_Exception as findLibInPath and normalizePath
    [[nodiscard]] KELRT_API static std::string getSorvaDataDirPath();

    /// The absolute form of \a path, computed from its text and the current directory: nothing
    /// needs to exist and no link is followed. "." and ".." are resolved; ".." at the root stays
    /// there. The separators become the host's, and a run of them becomes one. On Windows a path
    /// such as `E:x` is relative to the current directory of its drive.
    ///
    /// The result ends in a separator if and only if \a path does. So a path to the root without a
    /// separator at its end gives the root without one: `C:`, or on Linux the empty text. The
    /// exception is ".", which gives the current directory as the host spells it.
    /// \throws Kel_Exception "Could not read the current directory.\n" when the path is relative
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

    /// Replaces \a list by the names of the entries of \a directory, without their path, in the
    /// host's order. With \a listFlag true "." and ".." are included if the host lists them; with
    /// false they are left out. On Windows a directory whose path is longer than the host takes,
    /// 260 characters as a rule, cannot be opened, and a name with characters that the narrow
    /// encoding does not have comes back with others in their place, so nothing opens it.
    /// \throws Kel_Exception "Could not open the directory: DIRECTORY\n" when it cannot be opened
    ///         or read; \a list is then unchanged
    KELRT_API static void getDirectoryFileList(const std::string& directory, bool listFlag,
                                               std::vector<std::string>& list);

    /// \a message in the multibyte encoding of the process's current locale (`LC_CTYPE`). A
    /// character that the encoding does not have becomes "?". The text is cut at 2,047 bytes,
    /// before the character that would exceed them. A null \a message gives empty text.
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
