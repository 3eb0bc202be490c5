#include "rpc_interface/allocation_count.h"

#include <atomic>
#include <cstddef>
#include <utility>

#include "rpc/interface/rpc_memory.h"

// The interfaces' own routines. Here the build gives them these names.
extern "C" {
void* OwnAllocate(std::size_t size);
void OwnFree(void* block);
}

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

}  // namespace PlenxTest

void* MIDL_user_allocate(std::size_t size) {
    using namespace PlenxTest;
    if (replacement) {
        return replacement();
    }
    void* const block = OwnAllocate(size);
    if (block != nullptr) {
        ++blocksOut;
        ++blocksEver;
    }
    return block;
}

void MIDL_user_free(void* block) {
    if (block != nullptr) {
        --PlenxTest::blocksOut;
    }
    OwnFree(block);
}
