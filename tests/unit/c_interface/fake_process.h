// Here a test sets up the process that the layer runs in.

#ifndef UNIT_C_INTERFACE_FAKE_PROCESS_H
#define UNIT_C_INTERFACE_FAKE_PROCESS_H

#include <atomic>

struct LayerProcess {
    /// True once the system has ended all other threads.
    static inline std::atomic<bool> ending{false};
    /// Counts how often the layer asked to stay loaded.
    static inline std::atomic<int> pins{0};
    /// Says whether the system gives wait events.
    static inline std::atomic<bool> givesEvents{false};
    static inline std::atomic<int> liveEvents{0};

    /// Returns whether the event behind a handle is set.
    static bool IsSet(void* handle);
};

/// While this object lives, the process is ending.
class EndingProcess {
public:
    EndingProcess() { LayerProcess::ending = true; }
    ~EndingProcess() { LayerProcess::ending = false; }
    EndingProcess(const EndingProcess&) = delete;
    EndingProcess& operator=(const EndingProcess&) = delete;
};

#endif  // UNIT_C_INTERFACE_FAKE_PROCESS_H
