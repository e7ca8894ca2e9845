// SPDX-License-Identifier: MIT
#pragma once

#include "KelRT/Export.h"

#include <cstdint>
#include <string>
#include <vector>

namespace KelRT {

/// Static helpers; the class is used without instances.
///
/// Strings are byte strings. The text functions read and change only what they are given, keep
/// nothing between calls, and report no errors: where a text does not fit the rule, it stays as it
/// is. The file functions ask the host, keep one setting, and throw.
///
/// Threads: the text functions may be called from any thread at any time, on texts that no other
/// thread changes. Those that fold case read the locale that the process has set. For the file
/// functions see below.
class Kel_Util {
public:
    /// \name Text
    ///
    /// *Without regard to case* means: both texts are compared byte by byte as unsigned characters,
    /// each upper-case letter first folded to lower case by the process's locale (`tolower`; in the
    /// default locale A to Z alone). As the folding goes to lower case, the punctuation between the
    /// two alphabets (`[ \ ] ^ _` and the grave accent) sorts in front of every letter.
    ///
    /// Only the sign of a comparison's result carries meaning.
    ///@{

    /// Compares two texts without regard to case, up to the first difference or the end of either;
    /// the end counts as the smallest character.
    /// \return negative, 0 or positive as \a a sorts before, with or behind \a b
    /// \pre \a a and \a b are not null.
    /// \code
    /// stricmp("Key", "kEY") => 0
    /// stricmp("a", "B")     => negative
    /// stricmp("_", "A")     => negative
    /// stricmp("abc", "ab")  => positive
    /// \endcode
    KELRT_API static int stricmp(const char* a, const char* b);

    /// As stricmp, over the first \a count characters at the most; with a \a count of 0 the result
    /// is 0.
    /// \pre \a a and \a b are not null.
    /// \code
    /// strnicmp("HELLO world", "hello there", 6) => 0
    /// strnicmp("HELLO world", "hello there", 7) => positive
    /// \endcode
    KELRT_API static int strnicmp(const char* a, const char* b, std::uint64_t count);

    /// As the form for NUL-terminated texts: what stands behind a NUL within a string is not
    /// compared.
    KELRT_API static int stricmp(const std::string& a, const std::string& b);

    /// As the form for NUL-terminated texts: what stands behind a NUL within a string is not
    /// compared.
    KELRT_API static int strnicmp(const std::string& a, const std::string& b, std::uint64_t count);

    /// Removes one carriage return from the end of \a text, as a line has it that was written on
    /// Windows and read without its newline.
    /// \return \a text
    /// \code
    /// "line\r"   => "line"
    /// "line\r\r" => "line\r"
    /// "line\r\n" => "line\r\n"
    /// \endcode
    KELRT_API static std::string& stripEndingCR(std::string& text);

    /// Removes one pair of double quotes that encloses \a text. Quotes within, apostrophes and a
    /// quote without a partner stay.
    /// \return \a text
    /// \code
    /// "abc"   => abc
    /// ""      => (empty)
    /// ""abc"" => "abc"
    /// "a"b    => "a"b
    /// "       => "
    /// \endcode
    KELRT_API static std::string& unQuote(std::string& text);

    /// unQuote for each of \a texts.
    KELRT_API static void unQuote(std::vector<std::string>& texts);

    /// \a text without the white space at both ends; that within stays. White space is what
    /// Kel_StrTok::WHITE_SPACE holds, backspace and form feed included. A NUL ends the text.
    /// \throws std::bad_alloc
    /// \code
    /// " \t value \r\n" => "value"
    /// "\bvalue\f"      => "value"
    /// "a b"            => "a b"
    /// " \t "           => ""
    /// \endcode
    KELRT_API static std::string trimWhitespace(const std::string& text);

    /// The value of one setting among words of the form `name=value`.
    ///
    /// The name is what stands in front of a word's first `=`, the value all that follows it, as
    /// it is written. The first word whose name equals \a key decides: names have the same length
    /// and compare equal by stricmp. Words without `=` are passed over. Nothing is trimmed, and no
    /// leading dash or other prefix is recognised.
    ///
    /// \param entries the words; they are not changed
    /// \return the value; empty when no name matches, which cannot be told from an empty value
    /// \throws std::bad_alloc
    /// \code
    /// {"a=1", "B=2", "b=3"}, "b" => "2"
    /// {"a=b=c"}, "A"             => "b=c"
    /// {"key", "keyx=1"}, "key"   => ""
    /// {" key=v"}, "key"          => ""
    /// {"=v"}, ""                 => "v"
    /// \endcode
    KELRT_API static std::string findKey(std::vector<std::string>& entries, const std::string& key);

    /// findKey over the \a argc texts of \a argv, the first one (by custom the program's name)
    /// included.
    /// \pre \a argv holds \a argc pointers, none of them null.
    KELRT_API static std::string findKey(std::uint32_t argc, char** argv, const std::string& key);

    ///@}

