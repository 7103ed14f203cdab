// What a test program allocates and frees.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Allocations.h"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <utility>

namespace testsupport {

namespace {

Allocations* current = nullptr;
std::size_t limit = 0;

/// `alignment` is what the size is rounded up to, or 0.
void* allocate(std::size_t size, std::size_t alignment = 0) {
    if (current != nullptr) {
        if (size > limit)
            throw std::bad_alloc();
        ++current->count;
        current->bytes += size;
        current->largest = std::max(current->largest, size);
    }
    void* const memory =
        alignment == 0
            ? std::malloc(std::max(size, std::size_t{1}))
            : std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

void release(void* memory) {
    // The list itself is allocated by these operators as well.
    if (Allocations* const watching = std::exchange(current, nullptr)) {
        if (memory != nullptr)
            watching->freed.push_back(memory);
        current = watching;
    }
    std::free(memory);
}

} // namespace

Allocations allocationsOf(const std::function<void()>& action, std::size_t limitBytes) {
    Allocations allocations;
    limit = limitBytes;
    current = &allocations;
    action();
    current = nullptr;
    return allocations;
}

} // namespace testsupport

using testsupport::allocate;
using testsupport::release;

// All forms: a sanitizer's own forms for arrays would not be counted.
void* operator new(std::size_t size) {
    return allocate(size);
}
void* operator new[](std::size_t size) {
    return allocate(size);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return allocate(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
    return allocate(size, static_cast<std::size_t>(alignment));
}
void operator delete(void* memory) noexcept {
    release(memory);
}
void operator delete[](void* memory) noexcept {
    release(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
    release(memory);
}
void operator delete[](void* memory, std::size_t /*size*/) noexcept {
    release(memory);
}
void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept {
    release(memory);
}
void operator delete[](void* memory, std::align_val_t /*alignment*/) noexcept {
    release(memory);
}
void operator delete(void* memory, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
    release(memory);
}
void operator delete[](void* memory, std::size_t /*size*/,
                       std::align_val_t /*alignment*/) noexcept {
    release(memory);
}
