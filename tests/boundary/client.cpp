// SPDX-License-Identifier: MIT
#include "client.h"

#include "KelRT/Kel_Exception.h"
#include "KelRT/Kel_StrTok.h"
#include "KelRT/Kel_Util.h"
#include "KelRT/MethodLogger.h"

#include <cstdlib>
#include <new>

using namespace KelRT;

namespace {

int deletes = 0;

// Logs when the client library is unloaded.
struct LastWords {
    ~LastWords() { Logger::logger.printLog(1, "a client library ends\n"); }
};
const LastWords lastWords;

void work(void (*inner)()) {
    MethodLogger tracer;
    tracer.setMethodName(CLIENT_NAME);
    Logger::logger.printLog(1, "%s works\n", CLIENT_NAME);
    inner();
    tracer.setReturnStatus(0);
}

bool catchesByType() {
    try {
        Kel_Util::findLibInPath("no such library");
    } catch (const Kel_Exception&) {
        return true;
    }
    return false;
}

int globalDeletes() {
    ::operator delete(::operator new(1));
    return deletes;
}

constexpr Client client{[] { return Kel_StrTok::CSV_DELIM; },
                        [] { return &Logger::logger; },
                        work,
                        catchesByType,
                        [] { throw Kel_Exception(CLIENT_NAME); },
                        [](Kel_ByteBuffer* buffer) { delete buffer; },
                        globalDeletes};

} // namespace

// These replace the operators for this library alone. On Linux, private_operators.map hides them.
void* operator new(std::size_t bytes) {
    if (void* const block = std::malloc(bytes))
        return block;
    throw std::bad_alloc();
}
void operator delete(void* block) noexcept {
    ++deletes;
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    operator delete(block);
}

const Client* CLIENT_FUNCTION() noexcept {
    return &client;
}
