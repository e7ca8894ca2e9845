// SPDX-License-Identifier: MIT
//
// For a test program that adds exhausted_memory.cpp: operator new, the library's included, fails
// while it is told to.
#pragma once

#include "test_host.h"

namespace exhausted_memory {

/// On Windows a program's operator new does not reach into a DLL.
constexpr bool REACHES_THE_LIBRARY = !test_host::WINDOWS;

/// From here on every operator new fails, until end().
void begin();
/// \return how many were refused since begin()
unsigned end();

} // namespace exhausted_memory
