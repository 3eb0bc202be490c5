// Counts the process's calls of the allocator. Load it with LD_PRELOAD, and only for a run that
// counts: the runs that are timed use the allocator as it is.

#include <atomic>
#include <cstddef>
#include <cstdint>

extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);

std::uint64_t BenchAllocations();
}

namespace {

std::atomic<std::uint64_t> allocations{0};

}  // namespace

std::uint64_t BenchAllocations() {
    return allocations.load(std::memory_order_relaxed);
}

extern "C" {

void* malloc(std::size_t size) {
    allocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
    allocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size) {
    allocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_realloc(block, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
    allocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_memalign(alignment, size);
}
}
