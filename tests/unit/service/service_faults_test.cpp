// Tests each service operation while each of its platform calls fails, from every state of the
// service that takes another path through it.

#include "service_control_test.h"

using DistributedFs::ServiceManager;
using testing::AnyOf;

namespace {

class EveryFailureTest : public ServiceManagerTest {
protected:
    using Operation = std::int32_t (ServiceManager::*)(std::int32_t);

    /// Tries the operation with the PC service in the state; in state 0 it is not registered.
    void Try(Operation operation, DWORD state, const std::vector<std::int32_t>& codes) {
        SCOPED_TRACE(testing::Message() << "in state " << state);
        const unsigned calls = WithEveryCallFailing(
            [&] {
                PrepareMachine();
                auto manager = MakeManager();
                if (state == 0) {
                    manager->DeleteServiceByIndex(kPc);
                } else {
                    // This start leaves a process that the next one must end.
                    manager->StartServiceByIndex(kPc);
                    scm.SetStatus(kPcName, state, 0, 100);
                }
                return manager;
            },
            [&](const auto& manager) {
                EXPECT_THAT(codes, testing::Contains((manager.get()->*operation)(kPc)));
            });
        EXPECT_GE(calls, 2U);
    }
};

TEST_F(EveryFailureTest, Create) {
    Try(&ServiceManager::CreateServiceByIndex, SERVICE_STOPPED, {0, 1, 3});
    Try(&ServiceManager::CreateServiceByIndex, 0, {0, 1, 3});
}

TEST_F(EveryFailureTest, Start) {
    for (const DWORD state : {SERVICE_STOPPED, SERVICE_STOP_PENDING, SERVICE_RUNNING}) {
        Try(&ServiceManager::StartServiceByIndex, state, {0, 1, 2, 4, 5});
    }
}

TEST_F(EveryFailureTest, Stop) {
    for (const DWORD state : {SERVICE_STOPPED, SERVICE_STOP_PENDING, SERVICE_RUNNING}) {
        Try(&ServiceManager::StopServiceByIndex, state, {0, 1, 2, 4, 6});
    }
}

TEST_F(EveryFailureTest, Delete) {
    for (const DWORD state : {SERVICE_STOPPED, SERVICE_RUNNING}) {
        Try(&ServiceManager::DeleteServiceByIndex, state, {0, 1, 4, 7});
    }
}

TEST_F(EveryFailureTest, CheckedStartAndStop) {
    Try(&ServiceManager::StartPlenxService, SERVICE_STOPPED, {0, 1, 2, 4, 5});
    Try(&ServiceManager::StopPlenxService, SERVICE_RUNNING, {0, 1, 2, 4, 6});
}

TEST_F(EveryFailureTest, IsServiceAlive) {
    WithEveryCallFailing(
        [&] {
            PrepareMachine();
            auto manager = MakeManager();
            scm.SetStatus(kPcName, SERVICE_RUNNING);
            return manager;
        },
        [this](const auto& manager) {
            const bool alive = manager->isServiceAlive(kPc);
            EXPECT_EQ(alive, platform.Faults().Hits() == 0);
        });
}

TEST_F(EveryFailureTest, StartDokan) {
    WithEveryCallFailing(
        [&] {
            PrepareMachine();
            auto manager = MakeManager();
            scm.SetStatus(L"Dokan1", SERVICE_STOPPED);
            return manager;
        },
        [](const auto& manager) {
            EXPECT_THAT(manager->StartDokanService(), AnyOf(0, 1, 2, 4, 5));
        });
}

}  // namespace
