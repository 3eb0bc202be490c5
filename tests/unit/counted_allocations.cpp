#include "counted_allocations.h"

#include <malloc.h>
#include <windows.h>

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

#include "platform/fake_scope.h"

namespace {

std::atomic<std::int64_t> live{0};
std::atomic<std::int64_t> liveBytes{0};
thread_local unsigned countdown = 0;  // while it is 0, no allocation fails
thread_local bool hit = false;

void* NewBlock(std::size_t size, std::size_t alignment) noexcept {
    if (alignment <= alignof(std::max_align_t)) {
        return std::malloc(size);  // here a sanitizer sees an overrun of a single byte
    }
    return std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
}

void* Allocate(std::size_t size, std::size_t alignment = alignof(std::max_align_t)) noexcept {
    if (countdown != 0 && !FakeScope::IsInside()) {
        --countdown;
        if (countdown == 0) {
            hit = true;
            return nullptr;
        }
    }
    void* const block = NewBlock(size, alignment);
    if (block != nullptr) {
        ++live;
        liveBytes += static_cast<std::int64_t>(malloc_usable_size(block));
    }
    return block;
}

// Freeing memory may change the error that the caller has yet to report.
void Release(void* block) noexcept {
    if (block != nullptr) {
        if (!FakeScope::IsInside()) {
            SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        }
        --live;
        liveBytes -= static_cast<std::int64_t>(malloc_usable_size(block));
        std::free(block);
    }
}

void* AllocateOrThrow(std::size_t size, std::size_t alignment = alignof(std::max_align_t)) {
    void* const block = Allocate(size, alignment);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

}  // namespace

std::int64_t LiveAllocations() {
    return live;
}

std::int64_t LiveBytes() {
    return liveBytes;
}

FailingAllocation::FailingAllocation(unsigned n) {
    hit = false;
    countdown = n;
}

bool FailingAllocation::End() const {
    countdown = 0;
    return hit;
}

void* operator new(std::size_t size) {
    return AllocateOrThrow(size);
}
void* operator new[](std::size_t size) {
    return AllocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return AllocateOrThrow(size, static_cast<std::size_t>(alignment));
}
void operator delete(void* block) noexcept {
    Release(block);
}
void operator delete[](void* block) noexcept {
    Release(block);
}
void operator delete(void* block, std::size_t) noexcept {
    Release(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    Release(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    Release(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
    Release(block);
}
void operator delete(void* block, std::align_val_t) noexcept {
    Release(block);
}
void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
    Release(block);
}
