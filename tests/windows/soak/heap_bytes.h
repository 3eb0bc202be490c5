// Counts the bytes in use on the run time's heap. Every malloc and new of the program, of the
// library and of the companions lies there. This redirects the run time's imports through counters,
// because a walk through the heap is not exact everywhere: Wine 10 keeps small blocks in groups,
// and the walk shows a whole group as one block in use.

#ifndef PLENXSDK_TESTS_WINDOWS_SOAK_HEAP_BYTES_H
#define PLENXSDK_TESTS_WINDOWS_SOAK_HEAP_BYTES_H

#include <cstdint>

namespace PlenxSoak {

/// Counts from now on, beginning with what a walk shows. Call it while no other thread uses the
/// heap.
void CountHeapBytes();

std::uint64_t HeapBytes();

}  // namespace PlenxSoak

#endif  // PLENXSDK_TESTS_WINDOWS_SOAK_HEAP_BYTES_H
