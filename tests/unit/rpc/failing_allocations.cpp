#include "rpc/failing_allocations.h"

#include <cstdint>
#include <cstdlib>
#include <new>

std::atomic<int> goodArrays{kEvery};
std::atomic<std::size_t> tooLarge{SIZE_MAX};

void* operator new(std::size_t size) {
    void* const block = size >= tooLarge ? nullptr : std::malloc(size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return std::malloc(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    if (goodArrays == 0) {
        goodArrays = kEvery;
        return nullptr;
    }
    if (goodArrays != kEvery) {
        --goodArrays;
    }
    return std::malloc(size);
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete[](void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    std::free(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    std::free(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
    std::free(block);
}