    /// \name Files and environment
    ///
    /// Paths are byte strings in the host's narrow encoding: what `fopen` opens with the same
    /// bytes. A name or a path ends at its first NUL. Where a path is examined or resolved, `/` and
    /// `\` both separate its parts, on every host, unless they are the second byte of a character
    /// in the ANSI code page of Windows; what the functions add follows the host:
    ///
    /// |                                  | Windows | Linux |
    /// |----------------------------------|---------|-------|
    /// | separator between parts          | `\`     | `/`   |
    /// | separator of the list in `PATH`  | `;`     | `:`   |
    /// | extension of library files       | `.dll`  | `.so` |
    ///
    /// The examples are those of Windows, in the current directory `C:\work`.
    ///
    /// Failures are thrown as Kel_Exception whose message ends in a newline; exhausted memory as
    /// `std::bad_alloc`. Environment variables are read afresh at every call; one that is set to
    /// the empty text counts as unset.
    ///
    /// Threads: setUserDataDirPath writes what getDataDirPath reads, without a lock: callers
    /// serialise the two. The others share only what the process shares, its environment and its
    /// current directory, and may run in parallel while nobody changes those. Other threads and
    /// processes may create the same directory and temporary files at the same time.
    ///@{

    /// The value of the environment variable `USERPROFILE`, unchanged.
    /// \throws Kel_Exception "USERPROFILE Environmental Variable is not set Correctly.\n" when
    ///         there is none
    KELRT_API static std::string getHomePath();

    /// Sets the main data directory, which getDataDirPath then gives; \a path is kept as it is and
    /// not checked. The empty text, the state at load, returns to the installed directory.
    KELRT_API static void setUserDataDirPath(const std::string& path);

    /// The per-user directory `.kel` in the home path, created when nothing of that name exists.
    /// Something else of that name is taken as it is. The home path itself is not created.
    /// \throws Kel_Exception as getHomePath; "Cannot create DIRECTORY directory, check the
    ///         USERPROFILE variable.\n"
    /// \code
    /// USERPROFILE=C:\Users\user => "C:\Users\user\.kel"
    /// \endcode
    KELRT_API static std::string createDotLumatraceDir();

    /// Creates a new, empty file in the per-user directory: \a baseName and the lowest number from
    /// 0 to 32001 that makes a name nothing has yet. The caller uses the file and deletes it.
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

    /// 1 when \a path names an existing directory or a link to one; otherwise 0, also when the host
    /// will not say.
    KELRT_API static int isDirectory(const std::string& path);

    /// The directory that holds a library: "." when the file is in the current directory, otherwise
    /// the first directory of `PATH` that has it, as it is written there. The file is named
    /// \a libraryName when that holds the library extension anywhere, in that case of letters;
    /// otherwise \a libraryName with the extension behind it.
    ///
    /// A library is where a file opens for reading: one that may not be read counts as absent, and
    /// so does a directory. The opening does not wait, so a FIFO or a device that opens counts as a
    /// library. Empty entries of `PATH` are skipped, but two or more separators at its
    /// end make one empty entry, which stands for the root. Quotes are ordinary characters.
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
    /// of `TOR_KEL_DATADIR`; without one, what setUserDataDirPath set; without that,
    /// `..\..\data\kel\` from where findLibInPath finds "libKelJtag". Whether it exists is not
    /// checked.
    /// \throws Kel_Exception as findLibInPath and normalizePath
    /// \code
    /// TOR_KEL_DATADIR=D:\data           => "D:\data\"
    /// libKelJtag.dll in C:\tool\bin\x64 => "C:\tool\data\kel\"
    /// \endcode
    KELRT_API static std::string getDataDirPath();

    /// The Sorva data directory: as getDataDirPath, from `TOR_KEL_SORVADATADIR` or
    /// `..\..\data\lumatrace\` from where "libKelCore" is. What setUserDataDirPath set plays no
    /// part.
    /// \throws Kel_Exception as findLibInPath and normalizePath
    KELRT_API static std::string getSorvaDataDirPath();

    /// The absolute form of \a path, found from its text and the current directory: nothing needs
    /// to exist and no link is followed. "." and ".." are folded, ".." at the root being the root;
    /// the separators become the host's, repeated ones one. On Windows a path such as `E:x` counts
    /// from the current directory of its drive.
    ///
    /// The result ends in a separator when \a path does, and otherwise not. So a path that leads to
    /// the root without a separator at its end gives the root without one, to be joined by one. The
    /// exception is ".", which gives the current directory as the host does.
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
    KELRT_API static std::string normalizePath(const std::string& path);

    /// Replaces \a list by the bare names of the entries of \a directory, in the order in which the
    /// host has them. With \a listFlag true "." and ".." are among them where the host has them;
    /// with false they are left out. On Windows a directory whose path is longer than the host
    /// takes, 260 characters as a rule, cannot be opened.
    /// \throws Kel_Exception "Could not open the directory: DIRECTORY\n" when it cannot be opened
    ///         or read; \a list is then unchanged
    KELRT_API static void getDirectoryFileList(const std::string& directory, bool listFlag,
                                               std::vector<std::string>& list);

    /// \a message in the multibyte encoding of the process's current locale (`LC_CTYPE`). A
    /// character that has no form there becomes "?". The text is cut at 2,047 bytes, in front of
    /// the character that would pass them. A null \a message gives the empty text.
    /// \code
    /// L"Disk full"    => "Disk full"
    /// L"5 \u20AC off" => "5 ? off"    (in the default locale)
    /// \endcode
    KELRT_API static std::string getLocalizedPortMsg(const wchar_t* message);

    ///@}

private:
    KELRT_API static std::string userDataDir;
};

} // namespace KelRT
