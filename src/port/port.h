// SPDX-License-Identifier: MIT
//
// The portability layer: what the library asks of its host beyond the standard library, and the one
// place where the sources ask which host it is. This header says what the layer owes. What stands
// in host.cpp differs from host to host; file_name.cpp works on texts alone.
//
// A path is a NUL-terminated byte string in the host's narrow encoding, and names the same file
// here as it does for fopen. No function throws for what the host refuses (a missing or unreadable
// parent, a name that is too long): the result says so. Only std::bad_alloc is thrown.
//
// Threads: nothing is shared but what the host shares (the current directory, the file system).
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Port {

/// What differs between hosts in the texts of paths, as a value: what works on paths takes the
/// conventions as an argument, so that those of either host can be followed on both.
struct Conventions {
    char separator;               ///< joins the parts of a path
    const char* listSeparator;    ///< stands between the directories of PATH
    const char* libraryExtension; ///< ends the name of a library file
    /// True for the first byte of a character of two, whose second byte may be that of a separator;
    /// null where every byte of a path stands for itself.
    bool (*isLeadByte)(char byte);
};

/// Conventions::isLeadByte in the narrow encoding of the host's paths.
bool isLeadByte(char byte);

inline constexpr Conventions WINDOWS{'\\', ";", ".dll", isLeadByte};
inline constexpr Conventions POSIX{'/', ":", ".so", nullptr};
#if defined(_WIN32)
inline constexpr const Conventions& NATIVE = WINDOWS;
#else
inline constexpr const Conventions& NATIVE = POSIX;
#endif

/// Where a path is examined or resolved, both characters separate its parts, on every host.
constexpr bool isSeparator(char character) {
    return character == '/' || character == '\\';
}

/// Where the first character of \a path that is one of \a separators stands; `npos` without one.
/// \a path begins with a whole character.
/// \code
/// "a\\b"        => 1
/// "\x83\\a\\b" => 3     // WINDOWS, in code page 932: \x83\\ is one character
/// \endcode
std::size_t findSeparator(const Conventions& conventions, std::string_view path,
                          std::string_view separators = "/\\");

/// True when the last character of \a path is a separator.
bool endsInSeparator(const Conventions& conventions, std::string_view path);

/// \a directory, one separator, \a name; the separator is added even where one stands already.
/// \code
/// join(WINDOWS, "C:\\a", "b") => "C:\\a\\b"
/// join(POSIX, "/a/", "b") => "/a//b"
/// \endcode
std::string join(const Conventions& conventions, std::string_view directory, std::string_view name);

/// Keeps the services of this layer open. The library holds one from load to unload, so that it is
/// there before the first file operation and outlives the last. No host that is served needs more
/// preparation than that, so it only counts; File and UT_DIR assert that one lives.
class FileInit {
public:
    FileInit() noexcept;
    ~FileInit();
    FileInit(const FileInit&) = delete;
    FileInit& operator=(const FileInit&) = delete;

    /// True while a FileInit lives.
    static bool ready();
};

/// While one lives, its thread cannot be cancelled: a cancellation stays pending. On Linux
/// cancelling unwinds the stack, which a `noexcept` function answers by ending the process.
class CancellationDisabled {
public:
    CancellationDisabled() noexcept;
    ~CancellationDisabled();
    CancellationDisabled(const CancellationDisabled&) = delete;
    CancellationDisabled& operator=(const CancellationDisabled&) = delete;

private:
    [[maybe_unused]] int before = 0;
};

/// As std::vsnprintf. A format that the host refuses gives a negative result, never the end of the
/// process, in a hardened build too.
int formatText(char* text, std::size_t size, const char* format, std::va_list arguments) noexcept;

/// Writes \a time as local time to \a local, not to the object that std::localtime shares with
/// every caller; false when the host cannot convert it.
bool localTime(std::time_t time, std::tm& local) noexcept;

/// What came of creating a file.
enum class Creation : std::uint8_t { created, nameTaken, refused };

/// Single files and directories.
struct File {
    /// True when a file system object of that name exists, whatever its kind; a symbolic link
    /// counts also where its target is missing. False when the host will not say.
    static bool exist(const char* path);

    /// True when \a path names an existing directory, through symbolic links too.
    static bool isdir(const char* path);

    /// Creates one directory, not its parents; true when it was created. The flag is ignored.
    static bool mkdir(const char* path, bool flag);

    /// True when \a path is no directory and can be opened for reading. The opening does not wait.
    static bool readable(const char* path);

    /// Creates an empty file where nothing of that name exists, be it a link that leads nowhere.
    static Creation create(const char* path);
};

/// The current directory as the host reports it, of any length; empty when it cannot be read.
/// \param drive on hosts with drives the letter of the drive asked about, 0 for the current one. A
///              drive that has no current directory of its own has its root, one that does not
///              exist too.
std::string currentDirectory(char drive = 0);

/// A text that an operation of this layer hands out.
template <typename Character>
class StringBase {
public:
    explicit StringBase(std::basic_string<Character> text) : content(std::move(text)) {}

    /// The NUL-terminated characters; they live as long as this object.
    const Character* c_str() const { return content.c_str(); }

private:
    std::basic_string<Character> content;
};

/// The name of a file, which need not exist.
class FileName {
public:
    explicit FileName(const char* path, const Conventions& conventions = NATIVE)
        : name(path), rules(conventions) {}

    /// The absolute form, found from the text alone: no link is followed. Relative paths count from
    /// the current directory; "." and ".." are folded, ".." at the root being the root; separators
    /// become the host's, repeated ones one; one at the end stays at the end. The text is empty
    /// when the current directory is needed and cannot be read. The flag is ignored.
    ///
    /// Under the Windows conventions a path may begin with a drive (`C:`; without a separator
    /// behind it, it counts from the current directory of that drive) or with a share
    /// (`\\server\share`), of which ".." removes nothing.
    /// \code
    /// "/a/./b/../c/" => "/a/c/"             // POSIX
    /// "..\\x"        => "/x"                // POSIX, in /here
    /// "c:/a/../b"    => "c:\\b"             // WINDOWS
    /// "\\x"          => "C:\\x"             // WINDOWS, in C:\work
    /// "//srv/d/../x" => "\\\\srv\\d\\x"     // WINDOWS
    /// \endcode
    StringBase<char> GetAbsolutePath(bool flag) const;

private:
    std::string name;
    Conventions rules;
};

/// Walks over the entries of a UT_DIR, which must outlive it unchanged.
class UT_DIR_ITERATOR {
public:
    explicit UT_DIR_ITERATOR(std::vector<std::string>::const_iterator entry) : current(entry) {}
    bool operator!=(const UT_DIR_ITERATOR& other) const { return current != other.current; }
    UT_DIR_ITERATOR& operator++() {
        ++current;
        return *this;
    }

    /// The bare name of the current entry, NUL-terminated; it belongs to the UT_DIR.
    const char* operator*() const { return current->c_str(); }

private:
    std::vector<std::string>::const_iterator current;
};

/// The entries of a directory, read whole at construction, in the order of the host.
class UT_DIR {
public:
    /// \param flag 1 leaves "." and ".." out, 0 yields them where the host has them
    UT_DIR(const char* directory, std::uint8_t flag);

    /// 1 when the directory could be opened and read to its end, otherwise 0.
    int isvalid() const { return valid ? 1 : 0; }

    UT_DIR_ITERATOR begin() const { return UT_DIR_ITERATOR(entries.begin()); }
    UT_DIR_ITERATOR end() const { return UT_DIR_ITERATOR(entries.end()); }

private:
    std::vector<std::string> entries;
    bool valid = false;
};

} // namespace Port
