// Ten processes send well-formed notifications of all ten kinds at once, while threads of the host
// call the library and observers come and go. Each notification must arrive exactly once.

#include <atomic>
#include <thread>

#include "hostile/caller.h"
#include "hostile/scale.h"
#include "hostile/tally_observer.h"
#include "system/host.h"
#include "system/shell_listener.h"

namespace PlenxTest {
namespace {

constexpr auto kMessage = DistributedFs::PLENXMessageType{-7};

/// Pumps the shell's messages on a thread of its own, because the shell waits for its listeners.
class ShellCounter {
public:
    ShellCounter() {
        EXPECT_TRUE(WaitFor([this] { return listens_.load(); }));
    }
    /// Waits for that many events and then stops counting. @return the events.
    Lines Await(std::size_t count) {
        WaitFor([&] { return count_ >= count; },
                IsOpen(Habits::kNewsOfTheShell) ? ShellListener::Patience() : LongestStorm());
        over_ = true;
        thread_.join();
        return events_;
    }
    ~ShellCounter() {
        over_ = true;
        if (thread_.joinable()) {
            thread_.join();
        }
    }

private:
    void Listen() {
        ShellListener listener;
        listens_ = listener.Listens();
        while (!over_) {
            listener.Pump();
            count_ = listener.Events().size();
            Sleep(1);
        }
        listener.Pump();
        events_ = listener.Events();
    }

    std::atomic<bool> listens_{false};
    std::atomic<bool> over_{false};
    std::atomic<std::size_t> count_{0};
    Lines events_;
    std::thread thread_{[this] { Listen(); }};
};

class TenCallers : public Host {
protected:
    TenCallers() { manager.RegisterPLENXServiceObserver(&tally); }
    ~TenCallers() override { manager.UnregisterPLENXServiceObserver(&tally); }

    /// Sends messages to the service, which sends them back, until the storm is over.
    void SendMessages();
    /// Sends new names until the storm is over. The service tells its one group of each.
    void ChangeNames();
    /// Registers observers that stay for a moment, until the storm is over. None of them may hear
    /// anything twice that is sent once.
    void ComeAndGo();

    TallyObserver tally;
    std::atomic<bool> over{false};
    Tally sent;  // what the host's threads have sent, once they have ended
    int names = 0;
};

void TenCallers::SendMessages() {
    for (int i = 0; !over; ++i) {
        const std::string heard = "SendLocalMessage(-7, 1, work" + std::to_string(i) + ")";
        manager.RecvRemoteMessage(kMessage, 1, "work" + std::to_string(i));
        ++sent[heard];
        EXPECT_TRUE(WaitFor([&] { return tally.Times(heard) != 0; }, LongestStorm())) << heard;
    }
}

void TenCallers::ChangeNames() {
    while (!over) {
        manager.DeviceNameChanged("name");
        ++names;
        manager.SetConfig(kPcService, DistributedFs::kIntegerConfig0, std::int64_t{names});
        EXPECT_EQ(manager.GetInt64Config(kPcService, DistributedFs::kServiceNotRunningConfig), 0);
        Sleep(10);
    }
}

void TenCallers::ComeAndGo() {
    while (!over) {
        TallyObserver passing;
        manager.RegisterPLENXServiceObserver(&passing);
        Sleep(5);
        manager.UnregisterPLENXServiceObserver(&passing);
        for (const auto& [call, times] : passing.Heard()) {
            EXPECT_TRUE(times == 1 || call == "NotifyStatus(1, group, 101, 1)") << call;
        }
    }
}

HOST_TEST(TenCallers, NotificationsOfAllTenKinds_ArriveOnceEach) {
    Init();
    ASSERT_TRUE(Start(kPcService));
    ASSERT_TRUE(observer.WaitFor("NotifyStatus(1, group, 100, 1)"));
    manager.UnregisterPLENXServiceObserver(&observer);
    tally.TakeHeard();
    ShellCounter shell;

    const unsigned rounds = HostileMessages() / kCallers / 10;
    const Storm storm{0, 0, rounds * 10};
    CallerCrowd crowd(storm);
    ASSERT_TRUE(crowd.IsReady());
    std::thread threads[] = {std::thread([this] { SendMessages(); }),
                             std::thread([this] { ChangeNames(); }),
                             std::thread([this] { ComeAndGo(); })};
    crowd.Go();
    EXPECT_TRUE(WaitFor([&] { return crowd.IsOver(); }, LongestStorm()));
    over = true;
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(crowd.Complaints(), "");

    sent["NotifyStatus(1, group, 101, 1)"] = names;
    EXPECT_TRUE(WaitFor([&] { return tally.Times("NotifyStatus(1, group, 101, 1)") == names; },
                        LongestStorm()));
    Tally expected = TallyOf(storm);
    expected.insert(sent.begin(), sent.end());
    EXPECT_EQ(Difference(expected, tally.TakeHeard()), "");

    // No observer hears these: the shell is told of the path and of each caller's drive.
    Tally shellExpected;
    const std::string update = std::to_string(SHCNE_UPDATEDIR) + " ";
    shellExpected[update + "C:\\"] = static_cast<int>(kCallers * rounds);
    for (unsigned caller = 0; caller != kCallers; ++caller) {
        const std::string letter(1, static_cast<char>('N' + caller));
        shellExpected[update + letter + ":\\"] = static_cast<int>(rounds);
        EXPECT_EQ(
            CountLines(Info("RpcManager::FlushExplorer",
                            "update device status invoked cLetter:" + letter + " expFlushType:2")),
            static_cast<int>(rounds));
    }
    Tally shellHeard;
    for (const std::string& event : shell.Await(std::size_t{2} * kCallers * rounds)) {
        ++shellHeard[event];
    }
    const std::string difference = Difference(shellExpected, shellHeard);
    EXPECT_TRUE(Shows(Habits::kNewsOfTheShell, difference.empty() ? "yes" : difference));
}

}  // namespace
}  // namespace PlenxTest
