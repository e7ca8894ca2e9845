// SPDX-License-Identifier: MIT
//
// Handles paths as text, so they need not exist. The conventions of a host are an argument, so
// tests can pass those of another host.
#pragma once

#include "port/host.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace Port {

// Describes how a host writes paths.
struct Conventions {
    char separator;               // joins the components of a path
    const char* listSeparator;    // separates the directories in PATH
    const char* libraryExtension; // ends the file name of a library
    // Returns true for the first byte of a two-byte character, whose second byte may look like a
    // separator. The pointer is null on POSIX, where a path is plain bytes.
    bool (*isLeadByte)(char byte);
};

inline constexpr Conventions WINDOWS{'\\', ";", ".dll", isLeadByte};
inline constexpr Conventions POSIX{'/', ":", ".so", nullptr};
#if defined(_WIN32)
inline constexpr const Conventions& NATIVE = WINDOWS;
#else
inline constexpr const Conventions& NATIVE = POSIX;
#endif

// Both '/' and '\' separate the components of a path that a caller passes, on every host.
[[nodiscard]] constexpr bool isSeparator(char character) {
    return character == '/' || character == '\\';
}

// Returns the index of the first character of path that is in separators, or npos. The path must
// not begin in the middle of a character.
//     "a\\b"       => 1
//     "\x83\\a\\b" => 3     WINDOWS in code page 932, where \x83\\ is one character
[[nodiscard]] std::size_t findSeparator(const Conventions& conventions, std::string_view path,
                                        std::string_view separators = "/\\");

// Returns true if the last character of path is a separator.
[[nodiscard]] bool endsInSeparator(const Conventions& conventions, std::string_view path);

// Joins directory and name with a separator, even if directory already ends in one.
//     join(WINDOWS, "C:\\a", "b") => "C:\\a\\b"
//     join(POSIX, "/a/", "b")     => "/a//b"
[[nodiscard]] std::string join(const Conventions& conventions, std::string_view directory,
                               std::string_view name);

// Holds an immutable text, the result of FileName::GetAbsolutePath().
template <typename Character>
class StringBase {
public:
    explicit StringBase(std::basic_string<Character> text) : content(std::move(text)) {}

    // Returns the text, NUL-terminated. The pointer is valid as long as this object.
    const Character* c_str() const { return content.c_str(); }

private:
    std::basic_string<Character> content;
};

class FileName {
public:
    explicit FileName(const char* path, const Conventions& host = NATIVE)
        : name(path), conventions(host) {}

    // Returns the absolute form of the path. It is computed from the text and the current
    // directory, without following links. "." and ".." are resolved; ".." at the root stays there.
    // Each run of separators becomes one `conventions.separator`. The result ends in a
    // separator if the path does, or if the result is only the root of a drive or of POSIX. It is
    // empty if the current directory is needed and cannot be read. The flag is ignored.
    //
    // On Windows, a path may begin with a drive or a share, which ".." does not remove. A path such
    // as `C:x` is relative to the current directory of its drive.
    //     "/a/./b/../c/" => "/a/c/"           POSIX
    //     "..\\x"        => "/x"              POSIX, in /here
    //     "c:/a/../b"    => "c:\\b"           WINDOWS
    //     "\\x"          => "C:\\x"           WINDOWS, in C:\work
    //     "//srv/d/../x" => "\\\\srv\\d\\x"   WINDOWS
    [[nodiscard]] StringBase<char> GetAbsolutePath(bool flag) const;

private:
    std::string name;
    Conventions conventions;
};

} // namespace Port
