// Tests the engine when memory runs out. An operation fails with an exception, which the job's
// future keeps. Nothing stays open or half made, and the next call works.

#include <gmock/gmock.h>

#include <memory>
#include <new>
#include <set>
#include <string>
#include <vector>

#include "counted_allocations.h"
#include "engine/engine_fixture.h"
#include "failing_threads.h"
#include "service/service_manager.h"

using DistributedFs::ServiceManager;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class EngineWithoutMemory : public EngineTest {
protected:
    /// Calls prepare, then the operation with its n-th allocation failing, for n = 1, 2, ... until
    /// there is no n-th. Returns how many calls failed with an exception.
    template <class Prepare, class Operation>
    static unsigned WithEveryAllocationFailing(Prepare prepare, Operation operation) {
        constexpr unsigned kEndless = 5000;
        unsigned exceptions = 0;
        for (unsigned n = 1; n != kEndless; ++n) {
            SCOPED_TRACE(testing::Message() << "allocation " << n);
            prepare();
            const FailingAllocation failing(n);
            bool hit = true;
            try {
                operation();
                hit = failing.End();
            } catch (const std::bad_alloc&) {
                failing.End();
                ++exceptions;
            }
            EXPECT_THAT(FakePlatform::Get().OpenHandles(), IsEmpty());
            EXPECT_EQ(FakeRpc::Get().LiveStrings(), 0U);
            EXPECT_EQ(FakeRpc::Get().LiveBindings(), 0U);
            EXPECT_EQ(FakeRpc::Get().LiveBlocks(), 0U);
            if (!hit) {
                return exceptions;
            }
        }
        ADD_FAILURE() << "the operation does not end";
        return exceptions;
    }

    static void PrepareMachine() {
        FakePlatform::Get().Reset();
        FakeRpc::Get().Reset();
        FakePlatform::Get().Files().AddFile(L"C:\\App\\upgrade\\dokan1.sys");
        FakePlatform::Get().Files().AddFile(L"C:\\Data\\plenx\\pc\\left");
        RecordedLog::Get().Clear();
    }
    static void PrepareRunningService() {
        PrepareMachine();
        FakePlatform::Get().Scm().AddService(L"PlenxPcSvc");
        FakePlatform::Get().Scm().SetStatus(L"PlenxPcSvc", SERVICE_RUNNING);
    }
};

TEST_F(EngineWithoutMemory, ManagerThatCannotBeMade_IsNotThere) {
    std::unique_ptr<ServiceManager> manager;
    const unsigned exceptions = WithEveryAllocationFailing(
        [&] {
            manager = nullptr;
            PrepareMachine();
        },
        [&] { manager = std::make_unique<ServiceManager>(L"C:\\App", L"C:\\Data"); });
    EXPECT_GT(exceptions, 10U);
    ASSERT_NE(manager, nullptr);
    EXPECT_EQ(manager->StartPlenxService(1), 0);
}

// When memory runs out at the end, log lines are lost and the working folder may stay, but the
// services go, and the process goes on ending.
TEST_F(EngineWithoutMemory, ManagerThatCannotCleanUp_EndsWithoutAnException) {
    std::unique_ptr<ServiceManager> manager;
    PrepareMachine();
    FakePlatform::Get().Scm().AddService(L"Dokan1");
    std::set<std::vector<std::wstring>> services;  // those that were there after each round
    const unsigned exceptions = WithEveryAllocationFailing(
        [&] {
            services.insert(FakePlatform::Get().Scm().Names());
            PrepareMachine();
            manager = std::make_unique<ServiceManager>(L"C:\\App", L"C:\\Data");
        },
        [&] { manager = nullptr; });
    EXPECT_EQ(exceptions, 0U);
    EXPECT_THAT(services, ElementsAre(ElementsAre(L"Dokan1")));
    EXPECT_THAT(FakePlatform::Get().Files().Tree(L"C:\\Data"), IsEmpty());
}

