// Hostile processes send messages to the endpoint "Manager". Each message must get the answer that
// its bytes deserve, the observers must hear exactly what could be read, and the host must go on
// working.

#include <string>

#include "hostile/caller.h"
#include "hostile/expectation.h"
#include "hostile/footprint.h"
#include "hostile/raw_link.h"
#include "hostile/scale.h"
#include "hostile/tally_observer.h"
#include "support/system_habits.h"
#include "system/host.h"
#include "wire/catalog.h"

namespace PlenxTest {
namespace {

constexpr auto kMessage = DistributedFs::PLENXMessageType{-7};

class NotificationStorm : public Host {
protected:
    NotificationStorm() { manager.RegisterPLENXServiceObserver(&tally); }
    ~NotificationStorm() override { manager.UnregisterPLENXServiceObserver(&tally); }

    /// Starts the PC service and waits until the observer hears of it.
    void Begin();
    /// Runs the callers' storm, while this thread uses the library.
    void Rage(const Storm& storm);

    TallyObserver tally;

private:
    /// Sends one request that the honest service answers with a notification.
    void WorkOnce();

    Tally work_;
    int worked_ = 0;
};

void NotificationStorm::Begin() {
    Init();
    ASSERT_TRUE(Start(kPcService));
    ASSERT_TRUE(observer.WaitFor("NotifyStatus(1, group, 100, 1)"));
    // The observer keeps everything that it hears.
    manager.UnregisterPLENXServiceObserver(&observer);
    tally.TakeHeard();
}

void NotificationStorm::WorkOnce() {
    const std::string text = "work" + std::to_string(++worked_);
    const std::string heard = "SendLocalMessage(-7, 5, " + text + ")";
    ++work_[heard];
    EXPECT_EQ(manager.RecvRemoteMessage(kMessage, 5, text), 0);
    EXPECT_EQ(manager.GetInt64Config(kPcService, DistributedFs::kServiceNotRunningConfig), 0);
    EXPECT_TRUE(WaitFor([&] { return tally.Times(heard) != 0; }, LongestStorm()))
        << "the host's request " << worked_ << " had no effect";
}

void NotificationStorm::Rage(const Storm& storm) {
    CallerCrowd crowd(storm);
    ASSERT_TRUE(crowd.IsReady());
    work_.clear();
    crowd.Go();
    const ULONGLONG end = GetTickCount64() + LongestStorm();
    do {
        WorkOnce();
    } while (!crowd.IsOver() && GetTickCount64() < end && !testing::Test::HasFailure());
    EXPECT_TRUE(crowd.IsOver()) << "the callers do not come to an end";
    EXPECT_EQ(crowd.Complaints(), "");
    WorkOnce();

    Tally expected = TallyOf(storm);
    expected.insert(work_.begin(), work_.end());
    EXPECT_EQ(Difference(expected, tally.TakeHeard()), "");
}

HOST_TEST(NotificationStorm, TenCallers_AreAnsweredAsTheirBytesDeserveAndLeaveNothingBehind) {
    Begin();
    const std::uint32_t seed = HostileSeed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    const unsigned each = HostileMessages() / kCallers;
    Rage({seed + 1, each, each / 10});  // makes everything that is made only once
    const Footprint before = MeasureFootprint();
    Rage({seed, each, each / 10});
    ExpectNothingMore(before);
    manager.RegisterPLENXServiceObserver(&observer);
    EXPECT_TRUE(Start(kPhoneService)) << "a start must work as always";
}

// The RPC runtime should refuse such a size. Where it does not, the library reads beyond the bytes,
// and nobody can predict what it finds there. But only the call may end, not the host.
HOST_TEST(NotificationStorm, SizeBeyondTheBytes_NeverEndsTheHost) {
    Begin();
    const auto status = [](std::int32_t id, std::int32_t size) {
        const Bytes message = PlenxWire::Encode({1});
        const auto count = static_cast<std::uint32_t>(message.size());
        return CallManagerRaw(RequestBytes(id, size, count, message)).status;
    };
    EXPECT_TRUE(Shows(Habits::kSizeBeyondTheBytes, status(PlenxWire::kErrorNotify, 25)));
    for (const std::int32_t size : {25, 100, 4096, 0x10000}) {
        for (std::int32_t id = PlenxWire::kSendLocalMessage; id != 19; ++id) {
            EXPECT_TRUE(status(id, size) != 0 || !RuntimeComparesSizes());
        }
    }
    tally.TakeHeard();
    Rage({HostileSeed(), 5, 5});
    manager.RegisterPLENXServiceObserver(&observer);
    EXPECT_TRUE(Start(kPhoneService)) << "a start must work as always";
}

}  // namespace
}  // namespace PlenxTest
