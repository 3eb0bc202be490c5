// The endpoint "Manager" where somebody else is in the way.

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

// What becomes of the notifications is up to the system: some refuse the second holder of an
// endpoint, some let both have it.
HOST_TEST(Endpoint, EndpointThatAnotherProcessHolds_BreaksNothing) {
    EndpointHolder holder;
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

}  // namespace
}  // namespace PlenxTest
