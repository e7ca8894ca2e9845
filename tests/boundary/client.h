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

/// Logs which tokenizer mode, which exceptions and which operators new and delete the client
/// library gets, between the lines of its method trace. Then throws a Kel_Exception.
CLIENT_API void firstClient();
CLIENT_API void secondClient(); ///< does the same
