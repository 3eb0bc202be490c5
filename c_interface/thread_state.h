/* What the layer knows about the calling thread. The system makes it together with the thread, so
 * it needs no allocation, no lock and no destruction. It is written in C because clang gives C the
 * system's own thread-local storage. g++ for this target imitates that storage, and its imitation
 * needs both an allocation and a lock. */

#ifndef PLENXSDK_C_THREAD_STATE_H
#define PLENXSDK_C_THREAD_STATE_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

enum { PLENXSDK_C_ERROR_CAPACITY = 512 };

struct PlenxThreadState {
    unsigned callbacks; /* how many functions of observers are running on this thread */
    size_t errorLength;
    char error[PLENXSDK_C_ERROR_CAPACITY];
};

struct PlenxThreadState* PlenxThreadStateOfCaller(void);

#ifdef __cplusplus
}
#endif

#endif
