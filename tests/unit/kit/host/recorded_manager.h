// The library as a host sees it, with nothing behind it: every call is recorded as one
// line, and the tests raise the notifications. Calls may come from any thread.

#ifndef TESTS_UNIT_HOST_RECORDED_MANAGER_H
#define TESTS_UNIT_HOST_RECORDED_MANAGER_H

#include <functional>
#include <string>
#include <vector>

#include "plenxsdk/plenx_manager.h"

namespace RecordedManager {

/// Forgets the calls, the observers and everything that When has set.
void Reset();

/// Returns the calls since Reset, for example: Stop(1,"g")
std::vector<std::string> Calls();

/// Calls notify for every registered observer that is not null.
void Notify(const std::function<void(DistributedFs::PLENXServiceObserver&)>& notify);

/// Runs the action at each call of the operation of that name, on the caller's thread.
void When(const std::string& operation, const std::function<void()>& action);

}  // namespace RecordedManager

#endif  // TESTS_UNIT_HOST_RECORDED_MANAGER_H
