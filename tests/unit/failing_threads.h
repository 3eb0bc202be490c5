// Replaces pthread_create and pthread_join of the program that links it. They count, and fail on
// demand.

#ifndef PLENXSDK_UNIT_FAILING_THREADS_H
#define PLENXSDK_UNIT_FAILING_THREADS_H

#include <pthread.h>

#include <vector>

namespace FailingThreads {

constexpr int kAll = -1;

/// After that many more threads, none can be started.
void SetStartsLeft(int count);
/// The next joins fail with these errors, one after the other. The later ones succeed.
void RefuseJoins(std::vector<int> errors);

struct Join {
    pthread_t thread;
    int result;
};
/// Returns the threads that were started, and the joins that were tried, in order.
std::vector<pthread_t> Started();
std::vector<Join> Joins();
/// Returns how many threads have left their functions.
int Ended();

}  // namespace FailingThreads

#endif  // PLENXSDK_UNIT_FAILING_THREADS_H
