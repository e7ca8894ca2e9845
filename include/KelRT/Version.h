// SPDX-License-Identifier: MIT
/// \file
/// These functions say which build of the library is loaded.
///
/// The library owns the four texts; callers neither free nor change them. The first call of a
/// function composes its text. Every call returns the same pointer; the text stays valid and
/// unchanged until the library is unloaded.
///
/// Threads: any thread may call any of the functions at any time.
///
/// Exceptions: a function throws `std::bad_alloc` if memory for its text is exhausted; the next
/// call then tries again.
#pragma once

#include "KelRT/Export.h"

namespace KelRT {

/// Returns the version number: `major.minor`, followed by `.patch` unless the patch level is 0.
/// \code
/// getVersionNumber() => "7.4"      // patch level 0
/// getVersionNumber() => "7.4.2"    // patch level 2
/// \endcode
[[nodiscard]] KELRT_API const char* getVersionNumber();

/// Returns the date and time of the build, in the form of the C macros `__DATE__` and `__TIME__`
/// (the day padded with a blank, 24-hour clock). Builds that set `SOURCE_DATE_EPOCH` are
/// reproducible, except with Clang 14, which ignores it.
/// \code
/// getBuildNumber() => "Mar 14 2011 09:05:37"
/// \endcode
[[nodiscard]] KELRT_API const char* getBuildNumber();

/// Returns the version number, a blank, and the branch identifier (an upper-case letter, a point,
/// two digits, a lower-case letter).
/// \code
/// getVersion() => "7.4 K.41b"
/// \endcode
[[nodiscard]] KELRT_API const char* getVersion();

/// Returns the version, " - Compiled " and the date and time of the build.
/// \code
/// getVersionWithBuildNumber() => "7.4 K.41b - Compiled Mar 14 2011 09:05:37"
/// \endcode
[[nodiscard]] KELRT_API const char* getVersionWithBuildNumber();

} // namespace KelRT
