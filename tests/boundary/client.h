// SPDX-License-Identifier: MIT
//
// Declares the functions of two client libraries, both built from client.cpp with hidden
// visibility.
#pragma once

#if defined(_WIN32)
#define CLIENT_API __declspec(dllexport)
#else
#define CLIENT_API __attribute__((visibility("default")))
#endif

/// Traces itself in the log. Also logs whether the tokenizer, the exceptions and the operators new
/// and delete work across the boundary of the library. Then throws a Kel_Exception.
CLIENT_API void firstClient();
CLIENT_API void secondClient(); ///< does the same
