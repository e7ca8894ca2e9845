// SPDX-License-Identifier: MIT
//
// What the C++ standard library does not offer: terminals, binary streams and the replacement of a
// file. All of the tool that depends on the host is here.
#pragma once

#include <cstdio>
#include <string>

namespace field_report::host {

bool isTerminal(std::FILE* stream);

/// Enables escape sequences on standard output; false if it has none or is no terminal.
bool enableEscapes();

/// Switches \a stream to binary mode on hosts that would translate line ends.
void setBinaryMode(std::FILE* stream);

/// True if both names lead to one existing file.
bool isSameFile(const std::string& a, const std::string& b);

/// False for a device, a pipe or a directory: a file must not take its place.
bool mayReplace(const std::string& path);

/// The file that a symbolic link leads to, on hosts whose tools write through links; otherwise, and
/// for other files, \a path.
std::string linkTarget(const std::string& path);

/// Gives \a to the permissions of \a from, if that file exists, on hosts that do not inherit them
/// from the directory.
void copyPermissions(const std::string& from, const std::string& to);

/// Renames \a from to \a to in one step, over an existing file; false, with `errno` set, on
/// failure.
bool replaceFile(const std::string& from, const std::string& to);

} // namespace field_report::host
