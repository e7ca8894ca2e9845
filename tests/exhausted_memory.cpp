// SPDX-License-Identifier: MIT
#include "exhausted_memory.h"

#include <cstdlib>
#include <new>

namespace {

bool exhausted = false;
unsigned refusals = 0;

void* allocate(std::size_t size) {
    refusals += exhausted ? 1 : 0;
    return exhausted ? nullptr : std::malloc(size);
}

} // namespace

void exhausted_memory::begin() {
    refusals = 0;
    exhausted = true;
}
unsigned exhausted_memory::end() {
    exhausted = false;
    return refusals;
}

void* operator new(std::size_t size) {
    if (void* const block = allocate(size))
        return block;
    throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return allocate(size);
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t /*size*/) noexcept {
    std::free(block);
}
