// The engine on a fake machine, with a registered observer.

#ifndef UNIT_ENGINE_ENGINE_FIXTURE_H
#define UNIT_ENGINE_ENGINE_FIXTURE_H

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "companion/recorded_log.h"
#include "engine/plenx_manager_inner.h"
#include "facade/fake_machine.h"
#include "facade/recording_observer.h"
#include "rpc/fake_rpc.h"

class EngineTest : public testing::Test {
protected:
    EngineTest() {
        DistributedFs::PLENXManager::GetInstance().RegisterPLENXServiceObserver(&observer_);
        RecordedLog::Get().Clear();
    }
    ~EngineTest() override {
        DistributedFs::PLENXManager::GetInstance().UnregisterPLENXServiceObserver(&observer_);
    }

    static DistributedFs::PLENXManagerInner& Engine() {
        return DistributedFs::PLENXManagerInner::GetInstance();
    }
    static DistributedFs::ServiceType Type(std::uint32_t number) {
        return static_cast<DistributedFs::ServiceType>(number);
    }
    static DistributedFs::ConfigType Key(std::uint32_t number) {
        return static_cast<DistributedFs::ConfigType>(number);
    }

    // Runs the engine's Init and clears all records.
    static void InitEngine() {
        Engine().Init("C:\\App", "C:\\Data");
        EXPECT_TRUE(FakeRpc::Get().WaitUntilListening());
        RecordedLog::Get().Clear();
        FakeRpc::Get().ClearRecord();
        FakePlatform::Get().ForgetCalls();
    }
    static std::vector<std::string> EngineTexts() { return TextsOfClass("PLENXManagerInner"); }

    FakeMachine machine_;
    RecordingObserver observer_;
};

#endif  // UNIT_ENGINE_ENGINE_FIXTURE_H
