// SPDX-License-Identifier: MIT
//
// Paths as text: none of them needs to exist. The conventions are an argument, so those of both
// hosts can be tested on either.
#pragma once

#include "port/host.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace Port {

struct Conventions {
    char separator;               // joins the components of a path
    const char* listSeparator;    // between the directories of PATH
    const char* libraryExtension; // at the end of a library's file name
    // True for the first byte of a two-byte character, whose second byte may look like a separator;
    // null where a path is plain bytes (POSIX).
    bool (*isLeadByte)(char byte);
};

inline constexpr Conventions WINDOWS{'\\', ";", ".dll", isLeadByte};
inline constexpr Conventions POSIX{'/', ":", ".so", nullptr};
#if defined(_WIN32)
inline constexpr const Conventions& NATIVE = WINDOWS;
#else
inline constexpr const Conventions& NATIVE = POSIX;
#endif

// In a path from a caller, both '/' and '\' separate components, on every host.
[[nodiscard]] constexpr bool isSeparator(char character) {
    return character == '/' || character == '\\';
}

// The index of the first character of path that is in separators, or npos. The path begins at a
// character boundary.
//     "a\\b"       => 1
//     "\x83\\a\\b" => 3     WINDOWS in code page 932, where \x83\\ is one character
[[nodiscard]] std::size_t findSeparator(const Conventions& conventions, std::string_view path,
                                        std::string_view separators = "/\\");

// True if the last character of path is a separator.
[[nodiscard]] bool endsInSeparator(const Conventions& conventions, std::string_view path);

// Always adds a separator between directory and name.
//     join(WINDOWS, "C:\\a", "b") => "C:\\a\\b"
//     join(POSIX, "/a/", "b")     => "/a//b"
[[nodiscard]] std::string join(const Conventions& conventions, std::string_view directory,
                               std::string_view name);

// The result type of FileName::GetAbsolutePath(): an immutable text.
template <typename Character>
class StringBase {
public:
    explicit StringBase(std::basic_string<Character> text) : content(std::move(text)) {}

    // NUL-terminated; valid as long as this object.
    const Character* c_str() const { return content.c_str(); }

private:
    std::basic_string<Character> content;
};

class FileName {
public:
    explicit FileName(const char* path, const Conventions& host = NATIVE)
        : name(path), conventions(host) {}

    // The absolute form, computed from the text and the current directory; links are not followed.
    // "." and ".." are resolved; ".." at the root stays there. Separators become the host's, runs
    // of them collapse into one, and a trailing one is kept. The root of a drive or of POSIX always
    // ends in one. The result is empty if the current directory is needed and cannot be read. The
    // flag is ignored.
    //
    // On Windows a path may begin with a drive or a share, from which ".." removes nothing. A path
    // such as `C:x` is relative to the current directory of its drive.
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
