// SPDX-License-Identifier: MIT
/// \file
/// The only macros that the public headers define.
#pragma once

#if defined(__MINGW32__)
#include <cstdio> // __MINGW_PRINTF_FORMAT
#endif

/// Exports a name from the shared library. All other names are hidden.
#if defined(_WIN32)
#if defined(KELRT_BUILDING)
#define KELRT_API __declspec(dllexport)
#else
#define KELRT_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define KELRT_API __attribute__((visibility("default")))
#else
#define KELRT_API
#endif

/// Lets the compiler check a printf format against its arguments. Both positions count from 1 and
/// include the implicit `this` of a member; \a firstArgument is 0 where a `va_list` is passed.
#if defined(__MINGW32__)
#define KELRT_FORMAT(formatPosition, firstArgument)                                                \
    __attribute__((format(__MINGW_PRINTF_FORMAT, formatPosition, firstArgument)))
#elif defined(__GNUC__)
#define KELRT_FORMAT(formatPosition, firstArgument)                                                \
    __attribute__((format(printf, formatPosition, firstArgument)))
#else
#define KELRT_FORMAT(formatPosition, firstArgument)
#endif

/// Encloses a class with private members whose types are not exported. It suppresses MSVC's warning
/// about them (C4251), which is needless: only the functions of the library access them.
#if defined(_MSC_VER)
#define KELRT_PRIVATE_TYPES_BEGIN __pragma(warning(push)) __pragma(warning(disable : 4251))
#define KELRT_PRIVATE_TYPES_END __pragma(warning(pop))
#else
#define KELRT_PRIVATE_TYPES_BEGIN
#define KELRT_PRIVATE_TYPES_END
#endif
