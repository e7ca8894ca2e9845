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

} // namespace

// The other forms of new call this one or the one for arrays.
void* operator new(std::size_t bytes) {
    if (state.armed && state.successesLeft-- <= 0) {
        state = {state.kind == test::Failure::persistent, true, 0, state.kind};
        throw std::bad_alloc();
    }
    // For more than PTRDIFF_MAX bytes malloc() returns null, or a sanitizer ends the program.
    void* const memory = bytes > PTRDIFF_MAX ? nullptr : std::malloc(bytes != 0 ? bytes : 1);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}
void* operator new[](std::size_t bytes) {
    return operator new(bytes);
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
