// One thread of the host makes random calls, round after round. Each round ends with a call that
// surely gets an answer, and waits until all its promised outcomes have come.
//
// The seed and the thread's number determine the sequence of its calls, but not how the calls of
// the threads interleave.

#ifndef PLENXSDK_TESTS_WINDOWS_SOAK_HOST_THREAD_H
#define PLENXSDK_TESTS_WINDOWS_SOAK_HOST_THREAD_H

#include <atomic>
#include <string>
#include <vector>

#include "plenxsdk/plenx_manager.h"
#include "soak/complaints.h"
#include "soak/dice.h"
#include "soak/outcome_book.h"
#include "soak/tally.h"

namespace PlenxSoak {

/// The longest that a round's outcomes, or a call's return, may take. The slowest job takes some
/// 15 s (a service that never answers), and a few rounds may be queued in front of one.
constexpr unsigned kPatienceSeconds = 300;

class HostThread {
public:
    HostThread(std::uint64_t seed, unsigned number, const std::string& installFolder,
               const std::string& dataFolder, OutcomeBook& book, Tally& tally,
               Complaints& complaints);

    /// @return false when an outcome has not come in time.
    bool Round();

    /// Returns, for the watchdog, the call that the thread is making and since when (0: it makes
    /// none).
    std::atomic<const char*> call{""};
    std::atomic<std::uint64_t> callSince{0};

private:
    void RandomCall();
    void AnsweredCall();

    void Start();
    void Stop();
    void LocalDeviceOnline();
    void RemoteDeviceOnline();
    void LocalDeviceOffline();
    void RemoteDeviceOffline();
    void DeviceNameChanged();
    void RecvRemoteMessage();
    void GetOfficeDir();
    void SetStringConfig();
    void SetIntConfig();
    void GetConfig();
    void InitAgain();
    void Destroy();
    void RegisterNobody();
    void EmptyArgument();

    /// Makes the call, counts it and its result, and complains when the result is not the expected
    /// one.
    template <class Body>
    void Call(const char* name, int expected, Body body);

    DistributedFs::ServiceType Service();
    std::string Text();
    void Certain(std::uint32_t service, const std::string& group, unsigned kind);
    void Possible(std::uint32_t service, const std::string& group, unsigned kind);

    Dice dice_;
    const std::vector<std::string> groups_;
    const std::string installFolder_;
    const std::string dataFolder_;
    OutcomeBook& book_;
    Tally& tally_;
    Complaints& complaints_;
    DistributedFs::PLENXManager& manager_ = DistributedFs::PLENXManager::GetInstance();
};

}  // namespace PlenxSoak

#endif  // PLENXSDK_TESTS_WINDOWS_SOAK_HOST_THREAD_H
