// SPDX-License-Identifier: MIT
//
// Allocates and frees Kel_ByteBuffer objects. storage.cpp allocates the bytes that they hold.
#include "KelRT/Kel_ByteBuffer.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

namespace KelRT {
namespace {

// Returns over-aligned memory, or null if memory is exhausted. It comes from malloc(). The pointer
// that malloc() returned is stored just before the aligned address for freeAlignedBlock().
void* alignedBlock(std::size_t bytes, std::align_val_t alignment) noexcept {
    const std::size_t extra = static_cast<std::size_t>(alignment) + sizeof(void*);
    void* const block = bytes + extra < bytes ? nullptr : std::malloc(bytes + extra);
    if (block == nullptr)
        return nullptr;
    void* aligned = static_cast<char*>(block) + sizeof block;
    std::size_t room = bytes + extra - sizeof block;
    std::align(static_cast<std::size_t>(alignment), bytes, aligned, room);
    std::memcpy(static_cast<char*>(aligned) - sizeof block, static_cast<const void*>(&block),
                sizeof block);
    return aligned;
}

void freeAlignedBlock(void* aligned) noexcept {
    void* block = nullptr;
    if (aligned != nullptr)
        std::memcpy(static_cast<void*>(&block), static_cast<char*>(aligned) - sizeof block,
                    sizeof block);
    std::free(block);
}

void* orThrow(void* memory) {
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

} // namespace

void* Kel_ByteBuffer::operator new(std::size_t bytes) {
    return orThrow(std::malloc(bytes));
}
void* Kel_ByteBuffer::operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
    return std::malloc(bytes);
}
void* Kel_ByteBuffer::operator new(std::size_t bytes, std::align_val_t alignment) {
    return orThrow(alignedBlock(bytes, alignment));
}
void* Kel_ByteBuffer::operator new(std::size_t bytes, std::align_val_t alignment,
                                   const std::nothrow_t&) noexcept {
    return alignedBlock(bytes, alignment);
}
void* Kel_ByteBuffer::operator new(std::size_t, void* place) noexcept {
    return place;
}
void* Kel_ByteBuffer::operator new[](std::size_t bytes) {
    return operator new(bytes);
}
void* Kel_ByteBuffer::operator new[](std::size_t bytes, const std::nothrow_t& tag) noexcept {
    return operator new(bytes, tag);
}
void* Kel_ByteBuffer::operator new[](std::size_t bytes, std::align_val_t alignment) {
    return operator new(bytes, alignment);
}
void* Kel_ByteBuffer::operator new[](std::size_t bytes, std::align_val_t alignment,
                                     const std::nothrow_t& tag) noexcept {
    return operator new(bytes, alignment, tag);
}
void* Kel_ByteBuffer::operator new[](std::size_t, void* place) noexcept {
    return place;
}
void Kel_ByteBuffer::operator delete(void* memory) noexcept {
    std::free(memory);
}
void Kel_ByteBuffer::operator delete(void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
void Kel_ByteBuffer::operator delete(void* memory, std::align_val_t) noexcept {
    freeAlignedBlock(memory);
}
void Kel_ByteBuffer::operator delete(void* memory, std::align_val_t,
                                     const std::nothrow_t&) noexcept {
    freeAlignedBlock(memory);
}
void Kel_ByteBuffer::operator delete(void*, void*) noexcept {}
void Kel_ByteBuffer::operator delete[](void* memory) noexcept {
    std::free(memory);
}
void Kel_ByteBuffer::operator delete[](void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
void Kel_ByteBuffer::operator delete[](void* memory, std::align_val_t) noexcept {
    freeAlignedBlock(memory);
}
void Kel_ByteBuffer::operator delete[](void* memory, std::align_val_t,
                                       const std::nothrow_t&) noexcept {
    freeAlignedBlock(memory);
}
void Kel_ByteBuffer::operator delete[](void*, void*) noexcept {}

} // namespace KelRT
