// SPDX-License-Identifier: MIT
//
// Two client libraries, both built from client.cpp with hidden visibility. Each exports a table of
// functions, so that a program can compare what they see.
#pragma once

#include "KelRT/Kel_ByteBuffer.h"
#include "KelRT/Logger.h"

#if defined(_WIN32)
#define CLIENT_API __declspec(dllexport)
#else
#define CLIENT_API __attribute__((visibility("default")))
#endif

struct Client {
    /// Kel_StrTok::CSV_DELIM as the client sees it.
    const char* (*csvDelimiters)();
    /// How many tokens a tokenizer of the client makes of \a text.
    int (*countTokens)(const char* text, const char* delimiters);
    /// Logger::logger as the client sees it.
    KelRT::Logger* (*logger)();
    /// Traces itself and calls \a inner within.
    void (*work)(void (*inner)());
    /// True when the client catches what the library throws as Kel_Exception.
    bool (*catchesByType)();
    /// Throws a Kel_Exception that the client has made.
    void (*throwsException)();
    /// Deletes a buffer that the library has made.
    void (*deleteBuffer)(KelRT::Kel_ByteBuffer* buffer);
    /// The calls so far of the client's replacement of the global operator delete.
    int (*globalDeletes)();
    /// Calls that replacement once.
    void (*callGlobalDelete)();
};

extern "C" {
CLIENT_API const Client* firstClient() noexcept;
CLIENT_API const Client* secondClient() noexcept;
}
