/* Serves the endpoint "Manager" in the library's place, and puts what comes in into an inbox. */

#ifndef PLENXKIT_JUDGE_MANAGER_ENDPOINT_H
#define PLENXKIT_JUDGE_MANAGER_ENDPOINT_H

#ifdef __cplusplus

#include <string>

namespace PlenxJudge {

class Inbox;

/// Whether somebody listens at the endpoint of this PC.
bool IsServed(const std::string& endpoint);

/// A process calls this only once, because the listener cannot be removed. The inbox must live as
/// long as the process. @throws Refusal when the endpoint cannot be served.
void ServeManager(Inbox& inbox);

/// Removes the interface from the endpoint, as it is before the library listens, or puts it back.
void HideManager(bool hidden);

}  // namespace PlenxJudge

extern "C" {
#define PLENXJUDGE_NOEXCEPT noexcept
#else
#define PLENXJUDGE_NOEXCEPT
#endif

/* @return an exception to raise, or 0 when the other results count. */
unsigned long PlenxJudgeTakeNotification(long msgType, long msgSize, const unsigned char* msg,
                                         long* respSize, unsigned char** resp,
                                         long* result) PLENXJUDGE_NOEXCEPT;

#undef PLENXJUDGE_NOEXCEPT

#ifdef __cplusplus
}
#endif

#endif
