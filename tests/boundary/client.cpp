// SPDX-License-Identifier: MIT
#include "client.h"

#include "KelRT/Kel_ByteBuffer.h"
#include "KelRT/Kel_Exception.h"
#include "KelRT/Kel_StrTok.h"
#include "KelRT/Kel_Util.h"
#include "KelRT/Logger.h"
#include "KelRT/MethodLogger.h"

#include <cstddef>
#include <cstdlib>
#include <new>

using namespace KelRT;

namespace {

int operatorCalls = 0;

// Calls the operators new and delete below, and returns how often they have been called.
int callOperators() {
    // If GCC saw that this is new, it would warn that the inlined delete pairs it with free().
    void* (*volatile notInlined)(std::size_t) = ::operator new;
    ::operator delete(notInlined(1));
    return operatorCalls;
}

// Logs when the client library is unloaded.
struct LastWords {
    ~LastWords() { Logger::logger.printLog(1, "a client library ends\n"); }
};
const LastWords lastWords;

} // namespace

void CLIENT_FUNCTION() {
    MethodLogger tracer;
    tracer.setMethodName(CLIENT_NAME);
    // The tokenizer recognises CSV_DELIM by its address. Any other "," skips empty tokens.
    Kel_StrTok tokenizer("a,,b", Kel_StrTok::CSV_DELIM, false, false, false);
    tokenizer.getNext();
    Logger::logger.printLog(1, "second token of a,,b: \"%s\"\n", tokenizer.getNext());
    try {
        static_cast<void>(Kel_Util::findLibInPath("no such library"));
    } catch (const Kel_Exception&) {
        Logger::logger.printLog(1, "%s catches a Kel_Exception of the library\n", CLIENT_NAME);
    }
    const int before = callOperators();
    delete Kel_ByteBuffer::hex2BinReverse("5A3C");
    delete new Kel_ByteBuffer(1000, 10, 10);
    Logger::logger.printLog(1, "new and delete of the client: %d calls\n",
                            callOperators() - before);
    tracer.setReturnStatus(0);
    throw Kel_Exception(CLIENT_NAME);
}

// These replace the operators for this library alone. On Linux, private_operators.map hides them.
void* operator new(std::size_t bytes) {
    ++operatorCalls;
    if (void* const block = std::malloc(bytes))
        return block;
    throw std::bad_alloc();
}
void operator delete(void* block) noexcept {
    ++operatorCalls;
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    operator delete(block);
}
