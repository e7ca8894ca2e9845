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

/// False for a device, a pipe or a directory: a file must not take its place.
bool mayReplace(const std::string& path);

/// Renames \a from to \a to in one step, over an existing file; false, with `errno` set, on
/// failure.
bool replaceFile(const std::string& from, const std::string& to);

} // namespace field_report::host
