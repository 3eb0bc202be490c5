// A process without a window that waits for the end of a run. A run that ends as it should has
// removed everything; after one that crashed or was killed, the watcher does so.

#ifndef PLENXKIT_VERIFY_WATCHER_H
#define PLENXKIT_VERIFY_WATCHER_H

#include <windows.h>

#include "support/handle.h"

namespace PlenxVerify {

class Watcher {
public:
    /// turn: the mutex of the run. The watcher holds it, too, so that no other run begins while it
    /// is at work.
    explicit Watcher(HANDLE turn);
    /// Tells it that everything is removed, and waits for its end.
    ~Watcher();
    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;

    bool IsThere() const { return static_cast<bool>(process_); }

private:
    const PlenxSupport::Handle done_;
    PlenxSupport::Handle process_;
};

}  // namespace PlenxVerify

#endif  // PLENXKIT_VERIFY_WATCHER_H
