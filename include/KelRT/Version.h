// SPDX-License-Identifier: MIT
/// \file
/// Which build of the library is loaded.
///
/// The four texts belong to the library: they are composed at the first query, stay unchanged and
/// valid until the library is unloaded, and repeated queries give the same pointer. The caller
/// neither frees nor changes them.
///
/// Threads: every query may be called from any thread at any time, also the first one.
///
/// Exceptions: none of the stated results fails; `std::bad_alloc` leaves the first query of a text
/// when memory is exhausted, and a later query then composes it.
#pragma once

#include "KelRT/Export.h"

namespace KelRT {

/// The version number: `major.minor`, followed by `.patch` only when the patch level is not 0.
/// \code
/// getVersionNumber() => "7.4"      // patch level 0
/// getVersionNumber() => "7.4.2"    // patch level 2
/// \endcode
KELRT_API const char* getVersionNumber();

/// The date and time of the build, in the form of the C macros `__DATE__` and `__TIME__` (blank
/// filled day of month, 24-hour clock). Builds that set `SOURCE_DATE_EPOCH` are reproducible.
/// \code
/// getBuildNumber() => "Mar 14 2011 09:05:37"
/// \endcode
KELRT_API const char* getBuildNumber();

/// The version number, one blank, and the branch identifier (an upper-case letter, a point, two
/// digits, a lower-case letter).
/// \code
/// getVersion() => "7.4 K.41b"
/// \endcode
KELRT_API const char* getVersion();

/// The version text, " - Compiled " and the date and time of the build.
/// \code
/// getVersionWithBuildNumber() => "7.4 K.41b - Compiled Mar 14 2011 09:05:37"
/// \endcode
KELRT_API const char* getVersionWithBuildNumber();

} // namespace KelRT
