// SPDX-License-Identifier: MIT
#include "support/failing_new.h"

#include "KelRT/MethodLogger.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

struct {
    bool armed = false;
    bool hasFailed = false;
    long successesLeft = 0;
    test::Failure kind = test::Failure::persistent;
} state;

void* allocate(std::size_t bytes) noexcept {
    if (state.armed && state.successesLeft-- <= 0) {
        state = {state.kind == test::Failure::persistent, true, 0, state.kind};
        return nullptr;
    }
    if (bytes > PTRDIFF_MAX)
        return nullptr; // malloc() does so, too, but under a sanitizer it ends the program
    return std::malloc(bytes != 0 ? bytes : 1);
}

} // namespace

void* operator new(std::size_t bytes) {
    if (void* const memory = allocate(bytes))
        return memory;
    throw std::bad_alloc();
}
void* operator new[](std::size_t bytes) {
    return operator new(bytes);
}
// The sanitizers have forms of their own, which do not call those above.
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
    return allocate(bytes);
}
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
    return allocate(bytes);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace test {

FailingNew::FailingNew(long successes, Failure failure) {
    state = {true, false, successes, failure};
}

FailingNew::~FailingNew() {
    state.armed = false;
}

bool FailingNew::failed() {
    return state.hasFailed;
}

bool failingNewReachesTheLibrary() {
    const FailingNew noMemory;
    KelRT::MethodLogger().setReturn("a text that is too long to be stored inside a std::string");
    return FailingNew::failed();
}

} // namespace test
