#include "thread_state.h"

#ifdef _MSC_VER
#define PER_THREAD __declspec(thread)
#else
#define PER_THREAD _Thread_local
#endif

static PER_THREAD struct PlenxThreadState state;

struct PlenxThreadState* PlenxThreadStateOfCaller(void) {
    return &state;
}
