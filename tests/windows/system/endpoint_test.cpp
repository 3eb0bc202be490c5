// Tests the endpoint "Manager" when another process holds it.

#include <windows.h>

#include <rpc.h>

#include "support/system_habits.h"
#include "system/endpoint_holder.h"
#include "system/host.h"

namespace PlenxTest {
namespace {

class Endpoint : public Host {
protected:
    /// Returns the code with which the library was refused, or "0".
    static std::string Refusal() {
        return NumberBehind("rpc use protseq error ", LinesOf("RpcManager::Start"));
    }
};

HOST_TEST(Endpoint, HostThatListensAlready_IsLoggedAndNotificationsStillCome) {
    wchar_t protocol[] = L"ncalrpc";
    wchar_t endpoint[] = L"PlenxSystemTest";
    ASSERT_EQ(RpcServerUseProtseqEpW(reinterpret_cast<RPC_WSTR>(protocol), 10,
                                     reinterpret_cast<RPC_WSTR>(endpoint), nullptr),
              RPC_S_OK);
    ASSERT_EQ(RpcServerListen(1, 10, TRUE), RPC_S_OK);
    Init();
    EXPECT_TRUE(LogComesToSay(Error("RpcManager::Start", "rpc start server listen error 1713")));
    EXPECT_TRUE(Start(kPcService));
    EXPECT_TRUE(observer.WaitFor("NotifyConnect(1, group)"))
        << "the host's own listening must serve the library's endpoint";
}

// Only a system that lets both serve the endpoint decides who gets the notifications.
HOST_TEST(Endpoint, EndpointThatAnotherProcessHolds_BreaksNothing) {
    EndpointHolder holder(EndpointHolder::By::kServing);
    ASSERT_TRUE(holder.Holds());
    Init();
    EXPECT_TRUE(Start(kPcService));
    manager.RecvRemoteMessage(DistributedFs::PLENXMessageType{1}, 1, "m");
    manager.Stop(kPcService, "group");
    EXPECT_TRUE(Settle());
    EXPECT_THAT(ToldByWorker(),
                testing::ElementsAre("NotifyStatus(1, group, 0, 1)", "NotifyStatus(1, group, 1, 0)",
                                     "NotifyStatus(3, group, 1, 1)"));
    EXPECT_TRUE(Shows(Habits::kTakenEndpoint, Refusal()));
    if (Refusal() != "0") {
        EXPECT_THAT(ToldByServices(), testing::IsEmpty());
    }
}

HOST_TEST(Endpoint, EndpointThatIsRefused_IsLoggedAndAllButTheNotificationsWorks) {
    EndpointHolder holder(EndpointHolder::By::kKeepingOut);
    ASSERT_TRUE(holder.Holds());
    Init();
    const std::string function = "RpcManager::Start";
    EXPECT_TRUE(WaitFor([&] { return !LinesOf(function).empty(); }));
    EXPECT_TRUE(Start(kPcService));
    manager.LocalDeviceOnline(kPcService, "group", "here", 0, nullptr);
    manager.RecvRemoteMessage(DistributedFs::PLENXMessageType{1}, 1, "m");
    EXPECT_TRUE(Settle());
    EXPECT_EQ(ServiceLines("pc", "answered RecvRemoteMessage"),
              Lines{"answered RecvRemoteMessage(5) result:0 reply:0"});
    manager.Stop(kPcService, "group");
    EXPECT_TRUE(Settle());
    EXPECT_TRUE(Shows(Habits::kRefusedEndpoint, Refusal()));
    EXPECT_EQ(LinesOf(function), Lines{Error(function, "rpc use protseq error " + Refusal())});
    EXPECT_THAT(ToldByWorker(),
                testing::ElementsAre("NotifyStatus(1, group, 0, 1)", "NotifyStatus(1, group, 1, 0)",
                                     "NotifyStatus(3, group, 1, 1)"));
    EXPECT_THAT(ToldByServices(), testing::IsEmpty());
}

}  // namespace
}  // namespace PlenxTest
