// Tests the endpoint "Manager" when another process holds it.

#include <windows.h>

#include <rpc.h>

#include "system/endpoint_holder.h"
#include "system/host.h"

namespace PlenxTest {
namespace {

class Endpoint : public Host {};

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
    EXPECT_TRUE(observer.WaitFor("NotifyConnect(1, group)")) << "the host's listening serves it";
}

// The system decides what happens to the notifications: some systems refuse the second holder of an
// endpoint, others let both have it.
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
}

// Windows refuses the second holder of an endpoint with 1740; Wine refuses it with 1720, and only
// where it cannot make the pipe. The line and all that follows are the same.
HOST_TEST(Endpoint, EndpointThatIsRefused_IsLoggedAndAllButTheNotificationsWorks) {
    EndpointHolder holder(EndpointHolder::By::kKeepingOut);
    if (!holder.Holds()) {
        GTEST_SKIP() << "the system's endpoints are no pipes";
    }
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
    EXPECT_THAT(LinesOf(function),
                testing::ElementsAre(Error(function, "rpc use protseq error 1720")));
    EXPECT_THAT(ToldByWorker(),
                testing::ElementsAre("NotifyStatus(1, group, 0, 1)", "NotifyStatus(1, group, 1, 0)",
                                     "NotifyStatus(3, group, 1, 1)"));
    EXPECT_THAT(ToldByServices(), testing::IsEmpty());
}

}  // namespace
}  // namespace PlenxTest
