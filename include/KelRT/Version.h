// SPDX-License-Identifier: MIT
/// \file
/// Which build of the library is loaded.
///
/// The four texts belong to the library, and callers neither free nor change them. The first query
/// composes a text; it stays valid and unchanged until the library is unloaded, and every query
/// gives the same pointer.
///
/// Threads: any thread may call any query at any time, also for the first time.
///
/// Exceptions: the first query of a text throws `std::bad_alloc` if memory is exhausted; a later
/// query then composes the text.
#pragma once

#include "KelRT/Export.h"

namespace KelRT {

/// The version number: `major.minor`, followed by `.patch` only when the patch level is not 0.
/// \code
/// getVersionNumber() => "7.4"      // patch level 0
/// getVersionNumber() => "7.4.2"    // patch level 2
/// \endcode
[[nodiscard]] KELRT_API const char* getVersionNumber();

/// The date and time of the build, in the form of the C macros `__DATE__` and `__TIME__` (the day
/// padded with a blank, 24-hour clock). Builds that set `SOURCE_DATE_EPOCH` are reproducible,
/// except with Clang 14, which ignores it.
/// \code
/// getBuildNumber() => "Mar 14 2011 09:05:37"
/// \endcode
[[nodiscard]] KELRT_API const char* getBuildNumber();

/// The version number, one blank, and the branch identifier (an upper-case letter, a point, two
/// digits, a lower-case letter).
/// \code
/// getVersion() => "7.4 K.41b"
/// \endcode
[[nodiscard]] KELRT_API const char* getVersion();

/// The version text, " - Compiled " and the date and time of the build.
/// \code
/// getVersionWithBuildNumber() => "7.4 K.41b - Compiled Mar 14 2011 09:05:37"
/// \endcode
[[nodiscard]] KELRT_API const char* getVersionWithBuildNumber();

} // namespace KelRT