TEST_F(EngineWithoutMemory, ServiceOperations_LeaveNoHandleOpen) {
    PrepareMachine();
    ServiceManager manager(L"C:\\App", L"C:\\Data");
    const unsigned exceptions = WithEveryAllocationFailing(
        [&] {
            RecordedLog::Get().Clear();
            FakePlatform::Get().ForgetCalls();
            FakePlatform::Get().Scm().SetStatus(L"PlenxPcSvc", SERVICE_STOPPED);
        },
        [&] {
            manager.StartPlenxService(1);
            manager.StopPlenxService(1);
        });
    EXPECT_GE(exceptions, 1U);
    EXPECT_EQ(manager.StartPlenxService(1), 0);
}

TEST_F(EngineWithoutMemory, StartAndStopOfAService_LeaveNothingHeld) {
    InitEngine();
    const auto start = [] { Engine().Start(Type(1), "group", "argument"); };
    const auto stop = [] { Engine().Stop(Type(1), "group"); };
    EXPECT_GE(WithEveryAllocationFailing(PrepareRunningService, start), 1U);
    WithEveryAllocationFailing(PrepareRunningService, stop);
    PrepareRunningService();
    EXPECT_EQ(Engine().Start(Type(1), "group", "argument"), 0);
}

TEST_F(EngineWithoutMemory, DeviceOperations_LeaveNothingHeld) {
    InitEngine();
    const std::uint8_t data[] = {1, 2, 3};
    const auto operate = [&] {
        Engine().LocalDeviceOnline(Type(1), "group", "device", 3, data);
        Engine().LocalDeviceOffline(Type(1), "group", "device", {});
    };
    WithEveryAllocationFailing(PrepareRunningService, operate);
    EXPECT_EQ(Engine().LocalDeviceOnline(Type(1), "group", "device", 3, data), 0);
}

// The first Init runs out of memory while it makes the manager; the next one makes it.
TEST_F(EngineWithoutMemory, InitThatFails_IsMadeGoodByTheNext) {
    FakePlatform::Get().Faults().Before("CreateServiceW", 2, [] { throw std::bad_alloc(); });
    EXPECT_THROW(Engine().Init("C:\\App", "C:\\Data"), std::bad_alloc);
    FakePlatform::Get().Faults().Reset();
    EXPECT_THAT(FakePlatform::Get().OpenHandles(), IsEmpty());
    EXPECT_EQ(Engine().Start(Type(1), "g", "a"), 16);  // there is no manager

    Engine().Init("C:\\App", "C:\\Data");
    EXPECT_TRUE(FakeRpc::Get().WaitUntilListening());
    EXPECT_EQ(Engine().Start(Type(1), "g", "a"), 0);
    EXPECT_THAT(FakePlatform::Get().Scm().Names(), SizeIs(3));
}

// Whatever an Init fails at, it leaves no second listener to the next one.
TEST_F(EngineWithoutMemory, ListenerIsStartedOnce) {
    const auto isManager = [] { return Engine().GetInt64Config(Type(1), Key(5)) == 1; };
    unsigned exceptions = 0;
    const auto initWithout = [&exceptions](unsigned n) {
        const FailingAllocation failing(n);
        try {
            Engine().Init("C:\\App", "C:\\Data");
        } catch (const std::bad_alloc&) {
            ++exceptions;
        }
        return failing.End();
    };
    for (unsigned n = 1; !isManager(); ++n) {
        EXPECT_TRUE(initWithout(n));
    }
    exceptions = 0;
    for (unsigned n = 1; initWithout(n); ++n) {
    }
    EXPECT_GE(exceptions, 1U);
    EXPECT_TRUE(FakeRpc::Get().WaitUntilListening());
    EXPECT_THAT(FailingThreads::Started(), SizeIs(1));
    EXPECT_THAT(FakeRpc::Get().Calls(),
                ElementsAre("RpcServerUseProtseqEpW(ncalrpc, 10, Manager, null)",
                            "RpcServerRegisterIf(manager interface, null, null)",
                            "RpcServerListen(1, 10, 0)"));
}

}  // namespace
