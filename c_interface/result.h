// A function refuses a call by throwing. The guard around each export turns this, and every other
// exception, into a result, and remembers the words for plenx_last_error.

#ifndef PLENXSDK_C_RESULT_H
#define PLENXSDK_C_RESULT_H

#include <exception>
#include <new>
#include <string_view>

#include "own_process.h"
#include "plenxsdk/plenx.h"

namespace PlenxC {

/// The reason why a call does nothing: one of the PLENX_E numbers, and a sentence without its
/// beginning. Both texts must be literals.
struct Refusal {
    plenx_result result;
    const char* subject;
    const char* why;
};

/// Remembers "function: subject why" for this thread, cut off where it does not fit.
void RememberError(const char* function, std::string_view subject, std::string_view why) noexcept;

/// Returns the words of this thread's last failure; empty when nothing has failed.
std::string_view RememberedError() noexcept;

/// Runs the work of an export. It lets no exception out, and while the process ends it does not run
/// the work.
template <class Work>
plenx_result Guarded(const char* function, Work work,
                     plenx_result whileEnding = PLENX_E_ENDING) noexcept {
    if (ProcessIsEnding()) {
        return whileEnding;
    }
    try {
        return work();
    } catch (const Refusal& refusal) {
        RememberError(function, refusal.subject, refusal.why);
        return refusal.result;
    } catch (const std::bad_alloc&) {
        RememberError(function, "", "there is not enough memory");
        return PLENX_E_MEMORY;
    } catch (const std::exception& failure) {
        RememberError(function, "", failure.what());
        return PLENX_E_FAILED;
    } catch (...) {
        RememberError(function, "", "an exception that is not a std::exception was thrown");
        return PLENX_E_FAILED;
    }
}

}  // namespace PlenxC

#endif  // PLENXSDK_C_RESULT_H
