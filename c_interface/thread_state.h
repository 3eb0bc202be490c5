/* What the layer knows of the calling thread. It needs neither memory nor a lock, and there is
 * nothing to destroy: the system makes it with the thread. It is C because clang gives C the
 * system's own thread-local storage, which g++ for this target only imitates with both. */

#ifndef PLENXSDK_C_THREAD_STATE_H
#define PLENXSDK_C_THREAD_STATE_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

enum { PLENXSDK_C_ERROR_CAPACITY = 512 };

struct PlenxThreadState {
    unsigned callbacks; /* so many functions of observers are running on this thread */
    size_t error_length;
    char error[PLENXSDK_C_ERROR_CAPACITY];
};

struct PlenxThreadState* PlenxThreadStateOfCaller(void);

#ifdef __cplusplus
}
#endif

#endif
