// Tests the interfaces' memory itself. It comes from the language's own array routines that do not
// throw; this program replaces them to see each use.

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

#include "rpc/interface/rpc_memory.h"

namespace {

std::atomic<int> arraysMade{0};
std::atomic<int> arraysDeleted{0};

}  // namespace

// NOLINTBEGIN(misc-new-delete-overloads, misc-use-internal-linkage): these replace the run time's
// own.
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    ++arraysMade;
    return std::malloc(size == 0 ? 1 : size);
}

void operator delete[](void* block) noexcept {
    ++arraysDeleted;
    std::free(block);
}

void operator delete[](void* block, std::size_t) noexcept {
    operator delete[](block);
}
// NOLINTEND(misc-new-delete-overloads, misc-use-internal-linkage)

namespace PlenxTest {
namespace {

TEST(InterfaceMemory, BlockIsAnArrayThatIsDeleted) {
    const int made = arraysMade;
    const int deleted = arraysDeleted;
    for (const std::size_t size : {0, 1, 24, 1048576}) {
        void* const block = MIDL_user_allocate(size);
        EXPECT_NE(block, nullptr);
        MIDL_user_free(block);
    }
    EXPECT_EQ(arraysMade, made + 4);
    EXPECT_EQ(arraysDeleted, deleted + 4);
}

TEST(InterfaceMemory, TooLargeABlockIsNullAndThrowsNothing) {
    EXPECT_NO_THROW(EXPECT_EQ(MIDL_user_allocate(SIZE_MAX / 2), nullptr));
}

TEST(InterfaceMemory, ReleasingNullIsHarmless) {
    MIDL_user_free(nullptr);
}

}  // namespace
}  // namespace PlenxTest
