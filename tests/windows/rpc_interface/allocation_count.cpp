#include "rpc_interface/allocation_count.h"

#include <atomic>
#include <cstddef>
#include <utility>

namespace PlenxTest {
namespace {

std::atomic<long> blocksOut{0};
std::atomic<long> blocksEver{0};
std::function<void*()> replacement;

}  // namespace

long BlocksOut() {
    return blocksOut;
}

long BlocksEver() {
    return blocksEver;
}

AllocationReplacement::AllocationReplacement(std::function<void*()> allocate) {
    replacement = std::move(allocate);
}

AllocationReplacement::~AllocationReplacement() {
    replacement = nullptr;
}

// The linker replaces every use of the two routines by the __wrap_ ones.
extern "C" {

void* __real_MIDL_user_allocate(std::size_t size);
void __real_MIDL_user_free(void* block);

void* __wrap_MIDL_user_allocate(std::size_t size) {
    if (replacement) {
        return replacement();
    }
    void* const block = __real_MIDL_user_allocate(size);
    if (block != nullptr) {
        ++blocksOut;
        ++blocksEver;
    }
    return block;
}

void __wrap_MIDL_user_free(void* block) {
    if (block != nullptr) {
        --blocksOut;
    }
    __real_MIDL_user_free(block);
}

}  // extern "C"

}  // namespace PlenxTest
