// SPDX-License-Identifier: MIT
//
// Provides what the C++ standard library lacks: terminals, binary streams and the replacement of
// files. All code of the tool that depends on the host is here.
#pragma once

#include <cstdio>
#include <string>

namespace field_report::host {

/// Enables escape sequences on standard output. Returns false if it does not support them, for
/// example because it is not a terminal.
bool enableEscapes();

/// Switches \a stream to binary mode on hosts that otherwise translate line ends.
void setBinaryMode(std::FILE* stream);

/// Returns true if both paths name the same existing file.
bool isSameFile(const std::string& a, const std::string& b);

/// Returns false if \a path names a device, a pipe or a directory: a file must not replace these.
bool mayReplace(const std::string& path);

/// Returns the target of the symbolic link \a path on POSIX, where tools write through links.
/// Returns \a path itself on Windows, and if it is not a link.
std::string linkTarget(const std::string& path);

/// Copies the permissions of the file \a from, if it exists, to \a to. Does nothing on Windows,
/// where files inherit permissions from the directory.
void copyPermissions(const std::string& from, const std::string& to);

/// Renames \a from to \a to atomically, replacing an existing file. On failure, sets `errno` and
/// returns false.
bool replaceFile(const std::string& from, const std::string& to);

} // namespace field_report::host
