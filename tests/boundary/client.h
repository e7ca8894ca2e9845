// SPDX-License-Identifier: MIT
//
// Declares two client libraries, both built from client.cpp with hidden visibility. Each exports a
// table of functions, so that a program can compare what they see.
#pragma once

#include "KelRT/Kel_ByteBuffer.h"
#include "KelRT/Logger.h"

#if defined(_WIN32)
#define CLIENT_API __declspec(dllexport)
#else
#define CLIENT_API __attribute__((visibility("default")))
#endif

struct Client {
    /// Returns Kel_StrTok::CSV_DELIM as the client sees it.
    const char* (*csvDelimiters)();
    /// Returns the address of Logger::logger as the client sees it.
    KelRT::Logger* (*logger)();
    /// Calls \a inner between the lines of its own method trace.
    void (*work)(void (*inner)());
    /// Makes the library throw; returns true if the client catches a Kel_Exception.
    bool (*catchesByType)();
    /// Throws a Kel_Exception that the client made.
    void (*throwsException)();
    /// Deletes a buffer that the library made.
    void (*deleteBuffer)(KelRT::Kel_ByteBuffer* buffer);
    /// Calls the client's own operator delete, and returns how often that has been called.
    int (*globalDeletes)();
};

extern "C" {
CLIENT_API const Client* firstClient() noexcept;
CLIENT_API const Client* secondClient() noexcept;
}
